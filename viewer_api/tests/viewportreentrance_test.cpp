// Plug-ins that call back into the host while they are called: add, remove, remove themselves.

#include "suites/viewporthostsuite.h"
#include "support/viewporttest.h"
#include "vlviewportcamerahost.h"
#include "vlviewportlayerhost.h"

#include <stdexcept>

namespace ViewerAPI::test {
namespace {

class ViewportReentrance : public ViewportTest {
protected:
    void SetUp() override {
        viewport = makeViewport();
        hideBindings();
        journal.take();
    }

    void onEntry(const std::string& entry, const std::function<void()>& action) {
        plugins.hooks[entry] = [action](auto&) { action(); };
    }

    std::unique_ptr<VlViewportHostStruct> viewport;
};

struct LayerCallRow {
    const char* name;
    std::function<void(VlViewportLayerHostStruct&)> call;
};

class LayerRemovingItself : public ViewportReentrance,
                            public testing::WithParamInterface<LayerCallRow> {};

TEST_P(LayerRemovingItself, isDeletedWhenItsCallReturns) {
    auto* layer = viewport->addLayer("Recording", "a");
    const std::string entry = std::string("layer1.") + GetParam().name;
    bool wasAliveAfterRemoval = false;
    onEntry(entry, [&] {
        viewport->removeLayer("a");
        wasAliveAfterRemoval = !plugins.instance("layer1").isDestroyed;
        EXPECT_EQ(viewport->getNumberOfLayers(), 0u) << "it leaves the list at once";
    });
    GetParam().call(*layer);
    EXPECT_TRUE(wasAliveAfterRemoval);
    EXPECT_TRUE(plugins.instance("layer1").isDestroyed);
    EXPECT_EQ(plugins.livingInstances(), 1);
}

INSTANTIATE_TEST_SUITE_P(
    Entries, LayerRemovingItself,
    testing::Values(LayerCallRow{"setup", [](auto& layer) { layer.setup(); }},
                    LayerCallRow{"resize", [](auto& layer) { layer.resize(1, 2); }},
                    LayerCallRow{"draw", [](auto& layer) { layer.draw(); }},
                    LayerCallRow{"hover", [](auto& layer) { layer.hover(true, 1, 2); }},
                    LayerCallRow{"event", [](auto& layer) { layer.event(nullptr); }}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(ViewportReentrance, layerRemovedInItsDrawIsDeletedWhenTheViewportsDrawReturns) {
    auto* layer = viewport->addLayer("Recording", "a");
    onEntry("viewport1.draw", [&] {
        layer->draw();
        EXPECT_FALSE(plugins.instance("layer1").isDestroyed);
        // The plug-in still holds the layer's pointers, and may use them until its call ends.
        layer->hover(false, 0, 0);
    });
    onEntry("layer1.draw", [&] { viewport->removeLayer("a"); });
    journal.take();
    viewport->draw();
    EXPECT_EQ(journal.take(),
              (Lines{"viewport1.draw", "layer1.draw", "layer1.hover 0 0 0", "layer1.destroy"}));
}

TEST_F(ViewportReentrance, layerRemovedInItsOwnCallIsCleanedUpAtOnce) {
    viewport->addLayer("Recording", "a");
    viewport->setup(7);
    onEntry("layer1.resize", [&] { viewport->removeLayer("a"); });
    journal.take();
    viewport->resize(1, 2);
    EXPECT_EQ(journal.take(), (Lines{"viewport1.resize 1 2", "layer1.resize 1 2", "layer1.cleanup",
                                     "layer1.destroy"}));
}

TEST_F(ViewportReentrance, layerRemovedFromTheViewportsCallAloneIsDeletedAtOnce) {
    viewport->addLayer("Recording", "a");
    onEntry("viewport1.draw", [&] {
        viewport->removeLayer("a");
        EXPECT_TRUE(plugins.instance("layer1").isDestroyed);
    });
    viewport->draw();
    EXPECT_EQ(plugins.livingInstances(), 1);
}

TEST_F(ViewportReentrance, layerThatRemovesItselfWhileAddedIsAnsweredWithNull) {
    viewport->setup(7);
    onEntry("layer1.setup", [&] { viewport->removeLayer("a"); });
    EXPECT_EQ(viewport->addLayer("Recording", "a"), nullptr);
    EXPECT_TRUE(plugins.instance("layer1").isDestroyed);
}

TEST_F(ViewportReentrance, layerRemovedInItsSetupIsCleanedUpBeforeItsEnd) {
    viewport->setup(7);
    onEntry("layer1.setup", [&] { viewport->removeLayer("a"); });
    journal.take();
    viewport->addLayer("Recording", "a");
    EXPECT_EQ(journal.take(), (Lines{"layer1.create", "layer1.usesPickingCache", "layer1.setup",
                                     "layer1.cleanup", "layer1.destroy"}));
}

TEST_F(ViewportReentrance, layerRemovedInItsCleanupIsCleanedUpOnce) {
    viewport->addLayer("Recording", "a");
    viewport->setup(7);
    onEntry("layer1.cleanup", [&] { viewport->removeLayer("a"); });
    journal.take();
    viewport->cleanup();
    EXPECT_EQ(journal.take(), (Lines{"layer1.cleanup", "viewport1.cleanup", "layer1.destroy"}));
}

TEST_F(ViewportReentrance, setupFromWithinSetupDoesNothing) {
    auto* layer = viewport->addLayer("Recording", "a");
    onEntry("viewport1.setup", [&] { viewport->setup(8); });
    onEntry("layer1.setup", [&] { layer->setup(); });
    journal.take();
    viewport->setup(7);
    EXPECT_EQ(journal.take(), (Lines{"viewport1.setup", "layer1.setup"}));
    EXPECT_EQ(viewport->windowId, 7);
}

TEST_F(ViewportReentrance, cleanupFromWithinCleanupDoesNothing) {
    auto* layer = viewport->addLayer("Recording", "a");
    viewport->setup(7);
    onEntry("viewport1.cleanup", [&] { viewport->cleanup(); });
    onEntry("layer1.cleanup", [&] { layer->cleanup(); });
    journal.take();
    viewport->cleanup();
    EXPECT_EQ(journal.take(), (Lines{"layer1.cleanup", "viewport1.cleanup"}));
    EXPECT_FALSE(viewport->isInitialized);
}

TEST_F(ViewportReentrance, setupThatThrewMayBeTriedAgain) {
    auto* layer = viewport->addLayer("Recording", "a");
    onEntry("layer1.setup", [] { throw std::runtime_error("no shader"); });
    EXPECT_THROW(viewport->setup(7), std::runtime_error);
    plugins.hooks.clear();
    viewport->setup(7);
    EXPECT_TRUE(viewport->isInitialized);
    EXPECT_TRUE(layer->isInitialized);
}

TEST_F(ViewportReentrance, resizeFromWithinResizeLeavesLayersTheNewestSize) {
    viewport->addLayer("Recording", "a");
    onEntry("viewport1.resize", [&] {
        plugins.hooks.erase("viewport1.resize");
        viewport->resize(30, 40);
    });
    journal.take();
    viewport->resize(10, 20);
    EXPECT_EQ(journal.take(), (Lines{"viewport1.resize 10 20", "viewport1.resize 30 40",
                                     "layer1.resize 30 40", "layer1.resize 30 40"}));
}

TEST_F(ViewportReentrance, layersRemovedWhileTheListIsWalkedAreNotVisited) {
    viewport->addLayer("Recording", "a");
    viewport->addLayer("Recording", "b");
    viewport->addLayer("Recording", "c");
    onEntry("layer1.resize", [&] { viewport->removeLayer("b"); });
    journal.take();
    viewport->resize(1, 2);
    EXPECT_EQ(journal.take(), (Lines{"viewport1.resize 1 2", "layer1.resize 1 2", "layer2.destroy",
                                     "layer3.resize 1 2"}));
}

TEST_F(ViewportReentrance, layersAddedWhileTheListIsWalkedAreVisitedOnce) {
    viewport->addLayer("Recording", "a");
    viewport->addLayer("Recording", "b");
    onEntry("layer2.setup", [&] {
        plugins.hooks.erase("layer2.setup");
        viewport->insertLayer("Recording", "first", 0);
    });
    journal.take();
    viewport->setup(7);
    EXPECT_EQ(journal.take(), (Lines{"viewport1.setup", "layer1.setup", "layer2.setup",
                                     "layer3.create", "layer3.usesPickingCache", "layer3.setup"}));
}

TEST_F(ViewportReentrance, layersAddedByThePluginsSetupAreSetUpWithTheViewport) {
    onEntry("viewport1.setup", [&] { viewport->addLayer("Recording", "a"); });
    journal.take();
    viewport->setup(7);
    EXPECT_EQ(journal.take(), (Lines{"viewport1.setup", "layer1.create", "layer1.usesPickingCache",
                                     "layer1.setup"}));
}

TEST_F(ViewportReentrance, layersAddedByCreateKeepTheListsInStep) {
    // The second layer's create empties the list in which it was to get index 1.
    viewport->addLayer("Recording", "a");
    onEntry("layer2.create", [&] { viewport->removeLayer("a"); });
    auto* layer = viewport->insertLayer("Recording", "b", 1);
    EXPECT_EQ(viewport->getLayerByIndex(0), layer);
    EXPECT_EQ(viewport->layerNames, Lines{"b"});
}

TEST_F(ViewportReentrance, viewportRetiredInItsDrawFinishesTheDraw) {
    windows.isQuiet = false;
    viewport->setup(7);
    VlViewportHostStruct* host = viewport.release();
    const auto watch = host->watch();
    onEntry("viewport1.draw", [&] {
        HostObject::retire(host);
        EXPECT_FALSE(watch.expired());
    });
    journal.take();
    host->draw();
    EXPECT_TRUE(watch.expired());
    EXPECT_EQ(journal.take(),
              (Lines{"makeCurrent dc7 context1", "viewport1.draw", "swapBuffers dc7",
                     "makeCurrent dc7 context1", "releaseDC 7 dc7", "viewport1.destroy"}));
}

TEST_F(ViewportReentrance, viewportRetiredInALayersOwnCallOutlivesIt) {
    auto* layer = viewport->addLayer("Recording", "a");
    VlViewportHostStruct* host = viewport.release();
    onEntry("layer1.draw", [&] { HostObject::retire(host); });
    journal.take();
    layer->draw();
    EXPECT_EQ(journal.take(), (Lines{"layer1.draw", "layer1.destroy", "viewport1.destroy"}));
}

TEST_F(ViewportReentrance, viewportRetiredInACamerasOwnCallOutlivesIt) {
    auto* camera = viewport->addCamera("Recording", "a");
    VlViewportHostStruct* host = viewport.release();
    onEntry("camera1.setDirty", [&] { HostObject::retire(host); });
    camera->setFOV(10.0);
    EXPECT_EQ(camera->viewport, nullptr);
    HostObject::retire(camera);
    EXPECT_EQ(plugins.livingInstances(), 0);
}

TEST_F(ViewportReentrance, cameraRemovedInItsOwnCallIsDeletedWhenItReturns) {
    auto* camera = viewport->addCamera("Recording", "a");
    onEntry("camera1.setDirty", [&] {
        viewport->removeCameraByName("a");
        EXPECT_FALSE(plugins.instance("camera1").isDestroyed);
    });
    camera->setFOV(10.0);
    EXPECT_TRUE(plugins.instance("camera1").isDestroyed);
    EXPECT_EQ(viewport->getNumberOfCameras(), 0u);
}

TEST_F(ViewportReentrance, cameraReplacedInItsOwnCallIsDeletedWhenItReturns) {
    auto* camera = viewport->addCamera("Recording", "a");
    viewport->setActiveCamera(camera);
    onEntry("camera1.setDirty", [&] { viewport->addCamera("Recording", "a"); });
    camera->setFOV(10.0);
    EXPECT_TRUE(plugins.instance("camera1").isDestroyed);
    ASSERT_EQ(viewport->getNumberOfCameras(), 1u);
    EXPECT_EQ(viewport->getActiveCamera(), viewport->getCameraByName("a"));
}

TEST_F(ViewportReentrance, pluginMayCallTheTableFromEveryEntry) {
    const ViewportHostSuite& suite = *getViewportHostSuite();
    int calls = 0;
    for (const char* entry : {"setup", "draw", "resize", "hover", "event", "freeze", "cleanup"}) {
        plugins.hooks[std::string("viewport1.") + entry] = [&](auto& instance) {
            suite.setDirty(instance.host, 1);
            EXPECT_EQ(suite.getNumberOfLayers(instance.host), 0u);
            ++calls;
        };
    }
    viewport->setup(7);
    viewport->draw();
    viewport->resize(1, 1);
    viewport->hover(true, 0, 0);
    viewport->event(nullptr);
    viewport->freeze();
    viewport->cleanup();
    EXPECT_EQ(calls, 7);
}

TEST_F(ViewportReentrance, destroyOfALayerSeesTheViewportWithoutIt) {
    viewport->addLayer("Recording", "a");
    viewport->addLayer("Recording", "b");
    std::vector<uint32_t> counts;
    for (const char* entry : {"layer1.destroy", "layer2.destroy"}) {
        onEntry(entry, [&, host = viewport.get()] { counts.push_back(host->getNumberOfLayers()); });
    }
    viewport.reset();
    EXPECT_EQ(counts, (std::vector<uint32_t>{1, 0}));
}

TEST_F(ViewportReentrance, anExceptionLeavesNoCallBehind) {
    viewport->addLayer("Recording", "a");
    onEntry("layer1.resize", [] { throw std::runtime_error("no memory"); });
    EXPECT_THROW(viewport->resize(1, 2), std::runtime_error);
    EXPECT_FALSE(viewport->isInCall());
    viewport->removeLayer("a");
    EXPECT_TRUE(plugins.instance("layer1").isDestroyed) << "at once, as nothing is being called";
}

} // namespace
} // namespace ViewerAPI::test
