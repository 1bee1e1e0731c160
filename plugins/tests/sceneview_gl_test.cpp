#include "support/geometries.h"
#include "support/gltest.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <string>

// Pictures of the bundled plug-ins. Needs an OpenGL context; skipped where none can be made.
namespace {

using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

class SceneViewGL : public SceneGLTest {
protected:
    FakeViewport& addView(const Imath::V3d& eye = {0, 0, 5}) {
        FakeViewport& viewport = scene.addViewport(kSize, kSize);
        scene.addCamera(viewport, eye);
        return viewport;
    }
    Pixels background() { return draw(addView()); }
};

TEST_F(SceneViewGL, withoutLayersShowsAGradientThatIsBrighterAbove) {
    const Pixels pixels = background();
    EXPECT_GT(pixels.brightness(kMiddle, 5), pixels.brightness(kMiddle, kSize - 5) + 60);
    for (int y = 1; y < kSize; ++y) {
        EXPECT_LE(std::abs(pixels.brightness(10, y) - pixels.brightness(10, y - 1)), 12) << y;
    }
}

TEST_F(SceneViewGL, drawsBeforeSetupAndAfterCleanup) {
    FakeViewport& viewport = addView();
    const FakeLayer& layer = scene.addLayer(viewport, "MeshLayer");
    scene.tell("/root/a", squareLocation(2.0f, paint(1, 0, 0)));
    const Pixels first = draw(viewport);
    layer.suite->cleanup(layer.instance);
    viewport.suite->cleanup(viewport.instance);
    EXPECT_EQ(draw(viewport), first);
}

TEST_F(SceneViewGL, meshLayerShowsWhatIsVisibleAndNothingElse) {
    const Pixels empty = background();
    FakeViewport& viewport = addView();
    scene.addLayer(viewport, "MeshLayer");
    EXPECT_EQ(draw(viewport), empty);

    scene.tell("/root/a", squareLocation(2.0f, paint(1, 0, 0)));
    const Pixels shown = draw(viewport);
    const auto middle = shown.at(kMiddle, kMiddle);
    EXPECT_GT(middle[0], 3 * middle[1]);
    EXPECT_GT(middle[0], 3 * middle[2]);
    EXPECT_EQ(shown.at(2, 2), empty.at(2, 2));

    scene.tell("/root/a", squareLocation(2.0f, paint(1, 0, 0)), {},
               kVlLocationEventHidden | kVlLocationEventHiddenChanged);
    EXPECT_EQ(draw(viewport), empty);
    scene.tell("/root/a", squareLocation(2.0f, paint(1, 0, 0)), {}, kVlLocationEventHiddenChanged);
    EXPECT_EQ(draw(viewport), shown);
    scene.remove("/root/a");
    EXPECT_EQ(draw(viewport), empty);
}

TEST_F(SceneViewGL, movingALocationMovesItsPicture) {
    FakeViewport& viewport = addView();
    scene.addLayer(viewport, "MeshLayer");
    scene.tell("/root", GroupAttribute::Empty());
    scene.tell("/root/a", squareLocation(2.0f, paint(1, 0, 0)));
    const Pixels before = draw(viewport);
    scene.tell("/root", GroupAttribute::Empty(), translation(1.5, 0, 0));
    const Pixels after = draw(viewport);
    EXPECT_GT(before.at(kMiddle - 10, kMiddle)[0], 2 * before.at(kMiddle - 10, kMiddle)[2]);
    EXPECT_LT(after.at(kMiddle - 10, kMiddle)[0], 2 * after.at(kMiddle - 10, kMiddle)[2]);
    EXPECT_GT(after.at(kMiddle + 40, kMiddle)[0], 2 * after.at(kMiddle + 40, kMiddle)[2]);
}

TEST_F(SceneViewGL, nearerSurfacesHideFartherOnes) {
    FakeViewport& viewport = addView();
    scene.addLayer(viewport, "MeshLayer");
    scene.tell("/root/near", squareLocation(2.0f, paint(0, 1, 0)), translation(0, 0, 1));
    scene.tell("/root/far", squareLocation(2.0f, paint(1, 0, 0)));
    const auto middle = draw(viewport).at(kMiddle, kMiddle);
    EXPECT_GT(middle[1], 3 * middle[0]);
}

TEST_F(SceneViewGL, surfacesHaveTwoSidesUnlessCullingIsAskedFor) {
    const Pixels empty = background();
    FakeViewport& front = addView({0, 0, 5});
    FakeViewport& back = addView({0, 0, -5});
    scene.addLayer(front, "MeshLayer");
    const FakeLayer& layer = scene.addLayer(back, "MeshLayer");
    scene.tell("/root/a", squareLocation(2.0f, paint(0.5f, 0.5f, 0.5f)));
    const auto seen = draw(front).at(kMiddle, kMiddle);
    const auto fromBehind = draw(back).at(kMiddle, kMiddle);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(fromBehind[i], seen[i], 2);
    }
    setOption(layer, "cullBackFaces", IntAttribute(1));
    EXPECT_EQ(draw(back), empty);
}

TEST_F(SceneViewGL, materialOfOneSideShowsFrontSidesAlone) {
    const Pixels empty = background();
    FakeViewport& front = addView({0, 0, 5});
    FakeViewport& back = addView({0, 0, -5});
    const auto layer = scene.addLayer(front, "MeshLayer");
    scene.addLayer(back, "MeshLayer");
    scene.tell("/root/a", squareLocation(2.0f, paint(0.5f, 0.5f, 0.5f)));
    const Pixels seen = draw(front);
    EXPECT_NE(draw(back), empty);

    scene.tell("/root/a",
               squareLocation(2.0f, {{"baseColor", FloatAttribute({0.5f, 0.5f, 0.5f}, 3)},
                                     {"doubleSided", IntAttribute(0)}}));
    EXPECT_EQ(draw(front), seen);
    EXPECT_EQ(draw(back), empty);

    // A mirror swaps the sides, and nobody may be left without.
    Imath::M44d mirror;
    mirror.scale(Imath::V3d(-1, 1, 1));
    scene.tell("/root", GroupAttribute::Empty(), mirror);
    EXPECT_NE(draw(front), empty);
    EXPECT_NE(draw(back), empty);
    setOption(layer, "cullBackFaces", IntAttribute(1));
    EXPECT_NE(draw(front), empty);
}

TEST_F(SceneViewGL, edgesAreSmooth) {
    FakeViewport& viewport = addView();
    scene.addLayer(viewport, "MeshLayer");
    Imath::M44d turned;
    turned.rotate(Imath::V3d(0, 0, 0.2));
    scene.tell("/root/a", squareLocation(2.0f, paint(1, 1, 1)), turned);
    const Pixels pixels = draw(viewport);
    // Along a row there are pixels between the square and the background in brightness.
    int between = 0;
    for (int y = kMiddle - 20; y < kMiddle + 20; ++y) {
        for (int x = 0; x < kMiddle; ++x) {
            const int brightness = pixels.brightness(x, y);
            between += brightness > pixels.brightness(2, y) + 60 &&
                               brightness < pixels.brightness(kMiddle, y) - 60
                           ? 1
                           : 0;
        }
    }
    EXPECT_GT(between, 10);
}

TEST_F(SceneViewGL, linearColoursAreEncodedAsSrgb) {
    FakeViewport& viewport = addView();
    scene.addLayer(viewport, "MeshLayer");
    // A dot is not lit. Linear 0.2140 is the middle of sRGB, 127.5 of 255.
    scene.tell("/root/a",
               {{"type", StringAttribute("points")},
                {"geometry",
                 GroupAttribute{{"point", GroupAttribute{{"P", FloatAttribute({0, 0, 0}, 3)}}}}},
                {"material", paint(0.2140f, 0.0f, 1.0f)}});
    const auto dot = draw(viewport).at(kMiddle, kMiddle);
    EXPECT_NEAR(dot[0], 127.5, 2);
    EXPECT_NEAR(dot[1], 0, 1);
}

TEST_F(SceneViewGL, textureStandsUprightWithItsOriginAtTheBottomLeft) {
    // Two by two pixels, top row first: red and green above, blue and white below.
    const std::string file = testing::TempDir() + "sceneview_gl_test.ppm";
    std::ofstream(file, std::ios::binary)
        << "P6 2 2 255\n"
        << std::string("\xff\x00\x00\x00\xff\x00\x00\x00\xff\xff\xff\xff", 12);
    FakeViewport& viewport = addView();
    scene.addLayer(viewport, "MeshLayer");
    scene.tell("/root/a", squareLocation(2.0f, {{"texture", StringAttribute(file)}}));
    const Pixels pixels = draw(viewport);
    // The middles of the texture's pixels.
    const int offset = 15;
    const auto red = pixels.at(kMiddle - offset, kMiddle - offset);
    const auto green = pixels.at(kMiddle + offset, kMiddle - offset);
    const auto blue = pixels.at(kMiddle - offset, kMiddle + offset);
    EXPECT_GT(red[0], std::max(red[1], red[2]) + 50);
    EXPECT_GT(green[1], std::max(green[0], green[2]) + 50);
    EXPECT_GT(blue[2], std::max(blue[0], blue[1]) + 50);
}

TEST_F(SceneViewGL, opacityLetsThroughWhatIsBehind) {
    FakeViewport& viewport = addView();
    scene.addLayer(viewport, "MeshLayer");
    const GroupAttribute glass{{"baseColor", FloatAttribute({0, 1, 0}, 3)},
                               {"opacity", FloatAttribute(0.5f)}};
    scene.tell("/root/glass", squareLocation(2.0f, glass), translation(0, 0, 1));
    scene.tell("/root/wall", squareLocation(2.0f, paint(1, 0, 0)));
    const auto middle = draw(viewport).at(kMiddle, kMiddle);
    EXPECT_GT(middle[0], 80);
    EXPECT_GT(middle[1], 80);
}

TEST_F(SceneViewGL, holesShowTheInside) {
    FakeViewport& viewport = addView();
    scene.addLayer(viewport, "MeshLayer");
    scene.tell("/root/a", cubeWithHoleLocation());
    for (const bool isDraft : {false, true}) {
        setDraft(viewport, isDraft);
        const Pixels pixels = draw(viewport);
        // The far side, and beside it the inner one of a near side.
        for (const int x : {kMiddle, kMiddle - 15}) {
            const auto color = pixels.at(x, kMiddle);
            EXPECT_GT(color[0], 2 * color[2] + 20) << x << (isDraft ? " draft" : " fine");
        }
    }
}

TEST_F(SceneViewGL, viewportsShareTheSceneAndOutliveEachOther) {
    FakeViewport& first = addView();
    FakeViewport& second = addView();
    const FakeLayer& firstLayer = scene.addLayer(first, "MeshLayer");
    scene.addLayer(second, "MeshLayer");
    scene.tell("/root/a", squareLocation(2.0f, paint(1, 0, 0)));
    const Pixels picture = draw(first);
    EXPECT_EQ(draw(second), picture);
    firstLayer.suite->cleanup(firstLayer.instance);
    first.suite->cleanup(first.instance);
    EXPECT_EQ(draw(second), picture);
    scene.tell("/root/a", squareLocation(2.0f, paint(1, 0, 0)), translation(0.5, 0, 0));
    EXPECT_EQ(draw(second), draw(first));
}

TEST_F(SceneViewGL, aNewPictureIsAskedForOnceForEachThatWasDrawn) {
    FakeViewport& viewport = addView();
    scene.addLayer(viewport, "MeshLayer");
    scene.tell("/root/a", squareLocation(2.0f, paint(1, 0, 0)));
    EXPECT_TRUE(viewport.dirty);
    draw(viewport);
    viewport.dirty = false;
    scene.tell("/root/b", squareLocation(2.0f, paint(1, 0, 0)));
    EXPECT_TRUE(viewport.dirty);
}

TEST_F(SceneViewGL, gridIsSeenFromAboveAndFadesOut) {
    const Pixels empty = draw(addView({0, 4, 6}));
    FakeViewport& viewport = addView({0, 4, 6});
    scene.addLayer(viewport, "GridLayer");
    scene.tell("/root/a", squareLocation(2.0f, paint(1, 0, 0)));
    const Pixels grid = draw(viewport);
    int different = 0;
    for (int y = 0; y < kSize; ++y) {
        for (int x = 0; x < kSize; ++x) {
            different += grid.at(x, y) != empty.at(x, y) ? 1 : 0;
        }
    }
    EXPECT_GT(different, 100);
    for (int x = 0; x < kSize; ++x) {
        EXPECT_EQ(grid.at(x, 0), empty.at(x, 0)) << "sky at " << x;
    }
}

TEST_F(SceneViewGL, gridDrawnAfterwardsGivesWayToSurfacesInTheGround) {
    FakeViewport& without = addView({1, 6, 4});
    FakeViewport& with = addView({1, 6, 4});
    scene.addLayer(without, "MeshLayer");
    scene.addLayer(with, "MeshLayer");
    scene.addLayer(with, "GridLayer");
    // Lies in the plane y = 0, and fills the picture.
    scene.tell("/root/ground", meshLocation({-50, 0, -50, -50, 0, 50, 50, 0, 50, 50, 0, -50},
                                            {{0, 1, 2, 3}}, paint(0.5f, 0.5f, 0.5f)));
    EXPECT_EQ(draw(with), draw(without));
}

TEST_F(SceneViewGL, leavesFramebufferAndStateAsTheyWere) {
    FakeViewport& viewport = addView();
    scene.addLayer(viewport, "GridLayer");
    scene.addLayer(viewport, "MeshLayer");
    scene.tell("/root/a", squareLocation(2.0f, paint(1, 0, 0)));
    draw(viewport);
    GLint value = -1;
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &value);
    EXPECT_EQ(value, 0);
    for (const GLenum name : {GL_CURRENT_PROGRAM, GL_VERTEX_ARRAY_BINDING, GL_TEXTURE_BINDING_2D,
                              GL_ARRAY_BUFFER_BINDING, GL_RENDERBUFFER_BINDING}) {
        glGetIntegerv(name, &value);
        EXPECT_EQ(value, 0) << name;
    }
    for (const GLenum name : {GL_DEPTH_TEST, GL_BLEND, GL_CULL_FACE, GL_POLYGON_OFFSET_FILL}) {
        EXPECT_EQ(glIsEnabled(name), GL_FALSE) << name;
    }
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(SceneViewGL, framebufferIsBoundAgainWhenALayerThrows) {
    FakeViewport& viewport = addView();
    FakeLayer& layer = scene.addLayer(viewport, "MeshLayer");
    static ViewportLayerPluginSuite throwing;
    throwing = *layer.suite;
    throwing.draw = [](void*) { throw std::runtime_error("from a layer"); };
    layer.suite = &throwing;
    EXPECT_THROW(viewport.suite->draw(viewport.instance), std::runtime_error);
    GLint bound = -1;
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &bound);
    EXPECT_EQ(bound, 0);
}

TEST_F(SceneViewGL, followsANewSize) {
    FakeViewport& viewport = addView();
    scene.addLayer(viewport, "MeshLayer");
    scene.tell("/root/a", squareLocation(2.0f, paint(1, 0, 0)));
    draw(viewport);
    viewport.width = 64;
    viewport.height = 32;
    viewport.suite->resize(viewport.instance, 64, 32);
    viewport.suite->draw(viewport.instance);
    const Pixels pixels = Pixels::read(64, 32);
    EXPECT_GT(pixels.at(32, 16)[0], 3 * pixels.at(32, 16)[1]);
    // Twice as wide as high: the square leaves the sides free.
    EXPECT_LT(pixels.at(4, 16)[0], 2 * pixels.at(4, 16)[2]);
}

} // namespace
