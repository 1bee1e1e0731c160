/* What the host offers to a ViewportCamera plug-in: the data that every camera has.
 *
 * Matrices are 16 doubles for row vectors; a returned one points into the camera, is valid while it
 * lives and follows changes. The camera looks down its -z axis with y up. Setters that "tell the
 * plug-in" call its setDirty with CameraDirtyBits_DirtyParams at once. Places that are written must
 * not be null.
 */
#pragma once

#include "viewer_api/Handles.h"
#include "viewer_api/ThreadTags.h"

#ifdef __cplusplus
extern "C" {
#endif

#define VL_VIEWPORT_CAMERA_HOST_SUITE "ViewportCameraHost"
#define VL_VIEWPORT_CAMERA_HOST_SUITE_VERSION 2

typedef struct ViewportCameraHostSuite {
    /* World to camera.
     * [ui-thread] */
    const double* (*getViewMatrix)(VlViewportCameraHandle host);

    /* Sets world to camera; copied. Tells nobody.
     * [ui-thread] */
    void (*setViewMatrix)(VlViewportCameraHandle host, const double* matrix);

    /* Camera to clip space, with pan and zoom while the viewport has them active.
     * [ui-thread] */
    const double* (*getProjectionMatrix)(VlViewportCameraHandle host);

    /* Sets camera to clip space; copied. While pan and zoom are active the matrix is taken to
     * contain them. Tells nobody.
     * [ui-thread] */
    void (*setProjectionMatrix)(VlViewportCameraHandle host, const double* matrix);

    /* Distance from the camera to the centre of interest, along its direction; 20 at first.
     * [ui-thread] */
    double (*getCenterOfInterest)(VlViewportCameraHandle host);

    /* Tells the plug-in.
     * [ui-thread] */
    void (*setCenterOfInterest)(VlViewportCameraHandle host, double distance);

    /* Vertical field of view in degrees; 45 at first.
     * [ui-thread] */
    double (*getFOV)(VlViewportCameraHandle host);

    /* Tells the plug-in. Any value is taken.
     * [ui-thread] */
    void (*setFOV)(VlViewportCameraHandle host, double degrees);

    /* Width of an orthographic view in world units; 30 at first.
     * [ui-thread] */
    double (*getOrthographicWidth)(VlViewportCameraHandle host);

    /* Tells the plug-in. Zero is ignored.
     * [ui-thread] */
    void (*setOrthographicWidth)(VlViewportCameraHandle host, double width);

    /* Distances of the near and far plane, corrected so that near is at least 0.001 and far at
     * least near + 0.001; 0.1 and 100000 at first.
     * [ui-thread] */
    void (*getNearFar)(VlViewportCameraHandle host, double* nearPlane, double* farPlane);

    /* Stores both as they are. Tells the plug-in.
     * [ui-thread] */
    void (*setNearFar)(VlViewportCameraHandle host, double nearPlane, double farPlane);

    /* The part of the picture that is shown: -1, 1, -1, 1, as at first, is all of it.
     * [ui-thread] */
    void (*getScreenWindow)(VlViewportCameraHandle host, double* left, double* right,
                            double* bottom, double* top);

    /* Tells the plug-in. Any values are taken.
     * [ui-thread] */
    void (*setScreenWindow)(VlViewportCameraHandle host, double left, double right, double bottom,
                            double top);

    /* The camera's place in the world, from the inverse of the view matrix.
     * [ui-thread] */
    void (*getOrigin)(VlViewportCameraHandle host, double* x, double* y, double* z);

    /* Where the camera looks in the world; unit length, except that zero stays zero.
     * [ui-thread] */
    void (*getDirection)(VlViewportCameraHandle host, double* x, double* y, double* z);

    /* The camera's y axis in the world, as the matrix has it: not normalised.
     * [ui-thread] */
    void (*getUp)(VlViewportCameraHandle host, double* x, double* y, double* z);

    /* The cross product of up and direction.
     * [ui-thread] */
    void (*getLeft)(VlViewportCameraHandle host, double* x, double* y, double* z);

    /* Writes the viewport's host object, plug-in instance and plug-in suite; three nulls once the
     * viewport has ended, which its cameras outlive.
     * [ui-thread] */
    void (*getViewport)(VlViewportCameraHandle host, void** viewportHost, void** instance,
                        const void** suite);

    /* 1 when a location drives this camera.
     * [ui-thread] */
    int (*hasLocationPath)(VlViewportCameraHandle host);

    /* The location that drives this camera; null when none does. Valid until it is set again.
     * [ui-thread] */
    const char* (*getLocationPath)(VlViewportCameraHandle host);

    /* Names the location that drives this camera; copied; "" for none. Tells nobody.
     * [ui-thread] */
    void (*setLocationPath)(VlViewportCameraHandle host, const char* path);

    /* 1 when the user may not move this camera.
     * [ui-thread] */
    int (*isInteractionDisabled)(VlViewportCameraHandle host);

    /* Forbids (non-zero) or allows the user to move this camera. Tells nobody.
     * [ui-thread] */
    void (*disableInteraction)(VlViewportCameraHandle host, int disabled);
} ViewportCameraHostSuite;

#ifdef __cplusplus
}
#endif
