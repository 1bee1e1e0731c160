// A viewport's list of layers, and a layer by itself.

#include "support/viewporttest.h"
#include "vlviewportlayerhost.h"

#include "VlAttribute/GroupAttribute.h"

#include <stdexcept>

namespace ViewerAPI::test {
namespace {

using VlAttribute::GroupAttribute;

class VlViewportLayerHost : public ViewportTest {
protected:
    void SetUp() override {
        viewport = makeViewport();
        journal.take();
    }

    void setUpViewport() {
        viewport->setup(7);
        journal.take();
    }

    Lines layerNames() const { return viewport->layerNames; }

    std::string messageOfAdding(const std::string& pluginName) {
        try {
            viewport->addLayer(pluginName, "layer");
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "nothing was thrown";
    }

    std::unique_ptr<VlViewportHostStruct> viewport;
};

TEST_F(VlViewportLayerHost, loadFailuresThrowTheirTextsAndAddNothing) {
    EXPECT_EQ(messageOfAdding("Missing"), "Couldn't load ViewportLayer plugin type 'Missing'.");
    EXPECT_EQ(messageOfAdding("NoSuite"),
              "Error getting ViewportLayer plugin suite for 'NoSuite'.");
    EXPECT_EQ(messageOfAdding("NullCreate"),
              "Failed to create ViewportLayer plugin instance for 'NullCreate'.");
    EXPECT_EQ(viewport->getNumberOfLayers(), 0u);
    EXPECT_TRUE(layerNames().empty());
    EXPECT_EQ(plugins.livingInstances(), 1) << "the viewport's own";
}

TEST_F(VlViewportLayerHost, startsUninitialised) {
    const auto* layer = viewport->addLayer("Recording", "a");
    EXPECT_FALSE(layer->isInitialized);
    EXPECT_EQ(layer->viewport, viewport.get());
    EXPECT_EQ(layer->pluginHandle, &plugins.instance("layer1"));
    EXPECT_EQ(plugins.instance("layer1").host, layer);
}

TEST_F(VlViewportLayerHost, addOnAnUninitialisedViewportMakesNoGLCall) {
    viewport->addLayer("Recording", "a");
    EXPECT_EQ(journal.take(), (Lines{"layer1.create", "layer1.usesPickingCache"}));
}

TEST_F(VlViewportLayerHost, addOnAnInitialisedViewportSetsUpAndUnbinds) {
    setUpViewport();
    auto* layer = viewport->addLayer("Recording", "a");
    EXPECT_EQ(journal.take(),
              (Lines{"layer1.create", "layer1.usesPickingCache", "makeCurrent dc7 context1",
                     "glViewport 0 0 0 0", "layer1.setup", "makeCurrent dc7 null"}));
    EXPECT_TRUE(layer->isInitialized);
}

TEST_F(VlViewportLayerHost, insertOnAnInitialisedViewportSetsUpAndUnbinds) {
    setUpViewport();
    viewport->insertLayer("Recording", "a", 0);
    EXPECT_EQ(journal.take(),
              (Lines{"layer1.create", "layer1.usesPickingCache", "makeCurrent dc7 context1",
                     "glViewport 0 0 0 0", "layer1.setup", "makeCurrent dc7 null"}));
}

TEST_F(VlViewportLayerHost, isInTheListWhenItIsSetUp) {
    setUpViewport();
    uint32_t count = 0;
    plugins.hooks["layer1.setup"] = [&](auto&) { count = viewport->getNumberOfLayers(); };
    viewport->addLayer("Recording", "a");
    EXPECT_EQ(count, 1u);
}

TEST_F(VlViewportLayerHost, insertBeyondTheCountIsNullAndLoadsNoPlugin) {
    viewport->addLayer("Recording", "a");
    journal.take();
    EXPECT_EQ(viewport->insertLayer("Recording", "b", 2), nullptr);
    EXPECT_EQ(viewport->insertLayer("Missing", "b", 4000000000u), nullptr);
    EXPECT_EQ(journal.take(), Lines{});
    EXPECT_EQ(viewport->getNumberOfLayers(), 1u);
}

TEST_F(VlViewportLayerHost, insertAtTheCountAppends) {
    viewport->addLayer("Recording", "a");
    auto* layer = viewport->insertLayer("Recording", "b", 1);
    EXPECT_EQ(viewport->getLayerByIndex(1), layer);
    EXPECT_EQ(layerNames(), (Lines{"a", "b"}));
}

TEST_F(VlViewportLayerHost, insertKeepsBothListsInStep) {
    viewport->addLayer("Recording", "a");
    viewport->addLayer("Recording", "c");
    auto* layer = viewport->insertLayer("Recording", "b", 1);
    EXPECT_EQ(layerNames(), (Lines{"a", "b", "c"}));
    EXPECT_EQ(viewport->getLayer("b"), layer);
    EXPECT_EQ(viewport->layers.size(), 3u);
}

TEST_F(VlViewportLayerHost, lookupsAnswerSilentlyForWhatIsNotThere) {
    auto* layer = viewport->addLayer("Recording", "a");
    EXPECT_EQ(viewport->getLayer("a"), layer);
    EXPECT_EQ(viewport->getLayer("A"), nullptr);
    EXPECT_EQ(viewport->getLayer("aa"), nullptr);
    EXPECT_EQ(viewport->getLayerByIndex(0), layer);
    EXPECT_EQ(viewport->getLayerByIndex(1), nullptr);
    EXPECT_STREQ(viewport->getLayerName(0), "a");
    EXPECT_STREQ(viewport->getLayerName(1), "");
    EXPECT_EQ(viewport->getLayerIndex("a"), 0);
    EXPECT_EQ(viewport->getLayerIndex("b"), -1);
    viewport->removeLayer("b");
    viewport->removeLayerByIndex(1);
    EXPECT_EQ(viewport->getNumberOfLayers(), 1u);
}

TEST_F(VlViewportLayerHost, twoOfOneNameCoexistAndRemovalTakesTheOneNearerTheFront) {
    auto* front = viewport->addLayer("Recording", "a");
    auto* back = viewport->addLayer("Recording", "a");
    EXPECT_EQ(viewport->getNumberOfLayers(), 2u);
    EXPECT_EQ(viewport->getLayer("a"), front);
    viewport->removeLayer("a");
    EXPECT_TRUE(plugins.instance("layer1").isDestroyed);
    EXPECT_EQ(viewport->getLayer("a"), back);
}

TEST_F(VlViewportLayerHost, removalBindsCleansUpAndDestroysAndLeavesTheContextCurrent) {
    viewport->addLayer("Recording", "a");
    viewport->addLayer("Recording", "b");
    setUpViewport();
    uint32_t countInCleanup = 99;
    plugins.hooks["layer1.cleanup"] = [&](auto&) {
        countInCleanup = viewport->getNumberOfLayers();
    };
    viewport->removeLayerByIndex(0);
    EXPECT_EQ(journal.take(), (Lines{"makeCurrent dc7 context1", "glViewport 0 0 0 0",
                                     "layer1.cleanup", "layer1.destroy"}));
    EXPECT_EQ(countInCleanup, 1u) << "it leaves the lists before its cleanup";
    EXPECT_EQ(layerNames(), Lines{"b"});
    EXPECT_TRUE(viewport->isGLContextCurrent());
}

TEST_F(VlViewportLayerHost, removalOfOneThatIsNotSetUpSkipsCleanup) {
    viewport->addLayer("Recording", "a");
    journal.take();
    viewport->removeLayer("a");
    EXPECT_EQ(journal.take(), Lines{"layer1.destroy"});
}

TEST_F(VlViewportLayerHost, setupAndCleanupRunOnceEach) {
    auto* layer = viewport->addLayer("Recording", "a");
    journal.take();
    layer->cleanup();
    layer->setup();
    layer->setup();
    EXPECT_TRUE(layer->isInitialized);
    layer->cleanup();
    layer->cleanup();
    EXPECT_FALSE(layer->isInitialized);
    EXPECT_EQ(journal.take(), (Lines{"layer1.setup", "layer1.cleanup"}));
}

TEST_F(VlViewportLayerHost, setUpByHandIsNotSetUpAgainByTheViewport) {
    viewport->addLayer("Recording", "a")->setup();
    hideBindings();
    journal.take();
    viewport->setup(7);
    EXPECT_EQ(journal.take(), Lines{"viewport1.setup"});
}

TEST_F(VlViewportLayerHost, resizeEventDrawAndHoverReachThePluginAlsoBeforeSetup) {
    auto* layer = viewport->addLayer("Recording", "a");
    journal.take();
    const GroupAttribute data = GroupAttribute::Empty();
    layer->resize(3, 4);
    EXPECT_FALSE(layer->event(data.getRetainedHandle()));
    plugins.answers["layer1.event"] = 2;
    EXPECT_TRUE(layer->event(data.getRetainedHandle()));
    layer->draw();
    layer->hover(true, 5, 6);
    EXPECT_EQ(journal.take(), (Lines{"layer1.resize 3 4", "layer1.event", "layer1.event",
                                     "layer1.draw", "layer1.hover 1 5 6"}));
    EXPECT_EQ(plugins.instance("layer1").lastAttribute, data);
}

TEST_F(VlViewportLayerHost, destructorCallsDestroyWithoutCleanup) {
    setUpViewport();
    viewport->addLayer("Recording", "a");
    hideBindings();
    journal.take();
    viewport.reset();
    EXPECT_THAT(journal.take(), testing::ElementsAre("layer1.destroy", "viewport1.destroy"));
}

TEST_F(VlViewportLayerHost, exceptionOfSetupLeavesItInTheListUninitialised) {
    setUpViewport();
    plugins.hooks["layer1.setup"] = [](auto&) { throw std::runtime_error("no shader"); };
    EXPECT_EQ(messageOfAdding("Recording"), "no shader");
    ASSERT_EQ(viewport->getNumberOfLayers(), 1u);
    EXPECT_FALSE(viewport->getLayerByIndex(0)->isInitialized);
}

TEST_F(VlViewportLayerHost, exceptionOfCleanupDoesNotKeepItAlive) {
    viewport->addLayer("Recording", "a");
    setUpViewport();
    plugins.hooks["layer1.cleanup"] = [](auto&) { throw std::runtime_error("lost"); };
    EXPECT_THROW(viewport->removeLayer("a"), std::runtime_error);
    EXPECT_EQ(viewport->getNumberOfLayers(), 0u);
    EXPECT_TRUE(plugins.instance("layer1").isDestroyed);
}

} // namespace
} // namespace ViewerAPI::test
