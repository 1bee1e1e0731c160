#include "viewporthostsuite.h"

#include "text.h"
#include "triple.h"
#include "vlmanipulatorhost.h"
#include "vlviewerdelegatehost.h"
#include "vlviewportcamerahost.h"
#include "vlviewporthost.h"
#include "vlviewportlayerhost.h"
#include "vlviewportpicker.h"

#include "VlAttribute/StringAttribute.h"

namespace ViewerAPI {

namespace {

VlViewportHostStruct& viewportOf(void* host) {
    return *static_cast<VlViewportHostStruct*>(host);
}

VlViewportCameraHostStruct* cameraOf(void* host) {
    return static_cast<VlViewportCameraHostStruct*>(host);
}

const char* getName(void* host) {
    return viewportOf(host).name.c_str();
}

void getViewerDelegate(void* host, void** delegateHost, void** instance, const void** suite) {
    writeTriple(viewportOf(host).viewerDelegate, delegateHost, instance, suite);
}

void getActiveCamera(void* host, void** cameraHost, void** instance, const void** suite) {
    writeTriple(viewportOf(host).getActiveCamera(), cameraHost, instance, suite);
}

void addCamera(void* host, const char* pluginName, const char* name, void** cameraHost,
               void** instance, const void** suite) {
    writeTriple(viewportOf(host).addCamera(textOf(pluginName), textOf(name)), cameraHost, instance,
                suite);
}

void removeCamera(void* host, void* camera) {
    viewportOf(host).removeCamera(cameraOf(camera));
}

void setActiveCamera(void* host, void* camera) {
    viewportOf(host).setActiveCamera(cameraOf(camera));
}

void getCameraByName(void* host, const char* name, void** cameraHost, void** instance,
                     const void** suite) {
    writeTriple(name ? viewportOf(host).getCameraByName(name) : nullptr, cameraHost, instance,
                suite);
}

void getCameraByIndex(void* host, uint32_t index, void** cameraHost, void** instance,
                      const void** suite) {
    writeTriple(viewportOf(host).getCameraByIndex(index), cameraHost, instance, suite);
}

void removeCameraByName(void* host, const char* name) {
    if (name) {
        viewportOf(host).removeCameraByName(name);
    }
}

void removeCameraByIndex(void* host, uint32_t index) {
    viewportOf(host).removeCameraByIndex(index);
}

uint32_t getNumberOfCameras(void* host) {
    return viewportOf(host).getNumberOfCameras();
}

const char* getCameraName(void* host, uint32_t index) {
    return viewportOf(host).getCameraName(index);
}

int getCameraIndex(void* host, const char* name) {
    return name ? viewportOf(host).getCameraIndex(name) : -1;
}

int event(void* host, VlAttributeStruct* eventData) {
    return viewportOf(host).event(eventData);
}

void draw(void* host) {
    viewportOf(host).draw();
}

void resize(void* host, int width, int height) {
    viewportOf(host).resize(width, height);
}

int getWidth(void* host) {
    return viewportOf(host).getWidth();
}

int getHeight(void* host) {
    return viewportOf(host).getHeight();
}

int isDirty(void* host) {
    return viewportOf(host).isDirty;
}

void setDirty(void* host, int dirty) {
    viewportOf(host).setDirty(dirty != 0);
}

void addLayer(void* host, const char* pluginName, const char* name, void** layerHost,
              void** instance, const void** suite) {
    writeTriple(viewportOf(host).addLayer(textOf(pluginName), textOf(name)), layerHost, instance,
                suite);
}

void insertLayer(void* host, const char* pluginName, const char* name, uint32_t index,
                 void** layerHost, void** instance, const void** suite) {
    writeTriple(viewportOf(host).insertLayer(textOf(pluginName), textOf(name), index), layerHost,
                instance, suite);
}

void getLayer(void* host, const char* name, void** layerHost, void** instance, const void** suite) {
    writeTriple(name ? viewportOf(host).getLayer(name) : nullptr, layerHost, instance, suite);
}

void getLayerByIndex(void* host, uint32_t index, void** layerHost, void** instance,
                     const void** suite) {
    writeTriple(viewportOf(host).getLayerByIndex(index), layerHost, instance, suite);
}

void removeLayer(void* host, const char* name) {
    if (name) {
        viewportOf(host).removeLayer(name);
    }
}

void removeLayerByIndex(void* host, uint32_t index) {
    viewportOf(host).removeLayerByIndex(index);
}

uint32_t getNumberOfLayers(void* host) {
    return viewportOf(host).getNumberOfLayers();
}

const char* getLayerName(void* host, uint32_t index) {
    return viewportOf(host).getLayerName(index);
}

int getLayerIndex(void* host, const char* name) {
    return name ? viewportOf(host).getLayerIndex(name) : -1;
}

const double* getViewMatrix(void* host) {
    return viewportOf(host).getViewMatrix();
}

const double* getProjectionMatrix(void* host) {
    return viewportOf(host).getProjectionMatrix();
}

int getReserved(void*) {
    return 0;
}

int makeGLContextCurrent(void* host) {
    return viewportOf(host).makeGLContextCurrent();
}

int doneGLContextCurrent(void* host) {
    return viewportOf(host).doneGLContextCurrent();
}

int isGLContextCurrent(void* host) {
    return viewportOf(host).isGLContextCurrent();
}

void enableCapability(void* host, uint32_t capability) {
    viewportOf(host).enableCapability(capability);
}

void disableCapability(void* host, uint32_t capability) {
    viewportOf(host).disableCapability(capability);
}

uint64_t addPickableObject(void* host, VlAttributeStruct* object) {
    return viewportOf(host).addPickableObject(VlAttribute::Attribute::CreateAndRetain(object));
}

VlAttributeStruct* getPickedObjects(void* host, int x, int y, int width, int height,
                                    int deepPicking, float* depth) {
    return viewportOf(host)
        .getPickedObjects({x, y, width, height}, deepPicking != 0, depth)
        .detach();
}

void setViewFrozen(void* host, int frozen) {
    viewportOf(host).setViewFrozen(frozen != 0);
}

int isViewFrozen(void* host) {
    return viewportOf(host).isViewFrozen;
}

void setPanAndZoomActive(void* host, int active) {
    viewportOf(host).setPanAndZoomActive(active != 0);
}

int isPanAndZoomActive(void* host) {
    return viewportOf(host).isPanAndZoomActive;
}

int initializeGLContext(void* host) {
    return viewportOf(host).initializeGLContext();
}

// A plug-in's changes are always told to the user interface.

void activateManipulator(void* host, const char* pluginName, VlAttributeStruct* locationPaths) {
    viewportOf(host).activateManipulator(
        textOf(pluginName),
        VlAttribute::StringAttribute(VlAttribute::Attribute::CreateAndRetain(locationPaths)), true);
}

void deactivateManipulator(void* host, const char* pluginName) {
    viewportOf(host).deactivateManipulator(textOf(pluginName), true);
}

void deactivateAllManipulators(void* host) {
    viewportOf(host).deactivateAllManipulators(true);
}

uint32_t getNumberOfActiveManipulators(void* host) {
    return viewportOf(host).getNumberOfActiveManipulators();
}

void getActiveManipulatorByIndex(void* host, uint32_t index, void** manipulatorHost,
                                 void** instance, const void** suite) {
    writeTriple(viewportOf(host).getActiveManipulatorByIndex(index), manipulatorHost, instance,
                suite);
}

void getActiveManipulator(void* host, const char* pluginName, void** manipulatorHost,
                          void** instance, const void** suite) {
    writeTriple(viewportOf(host).getActiveManipulator(textOf(pluginName)), manipulatorHost,
                instance, suite);
}

constexpr ViewportHostSuite kSuite = {
    .getName = getName,
    .getViewerDelegate = getViewerDelegate,
    .getActiveCamera = getActiveCamera,
    .addCamera = addCamera,
    .removeCamera = removeCamera,
    .setActiveCamera = setActiveCamera,
    .getCameraByName = getCameraByName,
    .getCameraByIndex = getCameraByIndex,
    .removeCameraByName = removeCameraByName,
    .removeCameraByIndex = removeCameraByIndex,
    .getNumberOfCameras = getNumberOfCameras,
    .getCameraName = getCameraName,
    .getCameraIndex = getCameraIndex,
    .event = event,
    .draw = draw,
    .resize = resize,
    .getWidth = getWidth,
    .getHeight = getHeight,
    .isDirty = isDirty,
    .setDirty = setDirty,
    .addLayer = addLayer,
    .insertLayer = insertLayer,
    .getLayer = getLayer,
    .getLayerByIndex = getLayerByIndex,
    .removeLayer = removeLayer,
    .removeLayerByIndex = removeLayerByIndex,
    .getNumberOfLayers = getNumberOfLayers,
    .getLayerName = getLayerName,
    .getLayerIndex = getLayerIndex,
    .getViewMatrix = getViewMatrix,
    .getProjectionMatrix = getProjectionMatrix,
    .activateManipulator = activateManipulator,
    .deactivateManipulator = deactivateManipulator,
    .deactivateAllManipulators = deactivateAllManipulators,
    .getNumberOfActiveManipulators = getNumberOfActiveManipulators,
    .getActiveManipulatorByIndex = getActiveManipulatorByIndex,
    .getActiveManipulator = getActiveManipulator,
    .getReserved = getReserved,
    .makeGLContextCurrent = makeGLContextCurrent,
    .doneGLContextCurrent = doneGLContextCurrent,
    .isGLContextCurrent = isGLContextCurrent,
    .enableCapability = enableCapability,
    .disableCapability = disableCapability,
    .addPickableObject = addPickableObject,
    .getPickedObjects = getPickedObjects,
    .setViewFrozen = setViewFrozen,
    .isViewFrozen = isViewFrozen,
    .setPanAndZoomActive = setPanAndZoomActive,
    .isPanAndZoomActive = isPanAndZoomActive,
    .initializeGLContext = initializeGLContext,
};

} // namespace

const ViewportHostSuite* getViewportHostSuite() {
    return &kSuite;
}

} // namespace ViewerAPI
