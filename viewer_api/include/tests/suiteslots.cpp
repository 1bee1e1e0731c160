// The slot of every entry of every table. Plug-ins that are built already find an entry by its
// place alone, so an entry never moves: new ones join at the end, in a new version.

#include "viewer_api/ManipulatorHandleHostSuite.h"
#include "viewer_api/ManipulatorHandlePluginSuite.h"
#include "viewer_api/ManipulatorHostSuite.h"
#include "viewer_api/ManipulatorPluginSuite.h"
#include "viewer_api/OptionIdGeneratorHostSuite.h"
#include "viewer_api/ViewerDelegateComponentHostSuite.h"
#include "viewer_api/ViewerDelegateComponentPluginSuite.h"
#include "viewer_api/ViewerDelegateHostSuite.h"
#include "viewer_api/ViewerDelegatePluginSuite.h"
#include "viewer_api/ViewerLocationEvent.h"
#include "viewer_api/ViewportCameraHostSuite.h"
#include "viewer_api/ViewportCameraPluginSuite.h"
#include "viewer_api/ViewportHostSuite.h"
#include "viewer_api/ViewportLayerHostSuite.h"
#include "viewer_api/ViewportLayerPluginSuite.h"
#include "viewer_api/ViewportPluginSuite.h"
#include "viewer_api/VlPlugin.h"

#include <cstddef>

#define VL_SLOT(suite, slot, entry)                                                                \
    static_assert(offsetof(suite, entry) == (slot) * sizeof(void*), #suite "::" #entry " moved")
#define VL_SLOTS(suite, count)                                                                     \
    static_assert(sizeof(suite) == (count) * sizeof(void*), #suite " changed its length")

VL_SLOT(ViewerDelegatePluginSuite, 0, create);
VL_SLOT(ViewerDelegatePluginSuite, 1, destroy);
VL_SLOT(ViewerDelegatePluginSuite, 2, locationEvent);
VL_SLOT(ViewerDelegatePluginSuite, 3, sourceLocationEvent);
VL_SLOT(ViewerDelegatePluginSuite, 4, locationsSelected);
VL_SLOT(ViewerDelegatePluginSuite, 5, setOption);
VL_SLOT(ViewerDelegatePluginSuite, 6, getOption);
VL_SLOT(ViewerDelegatePluginSuite, 7, freeze);
VL_SLOT(ViewerDelegatePluginSuite, 8, thaw);
VL_SLOT(ViewerDelegatePluginSuite, 9, setup);
VL_SLOT(ViewerDelegatePluginSuite, 10, cleanup);
VL_SLOT(ViewerDelegatePluginSuite, 11, isProcessing);
VL_SLOT(ViewerDelegatePluginSuite, 12, getBounds);
VL_SLOT(ViewerDelegatePluginSuite, 13, computeExtent);
VL_SLOTS(ViewerDelegatePluginSuite, 14);

VL_SLOT(ViewerDelegateComponentPluginSuite, 0, create);
VL_SLOT(ViewerDelegateComponentPluginSuite, 1, destroy);
VL_SLOT(ViewerDelegateComponentPluginSuite, 2, locationEvent);
VL_SLOT(ViewerDelegateComponentPluginSuite, 3, locationsSelected);
VL_SLOT(ViewerDelegateComponentPluginSuite, 4, setOption);
VL_SLOT(ViewerDelegateComponentPluginSuite, 5, getOption);
VL_SLOT(ViewerDelegateComponentPluginSuite, 6, setup);
VL_SLOT(ViewerDelegateComponentPluginSuite, 7, cleanup);
VL_SLOT(ViewerDelegateComponentPluginSuite, 8, isProcessing);
VL_SLOT(ViewerDelegateComponentPluginSuite, 9, getBounds);
VL_SLOT(ViewerDelegateComponentPluginSuite, 10, computeExtent);
VL_SLOTS(ViewerDelegateComponentPluginSuite, 11);

VL_SLOT(ViewportPluginSuite, 0, create);
VL_SLOT(ViewportPluginSuite, 1, destroy);
VL_SLOT(ViewportPluginSuite, 2, setup);
VL_SLOT(ViewportPluginSuite, 3, cleanup);
VL_SLOT(ViewportPluginSuite, 4, event);
VL_SLOT(ViewportPluginSuite, 5, draw);
VL_SLOT(ViewportPluginSuite, 6, resize);
VL_SLOT(ViewportPluginSuite, 7, hover);
VL_SLOT(ViewportPluginSuite, 8, setOption);
VL_SLOT(ViewportPluginSuite, 9, getOption);
VL_SLOT(ViewportPluginSuite, 10, freeze);
VL_SLOT(ViewportPluginSuite, 11, thaw);
VL_SLOT(ViewportPluginSuite, 12, pickerDraw);
VL_SLOT(ViewportPluginSuite, 13, customPick);
VL_SLOTS(ViewportPluginSuite, 14);

VL_SLOT(ViewportLayerPluginSuite, 0, create);
VL_SLOT(ViewportLayerPluginSuite, 1, destroy);
VL_SLOT(ViewportLayerPluginSuite, 2, setup);
VL_SLOT(ViewportLayerPluginSuite, 3, cleanup);
VL_SLOT(ViewportLayerPluginSuite, 4, event);
VL_SLOT(ViewportLayerPluginSuite, 5, draw);
VL_SLOT(ViewportLayerPluginSuite, 6, resize);
VL_SLOT(ViewportLayerPluginSuite, 7, hover);
VL_SLOT(ViewportLayerPluginSuite, 8, freeze);
VL_SLOT(ViewportLayerPluginSuite, 9, thaw);
VL_SLOT(ViewportLayerPluginSuite, 10, setOption);
VL_SLOT(ViewportLayerPluginSuite, 11, getOption);
VL_SLOT(ViewportLayerPluginSuite, 12, pickerDraw);
VL_SLOT(ViewportLayerPluginSuite, 13, usesPickingCache);
VL_SLOT(ViewportLayerPluginSuite, 14, customPick);
VL_SLOTS(ViewportLayerPluginSuite, 15);

VL_SLOT(ViewportCameraPluginSuite, 0, create);
VL_SLOT(ViewportCameraPluginSuite, 1, destroy);
VL_SLOT(ViewportCameraPluginSuite, 2, getCameraTypeID);
VL_SLOT(ViewportCameraPluginSuite, 3, setViewportDimensions);
VL_SLOT(ViewportCameraPluginSuite, 4, setOption);
VL_SLOT(ViewportCameraPluginSuite, 5, getOption);
VL_SLOT(ViewportCameraPluginSuite, 6, reserved6);
VL_SLOT(ViewportCameraPluginSuite, 7, reserved7);
VL_SLOT(ViewportCameraPluginSuite, 8, setup);
VL_SLOT(ViewportCameraPluginSuite, 9, asAttribute);
VL_SLOT(ViewportCameraPluginSuite, 10, reserved10);
VL_SLOT(ViewportCameraPluginSuite, 11, reserved11);
VL_SLOT(ViewportCameraPluginSuite, 12, reserved12);
VL_SLOT(ViewportCameraPluginSuite, 13, reserved13);
VL_SLOT(ViewportCameraPluginSuite, 14, reserved14);
VL_SLOT(ViewportCameraPluginSuite, 15, setDirty);
VL_SLOTS(ViewportCameraPluginSuite, 16);

VL_SLOT(ManipulatorPluginSuite, 0, create);
VL_SLOT(ManipulatorPluginSuite, 1, destroy);
VL_SLOT(ManipulatorPluginSuite, 2, matches);
VL_SLOT(ManipulatorPluginSuite, 3, getTags);
VL_SLOT(ManipulatorPluginSuite, 4, setup);
VL_SLOT(ManipulatorPluginSuite, 5, event);
VL_SLOT(ManipulatorPluginSuite, 6, draw);
VL_SLOT(ManipulatorPluginSuite, 7, pickerDraw);
VL_SLOT(ManipulatorPluginSuite, 8, setOption);
VL_SLOT(ManipulatorPluginSuite, 9, getOption);
VL_SLOTS(ManipulatorPluginSuite, 10);

VL_SLOT(ManipulatorHandlePluginSuite, 0, create);
VL_SLOT(ManipulatorHandlePluginSuite, 1, destroy);
VL_SLOT(ManipulatorHandlePluginSuite, 2, event);
VL_SLOT(ManipulatorHandlePluginSuite, 3, draw);
VL_SLOT(ManipulatorHandlePluginSuite, 4, pickerDraw);
VL_SLOT(ManipulatorHandlePluginSuite, 5, reserved5);
VL_SLOT(ManipulatorHandlePluginSuite, 6, reserved6);
VL_SLOT(ManipulatorHandlePluginSuite, 7, notify);
VL_SLOTS(ManipulatorHandlePluginSuite, 8);

VL_SLOT(ViewerDelegateHostSuite, 0, setViewOp);
VL_SLOT(ViewerDelegateHostSuite, 1, getAttributes);
VL_SLOT(ViewerDelegateHostSuite, 2, getLocalXform);
VL_SLOT(ViewerDelegateHostSuite, 3, getWorldXform);
VL_SLOT(ViewerDelegateHostSuite, 4, getParentXform);
VL_SLOT(ViewerDelegateHostSuite, 5, getPartialXform);
VL_SLOT(ViewerDelegateHostSuite, 6, openLocations);
VL_SLOT(ViewerDelegateHostSuite, 7, closeLocations);
VL_SLOT(ViewerDelegateHostSuite, 8, pinLocations);
VL_SLOT(ViewerDelegateHostSuite, 9, unpinLocations);
VL_SLOT(ViewerDelegateHostSuite, 10, activateSourceLocations);
VL_SLOT(ViewerDelegateHostSuite, 11, deactivateSourceLocations);
VL_SLOT(ViewerDelegateHostSuite, 12, setWorkingSetVisibilityEnabled);
VL_SLOT(ViewerDelegateHostSuite, 13, getWorkingSetVisibilityEnabled);
VL_SLOT(ViewerDelegateHostSuite, 14, setVisibilityWorkingSet);
VL_SLOT(ViewerDelegateHostSuite, 15, selectLocation);
VL_SLOT(ViewerDelegateHostSuite, 16, selectLocations);
VL_SLOT(ViewerDelegateHostSuite, 17, getSelectedLocations);
VL_SLOT(ViewerDelegateHostSuite, 18, getCompatibleManipulatorsInfo);
VL_SLOT(ViewerDelegateHostSuite, 19, callPythonCallback);
VL_SLOT(ViewerDelegateHostSuite, 20, addComponent);
VL_SLOT(ViewerDelegateHostSuite, 21, getComponent);
VL_SLOT(ViewerDelegateHostSuite, 22, getComponentByIndex);
VL_SLOT(ViewerDelegateHostSuite, 23, removeComponent);
VL_SLOT(ViewerDelegateHostSuite, 24, removeComponentByIndex);
VL_SLOT(ViewerDelegateHostSuite, 25, getNumberOfComponents);
VL_SLOT(ViewerDelegateHostSuite, 26, getComponentName);
VL_SLOT(ViewerDelegateHostSuite, 27, addViewport);
VL_SLOT(ViewerDelegateHostSuite, 28, getViewport);
VL_SLOT(ViewerDelegateHostSuite, 29, getViewportByIndex);
VL_SLOT(ViewerDelegateHostSuite, 30, removeViewport);
VL_SLOT(ViewerDelegateHostSuite, 31, removeViewportByIndex);
VL_SLOT(ViewerDelegateHostSuite, 32, getNumberOfViewports);
VL_SLOT(ViewerDelegateHostSuite, 33, getViewportName);
VL_SLOT(ViewerDelegateHostSuite, 34, setManipulatedAttribute);
VL_SLOT(ViewerDelegateHostSuite, 35, openManipulationGroup);
VL_SLOT(ViewerDelegateHostSuite, 36, closeManipulationGroup);
VL_SLOT(ViewerDelegateHostSuite, 37, setBoundingBoxesEnabled);
VL_SLOT(ViewerDelegateHostSuite, 38, setProxyGeometryEnabled);
VL_SLOT(ViewerDelegateHostSuite, 39, getDescendantLocations);
VL_SLOT(ViewerDelegateHostSuite, 40, getLiveAttributes);
VL_SLOT(ViewerDelegateHostSuite, 41, getCookedAttributes);
VL_SLOT(ViewerDelegateHostSuite, 42, isProcessing);
VL_SLOT(ViewerDelegateHostSuite, 43, computeMergedExtent);
VL_SLOT(ViewerDelegateHostSuite, 44, insertComponent);
VL_SLOT(ViewerDelegateHostSuite, 45, getComponentIndex);
VL_SLOT(ViewerDelegateHostSuite, 46, hideLocations);
VL_SLOT(ViewerDelegateHostSuite, 47, unhideLocations);
VL_SLOT(ViewerDelegateHostSuite, 48, unhideAllLocations);
VL_SLOT(ViewerDelegateHostSuite, 49, getHiddenLocations);
VL_SLOTS(ViewerDelegateHostSuite, 50);

VL_SLOT(ViewerDelegateHostSuiteV2, 0, setViewOp);
VL_SLOT(ViewerDelegateHostSuiteV2, 1, getAttributes);
VL_SLOT(ViewerDelegateHostSuiteV2, 2, getLocalXform);
VL_SLOT(ViewerDelegateHostSuiteV2, 3, getWorldXform);
VL_SLOT(ViewerDelegateHostSuiteV2, 4, getParentXform);
VL_SLOT(ViewerDelegateHostSuiteV2, 5, getPartialXform);
VL_SLOT(ViewerDelegateHostSuiteV2, 6, openLocations);
VL_SLOT(ViewerDelegateHostSuiteV2, 7, closeLocations);
VL_SLOT(ViewerDelegateHostSuiteV2, 8, pinLocations);
VL_SLOT(ViewerDelegateHostSuiteV2, 9, unpinLocations);
VL_SLOT(ViewerDelegateHostSuiteV2, 10, activateSourceLocations);
VL_SLOT(ViewerDelegateHostSuiteV2, 11, deactivateSourceLocations);
VL_SLOT(ViewerDelegateHostSuiteV2, 12, setWorkingSetVisibilityEnabled);
VL_SLOT(ViewerDelegateHostSuiteV2, 13, getWorkingSetVisibilityEnabled);
VL_SLOT(ViewerDelegateHostSuiteV2, 14, setVisibilityWorkingSet);
VL_SLOT(ViewerDelegateHostSuiteV2, 15, selectLocation);
VL_SLOT(ViewerDelegateHostSuiteV2, 16, selectLocations);
VL_SLOT(ViewerDelegateHostSuiteV2, 17, getSelectedLocations);
VL_SLOT(ViewerDelegateHostSuiteV2, 18, getCompatibleManipulatorsInfo);
VL_SLOT(ViewerDelegateHostSuiteV2, 19, callPythonCallback);
VL_SLOT(ViewerDelegateHostSuiteV2, 20, addComponent);
VL_SLOT(ViewerDelegateHostSuiteV2, 21, getComponent);
VL_SLOT(ViewerDelegateHostSuiteV2, 22, getComponentByIndex);
VL_SLOT(ViewerDelegateHostSuiteV2, 23, removeComponent);
VL_SLOT(ViewerDelegateHostSuiteV2, 24, removeComponentByIndex);
VL_SLOT(ViewerDelegateHostSuiteV2, 25, getNumberOfComponents);
VL_SLOT(ViewerDelegateHostSuiteV2, 26, getComponentName);
VL_SLOT(ViewerDelegateHostSuiteV2, 27, addViewport);
VL_SLOT(ViewerDelegateHostSuiteV2, 28, getViewport);
VL_SLOT(ViewerDelegateHostSuiteV2, 29, getViewportByIndex);
VL_SLOT(ViewerDelegateHostSuiteV2, 30, removeViewport);
VL_SLOT(ViewerDelegateHostSuiteV2, 31, removeViewportByIndex);
VL_SLOT(ViewerDelegateHostSuiteV2, 32, getNumberOfViewports);
VL_SLOT(ViewerDelegateHostSuiteV2, 33, getViewportName);
VL_SLOT(ViewerDelegateHostSuiteV2, 34, setManipulatedAttribute);
VL_SLOT(ViewerDelegateHostSuiteV2, 35, openManipulationGroup);
VL_SLOT(ViewerDelegateHostSuiteV2, 36, closeManipulationGroup);
VL_SLOT(ViewerDelegateHostSuiteV2, 37, setBoundingBoxesEnabled);
VL_SLOT(ViewerDelegateHostSuiteV2, 38, setProxyGeometryEnabled);
VL_SLOT(ViewerDelegateHostSuiteV2, 39, getDescendantLocations);
VL_SLOT(ViewerDelegateHostSuiteV2, 40, getLiveAttributes);
VL_SLOT(ViewerDelegateHostSuiteV2, 41, getCookedAttributes);
VL_SLOT(ViewerDelegateHostSuiteV2, 42, isProcessing);
VL_SLOT(ViewerDelegateHostSuiteV2, 43, computeMergedExtent);
VL_SLOT(ViewerDelegateHostSuiteV2, 44, insertComponent);
VL_SLOT(ViewerDelegateHostSuiteV2, 45, getComponentIndex);
VL_SLOT(ViewerDelegateHostSuiteV2, 46, hideLocations);
VL_SLOT(ViewerDelegateHostSuiteV2, 47, unhideLocations);
VL_SLOT(ViewerDelegateHostSuiteV2, 48, unhideAllLocations);
VL_SLOT(ViewerDelegateHostSuiteV2, 49, getHiddenLocations);
VL_SLOTS(ViewerDelegateHostSuiteV2, 50);

VL_SLOT(ViewerDelegateComponentHostSuite, 0, getViewerDelegate);
VL_SLOT(ViewerDelegateComponentHostSuite, 1, reserved1);
VL_SLOT(ViewerDelegateComponentHostSuite, 2, reserved2);
VL_SLOTS(ViewerDelegateComponentHostSuite, 3);

VL_SLOT(ViewportHostSuite, 0, getName);
VL_SLOT(ViewportHostSuite, 1, getViewerDelegate);
VL_SLOT(ViewportHostSuite, 2, getActiveCamera);
VL_SLOT(ViewportHostSuite, 3, addCamera);
VL_SLOT(ViewportHostSuite, 4, removeCamera);
VL_SLOT(ViewportHostSuite, 5, setActiveCamera);
VL_SLOT(ViewportHostSuite, 6, getCameraByName);
VL_SLOT(ViewportHostSuite, 7, getCameraByIndex);
VL_SLOT(ViewportHostSuite, 8, removeCameraByName);
VL_SLOT(ViewportHostSuite, 9, removeCameraByIndex);
VL_SLOT(ViewportHostSuite, 10, getNumberOfCameras);
VL_SLOT(ViewportHostSuite, 11, getCameraName);
VL_SLOT(ViewportHostSuite, 12, getCameraIndex);
VL_SLOT(ViewportHostSuite, 13, event);
VL_SLOT(ViewportHostSuite, 14, draw);
VL_SLOT(ViewportHostSuite, 15, resize);
VL_SLOT(ViewportHostSuite, 16, getWidth);
VL_SLOT(ViewportHostSuite, 17, getHeight);
VL_SLOT(ViewportHostSuite, 18, isDirty);
VL_SLOT(ViewportHostSuite, 19, setDirty);
VL_SLOT(ViewportHostSuite, 20, addLayer);
VL_SLOT(ViewportHostSuite, 21, insertLayer);
VL_SLOT(ViewportHostSuite, 22, getLayer);
VL_SLOT(ViewportHostSuite, 23, getLayerByIndex);
VL_SLOT(ViewportHostSuite, 24, removeLayer);
VL_SLOT(ViewportHostSuite, 25, removeLayerByIndex);
VL_SLOT(ViewportHostSuite, 26, getNumberOfLayers);
VL_SLOT(ViewportHostSuite, 27, getLayerName);
VL_SLOT(ViewportHostSuite, 28, getLayerIndex);
VL_SLOT(ViewportHostSuite, 29, getViewMatrix);
VL_SLOT(ViewportHostSuite, 30, getProjectionMatrix);
VL_SLOT(ViewportHostSuite, 31, activateManipulator);
VL_SLOT(ViewportHostSuite, 32, deactivateManipulator);
VL_SLOT(ViewportHostSuite, 33, deactivateAllManipulators);
VL_SLOT(ViewportHostSuite, 34, getNumberOfActiveManipulators);
VL_SLOT(ViewportHostSuite, 35, getActiveManipulatorByIndex);
VL_SLOT(ViewportHostSuite, 36, getActiveManipulator);
VL_SLOT(ViewportHostSuite, 37, getReserved);
VL_SLOT(ViewportHostSuite, 38, makeGLContextCurrent);
VL_SLOT(ViewportHostSuite, 39, doneGLContextCurrent);
VL_SLOT(ViewportHostSuite, 40, isGLContextCurrent);
VL_SLOT(ViewportHostSuite, 41, enableCapability);
VL_SLOT(ViewportHostSuite, 42, disableCapability);
VL_SLOT(ViewportHostSuite, 43, addPickableObject);
VL_SLOT(ViewportHostSuite, 44, getPickedObjects);
VL_SLOT(ViewportHostSuite, 45, setViewFrozen);
VL_SLOT(ViewportHostSuite, 46, isViewFrozen);
VL_SLOT(ViewportHostSuite, 47, setPanAndZoomActive);
VL_SLOT(ViewportHostSuite, 48, isPanAndZoomActive);
VL_SLOT(ViewportHostSuite, 49, initializeGLContext);
VL_SLOTS(ViewportHostSuite, 50);

VL_SLOT(ViewportCameraHostSuite, 0, getViewMatrix);
VL_SLOT(ViewportCameraHostSuite, 1, setViewMatrix);
VL_SLOT(ViewportCameraHostSuite, 2, getProjectionMatrix);
VL_SLOT(ViewportCameraHostSuite, 3, setProjectionMatrix);
VL_SLOT(ViewportCameraHostSuite, 4, getCenterOfInterest);
VL_SLOT(ViewportCameraHostSuite, 5, setCenterOfInterest);
VL_SLOT(ViewportCameraHostSuite, 6, getFOV);
VL_SLOT(ViewportCameraHostSuite, 7, setFOV);
VL_SLOT(ViewportCameraHostSuite, 8, getOrthographicWidth);
VL_SLOT(ViewportCameraHostSuite, 9, setOrthographicWidth);
VL_SLOT(ViewportCameraHostSuite, 10, getNearFar);
VL_SLOT(ViewportCameraHostSuite, 11, setNearFar);
VL_SLOT(ViewportCameraHostSuite, 12, getScreenWindow);
VL_SLOT(ViewportCameraHostSuite, 13, setScreenWindow);
VL_SLOT(ViewportCameraHostSuite, 14, getOrigin);
VL_SLOT(ViewportCameraHostSuite, 15, getDirection);
VL_SLOT(ViewportCameraHostSuite, 16, getUp);
VL_SLOT(ViewportCameraHostSuite, 17, getLeft);
VL_SLOT(ViewportCameraHostSuite, 18, getViewport);
VL_SLOT(ViewportCameraHostSuite, 19, hasLocationPath);
VL_SLOT(ViewportCameraHostSuite, 20, getLocationPath);
VL_SLOT(ViewportCameraHostSuite, 21, setLocationPath);
VL_SLOT(ViewportCameraHostSuite, 22, isInteractionDisabled);
VL_SLOT(ViewportCameraHostSuite, 23, disableInteraction);
VL_SLOTS(ViewportCameraHostSuite, 24);

VL_SLOT(ViewportLayerHostSuite, 0, getViewport);
VL_SLOT(ViewportLayerHostSuite, 1, event);
VL_SLOT(ViewportLayerHostSuite, 2, draw);
VL_SLOT(ViewportLayerHostSuite, 3, hover);
VL_SLOT(ViewportLayerHostSuite, 4, addPickableObject);
VL_SLOT(ViewportLayerHostSuite, 5, getPickedObjects);
VL_SLOTS(ViewportLayerHostSuite, 6);

VL_SLOT(ManipulatorHostSuite, 0, getPluginName);
VL_SLOT(ManipulatorHostSuite, 1, event);
VL_SLOT(ManipulatorHostSuite, 2, draw);
VL_SLOT(ManipulatorHostSuite, 3, pickerDraw);
VL_SLOT(ManipulatorHostSuite, 4, getXform);
VL_SLOT(ManipulatorHostSuite, 5, setXform);
VL_SLOT(ManipulatorHostSuite, 6, calculateXform);
VL_SLOT(ManipulatorHostSuite, 7, getValue);
VL_SLOT(ManipulatorHostSuite, 8, setValue);
VL_SLOT(ManipulatorHostSuite, 9, getViewport);
VL_SLOT(ManipulatorHostSuite, 10, getLocationPaths);
VL_SLOT(ManipulatorHostSuite, 11, addManipulatorHandle);
VL_SLOT(ManipulatorHostSuite, 12, getManipulatorHandle);
VL_SLOT(ManipulatorHostSuite, 13, getManipulatorHandleByIndex);
VL_SLOT(ManipulatorHostSuite, 14, removeManipulatorHandle);
VL_SLOT(ManipulatorHostSuite, 15, removeManipulatorHandleByIndex);
VL_SLOT(ManipulatorHostSuite, 16, getNumberOfManipulatorHandles);
VL_SLOT(ManipulatorHostSuite, 17, getManipulatorHandleName);
VL_SLOT(ManipulatorHostSuite, 18, getRegisteredManipulatorsInfo);
VL_SLOT(ManipulatorHostSuite, 19, isEditable);
VL_SLOT(ManipulatorHostSuite, 20, openManipulationGroup);
VL_SLOT(ManipulatorHostSuite, 21, closeManipulationGroup);
VL_SLOTS(ManipulatorHostSuite, 22);

VL_SLOT(ManipulatorHandleHostSuite, 0, getManipulator);
VL_SLOT(ManipulatorHandleHostSuite, 1, getCombinedXform);
VL_SLOT(ManipulatorHandleHostSuite, 2, setLocalXform);
VL_SLOT(ManipulatorHandleHostSuite, 3, getLocalXform);
VL_SLOT(ManipulatorHandleHostSuite, 4, event);
VL_SLOT(ManipulatorHandleHostSuite, 5, draw);
VL_SLOT(ManipulatorHandleHostSuite, 6, pickerDraw);
VL_SLOT(ManipulatorHandleHostSuite, 7, setEngaged);
VL_SLOT(ManipulatorHandleHostSuite, 8, isEngaged);
VL_SLOT(ManipulatorHandleHostSuite, 9, setMarked);
VL_SLOT(ManipulatorHandleHostSuite, 10, isMarked);
VL_SLOT(ManipulatorHandleHostSuite, 11, notifyPlugin);
VL_SLOTS(ManipulatorHandleHostSuite, 12);

VL_SLOT(OptionIdGeneratorHostSuite, 0, getOptionIdGenerator);
VL_SLOT(OptionIdGeneratorHostSuite, 1, generateOptionIdByName);
VL_SLOT(OptionIdGeneratorHostSuite, 2, lookUpOptionId);
VL_SLOTS(OptionIdGeneratorHostSuite, 3);

static_assert(offsetof(ViewerLocationEvent, locationPath) == 0);
static_assert(offsetof(ViewerLocationEvent, attributes) == sizeof(void*));
static_assert(offsetof(ViewerLocationEvent, xform) == 2 * sizeof(void*));
static_assert(offsetof(ViewerLocationEvent, flags) == 3 * sizeof(void*));

VL_SLOT(VlPluginHost, 0, getSuite);
VL_SLOTS(VlPluginHost, 1);
VL_SLOT(VlPluginRecord, 0, typeName);
VL_SLOT(VlPluginRecord, 1, name);
VL_SLOT(VlPluginRecord, 2, apiVersion);
VL_SLOT(VlPluginRecord, 3, suite);
VL_SLOTS(VlPluginRecord, 4);
