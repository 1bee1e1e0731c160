#include "manipulator/presence.h"

#include "manipulator/degrees.h"

#include <algorithm>
#include <cmath>

namespace Bundled {

namespace {

/// Angles in degrees that the sight has to what is led: at the first it is gone, from the second on
/// whole. At the mean of an axis's, its tip is grasped clear of a handle in the middle.
constexpr double kAxisGone = 10.0;
constexpr double kAxisWhole = 20.0;
constexpr double kPlaneGone = 6.0;
constexpr double kPlaneWhole = 12.0;

double within(double degrees, double gone, double whole) {
    // In this order a number that is none is gone.
    return std::min(1.0, std::max(0.0, (degrees - gone) / (whole - gone)));
}

double cosineOf(const PictureSpace& picture, const Imath::V3d& place, const Imath::V3d& direction) {
    return std::min(std::abs(picture.sightTo(place).dot(direction)), 1.0);
}

} // namespace

double axisPresence(const PictureSpace& picture, const Imath::V3d& place, const Imath::V3d& axis) {
    return within(toDegrees(std::acos(cosineOf(picture, place, axis))), kAxisGone, kAxisWhole);
}

double planePresence(const PictureSpace& picture, const Imath::V3d& place,
                     const Imath::V3d& normal) {
    return within(toDegrees(std::asin(cosineOf(picture, place, normal))), kPlaneGone, kPlaneWhole);
}

} // namespace Bundled
