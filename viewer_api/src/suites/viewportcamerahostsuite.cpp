#include "viewportcamerahostsuite.h"

#include "triple.h"
#include "vlviewportcamerahost.h"
#include "vlviewporthost.h"

namespace ViewerAPI {

namespace {

VlViewportCameraHostStruct& cameraOf(void* host) {
    return *static_cast<VlViewportCameraHostStruct*>(host);
}

void writeVector(const Imath::V3d& vector, double* x, double* y, double* z) {
    *x = vector.x;
    *y = vector.y;
    *z = vector.z;
}

const double* getViewMatrix(void* host) {
    return cameraOf(host).getViewMatrix();
}

void setViewMatrix(void* host, const double* matrix) {
    cameraOf(host).setViewMatrix(matrix);
}

const double* getProjectionMatrix(void* host) {
    return cameraOf(host).getProjectionMatrix();
}

void setProjectionMatrix(void* host, const double* matrix) {
    cameraOf(host).setProjectionMatrix(matrix);
}

double getCenterOfInterest(void* host) {
    return cameraOf(host).getCenterOfInterest();
}

void setCenterOfInterest(void* host, double distance) {
    cameraOf(host).setCenterOfInterest(distance);
}

double getFOV(void* host) {
    return cameraOf(host).getFOV();
}

void setFOV(void* host, double degrees) {
    cameraOf(host).setFOV(degrees);
}

double getOrthographicWidth(void* host) {
    return cameraOf(host).getOrthographicWidth();
}

void setOrthographicWidth(void* host, double width) {
    cameraOf(host).setOrthographicWidth(width);
}

void getNearFar(void* host, double* nearPlane, double* farPlane) {
    cameraOf(host).getNearFar(*nearPlane, *farPlane);
}

void setNearFar(void* host, double nearPlane, double farPlane) {
    cameraOf(host).setNearFar(nearPlane, farPlane);
}

void getScreenWindow(void* host, double* left, double* right, double* bottom, double* top) {
    cameraOf(host).getScreenWindow(*left, *right, *bottom, *top);
}

void setScreenWindow(void* host, double left, double right, double bottom, double top) {
    cameraOf(host).setScreenWindow(left, right, bottom, top);
}

void getOrigin(void* host, double* x, double* y, double* z) {
    writeVector(cameraOf(host).getOrigin(), x, y, z);
}

void getDirection(void* host, double* x, double* y, double* z) {
    writeVector(cameraOf(host).getDirection(), x, y, z);
}

void getUp(void* host, double* x, double* y, double* z) {
    writeVector(cameraOf(host).getUp(), x, y, z);
}

void getLeft(void* host, double* x, double* y, double* z) {
    writeVector(cameraOf(host).getLeft(), x, y, z);
}

void getViewport(void* host, void** viewportHost, void** instance, const void** suite) {
    writeTriple(cameraOf(host).viewport, viewportHost, instance, suite);
}

int hasLocationPath(void* host) {
    return cameraOf(host).hasLocationPath();
}

const char* getLocationPath(void* host) {
    return cameraOf(host).getLocationPath();
}

void setLocationPath(void* host, const char* path) {
    cameraOf(host).setLocationPath(path);
}

int isInteractionDisabled(void* host) {
    return cameraOf(host).isInteractionDisabled;
}

void disableInteraction(void* host, int isDisabled) {
    cameraOf(host).disableInteraction(isDisabled != 0);
}

constexpr ViewportCameraHostSuite kSuite = {
    .getViewMatrix = getViewMatrix,
    .setViewMatrix = setViewMatrix,
    .getProjectionMatrix = getProjectionMatrix,
    .setProjectionMatrix = setProjectionMatrix,
    .getCenterOfInterest = getCenterOfInterest,
    .setCenterOfInterest = setCenterOfInterest,
    .getFOV = getFOV,
    .setFOV = setFOV,
    .getOrthographicWidth = getOrthographicWidth,
    .setOrthographicWidth = setOrthographicWidth,
    .getNearFar = getNearFar,
    .setNearFar = setNearFar,
    .getScreenWindow = getScreenWindow,
    .setScreenWindow = setScreenWindow,
    .getOrigin = getOrigin,
    .getDirection = getDirection,
    .getUp = getUp,
    .getLeft = getLeft,
    .getViewport = getViewport,
    .hasLocationPath = hasLocationPath,
    .getLocationPath = getLocationPath,
    .setLocationPath = setLocationPath,
    .isInteractionDisabled = isInteractionDisabled,
    .disableInteraction = disableInteraction,
};

} // namespace

const ViewportCameraHostSuite* getViewportCameraHostSuite() {
    return &kSuite;
}

} // namespace ViewerAPI
