// Viewports on real surfaces with a real context; skipped where there is none.

#include "support/viewportgltest.h"

#include "VlWindowSystem/WindowSystem.h"

#include <GL/gl.h>

#include <array>
#include <string>

namespace ViewerAPI::test {
namespace {

TEST_F(ViewportGL, contextIsTheOneAskedFor) {
    ASSERT_TRUE(viewport->makeGLContextCurrent());
    const std::string version = reinterpret_cast<const char*>(glGetString(GL_VERSION));
    EXPECT_GE(std::stod(version), 4.0) << version;
    GLint depthBits = 0, stencilBits = 0;
    glGetIntegerv(GL_DEPTH_BITS, &depthBits);
    glGetIntegerv(GL_STENCIL_BITS, &stencilBits);
    EXPECT_GE(depthBits, 24);
    EXPECT_GE(stencilBits, 8);
    // Only a compatibility profile has a matrix stack.
    glPushMatrix();
    glPopMatrix();
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(ViewportGL, drawShowsWhatThePluginDrew) {
    drawWithColor("viewport1", 1, 0, 0);
    viewport->draw();
    EXPECT_EQ(pixelAt(window, kWidth / 2, kHeight / 2), kRed);
    drawWithColor("viewport1", 0, 1, 0);
    viewport->draw();
    EXPECT_EQ(pixelAt(window, kWidth / 2, kHeight / 2), kGreen);
}

TEST_F(ViewportGL, bindingResetsTheGLViewportToTheWholeWindow) {
    viewport->makeGLContextCurrent();
    glViewport(3, 4, 5, 6);
    viewport->makeGLContextCurrent();
    std::array<GLint, 4> area{};
    glGetIntegerv(GL_VIEWPORT, area.data());
    EXPECT_EQ(area, (std::array<GLint, 4>{0, 0, kWidth, kHeight}));
}

TEST_F(ViewportGL, secondViewportSharesTheContextAndItsObjects) {
    const int otherWindow = createOffscreen(16, 16);
    GLuint texture = 0;
    {
        VlViewportHostStruct other("Recording", "other", nullptr);
        other.resize(16, 16);
        other.setup(otherWindow);
        ASSERT_TRUE(other.isInitialized);
        other.makeGLContextCurrent();
        EXPECT_TRUE(other.isGLContextCurrent());
        EXPECT_FALSE(viewport->isGLContextCurrent());
        glGenTextures(1, &texture);
        glBindTexture(GL_TEXTURE_2D, texture);
        drawWithColor("viewport2", 0, 1, 0);
        drawWithColor("viewport1", 1, 0, 0);
        other.draw();
        viewport->draw();
        EXPECT_EQ(pixelAt(otherWindow, 8, 8), kGreen);
        EXPECT_EQ(pixelAt(window, 8, 8), kRed);
    }
    viewport->makeGLContextCurrent();
    EXPECT_TRUE(glIsTexture(texture)) << "an object outlives the viewport that made it";
    glDeleteTextures(1, &texture);
    destroyOffscreen(otherWindow);
}

TEST_F(ViewportGL, capabilitiesReachGL) {
    viewport->makeGLContextCurrent();
    viewport->enableCapability(GL_DEPTH_TEST);
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
    viewport->disableCapability(GL_DEPTH_TEST);
    EXPECT_FALSE(glIsEnabled(GL_DEPTH_TEST));
}

TEST_F(ViewportGL, recordIsNotReadBackFromGL) {
    viewport->makeGLContextCurrent();
    viewport->enableCapability(GL_BLEND);
    glDisable(GL_BLEND);
    viewport->enableCapability(GL_BLEND);
    EXPECT_FALSE(glIsEnabled(GL_BLEND)) << "the record was stale, and the call was spared";
}

TEST_F(ViewportGL, addedLayerLeavesNoContextCurrent) {
    viewport->makeGLContextCurrent();
    viewport->addLayer("Recording", "a");
    EXPECT_EQ(windowSystem().getCurrentContext(), nullptr);
    EXPECT_FALSE(viewport->isGLContextCurrent());
    viewport->draw();
    EXPECT_TRUE(viewport->isGLContextCurrent());
}

TEST_F(ViewportGL, windowThatIsGoneIsLoggedAndNothingIsRaised) {
    const int gone = createOffscreen(16, 16);
    destroyOffscreen(gone);
    VlViewportHostStruct other("Recording", "other", nullptr);
    other.setup(gone);
    EXPECT_FALSE(other.isInitialized);
    ASSERT_EQ(log.size(), 1u);
    EXPECT_EQ(log[0].text, "Invalid display device.");
    other.draw();
    viewport->draw();
}

TEST_F(ViewportGL, surfaceThatEndsBeforeItsViewportIsSurvived) {
    const int otherWindow = createOffscreen(16, 16);
    auto other = std::make_unique<VlViewportHostStruct>("Recording", "other", nullptr);
    other->setup(otherWindow);
    ASSERT_TRUE(other->isInitialized);
    destroyOffscreen(otherWindow);
    other->draw();
    EXPECT_FALSE(other->isGLContextCurrent());
    other.reset();
    ASSERT_EQ(log.size(), 1u);
    EXPECT_EQ(log[0].text, "Failed to release device context.");
    EXPECT_EQ(log[0].line, 102);
    drawWithColor("viewport1", 1, 0, 0);
    viewport->draw();
    EXPECT_EQ(pixelAt(window, 1, 1), kRed);
}

} // namespace
} // namespace ViewerAPI::test
