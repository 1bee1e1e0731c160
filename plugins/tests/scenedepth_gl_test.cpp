#include "support/geometries.h"
#include "support/gltest.h"

#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"
#include "gl/renderer.h"

#include <cstdlib>
#include <utility>

// Near and far: scenes of any size are seen whole, and what is in front hides what is behind. Needs
// an OpenGL context; skipped where none can be made.
namespace {

using VlAttribute::Attribute;
using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

class SceneDepthGL : public SceneGLTest {
protected:
    FakeViewport& addView(const Imath::V3d& eye) {
        FakeViewport& viewport = scene.addViewport(kSize, kSize);
        FakeCamera& camera = scene.addCamera(viewport, eye);
        camera.centerOfInterest = eye.length();
        scene.addLayer(viewport, "MeshLayer");
        return viewport;
    }
    /// Two cubes, the red one in front of the green one, and above, by a thousandth of its size.
    void tellCubes(double scale) {
        const auto edge = static_cast<float>(2.0 * scale);
        scene.tell("/root/red", cubeLocation(edge, paint(1, 0, 0)));
        scene.tell("/root/green", cubeLocation(edge, paint(0, 1, 0)),
                   translation(0.5 * scale, -0.002 * scale, -0.002 * scale));
    }
};

TEST_F(SceneDepthGL, picturesOfAllSizesAgree) {
    tellCubes(1.0);
    const Pixels wanted = draw(addView({1, 2, 6}));
    EXPECT_GT(wanted.at(kMiddle, kMiddle)[0], 2 * wanted.at(kMiddle, kMiddle)[1]);
    for (const double scale : {1e-4, 1e-2, 1e2, 1e4, 1e7}) {
        tellCubes(scale);
        const Pixels pixels = draw(addView(Imath::V3d(1, 2, 6) * scale));
        int different = 0;
        for (int y = 0; y < kSize; ++y) {
            for (int x = 0; x < kSize; ++x) {
                different += std::abs(pixels.brightness(x, y) - wanted.brightness(x, y)) > 24;
            }
        }
        EXPECT_LT(different, kSize * kSize / 200) << "at " << scale;
    }
}

TEST_F(SceneDepthGL, nothingIsCutOffWhenTheCameraComesCloseOrGoesFar) {
    tellCubes(1.0);
    for (const double distance : {1.01, 1.1, 2.0, 30.0}) {
        const auto middle = draw(addView({0, 0, distance})).at(kMiddle, kMiddle);
        EXPECT_GT(middle[0], 2 * middle[1]) << "from " << distance;
    }
}

TEST_F(SceneDepthGL, planesOfALocationHold) {
    tellCubes(1.0);
    FakeViewport& viewport = addView({0, 0, 6});
    const Pixels whole = draw(viewport);
    viewport.activeCamera->locationPath = "/root/cam";
    EXPECT_EQ(draw(viewport), whole);
    const auto near = [](double nearPlane, double farPlane) {
        return GroupAttribute{{"geometry", GroupAttribute{{"near", DoubleAttribute(nearPlane)},
                                                          {"far", DoubleAttribute(farPlane)}}}};
    };
    // Cuts both cubes away.
    scene.delegate.attributes = near(20.0, 30.0);
    const auto behind = draw(viewport).at(kMiddle, kMiddle);
    EXPECT_LT(behind[0], 2 * behind[1]);
    scene.delegate.attributes = near(0.5, 30.0);
    EXPECT_GT(draw(viewport).at(kMiddle, kMiddle)[0], 2 * whole.at(kMiddle, kMiddle)[1]);
    // What no projection can have counts for nothing.
    for (const auto& [nearPlane, farPlane] : {std::pair(0.0, 10.0), std::pair(5.0, 5.0)}) {
        scene.delegate.attributes = near(nearPlane, farPlane);
        EXPECT_EQ(draw(viewport), whole);
    }
}

TEST_F(SceneDepthGL, projectionThatFitsIsNotSetAgain) {
    tellCubes(1.0);
    FakeViewport& viewport = addView({0, 0, 6});
    draw(viewport);
    const int before = viewport.activeCamera->projectionsSet;
    draw(viewport);
    EXPECT_EQ(viewport.activeCamera->projectionsSet, before);
}

TEST_F(SceneDepthGL, viewportTellsWhetherDraftsAreWorthWhile) {
    FakeViewport& viewport = addView({0, 0, 6});
    const auto option = [&] {
        return IntAttribute(Attribute::CreateAndSteal(viewport.suite->getOption(
                                viewport.instance, ViewerPlugin::optionId("isSoftwareRenderer"))))
            .getValue(-1);
    };
    EXPECT_EQ(option(), 0) << "nobody knows before setup";
    viewport.suite->setup(viewport.instance);
    EXPECT_EQ(option(), Bundled::isSoftwareRenderer() ? 1 : 0);
}

TEST_F(SceneDepthGL, rectangleOfASelectionIsSeenWhileItIsDrawnUp) {
    FakeViewport& viewport = addView({0, 0, 6});
    const Pixels before = draw(viewport);
    const auto mouse = [&](const char* type, int x, int y) {
        const GroupAttribute event{{"type", StringAttribute(type)},
                                   {"x", IntAttribute(x)},
                                   {"y", IntAttribute(y)},
                                   {"button", StringAttribute("left")},
                                   {"buttons", StringAttribute("left")},
                                   {"modifiers", StringAttribute("control")}};
        viewport.suite->event(viewport.instance, event.getHandle());
    };
    mouse("mousePress", 20, 30);
    mouse("mouseMove", 100, 90);
    const Pixels during = draw(viewport);
    for (const auto& [x, y] : {std::pair(20, 30), std::pair(60, 30), std::pair(100, 60),
                               std::pair(60, 90), std::pair(20, 60)}) {
        EXPECT_NE(during.at(x, y), before.at(x, y)) << x << ", " << y;
    }
    for (const auto& [x, y] : {std::pair(19, 30), std::pair(21, 31), std::pair(101, 91)}) {
        EXPECT_EQ(during.at(x, y), before.at(x, y)) << x << ", " << y;
    }
    mouse("mouseRelease", 100, 90);
    EXPECT_EQ(draw(viewport), before);
}

} // namespace
