#include "layer/meshlayer.h"

#include "VlAttribute/IntAttribute.h"
#include "viewer_api/plugin/OptionIds.h"
#include "viewport/sceneviewport.h"

#include <cstdio>

namespace Bundled {

MeshLayer::MeshLayer(ViewerPlugin::ViewportLayerHost layerHost)
    : ViewportLayerPlugin(layerHost), cullBackFacesId(ViewerPlugin::optionId("cullBackFaces")) {}

void MeshLayer::cleanup() {
    gpuScene.reset();
}

void MeshLayer::draw() {
    const ViewerPlugin::ViewportHost view = viewport();
    auto* delegate = ViewerPlugin::pluginCast<SceneDelegate>(view.getViewerDelegate());
    if (!delegate || !isGLReady()) {
        return;
    }
    if (!gpuScene) {
        gpuScene = delegate->shareGpuScene();
    }
    Frame frame;
    frame.worldToView = Frame::matrix(view.getViewMatrix().data());
    frame.viewToClip = Frame::matrix(view.getProjectionMatrix().data());
    frame.cullBackFaces = cullBackFaces;
    const auto* sceneViewport = ViewerPlugin::pluginCast<SceneViewport>(host.getViewport());
    frame.isDraft = sceneViewport && sceneViewport->isDraft();
    gpuScene->draw(delegate->getMirror(), frame);
    delegate->noteDrawn();
    for (const std::string& error : gpuScene->takeErrors()) {
        std::fprintf(stderr, "MeshLayer: %s\n", error.c_str());
    }
}

void MeshLayer::setOption(std::uint64_t optionId, const Attribute& value) {
    if (optionId == cullBackFacesId) {
        cullBackFaces = VlAttribute::IntAttribute(value).getValue(0) != 0;
        viewport().setDirty(true);
    }
}

VlAttribute::Attribute MeshLayer::getOption(std::uint64_t optionId) {
    return optionId == cullBackFacesId ? VlAttribute::IntAttribute(cullBackFaces ? 1 : 0)
                                       : Attribute();
}

} // namespace Bundled

VL_REGISTER_PLUGIN(Bundled::MeshLayer, "MeshLayer");
