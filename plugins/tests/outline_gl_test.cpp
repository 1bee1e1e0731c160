#include "support/geometries.h"
#include "support/gltest.h"

#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

// How a selection shows. Needs an OpenGL context; skipped where none can be made.
namespace {

using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

/// Both pictures: fine, and draft.
class OutlineGL : public SceneGLTest, public testing::WithParamInterface<bool> {
protected:
    void SetUp() override {
        SceneGLTest::SetUp();
        if (IsSkipped()) {
            return;
        }
        viewport = &scene.addViewport(kSize, kSize);
        scene.addCamera(*viewport, {0, 0, 5});
        scene.addLayer(*viewport, "MeshLayer");
        setDraft(*viewport, GetParam());
    }

    void select(std::vector<const char*> paths) {
        scene.delegate.suite->locationsSelected(scene.delegate.instance, paths.data(),
                                                static_cast<std::uint32_t>(paths.size()));
    }
    Pixels draw() { return SceneGLTest::draw(*viewport); }
    /// The strongest orange on the way from the middle of the picture to its right edge.
    static int strongestOrange(const Pixels& pixels) {
        int strongest = 0;
        for (int x = kMiddle; x < kSize; ++x) {
            const auto color = pixels.at(x, kMiddle);
            strongest = std::max(strongest, color[0] - color[2]);
        }
        return strongest;
    }
    static std::vector<Pixels::Color> row(const Pixels& pixels) {
        std::vector<Pixels::Color> colors;
        for (int x = 0; x < kSize; ++x) {
            colors.push_back(pixels.at(x, kMiddle));
        }
        return colors;
    }

    FakeViewport* viewport = nullptr;
};

TEST_P(OutlineGL, comesAndGoesWithTheSelection) {
    scene.tell("/root/a", squareLocation(1.0f, paint(0.3f, 0.3f, 0.3f)));
    const Pixels plain = draw();
    EXPECT_LT(strongestOrange(plain), 20);
    select({"/root/a"});
    EXPECT_GT(strongestOrange(draw()), 60);
    select({});
    EXPECT_EQ(draw(), plain);
    select({"/root/a"});
    scene.remove("/root/a");
    EXPECT_LT(strongestOrange(draw()), 20);
}

TEST_P(OutlineGL, surroundsWhatIsBelowASelectedLocation) {
    scene.tell("/root/a/b", squareLocation(1.0f, paint(0.3f, 0.3f, 0.3f)));
    select({"/root"});
    EXPECT_GT(strongestOrange(draw()), 60);
}

TEST_P(OutlineGL, leavesOutWhatIsSeenFromBehindWithTheLayerButForWires) {
    const auto& layer = *viewport->layers.front();
    setOption(layer, "cullBackFaces", IntAttribute(1));
    scene.tell("/root/back",
               meshLocation({-0.5f, -0.5f, 0, 0.5f, -0.5f, 0, 0.5f, 0.5f, 0, -0.5f, 0.5f, 0},
                            {{0, 3, 2, 1}}, paint(0.3f, 0.3f, 0.3f)));
    select({"/root/back"});
    EXPECT_LT(strongestOrange(draw()), 20);
    for (const char* mode : {"wireframe", "wireframeOnShaded"}) {
        setOption(layer, "displayMode", StringAttribute(mode));
        EXPECT_GT(strongestOrange(draw()), 60) << mode;
    }
}

TEST_P(OutlineGL, keepsTheColourOfWhatItSurrounds) {
    scene.tell("/root/a", squareLocation(1.0f, paint(0.1f, 0.3f, 0.6f)));
    const auto plain = draw().at(kMiddle, kMiddle);
    select({"/root/a"});
    const auto selected = draw().at(kMiddle, kMiddle);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(selected[i], plain[i]);
    }
}

TEST_P(OutlineGL, isSeenAroundAnyColourAndBeforeAnyBackground) {
    const float colors[][3] = {{0, 0, 0}, {1, 1, 1}, {1, 0.5f, 0.06f}, {0.2f, 0.2f, 0.2f}};
    for (const auto& inside : colors) {
        for (const auto& outside : colors) {
            scene.tell("/root/a", squareLocation(1.0f, paint(inside[0], inside[1], inside[2])),
                       translation(0, 0, 0.1));
            scene.tell("/root/wall",
                       squareLocation(8.0f, paint(outside[0], outside[1], outside[2])));
            select({});
            const auto plain = row(draw());
            select({"/root/a"});
            const auto selected = row(draw());
            int strongest = 0;
            for (std::size_t x = kMiddle; x < kSize; ++x) {
                int change = 0;
                for (std::size_t i = 0; i < 3; ++i) {
                    change = std::max(change, std::abs(selected[x][i] - plain[x][i]));
                }
                strongest = std::max(strongest, change);
            }
            EXPECT_GT(strongest, 60) << inside[0] << inside[1] << inside[2] << " before "
                                     << outside[0] << outside[1] << outside[2];
        }
    }
}

TEST_P(OutlineGL, isFainterWhereItIsHiddenAndStillSeen) {
    scene.tell("/root/a", squareLocation(1.0f, paint(0.3f, 0.3f, 0.3f)));
    select({"/root/a"});
    const int seen = strongestOrange(draw());
    scene.tell("/root/wall", squareLocation(8.0f, paint(0.2f, 0.2f, 0.2f)), translation(0, 0, 1));
    const int hidden = strongestOrange(draw());
    EXPECT_GT(hidden, 20);
    EXPECT_LT(hidden, seen - 20);
}

TEST_P(OutlineGL, closedSurfaceDoesNotHideItself) {
    scene.tell("/root/a", cubeLocation(1.0f, paint(0.3f, 0.3f, 0.3f)));
    scene.tell("/root/b", squareLocation(1.0f, paint(0.3f, 0.3f, 0.3f)), translation(0, 9, 0));
    select({"/root/a"});
    const int cube = strongestOrange(draw());
    scene.tell("/root/a", squareLocation(1.0f, paint(0.3f, 0.3f, 0.3f)));
    EXPECT_NEAR(cube, strongestOrange(draw()), 30);
}

TEST_P(OutlineGL, holeThatShowsTheInsideHasNone) {
    scene.tell("/root/a", cubeWithHoleLocation());
    const Pixels plain = draw();
    select({"/root/a"});
    const Pixels selected = draw();
    EXPECT_NE(selected, plain);
    for (int y = kMiddle - 25; y < kMiddle + 25; ++y) {
        for (int x = kMiddle - 25; x < kMiddle + 25; ++x) {
            ASSERT_EQ(selected.at(x, y), plain.at(x, y)) << x << " " << y;
        }
    }
}

TEST_P(OutlineGL, selectedAmongManyEqualOnesIsTheOneOutlined) {
    for (int i = 0; i < 600; ++i) {
        scene.tell("/root/c" + std::to_string(i), squareLocation(0.4f, paint(0.3f, 0.3f, 0.3f)),
                   translation(i == 300 ? 0 : -50, 0, 0));
    }
    select({"/root/c299", "/root/c301"});
    EXPECT_LT(strongestOrange(draw()), 20);
    select({"/root/c300", "/root/c301"});
    EXPECT_GT(strongestOrange(draw()), 60);
}

TEST_P(OutlineGL, ofWhatReachesBehindTheCameraIsSeen) {
    // A floor that begins behind the eye and ends far in front.
    scene.tell("/root/floor", meshLocation({-1, -0.5f, 9, 1, -0.5f, 9, 1, -0.5f, -9, -1, -0.5f, -9},
                                           {{0, 1, 2, 3}}, paint(0.3f, 0.3f, 0.3f)));
    const Pixels plain = draw();
    select({"/root/floor"});
    const Pixels selected = draw();
    int changed = 0;
    for (int y = kMiddle; y < kSize; ++y) {
        for (int x = 0; x < kSize; ++x) {
            changed += std::abs(selected.brightness(x, y) - plain.brightness(x, y)) > 60 ? 1 : 0;
        }
    }
    EXPECT_GT(changed, 60);
}

TEST_P(OutlineGL, followsANewSizeAndOtherViewports) {
    scene.tell("/root/a", squareLocation(1.0f, paint(0.3f, 0.3f, 0.3f)));
    select({"/root/a"});
    const Pixels before = draw();
    FakeViewport& other = scene.addViewport(64, 32);
    scene.addCamera(other, {0, 0, 5});
    scene.addLayer(other, "MeshLayer");
    other.suite->draw(other.instance);
    EXPECT_EQ(draw(), before);
    viewport->suite->resize(viewport->instance, viewport->width = 256, viewport->height = 64);
    viewport->suite->draw(viewport->instance);
    viewport->suite->resize(viewport->instance, viewport->width = kSize, viewport->height = kSize);
    EXPECT_EQ(draw(), before);
}

TEST_P(OutlineGL, ofSomethingThatMovesLeavesNoTrace) {
    scene.tell("/root/a", squareLocation(1.0f, paint(0.3f, 0.3f, 0.3f)));
    select({"/root/a"});
    draw();
    // By less than its size, and by more than the outline reaches.
    scene.tell("/root/a", squareLocation(1.0f, paint(0.3f, 0.3f, 0.3f)),
               translation(-0.5, -0.4, 0));
    const Pixels moved = draw();

    FakeScene fresh;
    FakeViewport& view = fresh.addViewport(kSize, kSize);
    fresh.addCamera(view, {0, 0, 5});
    fresh.addLayer(view, "MeshLayer");
    setDraft(view, GetParam());
    fresh.tell("/root/a", squareLocation(1.0f, paint(0.3f, 0.3f, 0.3f)),
               translation(-0.5, -0.4, 0));
    const char* path = "/root/a";
    fresh.delegate.suite->locationsSelected(fresh.delegate.instance, &path, 1);
    EXPECT_EQ(SceneGLTest::draw(view), moved);
}

TEST_P(OutlineGL, leavesStateAsItWas) {
    scene.tell("/root/a", squareLocation(1.0f, paint(0.3f, 0.3f, 0.3f)));
    select({"/root/a"});
    glScissor(1, 2, 100, 101);
    glClearColor(0.25f, 0.5f, 0.75f, 1.0f);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_FALSE);
    draw();
    GLint box[4] = {};
    glGetIntegerv(GL_SCISSOR_BOX, box);
    EXPECT_EQ(std::vector<GLint>(box, box + 4), (std::vector<GLint>{1, 2, 100, 101}));
    GLboolean mask[4] = {};
    glGetBooleanv(GL_COLOR_WRITEMASK, mask);
    EXPECT_TRUE(mask[0] && mask[1] && mask[2] && !mask[3]);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    GLfloat clearColor[4] = {};
    glGetFloatv(GL_COLOR_CLEAR_VALUE, clearColor);
    EXPECT_EQ(std::vector<GLfloat>(clearColor, clearColor + 4),
              (std::vector<GLfloat>{0.25f, 0.5f, 0.75f, 1.0f}));
    for (const GLenum name : {GL_SCISSOR_TEST, GL_DEPTH_TEST, GL_BLEND, GL_CULL_FACE,
                              GL_POLYGON_OFFSET_FILL, GL_FRAMEBUFFER_SRGB}) {
        EXPECT_EQ(glIsEnabled(name), GL_FALSE) << name;
    }
    GLint value = -1;
    for (const GLenum name :
         {GL_DRAW_FRAMEBUFFER_BINDING, GL_READ_FRAMEBUFFER_BINDING, GL_CURRENT_PROGRAM,
          GL_VERTEX_ARRAY_BINDING, GL_TEXTURE_BINDING_2D, GL_ARRAY_BUFFER_BINDING,
          GL_RENDERBUFFER_BINDING, GL_DRAW_INDIRECT_BUFFER_BINDING}) {
        glGetIntegerv(name, &value);
        EXPECT_EQ(value, 0) << name;
    }
}

INSTANTIATE_TEST_SUITE_P(FineAndDraft, OutlineGL, testing::Bool(), [](const auto& parameter) {
    return parameter.param ? std::string("draft") : std::string("fine");
});

} // namespace
