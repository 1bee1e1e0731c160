#pragma once

#include "camera/camerapose.h"
#include "viewer_api/plugin/ViewportCameraHost.h"
#include "viewer_api/plugin/ViewportHost.h"

#include <optional>

namespace Bundled {

/// Moves a viewport's active camera, as the user wants it. Pixels count from the top left of the
/// window. All of it does nothing without an active camera, and for one whose interaction is
/// disabled. [ui-thread]
class CameraController {
public:
    explicit CameraController(ViewerPlugin::ViewportHost viewportHost) : host(viewportHost) {}

    /// A drag over the height of the window turns half around, so that the scene follows the mouse.
    void orbit(const Imath::V2i& fromPx, const Imath::V2i& toPx) const;
    /// What is at one pixel comes to the other.
    void pan(const Imath::V2i& fromPx, const Imath::V2i& toPx) const;
    /// Comes nearer by a factor, towards what is at a pixel.
    void dolly(const Imath::V2i& atPx, double factor) const;
    /// Brings a box in world space into the picture. An empty one is ignored.
    void frame(const Imath::Box3d& box) const;

private:
    [[nodiscard]] std::optional<ViewerPlugin::ViewportCameraHost> movableCamera() const;
    [[nodiscard]] Imath::V2d placeOf(const Imath::V2i& pixel) const;
    /// Applies `move(CameraPose&)` to the active camera.
    template <typename Move>
    void apply(Move move) const;

    const ViewerPlugin::ViewportHost host;
};

} // namespace Bundled
