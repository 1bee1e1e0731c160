#include "camera/scenecamera.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"
#include "viewer_api/plugin/ViewportHost.h"

#include <optional>
#include <span>

namespace Bundled {

namespace {

using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::StringAttribute;

/// The first number of a child, of whichever numeric kind.
std::optional<double> number(const GroupAttribute& group, const char* name) {
    const VlAttribute::Attribute child = group.getChildByName(name);
    if (const DoubleAttribute doubles{child}; doubles.getNumberOfValues() > 0) {
        return doubles.getValue(0.0);
    }
    if (const VlAttribute::FloatAttribute floats{child}; floats.getNumberOfValues() > 0) {
        return static_cast<double>(floats.getValue(0.0f));
    }
    if (const VlAttribute::IntAttribute ints{child}; ints.getNumberOfValues() > 0) {
        return static_cast<double>(ints.getValue(0));
    }
    return std::nullopt;
}

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
    const DoubleAttribute view{camera.getChildByName("viewMatrix")};
    if (const auto values = view.getNearestSample(0.0f); values.size() == 16) {
        host.setViewMatrix(values.first<16>());
    }
    if (const StringAttribute path{camera.getChildByName("locationPath")}; path.isValid()) {
        host.setLocationPath(path.getValue());
    }
    const GroupAttribute geometry{camera.getChildByName("geometry")};
    if (const auto fov = number(geometry, "fov")) {
        host.setFOV(*fov);
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
