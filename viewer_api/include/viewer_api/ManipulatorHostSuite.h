/* What the host offers to a Manipulator plug-in, and to whoever draws and drives manipulators.
 *
 * Texts are copied where they are kept; a returned text is never null and valid while the object
 * lives, but where an entry says less. A returned attribute handle comes with one reference for the
 * caller; one passed in stays the caller's. A triple (host object, plug-in instance, plug-in suite)
 * is always written, with three nulls when the object does not exist. Matrices are DoubleAttributes
 * of 16 values for row vectors.
 */
#pragma once

#include "viewer_api/Handles.h"
#include "viewer_api/ThreadTags.h"

#ifdef __cplusplus
extern "C" {
#endif

#define VL_MANIPULATOR_HOST_SUITE "ManipulatorHost"
#define VL_MANIPULATOR_HOST_SUITE_VERSION 2

typedef struct ManipulatorHostSuite {
    /* The name of the plug-in.
     * [ui-thread] */
    const char* (*getPluginName)(VlManipulatorHandle host);

    /* Passes an interaction event, a GroupAttribute, to the plug-in; 1 when handled.
     * [ui-thread] */
    int (*event)(VlManipulatorHandle host, VlAttributeStruct* event);

    /* Draws the manipulator, after setting it up the first time; 0 when it has no locations, or
     * from within its setup, and then nothing is drawn.
     * [gl-current] */
    int (*draw)(VlManipulatorHandle host);

    /* As draw, for the pickable shape in the colour of `pickerId`.
     * [gl-current] */
    int (*pickerDraw)(VlManipulatorHandle host, uint64_t pickerId);

    /* The transform that the manipulator and its handles share; null while the plug-in's create
     * runs, and after null was set.
     * [ui-thread] */
    VlAttributeStruct* (*getXform)(VlManipulatorHandle host);

    /* Sets it: 16 values at least, which is not checked; null for the identity.
     * [ui-thread] */
    void (*setXform)(VlManipulatorHandle host, VlAttributeStruct* xform);

    /* A translation to the mean of the world positions of those locations that the viewer knows;
     * the identity without any.
     * [ui-thread] */
    VlAttributeStruct* (*calculateXform)(VlManipulatorHandle host);

    /* An attribute of a location, by a name that may be dotted; null when absent.
     * [ui-thread] */
    VlAttributeStruct* (*getValue)(VlManipulatorHandle host, const char* path, const char* name);

    /* Sets an attribute of a location, as ViewerDelegateHostSuite::setManipulatedAttribute; 1 when
     * it was taken. A name that can't be one of an attribute, such as null, "" or "a..b", comes as
     * an exception.
     * [ui-thread] */
    int (*setValue)(VlManipulatorHandle host, const char* path, const char* name,
                    VlAttributeStruct* value, int isFinal);

    /* The viewport that the manipulator is active on; never nulls.
     * [ui-thread] */
    void (*getViewport)(VlManipulatorHandle host, void** viewportHost, void** instance,
                        const void** suite);

    /* The paths that the manipulator edits now, a StringAttribute; null while the plug-in's create
     * runs.
     * [ui-thread] */
    VlAttributeStruct* (*getLocationPaths)(VlManipulatorHandle host);

    /* Creates a handle of this plug-in; by name the newest is found. A plug-in that fails to load
     * comes as an exception.
     * [ui-thread] */
    void (*addManipulatorHandle)(VlManipulatorHandle host, const char* pluginName, const char* name,
                                 void** handleHost, void** instance, const void** suite);

    /* The newest handle of this name.
     * [ui-thread] */
    void (*getManipulatorHandle)(VlManipulatorHandle host, const char* name, void** handleHost,
                                 void** instance, const void** suite);

    /* The handle with this index, in order of creation.
     * [ui-thread] */
    void (*getManipulatorHandleByIndex)(VlManipulatorHandle host, uint32_t index, void** handleHost,
                                        void** instance, const void** suite);

    /* Destroys the newest handle of this name.
     * [ui-thread] */
    void (*removeManipulatorHandle)(VlManipulatorHandle host, const char* name);

    /* Destroys the handle with this index. An index equal to the count comes as an out-of-range
     * exception; a larger one does nothing. Names that sort behind the removed handle's keep the
     * index that they had, and so lead to another handle or to none: remove by name where the
     * others are to be found by name.
     * [ui-thread] */
    void (*removeManipulatorHandleByIndex)(VlManipulatorHandle host, uint32_t index);

    /* The number of handles.
     * [ui-thread] */
    uint32_t (*getNumberOfManipulatorHandles)(VlManipulatorHandle host);

    /* The name of the handle with this index, or ""; valid until the next entry that adds or
     * removes handles.
     * [ui-thread] */
    const char* (*getManipulatorHandleName)(VlManipulatorHandle host, uint32_t index);

    /* The tags of every manipulator plug-in there is, a GroupAttribute; belongs to no host object.
     * [ui-thread] */
    VlAttributeStruct* (*getRegisteredManipulatorsInfo)(void);

    /* 1 when every location of the manipulator may be edited.
     * [ui-thread] */
    int (*isEditable)(VlManipulatorHandle host);

    /* As ViewerDelegateHostSuite::openManipulationGroup.
     * [ui-thread] */
    void (*openManipulationGroup)(VlManipulatorHandle host, const char* path);

    /* As ViewerDelegateHostSuite::closeManipulationGroup.
     * [ui-thread] */
    void (*closeManipulationGroup)(VlManipulatorHandle host, const char* path);
} ManipulatorHostSuite;

#ifdef __cplusplus
}
#endif
