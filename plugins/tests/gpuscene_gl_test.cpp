#include "gl/gpuscene.h"

#include "support/geometries.h"
#include "support/gltest.h"
#include "support/replacedentry.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <string>

// Needs an OpenGL context; skipped where none can be made.
namespace {

using namespace Bundled;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::StringAttribute;

class GpuSceneGL : public GLTest {
protected:
    GpuSceneGL() : GLTest(64, 64) {}

    void SetUp() override {
        GLTest::SetUp();
        if (IsSkipped()) {
            return;
        }
        // Sees 200 units each way from the origin, along -z.
        frame.viewToClip.setValue(Imath::M44f());
        frame.viewToClip[0][0] = frame.viewToClip[1][1] = 0.005f;
        frame.viewToClip[2][2] = -0.001f;
    }

    void tell(const std::string& path, const GroupAttribute& attributes,
              const Imath::M44d& xform = {}) {
        mirror.apply({path, attributes, matrixAttribute(xform),
                      kVlLocationEventAttributesChanged | kVlLocationEventXformChanged});
    }

    SceneMirror mirror;
    Frame frame;
};

TEST_F(GpuSceneGL, tenThousandEqualCubesAreOneDrawCall) {
    GpuScene scene;
    for (int i = 0; i < 10000; ++i) {
        tell("/root/c" + std::to_string(i), cubeLocation(), translation(i % 100, i / 100, 0));
    }
    scene.draw(mirror, frame);
    EXPECT_EQ(scene.getNumberOfDrawCalls(), 1u);
}

TEST_F(GpuSceneGL, eachPairOfGeometryAndMaterialIsADrawCall) {
    GpuScene scene;
    const GroupAttribute glass{{"opacity", FloatAttribute(0.5f)}};
    tell("/root/a", cubeLocation(1.0f));
    tell("/root/b", cubeLocation(2.0f));
    tell("/root/c", cubeLocation(2.0f, glass));
    scene.draw(mirror, frame);
    EXPECT_EQ(scene.getNumberOfDrawCalls(), 3u);
    mirror.apply({"/root", {}, {}, kVlLocationEventRemoved});
    scene.draw(mirror, frame);
    EXPECT_EQ(scene.getNumberOfDrawCalls(), 0u);
}

TEST_F(GpuSceneGL, whatNoPixelCanShowIsNotDrawn) {
    GpuScene scene;
    tell("/root/a", cubeLocation(1.0f), translation(300, 0, 0));
    tell("/root/b", cubeLocation(2.0f), translation(0, -300, 0));
    scene.draw(mirror, frame);
    EXPECT_EQ(scene.getNumberOfDrawCalls(), 0u);
    tell("/root/b", cubeLocation(2.0f), translation(0, -150, 0));
    scene.draw(mirror, frame);
    EXPECT_EQ(scene.getNumberOfDrawCalls(), 1u);
}

TEST_F(GpuSceneGL, ofManyEqualCubesOnlyTheBlocksInSightAreDrawn) {
    GpuScene scene;
    constexpr int kBlock = static_cast<int>(Batch::kBlockSize);
    // Block after block to the right: 0 and 2 in sight, 1 and 3 not.
    for (int i = 0; i < 4 * kBlock; ++i) {
        const double x = (i / kBlock) % 2 == 0 ? 0.0 : 1000.0;
        tell("/root/c" + std::to_string(i), cubeLocation(), translation(x, 0, 0));
    }
    scene.update(mirror);
    const auto items = scene.collect(mirror, Frustum(frame.worldToClip()), DisplayMode::Shaded);
    ASSERT_EQ(items.size(), 1u);
    ASSERT_EQ(items[0].runs.size(), 2u);
    EXPECT_EQ(items[0].runs[0].first, 0u);
    EXPECT_EQ(items[0].runs[0].count, Batch::kBlockSize);
    EXPECT_EQ(items[0].runs[1].first, 2 * Batch::kBlockSize);
    EXPECT_EQ(items[0].runs[1].count, Batch::kBlockSize);
    // A move brings a block into sight.
    tell("/root/c" + std::to_string(kBlock), cubeLocation(), translation(0, 0, 0));
    scene.update(mirror);
    EXPECT_EQ(
        scene.collect(mirror, Frustum(frame.worldToClip()), DisplayMode::Shaded)[0].runs.size(),
        1u);
}

TEST_F(GpuSceneGL, pictureThatCannotBeReadIsToldOnceWithItsName) {
    GpuScene scene;
    tell("/root/a", cubeLocation(1.0f, {{"texture", StringAttribute("/nowhere/none.png")}}));
    scene.draw(mirror, frame);
    const auto errors = scene.takeErrors();
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_NE(errors[0].find("/nowhere/none.png"), std::string::npos);
    scene.draw(mirror, frame);
    EXPECT_TRUE(scene.takeErrors().empty());
}

TEST_F(GpuSceneGL, shaderThatDoesNotCompileLeavesStateAsItWas) {
    GpuScene scene;
    tell("/root/a", cubeLocation());
    frame.isDraft = true;
    GLint framebuffer = 0;
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &framebuffer);
    const auto failToDraw = [&] {
        const ReplacedEntry compile(
            __glewCompileShader, +[](GLuint) {});
        EXPECT_THROW(scene.draw(mirror, frame), std::runtime_error);
    };
    // The programs of plain surfaces.
    glEnable(GL_FRAMEBUFFER_SRGB);
    failToDraw();
    EXPECT_EQ(glIsEnabled(GL_FRAMEBUFFER_SRGB), GL_TRUE);
    glDisable(GL_FRAMEBUFFER_SRGB);
    // Those of a draft's outline alone: the others are there.
    scene.draw(mirror, frame);
    const char* const path = "/root/a";
    mirror.setSelection({&path, 1});
    frame.isDraft = false;
    scene.draw(mirror, frame);
    frame.isDraft = true;
    failToDraw();
    GLint bound = -1;
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &bound);
    EXPECT_EQ(bound, framebuffer);
    EXPECT_EQ(glIsEnabled(GL_SCISSOR_TEST), GL_FALSE);
    scene.draw(mirror, frame);
}

TEST_F(GpuSceneGL, followsAMirrorThatComesAndGoes) {
    GpuScene scene;
    for (int round = 0; round < 20; ++round) {
        for (int i = 0; i < 50; ++i) {
            const float edge = 1.0f + static_cast<float>((i + round) % 7);
            tell("/root/r" + std::to_string(round) + "/c" + std::to_string(i), cubeLocation(edge),
                 translation(i, round, 0));
        }
        if (round >= 3) {
            mirror.apply({"/root/r" + std::to_string(round - 3), {}, {}, kVlLocationEventRemoved});
        }
        scene.draw(mirror, frame);
        ASSERT_EQ(scene.getNumberOfDrawCalls(), 7u);
    }
}

TEST_F(GpuSceneGL, endsQuietlyWithoutItsContext) {
    auto scene = std::make_unique<GpuScene>();
    tell("/root/a", cubeLocation());
    scene->draw(mirror, frame);
    windowSystem().makeCurrent(windowSystem().getCurrentDC(), nullptr);
    EXPECT_FALSE(isGLReady());
    scene.reset();
}

} // namespace
