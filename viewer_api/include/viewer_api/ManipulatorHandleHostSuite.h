/* What the host offers to a ManipulatorHandle plug-in, and to the manipulator that drives it.
 * Conventions as in ManipulatorHostSuite.h.
 */
#pragma once

#include "viewer_api/Handles.h"
#include "viewer_api/ThreadTags.h"

#ifdef __cplusplus
extern "C" {
#endif

#define VL_MANIPULATOR_HANDLE_HOST_SUITE "ManipulatorHandleHost"
#define VL_MANIPULATOR_HANDLE_HOST_SUITE_VERSION 1

typedef struct ManipulatorHandleHostSuite {
    /* The owning manipulator; never nulls.
     * [ui-thread] */
    void (*getManipulator)(VlManipulatorHandleHandle host, void** manipulatorHost, void** instance,
                           const void** suite);

    /* The handle's local transform times the manipulator's, a matrix.
     * [ui-thread] */
    VlAttributeStruct* (*getCombinedXform)(VlManipulatorHandleHandle host);

    /* Sets the local transform: 16 values at least, which is not checked; null for the identity.
     * [ui-thread] */
    void (*setLocalXform)(VlManipulatorHandleHandle host, VlAttributeStruct* xform);

    /* The local transform as it was set; null until then.
     * [ui-thread] */
    VlAttributeStruct* (*getLocalXform)(VlManipulatorHandleHandle host);

    /* Passes an interaction event to the plug-in; 1 when handled.
     * [ui-thread] */
    int (*event)(VlManipulatorHandleHandle host, VlAttributeStruct* event);

    /* Draws the handle.
     * [gl-current] */
    void (*draw)(VlManipulatorHandleHandle host);

    /* Draws the pickable shape in the colour of `pickerId`.
     * [gl-current] */
    void (*pickerDraw)(VlManipulatorHandleHandle host, uint64_t pickerId);

    /* Stores a flag whose meaning is the plug-in's; answers it as 0 or 1.
     * [ui-thread] */
    int (*setEngaged)(VlManipulatorHandleHandle host, int engaged);

    /* That flag; 0 also while the manipulator is being made.
     * [ui-thread] */
    int (*isEngaged)(VlManipulatorHandleHandle host);

    /* Stores a second flag; answers it as 0 or 1.
     * [ui-thread] */
    int (*setMarked)(VlManipulatorHandleHandle host, int marked);

    /* The second flag.
     * [ui-thread] */
    int (*isMarked)(VlManipulatorHandleHandle host);

    /* Calls the plug-in's notify.
     * [ui-thread] */
    void (*notifyPlugin)(VlManipulatorHandleHandle host);
} ManipulatorHandleHostSuite;

#ifdef __cplusplus
}
#endif
