#pragma once

#include "VlAttribute/DoubleAttribute.h"

#include <array>
#include <optional>

namespace ViewerAPI {

struct WorldMatrix;

/// A box that is the same at all times, as plain numbers: xmin, xmax, ymin, ymax, zmin, zmax.
using Box = std::array<double, 6>;

/// None for an attribute that is no bounds, and for one that is not simply six numbers at time 0.
[[nodiscard]] std::optional<Box> toBox(const VlAttribute::DoubleAttribute& bounds);
[[nodiscard]] VlAttribute::DoubleAttribute toAttribute(const Box& box);

/// The box around the moved box. None when that isn't six numbers: what comes of merging such a
/// box depends on the order.
[[nodiscard]] std::optional<Box> transformBox(const Box& box, const WorldMatrix& world);

/// Makes `merged` the box around both.
void mergeBox(std::optional<Box>& merged, const Box& box);

} // namespace ViewerAPI
