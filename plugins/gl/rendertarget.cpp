#include "gl/rendertarget.h"

#include "gl/drawstate.h"
#include "gl/shaders.h"

#include <algorithm>

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
        glGetIntegerv(GL_MAX_SAMPLES, &mostSamples);
        const int samples = std::min(kSamplesPerPixel, static_cast<int>(mostSamples));
        isUsable = allocate(newWidth, newHeight, samples) || allocate(newWidth, newHeight, 0);
        width = newWidth;
        height = newHeight;
        if (!encode) {
            encode = ShaderProgram("encode", kFullscreenVertexShader, kEncodeFragmentShader);
        }
    }
    glBindFramebuffer(GL_FRAMEBUFFER, isUsable ? multisampled.get() : static_cast<GLuint>(outer));
    return isUsable;
}

bool RenderTarget::allocate(int newWidth, int newHeight, int samples) {
    clearGLErrors();
    glBindRenderbuffer(GL_RENDERBUFFER, color.create());
    glRenderbufferStorageMultisample(GL_RENDERBUFFER, samples, GL_RGBA16F, newWidth, newHeight);
    glBindRenderbuffer(GL_RENDERBUFFER, depth.create());
    glRenderbufferStorageMultisample(GL_RENDERBUFFER, samples, GL_DEPTH24_STENCIL8, newWidth,
                                     newHeight);
    glBindRenderbuffer(GL_RENDERBUFFER, 0);
    glBindFramebuffer(GL_FRAMEBUFFER, multisampled.create());
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, color.get());
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_STENCIL_ATTACHMENT, GL_RENDERBUFFER,
                              depth.get());
    const bool drawable = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;

    glBindTexture(GL_TEXTURE_2D, picture.create());
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA16F, newWidth, newHeight, 0, GL_RGBA, GL_FLOAT, nullptr);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glBindTexture(GL_TEXTURE_2D, 0);
    glBindFramebuffer(GL_FRAMEBUFFER, resolved.create());
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, picture.get(), 0);
    const bool readable = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(outer));
    return drawable && readable && glGetError() == GL_NO_ERROR;
}

void RenderTarget::finish() {
    if (!isUsable) {
        return;
    }
    glBindFramebuffer(GL_READ_FRAMEBUFFER, multisampled.get());
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, resolved.get());
    glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
    glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(outer));

    const DrawState state({.depthTest = false, .depthWrite = false});
    encode.use();
    encode.set("picture", 0);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, picture.get());
    glBindVertexArray(corners.create());
    glDrawArrays(GL_TRIANGLES, 0, 3);
    glBindTexture(GL_TEXTURE_2D, 0);
}

void RenderTarget::reset() {
    *this = RenderTarget();
}

} // namespace Bundled
