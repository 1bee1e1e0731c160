#include "viewport/cameracontroller.h"

#include "camera/tomatrix.h"

#include <algorithm>

namespace Bundled {

namespace {

constexpr double kOrbitDegrees = 180.0;

} // namespace

std::optional<ViewerPlugin::ViewportCameraHost> CameraController::movableCamera() const {
    if (const ViewerPlugin::Triple active = host.getActiveCamera()) {
        const ViewerPlugin::ViewportCameraHost camera(active.host);
        if (!camera.isInteractionDisabled()) {
            return camera;
        }
    }
    return std::nullopt;
}

Imath::V2d CameraController::placeOf(const Imath::V2i& pixel) const {
    return {2.0 * pixel.x / std::max(1, host.getWidth()) - 1.0,
            1.0 - 2.0 * pixel.y / std::max(1, host.getHeight())};
}

template <typename Move>
void CameraController::apply(Move move) const {
    const auto camera = movableCamera();
    if (!camera) {
        return;
    }
    CameraPose pose;
    pose.cameraToWorld = CameraPose::rigid(toMatrix(camera->getViewMatrix()).inverse());
    pose.projection = toMatrix(camera->getProjectionMatrix());
    // A picture zoomed to nothing has no place to move to.
    if (pose.projection[0][0] == 0.0 || pose.projection[1][1] == 0.0) {
        return;
    }
    if (const double distance = camera->getCenterOfInterest(); distance > 0.0) {
        pose.distance = distance;
    }
    pose.orthographicWidth = camera->getOrthographicWidth();
    move(pose);
    const Imath::M44d view = pose.cameraToWorld.inverse();
    camera->setViewMatrix(ViewerPlugin::ViewportCameraHost::MatrixView(view.getValue(), 16));
    camera->setCenterOfInterest(pose.distance);
    if (!pose.isPerspective()) {
        camera->setOrthographicWidth(pose.orthographicWidth);
    }
    host.setDirty(true);
}

void CameraController::orbit(const Imath::V2i& fromPx, const Imath::V2i& toPx) const {
    const double degreesPerPixel = kOrbitDegrees / std::max(1, host.getHeight());
    apply([&](CameraPose& pose) {
        pose.orbit((fromPx.x - toPx.x) * degreesPerPixel, (toPx.y - fromPx.y) * degreesPerPixel);
    });
}

void CameraController::pan(const Imath::V2i& fromPx, const Imath::V2i& toPx) const {
    apply([&](CameraPose& pose) { pose.pan(placeOf(fromPx), placeOf(toPx)); });
}

void CameraController::dolly(const Imath::V2i& atPx, double factor) const {
    apply([&](CameraPose& pose) { pose.dolly(placeOf(atPx), factor); });
}

void CameraController::frame(const Imath::Box3d& box) const {
    if (!box.isEmpty()) {
        apply([&](CameraPose& pose) { pose.frame(box); });
    }
}

} // namespace Bundled
