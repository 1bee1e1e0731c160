#pragma once

#include "sceneworkloads.h"

#include <osg/ComputeBoundsVisitor>
#include <osg/Geometry>
#include <osg/MatrixTransform>

namespace bench {

inline osg::Matrixd matrixOf(const Placement& at) {
    return {at.cosine, at.sine, 0, 0, -at.sine, at.cosine, 0, 0, 0, 0, 1, 0, at.x, at.y, at.z, 1};
}

inline osg::ref_ptr<osg::Geometry> makeBox() {
    osg::ref_ptr<osg::Vec3Array> corners = new osg::Vec3Array;
    for (int i = 0; i < 8; ++i) {
        corners->push_back({(i & 1) - 0.5F, (i >> 1 & 1) - 0.5F, (i >> 2 & 1) - 0.5F});
    }
    osg::ref_ptr<osg::Geometry> box = new osg::Geometry;
    box->setVertexArray(corners);
    box->addPrimitiveSet(new osg::DrawArrays(GL_POINTS, 0, 8));
    return box;
}

/// With a matrix stack of its own: the leanest way to every leaf's world matrix.
class Delivery : public osg::NodeVisitor {
public:
    Delivery() : osg::NodeVisitor(NODE_VISITOR, TRAVERSE_ACTIVE_CHILDREN) {
        stack_.reserve(16);
        stack_.emplace_back();
    }
    void apply(osg::MatrixTransform& transform) override {
        stack_.push_back(stack_.back());
        stack_.back().preMult(transform.getMatrix());
        traverse(transform);
        stack_.pop_back();
    }
    void apply(osg::Drawable&) override {
        const osg::Matrixd& world = stack_.back();
        consumer.take(world(3, 0), world(3, 1), world(3, 2));
    }

    Consumer consumer;

private:
    std::vector<osg::Matrixd> stack_;
};

/// W1 to W4 in OpenSceneGraph. It has no change notification: a consumer learns of world matrices
/// by traversing the scene.
class OsgScene {
public:
    static constexpr long kIndexBytes = sizeof(osg::MatrixTransform*);

    explicit OsgScene(long leaves) : count_(leaves) {}

    void build() {
        leaves_.reserve(static_cast<std::size_t>(count_));
        for (long set = 0; set < count_ / SceneLayout::kLeavesInSet; ++set) {
            // One for all would be slower: a drawable looks its parents up one by one.
            const osg::ref_ptr<osg::Geometry> box = makeBox();
            auto* setNode = new osg::MatrixTransform(matrixOf(SceneLayout::set(set)));
            for (long group = 0; group < SceneLayout::kGroupsInSet; ++group) {
                auto* groupNode = new osg::MatrixTransform(matrixOf(SceneLayout::group(group)));
                for (long leaf = 0; leaf < SceneLayout::kLeavesInGroup; ++leaf) {
                    auto* leafNode = new osg::MatrixTransform(matrixOf(SceneLayout::leaf(leaf)));
                    leafNode->addChild(box);
                    groupNode->addChild(leafNode);
                    leaves_.push_back(leafNode);
                }
                setNode->addChild(groupNode);
            }
            root_->addChild(setNode);
        }
    }

    void update() {
        Delivery delivery;
        root_->accept(delivery);
        consumer_ = delivery.consumer;
    }
    [[nodiscard]] Consumer getConsumer() const { return consumer_; }

    void place(long leaf, const Placement& at) {
        leaves_[static_cast<std::size_t>(leaf)]->setMatrix(matrixOf(at));
    }
    void setHidden(long set, bool isHidden) {
        root_->getChild(static_cast<unsigned>(set))->setNodeMask(isHidden ? 0 : ~0U);
    }
    std::array<double, 6> box() {
        osg::ComputeBoundsVisitor visitor;
        root_->accept(visitor);
        const osg::BoundingBox& all = visitor.getBoundingBox();
        return {all.xMin(), all.yMin(), all.zMin(), all.xMax(), all.yMax(), all.zMax()};
    }

private:
    const long count_;
    osg::ref_ptr<osg::Group> root_ = new osg::Group;
    std::vector<osg::MatrixTransform*> leaves_;
    Consumer consumer_;
};

} // namespace bench
