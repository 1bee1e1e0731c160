#pragma once

#include "sceneworkloads.h"

#include <vtkActor.h>
#include <vtkCallbackCommand.h>
#include <vtkCubeSource.h>
#include <vtkMatrix4x4.h>
#include <vtkNew.h>
#include <vtkPolyDataMapper.h>
#include <vtkPropCollection.h>
#include <vtkProperty.h>
#include <vtkRenderer.h>
#include <vtkTransform.h>

namespace bench {

inline vtkTransform* newTransform(const Placement& at, vtkTransform* parent) {
    vtkTransform* transform = vtkTransform::New();
    const double rows[16] = {at.cosine, -at.sine, 0, at.x, at.sine, at.cosine, 0, at.y,
                             0,         0,        1, at.z, 0,       0,         0, 1};
    transform->SetMatrix(rows);
    if (parent) {
        transform->SetInput(parent);
    }
    return transform;
}

/// W1 to W4 in VTK: one actor a leaf, with a transform whose input is its group's; world matrices
/// are computed when asked for, if out of date. The normal update asks every actor. Besides, an
/// observer of one transform can be told of its change: "told" in the names of figures.
class VtkScene {
public:
    static constexpr long kIndexBytes = sizeof(vtkTransform*) + sizeof(vtkActor*);
    static constexpr bool kIsToldOfHiding = false;

    explicit VtkScene(long leaves) : count_(leaves) {}

    void build() {
        actors_.reserve(static_cast<std::size_t>(count_));
        transforms_.reserve(static_cast<std::size_t>(count_));
        for (long set = 0; set < count_ / SceneLayout::kLeavesInSet; ++set) {
            vtkNew<vtkCubeSource> box;
            box->Update();
            vtkNew<vtkPolyDataMapper> mapper;
            mapper->SetInputData(box->GetOutput());
            mapper->Update();
            mapper->StaticOn(); // no look at the pipeline whenever bounds are asked for
            vtkTransform* ofSet = newTransform(SceneLayout::set(set), nullptr);
            for (long group = 0; group < SceneLayout::kGroupsInSet; ++group) {
                vtkTransform* ofGroup = newTransform(SceneLayout::group(group), ofSet);
                for (long leaf = 0; leaf < SceneLayout::kLeavesInGroup; ++leaf) {
                    addLeaf(mapper, newTransform(SceneLayout::leaf(leaf), ofGroup));
                }
                ofGroup->Delete();
            }
            ofSet->Delete();
        }
    }

    void update() {
        consumer_ = Consumer();
        vtkPropCollection* props = renderer_->GetViewProps();
        vtkCollectionSimpleIterator at;
        props->InitTraversal(at);
        while (vtkProp* prop = props->GetNextProp(at)) {
            if (prop->GetVisibility()) {
                take(prop, consumer_);
            }
        }
    }
    [[nodiscard]] Consumer getConsumer() const { return consumer_; }

    void place(long leaf, const Placement& at) {
        const long told = told_;
        vtkTransform* transform = transforms_[static_cast<std::size_t>(leaf)];
        const double rows[16] = {at.cosine, -at.sine, 0, at.x, at.sine, at.cosine, 0, at.y,
                                 0,         0,        1, at.z, 0,       0,         0, 1};
        transform->SetMatrix(rows);
        if (isListening_) {
            transform->Modified(); // SetMatrix alone raises no event
            if (told_ == told) {
                throw std::runtime_error("the observer was not told of a change");
            }
        }
    }
    void setHidden(long set, bool isHidden) {
        // Visibility is not inherited.
        const long first = set * SceneLayout::kLeavesInSet;
        for (long leaf = first; leaf < first + SceneLayout::kLeavesInSet; ++leaf) {
            actors_[static_cast<std::size_t>(leaf)]->SetVisibility(!isHidden);
        }
    }
    std::array<double, 6> box() {
        double all[6];
        renderer_->ComputeVisiblePropBounds(all);
        return {all[0], all[2], all[4], all[1], all[3], all[5]};
    }

    void listen(const std::vector<long>& leaves) {
        observed_.reserve(leaves.size()); // their addresses stay
        for (const long leaf : leaves) {
            observed_.push_back({this, actors_[static_cast<std::size_t>(leaf)]});
            vtkNew<vtkCallbackCommand> command;
            command->SetClientData(&observed_.back());
            command->SetCallback(hear);
            transforms_[static_cast<std::size_t>(leaf)]->AddObserver(vtkCommand::ModifiedEvent,
                                                                     command);
        }
        isListening_ = true;
    }

private:
    struct Observed {
        VtkScene* scene;
        vtkActor* actor;
    };

    static void take(vtkProp* prop, Consumer& consumer) {
        const vtkMatrix4x4* world = prop->GetMatrix();
        consumer.take(world->Element[0][3], world->Element[1][3], world->Element[2][3]);
    }
    static void hear(vtkObject*, unsigned long, void* data, void*) {
        const auto* observed = static_cast<Observed*>(data);
        ++observed->scene->told_;
        take(observed->actor, observed->scene->consumer_);
    }
    void addLeaf(vtkPolyDataMapper* mapper, vtkTransform* transform) {
        vtkActor* actor = vtkActor::New();
        actor->SetMapper(mapper);
        actor->SetProperty(property_);
        actor->SetUserTransform(transform);
        // AddActor would look for it among all others first.
        renderer_->GetViewProps()->AddItem(actor);
        actors_.push_back(actor);
        transforms_.push_back(transform);
        actor->Delete();
        transform->Delete();
    }

    const long count_;
    vtkNew<vtkRenderer> renderer_;
    vtkNew<vtkProperty> property_;
    std::vector<vtkActor*> actors_;
    std::vector<vtkTransform*> transforms_;
    std::vector<Observed> observed_;
    bool isListening_ = false;
    long told_ = 0;
    Consumer consumer_;
};

} // namespace bench
