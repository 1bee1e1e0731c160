#include "vlviewporthost.h"

#include "colourpick.h"
#include "glcalls.h"
#include "plugininstance.h"
#include "raisedflag.h"
#include "sharedglcontext.h"
#include "vlviewerdelegatehost.h"
#include "vlviewportcamerahost.h"
#include "vlviewportlayerhost.h"

#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"
#include "VlWindowSystem/WindowSystem.h"
#include "viewer_api/ViewportPluginSuite.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

namespace ViewerAPI {

namespace {

constexpr const char* kViewFrozenStateChanged = "__VIEWPORT_VIEW_FROZEN_STATE_CHANGED";

} // namespace

VlViewportHostStruct::VlViewportHostStruct(const std::string& pluginName, const std::string& name_,
                                           VlViewerDelegateHostStruct* viewerDelegate_)
    : HostObject(viewerDelegate_), name(name_), viewerDelegate(viewerDelegate_),
      picker(std::make_unique<VlViewportPicker>()) {
    try {
        createPluginInstance(PluginKind::Viewport, pluginName, this, pluginSuite, pluginHandle);
    } catch (...) {
        // The create entry may have added some before it failed.
        endLife();
        endLayers();
        endManipulators();
        endHeld();
        leaveCameras();
        throw;
    }
}

VlViewportHostStruct::~VlViewportHostStruct() {
    endLife();
    makeGLContextCurrent();
    endLayers();
    endManipulators();
    SharedGLContext::releaseDeviceContext(windowId, deviceContext);
    deviceContext = nullptr;
    destroyPluginInstance(pluginSuite, pluginHandle);
    endLayers();
    endManipulators();
    leaveCameras();
}

void VlViewportHostStruct::endLayers() {
    // A layer's plug-in may still look at the list from its destroy entry.
    while (!layers.empty()) {
        VlViewportLayerHostStruct* layer = layers.back();
        layers.pop_back();
        layerNames.pop_back();
        HostObject::retire(layer);
    }
}

void VlViewportHostStruct::setup(int32_t windowId_) {
    if (isInitialized || isInSetupOrCleanup_) {
        return;
    }
    HostCall call(*this);
    {
        const RaisedFlag isInSetup(isInSetupOrCleanup_);
        windowId = windowId_;
        const bool hasJoined = initializeGLContext();
        const bool isCurrent = makeGLContextCurrent();
        picker->setup(width, height);
        pluginSuite->setup(pluginHandle);
        walkLayers([](VlViewportLayerHostStruct& layer) { layer.setup(); });
        // Either suffices: a viewport whose window has its device context from an earlier setup
        // draws even when joining failed this time.
        isInitialized = hasJoined || isCurrent;
    }
    // Removal came too early to clean up what had not been set up yet.
    if (isRetired()) {
        cleanup();
    }
}

void VlViewportHostStruct::cleanup() {
    if (!isInitialized || isInSetupOrCleanup_) {
        return;
    }
    HostCall call(*this);
    const RaisedFlag isInCleanup(isInSetupOrCleanup_);
    makeGLContextCurrent();
    walkLayers([](VlViewportLayerHostStruct& layer) { layer.cleanup(); });
    pluginSuite->cleanup(pluginHandle);
    isInitialized = false;
}

void VlViewportHostStruct::draw() {
    HostCall call(*this);
    makeGLContextCurrent();
    pluginSuite->draw(pluginHandle);
    windowSystem().swapBuffers(deviceContext);
}

void VlViewportHostStruct::resize(int width_, int height_) {
    HostCall call(*this);
    width = width_;
    height = height_;
    makeGLContextCurrent();
    picker->resize(width, height);
    pluginSuite->resize(pluginHandle, width_, height_);
    // The size of now: the plug-in's call may have brought a newer one.
    walkLayers([this](VlViewportLayerHostStruct& layer) { layer.resize(width, height); });
}

void VlViewportHostStruct::hover(bool isHovering, int x, int y) {
    HostCall call(*this);
    makeGLContextCurrent();
    pluginSuite->hover(pluginHandle, isHovering ? 1 : 0, x, y);
}

bool VlViewportHostStruct::event(VlAttributeStruct* eventData) {
    if (!isInitialized) {
        return false;
    }
    HostCall call(*this);
    return pluginSuite->event(pluginHandle, eventData) != 0;
}

void VlViewportHostStruct::freeze() {
    HostCall call(*this);
    pluginSuite->freeze(pluginHandle);
}

void VlViewportHostStruct::thaw() {
    HostCall call(*this);
    pluginSuite->thaw(pluginHandle);
}

void VlViewportHostStruct::setViewFrozen(bool isFrozen) {
    if (isViewFrozen == isFrozen) {
        return;
    }
    HostCall call(*this);
    isViewFrozen = isFrozen;
    if (!viewerDelegate) {
        return;
    }
    const VlAttribute::GroupAttribute state{
        {"viewport", VlAttribute::StringAttribute(name)},
        {"isViewFrozen", VlAttribute::IntAttribute(isFrozen ? 1 : 0)}};
    viewerDelegate->callPythonCallback(kViewFrozenStateChanged, state);
}

// A layer's plug-in may add and remove layers while it is called: each layer that is in the list
// when its turn comes is visited once.
void VlViewportHostStruct::walkLayers(const LayerOperation& operation) {
    std::vector<uint64_t> visited;
    const auto isUnvisited = [&visited](const VlViewportLayerHostStruct* layer) {
        return std::ranges::find(visited, layer->serial()) == visited.end();
    };
    for (;;) {
        const auto next = std::ranges::find_if(layers, isUnvisited);
        if (next == layers.end()) {
            return;
        }
        visited.push_back((*next)->serial());
        operation(**next);
    }
}

VlViewportLayerHostStruct* VlViewportHostStruct::placeLayer(const std::string& pluginName,
                                                            const std::string& layerName,
                                                            size_t index) {
    HostCall call(*this);
    std::unique_ptr<VlViewportLayerHostStruct, RetireHostObject> created(
        new VlViewportLayerHostStruct(pluginName, this));
    // Only now: the plug-in's create entry may have changed the list.
    const auto place = static_cast<ptrdiff_t>(std::min(index, layers.size()));
    layers.reserve(layers.size() + 1);
    layerNames.insert(layerNames.begin() + place, layerName);
    VlViewportLayerHostStruct* layer = created.release();
    layers.insert(layers.begin() + place, layer);
    if (!isInitialized) {
        return layer;
    }
    makeGLContextCurrent();
    layer->setup();
    doneGLContextCurrent();
    // A layer that removed itself while it was set up is deleted when this call returns.
    return std::ranges::find(layers, layer) == layers.end() ? nullptr : layer;
}

VlViewportLayerHostStruct* VlViewportHostStruct::addLayer(const std::string& pluginName,
                                                          const std::string& layerName) {
    return placeLayer(pluginName, layerName, std::numeric_limits<size_t>::max());
}

VlViewportLayerHostStruct* VlViewportHostStruct::insertLayer(const std::string& pluginName,
                                                             const std::string& layerName,
                                                             uint32_t index) {
    return index > layers.size() ? nullptr : placeLayer(pluginName, layerName, index);
}

VlViewportLayerHostStruct* VlViewportHostStruct::getLayer(const std::string& layerName) const {
    const int index = getLayerIndex(layerName);
    return index < 0 ? nullptr : layers[static_cast<size_t>(index)];
}

VlViewportLayerHostStruct* VlViewportHostStruct::getLayerByIndex(uint32_t index) const {
    return index < layers.size() ? layers[index] : nullptr;
}

void VlViewportHostStruct::removeLayer(const std::string& layerName) {
    const int index = getLayerIndex(layerName);
    if (index >= 0) {
        removeLayerByIndex(static_cast<uint32_t>(index));
    }
}

void VlViewportHostStruct::removeLayerByIndex(uint32_t index) {
    if (index >= layers.size()) {
        return;
    }
    HostCall call(*this);
    makeGLContextCurrent();
    std::unique_ptr<VlViewportLayerHostStruct, RetireHostObject> layer(layers[index]);
    layers.erase(layers.begin() + index);
    layerNames.erase(layerNames.begin() + index);
    layer->cleanup();
}

uint32_t VlViewportHostStruct::getNumberOfLayers() const {
    return static_cast<uint32_t>(layers.size());
}

const char* VlViewportHostStruct::getLayerName(uint32_t index) const {
    return index < layerNames.size() ? layerNames[index].c_str() : "";
}

int VlViewportHostStruct::getLayerIndex(const std::string& layerName) const {
    const auto found = std::ranges::find(layerNames, layerName);
    return found == layerNames.end() ? -1 : static_cast<int>(found - layerNames.begin());
}

uint64_t VlViewportHostStruct::addPickableObject(VlAttribute::Attribute object) {
    return picker->addPickableObject(std::move(object));
}

VlAttribute::GroupAttribute VlViewportHostStruct::getPickedObjects(const PixelRegion& region,
                                                                   bool deepPicking,
                                                                   float* depthOut) {
    HostCall call(*this);
    const PickingPlugin plugin(*this);
    if (auto picked = plugin.customPick(region, deepPicking, depthOut)) {
        return *std::move(picked);
    }
    makeGLContextCurrent();
    return pickByColour(*picker, plugin, region, deepPicking, depthOut);
}

bool VlViewportHostStruct::initializeGLContext() {
    return SharedGLContext::instance().join(windowId, deviceContext);
}

bool VlViewportHostStruct::makeGLContextCurrent() {
    if (!SharedGLContext::instance().makeCurrent(deviceContext)) {
        return false;
    }
    glCalls().viewport(0, 0, width, height);
    return true;
}

bool VlViewportHostStruct::doneGLContextCurrent() {
    return SharedGLContext::instance().doneCurrent(deviceContext);
}

bool VlViewportHostStruct::isGLContextCurrent() const {
    return SharedGLContext::instance().isCurrent(deviceContext);
}

void VlViewportHostStruct::enableCapability(uint32_t capability) {
    if (recordCapability(capability, true)) {
        glCalls().enable(capability);
    }
}

void VlViewportHostStruct::disableCapability(uint32_t capability) {
    if (recordCapability(capability, false)) {
        glCalls().disable(capability);
    }
}

// Whether GL has to be told. What GL had at first is not known, so the first request always does.
bool VlViewportHostStruct::recordCapability(uint32_t capability, bool isEnabled) {
    const auto [state, isNew] = glCapabilityStates.try_emplace(capability, isEnabled);
    if (!isNew && state->second == isEnabled) {
        return false;
    }
    state->second = isEnabled;
    return true;
}

} // namespace ViewerAPI
