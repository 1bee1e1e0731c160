#include "box.h"

#include "worldmatrix.h"

#include "VlScenelib/VlXFormUtil.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace ViewerAPI {

using VlAttribute::DoubleAttribute;

std::optional<Box> toBox(const DoubleAttribute& bounds) {
    const std::span<const double> values = bounds.getSample(0);
    Box box;
    if (values.size() != box.size() || bounds.getNumberOfTimeSamples() != 1 ||
        bounds.getSampleTime(0) != 0.0F) {
        return {};
    }
    std::copy(values.begin(), values.end(), box.begin());
    return box;
}

DoubleAttribute toAttribute(const Box& box) {
    return DoubleAttribute(std::span<const double>(box));
}

std::optional<Box> transformBox(const Box& box, const WorldMatrix& world) {
    const Box moved = world.isIdentity
                          ? box
                          : VlScenelib::VlXFormUtil::TransformBounds(
                                std::span<const double, 16>(world.values.getValue(), 16), box);
    if (std::any_of(moved.begin(), moved.end(), [](double value) { return std::isnan(value); })) {
        return {};
    }
    return moved;
}

void mergeBox(std::optional<Box>& merged, const Box& box) {
    if (!merged) {
        merged = box;
        return;
    }
    for (std::size_t axis = 0; axis < 3; ++axis) {
        double& low = (*merged)[axis * 2];
        double& high = (*merged)[axis * 2 + 1];
        low = std::min(low, box[axis * 2]);
        high = std::max(high, box[axis * 2 + 1]);
    }
}

} // namespace ViewerAPI
