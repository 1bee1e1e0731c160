#include "support/fakescene.h"

#include "support/geometries.h"
#include "viewer_api/plugin/HostSuites.h"

#include <Imath/ImathMatrixAlgo.h>

FakeScene::FakeScene() : sceneView("SceneView"), cameras("Cameras") {
    ViewerPlugin::pluginHost() = fakePluginHost();
    delegate.suite = static_cast<const ViewerDelegatePluginSuite*>(
        sceneView.findSuite(VL_VIEWER_DELEGATE_PLUGIN_TYPE, "SceneDelegate"));
    delegate.instance = delegate.suite->create(&delegate);
}

FakeScene::~FakeScene() {
    for (const auto& viewport : viewports) {
        for (const auto& layer : viewport->layers) {
            layer->suite->destroy(layer->instance);
        }
        viewport->suite->destroy(viewport->instance);
        for (const auto& camera : viewport->cameras) {
            camera->suite->destroy(camera->instance);
        }
    }
    delegate.suite->destroy(delegate.instance);
}

FakeViewport& FakeScene::addViewport(int width, int height) {
    viewports.push_back(std::make_unique<FakeViewport>());
    FakeViewport& viewport = *viewports.back();
    viewport.delegate = &delegate;
    viewport.width = width;
    viewport.height = height;
    viewport.suite = static_cast<const ViewportPluginSuite*>(
        sceneView.findSuite(VL_VIEWPORT_PLUGIN_TYPE, "SceneViewport"));
    viewport.instance = viewport.suite->create(&viewport);
    delegate.viewports.push_back(&viewport);
    return viewport;
}

FakeLayer& FakeScene::addLayer(FakeViewport& viewport, const std::string& pluginName) {
    viewport.layers.push_back(std::make_unique<FakeLayer>());
    FakeLayer& layer = *viewport.layers.back();
    layer.viewport = &viewport;
    layer.suite = static_cast<const ViewportLayerPluginSuite*>(
        sceneView.findSuite(VL_VIEWPORT_LAYER_PLUGIN_TYPE, pluginName));
    layer.instance = layer.suite->create(&layer);
    return layer;
}

FakeCamera& FakeScene::addCamera(FakeViewport& viewport, const Imath::V3d& eye) {
    viewport.cameras.push_back(std::make_unique<FakeCamera>());
    FakeCamera& camera = *viewport.cameras.back();
    camera.viewport = &viewport;
    camera.suite = static_cast<const ViewportCameraPluginSuite*>(
        cameras.findSuite(VL_VIEWPORT_CAMERA_PLUGIN_TYPE, "PerspectiveCamera"));
    camera.instance = camera.suite->create(&camera);
    const Imath::V3d back = eye.normalized();
    const Imath::V3d upish = std::abs(back.y) > 0.99 ? Imath::V3d(0, 0, -1) : Imath::V3d(0, 1, 0);
    Imath::M44d turn;
    Imath::alignZAxisWithTargetDir(turn, back, upish);
    camera.view = Imath::M44d().setTranslation(-eye) * turn.transposed();
    viewport.activeCamera = &camera;
    return camera;
}

void FakeScene::tell(const std::string& path, const VlAttribute::GroupAttribute& attributes,
                     const Imath::M44d& xform, std::uint32_t flags) {
    const VlAttribute::DoubleAttribute matrix = matrixAttribute(xform);
    const ViewerLocationEvent event{path.c_str(), attributes.getHandle(), matrix.getHandle(),
                                    flags | kVlLocationEventAttributesChanged |
                                        kVlLocationEventXformChanged};
    delegate.suite->locationEvent(delegate.instance, &event, 0);
}

void FakeScene::remove(const std::string& path) {
    const ViewerLocationEvent event{path.c_str(), nullptr, nullptr, kVlLocationEventRemoved};
    delegate.suite->locationEvent(delegate.instance, &event, 0);
}
