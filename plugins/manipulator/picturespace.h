#pragma once

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>

namespace Bundled {

/// A half line in world space, or a whole line.
struct Ray {
    Imath::V3d origin;
    /// Of length 1.
    Imath::V3d direction;
    /// Whether it goes on behind its origin.
    bool isWhole = false;
};

/// How a picture and the world belong together, for what is done with the mouse. Pixels count from
/// the top left; a pixel's place is its centre.
class PictureSpace {
public:
    /// Perspective or orthographic; matrices for row vectors, `worldToView` without shear.
    PictureSpace(const Imath::M44d& worldToView, const Imath::M44d& viewToClip, int width,
                 int height);

    /// What is seen at a pixel, which may lie outside of the picture. It begins at the camera; for
    /// an orthographic one, which sees also what is behind its plane, it is a whole line.
    [[nodiscard]] Ray rayAt(const Imath::V2i& pixel) const;

    /// The length in the world of a pixel's edge at a point's depth; 0 for a point that is not in
    /// front of the camera.
    [[nodiscard]] double pixelLengthAt(const Imath::V3d& point) const;

    /// From the camera to the point, of length 1.
    [[nodiscard]] Imath::V3d sightTo(const Imath::V3d& point) const;

    /// The camera's directions in the world, of length 1; it looks forward.
    [[nodiscard]] Imath::V3d right() const { return inWorld({1.0, 0.0, 0.0}); }
    [[nodiscard]] Imath::V3d up() const { return inWorld({0.0, 1.0, 0.0}); }
    [[nodiscard]] Imath::V3d forward() const { return inWorld({0.0, 0.0, -1.0}); }

    [[nodiscard]] bool isPerspective() const noexcept { return isPerspective(viewToClip); }
    [[nodiscard]] static bool isPerspective(const Imath::M44d& viewToClip) noexcept {
        return viewToClip[2][3] != 0.0;
    }

private:
    /// A direction, in length 1.
    [[nodiscard]] Imath::V3d inWorld(const Imath::V3d& viewDirection) const;

    Imath::M44d worldToView;
    Imath::M44d viewToWorld;
    Imath::M44d viewToClip;
    Imath::M44d clipToView;
    double width;
    double height;
};

} // namespace Bundled
