#include "camera/projection.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Bundled {

namespace {

/// The lens with everything in range that a projection can't do without.
Lens usable(Lens lens) {
    // Written so that what is not a number fails as well.
    if (!(lens.aspect > 0.0) || std::isinf(lens.aspect)) {
        lens.aspect = 1.0;
    }
    if (!(std::abs(lens.right - lens.left) > 0.0)) {
        lens.left = -1.0;
        lens.right = 1.0;
    }
    if (!(std::abs(lens.top - lens.bottom) > 0.0)) {
        lens.bottom = -1.0;
        lens.top = 1.0;
    }
    lens.fov = std::isnan(lens.fov) ? Lens{}.fov : std::clamp(lens.fov, 0.01, 179.9);
    if (std::isnan(lens.orthographicWidth) || lens.orthographicWidth == 0.0) {
        lens.orthographicWidth = 1.0;
    }
    return lens;
}

} // namespace

Imath::M44d perspectiveProjection(const Lens& given) {
    const Lens lens = usable(given);
    const double halfHeight = std::tan(lens.fov * std::numbers::pi / 360.0);
    const double left = lens.left * halfHeight * lens.aspect;
    const double right = lens.right * halfHeight * lens.aspect;
    const double bottom = lens.bottom * halfHeight;
    const double top = lens.top * halfHeight;
    const double depth = lens.farPlane - lens.nearPlane;
    return Imath::M44d(2.0 / (right - left), 0.0, 0.0, 0.0, //
                       0.0, 2.0 / (top - bottom), 0.0, 0.0, //
                       (right + left) / (right - left), (top + bottom) / (top - bottom),
                       -(lens.farPlane + lens.nearPlane) / depth, -1.0, //
                       0.0, 0.0, -2.0 * lens.farPlane * lens.nearPlane / depth, 0.0);
}

Imath::M44d orthographicProjection(const Lens& given) {
    const Lens lens = usable(given);
    const double halfWidth = lens.orthographicWidth / 2.0;
    const double left = lens.left * halfWidth;
    const double right = lens.right * halfWidth;
    const double bottom = lens.bottom * halfWidth / lens.aspect;
    const double top = lens.top * halfWidth / lens.aspect;
    const double depth = lens.farPlane - lens.nearPlane;
    return Imath::M44d(2.0 / (right - left), 0.0, 0.0, 0.0, //
                       0.0, 2.0 / (top - bottom), 0.0, 0.0, //
                       0.0, 0.0, -2.0 / depth, 0.0,         //
                       -(right + left) / (right - left), -(top + bottom) / (top - bottom),
                       -(lens.farPlane + lens.nearPlane) / depth, 1.0);
}

} // namespace Bundled
