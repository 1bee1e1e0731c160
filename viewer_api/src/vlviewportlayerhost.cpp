#include "vlviewportlayerhost.h"

#include "plugininstance.h"
#include "raisedflag.h"
#include "vlviewporthost.h"

#include "viewer_api/ViewportLayerPluginSuite.h"

namespace ViewerAPI {

VlViewportLayerHostStruct::VlViewportLayerHostStruct(const std::string& pluginName,
                                                     VlViewportHostStruct* viewport_)
    : HostObject(viewport_), viewport(viewport_) {
    createPluginInstance(PluginKind::ViewportLayer, pluginName, this, pluginSuite, pluginHandle);
}

VlViewportLayerHostStruct::~VlViewportLayerHostStruct() {
    endLife();
    destroyPluginInstance(pluginSuite, pluginHandle);
}

void VlViewportLayerHostStruct::setup() {
    if (isInitialized || isInSetupOrCleanup_)
        return;
    HostCall call(*this);
    {
        const RaisedFlag isInSetup(isInSetupOrCleanup_);
        pluginSuite->setup(pluginHandle);
        isInitialized = true;
    }
    // Removal came too early to clean up what had not been set up yet.
    if (isRetired())
        cleanup();
}

void VlViewportLayerHostStruct::cleanup() {
    if (!isInitialized || isInSetupOrCleanup_)
        return;
    HostCall call(*this);
    const RaisedFlag isInCleanup(isInSetupOrCleanup_);
    pluginSuite->cleanup(pluginHandle);
    isInitialized = false;
}

void VlViewportLayerHostStruct::resize(int width, int height) {
    HostCall call(*this);
    pluginSuite->resize(pluginHandle, width, height);
}

bool VlViewportLayerHostStruct::event(VlAttributeStruct* eventData) {
    HostCall call(*this);
    return pluginSuite->event(pluginHandle, eventData) != 0;
}

void VlViewportLayerHostStruct::draw() {
    HostCall call(*this);
    pluginSuite->draw(pluginHandle);
}

void VlViewportLayerHostStruct::hover(bool isHovering, int x, int y) {
    HostCall call(*this);
    pluginSuite->hover(pluginHandle, isHovering ? 1 : 0, x, y);
}

} // namespace ViewerAPI
