#include "support/fakehost.h"
#include "support/geometries.h"

#include "VlAttribute/IntAttribute.h"
#include "viewer_api/plugin/OptionIds.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>

// The library of delegate, viewport and layers where there is no graphics context.
namespace {

using VlAttribute::Attribute;
using VlAttribute::IntAttribute;

class SceneView : public testing::Test {
protected:
    SceneView() : file("SceneView") {
        ViewerPlugin::pluginHost() = fakePluginHost();
        delegate.suite = static_cast<const ViewerDelegatePluginSuite*>(
            file.findSuite(VL_VIEWER_DELEGATE_PLUGIN_TYPE, "SceneDelegate"));
        delegate.instance = delegate.suite->create(&delegate);
        delegate.viewports.push_back(&viewport);
        viewport.delegate = &delegate;
        viewport.suite = static_cast<const ViewportPluginSuite*>(
            file.findSuite(VL_VIEWPORT_PLUGIN_TYPE, "SceneViewport"));
        viewport.instance = viewport.suite->create(&viewport);
        for (const char* name : {"GridLayer", "MeshLayer"}) {
            viewport.layers.push_back(std::make_unique<FakeLayer>());
            FakeLayer& layer = *viewport.layers.back();
            layer.viewport = &viewport;
            layer.suite = static_cast<const ViewportLayerPluginSuite*>(
                file.findSuite(VL_VIEWPORT_LAYER_PLUGIN_TYPE, name));
            layer.instance = layer.suite->create(&layer);
        }
    }
    ~SceneView() override {
        for (const auto& layer : viewport.layers) {
            layer->suite->destroy(layer->instance);
        }
        viewport.suite->destroy(viewport.instance);
        delegate.suite->destroy(delegate.instance);
    }

    void tell(const char* path, const VlAttribute::GroupAttribute& attributes) {
        const ViewerLocationEvent event{path, attributes.getHandle(), nullptr,
                                        kVlLocationEventAttributesChanged};
        delegate.suite->locationEvent(delegate.instance, &event, 0);
    }

    PluginFile file;
    FakeDelegate delegate;
    FakeViewport viewport;
};

TEST_F(SceneView, offersItsPlugins) {
    std::set<std::pair<std::string, std::string>> found;
    for (int i = 0; i < file.getNumberOfPlugins(); ++i) {
        found.emplace(file.getPlugin(i)->typeName, file.getPlugin(i)->name);
    }
    const std::set<std::pair<std::string, std::string>> wanted{
        {"ViewerDelegatePlugin", "SceneDelegate"},
        {"ViewportPlugin", "SceneViewport"},
        {"ViewportLayerPlugin", "MeshLayer"},
        {"ViewportLayerPlugin", "GridLayer"},
    };
    EXPECT_EQ(found, wanted);
    EXPECT_EQ(file.getPlugin(-1), nullptr);
    EXPECT_EQ(file.getPlugin(file.getNumberOfPlugins()), nullptr);
}

TEST_F(SceneView, drawsNothingAndSurvivesWithoutAContext) {
    tell("/root/cube", cubeLocation());
    viewport.suite->draw(viewport.instance);
    for (const auto& layer : viewport.layers) {
        layer->suite->draw(layer->instance);
        layer->suite->cleanup(layer->instance);
        layer->suite->draw(layer->instance);
    }
    viewport.suite->cleanup(viewport.instance);
}

TEST_F(SceneView, survivesADelegateOfAnotherLibrary) {
    FakeDelegate copy = delegate;
    static const ViewerDelegatePluginSuite foreign{};
    copy.suite = &foreign;
    viewport.delegate = &copy;
    for (const auto& layer : viewport.layers) {
        layer->suite->draw(layer->instance);
    }
    viewport.delegate = &delegate;
}

TEST_F(SceneView, delegateKnowsNoBoundsAndIsNeverBusy) {
    tell("/root/cube", cubeLocation());
    EXPECT_EQ(delegate.suite->getBounds(delegate.instance, "/root/cube"), nullptr);
    EXPECT_EQ(delegate.suite->computeExtent(delegate.instance, "/root/cube"), nullptr);
    EXPECT_EQ(delegate.suite->isProcessing(delegate.instance), 0);
}

TEST_F(SceneView, firstChangeAsksEveryViewportForAPicture) {
    FakeViewport second;
    delegate.viewports.push_back(&second);
    tell("/root/cube", cubeLocation());
    EXPECT_TRUE(viewport.dirty);
    EXPECT_TRUE(second.dirty);
}

TEST_F(SceneView, selectionAsksForAPicture) {
    const char* paths[] = {"/root/cube"};
    delegate.suite->locationsSelected(delegate.instance, paths, 1);
    EXPECT_TRUE(viewport.dirty);
}

TEST_F(SceneView, resizeTellsEveryCamera) {
    const PluginFile cameras("Cameras");
    auto camera = std::make_unique<FakeCamera>();
    camera->viewport = &viewport;
    camera->suite = static_cast<const ViewportCameraPluginSuite*>(
        cameras.findSuite(VL_VIEWPORT_CAMERA_PLUGIN_TYPE, "PerspectiveCamera"));
    camera->instance = camera->suite->create(camera.get());
    FakeCamera& added = *camera;
    viewport.cameras.push_back(std::move(camera));
    viewport.suite->resize(viewport.instance, 400, 100);
    EXPECT_NEAR(added.projection[1][1] / added.projection[0][0], 4.0, 1e-12);
    added.suite->destroy(added.instance);
}

TEST_F(SceneView, meshLayerKeepsItsCullingOption) {
    FakeLayer& layer = *viewport.layers[1];
    const std::uint64_t id = ViewerPlugin::optionId("cullBackFaces");
    const auto option = [&] {
        return IntAttribute(Attribute::CreateAndSteal(layer.suite->getOption(layer.instance, id)))
            .getValue(-1);
    };
    EXPECT_EQ(option(), 0);
    layer.suite->setOption(layer.instance, id, IntAttribute(1).getRetainedHandle());
    EXPECT_EQ(option(), 1);
    EXPECT_TRUE(viewport.dirty);
    EXPECT_EQ(layer.suite->getOption(layer.instance, id + 65536), nullptr);
}

TEST_F(SceneView, ownNoPickingCacheAndLeavePickingToTheHost) {
    for (const auto& layer : viewport.layers) {
        EXPECT_EQ(layer->suite->usesPickingCache(layer->instance), 0);
        VlAttributeStruct* picked = nullptr;
        EXPECT_EQ(layer->suite->customPick(layer->instance, 0, 0, 1, 1, 0, &picked, nullptr), 0);
    }
}

} // namespace
