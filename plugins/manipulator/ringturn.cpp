#include "manipulator/ringturn.h"

#include "manipulator/degrees.h"
#include "manipulator/dragmath.h"

#include <algorithm>
#include <cmath>

namespace Bundled {

using Imath::V3d;

namespace {

/// The sine of the angle between ring and sight below which the pointer goes along the edge: what
/// is farther off in the plane moves too fast there.
constexpr double kEdgeOn = 0.2;
/// How far the pointer turns it along the edge: what follows a turn goes along with all of it.
constexpr double kMostDegrees = 100.0 * 360.0;

} // namespace

RingTurn::RingTurn(const Grasp& begun, double radiusLength)
    : grasp(begun), radius(radiusLength),
      isEdgeOn(std::abs(begun.axis().dot(begun.space.sightTo(begun.place.centre))) < kEdgeOn) {}

std::optional<RingTurn> RingTurn::begin(const Grasp& grasp, double radius) {
    RingTurn turn(grasp, radius);
    if (turn.isEdgeOn) {
        const auto along = turn.alongEdge(grasp.ray);
        if (!along) {
            return std::nullopt;
        }
        const V3d axis = grasp.axis();
        const V3d toCamera = -grasp.space.sightTo(grasp.place.centre);
        turn.grasped = (toCamera - axis * toCamera.dot(axis)).normalized();
        turn.beginning = *along;
    } else {
        const auto arm = turn.armTo(grasp.ray);
        if (!arm) {
            return std::nullopt;
        }
        turn.grasped = turn.last = *arm;
    }
    return turn;
}

std::optional<V3d> RingTurn::armTo(const Ray& ray) const {
    const auto point = grasp.pointUnder(ray);
    if (!point || *point == grasp.place.centre) {
        return std::nullopt;
    }
    return (*point - grasp.place.centre).normalized();
}

std::optional<double> RingTurn::alongEdge(const Ray& ray) const {
    const V3d toCamera = -grasp.space.sightTo(grasp.place.centre);
    return alongAxis(ray, grasp.place.centre, grasp.axis().cross(toCamera).normalized());
}

double RingTurn::turnTo(const Ray& ray) {
    if (isEdgeOn) {
        if (const auto along = alongEdge(ray)) {
            degrees =
                std::clamp(toDegrees((*along - beginning) / radius), -kMostDegrees, kMostDegrees);
        }
    } else if (const auto arm = armTo(ray)) {
        degrees += angleAround(grasp.axis(), last, *arm);
        last = *arm;
    }
    return degrees;
}

} // namespace Bundled
