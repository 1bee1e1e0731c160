#include "viewerdelegatehostsuite.h"

#include "text.h"
#include "triple.h"
#include "vlviewerdelegatecomponenthost.h"
#include "vlviewerdelegatehost.h"
#include "vlviewporthost.h"

namespace ViewerAPI {
namespace {

using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;

VlViewerDelegateHostStruct& delegateOf(VlViewerDelegateHandle handle) {
    return *static_cast<VlViewerDelegateHostStruct*>(handle);
}

int setViewOp(VlViewerDelegateHandle host, int opId) {
    return static_cast<int>(delegateOf(host).setViewOp(opId));
}

VlAttributeStruct* getAttributes(VlViewerDelegateHandle host, const char* path, int sceneView) {
    return delegateOf(host).getAttributes(textOf(path), sceneView).detach();
}

VlAttributeStruct* getLocalXform(VlViewerDelegateHandle host, const char* path, uint8_t* isAbsolute,
                                 int sceneView) {
    bool absolute = false;
    auto matrix = delegateOf(host).getLocalXform(textOf(path), absolute, sceneView);
    *isAbsolute = absolute ? 1 : 0;
    return matrix.detach();
}

VlAttributeStruct* getWorldXform(VlViewerDelegateHandle host, const char* path, int sceneView) {
    return delegateOf(host).getWorldXform(textOf(path), sceneView).detach();
}

VlAttributeStruct* getParentXform(VlViewerDelegateHandle host, const char* path, int sceneView) {
    return delegateOf(host).getParentXform(textOf(path), sceneView).detach();
}

VlAttributeStruct* getPartialXform(VlViewerDelegateHandle host, const char* path,
                                   const char* groupName, const char* componentName,
                                   int includeComponent, int sceneView, int includeParentXform,
                                   int includeGroupsBefore, int includeGroupsAfter) {
    return delegateOf(host)
        .getPartialXform(textOf(path), textOf(groupName), textOf(componentName),
                         includeComponent != 0, sceneView, includeParentXform != 0,
                         includeGroupsBefore != 0, includeGroupsAfter != 0)
        .detach();
}

VlAttributeStruct* getPartialXformV2(VlViewerDelegateHandle host, const char* path,
                                     const char* groupName, const char* componentName,
                                     int includeComponent, int sceneView) {
    return getPartialXform(host, path, groupName, componentName, includeComponent, sceneView, 1, 1,
                           0);
}

void openLocations(VlViewerDelegateHandle host, const char** paths, uint32_t count) {
    delegateOf(host).openLocations(paths, count);
}

void closeLocations(VlViewerDelegateHandle host, const char** paths, uint32_t count) {
    delegateOf(host).closeLocations(paths, count);
}

void pinLocations(VlViewerDelegateHandle host, const char** paths, uint32_t count) {
    delegateOf(host).pinLocations(paths, count);
}

void unpinLocations(VlViewerDelegateHandle host, const char** paths, uint32_t count) {
    delegateOf(host).unpinLocations(paths, count);
}

void activateSourceLocations(VlViewerDelegateHandle host, const char** paths, uint32_t count) {
    delegateOf(host).activateSourceLocations(paths, count);
}

void deactivateSourceLocations(VlViewerDelegateHandle host, const char** paths, uint32_t count) {
    delegateOf(host).deactivateSourceLocations(paths, count);
}

void setWorkingSetVisibilityEnabled(VlViewerDelegateHandle host, uint8_t enabled) {
    delegateOf(host).setWorkingSetVisibilityEnabled(enabled != 0);
}

uint8_t getWorkingSetVisibilityEnabled(VlViewerDelegateHandle host) {
    return delegateOf(host).getWorkingSetVisibilityEnabled() ? 1 : 0;
}

void setVisibilityWorkingSet(VlViewerDelegateHandle host, VlAttributeStruct* workingSet) {
    delegateOf(host).setVisibilityWorkingSet(
        GroupAttribute(Attribute::CreateAndRetain(workingSet)));
}

void selectLocation(VlViewerDelegateHandle host, const char* path) {
    delegateOf(host).selectLocation(path);
}

void selectLocations(VlViewerDelegateHandle host, const char** paths, uint32_t count) {
    delegateOf(host).selectLocations(paths, count);
}

VlAttributeStruct* getSelectedLocations(VlViewerDelegateHandle host) {
    return delegateOf(host).getSelectedLocations().detach();
}

VlAttributeStruct* getCompatibleManipulatorsInfo(VlViewerDelegateHandle host, const char** paths,
                                                 uint32_t count) {
    return delegateOf(host).getCompatibleManipulatorsInfo(paths, count).detach();
}

VlAttributeStruct* callPythonCallback(VlViewerDelegateHandle host, const char* name,
                                      VlAttributeStruct* value) {
    return delegateOf(host).callPythonCallback(name, Attribute::CreateAndRetain(value)).detach();
}

void addComponent(VlViewerDelegateHandle host, const char* pluginName, const char* name,
                  void** componentHost, void** instance, const void** suite) {
    writeTriple(delegateOf(host).addComponent(textOf(pluginName), textOf(name)), componentHost,
                instance, suite);
}

void getComponent(VlViewerDelegateHandle host, const char* name, void** componentHost,
                  void** instance, const void** suite) {
    writeTriple(name ? delegateOf(host).getComponent(name) : nullptr, componentHost, instance,
                suite);
}

void getComponentByIndex(VlViewerDelegateHandle host, uint32_t index, void** componentHost,
                         void** instance, const void** suite) {
    writeTriple(delegateOf(host).getComponentByIndex(index), componentHost, instance, suite);
}

void removeComponent(VlViewerDelegateHandle host, const char* name) {
    if (name) {
        delegateOf(host).removeComponent(name);
    }
}

void removeComponentByIndex(VlViewerDelegateHandle host, uint32_t index) {
    delegateOf(host).removeComponentByIndex(index);
}

uint32_t getNumberOfComponents(VlViewerDelegateHandle host) {
    return delegateOf(host).getNumberOfComponents();
}

const char* getComponentName(VlViewerDelegateHandle host, uint32_t index) {
    return delegateOf(host).getComponentName(index);
}

void addViewport(VlViewerDelegateHandle host, VlViewportHandle viewport, const char* name) {
    delegateOf(host).addViewport(static_cast<VlViewportHostStruct*>(viewport), textOf(name));
}

void getViewport(VlViewerDelegateHandle host, const char* name, void** viewportHost,
                 void** instance, const void** suite) {
    writeTriple(name ? delegateOf(host).getViewport(name) : nullptr, viewportHost, instance, suite);
}

void getViewportByIndex(VlViewerDelegateHandle host, uint32_t index, void** viewportHost,
                        void** instance, const void** suite) {
    writeTriple(delegateOf(host).getViewportByIndex(index), viewportHost, instance, suite);
}

void removeViewport(VlViewerDelegateHandle host, const char* name) {
    if (name) {
        delegateOf(host).removeViewport(name);
    }
}

void removeViewportByIndex(VlViewerDelegateHandle host, uint32_t index) {
    delegateOf(host).removeViewportByIndex(index);
}

uint32_t getNumberOfViewports(VlViewerDelegateHandle host) {
    return delegateOf(host).getNumberOfViewports();
}

const char* getViewportName(VlViewerDelegateHandle host, uint32_t index) {
    return delegateOf(host).getViewportName(index);
}

uint8_t setManipulatedAttribute(VlViewerDelegateHandle host, const char* path, const char* name,
                                VlAttributeStruct* value, int isFinal) {
    return delegateOf(host).setManipulatedAttribute(textOf(path), textOf(name),
                                                    Attribute::CreateAndRetain(value), isFinal != 0)
               ? 1
               : 0;
}

void openManipulationGroup(VlViewerDelegateHandle host, const char* path) {
    delegateOf(host).openManipulationGroup(textOf(path));
}

void closeManipulationGroup(VlViewerDelegateHandle host, const char* path) {
    delegateOf(host).closeManipulationGroup(textOf(path));
}

void setBoundingBoxesEnabled(VlViewerDelegateHandle host, uint8_t enabled) {
    delegateOf(host).setBoundingBoxesEnabled(enabled != 0);
}

void setProxyGeometryEnabled(VlViewerDelegateHandle host, uint8_t enabled) {
    delegateOf(host).setProxyGeometryEnabled(enabled != 0);
}

VlAttributeStruct* getDescendantLocations(VlViewerDelegateHandle host, const char* path) {
    return delegateOf(host).getDescendantLocations(textOf(path)).detach();
}

VlAttributeStruct* getLiveAttributes(VlViewerDelegateHandle host, const char* path, int sceneView) {
    return delegateOf(host).getLiveAttributes(textOf(path), sceneView).detach();
}

VlAttributeStruct* getCookedAttributes(VlViewerDelegateHandle host, const char* path,
                                       int sceneView) {
    return delegateOf(host).getCookedAttributes(textOf(path), sceneView).detach();
}

uint8_t isProcessing(VlViewerDelegateHandle host) {
    return delegateOf(host).isProcessing() ? 1 : 0;
}

VlAttributeStruct* computeMergedExtent(VlViewerDelegateHandle host, const char** paths,
                                       uint32_t count, const char* excludePath) {
    return delegateOf(host).computeMergedExtent(paths, count, textOf(excludePath)).detach();
}

void insertComponent(VlViewerDelegateHandle host, const char* pluginName, const char* name,
                     uint32_t index, void** componentHost, void** instance, const void** suite) {
    writeTriple(delegateOf(host).insertComponent(textOf(pluginName), textOf(name), index),
                componentHost, instance, suite);
}

int getComponentIndex(VlViewerDelegateHandle host, const char* name) {
    return name ? delegateOf(host).getComponentIndex(name) : -1;
}

void hideLocations(VlViewerDelegateHandle host, const char** paths, uint32_t count) {
    delegateOf(host).hideLocations(paths, count);
}

void unhideLocations(VlViewerDelegateHandle host, const char** paths, uint32_t count) {
    delegateOf(host).unhideLocations(paths, count);
}

void unhideAllLocations(VlViewerDelegateHandle host) {
    delegateOf(host).unhideAllLocations();
}

VlAttributeStruct* getHiddenLocations(VlViewerDelegateHandle host) {
    return delegateOf(host).getHiddenLocations().detach();
}

/// Either version's table: they differ in one entry's arguments alone.
template <class Suite, class PartialXform>
constexpr Suite makeSuite(PartialXform partialXform) {
    return {
        .setViewOp = setViewOp,
        .getAttributes = getAttributes,
        .getLocalXform = getLocalXform,
        .getWorldXform = getWorldXform,
        .getParentXform = getParentXform,
        .getPartialXform = partialXform,
        .openLocations = openLocations,
        .closeLocations = closeLocations,
        .pinLocations = pinLocations,
        .unpinLocations = unpinLocations,
        .activateSourceLocations = activateSourceLocations,
        .deactivateSourceLocations = deactivateSourceLocations,
        .setWorkingSetVisibilityEnabled = setWorkingSetVisibilityEnabled,
        .getWorkingSetVisibilityEnabled = getWorkingSetVisibilityEnabled,
        .setVisibilityWorkingSet = setVisibilityWorkingSet,
        .selectLocation = selectLocation,
        .selectLocations = selectLocations,
        .getSelectedLocations = getSelectedLocations,
        .getCompatibleManipulatorsInfo = getCompatibleManipulatorsInfo,
        .callPythonCallback = callPythonCallback,
        .addComponent = addComponent,
        .getComponent = getComponent,
        .getComponentByIndex = getComponentByIndex,
        .removeComponent = removeComponent,
        .removeComponentByIndex = removeComponentByIndex,
        .getNumberOfComponents = getNumberOfComponents,
        .getComponentName = getComponentName,
        .addViewport = addViewport,
        .getViewport = getViewport,
        .getViewportByIndex = getViewportByIndex,
        .removeViewport = removeViewport,
        .removeViewportByIndex = removeViewportByIndex,
        .getNumberOfViewports = getNumberOfViewports,
        .getViewportName = getViewportName,
        .setManipulatedAttribute = setManipulatedAttribute,
        .openManipulationGroup = openManipulationGroup,
        .closeManipulationGroup = closeManipulationGroup,
        .setBoundingBoxesEnabled = setBoundingBoxesEnabled,
        .setProxyGeometryEnabled = setProxyGeometryEnabled,
        .getDescendantLocations = getDescendantLocations,
        .getLiveAttributes = getLiveAttributes,
        .getCookedAttributes = getCookedAttributes,
        .isProcessing = isProcessing,
        .computeMergedExtent = computeMergedExtent,
        .insertComponent = insertComponent,
        .getComponentIndex = getComponentIndex,
        .hideLocations = hideLocations,
        .unhideLocations = unhideLocations,
        .unhideAllLocations = unhideAllLocations,
        .getHiddenLocations = getHiddenLocations,
    };
}

constexpr auto kSuiteV2 = makeSuite<ViewerDelegateHostSuiteV2>(getPartialXformV2);
constexpr auto kSuite = makeSuite<ViewerDelegateHostSuite>(getPartialXform);

} // namespace

const ViewerDelegateHostSuiteV2* getViewerDelegateHostSuiteV2() {
    return &kSuiteV2;
}

const ViewerDelegateHostSuite* getViewerDelegateHostSuite() {
    return &kSuite;
}

} // namespace ViewerAPI
