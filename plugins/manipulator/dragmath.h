#pragma once

#include "manipulator/picturespace.h"

#include <optional>

namespace Bundled {

// What a drag grasps: where a ray of the picture meets an axis, a plane or a ring. Directions are
// of length 1. All answer nothing where a small move of the mouse would mean a boundless one, and
// for places that are behind the origin of a ray that begins there.

/// How far along an axis through `origin` the ray comes closest to it.
[[nodiscard]] std::optional<double> alongAxis(const Ray& ray, const Imath::V3d& origin,
                                              const Imath::V3d& axis);

/// Where the ray meets the plane through `origin`.
[[nodiscard]] std::optional<Imath::V3d> onPlane(const Ray& ray, const Imath::V3d& origin,
                                                const Imath::V3d& normal);

/// The angle in degrees from one direction to the other around an axis, counter-clockwise seen from
/// its tip, above -180 and up to 180. What they have along the axis does not count; 0 where nothing
/// else is there.
[[nodiscard]] double angleAround(const Imath::V3d& axis, const Imath::V3d& from,
                                 const Imath::V3d& to);

/// The multiple of `step` that is nearest; the value itself for a step that is not
/// positive, or that has none.
[[nodiscard]] double snapped(double value, double step);

/// The largest of ..., 0.1, 0.2, 0.5, 1, 2, 5, 10, ... that is no larger than `length`, above 0.
[[nodiscard]] double roundStep(double length);

} // namespace Bundled
