// Picks of viewports: who is asked, what is bound and cleared, what is found.

#include "suites/viewporthostsuite.h"
#include "suites/viewportlayerhostsuite.h"
#include "support/pickingtest.h"

#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/IntAttribute.h"

#include <stdexcept>

namespace ViewerAPI::test {
namespace {

using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;

using ViewportPicking = PickingTest;

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
    EXPECT_EQ(pickedText(viewport->getPickedObjects({5, 6, 1, 1}, true, &depth)), "7=70");
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
    EXPECT_EQ(pickedText(viewport->getPickedObjects({0, 0, 1, 1}, false, &depth)), "");
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
    EXPECT_EQ(pickedText(other->getPickedObjects({0, 0, 1, 1}, true, nullptr)), "");
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
class DeepPicking : public PickingTest {
protected:
    void showNearest(const std::string& instance, const std::function<void()>& registerObjects) {
        plugins.hooks[instance + ".pickerDraw"] = [this, registerObjects](auto& plugin) {
            excluded.push_back(GroupAttribute(plugin.lastAttribute));
            if (excluded.size() == 1) {
                registerObjects();
            }
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
        for (const int value : {10, 11, 12}) {
            viewport->addPickableObject(IntAttribute(value));
        }
    });
    float depth = 0.0f;
    EXPECT_EQ(pickedText(viewport->getPickedObjects({0, 0, 1, 1}, true, &depth)), "0=10 1=11 2=12");
    EXPECT_EQ(depth, 1.0f) << "of the last pass, which was empty";
    ASSERT_EQ(excluded.size(), 4u);
    EXPECT_EQ(pickedText(excluded[0]), "");
    EXPECT_EQ(pickedText(excluded[1]), "0=10");
    EXPECT_EQ(pickedText(excluded[2]), "0=10 1=11");
    EXPECT_EQ(pickedText(excluded[3]), "0=10 1=11 2=12");
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
        if (passes++ == 0) {
            viewport->addPickableObject(IntAttribute(10));
        }
    });
    gl.ids = {0};
    EXPECT_EQ(pickedText(viewport->getPickedObjects({0, 0, 2, 1}, true, nullptr)), "0=10");
    EXPECT_EQ(passes, 100);
}

TEST_F(DeepPicking, eachPassClearsTheImageAndKeepsTheObjects) {
    showNearest("viewport1", [&] { viewport->addPickableObject(IntAttribute(10)); });
    EXPECT_EQ(pickedText(viewport->getPickedObjects({0, 0, 1, 1}, true, nullptr)), "0=10");
    const Lines lines = calls();
    EXPECT_EQ(std::ranges::count(lines, "glBindFramebuffer FRAMEBUFFER 1"), 1);
    EXPECT_EQ(std::ranges::count(lines, "glClear COLOR"), 3) << "two passes and the window";
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
        EXPECT_EQ(pickedText(GroupAttribute(Attribute::CreateAndSteal(handle))), "1=10");
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

} // namespace
} // namespace ViewerAPI::test
