/* What the host offers to a Viewport plug-in.
 *
 * Texts are borrowed for the call; a returned text is never null and stays valid while the object
 * that bears it does, a layer's name until the list of layers changes. A triple (host object,
 * plug-in instance, plug-in suite) is always written, with three nulls when the object does not
 * exist; the three places must not be null. A returned attribute handle comes with one reference
 * for the caller; one passed in stays the caller's. Booleans go in as any int (non-zero: true) and
 * come out as 0 or 1. Pixel coordinates have their origin at the top left of the window, with y
 * downwards.
 */
#pragma once

#include "viewer_api/Handles.h"
#include "viewer_api/ThreadTags.h"

#ifdef __cplusplus
extern "C" {
#endif

#define VL_VIEWPORT_HOST_SUITE "ViewportHost"
#define VL_VIEWPORT_HOST_SUITE_VERSION 3

typedef struct ViewportHostSuite {
    /* The name that the viewport was created with.
     * [ui-thread] */
    const char* (*getName)(VlViewportHandle host);

    /* The owning delegate; never nulls.
     * [ui-thread] */
    void (*getViewerDelegate)(VlViewportHandle host, void** delegateHost, void** instance,
                              const void** suite);

    /* The active camera, if one was made active.
     * [ui-thread] */
    void (*getActiveCamera)(VlViewportHandle host, void** cameraHost, void** instance,
                            const void** suite);

    /* Creates a camera of this plug-in and appends it; writes its triple. A camera of the same name
     * is replaced, as the active camera too. A plug-in that fails to load comes as an exception.
     * [ui-thread] */
    void (*addCamera)(VlViewportHandle host, const char* pluginName, const char* name,
                      void** cameraHost, void** instance, const void** suite);

    /* Destroys this camera. The active camera and unknown ones are left alone.
     * [ui-thread] */
    void (*removeCamera)(VlViewportHandle host, VlViewportCameraHandle camera);

    /* Makes this camera the one that draws; null for none.
     * [ui-thread] */
    void (*setActiveCamera)(VlViewportHandle host, VlViewportCameraHandle camera);

    /* The camera of this name.
     * [ui-thread] */
    void (*getCameraByName)(VlViewportHandle host, const char* name, void** cameraHost,
                            void** instance, const void** suite);

    /* The camera with this index.
     * [ui-thread] */
    void (*getCameraByIndex)(VlViewportHandle host, uint32_t index, void** cameraHost,
                             void** instance, const void** suite);

    /* As removeCamera, by name.
     * [ui-thread] */
    void (*removeCameraByName)(VlViewportHandle host, const char* name);

    /* As removeCamera, by index. An index equal to the count comes as an out-of-range exception; a
     * larger one does nothing.
     * [ui-thread] */
    void (*removeCameraByIndex)(VlViewportHandle host, uint32_t index);

    /* The number of cameras.
     * [ui-thread] */
    uint32_t (*getNumberOfCameras)(VlViewportHandle host);

    /* The name of the camera with this index, or "".
     * [ui-thread] */
    const char* (*getCameraName)(VlViewportHandle host, uint32_t index);

    /* The index of the camera of this name, or -1.
     * [ui-thread] */
    int (*getCameraIndex)(VlViewportHandle host, const char* name);

    /* Passes an interaction event, a GroupAttribute, to the viewport's plug-in; 1 when handled, 0
     * also while the viewport is not set up.
     * [ui-thread] */
    int (*event)(VlViewportHandle host, VlAttributeStruct* event);

    /* Draws through the viewport's plug-in and swaps buffers; the context stays current.
     * [ui-thread] */
    void (*draw)(VlViewportHandle host);

    /* Takes over a new size in pixels and tells plug-in, layers and picking surfaces.
     * [ui-thread] */
    void (*resize)(VlViewportHandle host, int width, int height);

    /* Width in pixels; 0 before the first resize.
     * [ui-thread] */
    int (*getWidth)(VlViewportHandle host);

    /* Height in pixels; 0 before the first resize.
     * [ui-thread] */
    int (*getHeight)(VlViewportHandle host);

    /* Whether a new drawing is wanted.
     * [ui-thread] */
    int (*isDirty)(VlViewportHandle host);

    /* Says that a new drawing is wanted, or no longer. Drawing does not reset it.
     * [ui-thread] */
    void (*setDirty)(VlViewportHandle host, int dirty);

    /* Creates a layer of this plug-in and appends it; writes its triple. On a viewport that is set
     * up the layer is set up at once, after which no context is current. A plug-in that fails to
     * load comes as an exception.
     * [ui-thread] */
    void (*addLayer)(VlViewportHandle host, const char* pluginName, const char* name,
                     void** layerHost, void** instance, const void** suite);

    /* As addLayer, before the layer with this index; an index above the count creates nothing and
     * writes nulls.
     * [ui-thread] */
    void (*insertLayer)(VlViewportHandle host, const char* pluginName, const char* name,
                        uint32_t index, void** layerHost, void** instance, const void** suite);

    /* The first layer of this name.
     * [ui-thread] */
    void (*getLayer)(VlViewportHandle host, const char* name, void** layerHost, void** instance,
                     const void** suite);

    /* The layer with this index.
     * [ui-thread] */
    void (*getLayerByIndex)(VlViewportHandle host, uint32_t index, void** layerHost,
                            void** instance, const void** suite);

    /* Cleans up and destroys the first layer of this name.
     * [ui-thread] */
    void (*removeLayer)(VlViewportHandle host, const char* name);

    /* Cleans up and destroys the layer with this index.
     * [ui-thread] */
    void (*removeLayerByIndex)(VlViewportHandle host, uint32_t index);

    /* The number of layers.
     * [ui-thread] */
    uint32_t (*getNumberOfLayers)(VlViewportHandle host);

    /* The name of the layer with this index, or "". Valid until the list of layers changes.
     * [ui-thread] */
    const char* (*getLayerName)(VlViewportHandle host, uint32_t index);

    /* The index of the first layer of this name, or -1.
     * [ui-thread] */
    int (*getLayerIndex)(VlViewportHandle host, const char* name);

    /* World to camera, 16 doubles for row vectors, of the active camera, or the identity without
     * one. Valid while that camera (the viewport) lives; it follows changes.
     * [ui-thread] */
    const double* (*getViewMatrix)(VlViewportHandle host);

    /* Camera to clip space, as getViewMatrix, with pan and zoom where that is active.
     * [ui-thread] */
    const double* (*getProjectionMatrix)(VlViewportHandle host);

    /* Activates a manipulator of this plug-in on these locations (a StringAttribute; null: none)
     * and tells the application; no action when one of this plug-in is active already. A plug-in
     * that fails to load comes as an exception.
     * [ui-thread] */
    void (*activateManipulator)(VlViewportHandle host, const char* pluginName,
                                VlAttributeStruct* locationPaths);

    /* Destroys the active manipulator of this plug-in and tells the application.
     * [ui-thread] */
    void (*deactivateManipulator)(VlViewportHandle host, const char* pluginName);

    /* Destroys all active manipulators and tells the application, if there are any.
     * [ui-thread] */
    void (*deactivateAllManipulators)(VlViewportHandle host);

    /* The number of active manipulators.
     * [ui-thread] */
    uint32_t (*getNumberOfActiveManipulators)(VlViewportHandle host);

    /* The active manipulator with this index, in order of activation.
     * [ui-thread] */
    void (*getActiveManipulatorByIndex)(VlViewportHandle host, uint32_t index,
                                        void** manipulatorHost, void** instance,
                                        const void** suite);

    /* The active manipulator of this plug-in.
     * [ui-thread] */
    void (*getActiveManipulator)(VlViewportHandle host, const char* pluginName,
                                 void** manipulatorHost, void** instance, const void** suite);

    /* Does nothing and answers 0; it keeps the entries behind it in place.
     * [any-thread] */
    int (*getReserved)(VlViewportHandle host);

    /* Makes the shared context current on this viewport's window and sets glViewport to the whole
     * window; 0 when that fails or the viewport has no context yet.
     * [ui-thread] */
    int (*makeGLContextCurrent)(VlViewportHandle host);

    /* Leaves no context current. 1 also when the viewport has no context yet: then there is
     * nothing to do.
     * [ui-thread] */
    int (*doneGLContextCurrent)(VlViewportHandle host);

    /* 1 when the shared context is current on this viewport's window.
     * [ui-thread] */
    int (*isGLContextCurrent)(VlViewportHandle host);

    /* glEnable, passed over when this viewport enabled the capability last. The record never reads
     * back from GL: use glEnable directly or this, not both.
     * [gl-current] */
    void (*enableCapability)(VlViewportHandle host, uint32_t capability);

    /* glDisable, as enableCapability.
     * [gl-current] */
    void (*disableCapability)(VlViewportHandle host, uint32_t capability);

    /* Registers something that can be picked and answers its id: the colour to draw it in. Ids
     * count from 0 and hold until the end of the pick. `object` stays the caller's.
     * [ui-thread] */
    uint64_t (*addPickableObject)(VlViewportHandle host, VlAttributeStruct* object);

    /* What the viewport's plug-in picks by itself, or else what it shows in the region: a
     * GroupAttribute, id in decimal to registered attribute, in ascending order of ids; empty when
     * nothing is there, also for an empty region or without a picking surface. Null when called
     * while the plug-in draws the ids of a pick. Deep picking also finds what lies behind, and
     * lists it behind what it found before.
     * `*depth` becomes the window depth (0 to 1) for a region of one pixel and is left alone
     * otherwise; `depth` may be null. The window's buffers are cleared until the next draw, unless
     * the plug-in picked by itself.
     * [ui-thread] */
    VlAttributeStruct* (*getPickedObjects)(VlViewportHandle host, int x, int y, int width,
                                           int height, int deepPicking, float* depth);

    /* Marks the view as frozen, for plug-in and application to heed, and tells the application on
     * a change.
     * [ui-thread] */
    void (*setViewFrozen)(VlViewportHandle host, int frozen);

    /* Whether the view is marked as frozen.
     * [ui-thread] */
    int (*isViewFrozen)(VlViewportHandle host);

    /* Applies the viewport's pan and zoom to the projection, or not.
     * [ui-thread] */
    void (*setPanAndZoomActive)(VlViewportHandle host, int active);

    /* Whether pan and zoom apply.
     * [ui-thread] */
    int (*isPanAndZoomActive)(VlViewportHandle host);

    /* Creates or joins the shared context anew for this viewport's window; 0 on failure, which is
     * logged.
     * [ui-thread] */
    int (*initializeGLContext)(VlViewportHandle host);
} ViewportHostSuite;

#ifdef __cplusplus
}
#endif
