#include "scenebounds.h"

#include "vlviewerdelegatecomponenthost.h"
#include "vlviewerdelegatehost.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlScenelib/VlXFormUtil.h"
#include "partialxform.h"

#include <boost/unordered_map.hpp>
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

/// World matrices of the nodes that one extent needs, each worked out once.
class WorldMatrices {
public:
    DoubleAttribute get(const LocationNode* node) {
        // Up to the nearest ancestor that is known, or that inherits nothing, and back down.
        std::vector<const LocationNode*> chain;
        DoubleAttribute world;
        for (; node; node = node->absolute ? nullptr : node->parent) {
            const auto known = matrices_.find(node);
            if (known != matrices_.end()) {
                world = known->second;
                break;
            }
            chain.push_back(node);
        }
        for (auto place = chain.rbegin(); place != chain.rend(); ++place) {
            world = multiplyMatrices((*place)->matrix, world);
            matrices_.emplace(*place, world);
        }
        return world;
    }

private:
    boost::unordered_map<const LocationNode*, DoubleAttribute> matrices_;
};

/// Walks down from the locations asked for and gathers their boxes.
class MergedExtentWalk {
public:
    MergedExtentWalk(const SceneBounds& bounds, const LocationNode* excluded)
        : bounds_(bounds), excluded_(excluded) {}

    void visit(const LocationNode* start) {
        push(start);
        while (!stack_.empty()) {
            const LocationNode* const node = stack_.back();
            stack_.pop_back();
            const std::string path = node->path.str();
            if (const DoubleAttribute box = bounds_.getBounds(path)) {
                mergeWorld(*node, box);
                continue;
            }
            if (const DoubleAttribute extent = bounds_.computeExtent(path))
                mergeWorld(*node, extent);
            for (const LocationNode* child : node->children)
                push(child);
            for (const LocationNode* child : node->proxyChildren)
                push(child);
        }
    }

    [[nodiscard]] const DoubleAttribute& result() const { return merged_; }

private:
    void push(const LocationNode* node) {
        if (node && node->sent && node != excluded_ && !LocationTree::isHidden(*node) &&
            visited_.insert(node).second)
            stack_.push_back(node);
    }

    void mergeWorld(const LocationNode& node, const DoubleAttribute& box) {
        merge(merged_, CalcTransformedBoundsAtExistingTimes(matrices_.get(&node), box));
    }

    const SceneBounds& bounds_;
    const LocationNode* excluded_;
    boost::unordered_set<const LocationNode*> visited_;
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
    const GroupAttribute attributes = delegate_.getAttributes(path, kVlViewerDelegatePrimary);
    if (DoubleAttribute bound(attributes.borrowChildByName("bound")); isBounds(bound))
        return bound;
    const HostCall call(delegate_);
    if (DoubleAttribute bound(Attribute::CreateAndSteal(
            delegate_.suite->getBounds(delegate_.instance, path.c_str())));
        isBounds(bound))
        return bound;
    const ComponentList::Snapshot components = delegate_.components.snapshot();
    for (auto place = components->rbegin(); place != components->rend(); ++place) {
        if (!delegate_.components.contains(*place))
            continue;
        if (DoubleAttribute bound = (*place)->getBounds(path.c_str()); isBounds(bound))
            return bound;
    }
    return {};
}

DoubleAttribute SceneBounds::computeExtent(const std::string& path) const {
    DoubleAttribute extent;
    merge(extent, pointExtent(delegate_.getAttributes(path, kVlViewerDelegatePrimary)));
    const HostCall call(delegate_);
    merge(extent, DoubleAttribute(Attribute::CreateAndSteal(
                      delegate_.suite->computeExtent(delegate_.instance, path.c_str()))));
    const ComponentList::Snapshot components = delegate_.components.snapshot();
    for (auto place = components->rbegin(); place != components->rend(); ++place) {
        if (delegate_.components.contains(*place))
            merge(extent, (*place)->computeExtent(path.c_str()));
    }
    return extent;
}

DoubleAttribute SceneBounds::computeMergedExtent(const char* const* paths, std::uint32_t count,
                                                 const std::string& excludePath) const {
    MergedExtentWalk walk(*this, delegate_.locationTree.find(excludePath));
    for (std::uint32_t index = 0; paths && index < count; ++index) {
        if (paths[index])
            walk.visit(delegate_.locationTree.find(paths[index]));
    }
    return walk.result();
}

} // namespace ViewerAPI
