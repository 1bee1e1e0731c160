#include "manipulator/scaling.h"

#include "manipulator/dragmath.h"

#include <algorithm>
#include <cmath>

namespace Bundled {

using Imath::V3d;

namespace {

/// The shortest arm, in lengths of the gizmo: a shorter one would make factors of a hand's tremble.
constexpr double kShortestArm = 0.01;

} // namespace

std::optional<Scaling> Scaling::begin(const Grasp& grasp) {
    const auto point = grasp.pointUnder(grasp.ray);
    const bool hasArm =
        point && (*point - grasp.place.centre).length() > kShortestArm * grasp.place.length;
    if (!point || (grasp.part.motion != Motion::Picture && !hasArm)) {
        return std::nullopt;
    }
    return Scaling(grasp, *point);
}

V3d Scaling::scaleTo(const Ray& ray, double step) {
    const auto point = grasp.pointUnder(ray);
    if (!point) {
        return factors;
    }
    const GizmoPlace& place = grasp.place;
    double factor = 0.0;
    if (grasp.part.motion == Motion::Picture) {
        const V3d way = *point - grasped;
        factor = std::exp2(way.dot(grasp.space.right() + grasp.space.up()) / place.length);
    } else {
        const V3d arm = grasped - place.centre;
        factor = (*point - place.centre).dot(arm) / arm.length2();
    }
    factor = std::max(step > 0.0 ? step : kSmallest, snapped(factor, step));
    factor = std::min(kLargest, factor);
    for (int i = 0; i < 3; ++i) {
        const bool isSized = grasp.part.motion == Motion::Picture ||
                             (grasp.part.motion == Motion::Axis) == (i == grasp.part.axis);
        factors[i] = isSized ? factor : 1.0;
    }
    return factors;
}

} // namespace Bundled
