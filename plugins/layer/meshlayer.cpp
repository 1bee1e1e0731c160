#include "layer/meshlayer.h"

#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"
#include "layer/picking.h"
#include "viewer_api/plugin/OptionIds.h"
#include "viewport/sceneviewport.h"

#include <cstdio>

namespace Bundled {

MeshLayer::MeshLayer(ViewerPlugin::ViewportLayerHost layerHost)
    : ViewportLayerPlugin(layerHost), cullBackFacesId(ViewerPlugin::optionId("cullBackFaces")),
      displayModeId(ViewerPlugin::optionId("displayMode")) {}

void MeshLayer::cleanup() {
    gpuScene.reset();
}

SceneDelegate* MeshLayer::findDelegate() {
    auto* delegate = ViewerPlugin::pluginCast<SceneDelegate>(viewport().getViewerDelegate());
    if (!delegate || !isGLReady()) {
        return nullptr;
    }
    if (!gpuScene) {
        gpuScene = delegate->shareGpuScene();
    }
    return delegate;
}

void MeshLayer::draw() {
    SceneDelegate* delegate = findDelegate();
    if (!delegate) {
        return;
    }
    const ViewerPlugin::ViewportHost view = viewport();
    Frame frame;
    frame.worldToView = Frame::matrix(view.getViewMatrix().data());
    frame.viewToClip = Frame::matrix(view.getProjectionMatrix().data());
    frame.cullBackFaces = cullBackFaces;
    frame.displayMode = displayMode;
    const auto* sceneViewport = ViewerPlugin::pluginCast<SceneViewport>(host.getViewport());
    frame.isDraft = sceneViewport && sceneViewport->isDraft();
    gpuScene->draw(delegate->getMirror(), frame);
    delegate->noteDrawn();
    for (const std::string& error : gpuScene->takeErrors()) {
        std::fprintf(stderr, "MeshLayer: %s\n", error.c_str());
    }
}

void MeshLayer::pickerDraw(const ViewerPlugin::PickRegion& region, const GroupAttribute& excluded) {
    if (SceneDelegate* delegate = findDelegate()) {
        drawPickableLocations(
            *delegate, viewport(), displayMode, cullBackFaces, region, excluded,
            [this](const Attribute& object) { return host.addPickableObject(object); });
    }
}

void MeshLayer::setOption(std::uint64_t optionId, const Attribute& value) {
    if (optionId == cullBackFacesId) {
        cullBackFaces = VlAttribute::IntAttribute(value).getValue(0) != 0;
        viewport().setDirty(true);
    } else if (optionId == displayModeId) {
        const VlAttribute::StringAttribute name(value);
        const DisplayMode wanted = displayModeFromName(name.getValueCstr()).value_or(displayMode);
        if (wanted != displayMode) {
            displayMode = wanted;
            viewport().setDirty(true);
        }
    }
}

VlAttribute::Attribute MeshLayer::getOption(std::uint64_t optionId) {
    if (optionId == cullBackFacesId) {
        return VlAttribute::IntAttribute(cullBackFaces ? 1 : 0);
    }
    if (optionId == displayModeId) {
        return VlAttribute::StringAttribute(nameOf(displayMode));
    }
    return {};
}

} // namespace Bundled

VL_REGISTER_PLUGIN(Bundled::MeshLayer, "MeshLayer");
