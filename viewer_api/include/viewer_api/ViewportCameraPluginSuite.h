/* The table of a ViewportCamera plug-in: turns a camera's parameters into a projection. */
#pragma once

#include "viewer_api/Handles.h"
#include "viewer_api/ThreadTags.h"

#ifdef __cplusplus
extern "C" {
#endif

#define VL_VIEWPORT_CAMERA_PLUGIN_TYPE "ViewportCameraPlugin"
#define VL_VIEWPORT_CAMERA_PLUGIN_API_VERSION 2

/* Answers of getCameraTypeID. */
typedef enum VlViewportCameraType {
    kVlViewportCameraTypeUnknown = 0,
    kVlViewportCameraTypePerspective = 1,
    kVlViewportCameraTypeOrthographic = 2,
    kVlViewportCameraTypeSpherical = 3
} VlViewportCameraType;

/* Bits of setDirty. */
typedef enum VlCameraDirtyBits {
    CameraDirtyBits_Clean = 0,
    CameraDirtyBits_DirtyParams = 1,
    /* Every bit there is; today the same as the one above. */
    CameraDirtyBits_AllDirty = 1
} VlCameraDirtyBits;

typedef struct ViewportCameraPluginSuite {
    /* Makes an instance, owned by the host until destroy; null on failure.
     * [ui-thread] */
    void* (*create)(VlViewportCameraHandle host);

    /* Ends an instance, once; never called when create failed.
     * [ui-thread] */
    void (*destroy)(void* instance);

    /* One of VlViewportCameraType.
     * [ui-thread] */
    int (*getCameraTypeID)(void* instance);

    /* The picture is so many pixels wide and high; the plug-in updates its projection through
     * ViewportCameraHostSuite::setProjectionMatrix.
     * [ui-thread] */
    void (*setViewportDimensions)(void* instance, int width, int height);

    /* Sets an option. `value` comes with one reference that the plug-in owns and releases; it may
     * be null. Unknown ids are ignored.
     * [ui-thread] */
    void (*setOption)(void* instance, uint64_t optionId, VlAttributeStruct* value);

    /* An option's value with one reference for the caller; null when unknown or unset.
     * [ui-thread] */
    VlAttributeStruct* (*getOption)(void* instance, uint64_t optionId);

    /* Never called; null. */
    VlReservedEntry reserved6;
    VlReservedEntry reserved7;

    /* Takes over camera data, a GroupAttribute in the form that asAttribute gives; missing
     * children leave their parameters as they are. `camera` comes with one reference that the
     * plug-in owns and releases; it may be null.
     * [ui-thread] */
    void (*setup)(void* instance, VlAttributeStruct* camera);

    /* The camera's data as a GroupAttribute with one reference for the caller, such that setup
     * with it restores the camera; null when the plug-in has no such form.
     * [ui-thread] */
    VlAttributeStruct* (*asAttribute)(void* instance);

    /* Never called; null. */
    VlReservedEntry reserved10;
    VlReservedEntry reserved11;
    VlReservedEntry reserved12;
    VlReservedEntry reserved13;
    VlReservedEntry reserved14;

    /* Parameters of the camera changed in the host (VlCameraDirtyBits); called at once after each
     * change.
     * [ui-thread] */
    void (*setDirty)(void* instance, int dirtyBits);
} ViewportCameraPluginSuite;

#ifdef __cplusplus
}
#endif
