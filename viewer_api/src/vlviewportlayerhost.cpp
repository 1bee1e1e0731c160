#include "vlviewportlayerhost.h"

#include "colourpick.h"
#include "plugininstance.h"
#include "raisedflag.h"
#include "vlviewporthost.h"

#include "viewer_api/ViewportLayerPluginSuite.h"

#include <utility>

namespace ViewerAPI {

namespace {

// Where the layer's plug-in registers objects while it draws ids.
class PickerInUse {
public:
    PickerInUse(VlViewportPicker*& place, VlViewportPicker& picker)
        : place_(place), before_(std::exchange(place, &picker)) {}
    ~PickerInUse() { place_ = before_; }
    PickerInUse(const PickerInUse&) = delete;
    PickerInUse& operator=(const PickerInUse&) = delete;

private:
    VlViewportPicker*& place_;
    VlViewportPicker* const before_;
};

} // namespace

VlViewportLayerHostStruct::VlViewportLayerHostStruct(const std::string& pluginName,
                                                     VlViewportHostStruct* viewport_)
    : HostObject(viewport_), viewport(viewport_) {
    createPluginInstance(PluginKind::ViewportLayer, pluginName, this, pluginSuite, pluginHandle);
    try {
        if (pluginSuite->usesPickingCache(pluginHandle)) {
            picker = std::make_unique<VlViewportPicker>();
        }
    } catch (...) {
        endLife();
        destroyPluginInstance(pluginSuite, pluginHandle);
        throw;
    }
}

VlViewportLayerHostStruct::~VlViewportLayerHostStruct() {
    endLife();
    destroyPluginInstance(pluginSuite, pluginHandle);
}

void VlViewportLayerHostStruct::setup() {
    if (isInitialized || isInSetupOrCleanup_) {
        return;
    }
    HostCall call(*this);
    {
        const RaisedFlag isInSetup(isInSetupOrCleanup_);
        if (picker) {
            picker->setup(viewport->width, viewport->height);
        }
        pluginSuite->setup(pluginHandle);
        isInitialized = true;
    }
    // Removal came too early to clean up what had not been set up yet.
    if (isRetired()) {
        cleanup();
    }
}

void VlViewportLayerHostStruct::cleanup() {
    if (!isInitialized || isInSetupOrCleanup_) {
        return;
    }
    HostCall call(*this);
    const RaisedFlag isInCleanup(isInSetupOrCleanup_);
    if (picker) {
        picker->cleanup();
    }
    pluginSuite->cleanup(pluginHandle);
    isInitialized = false;
}

void VlViewportLayerHostStruct::resize(int width, int height) {
    HostCall call(*this);
    if (picker) {
        picker->resize(width, height);
    }
    pluginSuite->resize(pluginHandle, width, height);
}

bool VlViewportLayerHostStruct::event(VlAttributeStruct* eventData) {
    HostCall call(*this);
    return pluginSuite->event(pluginHandle, eventData) != 0;
}

void VlViewportLayerHostStruct::draw() {
    HostCall call(*this);
    pluginSuite->draw(pluginHandle);
    // Not for a layer that removed itself in its draw and is cleaned up, nor for one that draws by
    // this while it draws ids: there is one picture of them.
    if (!picker || isRetired() || picker->isInUse) {
        return;
    }
    const PickerInUse inUse(pickerInUse_, *picker);
    const BoundPicker bound(*picker);
    picker->clear(true);
    PickingPlugin(*this).pickerDraw({0, 0, viewport->width, viewport->height},
                                    VlAttribute::GroupAttribute::Empty());
}

void VlViewportLayerHostStruct::hover(bool isHovering, int x, int y) {
    HostCall call(*this);
    pluginSuite->hover(pluginHandle, isHovering ? 1 : 0, x, y);
}

uint64_t VlViewportLayerHostStruct::addPickableObject(VlAttribute::Attribute object) {
    VlViewportPicker& own = picker ? *picker : *viewport->picker;
    return (pickerInUse_ ? *pickerInUse_ : own).addPickableObject(std::move(object));
}

VlAttribute::GroupAttribute VlViewportLayerHostStruct::getPickedObjects(const PixelRegion& region,
                                                                        bool deepPicking,
                                                                        float* depthOut) {
    HostCall call(*this);
    const PickingPlugin plugin(*this);
    if (auto picked = plugin.customPick(region, deepPicking, depthOut)) {
        return *std::move(picked);
    }
    viewport->makeGLContextCurrent();
    if (picker && !deepPicking) {
        return readCachedPick(*picker, region, depthOut);
    }
    const PickerInUse inUse(pickerInUse_, *viewport->picker);
    return pickByColour(*viewport->picker, plugin, region, deepPicking, depthOut);
}

} // namespace ViewerAPI
