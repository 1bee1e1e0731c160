#pragma once

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>

/// Cameras for tests of what is done with the mouse: matrices for row vectors.
namespace TestCameras {

constexpr int kWidth = 400;
constexpr int kHeight = 200;
constexpr double kNear = 0.1;
constexpr double kFar = 1000.0;

/// A picture of 90 degrees over its height.
inline Imath::M44d perspective() {
    const double aspect = static_cast<double>(kWidth) / kHeight;
    Imath::M44d matrix(0.0);
    matrix[0][0] = 1.0 / aspect;
    matrix[1][1] = 1.0;
    matrix[2][2] = (kFar + kNear) / (kNear - kFar);
    matrix[2][3] = -1.0;
    matrix[3][2] = 2.0 * kFar * kNear / (kNear - kFar);
    matrix[3][3] = 0.0;
    return matrix;
}

/// A picture of 20 units in width.
inline Imath::M44d orthographic() {
    Imath::M44d matrix;
    matrix[0][0] = 2.0 / 20.0;
    matrix[1][1] = 2.0 / 10.0;
    matrix[2][2] = 2.0 / (kNear - kFar);
    matrix[3][2] = (kFar + kNear) / (kNear - kFar);
    return matrix;
}

/// Where a point of the world is seen, in fractions of pixels from the top left.
inline Imath::V2d seenAt(const Imath::M44d& view, const Imath::M44d& projection,
                         const Imath::V3d& point) {
    const Imath::V3d clip = point * (view * projection);
    return {(clip.x + 1.0) / 2.0 * kWidth, (1.0 - clip.y) / 2.0 * kHeight};
}

} // namespace TestCameras
