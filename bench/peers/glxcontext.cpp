#include "glxcontext.h"

#include <algorithm>
#include <stdexcept>

namespace bench {

GlxContext::GlxContext(int samples) : display_(XOpenDisplay(nullptr)) {
    if (!display_) {
        throw std::runtime_error("no display: set DISPLAY, or run under xvfb-run");
    }
    const int wanted[] = {GLX_DRAWABLE_TYPE,
                          GLX_PBUFFER_BIT,
                          GLX_RENDER_TYPE,
                          GLX_RGBA_BIT,
                          GLX_RED_SIZE,
                          8,
                          GLX_GREEN_SIZE,
                          8,
                          GLX_BLUE_SIZE,
                          8,
                          GLX_DEPTH_SIZE,
                          24,
                          GLX_DOUBLEBUFFER,
                          True,
                          None};
    int found = 0;
    GLXFBConfig* configs = glXChooseFBConfig(display_, DefaultScreen(display_), wanted, &found);
    if (found > 0) {
        const int size[] = {GLX_PBUFFER_WIDTH, kPictureWidth, GLX_PBUFFER_HEIGHT, kPictureHeight,
                            None};
        surface_ = glXCreatePbuffer(display_, configs[0], size);
        context_ = glXCreateNewContext(display_, configs[0], GLX_RGBA_TYPE, nullptr, True);
    }
    XFree(configs);
    if (!context_ || !glXMakeContextCurrent(display_, surface_, surface_, context_)) {
        throw std::runtime_error("the display has no GLX");
    }
    if (samples > 1) {
        addFramebuffer(samples);
    }
    glViewport(0, 0, kPictureWidth, kPictureHeight);
}

GlxContext::~GlxContext() {
    glXMakeContextCurrent(display_, None, None, nullptr);
    glXDestroyContext(display_, context_);
    glXDestroyPbuffer(display_, surface_);
    XCloseDisplay(display_);
}

void GlxContext::addFramebuffer(int samples) {
    GLint most = 1;
    glGetIntegerv(GL_MAX_SAMPLES, &most);
    glGenFramebuffers(1, &framebuffer_);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer_);
    glGenRenderbuffers(2, buffers_);
    const GLenum formats[] = {GL_RGBA8, GL_DEPTH_COMPONENT24};
    const GLenum places[] = {GL_COLOR_ATTACHMENT0, GL_DEPTH_ATTACHMENT};
    for (int i = 0; i < 2; ++i) {
        glBindRenderbuffer(GL_RENDERBUFFER, buffers_[i]);
        glRenderbufferStorageMultisample(GL_RENDERBUFFER, std::min(samples, most), formats[i],
                                         kPictureWidth, kPictureHeight);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, places[i], GL_RENDERBUFFER, buffers_[i]);
    }
    if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE) {
        throw std::runtime_error("the renderer can't draw several samples a pixel");
    }
}

void GlxContext::finish() const {
    if (framebuffer_ != 0) {
        glBindFramebuffer(GL_READ_FRAMEBUFFER, framebuffer_);
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0);
        glBlitFramebuffer(0, 0, kPictureWidth, kPictureHeight, 0, 0, kPictureWidth, kPictureHeight,
                          GL_COLOR_BUFFER_BIT, GL_NEAREST);
        glBindFramebuffer(GL_FRAMEBUFFER, framebuffer_);
    }
    glFinish();
}

std::vector<std::uint8_t> GlxContext::readRgb() const {
    std::vector<std::uint8_t> rgb(3UL * kPictureWidth * kPictureHeight);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, kPictureWidth, kPictureHeight, GL_RGB, GL_UNSIGNED_BYTE, rgb.data());
    glBindFramebuffer(GL_READ_FRAMEBUFFER, framebuffer_);
    return rgb;
}

} // namespace bench
