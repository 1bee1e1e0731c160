/* The table of a Manipulator plug-in: an interactive editor of locations in a viewport. */
#pragma once

#include "viewer_api/Handles.h"
#include "viewer_api/ThreadTags.h"

#ifdef __cplusplus
extern "C" {
#endif

#define VL_MANIPULATOR_PLUGIN_TYPE "ManipulatorPlugin"
#define VL_MANIPULATOR_PLUGIN_API_VERSION 2

typedef struct ManipulatorPluginSuite {
    /* Makes an instance, owned by the host until destroy; null on failure. The manipulator has no
     * locations yet.
     * [ui-thread] */
    void* (*create)(VlManipulatorHandle host);

    /* Ends an instance, once; never called when create failed. Its handles are gone already.
     * [ui-thread] */
    void (*destroy)(void* instance);

    /* Non-zero when this kind of manipulator can edit a location with these attributes, a
     * GroupAttribute borrowed for the call. Belongs to the kind and not to an instance: it is
     * called before any exists.
     * [ui-thread] */
    int (*matches)(VlAttributeStruct* locationAttributes);

    /* What the user interface shows of this kind of manipulator: a GroupAttribute with one
     * reference for the caller, tag name to value. Belongs to the kind, as matches.
     * [ui-thread] */
    VlAttributeStruct* (*getTags)(void);

    /* Called once, right before the first draw or pickerDraw that has locations; again before the
     * next when it ended by an exception.
     * [gl-current] */
    void (*setup)(void* instance);

    /* An interaction event, a GroupAttribute borrowed for the call. Non-zero when handled. May
     * come before setup, and with no locations.
     * [ui-thread] */
    int (*event)(void* instance, VlAttributeStruct* event);

    /* Draws the manipulator. Only called while it has locations.
     * [gl-current] */
    void (*draw)(void* instance);

    /* Draws the manipulator's pickable shape in the colour of `pickerId`, which comes unchanged
     * from whoever drives the manipulator. Only called while it has locations.
     * [gl-current] */
    void (*pickerDraw)(void* instance, uint64_t pickerId);

    /* Sets an option. `value` comes with one reference that the plug-in owns and releases; it may
     * be null. Unknown ids are ignored.
     * [ui-thread] */
    void (*setOption)(void* instance, uint64_t optionId, VlAttributeStruct* value);

    /* An option's value with one reference for the caller; null when unknown or unset.
     * [ui-thread] */
    VlAttributeStruct* (*getOption)(void* instance, uint64_t optionId);
} ManipulatorPluginSuite;

#ifdef __cplusplus
}
#endif
