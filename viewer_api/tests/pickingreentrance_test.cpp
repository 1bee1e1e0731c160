// Picks, draws, removals and resizes from within a pick.

#include "support/pickingtest.h"

#include "VlAttribute/IntAttribute.h"

#include <algorithm>
#include <string>

namespace ViewerAPI::test {
namespace {

using VlAttribute::IntAttribute;

using PickingReentrance = PickingTest;
using CachedPickingReentrance = CachedPickingTest;

TEST_F(PickingReentrance, pickWithinPickerDrawIsNullAndDoesNotDisturbThePickUnderWay) {
    gl.boundFramebuffer = 9;
    gl.ids = {0};
    auto* layer = viewport->addLayer("Recording", "a");
    std::string within, layerWithin;
    onEntry("viewport1.pickerDraw", [&] {
        viewport->addPickableObject(IntAttribute(10));
        within = pick();
        layerWithin = pickedText(layer->getPickedObjects({0, 0, 1, 1}, true, nullptr));
    });
    EXPECT_EQ(pick(), "0=10");
    EXPECT_EQ(within, "null");
    EXPECT_EQ(layerWithin, "null");
    EXPECT_EQ(gl.boundFramebuffer, 9u);
}

TEST_F(PickingReentrance, customPickMayCombineThePicksOfLayers) {
    auto* plain = viewport->addLayer("Recording", "plain");
    plugins.answers["layer2.usesPickingCache"] = 1;
    auto* cached = viewport->addLayer("Recording", "cached");
    gl.ids = {0};
    onEntry("layer1.pickerDraw", [&] { plain->addPickableObject(IntAttribute(10)); });
    onEntry("layer2.pickerDraw", [&] { cached->addPickableObject(IntAttribute(20)); });
    cached->draw();
    std::string found;
    onEntry("viewport1.customPick", [&] {
        found = pickedText(plain->getPickedObjects({0, 0, 1, 1}, false, nullptr)) + " " +
                pickedText(cached->getPickedObjects({0, 0, 1, 1}, false, nullptr));
    });
    plugins.answers["viewport1.customPick"] = 1;
    pick();
    EXPECT_EQ(found, "0=10 0=20");
}

TEST_F(CachedPickingReentrance, cacheMayBeReadWhileTheViewportPicks) {
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

TEST_F(CachedPickingReentrance, pickWithinItsOwnImageIsNull) {
    std::string within;
    onEntry("layer1.pickerDraw", [&] { within = pickLayer(); });
    layer->draw();
    EXPECT_EQ(within, "null");
}

TEST_F(CachedPickingReentrance, drawWithinItsOwnImageDrawsWithoutIt) {
    onEntry("layer1.pickerDraw", [&] { layer->draw(); });
    journal.take();
    layer->draw();
    const Lines lines = calls();
    EXPECT_EQ(std::ranges::count(lines, "layer1.draw"), 2);
    EXPECT_EQ(std::ranges::count(lines, "layer1.pickerDraw 0 0 8 4"), 1);
}

TEST_F(CachedPickingReentrance, layerRemovedInItsDrawDrawsNoIds) {
    onEntry("layer1.draw", [&] { viewport->removeLayerByIndex(0); });
    layer->draw();
    EXPECT_EQ(images, 0);
    EXPECT_EQ(calls(), (Lines{"layer1.draw", "glBindFramebuffer FRAMEBUFFER 0",
                              "glDeleteRenderbuffers 5", "glDeleteRenderbuffers 6",
                              "glDeleteFramebuffers 4", "layer1.cleanup", "layer1.destroy"}));
}

TEST_F(CachedPickingReentrance, layerRemovedInItsPickerDrawIsCleanedUpAtOnceAndDeletedAtTheEnd) {
    gl.boundFramebuffer = 9;
    onEntry("layer1.pickerDraw", [&] {
        viewport->removeLayerByIndex(0);
        EXPECT_FALSE(plugins.instance("layer1").isDestroyed);
    });
    layer->draw();
    EXPECT_TRUE(plugins.instance("layer1").isDestroyed);
    EXPECT_EQ(gl.boundFramebuffer, 9u);
}

TEST_F(PickingReentrance, layerRemovedInItsPickIsDeletedWhenThePickReturns) {
    auto* layer = viewport->addLayer("Recording", "a");
    gl.ids = {0};
    onEntry("layer1.pickerDraw", [&] {
        layer->addPickableObject(IntAttribute(10));
        viewport->removeLayer("a");
        EXPECT_FALSE(plugins.instance("layer1").isDestroyed);
    });
    EXPECT_EQ(pickedText(layer->getPickedObjects({0, 0, 1, 1}, false, nullptr)), "0=10");
    EXPECT_TRUE(plugins.instance("layer1").isDestroyed);
    EXPECT_TRUE(viewport->picker->pickableObjects.empty());
}

struct RemovalRow {
    const char* entry;
    std::function<void(VlViewportHostStruct&)> pick;
};

class ViewportRemovedWhilePicked : public PickingTest,
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
    EXPECT_EQ(pickedText(viewport.getPickedObjects({0, 0, 1, 1}, true, nullptr)), "");
}
void pickLayer(VlViewportHostStruct& viewport) {
    EXPECT_EQ(pickedText(viewport.layers[0]->getPickedObjects({0, 0, 1, 1}, true, nullptr)), "");
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

TEST_F(PickingReentrance, resizeInPickerDrawEndsThePickWithNothing) {
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
} // namespace
} // namespace ViewerAPI::test
