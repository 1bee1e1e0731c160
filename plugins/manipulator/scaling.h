#pragma once

#include "manipulator/grasp.h"

#include <optional>

namespace Bundled {

/// By what factors the mouse sizes things with a handle that it has grasped. Along an axis or in a
/// plane, what is grasped stays under the pointer. In the plane of the picture things double as the
/// pointer goes right or up by the gizmo's length, and halve on the way back.
///
/// A factor never comes to 0 nor below: what was flat could not be sized again, and what was turned
/// inside out surprises.
class Scaling {
public:
    static constexpr double kSmallest = 0.001;
    /// Far more than a screen's width makes; the pointer may be anywhere while a button is held.
    static constexpr double kLargest = 1000.0;

    /// Nothing where the handle is grasped in the very middle.
    static std::optional<Scaling> begin(const Grasp& grasp);

    /// Along the gizmo's axes: with a step its multiples, at least one, up to the
    /// largest factor. A ray that points nowhere
    /// changes nothing.
    Imath::V3d scaleTo(const Ray& ray, double step);

private:
    Scaling(const Grasp& begun, const Imath::V3d& graspedPoint)
        : grasp(begun), grasped(graspedPoint) {}

    Grasp grasp;
    Imath::V3d grasped;
    Imath::V3d factors{1.0};
};

} // namespace Bundled
