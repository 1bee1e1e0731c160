#include "camera/depthrange.h"

#include <algorithm>
#include <cmath>

namespace Bundled {

namespace {

/// How far around the scene the ground is seen, by the scene's radius.
constexpr double kGround = 20.0;
constexpr double kLargestRatio = 1e5;
/// Of the reach.
constexpr double kSmallestInterest = 1e-18;

bool isPerspective(const Imath::M44d& projection) {
    return projection[2][3] == -1.0 && projection[3][3] == 0.0;
}

bool isOrthographic(const Imath::M44d& projection) {
    return projection[2][3] == 0.0 && projection[3][3] == 1.0;
}

} // namespace

DepthRange DepthRange::around(const Imath::Box3d& bounds, const Imath::M44d& worldToView,
                              bool isPerspective, double centerOfInterest) {
    const Imath::Box3d scene =
        bounds.isEmpty() ? Imath::Box3d(Imath::V3d(-5.0), Imath::V3d(5.0)) : bounds;
    const Imath::V3d half = scene.size() * 0.5;
    const Imath::V3d center = scene.center();
    double radius = half.length();
    if (!(radius > 0.0)) {
        radius = std::max(1e-3, 1e-3 * center.length());
    }
    const double distance = -(center * worldToView).z;
    const double farPlane = distance + kGround * radius;
    if (!isPerspective) {
        return {distance - kGround * radius, farPlane};
    }
    const double halfDepth = half.x * std::abs(worldToView[0][2]) +
                             half.y * std::abs(worldToView[1][2]) +
                             half.z * std::abs(worldToView[2][2]);
    // With everything behind the camera there is nothing to fit.
    const double reach = std::max(farPlane, radius);
    // The ground in front of the scene is seen as well, hence not all of the free distance.
    const double free = (distance - halfDepth) / 2.0;
    // One that can't be meant says nothing.
    const double interest = centerOfInterest > kSmallestInterest * reach ? centerOfInterest : reach;
    const double among = std::min(interest / 20.0, reach / 1000.0);
    // A location that strayed far off must not take away what the camera looks at.
    const double bounded = std::min(interest / 2.0, reach / kLargestRatio);
    return {std::max({free, among, bounded}), reach};
}

Imath::M44d withDepthRange(const Imath::M44d& projection, const DepthRange& range) {
    Imath::M44d result = projection;
    const double sum = range.farPlane + range.nearPlane;
    const double depth = range.farPlane - range.nearPlane;
    if (isPerspective(projection)) {
        result[2][2] = -sum / depth;
        result[3][2] = -2.0 * range.farPlane * range.nearPlane / depth;
    } else if (isOrthographic(projection)) {
        result[2][2] = -2.0 / depth;
        result[3][2] = -sum / depth;
    }
    return result;
}

} // namespace Bundled
