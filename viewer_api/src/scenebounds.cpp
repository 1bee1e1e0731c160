#include "scenebounds.h"

#include "partialxform.h"
#include "vlviewerdelegatecomponenthost.h"
#include "vlviewerdelegatehost.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlScenelib/VlXFormUtil.h"

#include <boost/unordered_set.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <span>
#include <vector>

namespace ViewerAPI {

using VlAttribute::Attribute;
using VlAttribute::DoubleAttribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlScenelib::VlXFormUtil::CalcTransformedBoundsAtExistingTimes;
using VlScenelib::VlXFormUtil::MergeBounds;

namespace {

constexpr std::int64_t kBoundsValues = 6;

/// The box of whole points of 3 or 4 values; null when the values don't divide.
DoubleAttribute extentOf(const FloatAttribute& points, std::size_t tupleSize) {
    const std::span<const float> values = points.getNearestSample(0.0F);
    if (!points || values.size() % tupleSize != 0)
        return {};
    constexpr double kMinStart = std::numeric_limits<double>::max();
    constexpr double kMaxStart = std::numeric_limits<double>::min();
    std::array<double, 3> low{kMinStart, kMinStart, kMinStart};
    std::array<double, 3> high{kMaxStart, kMaxStart, kMaxStart};
    for (std::size_t point = 0; point < values.size(); point += tupleSize) {
        const double weight = tupleSize == 4 ? values[point + 3] : 1.0;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const double coordinate = values[point + axis] * weight;
            low[axis] = std::min(low[axis], coordinate);
            high[axis] = std::max(high[axis], coordinate);
        }
    }
    return DoubleAttribute({low[0], high[0], low[1], high[1], low[2], high[2]});
}

void merge(DoubleAttribute& merged, const DoubleAttribute& bounds) {
    if (isBounds(bounds))
        merged = merged ? MergeBounds(merged, bounds) : bounds;
}

/// World matrices on the line of ancestors of the node that was asked about last. In a walk from
/// parents to children the next one's parent mostly stands on it, and otherwise much of its line.
class WorldMatrices {
public:
    /// Null when there is no transform on the node's line.
    [[nodiscard]] DoubleAttribute get(const LocationNode& node) {
        return worldOf(node, getAncestor(node.parent));
    }

private:
    struct Ancestor {
        const LocationNode* node;
        DoubleAttribute world;
    };

    [[nodiscard]] static DoubleAttribute worldOf(const LocationNode& node,
                                                 const DoubleAttribute& parentWorld) {
        return node.absolute ? node.matrix : multiplyMatrices(node.matrix, parentWorld);
    }

    [[nodiscard]] bool isOnLine(const LocationNode& node) const {
        const auto depth = static_cast<std::size_t>(node.depth);
        return depth <= line_.size() && line_[depth - 1].node == &node;
    }

    DoubleAttribute getAncestor(const LocationNode* node) {
        // Up to where the old line and the new one part, and back down.
        const LocationNode* joint = node;
        for (; joint && !isOnLine(*joint); joint = joint->parent)
            climbed_.push_back(joint);
        line_.resize(joint ? static_cast<std::size_t>(joint->depth) : 0);
        DoubleAttribute world = joint ? line_.back().world : DoubleAttribute();
        for (; !climbed_.empty(); climbed_.pop_back()) {
            world = worldOf(*climbed_.back(), world);
            line_.push_back({climbed_.back(), world});
        }
        return world;
    }

    std::vector<Ancestor> line_; ///< by depth, from the root
    std::vector<const LocationNode*> climbed_;
};

/// Walks down from the locations asked for and gathers their boxes.
class MergedExtentWalk {
public:
    MergedExtentWalk(const SceneBounds& bounds, const LocationNode* excluded)
        : bounds_(bounds), excluded_(excluded) {}

    /// All are added before the walk. Null is passed over.
    void addStart(const LocationNode* node) {
        if (node && takesPart(*node) && starts_.insert(node).second)
            stack_.push_back(node);
    }

    DoubleAttribute run() {
        while (!stack_.empty()) {
            const LocationNode& node = *stack_.back();
            stack_.pop_back();
            const char* const path = node.path.c_str();
            if (const DoubleAttribute box = bounds_.getBounds(node.attributes, path)) {
                mergeWorld(node, box);
                continue;
            }
            mergeWorld(node, bounds_.computeExtent(node.attributes, path));
            pushChildren(node.children);
            pushChildren(node.proxyChildren);
        }
        return merged_;
    }

private:
    [[nodiscard]] bool takesPart(const LocationNode& node) const {
        return node.sent && &node != excluded_ && !LocationTree::isHidden(node);
    }

    // Each node has one parent, so only a start can be reached twice.
    void pushChildren(const NodeList<LocationNode>& children) {
        for (const LocationNode* child : children) {
            if (takesPart(*child) && starts_.find(child) == starts_.end())
                stack_.push_back(child);
        }
    }

    void mergeWorld(const LocationNode& node, const DoubleAttribute& box) {
        if (box)
            merge(merged_, CalcTransformedBoundsAtExistingTimes(matrices_.get(node), box));
    }

    const SceneBounds& bounds_;
    const LocationNode* excluded_;
    boost::unordered_set<const LocationNode*> starts_;
    std::vector<const LocationNode*> stack_;
    WorldMatrices matrices_;
    DoubleAttribute merged_;
};

} // namespace

bool isBounds(const DoubleAttribute& attribute) {
    return attribute.isValid() && attribute.getNumberOfValues() == kBoundsValues &&
           attribute.getNumberOfTimeSamples() > 0;
}

DoubleAttribute pointExtent(const GroupAttribute& attributes) {
    const GroupAttribute points(attributes.borrowChildByName("geometry.point"));
    if (!points)
        return {};
    if (DoubleAttribute extent = extentOf(FloatAttribute(points.borrowChildByName("P")), 3))
        return extent;
    return extentOf(FloatAttribute(points.borrowChildByName("Pw")), 4);
}

DoubleAttribute SceneBounds::getBounds(const std::string& path) const {
    return getBounds(delegate_.getAttributes(path, kVlViewerDelegatePrimary), path.c_str());
}

DoubleAttribute SceneBounds::getBounds(const GroupAttribute& attributes, const char* path) const {
    if (DoubleAttribute bound(attributes.borrowChildByName("bound")); isBounds(bound))
        return bound;
    const HostCall call(delegate_);
    if (DoubleAttribute bound(
            Attribute::CreateAndSteal(delegate_.suite->getBounds(delegate_.instance, path)));
        isBounds(bound))
        return bound;
    const ComponentList::Snapshot components = delegate_.components.snapshot();
    for (auto place = components->rbegin(); place != components->rend(); ++place) {
        if (!delegate_.components.contains(*place))
            continue;
        if (DoubleAttribute bound = (*place)->getBounds(path); isBounds(bound))
            return bound;
    }
    return {};
}

DoubleAttribute SceneBounds::computeExtent(const std::string& path) const {
    return computeExtent(delegate_.getAttributes(path, kVlViewerDelegatePrimary), path.c_str());
}

DoubleAttribute SceneBounds::computeExtent(const GroupAttribute& attributes,
                                           const char* path) const {
    DoubleAttribute extent;
    merge(extent, pointExtent(attributes));
    const HostCall call(delegate_);
    merge(extent, DoubleAttribute(Attribute::CreateAndSteal(
                      delegate_.suite->computeExtent(delegate_.instance, path))));
    const ComponentList::Snapshot components = delegate_.components.snapshot();
    for (auto place = components->rbegin(); place != components->rend(); ++place) {
        if (delegate_.components.contains(*place))
            merge(extent, (*place)->computeExtent(path));
    }
    return extent;
}

DoubleAttribute SceneBounds::computeMergedExtent(const char* const* paths, std::uint32_t count,
                                                 const std::string& excludePath) const {
    MergedExtentWalk walk(*this, delegate_.locationTree.find(excludePath));
    for (std::uint32_t index = 0; paths && index < count; ++index) {
        if (paths[index])
            walk.addStart(delegate_.locationTree.find(paths[index]));
    }
    return walk.run();
}

} // namespace ViewerAPI
