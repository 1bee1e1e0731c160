/* What the host offers to a ViewerDelegate plug-in, version 3. Version 2 is the same table with a
 * shorter getPartialXform: see ViewerDelegateHostSuiteV2.h.
 *
 * Paths and names are borrowed for the call. A null path is one that nothing is known of, and a
 * null name finds nothing. A list with a null in it, or a null list with a count, does nothing and
 * answers null; computeMergedExtent alone passes over the nulls. `sceneView` is one of VlSceneView;
 * an unknown one yields null. A returned attribute handle comes with one reference for the caller;
 * one passed in stays the caller's. Matrices are DoubleAttributes of 16 values, row vectors (world
 * = local x parent). Bounds are 6 doubles: xmin, xmax, ymin, ymax, zmin, zmax. A triple (host
 * object, plug-in instance, plug-in suite) is always written, with three nulls when the object does
 * not exist; the three places must not be null. Strings that are returned are never null and stay
 * valid while the object that bears the name does. Indices out of range give nulls, "" or no
 * action.
 */
#pragma once

#include "viewer_api/Handles.h"
#include "viewer_api/SceneView.h"
#include "viewer_api/ThreadTags.h"
#include "viewer_api/ViewerDelegateHostSuiteV2.h"

#ifdef __cplusplus
extern "C" {
#endif

#define VL_VIEWER_DELEGATE_HOST_SUITE "ViewerDelegateHost"
#define VL_VIEWER_DELEGATE_HOST_SUITE_VERSION 3

typedef struct ViewerDelegateHostSuite {
    /* Views the op of the scene with this id: the commit id of the change, or -1 when it is viewed
     * already. An unknown id makes the view empty. The application hears of every call.
     * [ui-thread] */
    int (*setViewOp)(VlViewerDelegateHandle host, int opId);

    /* The location's attributes, live values included; null when the plug-in was not told of it,
     * and in the look-through view when it is not cooked there.
     * [ui-thread] */
    VlAttributeStruct* (*getAttributes)(VlViewerDelegateHandle host, const char* path,
                                        int sceneView);

    /* The location's own matrix; null without a location or a transform, for which the
     * look-through view answers with the identity. `*isAbsolute` becomes 1 when the transform does
     * not inherit the parent's, else 0; always 0 in the look-through view. It must not be null.
     * [ui-thread] */
    VlAttributeStruct* (*getLocalXform)(VlViewerDelegateHandle host, const char* path,
                                        uint8_t* isAbsolute, int sceneView);

    /* Local to world; null without a location. The look-through view takes a location that it
     * doesn't have for one without a transform.
     * [ui-thread] */
    VlAttributeStruct* (*getWorldXform)(VlViewerDelegateHandle host, const char* path,
                                        int sceneView);

    /* Parent's space to world, the identity at the root; null without a location, but in the
     * look-through view as getWorldXform.
     * [ui-thread] */
    VlAttributeStruct* (*getParentXform)(VlViewerDelegateHandle host, const char* path,
                                         int sceneView);

    /* The matrix of a part of the location's `xform` group, for the editor of one component: the
     * group `groupName` up to the first run of neighbouring components whose names begin with
     * `componentName` (a "?" at its end is left out), with that run or without. The last three
     * flags take in the parent's transform and the groups before and after. Null when there is no
     * such group or component.
     * [ui-thread] */
    VlAttributeStruct* (*getPartialXform)(VlViewerDelegateHandle host, const char* path,
                                          const char* groupName, const char* componentName,
                                          int includeComponent, int sceneView,
                                          int includeParentXform, int includeGroupsBefore,
                                          int includeGroupsAfter);

    /* Shows the children of these locations; remembered for locations not cooked yet.
     * [ui-thread] */
    void (*openLocations)(VlViewerDelegateHandle host, const char** paths, uint32_t count);

    /* Undoes openLocations.
     * [ui-thread] */
    void (*closeLocations)(VlViewerDelegateHandle host, const char** paths, uint32_t count);

    /* Shows these locations whether or not their parents are open.
     * [ui-thread] */
    void (*pinLocations)(VlViewerDelegateHandle host, const char** paths, uint32_t count);

    /* Undoes pinLocations.
     * [ui-thread] */
    void (*unpinLocations)(VlViewerDelegateHandle host, const char** paths, uint32_t count);

    /* Cooks these locations for the sources view.
     * [ui-thread] */
    void (*activateSourceLocations)(VlViewerDelegateHandle host, const char** paths,
                                    uint32_t count);

    /* Undoes activateSourceLocations.
     * [ui-thread] */
    void (*deactivateSourceLocations)(VlViewerDelegateHandle host, const char** paths,
                                      uint32_t count);

    /* Shows what the visibility working set says (1), or what is open or pinned (0).
     * [ui-thread] */
    void (*setWorkingSetVisibilityEnabled)(VlViewerDelegateHandle host, uint8_t enabled);

    /* 1 while the working set decides, else 0.
     * [ui-thread] */
    uint8_t (*getWorkingSetVisibilityEnabled)(VlViewerDelegateHandle host);

    /* Sets the working set, a GroupAttribute; null for none.
     * [ui-thread] */
    void (*setVisibilityWorkingSet)(VlViewerDelegateHandle host, VlAttributeStruct* workingSet);

    /* Asks the application to select one location. The selection comes back through the plug-in's
     * locationsSelected.
     * [ui-thread] */
    void (*selectLocation)(VlViewerDelegateHandle host, const char* path);

    /* As selectLocation, for several.
     * [ui-thread] */
    void (*selectLocations)(VlViewerDelegateHandle host, const char** paths, uint32_t count);

    /* The application's selection, a StringAttribute; null when it gives none.
     * [ui-thread] */
    VlAttributeStruct* (*getSelectedLocations)(VlViewerDelegateHandle host);

    /* The tags of every manipulator that matches at least one of these locations: a GroupAttribute,
     * manipulator name to group of tags, empty when none does; null for a list with a null in it.
     * Exceptions of the manipulators' entries pass through.
     * [ui-thread] */
    VlAttributeStruct* (*getCompatibleManipulatorsInfo)(VlViewerDelegateHandle host,
                                                        const char** paths, uint32_t count);

    /* Calls what the application registered under this name; its answer, or null. `value` may be
     * null. An error of the callback comes as an exception.
     * [ui-thread] */
    VlAttributeStruct* (*callPythonCallback)(VlViewerDelegateHandle host, const char* name,
                                             VlAttributeStruct* value);

    /* Creates a component of this plug-in, sets it up and appends it; writes its triple. A plug-in
     * that fails to load comes as an exception.
     * [ui-thread] */
    void (*addComponent)(VlViewerDelegateHandle host, const char* pluginName, const char* name,
                         void** componentHost, void** instance, const void** suite);

    /* The first component of this name.
     * [ui-thread] */
    void (*getComponent)(VlViewerDelegateHandle host, const char* name, void** componentHost,
                         void** instance, const void** suite);

    /* The component with this index.
     * [ui-thread] */
    void (*getComponentByIndex)(VlViewerDelegateHandle host, uint32_t index, void** componentHost,
                                void** instance, const void** suite);

    /* Cleans up and destroys the first component of this name.
     * [ui-thread] */
    void (*removeComponent)(VlViewerDelegateHandle host, const char* name);

    /* Cleans up and destroys the component with this index.
     * [ui-thread] */
    void (*removeComponentByIndex)(VlViewerDelegateHandle host, uint32_t index);

    /* The number of components.
     * [ui-thread] */
    uint32_t (*getNumberOfComponents)(VlViewerDelegateHandle host);

    /* The name of the component with this index.
     * [ui-thread] */
    const char* (*getComponentName)(VlViewerDelegateHandle host, uint32_t index);

    /* Hands a viewport host object over to the delegate under this name; a name that exists now
     * stands for the new one. Null does nothing.
     * [ui-thread] */
    void (*addViewport)(VlViewerDelegateHandle host, VlViewportHandle viewport, const char* name);

    /* The viewport of this name.
     * [ui-thread] */
    void (*getViewport)(VlViewerDelegateHandle host, const char* name, void** viewportHost,
                        void** instance, const void** suite);

    /* The viewport with this index.
     * [ui-thread] */
    void (*getViewportByIndex)(VlViewerDelegateHandle host, uint32_t index, void** viewportHost,
                               void** instance, const void** suite);

    /* Cleans up and destroys the viewport of this name.
     * [ui-thread] */
    void (*removeViewport)(VlViewerDelegateHandle host, const char* name);

    /* Cleans up and destroys the viewport with this index.
     * [ui-thread] */
    void (*removeViewportByIndex)(VlViewerDelegateHandle host, uint32_t index);

    /* The number of viewports.
     * [ui-thread] */
    uint32_t (*getNumberOfViewports)(VlViewerDelegateHandle host);

    /* The name of the viewport with this index.
     * [ui-thread] */
    const char* (*getViewportName)(VlViewerDelegateHandle host, uint32_t index);

    /* Sets an attribute of a location as a manipulator does: shown at once, and passed to the
     * application. `name` may be dotted; one that no attribute can have ("", "a..b") throws. A
     * final value ends a drag. 1 when the value was taken, 0 when it is null or nothing is known of
     * the location.
     * [ui-thread] */
    uint8_t (*setManipulatedAttribute)(VlViewerDelegateHandle host, const char* path,
                                       const char* name, VlAttributeStruct* value, int isFinal);

    /* Holds the changes of this location back from plug-ins until the group is closed.
     * [ui-thread] */
    void (*openManipulationGroup)(VlViewerDelegateHandle host, const char* path);

    /* Ends openManipulationGroup and sends what it held back.
     * [ui-thread] */
    void (*closeManipulationGroup)(VlViewerDelegateHandle host, const char* path);

    /* Generates bounding-box locations (1), as at first, or takes them away (0), at the next pump.
     * The user interface hears "__BOUNDING_BOXES_CHANGED", also when nothing changed.
     * [ui-thread] */
    void (*setBoundingBoxesEnabled)(VlViewerDelegateHandle host, uint8_t enabled);

    /* Generates proxy geometry (1), as at first, or takes it away (0), at the next pump. The user
     * interface hears "__PROXY_GEOMETRY_CHANGED", also when nothing changed.
     * [ui-thread] */
    void (*setProxyGeometryEnabled)(VlViewerDelegateHandle host, uint8_t enabled);

    /* The paths below this one that are known in the primary view, nearest first, a
     * StringAttribute; null when this one is not known.
     * [ui-thread] */
    VlAttributeStruct* (*getDescendantLocations)(VlViewerDelegateHandle host, const char* path);

    /* The values set by manipulators on this location and not cooked yet, a GroupAttribute; null
     * when there are none, and always in the sources view.
     * [ui-thread] */
    VlAttributeStruct* (*getLiveAttributes)(VlViewerDelegateHandle host, const char* path,
                                            int sceneView);

    /* As getAttributes, without live values.
     * [ui-thread] */
    VlAttributeStruct* (*getCookedAttributes)(VlViewerDelegateHandle host, const char* path,
                                              int sceneView);

    /* 1 while the scene or a plug-in has work under way, else 0.
     * [ui-thread] */
    uint8_t (*isProcessing)(VlViewerDelegateHandle host);

    /* The world-space box around these locations and what is shown below them, without
     * `excludePath` (null: none) and hidden locations; null when nothing has bounds.
     * [ui-thread] */
    VlAttributeStruct* (*computeMergedExtent)(VlViewerDelegateHandle host, const char** paths,
                                              uint32_t count, const char* excludePath);

    /* As addComponent, before the component with this index; an index above the count creates
     * nothing and writes nulls.
     * [ui-thread] */
    void (*insertComponent)(VlViewerDelegateHandle host, const char* pluginName, const char* name,
                            uint32_t index, void** componentHost, void** instance,
                            const void** suite);

    /* The index of the first component of this name, or -1.
     * [ui-thread] */
    int (*getComponentIndex)(VlViewerDelegateHandle host, const char* name);

    /* Hides these locations and what is below them; remembered for locations not cooked yet.
     * Generated locations can't be hidden.
     * [ui-thread] */
    void (*hideLocations)(VlViewerDelegateHandle host, const char** paths, uint32_t count);

    /* Undoes hideLocations for these.
     * [ui-thread] */
    void (*unhideLocations)(VlViewerDelegateHandle host, const char** paths, uint32_t count);

    /* Undoes every hideLocations.
     * [ui-thread] */
    void (*unhideAllLocations)(VlViewerDelegateHandle host);

    /* The paths that were hidden, a StringAttribute.
     * [ui-thread] */
    VlAttributeStruct* (*getHiddenLocations)(VlViewerDelegateHandle host);
} ViewerDelegateHostSuite;

#ifdef __cplusplus
}
#endif
