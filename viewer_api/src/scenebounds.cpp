#include "scenebounds.h"

#include "mergedextentwalk.h"
#include "vlviewerdelegatecomponenthost.h"
#include "vlviewerdelegatehost.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlScenelib/VlXFormUtil.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <span>

namespace ViewerAPI {

using VlAttribute::Attribute;
using VlAttribute::DoubleAttribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlScenelib::VlXFormUtil::MergeBounds;

namespace {

constexpr std::int64_t kBoundsValues = 6;

/// The box of whole points of 3 or 4 values; null when the values don't divide.
DoubleAttribute extentOf(const FloatAttribute& points, std::size_t tupleSize) {
    const std::span<const float> values = points.getNearestSample(0.0F);
    if (!points || values.size() % tupleSize != 0) {
        return {};
    }
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
    if (isBounds(bounds)) {
        merged = merged ? MergeBounds(merged, bounds) : bounds;
    }
}

} // namespace

bool isBounds(const DoubleAttribute& attribute) {
    return attribute.isValid() && attribute.getNumberOfValues() == kBoundsValues &&
           attribute.getNumberOfTimeSamples() > 0;
}

DoubleAttribute pointExtent(const GroupAttribute& attributes) {
    const GroupAttribute points(attributes.borrowChildByName("geometry.point"));
    if (!points) {
        return {};
    }
    if (DoubleAttribute extent = extentOf(FloatAttribute(points.borrowChildByName("P")), 3)) {
        return extent;
    }
    return extentOf(FloatAttribute(points.borrowChildByName("Pw")), 4);
}

DoubleAttribute SceneBounds::getBounds(const std::string& path) const {
    return getBounds(delegate_.getAttributes(path, kVlViewerDelegatePrimary), path.c_str());
}

DoubleAttribute SceneBounds::getBounds(const GroupAttribute& attributes, const char* path) const {
    if (DoubleAttribute bound(attributes.borrowChildByName("bound")); isBounds(bound)) {
        return bound;
    }
    const HostCall call(delegate_);
    if (DoubleAttribute bound(
            Attribute::CreateAndSteal(delegate_.suite->getBounds(delegate_.instance, path)));
        isBounds(bound)) {
        return bound;
    }
    const ComponentList::Snapshot components = delegate_.components.snapshot();
    for (auto place = components->rbegin(); place != components->rend(); ++place) {
        if (!delegate_.components.contains(*place)) {
            continue;
        }
        if (DoubleAttribute bound = (*place)->getBounds(path); isBounds(bound)) {
            return bound;
        }
    }
    return {};
}

DoubleAttribute SceneBounds::computeExtent(const std::string& path) const {
    return computeExtent(pointExtent(delegate_.getAttributes(path, kVlViewerDelegatePrimary)),
                         path.c_str());
}

DoubleAttribute SceneBounds::computeExtent(DoubleAttribute extent, const char* path) const {
    const HostCall call(delegate_);
    merge(extent, DoubleAttribute(Attribute::CreateAndSteal(
                      delegate_.suite->computeExtent(delegate_.instance, path))));
    const ComponentList::Snapshot components = delegate_.components.snapshot();
    for (auto place = components->rbegin(); place != components->rend(); ++place) {
        if (delegate_.components.contains(*place)) {
            merge(extent, (*place)->computeExtent(path));
        }
    }
    return extent;
}

DoubleAttribute SceneBounds::computeMergedExtent(const char* const* paths, std::uint32_t count,
                                                 const std::string& excludePath) const {
    MergedExtentWalk walk(*this, delegate_.locationTree.find(excludePath));
    for (std::uint32_t index = 0; paths && index < count; ++index) {
        if (paths[index]) {
            walk.addStart(delegate_.locationTree.find(paths[index]));
        }
    }
    return walk.run();
}

} // namespace ViewerAPI
