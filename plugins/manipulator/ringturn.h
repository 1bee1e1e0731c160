#pragma once

#include "manipulator/grasp.h"

#include <optional>

namespace Bundled {

/// How far the mouse turns a ring that it has grasped. Turns are counted.
///
/// What is grasped stays under the pointer, in the ring's plane. A ring that is seen from its edge
/// is turned like a wheel by its rim: by one radian as the pointer goes its radius along the edge,
/// and a hundred turns at most.
class RingTurn {
public:
    /// Nothing where no direction is grasped. `radius` is in world units.
    static std::optional<RingTurn> begin(const Grasp& grasp, double radius);

    /// From the centre to what was grasped; of length 1, upright to the axis.
    [[nodiscard]] const Imath::V3d& arm() const noexcept { return grasped; }

    /// The degrees so far, counter-clockwise seen from the axis's tip. A ray that points nowhere
    /// changes nothing.
    double turnTo(const Ray& ray);

private:
    RingTurn(const Grasp& begun, double radiusLength);

    /// From the centre to what the ray points at in the ring's plane; of length 1.
    [[nodiscard]] std::optional<Imath::V3d> armTo(const Ray& ray) const;
    /// Where the ray points at along the edge.
    [[nodiscard]] std::optional<double> alongEdge(const Ray& ray) const;

    Grasp grasp;
    double radius;
    bool isEdgeOn;
    Imath::V3d grasped;
    /// Where the pointer was last, and at first along the edge.
    Imath::V3d last;
    double beginning = 0.0;
    double degrees = 0.0;
};

} // namespace Bundled
