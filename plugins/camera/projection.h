#pragma once

#include <Imath/ImathMatrix.h>

namespace Bundled {

/// What a projection is made of. Lengths in world units.
struct Lens {
    /// Vertical, in degrees.
    double fov = 45.0;
    double orthographicWidth = 30.0;
    double nearPlane = 0.1;
    double farPlane = 100000.0;
    /// The part of the picture that is shown; -1 to 1 on both axes is all of it.
    double left = -1.0;
    double right = 1.0;
    double bottom = -1.0;
    double top = 1.0;
    /// Width over height.
    double aspect = 1.0;
};

/// Camera to clip space, for row vectors: the camera looks down -z, and depth goes from -1 (near)
/// to 1 (far). The field of view is kept within 0.01 and 179.9 degrees; an empty screen window and
/// an aspect that is not positive count as the whole and as 1.
Imath::M44d perspectiveProjection(const Lens& lens);

/// As above; the whole picture is `orthographicWidth` wide. A negative width mirrors; 0 counts
/// as 1.
Imath::M44d orthographicProjection(const Lens& lens);

} // namespace Bundled
