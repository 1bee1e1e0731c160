#include "gl/rendertarget.h"

#include "gl/drawstate.h"
#include "gl/shaders.h"

#include <algorithm>
#include <string>

namespace Bundled {

namespace {

constexpr int kSamplesPerPixel = 8;

} // namespace

bool RenderTarget::begin(int newWidth, int newHeight) {
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &outer);
    if (newWidth <= 0 || newHeight <= 0) {
        return false;
    }
    if (newWidth != width || newHeight != height) {
        GLint mostSamples = 1;
        glGetIntegerv(GL_MAX_COLOR_TEXTURE_SAMPLES, &mostSamples);
        isUsable = allocate(newWidth, newHeight, std::min(kSamplesPerPixel, mostSamples)) ||
                   allocate(newWidth, newHeight, 1);
        width = newWidth;
        height = newHeight;
    }
    glBindFramebuffer(GL_FRAMEBUFFER, isUsable ? multisampled.get() : static_cast<GLuint>(outer));
    return isUsable;
}

bool RenderTarget::allocate(int newWidth, int newHeight, int newSamples) {
    clearGLErrors();
    glBindTexture(GL_TEXTURE_2D_MULTISAMPLE, color.create());
    glTexImage2DMultisample(GL_TEXTURE_2D_MULTISAMPLE, newSamples, GL_RGBA16F, newWidth, newHeight,
                            GL_TRUE);
    // A driver may give more samples than it is asked for.
    GLint given = newSamples;
    glGetTexLevelParameteriv(GL_TEXTURE_2D_MULTISAMPLE, 0, GL_TEXTURE_SAMPLES, &given);
    glBindTexture(GL_TEXTURE_2D_MULTISAMPLE, 0);
    glBindRenderbuffer(GL_RENDERBUFFER, depth.create());
    glRenderbufferStorageMultisample(GL_RENDERBUFFER, given, GL_DEPTH24_STENCIL8, newWidth,
                                     newHeight);
    glBindRenderbuffer(GL_RENDERBUFFER, 0);
    glBindFramebuffer(GL_FRAMEBUFFER, multisampled.create());
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D_MULTISAMPLE,
                           color.get(), 0);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_STENCIL_ATTACHMENT, GL_RENDERBUFFER,
                              depth.get());
    const bool isComplete = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(outer));
    if (!isComplete || glGetError() != GL_NO_ERROR) {
        return false;
    }
    if (samples != given) {
        // A number that the compiler knows: software renderers take long in loops otherwise.
        const std::string number = "const int samples = " + std::to_string(given) + ";\n";
        encode = ShaderProgram("encode", kFullscreenVertexShader,
                               (number + kEncodeFragmentShader).c_str());
        samples = given;
    }
    return true;
}

void RenderTarget::finish() {
    if (!isUsable) {
        return;
    }
    glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(outer));
    const DrawState state({.depthTest = false, .depthWrite = false});
    encode.use();
    encode.set("picture", 0);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D_MULTISAMPLE, color.get());
    glBindVertexArray(corners.create());
    glDrawArrays(GL_TRIANGLES, 0, 3);
    glBindTexture(GL_TEXTURE_2D_MULTISAMPLE, 0);
}

void RenderTarget::reset() {
    *this = RenderTarget();
}

} // namespace Bundled
