/* The table of a Viewport plug-in: one drawing surface of a delegate. */
#pragma once

#include "viewer_api/Handles.h"
#include "viewer_api/ThreadTags.h"

#ifdef __cplusplus
extern "C" {
#endif

#define VL_VIEWPORT_PLUGIN_TYPE "ViewportPlugin"
#define VL_VIEWPORT_PLUGIN_API_VERSION 2

/* Pixel coordinates have their origin at the top left of the window, with y downwards. */
typedef struct ViewportPluginSuite {
    /* Makes an instance, owned by the host until destroy; null on failure. The viewport's matrices
     * and its picking surface don't exist yet.
     * [ui-thread] */
    void* (*create)(VlViewportHandle host);

    /* Ends an instance, once; never called when create failed. Layers and manipulators are gone
     * already; cameras are not. cleanup may not have been called.
     * [ui-thread] */
    void (*destroy)(void* instance);

    /* The viewport has its window. Layers are set up after it. The GL context may have failed:
     * the entry is called nevertheless.
     * [gl-current] */
    void (*setup)(void* instance);

    /* Undoes setup. Layers are cleaned up before it.
     * [gl-current] */
    void (*cleanup)(void* instance);

    /* An interaction event, a GroupAttribute borrowed for the call. Non-zero when handled. The host
     * passes it to no layer: that is the plug-in's choice. Called only between setup and cleanup.
     * [ui-thread] */
    int (*event)(void* instance, VlAttributeStruct* event);

    /* Draws the whole picture; the host swaps buffers afterwards. The plug-in draws the layers
     * itself, through ViewportLayerHostSuite::draw. May come before setup.
     * [gl-current] */
    void (*draw)(void* instance);

    /* The window is now so many pixels wide and high. The host resizes the layers afterwards, and
     * tells no camera. May come before setup.
     * [gl-current] */
    void (*resize)(void* instance, int width, int height);

    /* The pointer is over pixel (x, y), or has left (isHovering 0, x and y 0). May come before
     * setup.
     * [gl-current] */
    void (*hover)(void* instance, int isHovering, int x, int y);

    /* Sets an option. `value` comes with one reference that the plug-in owns and releases; it may
     * be null. Unknown ids are ignored.
     * [ui-thread] */
    void (*setOption)(void* instance, uint64_t optionId, VlAttributeStruct* value);

    /* An option's value with one reference for the caller; null when unknown or unset.
     * [ui-thread] */
    VlAttributeStruct* (*getOption)(void* instance, uint64_t optionId);

    /* The viewer is not visible for a while: whatever goes on behind the picture may rest. Has
     * nothing to do with ViewportHostSuite::setViewFrozen.
     * [ui-thread] */
    void (*freeze)(void* instance);

    /* The viewer is visible again.
     * [ui-thread] */
    void (*thaw)(void* instance);

    /* Draws everything that can be picked in the region into the bound framebuffer, each in the
     * colour of its id: the four bytes R, G, B, A from the most significant to the least. Ids come
     * from ViewportHostSuite::addPickableObject. `excluded` is a GroupAttribute, borrowed, whose
     * children are the objects found so far, to be left out; never null, maybe empty.
     * [gl-current] */
    void (*pickerDraw)(void* instance, int x, int y, int width, int height,
                       VlAttributeStruct* excluded);

    /* Picks the region by other means than colour ids. On a non-zero answer `*picked` is a
     * GroupAttribute with one reference for the caller, or null, and `*depth` the window depth
     * (0 to 1) if `depth` is not null. Zero: nothing is written, and the host picks by colour at
     * once, before it calls any other entry: it makes the GL context current, binds its surface,
     * and for each pass (one, or several of a deep pick) clears that and calls pickerDraw. Neither
     * comes where the surface is being drawn to already, as in a pick from within pickerDraw, and
     * where a layer's picking cache has the answer.
     * [ui-thread] */
    int (*customPick)(void* instance, int x, int y, int width, int height, int deepPicking,
                      VlAttributeStruct** picked, float* depth);
} ViewportPluginSuite;

#ifdef __cplusplus
}
#endif
