#include "camera/scenecamera.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/StringAttribute.h"
#include "camera/camerapose.h"
#include "camera/tomatrix.h"
#include "scene/lightcone.h"
#include "scene/number.h"
#include "viewer_api/plugin/ViewerDelegateHost.h"
#include "viewer_api/plugin/ViewportHost.h"

#include <span>

namespace Bundled {

namespace {

using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::StringAttribute;

} // namespace

SceneCamera::SceneCamera(ViewerPlugin::ViewportCameraHost cameraHost,
                         VlViewportCameraType cameraType)
    : ViewportCameraPlugin(cameraHost), type(cameraType) {
    const ViewerPlugin::ViewportHost viewport(host.getViewport().host);
    width = viewport.getWidth();
    height = viewport.getHeight();
    updateProjection();
}

void SceneCamera::setViewportDimensions(int newWidth, int newHeight) {
    width = newWidth;
    height = newHeight;
    updateProjection();
}

void SceneCamera::setup(const GroupAttribute& camera) {
    ++settling;
    const StringAttribute path{camera.getChildByName("locationPath")};
    if (path.isValid()) {
        host.setLocationPath(path.getValue());
    }
    const DoubleAttribute view{camera.getChildByName("viewMatrix")};
    if (const auto values = view.getNearestSample(0.0f); values.size() == 16) {
        host.setViewMatrix(values.first<16>());
    } else if (path.isValid() && host.hasLocationPath()) {
        goToLocation();
    }
    const GroupAttribute geometry{camera.getChildByName("geometry")};
    const GroupAttribute light{camera.getChildByName("light")};
    if (const auto fov = number(geometry, "fov")) {
        host.setFOV(*fov);
    } else if (light.isValid()) {
        host.setFOV(lightConeAngle(light));
    }
    if (const auto orthographicWidth = number(geometry, "orthographicWidth")) {
        host.setOrthographicWidth(*orthographicWidth);
    }
    if (const auto distance = number(geometry, "centerOfInterest")) {
        host.setCenterOfInterest(*distance);
    }
    auto planes = host.getNearFar();
    planes.nearPlane = number(geometry, "near").value_or(planes.nearPlane);
    planes.farPlane = number(geometry, "far").value_or(planes.farPlane);
    host.setNearFar(planes);
    auto window = host.getScreenWindow();
    window.left = number(geometry, "left").value_or(window.left);
    window.right = number(geometry, "right").value_or(window.right);
    window.bottom = number(geometry, "bottom").value_or(window.bottom);
    window.top = number(geometry, "top").value_or(window.top);
    host.setScreenWindow(window);
    --settling;
    updateProjection();
}

void SceneCamera::goToLocation() {
    const ViewerPlugin::ViewportHost viewport(host.getViewport().host);
    const ViewerPlugin::ViewerDelegateHost delegate(viewport.getViewerDelegate().host);
    const DoubleAttribute xform =
        delegate.getWorldXform(host.getLocationPath(), kVlViewerDelegateLookThrough);
    const auto values = xform.getNearestSample(0.0f);
    if (values.size() != 16) {
        return;
    }
    const Imath::M44d view = CameraPose::rigid(toMatrix(values.first<16>())).inverse();
    host.setViewMatrix(ViewerPlugin::ViewportCameraHost::MatrixView(view.getValue(), 16));
}

GroupAttribute SceneCamera::asAttribute() {
    const auto planes = host.getNearFar();
    const auto window = host.getScreenWindow();
    const bool isPerspective = type == kVlViewportCameraTypePerspective;
    VlAttribute::GroupBuilder builder;
    builder.set("viewMatrix", DoubleAttribute(std::span<const double>(host.getViewMatrix()), 4));
    builder.set("locationPath", StringAttribute(host.getLocationPath()));
    builder.set("geometry.projection",
                StringAttribute(isPerspective ? "perspective" : "orthographic"));
    builder.set("geometry.fov", DoubleAttribute(host.getFOV()));
    builder.set("geometry.near", DoubleAttribute(planes.nearPlane));
    builder.set("geometry.far", DoubleAttribute(planes.farPlane));
    builder.set("geometry.orthographicWidth", DoubleAttribute(host.getOrthographicWidth()));
    builder.set("geometry.centerOfInterest", DoubleAttribute(host.getCenterOfInterest()));
    builder.set("geometry.left", DoubleAttribute(window.left));
    builder.set("geometry.right", DoubleAttribute(window.right));
    builder.set("geometry.bottom", DoubleAttribute(window.bottom));
    builder.set("geometry.top", DoubleAttribute(window.top));
    return builder.build();
}

void SceneCamera::setDirty(int dirtyBits) {
    if ((dirtyBits & CameraDirtyBits_DirtyParams) != 0 && settling == 0) {
        updateProjection();
    }
}

Lens SceneCamera::getLens() const {
    const auto planes = host.getNearFar();
    const auto window = host.getScreenWindow();
    Lens lens;
    lens.fov = host.getFOV();
    lens.orthographicWidth = host.getOrthographicWidth();
    lens.nearPlane = planes.nearPlane;
    lens.farPlane = planes.farPlane;
    lens.left = window.left;
    lens.right = window.right;
    lens.bottom = window.bottom;
    lens.top = window.top;
    lens.aspect = height > 0 ? static_cast<double>(width) / height : 1.0;
    return lens;
}

void SceneCamera::updateProjection() {
    const Lens lens = getLens();
    const Imath::M44d projection = type == kVlViewportCameraTypePerspective
                                       ? perspectiveProjection(lens)
                                       : orthographicProjection(lens);
    host.setProjectionMatrix(
        ViewerPlugin::ViewportCameraHost::MatrixView(projection.getValue(), 16));
}

} // namespace Bundled
