#include "layer/pickinglayer.h"

#include "delegate/scenedelegate.h"
#include "gl/glcontext.h"
#include "layer/picking.h"
#include "viewport/sceneviewport.h"

namespace Bundled {

void PickingLayer::pickerDraw(const ViewerPlugin::PickRegion& region,
                              const GroupAttribute& excluded) {
    const ViewerPlugin::ViewportHost view = viewport();
    auto* delegate = ViewerPlugin::pluginCast<SceneDelegate>(view.getViewerDelegate());
    const auto* sceneViewport = ViewerPlugin::pluginCast<SceneViewport>(host.getViewport());
    if (!delegate || !isGLReady() || (sceneViewport && sceneViewport->isBeingPicked())) {
        return;
    }
    if (!gpuScene) {
        gpuScene = delegate->shareGpuScene();
    }
    drawPickableLocations(
        *delegate, view, DisplayMode::Shaded, false, region, excluded,
        [this](const Attribute& object) { return host.addPickableObject(object); });
}

} // namespace Bundled

VL_REGISTER_PLUGIN(Bundled::PickingLayer, "PickingLayer");
