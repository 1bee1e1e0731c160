// Picks of layers, with a cache of ids and without: what is bound and cleared, what is found.

#include "suites/viewportlayerhostsuite.h"
#include "support/pickingtest.h"

#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/IntAttribute.h"

#include <algorithm>
#include <stdexcept>

namespace ViewerAPI::test {
namespace {

using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;

using LayerPicking = PickingTest;
using CachedLayerPicking = CachedPickingTest;

// ---- Set-up and size

TEST_F(LayerPicking, layerWithACacheSetsUpItsSurfaceBeforeItsPlugin) {
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

TEST_F(LayerPicking, resizeReachesTheSurfaceOfEachLayerBeforeItsPlugin) {
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

TEST_F(LayerPicking, layerWithoutACacheHasNoSurface) {
    EXPECT_EQ(viewport->addLayer("Recording", "a")->picker, nullptr);
    EXPECT_NE(addCachedLayer()->picker, nullptr);
}

TEST_F(LayerPicking, usesPickingCacheIsAskedOnceAfterCreate) {
    auto other = makeViewport("other");
    journal.take();
    auto* layer = other->addLayer("Recording", "a");
    layer->draw();
    EXPECT_EQ(journal.take(), (Lines{"layer1.create", "layer1.usesPickingCache", "layer1.draw"}));
}

TEST_F(LayerPicking, usesPickingCacheThatThrowsDestroysTheInstance) {
    onEntry("layer1.usesPickingCache", [] { throw std::runtime_error("undecided"); });
    EXPECT_THROW(viewport->addLayer("Recording", "a"), std::runtime_error);
    EXPECT_TRUE(plugins.instance("layer1").isDestroyed);
    EXPECT_EQ(viewport->getNumberOfLayers(), 0u);
}

// ---- Without a cache

TEST_F(LayerPicking, layerWithoutACachePicksOnTheViewportsSurfaceCallByCall) {
    auto* layer = viewport->addLayer("Recording", "a");
    journal.take();
    gl.ids = {0};
    onEntry("layer1.pickerDraw", [&] {
        EXPECT_EQ(layer->addPickableObject(IntAttribute(10)), 0u);
        EXPECT_EQ(viewport->picker->pickableObjects.size(), 1u);
    });
    EXPECT_EQ(pickedText(layer->getPickedObjects({1, 0, 3, 2}, false, nullptr)), "0=10");
    EXPECT_EQ(journal.take(),
              ((Lines{"layer1.customPick 1 0 3 2 0", "glViewport 0 0 8 4",
                      "glGetIntegerv DRAW_FRAMEBUFFER_BINDING", "glBindFramebuffer FRAMEBUFFER 1",
                      "glDrawBuffer COLOR_ATTACHMENT0"}) +
               kClears +
               Lines{"layer1.pickerDraw 1 0 3 2", "glGetIntegerv VIEWPORT",
                     "glReadPixels 1 2 3 2 RGBA UNSIGNED_BYTE", "glBindFramebuffer FRAMEBUFFER 0"} +
               kClears));
}

TEST_F(LayerPicking, customPickOfALayerBypassesGLAndPickerDraw) {
    auto* layer = addCachedLayer();
    plugins.answers["layer1.customPick"] = -1;
    plugins.attributeAnswer = GroupAttribute{{"7", IntAttribute(70)}};
    EXPECT_EQ(pickedText(layer->getPickedObjects({5, 6, 7, 8}, false, nullptr)), "7=70");
    EXPECT_EQ(journal.take(), Lines{"layer1.customPick 5 6 7 8 0"});
}

TEST_F(LayerPicking, addPickableObjectWithoutACacheGoesToTheViewport) {
    auto* plain = viewport->addLayer("Recording", "a");
    EXPECT_EQ(plain->addPickableObject(IntAttribute(1)), 0u);
    EXPECT_EQ(plain->addPickableObject(IntAttribute(2)), 1u);
    EXPECT_EQ(viewport->picker->pickableObjects.size(), 2u);
}

TEST_F(LayerPicking, addPickableObjectWithACacheGoesToTheLayer) {
    auto* cached = addCachedLayer();
    EXPECT_EQ(cached->addPickableObject(IntAttribute(3)), 0u);
    EXPECT_EQ(cached->picker->pickableObjects.size(), 1u);
    EXPECT_TRUE(viewport->picker->pickableObjects.empty());
}

// ---- With one

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

TEST_F(CachedLayerPicking, layerTableReadsTheImageOfTheLastDraw) {
    layer->draw();
    VlAttributeStruct* handle =
        getViewportLayerHostSuite()->getPickedObjects(layer, 0, 0, 2, 2, 0, nullptr);
    EXPECT_EQ(pickedText(GroupAttribute(Attribute::CreateAndSteal(handle))), "0=21");
    EXPECT_EQ(images, 1);
}

} // namespace
} // namespace ViewerAPI::test
