#include "vlviewerdelegatehost.h"

#include "callboth.h"
#include "manipulatorbridge.h"
#include "plugininstance.h"
#include "pythonchannel.h"
#include "raisedflag.h"
#include "scenebounds.h"
#include "scenetransforms.h"
#include "steadyclock.h"
#include "vlviewerdelegatecomponenthost.h"
#include "vlviewporthost.h"
#include "workingsetextraction.h"

#include "VlAttribute/IntAttribute.h"
#include "VlScenelib/Client.h"
#include "VlScenelib/LocationEvent.h"
#include "VlScenelib/ScenelibRuntime.h"

#include <algorithm>
#include <atomic>
#include <vector>

namespace ViewerAPI {

using VlAttribute::Attribute;
using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;
using VlScenelib::LocationData;
using VlScenelib::LocationEvent;

namespace {

std::atomic<std::int32_t> viewerDelegateInstanceCount{0};

constexpr const char* kRootPath = "/root";
constexpr const char* kBoundingBoxesChannel = "__BOUNDING_BOXES_CHANGED";
constexpr const char* kProxyGeometryChannel = "__PROXY_GEOMETRY_CHANGED";

} // namespace

VlViewerDelegateHostStruct::VlViewerDelegateHostStruct(const std::string& pluginName,
                                                       void* pythonObject)
    : hostedPythonObject(pythonObject), components(*this), bridge(createManipulatorBridge()) {
    // Never taken back when what follows fails: the count tells of delegates that were begun.
    ++viewerDelegateInstanceCount;
    try {
        createPluginInstance(PluginKind::ViewerDelegate, pluginName, this, suite, instance);
        scene.create();
        factories.createFactories();
        factories.initialise();
        factories.setOwner(this);
    } catch (...) {
        endPlugins();
        throw;
    }
    lastCleanup = steadyNow();
    identityXform = DoubleAttribute({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}, 4);
}

VlViewerDelegateHostStruct::~VlViewerDelegateHostStruct() {
    endPlugins();
    --viewerDelegateInstanceCount;
}

void VlViewerDelegateHostStruct::endPlugins() {
    endLife();
    components.clear();
    viewports.clear();
    destroyPluginInstance(suite, instance);
}

std::int32_t VlViewerDelegateHostStruct::getInstanceCount() noexcept {
    return viewerDelegateInstanceCount.load(std::memory_order_relaxed);
}

void VlViewerDelegateHostStruct::setup() {
    const HostCall call(*this);
    suite->setup(instance);
}

void VlViewerDelegateHostStruct::cleanup() {
    const HostCall call(*this);
    for (std::uint32_t index = getNumberOfComponents(); index-- > 0;) {
        removeComponentByIndex(index);
    }
    for (std::uint32_t index = getNumberOfViewports(); index-- > 0;) {
        removeViewportByIndex(index);
    }
    suite->cleanup(instance);
}

void VlViewerDelegateHostStruct::freeze() {
    const HostCall call(*this);
    suite->freeze(instance);
}

void VlViewerDelegateHostStruct::thaw() {
    const HostCall call(*this);
    suite->thaw(instance);
}

void VlViewerDelegateHostStruct::setOption(std::uint64_t optionId, const Attribute& value) {
    const HostCall call(*this);
    suite->setOption(instance, optionId, value.getRetainedHandle());
}

Attribute VlViewerDelegateHostStruct::getOption(std::uint64_t optionId) {
    const HostCall call(*this);
    return Attribute::CreateAndSteal(suite->getOption(instance, optionId));
}

void VlViewerDelegateHostStruct::flushCaches() {
    const HostCall call(*this);
    locationTree.deleteLocation(kRootPath);
    flushLocationChanges(false);
}

// ---- Scene events

void VlViewerDelegateHostStruct::processLocationEvents() {
    const HostCall call(*this);
    manipulationFreeze.update(*bridge);
    // The bridge may pump again while events are being handled. What the outer pump holds is older
    // than what waits in the clients, and must come first. And no plug-in is told of anything while
    // the tree is kept still: if the scene were taken down then, what this pump brings would hide
    // that it ever went.
    if (!manipulationFreeze.isFrozen() && !isHandlingEvents_ && !delivery_.isKeptStill()) {
        fetchAndHandleEvents();
    }
    flushLocationChanges(true);
    // What plug-ins change while they are told, such as a location that one opens on hearing of it,
    // reaches the factories before they make anything of what it was.
    flushLocationChanges(true);
    applyFactoryProducts();
    // And what plug-ins change on hearing of that second news. The factories pass over what they
    // generated themselves, which goes out here too.
    flushLocationChanges(true);
}

void VlViewerDelegateHostStruct::applyFactoryProducts() {
    // Products are for the tree that the factories know. While a delivery is under way or put off
    // they know an older one; and a collection may lead back here through the user interface.
    if (!delivery_.isIdle() || isCollectingProducts_) {
        return;
    }
    const RaisedFlag collecting(isCollectingProducts_);
    std::vector<FactoryProduct> products;
    const auto apply = [&] {
        for (FactoryProduct& product : products) {
            // The tree passes over what has no cooked parent, and what it doesn't know.
            if (product.kind == kFactoryProductProduced) {
                locationTree.cook(product.path, std::move(product.attrs), {}, true, false);
            } else {
                locationTree.deleteLocation(product.path);
            }
        }
    };
    // The factories count as delivered what they gave before one failed.
    callBoth([&] { factories.collectProducts(products); }, apply);
}

void VlViewerDelegateHostStruct::fetchAndHandleEvents() {
    const RaisedFlag handling(isHandlingEvents_);
    // All are read before any is handled, so that they show one moment of the scene.
    SceneEvents events = scene.fetchEvents(eventLimit);
    if (const std::int64_t now = steadyNow(); elapsedMs(lastCleanup, now) >= cleanupIntervalMs) {
        liveValues.forgetCurrent();
        lastCleanup = now;
    }
    handlePrimaryEvents(events.primary);
    handlePrimaryEvents(events.pinned);
    handleSourceEvents(events.sources);
    handleLookThroughEvents(events.lookThrough);
}

void VlViewerDelegateHostStruct::handlePrimaryEvents(std::vector<LocationEvent>& events) {
    constexpr std::size_t kAhead = 8;
    std::string path;
    for (std::size_t index = 0; index < events.size(); ++index) {
        LocationEvent& event = events[index];
        if (index + kAhead < events.size()) {
            locationTree.expect(events[index + kAhead].getLocationPath());
        }
        path = event.getLocationPath();
        // Before the cook: what the runtime tells supersedes every value set on top.
        liveValues.forget(path);
        LocationData data = event.takeLocationData();
        if (!data.doesLocationExist()) {
            locationTree.deleteLocation(path);
            // Null although readers still get what plug-ins know of it, until the next flush.
            tellManipulators(path, {});
            continue;
        }
        const bool isLeaf = data.getPotentialChildren().getNumberOfValues() == 0;
        WorkingSetState workingSet;
        GroupAttribute attributes = extractWorkingSetState(std::move(data).getAttrs(), workingSet);
        if (!hasActiveManipulators()) {
            locationTree.cook(path, std::move(attributes), workingSet, false, isLeaf);
            continue;
        }
        locationTree.cook(path, attributes, workingSet, false, isLeaf);
        tellManipulators(path, attributes);
    }
}

bool VlViewerDelegateHostStruct::hasActiveManipulators() const {
    return std::ranges::any_of(viewports.viewports, [](const VlViewportHostStruct* viewport) {
        return !viewport->activeManipulators.empty();
    });
}

void VlViewerDelegateHostStruct::tellManipulators(const std::string& path,
                                                  const GroupAttribute& attributes) {
    if (!hasActiveManipulators()) {
        return;
    }
    const std::vector<VlViewportHostStruct*> snapshot = viewports.viewports;
    for (VlViewportHostStruct* const viewport : snapshot) {
        if (viewports.contains(viewport)) {
            viewport->onLocationChanged(path, attributes);
        }
    }
}

void VlViewerDelegateHostStruct::handleSourceEvents(std::vector<LocationEvent>& events) {
    for (const LocationEvent& event : events) {
        const LocationData& data = event.getLocationData();
        if (data.doesLocationExist()) {
            sourceLocationTree.cook(event.getLocationPath(), data.getAttrs());
        } else {
            sourceLocationTree.deleteLocation(event.getLocationPath());
        }
    }
}

void VlViewerDelegateHostStruct::handleLookThroughEvents(std::vector<LocationEvent>& events) {
    for (const LocationEvent& event : events) {
        const std::string path(event.getLocationPath());
        liveValues.forgetLookThrough(path);
        lookThrough.onLocationEvent(path, event.getLocationData());
    }
    lookThrough.resolveUnchanged();
}

void VlViewerDelegateHostStruct::flushLocationChanges(bool notifyFactories) {
    const HostCall call(*this);
    delivery_.flush(notifyFactories);
}

bool VlViewerDelegateHostStruct::isProcessing() {
    const HostCall call(*this);
    if (factories.hasPendingWork() || scene.runtime->isProcessing() || scene.hasEvents() ||
        lookThrough.hasUnchanged()) {
        return true;
    }
    const ComponentList::Snapshot snapshot = components.snapshot();
    for (VlViewerDelegateComponentHostStruct* const component : *snapshot) {
        if (components.contains(component) && component->isProcessing()) {
            return true;
        }
    }
    return suite->isProcessing(instance) != 0;
}

void VlViewerDelegateHostStruct::setManipulationFreezePeriod(std::int64_t milliseconds) {
    manipulationFreeze.setPeriod(milliseconds);
}

bool VlViewerDelegateHostStruct::isFrozenDueToManipulation() const {
    return manipulationFreeze.isFrozen();
}

// ---- What is viewed

std::int64_t VlViewerDelegateHostStruct::setViewOp(int opId) {
    const HostCall call(*this);
    bridge->updateOp(opId);
    return scene.setViewOp(opId);
}

void VlViewerDelegateHostStruct::setVisibilityWorkingSet(const GroupAttribute& workingSet) {
    scene.setVisibilityWorkingSet(workingSet);
}

void VlViewerDelegateHostStruct::setWorkingSetVisibilityEnabled(bool isEnabled) {
    if (isEnabled == scene.workingSetVisibilityEnabled) {
        return;
    }
    locationTree.setMode(isEnabled);
    scene.setWorkingSetVisibilityEnabled(isEnabled);
}

bool VlViewerDelegateHostStruct::getWorkingSetVisibilityEnabled() const {
    return scene.workingSetVisibilityEnabled;
}

void VlViewerDelegateHostStruct::setSystemArgs(const GroupAttribute& args) {
    factories.setSystemArgs(args);
}

void VlViewerDelegateHostStruct::setBoundingBoxesEnabled(bool isEnabled) {
    factories.setBoundingBoxesEnabled(isEnabled);
    callPythonCallback(kBoundingBoxesChannel, IntAttribute(isEnabled ? 1 : 0));
}

void VlViewerDelegateHostStruct::setProxyGeometryEnabled(bool isEnabled) {
    factories.setProxyGeometryEnabled(isEnabled);
    callPythonCallback(kProxyGeometryChannel, IntAttribute(isEnabled ? 1 : 0));
}

// ---- Upward calls

Attribute VlViewerDelegateHostStruct::callPythonCallback(const char* name, const Attribute& value) {
    if (!name) {
        return {};
    }
    const HostCall call(*this);
    return dispatchChannel(hostedPythonObject, name, value);
}

// ---- Attributes

GroupAttribute VlViewerDelegateHostStruct::getAttributes(std::string_view path,
                                                         int sceneView) const {
    switch (sceneView) {
    case kVlViewerDelegatePrimary:
        return locationTree.getAttributes(path, true);
    case kVlViewerDelegateSources:
        return sourceLocationTree.getAttributes(path, true);
    case kVlViewerDelegateLookThrough: {
        const auto& merged = liveValues.lookThroughMergedAttributes;
        if (const auto found = merged.find(path); found != merged.end()) {
            return found->second;
        }
        const auto [data, isFound] = scene.lookThroughClient->getCachedLocation(std::string(path));
        return isFound ? data.getAttrs() : GroupAttribute();
    }
    default:
        return {};
    }
}

GroupAttribute VlViewerDelegateHostStruct::getCookedAttributes(std::string_view path,
                                                               int sceneView) const {
    if (const LiveEntry* const entry = liveValues.findEntry(path, sceneView)) {
        return entry->base;
    }
    return getAttributes(path, sceneView);
}

GroupAttribute VlViewerDelegateHostStruct::getLiveAttributes(std::string_view path,
                                                             int sceneView) const {
    const LiveEntry* const entry = liveValues.findEntry(path, sceneView);
    return entry ? entry->getOverrides() : GroupAttribute();
}

bool VlViewerDelegateHostStruct::setManipulatedAttribute(const std::string& path,
                                                         const std::string& name,
                                                         const Attribute& value, bool isFinal) {
    const HostCall call(*this);
    return liveValues.setAttribute(path, name, value, isFinal);
}

void VlViewerDelegateHostStruct::openManipulationGroup(const std::string& path) {
    const HostCall call(*this);
    liveValues.openGroup(path);
}

void VlViewerDelegateHostStruct::closeManipulationGroup(const std::string& path) {
    const HostCall call(*this);
    liveValues.closeGroup(path);
}

StringAttribute VlViewerDelegateHostStruct::getDescendantLocations(const std::string& path) const {
    return locationTree.getDescendantLocations(path);
}

// ---- Transforms and bounds

DoubleAttribute VlViewerDelegateHostStruct::getLocalXform(std::string_view path, bool& isAbsolute,
                                                          int sceneView) const {
    return SceneTransforms(*this).getLocalXform(path, isAbsolute, sceneView);
}

DoubleAttribute VlViewerDelegateHostStruct::getWorldXform(std::string_view path,
                                                          int sceneView) const {
    return SceneTransforms(*this).getWorldXform(path, sceneView);
}

DoubleAttribute VlViewerDelegateHostStruct::getParentXform(std::string_view path,
                                                           int sceneView) const {
    return SceneTransforms(*this).getParentXform(path, sceneView);
}

DoubleAttribute VlViewerDelegateHostStruct::getPartialXform(
    const std::string& path, const std::string& groupName, const std::string& componentName,
    bool includeComponent, int sceneView, bool includeParentXform, bool includeGroupsBefore,
    bool includeGroupsAfter) const {
    return SceneTransforms(*this).getPartialXform(
        path, {groupName, componentName, includeComponent, includeGroupsBefore, includeGroupsAfter},
        sceneView, includeParentXform);
}

DoubleAttribute VlViewerDelegateHostStruct::getBounds(const std::string& path) {
    return SceneBounds(*this).getBounds(path);
}

DoubleAttribute VlViewerDelegateHostStruct::computeExtent(const std::string& path) {
    return SceneBounds(*this).computeExtent(path);
}

DoubleAttribute VlViewerDelegateHostStruct::computeMergedExtent(const char* const* paths,
                                                                std::uint32_t count,
                                                                const std::string& excludePath) {
    const HostCall call(*this);
    DoubleAttribute extent;
    delivery_.keepStill(
        [&] { extent = SceneBounds(*this).computeMergedExtent(paths, count, excludePath); });
    return extent;
}

} // namespace ViewerAPI
