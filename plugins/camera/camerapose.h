#pragma once

#include <Imath/ImathBox.h>
#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>

namespace Bundled {

/// Where a camera stands, and how it moves under the user's hands. Lengths in world units; places
/// in the picture run from -1 to 1, from left to right and from bottom to top.
///
/// What the user holds is in the plane of the centre of interest: it stays under the cursor.
struct CameraPose {
    /// How much of the picture what is framed fills, at most.
    static constexpr double kFill = 0.9;
    /// How far the camera stays away from what is framed, by its radius.
    static constexpr double kClearance = 0.25;
    /// How near to looking straight up or down orbiting comes.
    static constexpr double kSteepestDegrees = 89.0;

    /// Turns and moves, but does not scale.
    Imath::M44d cameraToWorld;
    /// Camera to clip space: a perspective or an orthographic one.
    Imath::M44d projection;
    /// Distance to the centre of interest, down -z.
    double distance = 20.0;
    /// Of an orthographic projection, which changes with it: `projection` is the one before.
    double orthographicWidth = 30.0;

    /// Where a location stands: its scale and shear are left out. One that is flat counts as not
    /// turned.
    static Imath::M44d rigid(const Imath::M44d& xform);

    [[nodiscard]] bool isPerspective() const noexcept { return projection[2][3] != 0.0; }
    [[nodiscard]] Imath::V3d centerOfInterest() const;
    /// What is seen at a place of the picture, in the plane of the centre of interest; world space.
    [[nodiscard]] Imath::V3d pointAt(const Imath::V2d& place) const;

    /// Turns around the centre of interest, by degrees: around the world's y axis,
    /// counter-clockwise seen from above, and upwards.
    void orbit(double yawDegrees, double pitchDegrees);
    /// Moves sideways, so that what was at one place of the picture is at the other.
    void pan(const Imath::V2d& from, const Imath::V2d& to);
    /// Comes nearer by a factor above 1, goes back by one below; what is at this place of the
    /// picture stays there, at whatever depth.
    void dolly(const Imath::V2d& place, double factor);
    /// Keeps the direction and steps back until the box, which is not empty, fits the picture. A
    /// point counts as a small box.
    void frame(const Imath::Box3d& box);

private:
    [[nodiscard]] Imath::V3d axis(int row) const {
        return {cameraToWorld[row][0], cameraToWorld[row][1], cameraToWorld[row][2]};
    }
    [[nodiscard]] Imath::V3d origin() const { return cameraToWorld.translation(); }
    void stand(const Imath::V3d& right, const Imath::V3d& back, const Imath::V3d& origin);
};

} // namespace Bundled
