#include "vlviewportcamerahost.h"

#include "plugininstance.h"
#include "vlviewporthost.h"

#include "viewer_api/ViewportCameraPluginSuite.h"

#include <algorithm>

namespace ViewerAPI {

namespace {

// Below these a projection loses its depth range.
constexpr double kSmallestNear = 0.001;
constexpr double kSmallestDepth = 0.001;

Imath::M44d matrixFrom(const double* values) {
    Imath::M44d matrix;
    std::copy_n(values, 16, matrix.getValue());
    return matrix;
}

// The first three entries of a row.
Imath::V3d rowOf(const Imath::M44d& matrix, int row) {
    return {matrix[row][0], matrix[row][1], matrix[row][2]};
}

} // namespace

VlViewportCameraHostStruct::VlViewportCameraHostStruct(const std::string& pluginName,
                                                       VlViewportHostStruct* viewport_)
    : HostObject(viewport_), viewport(viewport_) {
    createPluginInstance(PluginKind::ViewportCamera, pluginName, this, pluginSuite, pluginHandle);
}

VlViewportCameraHostStruct::~VlViewportCameraHostStruct() {
    endLife();
    for (VlViewportHostStruct* other : activeIn_) {
        other->activeCamera = nullptr;
    }
    destroyPluginInstance(pluginSuite, pluginHandle);
}

void VlViewportCameraHostStruct::leaveViewport() {
    viewport = nullptr;
    setHolder(nullptr);
}

const double* VlViewportCameraHostStruct::getViewMatrix() const {
    return viewMatrix.getValue();
}

void VlViewportCameraHostStruct::setViewMatrix(const double* matrix) {
    viewMatrix = matrixFrom(matrix);
}

const double* VlViewportCameraHostStruct::getProjectionMatrix() const {
    const bool isPanZoomed = viewport && viewport->isPanAndZoomActive;
    return (isPanZoomed ? panZoomProjectionMatrix : projectionMatrix).getValue();
}

void VlViewportCameraHostStruct::setProjectionMatrix(const double* matrix) {
    if (viewport && viewport->isPanAndZoomActive) {
        panZoomProjectionMatrix = matrixFrom(matrix);
        projectionMatrix = panZoomProjectionMatrix * panZoomMatrix.inverse();
    } else {
        projectionMatrix = matrixFrom(matrix);
        updatePanZoomProjection();
    }
}

void VlViewportCameraHostStruct::updatePanZoomProjection() {
    if (!viewport) {
        return;
    }
    panZoomMatrix.makeIdentity();
    panZoomMatrix[0][0] = panZoomMatrix[1][1] = viewport->zoom;
    panZoomMatrix.translate(
        Imath::V3d(-viewport->horizontalOffset, -viewport->verticalOffset, 0.0));
    panZoomProjectionMatrix = projectionMatrix * panZoomMatrix;
}

void VlViewportCameraHostStruct::setCenterOfInterest(double distance) {
    centerOfInterest = distance;
    setDirty(CameraDirtyBits_DirtyParams);
}

void VlViewportCameraHostStruct::setFOV(double degrees) {
    fov = degrees;
    setDirty(CameraDirtyBits_DirtyParams);
}

void VlViewportCameraHostStruct::setOrthographicWidth(double width) {
    if (width == 0.0) {
        return;
    }
    orthographicWidth = width;
    setDirty(CameraDirtyBits_DirtyParams);
}

void VlViewportCameraHostStruct::getNearFar(double& nearOut, double& farOut) const {
    nearOut = std::max(near, kSmallestNear);
    farOut = std::max(far, nearOut + kSmallestDepth);
}

void VlViewportCameraHostStruct::setNearFar(double nearPlane, double farPlane) {
    near = nearPlane;
    far = farPlane;
    setDirty(CameraDirtyBits_DirtyParams);
}

void VlViewportCameraHostStruct::getScreenWindow(double& left, double& right, double& bottom,
                                                 double& top) const {
    left = screenWindowLeft;
    right = screenWindowRight;
    bottom = screenWindowBottom;
    top = screenWindowTop;
}

void VlViewportCameraHostStruct::setScreenWindow(double left, double right, double bottom,
                                                 double top) {
    screenWindowLeft = left;
    screenWindowRight = right;
    screenWindowBottom = bottom;
    screenWindowTop = top;
    setDirty(CameraDirtyBits_DirtyParams);
}

Imath::V3d VlViewportCameraHostStruct::getOrigin() const {
    return rowOf(viewMatrix.inverse(), 3);
}

Imath::V3d VlViewportCameraHostStruct::getDirection() const {
    return -rowOf(viewMatrix.inverse(), 2).normalized();
}

Imath::V3d VlViewportCameraHostStruct::getUp() const {
    return rowOf(viewMatrix.inverse(), 1);
}

Imath::V3d VlViewportCameraHostStruct::getLeft() const {
    return getUp().cross(getDirection());
}

const char* VlViewportCameraHostStruct::getLocationPath() const {
    return hasLocationPath() ? locationPath.c_str() : nullptr;
}

void VlViewportCameraHostStruct::setLocationPath(const char* path) {
    // The caller may hand back what getLocationPath gave.
    std::string copy(path ? path : "");
    locationPath.swap(copy);
}

void VlViewportCameraHostStruct::disableInteraction(bool isDisabled) {
    isInteractionDisabled = isDisabled;
}

void VlViewportCameraHostStruct::setDirty(int dirtyBits) {
    HostCall call(*this);
    pluginSuite->setDirty(pluginHandle, dirtyBits);
}

} // namespace ViewerAPI
