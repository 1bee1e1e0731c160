#include "viewport/depthfitting.h"

#include "camera/depthrange.h"
#include "camera/tomatrix.h"
#include "scene/number.h"
#include "viewer_api/plugin/ViewerDelegateHost.h"
#include "viewer_api/plugin/ViewportCameraHost.h"

namespace Bundled {

namespace {

using ViewerPlugin::ViewportCameraHost;

/// The range with what the camera's location asks for in place of what was fitted.
DepthRange withOwnPlanes(DepthRange range, const ViewerPlugin::ViewportHost& viewport,
                         const ViewportCameraHost& camera, bool isPerspective) {
    // Not from the camera: the host keeps no distance under 0.001.
    const ViewerPlugin::ViewerDelegateHost delegate(viewport.getViewerDelegate().host);
    const VlAttribute::GroupAttribute geometry{
        delegate.getAttributes(camera.getLocationPath(), kVlViewerDelegateLookThrough)
            .getChildByName("geometry")};
    const double nearPlane = number(geometry, "near").value_or(range.nearPlane);
    const double farPlane = number(geometry, "far").value_or(range.farPlane);
    // Planes that no projection can have are a mistake in the scene, not a wish.
    const bool isUsable = nearPlane < farPlane && (!isPerspective || nearPlane > 0.0);
    return isUsable ? DepthRange{nearPlane, farPlane} : range;
}

} // namespace

void fitDepthRange(const ViewerPlugin::ViewportHost& viewport, const Imath::Box3d& bounds) {
    const ViewerPlugin::Triple active = viewport.getActiveCamera();
    if (!active) {
        return;
    }
    const ViewportCameraHost camera(active.host);
    const Imath::M44d projection = toMatrix(camera.getProjectionMatrix());
    // A zoom of 0 has no inverse: the host would take what is set for the projection without it.
    if (projection[0][0] == 0.0 || projection[1][1] == 0.0) {
        return;
    }
    const bool isPerspective = projection[2][3] != 0.0;
    DepthRange range = DepthRange::around(bounds, toMatrix(camera.getViewMatrix()), isPerspective,
                                          camera.getCenterOfInterest());
    if (camera.hasLocationPath()) {
        range = withOwnPlanes(range, viewport, camera, isPerspective);
    }
    const Imath::M44d fitted = withDepthRange(projection, range);
    if (fitted != projection) {
        camera.setProjectionMatrix(ViewportCameraHost::MatrixView(fitted.getValue(), 16));
    }
}

} // namespace Bundled
