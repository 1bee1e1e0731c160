#pragma once

#include <Imath/ImathBox.h>
#include <Imath/ImathMatrix.h>

namespace Bundled {

/// The distances from a camera between which things are drawn; lengths in world units.
struct DepthRange {
    double nearPlane = 0.1;
    double farPlane = 100000.0;

    /// Around a scene in these bounds (world space) and the ground far around it, for a camera with
    /// this view matrix, which does not scale. Empty bounds count as a scene of ten units around
    /// the origin.
    ///
    /// Of a perspective, near is positive and far at most 100,000 times as far, so that a depth
    /// buffer of 24 bits tells surfaces apart: what is nearer than a twentieth of the centre of
    /// interest may be cut off where the camera stands among things. But near is never farther than
    /// half that centre, unless nothing is there: in a scene that reaches too far for both, far
    /// surfaces are told apart less well. Otherwise the range reaches behind the camera too.
    static DepthRange around(const Imath::Box3d& bounds, const Imath::M44d& worldToView,
                             bool isPerspective, double centerOfInterest);
};

/// The same projection, camera to clip space for row vectors, with another range of depth. One
/// that is neither a perspective nor an orthographic one comes back as it is.
Imath::M44d withDepthRange(const Imath::M44d& projection, const DepthRange& range);

} // namespace Bundled
