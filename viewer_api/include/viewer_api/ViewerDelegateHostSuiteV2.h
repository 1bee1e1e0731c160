/* What the host offers to a ViewerDelegate plug-in, version 2: kept for plug-ins built against it.
 *
 * Every entry is that of the same name and slot in ViewerDelegateHostSuite.h, which documents it,
 * and bears the same thread tag; getPartialXform alone takes fewer arguments. Both versions reach
 * the same delegate.
 */
#pragma once

#include "viewer_api/Handles.h"
#include "viewer_api/SceneView.h"
#include "viewer_api/ThreadTags.h"

#ifdef __cplusplus
extern "C" {
#endif

#define VL_VIEWER_DELEGATE_HOST_SUITE_VERSION_2 2

typedef struct ViewerDelegateHostSuiteV2 {
    int (*setViewOp)(VlViewerDelegateHandle host, int opId);
    VlAttributeStruct* (*getAttributes)(VlViewerDelegateHandle host, const char* path,
                                        int sceneView);
    VlAttributeStruct* (*getLocalXform)(VlViewerDelegateHandle host, const char* path,
                                        uint8_t* isAbsolute, int sceneView);
    VlAttributeStruct* (*getWorldXform)(VlViewerDelegateHandle host, const char* path,
                                        int sceneView);
    VlAttributeStruct* (*getParentXform)(VlViewerDelegateHandle host, const char* path,
                                         int sceneView);
    /* Takes in the parent's transform and the groups before the named one, and none after.
     * [ui-thread] */
    VlAttributeStruct* (*getPartialXform)(VlViewerDelegateHandle host, const char* path,
                                          const char* groupName, const char* componentName,
                                          int includeComponent, int sceneView);
    void (*openLocations)(VlViewerDelegateHandle host, const char** paths, uint32_t count);
    void (*closeLocations)(VlViewerDelegateHandle host, const char** paths, uint32_t count);
    void (*pinLocations)(VlViewerDelegateHandle host, const char** paths, uint32_t count);
    void (*unpinLocations)(VlViewerDelegateHandle host, const char** paths, uint32_t count);
    void (*activateSourceLocations)(VlViewerDelegateHandle host, const char** paths,
                                    uint32_t count);
    void (*deactivateSourceLocations)(VlViewerDelegateHandle host, const char** paths,
                                      uint32_t count);
    void (*setWorkingSetVisibilityEnabled)(VlViewerDelegateHandle host, uint8_t enabled);
    uint8_t (*getWorkingSetVisibilityEnabled)(VlViewerDelegateHandle host);
    void (*setVisibilityWorkingSet)(VlViewerDelegateHandle host, VlAttributeStruct* workingSet);
    void (*selectLocation)(VlViewerDelegateHandle host, const char* path);
    void (*selectLocations)(VlViewerDelegateHandle host, const char** paths, uint32_t count);
    VlAttributeStruct* (*getSelectedLocations)(VlViewerDelegateHandle host);
    VlAttributeStruct* (*getCompatibleManipulatorsInfo)(VlViewerDelegateHandle host,
                                                        const char** paths, uint32_t count);
    VlAttributeStruct* (*callPythonCallback)(VlViewerDelegateHandle host, const char* name,
                                             VlAttributeStruct* value);
    void (*addComponent)(VlViewerDelegateHandle host, const char* pluginName, const char* name,
                         void** componentHost, void** instance, const void** suite);
    void (*getComponent)(VlViewerDelegateHandle host, const char* name, void** componentHost,
                         void** instance, const void** suite);
    void (*getComponentByIndex)(VlViewerDelegateHandle host, uint32_t index, void** componentHost,
                                void** instance, const void** suite);
    void (*removeComponent)(VlViewerDelegateHandle host, const char* name);
    void (*removeComponentByIndex)(VlViewerDelegateHandle host, uint32_t index);
    uint32_t (*getNumberOfComponents)(VlViewerDelegateHandle host);
    const char* (*getComponentName)(VlViewerDelegateHandle host, uint32_t index);
    void (*addViewport)(VlViewerDelegateHandle host, VlViewportHandle viewport, const char* name);
    void (*getViewport)(VlViewerDelegateHandle host, const char* name, void** viewportHost,
                        void** instance, const void** suite);
    void (*getViewportByIndex)(VlViewerDelegateHandle host, uint32_t index, void** viewportHost,
                               void** instance, const void** suite);
    void (*removeViewport)(VlViewerDelegateHandle host, const char* name);
    void (*removeViewportByIndex)(VlViewerDelegateHandle host, uint32_t index);
    uint32_t (*getNumberOfViewports)(VlViewerDelegateHandle host);
    const char* (*getViewportName)(VlViewerDelegateHandle host, uint32_t index);
    uint8_t (*setManipulatedAttribute)(VlViewerDelegateHandle host, const char* path,
                                       const char* name, VlAttributeStruct* value, int isFinal);
    void (*openManipulationGroup)(VlViewerDelegateHandle host, const char* path);
    void (*closeManipulationGroup)(VlViewerDelegateHandle host, const char* path);
    void (*setBoundingBoxesEnabled)(VlViewerDelegateHandle host, uint8_t enabled);
    void (*setProxyGeometryEnabled)(VlViewerDelegateHandle host, uint8_t enabled);
    VlAttributeStruct* (*getDescendantLocations)(VlViewerDelegateHandle host, const char* path);
    VlAttributeStruct* (*getLiveAttributes)(VlViewerDelegateHandle host, const char* path,
                                            int sceneView);
    VlAttributeStruct* (*getCookedAttributes)(VlViewerDelegateHandle host, const char* path,
                                              int sceneView);
    uint8_t (*isProcessing)(VlViewerDelegateHandle host);
    VlAttributeStruct* (*computeMergedExtent)(VlViewerDelegateHandle host, const char** paths,
                                              uint32_t count, const char* excludePath);
    void (*insertComponent)(VlViewerDelegateHandle host, const char* pluginName, const char* name,
                            uint32_t index, void** componentHost, void** instance,
                            const void** suite);
    int (*getComponentIndex)(VlViewerDelegateHandle host, const char* name);
    void (*hideLocations)(VlViewerDelegateHandle host, const char** paths, uint32_t count);
    void (*unhideLocations)(VlViewerDelegateHandle host, const char** paths, uint32_t count);
    void (*unhideAllLocations)(VlViewerDelegateHandle host);
    VlAttributeStruct* (*getHiddenLocations)(VlViewerDelegateHandle host);
} ViewerDelegateHostSuiteV2;

#ifdef __cplusplus
}
#endif
