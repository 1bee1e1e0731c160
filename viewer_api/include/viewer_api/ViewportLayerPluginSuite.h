/* The table of a ViewportLayer plug-in: one unit of drawing and interaction in a viewport.
 *
 * Mind the order: options stand behind freezing here, and before it in ViewportPluginSuite.
 */
#pragma once

#include "viewer_api/Handles.h"
#include "viewer_api/ThreadTags.h"

#ifdef __cplusplus
extern "C" {
#endif

#define VL_VIEWPORT_LAYER_PLUGIN_TYPE "ViewportLayerPlugin"
#define VL_VIEWPORT_LAYER_PLUGIN_API_VERSION 2

/* Pixel coordinates have their origin at the top left of the window, with y downwards. */
typedef struct ViewportLayerPluginSuite {
    /* Makes an instance, owned by the host until destroy; null on failure.
     * [ui-thread] */
    void* (*create)(VlViewportLayerHandle host);

    /* Ends an instance, once; never called when create failed. cleanup may not have been called.
     * [ui-thread] */
    void (*destroy)(void* instance);

    /* The layer is about to be drawn. Called with the viewport's setup, or at once when the layer
     * joins a viewport that is set up.
     * [gl-current] */
    void (*setup)(void* instance);

    /* Undoes setup: GL objects are released here.
     * [gl-current] */
    void (*cleanup)(void* instance);

    /* An interaction event, a GroupAttribute. `event` comes with one reference that the plug-in
     * owns and releases, where a viewport's plug-in only borrows it; it may be null. Non-zero when
     * handled. May come before setup.
     * [ui-thread] */
    int (*event)(void* instance, VlAttributeStruct* event);

    /* Draws the layer into the bound framebuffer. May come before setup.
     * [gl-current] */
    void (*draw)(void* instance);

    /* The window is now so many pixels wide and high. May come before setup.
     * [gl-current] */
    void (*resize)(void* instance, int width, int height);

    /* The pointer is over pixel (x, y), or has left (isHovering 0). May come before setup.
     * [gl-current] */
    void (*hover)(void* instance, int isHovering, int x, int y);

    /* The layer is not visible for a while: whatever goes on behind its picture may rest. Only the
     * user interface calls this: a viewport's freeze does not reach its layers.
     * [ui-thread] */
    void (*freeze)(void* instance);

    /* The layer is visible again.
     * [ui-thread] */
    void (*thaw)(void* instance);

    /* Sets an option. `value` comes with one reference that the plug-in owns and releases; it may
     * be null. Unknown ids are ignored.
     * [ui-thread] */
    void (*setOption)(void* instance, uint64_t optionId, VlAttributeStruct* value);

    /* An option's value with one reference for the caller; null when unknown or unset.
     * [ui-thread] */
    VlAttributeStruct* (*getOption)(void* instance, uint64_t optionId);

    /* As ViewportPluginSuite::pickerDraw, for this layer; ids come from
     * ViewportLayerHostSuite::addPickableObject. After a draw of a layer that uses the picking
     * cache the region is the whole viewport and nothing is excluded.
     * [gl-current] */
    void (*pickerDraw)(void* instance, int x, int y, int width, int height,
                       VlAttributeStruct* excluded);

    /* Non-zero when the layer wants a picking surface of its own, which the host then redraws with
     * every draw, so that a later pick costs no drawing. Asked once, after create.
     * [ui-thread] */
    int (*usesPickingCache)(void* instance);

    /* As ViewportPluginSuite::customPick, for this layer.
     * [ui-thread] */
    int (*customPick)(void* instance, int x, int y, int width, int height, int deepPicking,
                      VlAttributeStruct** picked, float* depth);
} ViewportLayerPluginSuite;

#ifdef __cplusplus
}
#endif
