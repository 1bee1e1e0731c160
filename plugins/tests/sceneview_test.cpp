#include "support/fakescene.h"
#include "support/geometries.h"

#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"
#include "viewer_api/plugin/OptionIds.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>

// The library of delegate, viewport and layers where there is no graphics context.
namespace {

using VlAttribute::Attribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

class SceneView : public testing::Test {
protected:
    SceneView() {
        scene.addLayer(viewport, "GridLayer");
        scene.addLayer(viewport, "MeshLayer");
    }

    FakeScene scene;
    FakeDelegate& delegate = scene.delegate;
    FakeViewport& viewport = scene.addViewport(0, 0);
};

TEST_F(SceneView, offersItsPlugins) {
    const PluginFile& file = scene.getSceneView();
    std::set<std::pair<std::string, std::string>> found;
    for (int i = 0; i < file.getNumberOfPlugins(); ++i) {
        found.emplace(file.getPlugin(i)->typeName, file.getPlugin(i)->name);
    }
    const std::set<std::pair<std::string, std::string>> wanted{
        {"ViewerDelegatePlugin", "SceneDelegate"}, {"ViewportPlugin", "SceneViewport"},
        {"ViewportLayerPlugin", "MeshLayer"},      {"ViewportLayerPlugin", "PickingLayer"},
        {"ViewportLayerPlugin", "GridLayer"},      {"ViewportLayerPlugin", "ManipulatorLayer"},
    };
    EXPECT_EQ(found, wanted);
    EXPECT_EQ(file.getPlugin(-1), nullptr);
    EXPECT_EQ(file.getPlugin(file.getNumberOfPlugins()), nullptr);
}

TEST_F(SceneView, drawsNothingAndSurvivesWithoutAContext) {
    scene.tell("/root/cube", cubeLocation());
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
    scene.tell("/root/cube", cubeLocation());
    EXPECT_EQ(delegate.suite->getBounds(delegate.instance, "/root/cube"), nullptr);
    EXPECT_EQ(delegate.suite->computeExtent(delegate.instance, "/root/cube"), nullptr);
    EXPECT_EQ(delegate.suite->isProcessing(delegate.instance), 0);
}

TEST_F(SceneView, firstChangeAsksEveryViewportForAPicture) {
    FakeViewport second;
    delegate.viewports.push_back(&second);
    scene.tell("/root/cube", cubeLocation());
    EXPECT_TRUE(viewport.dirty);
    EXPECT_TRUE(second.dirty);
}

TEST_F(SceneView, selectionAsksForAPicture) {
    const char* paths[] = {"/root/cube"};
    delegate.suite->locationsSelected(delegate.instance, paths, 1);
    EXPECT_TRUE(viewport.dirty);
}

TEST_F(SceneView, resizeTellsEveryCamera) {
    const FakeCamera& camera = scene.addCamera(viewport, {0, 0, 10});
    viewport.suite->resize(viewport.instance, 400, 100);
    EXPECT_NEAR(camera.projection[1][1] / camera.projection[0][0], 4.0, 1e-12);
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
    const std::uint64_t unknownId = ViewerPlugin::optionId("no such option");
    EXPECT_EQ(layer.suite->getOption(layer.instance, unknownId), nullptr);
}

TEST_F(SceneView, meshLayerKeepsItsDisplayModeAndIgnoresOthers) {
    FakeLayer& layer = *viewport.layers[1];
    const std::uint64_t id = ViewerPlugin::optionId("displayMode");
    const auto option = [&] {
        return StringAttribute(
                   Attribute::CreateAndSteal(layer.suite->getOption(layer.instance, id)))
            .getValue();
    };
    const auto set = [&](const Attribute& value) {
        viewport.dirty = false;
        layer.suite->setOption(layer.instance, id, value.getRetainedHandle());
    };
    EXPECT_EQ(option(), "shaded");
    for (const char* mode : {"wireframe", "wireframeOnShaded", "points", "shaded"}) {
        set(StringAttribute(mode));
        EXPECT_EQ(option(), mode);
        EXPECT_TRUE(viewport.dirty) << mode;
    }
    set(StringAttribute("points"));
    set(StringAttribute("Shaded"));
    EXPECT_EQ(option(), "points");
    EXPECT_FALSE(viewport.dirty);
    set(IntAttribute(1));
    EXPECT_EQ(option(), "points");
}

TEST_F(SceneView, ownNoPickingCacheAndLeavePickingToTheHost) {
    for (const auto& layer : viewport.layers) {
        EXPECT_EQ(layer->suite->usesPickingCache(layer->instance), 0);
        VlAttributeStruct* picked = nullptr;
        EXPECT_EQ(layer->suite->customPick(layer->instance, 0, 0, 1, 1, 0, &picked, nullptr), 0);
    }
}

} // namespace
