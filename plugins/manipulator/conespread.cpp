#include "manipulator/conespread.h"

#include "manipulator/degrees.h"
#include "manipulator/dragmath.h"

#include <algorithm>
#include <cmath>

namespace Bundled {

using Imath::V3d;

namespace {

/// The sine of the angle between plane and sight below which the plane is seen from its edge.
constexpr double kEdgeOn = 0.25;

} // namespace

ConeSpread::ConeSpread(const V3d& coneTip, const V3d& coneAxis, double sideLength, double halfAngle,
                       const Ray& grasping)
    : tip(coneTip), axis(coneAxis), length(sideLength), last(halfAngle) {
    const auto distance = [&](bool isNearSide) {
        return std::abs(halfAngle - angleTo(onBall(grasping, isNearSide)));
    };
    isNear = distance(true) <= distance(false);
    const V3d grasped = onBall(grasping, isNear);
    across = (grasped - axis * grasped.dot(axis)).normalized();
    isEdgeOn = std::abs(axis.cross(across).dot(grasping.direction)) < kEdgeOn;
    const auto angle = isEdgeOn ? angleTo(grasped) : inPlane(grasping);
    offset = halfAngle - angle.value_or(halfAngle);
}

double ConeSpread::halfAngleAt(const Ray& ray) {
    const auto angle = isEdgeOn ? angleTo(onBall(ray, isNear)) : inPlane(ray);
    last = angle ? *angle + offset : last;
    return last;
}

V3d ConeSpread::onBall(const Ray& ray, bool isNearSide) const {
    const V3d closest = ray.origin + ray.direction * (tip - ray.origin).dot(ray.direction) - tip;
    const double depth = std::sqrt(std::max(0.0, length * length - closest.length2()));
    return closest + ray.direction * (isNearSide ? -depth : depth);
}

double ConeSpread::angleTo(const V3d& fromTip) const {
    return toDegrees(std::acos(std::clamp(fromTip.normalized().dot(axis), -1.0, 1.0)));
}

std::optional<double> ConeSpread::inPlane(const Ray& ray) const {
    const auto point = onPlane(ray, tip, axis.cross(across));
    if (!point) {
        return std::nullopt;
    }
    return toDegrees(std::atan2((*point - tip).dot(across), (*point - tip).dot(axis)));
}

} // namespace Bundled
