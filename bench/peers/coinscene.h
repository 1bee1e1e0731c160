#pragma once

#include "sceneworkloads.h"

#include <Inventor/SbViewportRegion.h>
#include <Inventor/SoDB.h>
#include <Inventor/SoInteraction.h>
#include <Inventor/SoPath.h>
#include <Inventor/actions/SoGetBoundingBoxAction.h>
#include <Inventor/actions/SoGetMatrixAction.h>
#include <Inventor/actions/SoSubAction.h>
#include <Inventor/elements/SoModelMatrixElement.h>
#include <Inventor/elements/SoSwitchElement.h>
#include <Inventor/nodes/SoCube.h>
#include <Inventor/nodes/SoMatrixTransform.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoSwitch.h>
#include <Inventor/nodes/SoTransformSeparator.h>
#include <Inventor/sensors/SoNodeSensor.h>

namespace bench {

inline SbMatrix matrixOf(const Placement& at) {
    const auto f = [](double value) { return static_cast<float>(value); };
    return {f(at.cosine), f(at.sine), 0,       0, f(-at.sine), f(at.cosine), 0, 0, 0, 0, 1, 0,
            f(at.x),      f(at.y),    f(at.z), 1};
}

/// Keeps nothing but the model matrix: the leanest way to every leaf's.
class DeliveryAction : public SoAction {
    SO_ACTION_HEADER(DeliveryAction);

public:
    DeliveryAction() { SO_ACTION_CONSTRUCTOR(DeliveryAction); }
    static void initClass();

    Consumer consumer;

protected:
    void beginTraversal(SoNode* node) override { traverse(node); }

private:
    static void visit(SoAction* action, SoNode* node) { node->doAction(action); }
    static void take(SoAction* action, SoNode*) {
        const SbMatrix& world = SoModelMatrixElement::get(action->getState());
        static_cast<DeliveryAction*>(action)->consumer.take(world[3][0], world[3][1], world[3][2]);
    }
};

SO_ACTION_SOURCE(DeliveryAction);

inline void DeliveryAction::initClass() {
    SO_ACTION_INIT_CLASS(DeliveryAction, SoAction);
    SO_ENABLE(DeliveryAction, SoModelMatrixElement);
    SO_ENABLE(DeliveryAction, SoSwitchElement);
    SO_ACTION_ADD_METHOD(SoNode, SoAction::nullAction);
    SO_ACTION_ADD_METHOD(SoGroup, visit);
    SO_ACTION_ADD_METHOD(SoSeparator, visit);
    SO_ACTION_ADD_METHOD(SoSwitch, visit);
    SO_ACTION_ADD_METHOD(SoTransformSeparator, visit);
    SO_ACTION_ADD_METHOD(SoMatrixTransform, visit);
    SO_ACTION_ADD_METHOD(SoCube, take);
}

/// W1 to W4 in Coin. The normal update is an action's traversal of the scene. Besides, a sensor on
/// the root is told at once which node was changed: "told" in the names of figures.
class CoinScene {
public:
    static constexpr long kIndexBytes = sizeof(SoMatrixTransform*);
    static constexpr bool kIsToldOfHiding = true;

    explicit CoinScene(long leaves) : count_(leaves) {}

    void build() {
        root_ = new SoSeparator;
        root_->ref();
        leaves_.reserve(static_cast<std::size_t>(count_));
        for (long set = 0; set < count_ / SceneLayout::kLeavesInSet; ++set) {
            auto* box = new SoCube;
            box->width = box->height = box->depth = 1.0F;
            auto* setNode = addSeparator(SceneLayout::set(set), SceneLayout::kGroupsInSet);
            for (long group = 0; group < SceneLayout::kGroupsInSet; ++group) {
                auto* groupNode =
                    addSeparator(SceneLayout::group(group), SceneLayout::kLeavesInGroup);
                for (long leaf = 0; leaf < SceneLayout::kLeavesInGroup; ++leaf) {
                    // Keeps the transform alone apart, at a third of a full separator's memory.
                    auto* leafNode = new SoTransformSeparator(2);
                    leaves_.push_back(addTransform(leafNode, SceneLayout::leaf(leaf)));
                    leafNode->addChild(box);
                    groupNode->addChild(leafNode);
                }
                setNode->addChild(groupNode);
            }
            auto* visibility = new SoSwitch(1);
            visibility->whichChild = SO_SWITCH_ALL;
            visibility->addChild(setNode);
            root_->addChild(visibility);
            sets_.push_back(visibility);
        }
    }

    void update() {
        DeliveryAction delivery;
        delivery.apply(root_);
        consumer_ = delivery.consumer;
    }
    [[nodiscard]] Consumer getConsumer() const { return consumer_; }

    void place(long leaf, const Placement& at) {
        const long told = told_;
        leaves_[static_cast<std::size_t>(leaf)]->matrix.setValue(matrixOf(at));
        requireTold(told);
    }
    void setHidden(long set, bool isHidden) {
        const long told = told_;
        sets_[static_cast<std::size_t>(set)]->whichChild.setValue(isHidden ? SO_SWITCH_NONE
                                                                           : SO_SWITCH_ALL);
        requireTold(told);
    }
    std::array<double, 6> box() {
        boxAction_.apply(root_);
        float low[3];
        float high[3];
        boxAction_.getBoundingBox().getBounds(low[0], low[1], low[2], high[0], high[1], high[2]);
        return {low[0], low[1], low[2], high[0], high[1], high[2]};
    }

    void listen(const std::vector<long>& /*leaves: the root's sensor hears of all*/) {
        sensor_.setFunction(hear);
        sensor_.setData(this);
        sensor_.setPriority(0); // at once
        sensor_.setTriggerPathFlag(TRUE);
        sensor_.attach(root_);
        isListening_ = true;
    }

private:
    static SoMatrixTransform* addTransform(SoGroup* to, const Placement& at) {
        auto* transform = new SoMatrixTransform;
        transform->matrix.setValue(matrixOf(at));
        to->addChild(transform);
        return transform;
    }
    static SoSeparator* addSeparator(const Placement& at, long children) {
        auto* separator = new SoSeparator(static_cast<int>(children) + 1);
        separator->boundingBoxCaching = SoSeparator::ON;
        addTransform(separator, at);
        return separator;
    }
    static void hear(void* data, SoSensor* sensor) {
        auto* self = static_cast<CoinScene*>(data);
        SoPath* path = static_cast<SoNodeSensor*>(sensor)->getTriggerPath();
        if (!path) {
            return;
        }
        ++self->told_;
        self->matrixAction_.apply(path);
        if (path->getTail()->isOfType(SoSwitch::getClassTypeId())) {
            // Whatever shows it now, the consumer has to visit what went or came.
            DeliveryAction delivery;
            delivery.apply(static_cast<SoSwitch*>(path->getTail())->getChild(0));
            self->consumer_ = delivery.consumer;
            return;
        }
        const SbMatrix& world = self->matrixAction_.getMatrix();
        self->consumer_.take(world[3][0], world[3][1], world[3][2]);
    }
    void requireTold(long before) const {
        if (isListening_ && told_ == before) {
            throw std::runtime_error("the sensor was not told of a change");
        }
    }

    const long count_;
    SoSeparator* root_ = nullptr;
    std::vector<SoSwitch*> sets_;
    std::vector<SoMatrixTransform*> leaves_;
    SbViewportRegion region_{1280, 720};
    SoGetBoundingBoxAction boxAction_{region_};
    SoGetMatrixAction matrixAction_{region_};
    SoNodeSensor sensor_;
    bool isListening_ = false;
    long told_ = 0;
    Consumer consumer_;
};

} // namespace bench
