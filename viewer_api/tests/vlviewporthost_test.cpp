#include "support/viewporttest.h"
#include "vlviewportcamerahost.h"

#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/IntAttribute.h"
#include "viewer_api/ViewportPluginSuite.h"

#include <algorithm>
#include <stdexcept>

namespace ViewerAPI::test {
namespace {

using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;

class VlViewportHost : public ViewportTest {
protected:
    void SetUp() override {
        viewport = makeViewport();
        journal.take();
    }

    std::unique_ptr<VlViewportHostStruct> viewport;
};

std::string messageOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "nothing was thrown";
}

TEST_F(VlViewportHost, notLoadedPluginThrowsTheTextWithTheVersion) {
    EXPECT_EQ(messageOf([] { VlViewportHostStruct("Missing", "view", nullptr); }),
              "Couldn't load Viewport plugin type 'Missing' v2.");
}

TEST_F(VlViewportHost, pluginOfAnotherKindIsNotLoaded) {
    EXPECT_EQ(messageOf([] { VlViewportHostStruct("OnlyALayer", "view", nullptr); }),
              "Couldn't load Viewport plugin type 'OnlyALayer' v2.");
}

TEST_F(VlViewportHost, pluginWithoutASuiteThrows) {
    EXPECT_EQ(messageOf([] { VlViewportHostStruct("NoSuite", "view", nullptr); }),
              "Error getting Viewport plugin suite for 'NoSuite'.");
}

TEST_F(VlViewportHost, createThatAnswersNullThrowsAndIsNotDestroyed) {
    EXPECT_EQ(messageOf([] { VlViewportHostStruct("NullCreate", "view", nullptr); }),
              "Failed to create Viewport plugin instance for 'NullCreate'.");
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(VlViewportHost, exceptionOfCreatePassesThrough) {
    plugins.hooks["viewport2.create"] = [](auto&) { throw std::runtime_error("no licence"); };
    EXPECT_EQ(messageOf([] { VlViewportHostStruct("Recording", "view", nullptr); }), "no licence");
}

TEST_F(VlViewportHost, createThatFailsLeavesNoLayerAndNoCameraThatReachesBack) {
    plugins.hooks["viewport2.create"] = [](auto& instance) {
        auto* const unmade = static_cast<VlViewportHostStruct*>(instance.host);
        unmade->addLayer("Recording", "layer");
        unmade->setActiveCamera(unmade->addCamera("Recording", "camera"));
        throw std::runtime_error("no licence");
    };
    EXPECT_EQ(messageOf([] { VlViewportHostStruct("Recording", "view", nullptr); }), "no licence");
    EXPECT_TRUE(plugins.instance("layer1").isDestroyed);
    const auto* const camera =
        static_cast<const VlViewportCameraHostStruct*>(plugins.instance("camera1").host);
    EXPECT_EQ(camera->viewport, nullptr);
    EXPECT_EQ(camera->holder(), nullptr);
}

TEST_F(VlViewportHost, startsFromItsDefaults) {
    EXPECT_EQ(viewport->name, "view");
    EXPECT_EQ(viewport->getWidth(), 0);
    EXPECT_EQ(viewport->getHeight(), 0);
    EXPECT_EQ(viewport->activeCamera, nullptr);
    EXPECT_FALSE(viewport->isInitialized);
    EXPECT_FALSE(viewport->isDirty);
    EXPECT_EQ(viewport->fallbackViewMatrix, Imath::M44d());
    EXPECT_EQ(viewport->fallbackProjectionMatrix, Imath::M44d());
    EXPECT_EQ(viewport->windowId, 0);
    EXPECT_EQ(viewport->deviceContext, nullptr);
    EXPECT_TRUE(viewport->glCapabilityStates.empty());
    EXPECT_FALSE(viewport->isViewFrozen);
    EXPECT_EQ(viewport->horizontalOffset, 0.0f);
    EXPECT_EQ(viewport->verticalOffset, 0.0f);
    EXPECT_EQ(viewport->zoom, 1.0f);
    EXPECT_FALSE(viewport->isPanAndZoomActive);
}

TEST_F(VlViewportHost, createRunsDuringConstructionWithTheHostAndItsStoredSuite) {
    const ViewportPluginSuite* suite = nullptr;
    plugins.hooks["viewport2.create"] = [&suite](ViewportPlugins::Instance& instance) {
        suite = static_cast<VlViewportHostStruct*>(instance.host)->pluginSuite;
    };
    const auto other = makeViewport("other");
    EXPECT_EQ(plugins.instance("viewport2").host, other.get());
    EXPECT_NE(suite, nullptr);
    EXPECT_EQ(suite, other->pluginSuite);
}

// Its own instance is not there yet, so it can't be asked for a picture or a pick.
TEST_F(VlViewportHost, createThatReadsMatricesTooEarlyFindsTheIdentity) {
    const Imath::M44d identity;
    const auto isIdentity = [&](const double* matrix) {
        return std::equal(matrix, matrix + 16, identity.getValue());
    };
    plugins.hooks["viewport2.create"] = [&](ViewportPlugins::Instance& instance) {
        const auto* const unmade = static_cast<VlViewportHostStruct*>(instance.host);
        EXPECT_EQ(unmade->pluginHandle, nullptr);
        EXPECT_TRUE(isIdentity(unmade->getViewMatrix()));
        EXPECT_TRUE(isIdentity(unmade->getProjectionMatrix()));
    };
    makeViewport("other");
    EXPECT_EQ(journal.take().front(), "viewport2.create");
}

TEST_F(VlViewportHost, setupJoinsTheContextThenCallsThePluginThenTheLayersInOrder) {
    viewport->addLayer("Recording", "a");
    viewport->addLayer("Recording", "b");
    viewport->resize(640, 480);
    journal.take();
    viewport->setup(7);
    const Lines calls = journal.take();
    ASSERT_EQ(calls.size(), 11u);
    EXPECT_EQ(calls[0], "glewInit");
    EXPECT_EQ(calls[1], "getDC 7");
    EXPECT_EQ(Lines(calls.begin() + 6, calls.end()),
              (Lines{"makeCurrent dc7 context1", "glViewport 0 0 640 480", "viewport1.setup",
                     "layer1.setup", "layer2.setup"}));
    EXPECT_TRUE(viewport->isInitialized);
    EXPECT_EQ(viewport->windowId, 7);
}

TEST_F(VlViewportHost, secondSetupDoesNothingAlsoWithAnotherWindow) {
    viewport->setup(7);
    journal.take();
    viewport->setup(8);
    EXPECT_EQ(journal.take(), Lines{});
    EXPECT_EQ(viewport->windowId, 7);
}

TEST_F(VlViewportHost, setupReachesThePluginsAlsoWhenTheContextFails) {
    viewport->addLayer("Recording", "a");
    windows.failing = {"getDC"};
    journal.take();
    viewport->setup(7);
    EXPECT_THAT(journal.take(),
                testing::ElementsAre("glewInit", "getDC 7", "viewport1.setup", "layer1.setup"));
    EXPECT_FALSE(viewport->isInitialized);
}

struct SetupRow {
    const char* name;
    bool joins;
    bool binds;
    bool isInitialized;
};

class VlViewportHostSetup : public VlViewportHost, public testing::WithParamInterface<SetupRow> {};

TEST_P(VlViewportHostSetup, initialisesWhenEitherJoiningOrBindingSucceeds) {
    // A context and a device context from an earlier setup, so that each step can fail alone.
    viewport->setup(7);
    viewport->cleanup();
    if (!GetParam().joins) {
        windows.failing.insert("setPixelFormat");
    }
    if (!GetParam().binds) {
        windows.failing.insert("makeCurrent");
    }
    viewport->setup(7);
    EXPECT_EQ(viewport->isInitialized, GetParam().isInitialized);
}

INSTANTIATE_TEST_SUITE_P(Results, VlViewportHostSetup,
                         testing::Values(SetupRow{"both", true, true, true},
                                         SetupRow{"joinedOnly", true, false, true},
                                         SetupRow{"boundOnly", false, true, true},
                                         SetupRow{"neither", false, false, false}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(VlViewportHost, cleanupRunsTheLayersInOrderAndThenThePlugin) {
    viewport->addLayer("Recording", "a");
    viewport->addLayer("Recording", "b");
    viewport->setup(7);
    journal.take();
    viewport->cleanup();
    EXPECT_EQ(journal.take(), (Lines{"makeCurrent dc7 context1", "glViewport 0 0 0 0",
                                     "layer1.cleanup", "layer2.cleanup", "viewport1.cleanup"}));
    EXPECT_FALSE(viewport->isInitialized);
    EXPECT_NE(viewport->deviceContext, nullptr);
}

TEST_F(VlViewportHost, cleanupOfAViewportThatIsNotSetUpDoesNothing) {
    viewport->cleanup();
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(VlViewportHost, setupAfterCleanupFetchesANewDeviceContextOverTheOldOne) {
    viewport->setup(7);
    viewport->cleanup();
    journal.take();
    viewport->setup(8);
    EXPECT_EQ(journal.take(),
              (Lines{"getDC 8", "setPixelFormat dc8 33 described", "makeCurrent dc8 context1",
                     "glViewport 0 0 0 0", "viewport1.setup"}));
}

TEST_F(VlViewportHost, drawBindsCallsThePluginAndSwaps) {
    viewport->addLayer("Recording", "a");
    viewport->setup(7);
    viewport->setDirty(true);
    journal.take();
    viewport->draw();
    EXPECT_EQ(journal.take(), (Lines{"makeCurrent dc7 context1", "glViewport 0 0 0 0",
                                     "viewport1.draw", "swapBuffers dc7"}));
    EXPECT_TRUE(viewport->isDirty) << "drawing does not clear it";
}

TEST_F(VlViewportHost, drawBeforeSetupCallsThePluginAndSwapsANullDeviceContext) {
    viewport->draw();
    EXPECT_EQ(journal.take(), (Lines{"viewport1.draw", "swapBuffers null"}));
    EXPECT_TRUE(log.empty());
}

TEST_F(VlViewportHost, drawGoesOnWhenBindingFails) {
    viewport->setup(7);
    windows.failing = {"makeCurrent"};
    journal.take();
    viewport->draw();
    EXPECT_EQ(journal.take(),
              (Lines{"makeCurrent dc7 context1", "viewport1.draw", "swapBuffers dc7"}));
}

TEST_F(VlViewportHost, drawLeavesTheContextCurrent) {
    viewport->setup(7);
    viewport->doneGLContextCurrent();
    viewport->draw();
    EXPECT_TRUE(viewport->isGLContextCurrent());
}

TEST_F(VlViewportHost, eventBeforeSetupIsFalseAndNeverReachesThePlugin) {
    plugins.answers["viewport1.event"] = 1;
    const GroupAttribute data = GroupAttribute::Empty();
    EXPECT_FALSE(viewport->event(data.getHandle()));
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(VlViewportHost, eventGoesToThePluginAloneWithoutBinding) {
    viewport->addLayer("Recording", "a");
    viewport->setup(7);
    journal.take();
    const GroupAttribute data{{"type", IntAttribute(3)}};
    EXPECT_FALSE(viewport->event(data.getHandle()));
    plugins.answers["viewport1.event"] = -4;
    EXPECT_TRUE(viewport->event(data.getHandle())) << "any answer but zero means handled";
    EXPECT_EQ(journal.take(), (Lines{"viewport1.event", "viewport1.event"}));
    EXPECT_EQ(plugins.instance("viewport1").lastAttribute, data);
}

TEST_F(VlViewportHost, hoverBindsAndCallsThePluginAlone) {
    viewport->addLayer("Recording", "a");
    viewport->setup(7);
    journal.take();
    viewport->hover(true, 12, -3);
    viewport->hover(false, 0, 0);
    EXPECT_EQ(journal.take(),
              (Lines{"makeCurrent dc7 context1", "glViewport 0 0 0 0", "viewport1.hover 1 12 -3",
                     "makeCurrent dc7 context1", "glViewport 0 0 0 0", "viewport1.hover 0 0 0"}));
}

TEST_F(VlViewportHost, resizeStoresBindsAndTellsPluginAndThenLayers) {
    viewport->addLayer("Recording", "a");
    viewport->addLayer("Recording", "b");
    viewport->addCamera("Recording", "camera");
    viewport->setup(7);
    journal.take();
    viewport->resize(800, 600);
    EXPECT_EQ(journal.take(), (Lines{"makeCurrent dc7 context1", "glViewport 0 0 800 600",
                                     "viewport1.resize 800 600", "layer1.resize 800 600",
                                     "layer2.resize 800 600"}));
    EXPECT_EQ(viewport->getWidth(), 800);
    EXPECT_EQ(viewport->getHeight(), 600);
}

TEST_F(VlViewportHost, resizeBeforeSetupReachesThePluginsToo) {
    viewport->addLayer("Recording", "a");
    journal.take();
    viewport->resize(800, 600);
    EXPECT_EQ(journal.take(), (Lines{"viewport1.resize 800 600", "layer1.resize 800 600"}));
}

TEST_F(VlViewportHost, freezeAndThawOnlyReachThePlugin) {
    viewport->setup(7);
    journal.take();
    viewport->freeze();
    viewport->freeze();
    viewport->thaw();
    EXPECT_EQ(journal.take(), (Lines{"viewport1.freeze", "viewport1.freeze", "viewport1.thaw"}));
    EXPECT_FALSE(viewport->isViewFrozen);
}

TEST_F(VlViewportHost, onlySetDirtyClearsDirty) {
    viewport->setDirty(true);
    viewport->setup(7);
    viewport->draw();
    viewport->resize(1, 1);
    viewport->cleanup();
    EXPECT_TRUE(viewport->isDirty);
    viewport->setDirty(false);
    EXPECT_FALSE(viewport->isDirty);
}

TEST_F(VlViewportHost, panAndZoomWithoutAnActiveCameraAreOnlyStored) {
    viewport->addCamera("Recording", "camera");
    journal.take();
    viewport->setHorizontalOffset(0.25f);
    viewport->setVerticalOffset(-3.0f);
    viewport->setZoom(0.0f);
    viewport->setPanAndZoomActive(true);
    EXPECT_EQ(journal.take(), Lines{});
    EXPECT_EQ(viewport->horizontalOffset, 0.25f);
    EXPECT_EQ(viewport->verticalOffset, -3.0f);
    EXPECT_EQ(viewport->zoom, 0.0f) << "values are not clamped";
    EXPECT_TRUE(viewport->isPanAndZoomActive);
}

TEST_F(VlViewportHost, endDeletesLayersLastToFirstWithoutCleanup) {
    viewport->addLayer("Recording", "a");
    viewport->addLayer("Recording", "b");
    viewport->setup(7);
    journal.take();
    viewport.reset();
    EXPECT_EQ(journal.take(),
              (Lines{"makeCurrent dc7 context1", "glViewport 0 0 0 0", "layer2.destroy",
                     "layer1.destroy", "releaseDC 7 dc7", "viewport1.destroy"}));
}

TEST_F(VlViewportHost, endLeavesTheCamerasAlive) {
    auto* camera = viewport->addCamera("Recording", "camera");
    viewport->setActiveCamera(camera);
    viewport.reset();
    EXPECT_FALSE(plugins.instance("camera1").isDestroyed);
    EXPECT_EQ(plugins.instance("camera1").host, camera);
}

TEST_F(VlViewportHost, exceptionsOfThePluginPassThrough) {
    viewport->setup(7);
    const auto raise = [](auto&) { throw std::runtime_error("from the plug-in"); };
    for (const char* entry : {"draw", "event", "hover", "resize", "freeze", "thaw", "cleanup"}) {
        plugins.hooks[std::string("viewport1.") + entry] = raise;
    }
    const GroupAttribute data = GroupAttribute::Empty();
    EXPECT_THROW(viewport->draw(), std::runtime_error);
    EXPECT_THROW(viewport->event(data.getHandle()), std::runtime_error);
    EXPECT_THROW(viewport->hover(true, 0, 0), std::runtime_error);
    EXPECT_THROW(viewport->resize(2, 3), std::runtime_error);
    EXPECT_THROW(viewport->freeze(), std::runtime_error);
    EXPECT_THROW(viewport->thaw(), std::runtime_error);
    EXPECT_THROW(viewport->cleanup(), std::runtime_error);
    EXPECT_EQ(viewport->getWidth(), 2) << "what came before the exception stays";
    EXPECT_FALSE(viewport->isInCall());
}

TEST_F(VlViewportHost, exceptionOfDestroyEndsWithTheViewport) {
    plugins.hooks["viewport1.destroy"] = [](auto&) { throw std::runtime_error("too late"); };
    viewport.reset();
    EXPECT_EQ(journal.take(), Lines{"viewport1.destroy"});
}

} // namespace
} // namespace ViewerAPI::test
