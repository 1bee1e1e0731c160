/* The table of a ManipulatorHandle plug-in: an arrow, ring or the like, a part of a manipulator. */
#pragma once

#include "viewer_api/Handles.h"
#include "viewer_api/ThreadTags.h"

#ifdef __cplusplus
extern "C" {
#endif

#define VL_MANIPULATOR_HANDLE_PLUGIN_TYPE "ManipulatorHandlePlugin"
#define VL_MANIPULATOR_HANDLE_PLUGIN_API_VERSION 1

typedef struct ManipulatorHandlePluginSuite {
    /* Makes an instance, owned by the host until destroy; null on failure.
     * [ui-thread] */
    void* (*create)(VlManipulatorHandleHandle host);

    /* Ends an instance, once; never called when create failed.
     * [ui-thread] */
    void (*destroy)(void* instance);

    /* An interaction event, a GroupAttribute borrowed for the call. Non-zero when handled.
     * [ui-thread] */
    int (*event)(void* instance, VlAttributeStruct* event);

    /* Draws the handle at its combined transform.
     * [gl-current] */
    void (*draw)(void* instance);

    /* Draws the handle's pickable shape in the colour of `pickerId`.
     * [gl-current] */
    void (*pickerDraw)(void* instance, uint64_t pickerId);

    /* Never called; null. */
    VlReservedEntry reserved5;
    VlReservedEntry reserved6;

    /* A message whose meaning the manipulator and its handles agree on.
     * [ui-thread] */
    void (*notify)(void* instance);
} ManipulatorHandlePluginSuite;

#ifdef __cplusplus
}
#endif
