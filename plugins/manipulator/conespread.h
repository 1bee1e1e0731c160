#pragma once

#include "manipulator/picturespace.h"

#include <optional>

namespace Bundled {

/// How far a cone opens that is dragged by its rim. Angles are those from the axis to the sides, in
/// degrees.
///
/// What is grasped moves in the plane through the axis that it is in, so that the side that it is
/// the end of stays under the pointer. Where that plane is seen too nearly from its edge, it moves
/// over a ball around the tip instead, and its end itself stays there; beyond the ball's outline
/// the nearest place of that counts.
class ConeSpread {
public:
    /// The axis is of length 1; `length` is that of the sides. A ray that misses the rim grasps it
    /// from where it is.
    ConeSpread(const Imath::V3d& tip, const Imath::V3d& axis, double length, double halfAngle,
               const Ray& grasping);

    /// With what is grasped where the ray points, also beyond what a cone can be; as before for a
    /// ray that points nowhere.
    double halfAngleAt(const Ray& ray);

private:
    /// Where a ray meets the ball, on the side that faces the camera or on the other, from the tip.
    [[nodiscard]] Imath::V3d onBall(const Ray& ray, bool isNearSide) const;
    [[nodiscard]] double angleTo(const Imath::V3d& fromTip) const;
    [[nodiscard]] std::optional<double> inPlane(const Ray& ray) const;

    Imath::V3d tip;
    Imath::V3d axis;
    double length;
    /// The ball's side that was grasped.
    bool isNear;
    /// Upright to the axis, to what was grasped.
    Imath::V3d across;
    bool isEdgeOn;
    /// From what the grasping ray pointed at to the cone.
    double offset;
    double last;
};

} // namespace Bundled
