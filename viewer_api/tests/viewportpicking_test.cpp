// Picks of viewports and of layers: who is asked, what is bound and cleared, what is found.

#include "suites/viewporthostsuite.h"
#include "suites/viewportlayerhostsuite.h"
#include "support/viewporttest.h"
#include "vlviewportlayerhost.h"
#include "vlviewportpicker.h"

#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/IntAttribute.h"

#include <algorithm>
#include <stdexcept>

namespace ViewerAPI::test {
namespace {

using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;

const Lines kClears = {"glClearColor 1 1 1 1", "glClear COLOR", "glClearColor 0 0 0 0",
                       "glClear DEPTH"};

Lines operator+(Lines left, const Lines& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

// "0=10 2=12": what an id stands for.
std::string textOf(const GroupAttribute& picked) {
    if (!picked.isValid())
        return "null";
    std::string text;
    for (int64_t i = 0; i < picked.getNumberOfChildren(); ++i)
        text += (i ? " " : "") + std::string(picked.getChildName(i)) + "=" +
                std::to_string(IntAttribute(picked.getChildByIndex(i)).getValue());
    return text;
}

constexpr uint32_t kBackground = 0xFFFFFFFF;

class ViewportPicking : public ViewportTest {
protected:
    // A viewport of 8 by 4 pixels that is set up; its surface is framebuffer 1.
    void SetUp() override {
        viewport = makeViewport();
        viewport->resize(8, 4);
        gl.reachesFramebuffers = true;
        viewport->setup(7);
        ASSERT_EQ(viewport->picker->framebuffer, 1u);
        windows.isQuiet = true;
        journal.take();
    }

    void onEntry(const std::string& entry, const std::function<void()>& action) {
        plugins.hooks[entry] = [action](auto&) { action(); };
    }

    VlViewportLayerHostStruct* addCachedLayer() {
        const std::string next = "layer" + std::to_string(viewport->getNumberOfLayers() + 1);
        plugins.answers[next + ".usesPickingCache"] = 1;
        auto* layer = viewport->addLayer("Recording", next);
        journal.take();
        return layer;
    }

    std::string pick(const PixelRegion& region = {0, 0, 2, 2}) {
        return textOf(viewport->getPickedObjects(region, false, nullptr));
    }

    // The line of glViewport aside, which comes with every binding of the context.
    Lines calls() {
        Lines lines = journal.take();
        std::erase(lines, "glViewport 0 0 8 4");
        return lines;
    }

    std::unique_ptr<VlViewportHostStruct> viewport;
};

// ---- Set-up and size

TEST_F(ViewportPicking, setupMakesTheSurfaceBeforeThePluginIsSetUpAndResizeBeforeItIsResized) {
    auto other = makeViewport("other");
    other->resize(0, 0);
    other->setup(8);
    EXPECT_EQ(other->picker->framebuffer, 0u) << "there is nothing to make yet";
    other->cleanup();
    uint32_t atResize = 0, atSetup = 0;
    onEntry("viewport2.resize", [&] { atResize = other->picker->framebuffer; });
    onEntry("viewport2.setup", [&] { atSetup = other->picker->framebuffer; });
    other->resize(3, 2);
    EXPECT_EQ(atResize, 4u);
    journal.take();
    other->setup(8);
    EXPECT_EQ(atSetup, 7u);
    EXPECT_THAT(journal.take(), testing::Contains("glRenderbufferStorage RENDERBUFFER RGBA 3 2"));
}

TEST_F(ViewportPicking, setupAfterCleanupReplacesTheSurface) {
    viewport->cleanup();
    EXPECT_THAT(journal.take(), testing::Not(testing::Contains("glDeleteFramebuffers 1")))
        << "a viewport's own surface outlives its cleanup";
    viewport->setup(7);
    EXPECT_THAT(journal.take(), testing::Contains("glDeleteFramebuffers 1"));
}

TEST_F(ViewportPicking, endOfAViewportDeletesNoGLObjects) {
    viewport.reset();
    EXPECT_EQ(calls(), Lines{"viewport1.destroy"});
}

TEST_F(ViewportPicking, layerWithACacheSetsUpItsSurfaceBeforeItsPlugin) {
    uint32_t atSetup = 0;
    onEntry("layer1.setup", [&] { atSetup = viewport->layers[0]->picker->framebuffer; });
    plugins.answers["layer1.usesPickingCache"] = 1;
    auto* layer = viewport->addLayer("Recording", "a");
    EXPECT_EQ(atSetup, 4u);
    EXPECT_THAT(journal.take(), testing::Contains("glRenderbufferStorage RENDERBUFFER RGBA 8 4"));
    onEntry("layer1.cleanup", [&] { journal.add("(plug-in)"); });
    layer->cleanup();
    EXPECT_EQ(journal.take(), (Lines{"glBindFramebuffer FRAMEBUFFER 0", "glDeleteRenderbuffers 5",
                                     "glDeleteRenderbuffers 6", "glDeleteFramebuffers 4",
                                     "layer1.cleanup", "(plug-in)"}));
}

TEST_F(ViewportPicking, resizeReachesTheSurfaceOfEachLayerBeforeItsPlugin) {
    auto* layer = addCachedLayer();
    uint32_t atResize = 0;
    onEntry("layer1.resize", [&] { atResize = layer->picker->framebuffer; });
    viewport->resize(16, 9);
    EXPECT_EQ(viewport->picker->framebuffer, 7u);
    EXPECT_EQ(atResize, 10u);
    const Lines lines = journal.take();
    EXPECT_THAT(lines, testing::Contains("glDeleteFramebuffers 1"));
    EXPECT_THAT(lines, testing::Contains("glDeleteFramebuffers 4"));
    EXPECT_EQ(std::ranges::count(lines, "glRenderbufferStorage RENDERBUFFER RGBA 16 9"), 2);
}

TEST_F(ViewportPicking, layerWithoutACacheHasNoSurface) {
    EXPECT_EQ(viewport->addLayer("Recording", "a")->picker, nullptr);
    EXPECT_NE(addCachedLayer()->picker, nullptr);
}

TEST_F(ViewportPicking, usesPickingCacheIsAskedOnceAfterCreate) {
    auto other = makeViewport("other");
    journal.take();
    auto* layer = other->addLayer("Recording", "a");
    layer->draw();
    EXPECT_EQ(journal.take(), (Lines{"layer1.create", "layer1.usesPickingCache", "layer1.draw"}));
}

TEST_F(ViewportPicking, usesPickingCacheThatThrowsDestroysTheInstance) {
    onEntry("layer1.usesPickingCache", [] { throw std::runtime_error("undecided"); });
    EXPECT_THROW(viewport->addLayer("Recording", "a"), std::runtime_error);
    EXPECT_TRUE(plugins.instance("layer1").isDestroyed);
    EXPECT_EQ(viewport->getNumberOfLayers(), 0u);
}

TEST_F(ViewportPicking, objectsAddedFromCreateAreDroppedBySetup) {
    plugins.hooks["viewport2.create"] = [](auto& instance) {
        auto* unmade = static_cast<VlViewportHostStruct*>(instance.host);
        EXPECT_EQ(unmade->addPickableObject(IntAttribute(1)), 0u);
    };
    auto other = makeViewport("other");
    other->width = other->height = 2;
    other->setup(8);
    EXPECT_EQ(other->addPickableObject(IntAttribute(2)), 0u);
}

// ---- The viewport's pick

TEST_F(ViewportPicking, viewportsPickCallByCall) {
    gl.boundFramebuffer = 9;
    gl.ids = {1};
    onEntry("viewport1.pickerDraw", [&] {
        viewport->addPickableObject(IntAttribute(10));
        viewport->addPickableObject(IntAttribute(11));
    });
    EXPECT_EQ(pick({1, 0, 3, 2}), "1=11");
    EXPECT_EQ(journal.take(),
              ((Lines{"viewport1.customPick 1 0 3 2 0", "glViewport 0 0 8 4",
                      "glGetIntegerv DRAW_FRAMEBUFFER_BINDING", "glBindFramebuffer FRAMEBUFFER 1",
                      "glDrawBuffer COLOR_ATTACHMENT0"}) +
               kClears +
               Lines{"viewport1.pickerDraw 1 0 3 2", "glGetIntegerv VIEWPORT",
                     "glReadPixels 1 2 3 2 RGBA UNSIGNED_BYTE",
                     // The last clears fall on what was bound before.
                     "glBindFramebuffer FRAMEBUFFER 9"} +
               kClears));
    EXPECT_EQ(plugins.instance("viewport1").lastAttribute, GroupAttribute::Empty());
    EXPECT_TRUE(viewport->picker->pickableObjects.empty()) << "objects live for one pick";
}

TEST_F(ViewportPicking, customPickThatPicksBypassesGLAndPickerDraw) {
    plugins.answers["viewport1.customPick"] = 3;
    plugins.attributeAnswer = GroupAttribute{{"7", IntAttribute(70)}};
    plugins.depthAnswer = 0.125f;
    float depth = 1.0f;
    EXPECT_EQ(textOf(viewport->getPickedObjects({5, 6, 1, 1}, true, &depth)), "7=70");
    EXPECT_EQ(depth, 0.125f);
    EXPECT_EQ(journal.take(), Lines{"viewport1.customPick 5 6 1 1 1"});
}

TEST_F(ViewportPicking, customPickThatPicksWhatIsNoGroupIsNull) {
    plugins.answers["viewport1.customPick"] = 1;
    EXPECT_EQ(pick(), "null");
    plugins.attributeAnswer = IntAttribute(1);
    EXPECT_EQ(pick(), "null");
}

TEST_F(ViewportPicking, backgroundIsAValidEmptyGroupAndItsDepth) {
    gl.depth = 0.75f;
    float depth = 0.0f;
    EXPECT_EQ(textOf(viewport->getPickedObjects({0, 0, 1, 1}, false, &depth)), "");
    EXPECT_EQ(depth, 0.75f);
}

TEST_F(ViewportPicking, emptyRegionAsksThePluginAndReadsNothing) {
    EXPECT_EQ(pick({0, 0, 0, 5}), "");
    const Lines lines = calls();
    EXPECT_EQ(lines.front(), "viewport1.customPick 0 0 0 5 0");
    EXPECT_THAT(lines, testing::Contains("viewport1.pickerDraw 0 0 0 5"));
    EXPECT_THAT(lines, testing::Not(testing::Contains(testing::StartsWith("glReadPixels"))));
}

TEST_F(ViewportPicking, pickWithoutASurfaceFindsNothing) {
    auto other = makeViewport("other");
    journal.take();
    onEntry("viewport2.pickerDraw", [&] { other->addPickableObject(IntAttribute(1)); });
    EXPECT_EQ(textOf(other->getPickedObjects({0, 0, 1, 1}, true, nullptr)), "");
    EXPECT_EQ(journal.take(), (Lines{"viewport2.customPick 0 0 1 1 1"} + kClears +
                               Lines{"viewport2.pickerDraw 0 0 1 1"} + kClears));
    EXPECT_TRUE(other->picker->pickableObjects.empty());
}

TEST_F(ViewportPicking, objectsAddedOutsideAPickTakeTheFirstIdsOfTheNext) {
    EXPECT_EQ(viewport->addPickableObject(IntAttribute(5)), 0u);
    gl.ids = {0, 1};
    onEntry("viewport1.pickerDraw", [&] { viewport->addPickableObject(IntAttribute(6)); });
    EXPECT_EQ(pick(), "0=5 1=6");
    EXPECT_EQ(pick(), "0=6");
}

TEST_F(ViewportPicking, exceptionOfPickerDrawUnbindsAndDropsTheObjects) {
    gl.boundFramebuffer = 9;
    onEntry("viewport1.pickerDraw", [&] {
        viewport->addPickableObject(IntAttribute(1));
        throw std::runtime_error("no shader");
    });
    EXPECT_THROW(pick(), std::runtime_error);
    EXPECT_EQ(gl.boundFramebuffer, 9u);
    EXPECT_TRUE(viewport->picker->pickableObjects.empty());
    plugins.hooks.clear();
    EXPECT_EQ(pick(), "") << "and the next pick works";
}

TEST_F(ViewportPicking, exceptionOfCustomPickPassesThrough) {
    onEntry("viewport1.customPick", [] { throw std::runtime_error("no ray"); });
    EXPECT_THROW(pick(), std::runtime_error);
    EXPECT_EQ(journal.take(), Lines{"viewport1.customPick 0 0 2 2 0"});
}

// ---- Deep picks

// Three objects behind one another: each pass shows the nearest that is not excluded.
class DeepPicking : public ViewportPicking {
protected:
    void showNearest(const std::string& instance, const std::function<void()>& registerObjects) {
        plugins.hooks[instance + ".pickerDraw"] = [this, registerObjects](auto& plugin) {
            excluded.push_back(GroupAttribute(plugin.lastAttribute));
            if (excluded.size() == 1)
                registerObjects();
            gl.ids = {kBackground};
            gl.depth = 1.0f;
            for (uint32_t id = 0; id < 3; ++id) {
                if (!excluded.back().getChildByName(std::to_string(id)).isValid()) {
                    gl.ids = {id};
                    gl.depth = 0.1f * static_cast<float>(id + 1);
                    return;
                }
            }
        };
    }
    std::vector<GroupAttribute> excluded;
};

TEST_F(DeepPicking, peelsUntilAPassFindsNothing) {
    showNearest("viewport1", [&] {
        for (const int value : {10, 11, 12})
            viewport->addPickableObject(IntAttribute(value));
    });
    float depth = 0.0f;
    EXPECT_EQ(textOf(viewport->getPickedObjects({0, 0, 1, 1}, true, &depth)), "0=10 1=11 2=12");
    EXPECT_EQ(depth, 1.0f) << "of the last pass, which was empty";
    ASSERT_EQ(excluded.size(), 4u);
    EXPECT_EQ(textOf(excluded[0]), "");
    EXPECT_EQ(textOf(excluded[1]), "0=10");
    EXPECT_EQ(textOf(excluded[2]), "0=10 1=11");
    EXPECT_EQ(textOf(excluded[3]), "0=10 1=11 2=12");
    EXPECT_TRUE(viewport->picker->pickableObjects.empty());
}

TEST_F(DeepPicking, findsTheNearestAloneWhenItIsNotDeep) {
    showNearest("viewport1", [&] { viewport->addPickableObject(IntAttribute(10)); });
    EXPECT_EQ(pick(), "0=10");
    EXPECT_EQ(excluded.size(), 1u);
}

TEST_F(DeepPicking, pluginThatIgnoresTheExclusionsIsAskedAHundredTimes) {
    int passes = 0;
    onEntry("viewport1.pickerDraw", [&] {
        if (passes++ == 0)
            viewport->addPickableObject(IntAttribute(10));
    });
    gl.ids = {0};
    EXPECT_EQ(textOf(viewport->getPickedObjects({0, 0, 2, 1}, true, nullptr)), "0=10");
    EXPECT_EQ(passes, 100);
}

TEST_F(DeepPicking, eachPassClearsTheImageAndKeepsTheObjects) {
    showNearest("viewport1", [&] { viewport->addPickableObject(IntAttribute(10)); });
    EXPECT_EQ(textOf(viewport->getPickedObjects({0, 0, 1, 1}, true, nullptr)), "0=10");
    const Lines lines = calls();
    EXPECT_EQ(std::ranges::count(lines, "glBindFramebuffer FRAMEBUFFER 1"), 1);
    EXPECT_EQ(std::ranges::count(lines, "glClear COLOR"), 3) << "two passes and the window";
}

// ---- The layer's pick

TEST_F(ViewportPicking, layerWithoutACachePicksOnTheViewportsSurfaceCallByCall) {
    auto* layer = viewport->addLayer("Recording", "a");
    journal.take();
    gl.ids = {0};
    onEntry("layer1.pickerDraw", [&] {
        EXPECT_EQ(layer->addPickableObject(IntAttribute(10)), 0u);
        EXPECT_EQ(viewport->picker->pickableObjects.size(), 1u);
    });
    EXPECT_EQ(textOf(layer->getPickedObjects({1, 0, 3, 2}, false, nullptr)), "0=10");
    EXPECT_EQ(journal.take(),
              ((Lines{"layer1.customPick 1 0 3 2 0", "glViewport 0 0 8 4",
                      "glGetIntegerv DRAW_FRAMEBUFFER_BINDING", "glBindFramebuffer FRAMEBUFFER 1",
                      "glDrawBuffer COLOR_ATTACHMENT0"}) +
               kClears +
               Lines{"layer1.pickerDraw 1 0 3 2", "glGetIntegerv VIEWPORT",
                     "glReadPixels 1 2 3 2 RGBA UNSIGNED_BYTE", "glBindFramebuffer FRAMEBUFFER 0"} +
               kClears));
}

TEST_F(ViewportPicking, customPickOfALayerBypassesGLAndPickerDraw) {
    auto* layer = addCachedLayer();
    plugins.answers["layer1.customPick"] = -1;
    plugins.attributeAnswer = GroupAttribute{{"7", IntAttribute(70)}};
    EXPECT_EQ(textOf(layer->getPickedObjects({5, 6, 7, 8}, false, nullptr)), "7=70");
    EXPECT_EQ(journal.take(), Lines{"layer1.customPick 5 6 7 8 0"});
}

TEST_F(ViewportPicking, addPickableObjectWithoutACacheGoesToTheViewport) {
    auto* plain = viewport->addLayer("Recording", "a");
    EXPECT_EQ(plain->addPickableObject(IntAttribute(1)), 0u);
    EXPECT_EQ(plain->addPickableObject(IntAttribute(2)), 1u);
    EXPECT_EQ(viewport->picker->pickableObjects.size(), 2u);
}

TEST_F(ViewportPicking, addPickableObjectWithACacheGoesToTheLayer) {
    auto* cached = addCachedLayer();
    EXPECT_EQ(cached->addPickableObject(IntAttribute(3)), 0u);
    EXPECT_EQ(cached->picker->pickableObjects.size(), 1u);
    EXPECT_TRUE(viewport->picker->pickableObjects.empty());
}

// A layer that draws one id per draw of its image, and counts its images.
class CachedLayerPicking : public ViewportPicking {
protected:
    void SetUp() override {
        ViewportPicking::SetUp();
        layer = addCachedLayer();
        onEntry("layer1.pickerDraw", [&] {
            ++images;
            gl.ids = {static_cast<uint32_t>(layer->addPickableObject(IntAttribute(20 + images)))};
        });
    }
    std::string pickLayer(bool deepPicking = false) {
        return textOf(layer->getPickedObjects({0, 0, 2, 2}, deepPicking, nullptr));
    }

    VlViewportLayerHostStruct* layer = nullptr;
    int images = 0;
};

TEST_F(CachedLayerPicking, drawRendersTheImageCallByCall) {
    gl.boundFramebuffer = 9;
    layer->draw();
    EXPECT_EQ(journal.take(),
              ((Lines{"layer1.draw", "glGetIntegerv DRAW_FRAMEBUFFER_BINDING",
                      "glBindFramebuffer FRAMEBUFFER 4", "glDrawBuffer COLOR_ATTACHMENT0"}) +
               kClears + Lines{"layer1.pickerDraw 0 0 8 4", "glBindFramebuffer FRAMEBUFFER 9"}));
    EXPECT_EQ(plugins.instance("layer1").lastAttribute, GroupAttribute::Empty());
    EXPECT_EQ(layer->picker->pickableObjects.size(), 1u);
}

TEST_F(CachedLayerPicking, pickReadsTheLastDrawCallByCallAndKeepsIt) {
    layer->draw();
    journal.take();
    EXPECT_EQ(pickLayer(), "0=21");
    EXPECT_EQ(
        journal.take(),
        (Lines{"layer1.customPick 0 0 2 2 0", "glViewport 0 0 8 4",
               "glGetIntegerv DRAW_FRAMEBUFFER_BINDING", "glBindFramebuffer FRAMEBUFFER 4",
               "glDrawBuffer COLOR_ATTACHMENT0", "glGetIntegerv VIEWPORT",
               "glReadPixels 0 2 2 2 RGBA UNSIGNED_BYTE", "glBindFramebuffer FRAMEBUFFER 0"}));
    EXPECT_EQ(pickLayer(), "0=21") << "objects survive for the next pick";
    EXPECT_EQ(images, 1);
}

TEST_F(CachedLayerPicking, eachDrawDropsTheObjectsOfTheOneBefore) {
    layer->draw();
    layer->draw();
    EXPECT_EQ(pickLayer(), "0=22");
    EXPECT_EQ(layer->picker->pickableObjects.size(), 1u);
}

TEST_F(CachedLayerPicking, pickBeforeTheFirstDrawIsAValidEmptyGroup) {
    EXPECT_EQ(pickLayer(), "");
    gl.ids = {kBackground};
    EXPECT_EQ(pickLayer(), "");
    EXPECT_EQ(images, 0);
}

TEST_F(CachedLayerPicking, resizeEmptiesTheCache) {
    layer->draw();
    viewport->resize(4, 4);
    EXPECT_EQ(pickLayer(), "");
    layer->draw();
    EXPECT_EQ(pickLayer(), "0=22");
}

TEST_F(CachedLayerPicking, deepPickUsesTheViewportsSurfaceAndLeavesTheCache) {
    layer->draw();
    journal.take();
    onEntry("layer1.pickerDraw", [&] {
        if (images++ == 1) {
            EXPECT_EQ(layer->addPickableObject(IntAttribute(30)), 0u)
                << "ids are those of the surface that is read";
            EXPECT_EQ(viewport->picker->pickableObjects.size(), 1u);
        } else {
            gl.ids = {kBackground};
        }
    });
    EXPECT_EQ(pickLayer(true), "0=30");
    EXPECT_THAT(journal.take(), testing::Contains("glBindFramebuffer FRAMEBUFFER 1"));
    gl.ids = {0};
    EXPECT_EQ(pickLayer(), "0=21");
    EXPECT_EQ(layer->addPickableObject(IntAttribute(1)), 1u) << "and to the layer's again";
}

TEST_F(CachedLayerPicking, exceptionOfPickerDrawInDrawUnbinds) {
    gl.boundFramebuffer = 9;
    onEntry("layer1.pickerDraw", [] { throw std::runtime_error("no shader"); });
    EXPECT_THROW(layer->draw(), std::runtime_error);
    EXPECT_EQ(gl.boundFramebuffer, 9u);
    EXPECT_FALSE(layer->picker->isInUse);
}

TEST_F(CachedLayerPicking, exceptionInADeepPickUnbindsAndDropsTheObjects) {
    onEntry("layer1.pickerDraw", [&] {
        layer->addPickableObject(IntAttribute(1));
        throw std::runtime_error("no shader");
    });
    EXPECT_THROW(pickLayer(true), std::runtime_error);
    EXPECT_EQ(gl.boundFramebuffer, 0u);
    EXPECT_TRUE(viewport->picker->pickableObjects.empty());
    layer->addPickableObject(IntAttribute(2));
    EXPECT_EQ(layer->picker->pickableObjects.size(), 1u);
}

TEST_F(CachedLayerPicking, drawBeforeThereIsASurfaceStillAsksForTheIds) {
    auto other = makeViewport("other");
    plugins.answers["layer2.usesPickingCache"] = 1;
    auto* early = other->addLayer("Recording", "early");
    journal.take();
    early->draw();
    EXPECT_EQ(journal.take(),
              (Lines{"layer2.draw"} + kClears + Lines{"layer2.pickerDraw 0 0 0 0"}));
}

// ---- Calls from within

TEST_F(ViewportPicking, pickWithinPickerDrawIsNullAndDoesNotDisturbThePickUnderWay) {
    gl.boundFramebuffer = 9;
    gl.ids = {0};
    auto* layer = viewport->addLayer("Recording", "a");
    std::string within, layerWithin;
    onEntry("viewport1.pickerDraw", [&] {
        viewport->addPickableObject(IntAttribute(10));
        within = pick();
        layerWithin = textOf(layer->getPickedObjects({0, 0, 1, 1}, true, nullptr));
    });
    EXPECT_EQ(pick(), "0=10");
    EXPECT_EQ(within, "null");
    EXPECT_EQ(layerWithin, "null");
    EXPECT_EQ(gl.boundFramebuffer, 9u);
}

TEST_F(ViewportPicking, customPickMayCombineThePicksOfLayers) {
    auto* plain = viewport->addLayer("Recording", "plain");
    plugins.answers["layer2.usesPickingCache"] = 1;
    auto* cached = viewport->addLayer("Recording", "cached");
    gl.ids = {0};
    onEntry("layer1.pickerDraw", [&] { plain->addPickableObject(IntAttribute(10)); });
    onEntry("layer2.pickerDraw", [&] { cached->addPickableObject(IntAttribute(20)); });
    cached->draw();
    std::string found;
    onEntry("viewport1.customPick", [&] {
        found = textOf(plain->getPickedObjects({0, 0, 1, 1}, false, nullptr)) + " " +
                textOf(cached->getPickedObjects({0, 0, 1, 1}, false, nullptr));
    });
    plugins.answers["viewport1.customPick"] = 1;
    pick();
    EXPECT_EQ(found, "0=10 0=20");
}

TEST_F(CachedLayerPicking, cacheMayBeReadWhileTheViewportPicks) {
    layer->draw();
    std::string within;
    onEntry("viewport1.pickerDraw", [&] {
        viewport->addPickableObject(IntAttribute(10));
        within = pickLayer();
        EXPECT_EQ(gl.boundFramebuffer, 1u) << "the viewport's surface is bound again";
    });
    EXPECT_EQ(pick(), "0=10");
    EXPECT_EQ(within, "0=21");
}

TEST_F(CachedLayerPicking, pickWithinItsOwnImageIsNull) {
    std::string within;
    onEntry("layer1.pickerDraw", [&] { within = pickLayer(); });
    layer->draw();
    EXPECT_EQ(within, "null");
}

TEST_F(CachedLayerPicking, drawWithinItsOwnImageDrawsWithoutIt) {
    onEntry("layer1.pickerDraw", [&] { layer->draw(); });
    journal.take();
    layer->draw();
    const Lines lines = calls();
    EXPECT_EQ(std::ranges::count(lines, "layer1.draw"), 2);
    EXPECT_EQ(std::ranges::count(lines, "layer1.pickerDraw 0 0 8 4"), 1);
}

TEST_F(CachedLayerPicking, layerRemovedInItsDrawDrawsNoIds) {
    onEntry("layer1.draw", [&] { viewport->removeLayerByIndex(0); });
    layer->draw();
    EXPECT_EQ(images, 0);
    EXPECT_EQ(calls(), (Lines{"layer1.draw", "glBindFramebuffer FRAMEBUFFER 0",
                              "glDeleteRenderbuffers 5", "glDeleteRenderbuffers 6",
                              "glDeleteFramebuffers 4", "layer1.cleanup", "layer1.destroy"}));
}

TEST_F(CachedLayerPicking, layerRemovedInItsPickerDrawIsCleanedUpAtOnceAndDeletedAtTheEnd) {
    gl.boundFramebuffer = 9;
    onEntry("layer1.pickerDraw", [&] {
        viewport->removeLayerByIndex(0);
        EXPECT_FALSE(plugins.instance("layer1").isDestroyed);
    });
    layer->draw();
    EXPECT_TRUE(plugins.instance("layer1").isDestroyed);
    EXPECT_EQ(gl.boundFramebuffer, 9u);
}

TEST_F(ViewportPicking, layerRemovedInItsPickIsDeletedWhenThePickReturns) {
    auto* layer = viewport->addLayer("Recording", "a");
    gl.ids = {0};
    onEntry("layer1.pickerDraw", [&] {
        layer->addPickableObject(IntAttribute(10));
        viewport->removeLayer("a");
        EXPECT_FALSE(plugins.instance("layer1").isDestroyed);
    });
    EXPECT_EQ(textOf(layer->getPickedObjects({0, 0, 1, 1}, false, nullptr)), "0=10");
    EXPECT_TRUE(plugins.instance("layer1").isDestroyed);
    EXPECT_TRUE(viewport->picker->pickableObjects.empty());
}

struct RemovalRow {
    const char* entry;
    std::function<void(VlViewportHostStruct&)> pick;
};

class ViewportRemovedWhilePicked : public ViewportPicking,
                                   public testing::WithParamInterface<RemovalRow> {};

TEST_P(ViewportRemovedWhilePicked, isDeletedWhenThePickReturns) {
    viewport->addLayer("Recording", "a");
    VlViewportHostStruct* host = viewport.get();
    const auto watch = host->watch();
    onEntry(GetParam().entry, [&] {
        HostObject::retire(viewport.release());
        EXPECT_FALSE(watch.expired());
    });
    GetParam().pick(*host);
    EXPECT_TRUE(watch.expired());
    EXPECT_EQ(gl.boundFramebuffer, 0u);
}

void pickViewport(VlViewportHostStruct& viewport) {
    EXPECT_EQ(textOf(viewport.getPickedObjects({0, 0, 1, 1}, true, nullptr)), "");
}
void pickLayer(VlViewportHostStruct& viewport) {
    EXPECT_EQ(textOf(viewport.layers[0]->getPickedObjects({0, 0, 1, 1}, true, nullptr)), "");
}

INSTANTIATE_TEST_SUITE_P(Entries, ViewportRemovedWhilePicked,
                         testing::Values(RemovalRow{"viewport1.customPick", pickViewport},
                                         RemovalRow{"viewport1.pickerDraw", pickViewport},
                                         RemovalRow{"layer1.customPick", pickLayer},
                                         RemovalRow{"layer1.pickerDraw", pickLayer}),
                         [](const auto& row) {
                             std::string name = row.param.entry;
                             name.erase(name.find('.'), 1);
                             return name;
                         });

TEST_F(ViewportPicking, resizeInPickerDrawEndsThePickWithNothing) {
    gl.ids = {0};
    onEntry("viewport1.pickerDraw", [&] {
        viewport->resize(3, 3);
        // What is bound now is the window, whose pixels are no ids.
        viewport->addPickableObject(IntAttribute(10));
    });
    EXPECT_EQ(pick(), "");
    EXPECT_THAT(journal.take(),
                testing::Not(testing::Contains(testing::StartsWith("glReadPixels"))));
    plugins.hooks.clear();
    EXPECT_EQ(pick(), "");
}

// ---- Through the tables

TEST_F(ViewportPicking, tablesPassObjectsRegionAndDepthAndHandOverTheResult) {
    const ViewportHostSuite& suite = *getViewportHostSuite();
    const ViewportLayerHostSuite& layerSuite = *getViewportLayerHostSuite();
    auto* layer = viewport->addLayer("Recording", "a");
    gl.ids = {1};
    gl.depth = 0.5f;
    const IntAttribute object(10);
    const auto addTwo = [&object](auto add) {
        EXPECT_EQ(add(nullptr), 0u);
        EXPECT_EQ(add(object.getHandle()), 1u) << "the reference stays the caller's";
    };
    onEntry("viewport1.pickerDraw", [&] {
        addTwo([&](VlAttributeStruct* handle) {
            return suite.addPickableObject(viewport.get(), handle);
        });
    });
    onEntry("layer1.pickerDraw", [&] {
        addTwo(
            [&](VlAttributeStruct* handle) { return layerSuite.addPickableObject(layer, handle); });
    });
    for (const bool isLayer : {false, true}) {
        float depth = 0.0f;
        VlAttributeStruct* handle =
            isLayer ? layerSuite.getPickedObjects(layer, 2, 1, 1, 1, 0, &depth)
                    : suite.getPickedObjects(viewport.get(), 2, 1, 1, 1, 0, &depth);
        EXPECT_EQ(textOf(GroupAttribute(Attribute::CreateAndSteal(handle))), "1=10");
        EXPECT_EQ(depth, 0.5f);
    }
}

TEST_F(ViewportPicking, tablesAnswerANullHandleForAnInvalidGroup) {
    plugins.answers["viewport1.customPick"] = plugins.answers["layer1.customPick"] = 1;
    auto* layer = viewport->addLayer("Recording", "a");
    EXPECT_EQ(getViewportHostSuite()->getPickedObjects(viewport.get(), 0, 0, 1, 1, 7, nullptr),
              nullptr);
    EXPECT_EQ(getViewportLayerHostSuite()->getPickedObjects(layer, 0, 0, 1, 1, -7, nullptr),
              nullptr);
    EXPECT_THAT(journal.take(), testing::IsSupersetOf({"viewport1.customPick 0 0 1 1 1",
                                                       "layer1.customPick 0 0 1 1 1"}))
        << "deepPicking is reduced to a bool";
}

TEST_F(CachedLayerPicking, layerTableReadsTheImageOfTheLastDraw) {
    layer->draw();
    VlAttributeStruct* handle =
        getViewportLayerHostSuite()->getPickedObjects(layer, 0, 0, 2, 2, 0, nullptr);
    EXPECT_EQ(textOf(GroupAttribute(Attribute::CreateAndSteal(handle))), "0=21");
    EXPECT_EQ(images, 1);
}

} // namespace
} // namespace ViewerAPI::test
