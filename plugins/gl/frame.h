#pragma once

#include "scene/drawoptions.h"

#include <Imath/ImathMatrix.h>

namespace Bundled {

/// The camera and switches of one picture. Matrices are for row vectors.
struct Frame {
    Imath::M44f worldToView;
    Imath::M44f viewToClip;
    bool cullBackFaces = false;
    /// How locations are drawn that don't say so themselves.
    DisplayMode displayMode = DisplayMode::Shaded;
    /// Quick light, as a draft has it.
    bool isDraft = false;

    /// From the 16 doubles that the host gives.
    static Imath::M44f matrix(const double* values);
    [[nodiscard]] Imath::M44d worldToClip() const {
        return Imath::M44d(worldToView) * Imath::M44d(viewToClip);
    }
    [[nodiscard]] bool isPerspective() const noexcept { return viewToClip[2][3] != 0.0f; }
    /// How far from a perspective camera the corners of what it sees of the near plane are: nothing
    /// that is farther away is cut off by it.
    [[nodiscard]] double nearReach() const;
    /// Where the camera is, in world space; for a perspective one.
    [[nodiscard]] Imath::V3d eye() const { return Imath::V3d(worldToView.inverse().translation()); }
};

} // namespace Bundled
