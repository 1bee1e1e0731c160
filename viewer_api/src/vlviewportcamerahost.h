#pragma once

#include "hostobject.h"

#include <ImathMatrix.h>
#include <ImathVec.h>

#include <string>
#include <vector>

struct ViewportCameraPluginSuite;

namespace ViewerAPI {

struct VlViewportHostStruct;

/// The host side of one ViewportCamera plug-in instance: the data that every camera has in common.
/// The plug-in computes its projection from them and is told of changes by its `setDirty` entry.
///
/// Matrices are 16 doubles in row-vector order: a point stands on the left, the translation in the
/// last row. A camera looks down its negative z axis, y is up. Angles are in degrees, lengths in
/// scene units. [ui-thread]
struct VlViewportCameraHostStruct : public HostObject {
    /// Loads the plug-in. Throws std::runtime_error when it can't be had or its `create` answers
    /// null; what the plug-in throws passes through.
    VlViewportCameraHostStruct(const std::string& pluginName, VlViewportHostStruct* viewport);
    /// Calls the plug-in's `destroy`. A viewport in which the camera is active has none afterwards.
    ~VlViewportCameraHostStruct() override;

    /// World to camera. The pointer stays valid while the camera lives.
    [[nodiscard]] const double* getViewMatrix() const;
    /// Stores the matrix; the plug-in is not told.
    void setViewMatrix(const double* matrix);
    /// With pan and zoom applied while these are active in the viewport. The pointer stays valid
    /// while the camera lives; which of two matrices it points to changes with pan and zoom.
    [[nodiscard]] const double* getProjectionMatrix() const;
    /// Sets what `getProjectionMatrix` gives: while pan and zoom are active, the matrix without
    /// them is found by the inverse of the pan-and-zoom matrix, the identity where that is
    /// singular. The plug-in is not told.
    void setProjectionMatrix(const double* matrix);

    /// Distance from the camera to its centre of interest. The setters from here to
    /// `setScreenWindow` tell the plug-in by `setDirty(CameraDirtyBits_DirtyParams)`.
    [[nodiscard]] double getCenterOfInterest() const { return centerOfInterest; }
    void setCenterOfInterest(double distance);
    [[nodiscard]] double getFOV() const { return fov; }
    void setFOV(double degrees);
    [[nodiscard]] double getOrthographicWidth() const { return orthographicWidth; }
    /// A width of zero is ignored altogether.
    void setOrthographicWidth(double width);
    /// The stored planes, corrected so that a projection can be made of them: near is at least
    /// 0.001, far at least near plus 0.001.
    void getNearFar(double& nearOut, double& farOut) const;
    /// Stores what it is given.
    void setNearFar(double nearPlane, double farPlane);
    void getScreenWindow(double& left, double& right, double& bottom, double& top) const;
    void setScreenWindow(double left, double right, double bottom, double top);

    /// The camera's position and axes in the world, from the inverse of the view matrix (the
    /// identity where that is singular). The direction is normalised unless its length is zero,
    /// up stands as it comes, and left is up x direction.
    [[nodiscard]] Imath::V3d getOrigin() const;
    [[nodiscard]] Imath::V3d getDirection() const;
    [[nodiscard]] Imath::V3d getUp() const;
    [[nodiscard]] Imath::V3d getLeft() const;

    [[nodiscard]] bool hasLocationPath() const { return !locationPath.empty(); }
    /// The location that drives this camera; null when none does. Valid until it is set again.
    [[nodiscard]] const char* getLocationPath() const;
    /// Null and the empty text both mean none. The plug-in is not told.
    void setLocationPath(const char* path);
    /// The plug-in is not told. The answer is the field `isInteractionDisabled`.
    void disableInteraction(bool isDisabled);

    /// Tells the plug-in what changed, as CameraDirtyBits.
    void setDirty(int dirtyBits);

    VlViewportHostStruct* viewport; ///< borrowed; null once the viewport has ended
    const ViewportCameraPluginSuite* pluginSuite = nullptr;
    void* pluginHandle = nullptr;
    Imath::M44d viewMatrix;
    Imath::M44d projectionMatrix; ///< without pan and zoom
    Imath::M44d panZoomMatrix;    ///< of the last update
    Imath::M44d panZoomProjectionMatrix;
    double centerOfInterest = 20.0;
    double fov = 45.0;
    double orthographicWidth = 30.0;
    double near = 0.1;
    double far = 100000.0;
    double screenWindowLeft = -1.0;
    double screenWindowRight = 1.0;
    double screenWindowTop = 1.0;
    double screenWindowBottom = -1.0;
    std::string locationPath;
    bool isInteractionDisabled = false;

private:
    friend struct VlViewportHostStruct;

    // Applies the viewport's pan and zoom to the projection, whether they are active or not. The
    // viewport calls it when the camera becomes active and when a value changes.
    void updatePanZoomProjection();

    // The camera outlives its viewport, which takes itself out of it.
    void leaveViewport();

    // Any viewport may take any camera as its active one, so a camera knows where it is active.
    std::vector<VlViewportHostStruct*> activeIn_;
};

} // namespace ViewerAPI
