#pragma once

#include "support/fakescene.h"
#include "support/offscreencontext.h"

#include "VlAttribute/Attribute.h"
#include "gl/glcontext.h"
#include "viewer_api/plugin/OptionIds.h"

#include <GL/glew.h>
#include <gtest/gtest.h>

/// Needs an OpenGL context, and is skipped where none can be made. No test may leave an error of
/// OpenGL behind.
class GLTest : public testing::Test {
protected:
    GLTest(int width, int height) : context(width, height) {}

    void SetUp() override {
        if (!context.isValid() || !Bundled::isGLReady()) {
            GTEST_SKIP() << "no OpenGL context on this machine";
        }
    }
    void TearDown() override {
        if (context.isValid()) {
            EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
        }
    }

private:
    OffscreenContext context;
};

/// Pictures of the bundled plug-ins.
class SceneGLTest : public GLTest {
protected:
    static constexpr int kSize = 128;
    static constexpr int kMiddle = kSize / 2;

    SceneGLTest() : GLTest(kSize, kSize) {}

    /// Of a viewport or a layer.
    template <class Target>
    static void setOption(const Target& target, const char* name,
                          const VlAttribute::Attribute& value) {
        target.suite->setOption(target.instance, ViewerPlugin::optionId(name),
                                value.getRetainedHandle());
    }
    static void setDraft(const FakeViewport& viewport, bool isDraft);
    static Pixels draw(const FakeViewport& viewport);

    FakeScene scene;
};
