#include "support/fakescene.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

// What mouse and keys do in a viewport: events into the plug-in, cameras and selections out of it.
namespace {

using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;
using Strings = std::vector<std::string>;

constexpr int kWidth = 200;
constexpr int kHeight = 100;

class Interaction : public testing::Test {
protected:
    bool mouse(const char* type, int x, int y, const char* button, const Strings& modifiers = {},
               const Strings& held = {}) {
        VlAttribute::GroupBuilder builder;
        builder.set("type", StringAttribute(type));
        builder.set("x", IntAttribute(x));
        builder.set("y", IntAttribute(y));
        builder.set("button", StringAttribute(button));
        builder.set("buttons", StringAttribute(held));
        builder.set("modifiers", StringAttribute(modifiers));
        return send(builder.build());
    }
    bool wheel(int x, int y, float delta) {
        return send({{"type", StringAttribute("wheel")},
                     {"x", IntAttribute(x)},
                     {"y", IntAttribute(y)},
                     {"delta", FloatAttribute(delta)}});
    }
    bool key(const char* name, const Strings& modifiers = {}) {
        return send({{"type", StringAttribute("keyPress")},
                     {"key", StringAttribute(name)},
                     {"modifiers", StringAttribute(modifiers)}});
    }
    bool send(const GroupAttribute& event) {
        return viewport.suite->event(viewport.instance, event.getHandle()) != 0;
    }
    void drag(const char* button, int dx, int dy, const Strings& modifiers = {}) {
        mouse("mousePress", 100, 50, button, modifiers);
        for (int step = 1; step <= 10; ++step) {
            mouse("mouseMove", 100 + dx * step / 10, 50 + dy * step / 10, "", modifiers, {button});
        }
        mouse("mouseRelease", 100 + dx, 50 + dy, button, modifiers);
    }
    void click(const Strings& picked, const Strings& modifiers = {}) {
        VlAttribute::GroupBuilder builder;
        for (std::size_t i = 0; i < picked.size(); ++i) {
            builder.set(std::to_string(i), StringAttribute(picked[i]));
        }
        viewport.picked = builder.build();
        mouse("mousePress", 30, 40, "left", modifiers);
        mouse("mouseRelease", 31, 39, "left", modifiers);
    }
    Imath::V3d eye() const { return camera.view.inverse().translation(); }
    /// Pixels from the top left at which the camera sees a point.
    Imath::V2d pixelOf(const Imath::V3d& point) const {
        const Imath::V3d clip = point * camera.view * camera.projection;
        return {(clip.x + 1) / 2 * kWidth, (1 - clip.y) / 2 * kHeight};
    }
    /// What the camera sees at a pixel, at this depth.
    Imath::V3d pointAt(int x, int y, double depth) const {
        const Imath::V3d inCamera(depth * (2.0 * x / kWidth - 1) / camera.projection[0][0],
                                  depth * (1 - 2.0 * y / kHeight) / camera.projection[1][1],
                                  -depth);
        return inCamera * camera.view.inverse();
    }

    FakeScene scene;
    FakeViewport& viewport = scene.addViewport(kWidth, kHeight);
    FakeCamera& camera = scene.addCamera(viewport, {0, 0, 20});
    Strings& selection = scene.delegate.selection;
};

TEST_F(Interaction, leftDragOrbitsSoThatTheSceneFollowsTheMouse) {
    drag("left", 50, 0);
    // Half the height is a quarter turn: the camera goes left.
    EXPECT_NEAR((eye() - Imath::V3d(-20, 0, 0)).length(), 0.0, 1e-9);
    drag("left", 0, 25);
    EXPECT_NEAR(eye().y, 20 * std::sin(M_PI / 4), 1e-9);
    EXPECT_TRUE(viewport.dirty);
    EXPECT_EQ(scene.delegate.selectionsTold, 0);
}

TEST_F(Interaction, middleDragAndShiftDragPanWithTheMouse) {
    for (const auto& [button, modifiers] :
         {std::pair<const char*, Strings>("middle", {}), {"left", {"shift"}}}) {
        const Imath::V3d held = pointAt(100, 50, camera.centerOfInterest);
        drag(button, 40, -30, modifiers);
        EXPECT_NEAR(pixelOf(held).x, 140, 1e-9) << button;
        EXPECT_NEAR(pixelOf(held).y, 20, 1e-9) << button;
    }
    EXPECT_EQ(scene.delegate.selectionsTold, 0);
}

TEST_F(Interaction, rightDragComesNearerAndBack) {
    drag("right", 100, 0);
    EXPECT_NEAR(camera.centerOfInterest, 20 / 8.0, 1e-9);
    EXPECT_NEAR(eye().z, 20 / 8.0, 1e-9);
    drag("right", 0, 100);
    EXPECT_NEAR(camera.centerOfInterest, 20, 1e-9);
}

TEST_F(Interaction, wheelKeepsWhatIsUnderTheCursorThere) {
    for (const double depth : {5.0, 20.0, 300.0}) {
        const Imath::V3d held = pointAt(170, 20, depth);
        EXPECT_TRUE(wheel(170, 20, 2.0f));
        EXPECT_NEAR(pixelOf(held).x, 170, 1e-6);
        EXPECT_NEAR(pixelOf(held).y, 20, 1e-6);
    }
    EXPECT_LT(camera.centerOfInterest, 20);
}

TEST_F(Interaction, fFramesTheSelectionOrElseEverything) {
    scene.delegate.extent = {4, 6, 9, 11, -1, 1};
    EXPECT_TRUE(key("f"));
    EXPECT_EQ(scene.delegate.extentPaths, Strings{"/root"});
    EXPECT_NEAR(pixelOf({5, 10, 0}).x, kWidth / 2.0, 1e-6);
    EXPECT_NEAR(pixelOf({5, 10, 0}).y, kHeight / 2.0, 1e-6);
    selection = {"/root/a", "/root/b"};
    EXPECT_TRUE(key("f"));
    EXPECT_EQ(scene.delegate.extentPaths, selection);
}

TEST_F(Interaction, framingNothingLeavesTheCameraAlone) {
    for (const std::vector<double>& extent :
         {std::vector<double>{}, {1, -1, 0, 1, 0, 1}, {0, 1e308, 0, 1, 0, 1}}) {
        scene.delegate.extent = extent;
        EXPECT_TRUE(key("f"));
        EXPECT_EQ(eye(), Imath::V3d(0, 0, 20));
    }
}

TEST_F(Interaction, otherKeysAreLeftToTheWindow) {
    scene.delegate.extent = {4, 6, 9, 11, -1, 1};
    EXPECT_FALSE(key("q"));
    EXPECT_FALSE(key("f", {"control"}));
    EXPECT_FALSE(send({{"type", StringAttribute("keyRelease")}, {"key", StringAttribute("f")}}));
    EXPECT_EQ(eye(), Imath::V3d(0, 0, 20));
}

TEST_F(Interaction, cameraWhoseInteractionIsDisabledStaysButClicksSelect) {
    camera.interactionDisabled = true;
    scene.delegate.extent = {4, 6, 9, 11, -1, 1};
    const Imath::M44d before = camera.view;
    drag("left", 50, 10);
    drag("middle", 50, 10);
    drag("right", 50, 10);
    wheel(10, 10, 3.0f);
    key("f");
    EXPECT_EQ(camera.view, before);
    EXPECT_EQ(camera.centerOfInterest, 20);
    click({"/root/a"});
    EXPECT_EQ(selection, Strings{"/root/a"});
}

TEST_F(Interaction, survivesAViewportWithoutACamera) {
    viewport.activeCamera = nullptr;
    scene.delegate.extent = {4, 6, 9, 11, -1, 1};
    drag("left", 50, 10);
    wheel(10, 10, 3.0f);
    EXPECT_TRUE(key("f"));
}

TEST_F(Interaction, cameraWithoutACentreOfInterestMovesAllTheSame) {
    camera.centerOfInterest = 0.0;
    EXPECT_TRUE(wheel(10, 10, 1.0f));
    EXPECT_LT(eye().z, 20);
    EXPECT_GT(camera.centerOfInterest, 0.0);
}

TEST_F(Interaction, pictureZoomedToNothingLeavesTheCameraAlone) {
    const Imath::M44d before = camera.view;
    camera.projection[0][0] = camera.projection[1][1] = 0.0;
    drag("middle", 30, 30);
    wheel(10, 10, 1.0f);
    EXPECT_EQ(camera.view, before);
}

TEST_F(Interaction, clickSelectsWhatIsThere) {
    click({"/root/a"});
    EXPECT_EQ(selection, Strings{"/root/a"});
    EXPECT_EQ(viewport.pickedRegion, (std::array<int, 4>{30, 40, 1, 1}));
    EXPECT_TRUE(viewport.dirty) << "a pick spoils the window's picture";
    click({"/root/b"});
    EXPECT_EQ(selection, Strings{"/root/b"});
    EXPECT_EQ(eye(), Imath::V3d(0, 0, 20)) << "a hand that shakes moves no camera";
}

TEST_F(Interaction, clickOnNothingClearsTheSelectionUnlessItAdds) {
    selection = {"/root/a"};
    click({}, {"shift"});
    EXPECT_EQ(selection, Strings{"/root/a"});
    click({}, {"control"});
    EXPECT_EQ(selection, Strings{"/root/a"});
    click({});
    EXPECT_EQ(selection, Strings{});
}

TEST_F(Interaction, shiftAddsAndControlToggles) {
    click({"/root/a"});
    click({"/root/b"}, {"shift"});
    EXPECT_EQ(selection, (Strings{"/root/a", "/root/b"}));
    click({"/root/a"}, {"shift"});
    EXPECT_EQ(selection, (Strings{"/root/a", "/root/b"}));
    click({"/root/a"}, {"control"});
    EXPECT_EQ(selection, Strings{"/root/b"});
    click({"/root/c"}, {"control"});
    EXPECT_EQ(selection, (Strings{"/root/b", "/root/c"}));
}

TEST_F(Interaction, sameSelectionIsNotToldAgain) {
    click({"/root/a"});
    click({"/root/a"});
    EXPECT_EQ(scene.delegate.selectionsTold, 1);
}

TEST_F(Interaction, clickOnAGeneratedLocationSelectsWhatItStandsFor) {
    click({"/root/a/__VlOst_bbox"});
    EXPECT_EQ(selection, Strings{"/root/a"});
}

TEST_F(Interaction, rightAndMiddleClicksSelectNothing) {
    mouse("mousePress", 30, 40, "right");
    mouse("mouseRelease", 30, 40, "right");
    mouse("mousePress", 30, 40, "middle");
    mouse("mouseRelease", 30, 40, "middle");
    EXPECT_EQ(viewport.pickedRegion, (std::array<int, 4>{}));
}

TEST_F(Interaction, controlDragSelectsWhatIsInTheRectangle) {
    viewport.picked = {{"1", StringAttribute("/root/a")}, {"2", StringAttribute("/root/b")}};
    drag("left", -60, 30, {"control"});
    EXPECT_EQ(viewport.pickedRegion, (std::array<int, 4>{40, 50, 61, 31}));
    EXPECT_EQ(selection, (Strings{"/root/a", "/root/b"}));
    EXPECT_EQ(eye(), Imath::V3d(0, 0, 20));
    // Beyond the window nothing can be picked.
    drag("left", 500, 500, {"control", "shift"});
    EXPECT_EQ(viewport.pickedRegion, (std::array<int, 4>{100, 50, 100, 50}));
}

TEST_F(Interaction, onlyTheButtonThatBeganADragEndsIt) {
    mouse("mousePress", 100, 50, "middle");
    mouse("mousePress", 100, 50, "left");
    mouse("mouseRelease", 100, 50, "left");
    EXPECT_EQ(scene.delegate.selectionsTold, 0);
    const Imath::V3d held = pointAt(100, 50, 20);
    EXPECT_TRUE(mouse("mouseMove", 150, 50, "", {}, {"middle"}));
    EXPECT_NEAR(pixelOf(held).x, 150, 1e-9);
    EXPECT_TRUE(mouse("mouseRelease", 150, 50, "middle"));
    EXPECT_FALSE(mouse("mouseMove", 10, 10, ""));
    EXPECT_FALSE(mouse("mouseRelease", 10, 10, "left"));
    EXPECT_NEAR(pixelOf(held).x, 150, 1e-9);
}

TEST_F(Interaction, dragWhoseEndNobodyToldIsOver) {
    drag("left", 50, 0);
    const Imath::M44d before = camera.view;
    mouse("mousePress", 100, 50, "left");
    EXPECT_FALSE(mouse("mouseMove", 10, 10, "", {}, {"right"}));
    EXPECT_FALSE(mouse("mouseMove", 90, 90, "", {}, {"left"}));
    EXPECT_EQ(camera.view, before);
    mouse("mousePress", 100, 50, "left");
    mouse("mousePress", 20, 20, "left");
    viewport.picked = {{"1", StringAttribute("/root/a")}};
    mouse("mouseRelease", 20, 20, "left");
    EXPECT_EQ(viewport.pickedRegion, (std::array<int, 4>{20, 20, 1, 1})) << "a click at the second";
}

TEST_F(Interaction, eventsThatAreNoneAreLeftAlone) {
    EXPECT_FALSE(send({{"type", StringAttribute("gesture")}}));
    EXPECT_FALSE(send(GroupAttribute::Empty()));
    EXPECT_EQ(viewport.suite->event(viewport.instance, nullptr), 0);
}

/// Layers that note what reaches them, and take what they are told to.
class InteractionLayers : public Interaction {
protected:
    static inline Strings told;
    static inline std::string taker;

    InteractionLayers() {
        told.clear();
        taker.clear();
        addLayer<'a'>();
        addLayer<'b'>();
    }

    template <char Name>
    void addLayer() {
        static ViewportLayerPluginSuite suite{};
        suite.destroy = [](void*) {};
        suite.event = [](void*, VlAttributeStruct* event) -> int {
            const auto released = VlAttribute::Attribute::CreateAndSteal(event);
            told.push_back(std::string(1, Name));
            return taker == told.back();
        };
        suite.hover = [](void*, int isHovering, int x, int y) {
            told.push_back(Name + std::to_string(isHovering) + std::to_string(x) +
                           std::to_string(y));
        };
        viewport.layers.push_back(std::make_unique<FakeLayer>());
        viewport.layers.back()->viewport = &viewport;
        viewport.layers.back()->suite = &suite;
    }
};

TEST_F(InteractionLayers, areAskedFromTheLastUntilOneTakesTheEvent) {
    EXPECT_TRUE(wheel(1, 1, 1.0f));
    EXPECT_EQ(told, (Strings{"b", "a"}));
    EXPECT_LT(camera.centerOfInterest, 20);
    const double before = camera.centerOfInterest;
    told.clear();
    taker = "b";
    EXPECT_TRUE(wheel(1, 1, 1.0f));
    EXPECT_EQ(told, Strings{"b"});
    EXPECT_EQ(camera.centerOfInterest, before);
}

TEST_F(InteractionLayers, getEventsOfOtherShapesToo) {
    taker = "a";
    EXPECT_TRUE(send({{"type", StringAttribute("gesture")}}));
    EXPECT_EQ(told, (Strings{"b", "a"}));
}

TEST_F(InteractionLayers, hearOfHoveringFromTheLastToTheFirst) {
    viewport.suite->hover(viewport.instance, 1, 3, 4);
    viewport.suite->hover(viewport.instance, 0, 0, 0);
    EXPECT_EQ(told, (Strings{"b134", "a134", "b000", "a000"}));
}

} // namespace
