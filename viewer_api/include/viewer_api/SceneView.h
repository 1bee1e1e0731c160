/* Which client's data an entry reads. */
#pragma once

#ifdef __cplusplus
extern "C" {
#endif

typedef enum VlSceneView {
    /* The scene as the viewer shows it: expanded, pinned and generated locations. */
    kVlViewerDelegatePrimary = 0,
    /* Locations cooked because somebody activated them as sources, shown or not. */
    kVlViewerDelegateSources = 1,
    /* Locations that viewports look through, cooked apart from what is shown. */
    kVlViewerDelegateLookThrough = 2
} VlSceneView;

#ifdef __cplusplus
}
#endif
