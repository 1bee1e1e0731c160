/* The table of a ViewerDelegateComponent plug-in: told the same location events as its delegate,
 * before the delegate is.
 */
#pragma once

#include "viewer_api/Handles.h"
#include "viewer_api/ThreadTags.h"
#include "viewer_api/ViewerLocationEvent.h"

#ifdef __cplusplus
extern "C" {
#endif

#define VL_VIEWER_DELEGATE_COMPONENT_PLUGIN_TYPE "ViewerDelegateComponentPlugin"
#define VL_VIEWER_DELEGATE_COMPONENT_PLUGIN_API_VERSION 2

typedef struct ViewerDelegateComponentPluginSuite {
    /* Makes an instance, owned by the host until destroy; null on failure.
     * [ui-thread] */
    void* (*create)(VlViewerDelegateComponentHandle host);

    /* Ends an instance, once; never called when create failed. cleanup may not have been called.
     * [ui-thread] */
    void (*destroy)(void* instance);

    /* One change of the primary view, borrowed for the call. Components are asked from the last
     * in the list to the first; `handled` is 1 when one asked before answered non-zero. A
     * non-zero answer says that this component took care of the location; the others and the
     * delegate are still told.
     * [ui-thread] */
    int (*locationEvent)(void* instance, const ViewerLocationEvent* event, int handled);

    /* The application's selection is now these `count` paths, borrowed for the call; `paths` may
     * be null when count is 0.
     * [ui-thread] */
    void (*locationsSelected)(void* instance, const char** paths, uint32_t count);

    /* Sets an option. `value` comes with one reference that the plug-in owns and releases; it may
     * be null. Unknown ids are ignored.
     * [ui-thread] */
    void (*setOption)(void* instance, uint64_t optionId, VlAttributeStruct* value);

    /* An option's value with one reference for the caller; null when unknown or unset.
     * [ui-thread] */
    VlAttributeStruct* (*getOption)(void* instance, uint64_t optionId);

    /* The component is about to be used. An added component is set up before it stands in the
     * delegate's list, an inserted one after.
     * [ui-thread] */
    void (*setup)(void* instance);

    /* The component won't be used again; it has left the delegate's list.
     * [ui-thread] */
    void (*cleanup)(void* instance);

    /* Non-zero while the component has work under way that will change the picture.
     * [ui-thread] */
    int (*isProcessing)(void* instance);

    /* Bounds of the location in its local space, a DoubleAttribute of 6 values (xmin, xmax, ymin,
     * ymax, zmin, zmax) with one reference for the caller; null when the component knows none.
     * [ui-thread] */
    VlAttributeStruct* (*getBounds)(void* instance, const char* locationPath);

    /* The box that the location's own geometry fills, as getBounds; null when it has none.
     * [ui-thread] */
    VlAttributeStruct* (*computeExtent)(void* instance, const char* locationPath);
} ViewerDelegateComponentPluginSuite;

#ifdef __cplusplus
}
#endif
