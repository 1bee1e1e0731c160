#pragma once

#include "manipulator/picturespace.h"

#include <Imath/ImathMatrix.h>

#include <optional>

namespace Bundled {

/// How a handle goes along with the mouse.
enum class Motion {
    Axis,    ///< along its axis
    Plane,   ///< in the plane of the gizmo's two other axes
    Ring,    ///< around its axis
    Picture, ///< in the plane of the picture
};

/// A handle of a gizmo.
struct GizmoPart {
    const char* name;
    const char* handlePlugin;
    Motion motion;
    /// 0, 1 or 2: which of the gizmo's axes the handle's x axis lies along. Less for a handle
    /// without an axis, which gets no local transform; of a ring, the direction to the camera takes
    /// its place.
    int axis;
};

/// Where a gizmo stands.
struct GizmoPlace {
    Imath::V3d centre;
    /// The directions of its axes, of length 1, in rows.
    Imath::M44d axes;
    /// Of its axes, in world units.
    double length = 0.0;

    [[nodiscard]] Imath::V3d axis(int index) const {
        return {axes[index][0], axes[index][1], axes[index][2]};
    }
    /// Upright on the two other axes.
    [[nodiscard]] Imath::V3d normal(int index) const {
        return axis((index + 1) % 3).cross(axis((index + 2) % 3)).normalized();
    }
};

/// A handle that the mouse has taken hold of.
struct Grasp {
    GizmoPart part;
    GizmoPlace place;
    Ray ray;
    PictureSpace space;

    /// The part's, also that of a ring without one.
    [[nodiscard]] Imath::V3d axis() const;
    /// What the ray points at on the part's axis or plane, in world space; nothing where a small
    /// move of the mouse would mean a boundless one. For a ring, in its plane.
    [[nodiscard]] std::optional<Imath::V3d> pointUnder(const Ray& pointing) const;
};

} // namespace Bundled
