#pragma once

#include "manipulator/picturespace.h"

namespace Bundled {

// How far a handle is there, for the eye and for the hand: 1, but less for one that can hardly be
// led as it is seen, and 0 for one that can't be, which would only cover others. Directions are of
// length 1.

/// From what on a handle can be grasped.
inline constexpr double kGraspedPresence = 0.5;

/// Along an axis: less where it points at the camera.
[[nodiscard]] double axisPresence(const PictureSpace& picture, const Imath::V3d& place,
                                  const Imath::V3d& axis);

/// In a plane: less where that is seen from its edge.
[[nodiscard]] double planePresence(const PictureSpace& picture, const Imath::V3d& place,
                                   const Imath::V3d& normal);

} // namespace Bundled
