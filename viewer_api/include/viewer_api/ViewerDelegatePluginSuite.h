/* The table of a ViewerDelegate plug-in: the root of a viewer, told of every location. */
#pragma once

#include "viewer_api/Handles.h"
#include "viewer_api/ThreadTags.h"
#include "viewer_api/ViewerLocationEvent.h"

#ifdef __cplusplus
extern "C" {
#endif

#define VL_VIEWER_DELEGATE_PLUGIN_TYPE "ViewerDelegatePlugin"
#define VL_VIEWER_DELEGATE_PLUGIN_API_VERSION 3

typedef struct ViewerDelegatePluginSuite {
    /* Makes an instance, owned by the host until destroy; null on failure. The scene clients don't
     * exist yet: don't ask the host for locations or attributes from here.
     * [ui-thread] */
    void* (*create)(VlViewerDelegateHandle host);

    /* Ends an instance, once; never called when create failed. Components and viewports are gone
     * already, and cleanup may not have been called.
     * [ui-thread] */
    void (*destroy)(void* instance);

    /* One change of the primary view. The event is borrowed for the call. `handledByComponent` is
     * 1 when a component answered that it took care of the location.
     * [ui-thread] */
    void (*locationEvent)(void* instance, const ViewerLocationEvent* event, int handledByComponent);

    /* One change of the sources view. The event is borrowed for the call.
     * [ui-thread] */
    void (*sourceLocationEvent)(void* instance, const ViewerLocationEvent* event);

    /* The application's selection is now these `count` paths, borrowed for the call; `paths` may
     * be null when count is 0. Components hear of it first.
     * [ui-thread] */
    void (*locationsSelected)(void* instance, const char** paths, uint32_t count);

    /* Sets an option. `value` comes with one reference that the plug-in owns and releases; it may
     * be null. Unknown ids are ignored.
     * [ui-thread] */
    void (*setOption)(void* instance, uint64_t optionId, VlAttributeStruct* value);

    /* An option's value with one reference for the caller; null when unknown or unset.
     * [ui-thread] */
    VlAttributeStruct* (*getOption)(void* instance, uint64_t optionId);

    /* The user interface asks the viewer to hold its picture; events keep coming.
     * [ui-thread] */
    void (*freeze)(void* instance);

    /* Ends what freeze began.
     * [ui-thread] */
    void (*thaw)(void* instance);

    /* The delegate is about to be used. Clients and views exist; a GL context need not.
     * [ui-thread] */
    void (*setup)(void* instance);

    /* The delegate won't be used again. Components and viewports are gone already.
     * [ui-thread] */
    void (*cleanup)(void* instance);

    /* Non-zero while the plug-in has work under way that will change the picture.
     * [ui-thread] */
    int (*isProcessing)(void* instance);

    /* Bounds of the location in its local space, a DoubleAttribute of 6 values (xmin, xmax, ymin,
     * ymax, zmin, zmax) with one reference for the caller; null when the plug-in knows none. Asked
     * only of locations without a `bound` attribute of that form.
     * [ui-thread] */
    VlAttributeStruct* (*getBounds)(void* instance, const char* locationPath);

    /* The box that the location's own geometry fills, as getBounds; null when it has none. It is
     * merged with the extent of the location's points.
     * [ui-thread] */
    VlAttributeStruct* (*computeExtent)(void* instance, const char* locationPath);
} ViewerDelegatePluginSuite;

#ifdef __cplusplus
}
#endif
