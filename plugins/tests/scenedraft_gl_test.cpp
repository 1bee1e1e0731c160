#include "support/geometries.h"
#include "support/gltest.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <stdexcept>

// Drafts: the quick pictures of something that moves. Needs an OpenGL context; skipped where none
// can be made.
namespace {

using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::StringAttribute;

class SceneDraftGL : public SceneGLTest {
protected:
    FakeViewport& addView(const Imath::V3d& eye) {
        FakeViewport& viewport = scene.addViewport(kSize, kSize);
        scene.addCamera(viewport, eye);
        scene.addLayer(viewport, "MeshLayer");
        return viewport;
    }
    static Pixels draw(const FakeViewport& viewport, bool isDraft) {
        setDraft(viewport, isDraft);
        return SceneGLTest::draw(viewport);
    }
    /// Pixels that differ clearly, without those beside an edge, which one of them smooths.
    static int countDifferences(const Pixels& a, const Pixels& b) {
        const auto isFlat = [&](int x, int y) {
            for (int dx = -1; dx <= 1; ++dx) {
                for (int dy = -1; dy <= 1; ++dy) {
                    if (std::abs(b.brightness(x + dx, y + dy) - b.brightness(x, y)) > 24) {
                        return false;
                    }
                }
            }
            return true;
        };
        int differences = 0;
        for (int y = 1; y < kSize - 1; ++y) {
            for (int x = 1; x < kSize - 1; ++x) {
                if (isFlat(x, y) && std::abs(a.brightness(x, y) - b.brightness(x, y)) > 60) {
                    ++differences;
                }
            }
        }
        return differences;
    }
    void expectAlike(const FakeViewport& viewport) {
        EXPECT_LT(countDifferences(draw(viewport, true), draw(viewport, false)),
                  kSize * kSize / 200);
    }
};

const GroupAttribute kClay{{"baseColor", FloatAttribute({0.6f, 0.3f, 0.2f}, 3)}};

TEST_F(SceneDraftGL, looksLikeTheFinePicture) {
    FakeViewport& viewport = addView({2, 3, 5});
    Imath::M44d mirrored = translation(-1.5, 0, 0);
    mirrored[0][0] = -1.0;
    scene.tell("/root/plain", cubeLocation(1.0f, kClay));
    scene.tell("/root/mirrored", cubeLocation(1.0f, kClay), mirrored);
    scene.tell("/root/open",
               meshLocation({1, -1, 0, 2, -1, 0, 2, 1, 0, 1, 1, 0}, {{3, 2, 1, 0}}, kClay));
    expectAlike(viewport);
    const char* paths[] = {"/root/plain"};
    scene.delegate.suite->locationsSelected(scene.delegate.instance, paths, 1);
    expectAlike(viewport);
}

/// Points show their colour as it is, so what a draft makes of it can be computed.
TEST_F(SceneDraftGL, coloursAreEncodedWhetherPlainOrSeenThrough) {
    FakeViewport& viewport = addView({0, 0, 5});
    for (const float opacity : {1.0f, 0.999f}) {
        for (const float linear : {0.0f, 0.0005f, 0.003f, 0.01f, 0.1f, 0.5f, 1.0f, 3.0f}) {
            const GroupAttribute points{{"P", FloatAttribute({0, 0, 0}, 3)}};
            const FloatAttribute paint({linear, linear, linear, opacity}, 4);
            scene.tell("/root/dot", {{"type", StringAttribute("points")},
                                     {"geometry", GroupAttribute{{"point", points}}},
                                     {"material", GroupAttribute{{"baseColor", paint}}}});
            const float clamped = std::min(linear, 1.0f);
            const float encoded = clamped <= 0.0031308f
                                      ? 12.92f * clamped
                                      : 1.055f * std::pow(clamped, 1.0f / 2.4f) - 0.055f;
            const auto color = draw(viewport, true).at(kMiddle, kMiddle);
            for (std::size_t i = 0; i < 3; ++i) {
                EXPECT_NEAR(color[i], 255.0f * encoded, 1.5f) << linear << ", " << opacity;
            }
        }
    }
}

TEST_F(SceneDraftGL, emptyPictureIsTheSameBackground) {
    expectAlike(addView({0, 0, 5}));
}

TEST_F(SceneDraftGL, cameraInsideAClosedMeshSeesItFromWithin) {
    FakeViewport& viewport = addView({0.1, 0.2, 2.0});
    const Pixels empty = draw(viewport, true);
    scene.tell("/root/room", cubeLocation(6.0f, kClay));
    const Pixels room = draw(viewport, true);
    EXPECT_NE(room.at(kMiddle, kMiddle), empty.at(kMiddle, kMiddle));
    expectAlike(viewport);
}

TEST_F(SceneDraftGL, backgroundFollowsANewSize) {
    FakeViewport& viewport = addView({0, 0, 5});
    draw(viewport, true);
    viewport.width = viewport.height = 64;
    viewport.suite->resize(viewport.instance, 64, 64);
    viewport.suite->draw(viewport.instance);
    const Pixels small = Pixels::read(64, 64);
    setDraft(viewport, false);
    viewport.suite->draw(viewport.instance);
    const Pixels fine = Pixels::read(64, 64);
    for (int y = 0; y < 64; y += 9) {
        EXPECT_NEAR(small.brightness(31, y), fine.brightness(31, y), 9) << y;
    }
}

TEST_F(SceneDraftGL, aNewPictureIsAskedForWhenTheOptionChangesAndOnlyThen) {
    FakeViewport& viewport = addView({0, 0, 5});
    viewport.dirty = false;
    setDraft(viewport, true);
    EXPECT_TRUE(viewport.dirty);
    viewport.dirty = false;
    setDraft(viewport, true);
    EXPECT_FALSE(viewport.dirty);
}

TEST_F(SceneDraftGL, leavesFramebufferAndEncodingAsTheyWere) {
    FakeViewport& viewport = addView({0, 0, 5});
    scene.tell("/root/a", cubeLocation(1.0f, kClay));
    draw(viewport, true);
    EXPECT_EQ(glIsEnabled(GL_FRAMEBUFFER_SRGB), GL_FALSE);
    GLint bound = -1;
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &bound);
    EXPECT_EQ(bound, 0);

    static ViewportLayerPluginSuite throwing;
    throwing = *viewport.layers.front()->suite;
    throwing.draw = [](void*) { throw std::runtime_error("from a layer"); };
    viewport.layers.front()->suite = &throwing;
    EXPECT_THROW(viewport.suite->draw(viewport.instance), std::runtime_error);
    EXPECT_EQ(glIsEnabled(GL_FRAMEBUFFER_SRGB), GL_FALSE);
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &bound);
    EXPECT_EQ(bound, 0);
}

} // namespace
