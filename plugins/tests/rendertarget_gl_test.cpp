#include "gl/rendertarget.h"
#include "gl/shaders.h"

#include "support/gltest.h"
#include "support/replacedentry.h"

namespace {

constexpr int kSize = 16;
constexpr int kGiven = 4;

PFNGLTEXIMAGE2DMULTISAMPLEPROC makeTexture;
PFNGLRENDERBUFFERSTORAGEMULTISAMPLEPROC makeRenderbuffer;

/// More than there can be.
constexpr GLsizei kTooMany = 10000;

// A driver that makes no texture of several samples when it is asked to, and gives some to who asks
// for one.
void GLAPIENTRY giveTexture(GLenum place, GLsizei samples, GLenum format, GLsizei width,
                            GLsizei height, GLboolean isFixed) {
    makeTexture(place, samples > 1 ? kTooMany : kGiven, format, width, height, isFixed);
}
void GLAPIENTRY giveRenderbuffer(GLenum place, GLsizei /*samples*/, GLenum format, GLsizei width,
                                 GLsizei height) {
    makeRenderbuffer(place, kGiven, format, width, height);
}

/// White on all samples of each pixel but the first, on black.
void drawOnAllButTheFirst() {
    glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    Bundled::ShaderProgram white("white", Bundled::kFullscreenVertexShader,
                                 "out vec4 color; void main() { color = vec4(1.0); }");
    Bundled::GLVertexArray corners;
    white.use();
    glBindVertexArray(corners.create());
    glEnable(GL_SAMPLE_MASK);
    glSampleMaski(0, ~GLbitfield{1});
    glDrawArrays(GL_TRIANGLES, 0, 3);
    glSampleMaski(0, ~GLbitfield{0});
    glDisable(GL_SAMPLE_MASK);
    glBindVertexArray(0);
    glUseProgram(0);
}

class RenderTargetGL : public GLTest {
protected:
    RenderTargetGL() : GLTest(kSize, kSize) {}
};

TEST_F(RenderTargetGL, averagesAllSamplesThatTheDriverGives) {
    GLint mostSamples = 1;
    glGetIntegerv(GL_MAX_COLOR_TEXTURE_SAMPLES, &mostSamples);
    if (mostSamples < kGiven) {
        GTEST_SKIP() << "pixels have too few samples on this machine";
    }
    makeTexture = __glewTexImage2DMultisample;
    makeRenderbuffer = __glewRenderbufferStorageMultisample;
    const ReplacedEntry texture(__glewTexImage2DMultisample, &giveTexture);
    const ReplacedEntry renderbuffer(__glewRenderbufferStorageMultisample, &giveRenderbuffer);

    Bundled::RenderTarget target;
    ASSERT_TRUE(target.begin(kSize, kSize));
    drawOnAllButTheFirst();
    target.finish();
    // Three quarters of the light, as sRGB.
    EXPECT_NEAR(Pixels::read(kSize, kSize).at(kSize / 2, kSize / 2)[0], 225, 2);
}

} // namespace
