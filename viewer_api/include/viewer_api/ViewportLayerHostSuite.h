/* What the host offers to a ViewportLayer plug-in, and to a Viewport plug-in that drives its
 * layers.
 */
#pragma once

#include "viewer_api/Handles.h"
#include "viewer_api/ThreadTags.h"

#ifdef __cplusplus
extern "C" {
#endif

#define VL_VIEWPORT_LAYER_HOST_SUITE "ViewportLayerHost"
#define VL_VIEWPORT_LAYER_HOST_SUITE_VERSION 2

typedef struct ViewportLayerHostSuite {
    /* Writes the viewport's host object, plug-in instance and plug-in suite; never null.
     * [ui-thread] */
    void (*getViewport)(VlViewportLayerHandle host, void** viewportHost, void** instance,
                        const void** suite);

    /* Passes an interaction event, a GroupAttribute that stays the caller's, to the layer's
     * plug-in; 1 when handled.
     * [ui-thread] */
    int (*event)(VlViewportLayerHandle host, VlAttributeStruct* event);

    /* Draws the layer, and redraws its picking surface where it has one of its own.
     * [gl-current] */
    void (*draw)(VlViewportLayerHandle host);

    /* Tells the layer's plug-in where the pointer is, in pixels from the top left.
     * [gl-current] */
    void (*hover)(VlViewportLayerHandle host, int isHovering, int x, int y);

    /* Registers something that can be picked and answers its id: with the layer's own picking
     * surface where it has one, otherwise with the viewport's; during a pick of this layer with the
     * surface that is picked from. `object` stays the caller's.
     * [ui-thread] */
    uint64_t (*addPickableObject)(VlViewportLayerHandle host, VlAttributeStruct* object);

    /* As ViewportHostSuite::getPickedObjects, of this layer alone. With a picking surface of its
     * own, and unless deep picking is asked for, it reads the image of the last draw and leaves the
     * window's buffers alone.
     * [ui-thread] */
    VlAttributeStruct* (*getPickedObjects)(VlViewportLayerHandle host, int x, int y, int width,
                                           int height, int deepPicking, float* depth);
} ViewportLayerHostSuite;

#ifdef __cplusplus
}
#endif
