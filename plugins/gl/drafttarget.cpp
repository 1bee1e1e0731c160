#include "gl/drafttarget.h"

namespace Bundled {

namespace {

void copyColors(const GLFramebuffer& from, GLuint to, int width, int height) {
    glBindFramebuffer(GL_READ_FRAMEBUFFER, from.get());
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, to);
    glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
}

} // namespace

bool DraftTarget::begin(int newWidth, int newHeight) {
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &outer);
    if (newWidth <= 0 || newHeight <= 0) {
        return false;
    }
    if (newWidth != width || newHeight != height) {
        isUsable = allocate(newWidth, newHeight);
        width = newWidth;
        height = newHeight;
        hasBackdrop = false;
    }
    if (!isUsable) {
        return false;
    }
    // Between two encoded pictures with the encoding on, copying is copying memory.
    glEnable(GL_FRAMEBUFFER_SRGB);
    if (hasBackdrop) {
        copyColors(backdropFramebuffer, framebuffer.get(), width, height);
    }
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer.get());
    return true;
}

bool DraftTarget::allocate(int newWidth, int newHeight) {
    clearGLErrors();
    glBindRenderbuffer(GL_RENDERBUFFER, depth.create());
    glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH24_STENCIL8, newWidth, newHeight);
    const auto make = [&](GLFramebuffer& owner, GLRenderbuffer& buffer) {
        glBindRenderbuffer(GL_RENDERBUFFER, buffer.create());
        glRenderbufferStorage(GL_RENDERBUFFER, GL_SRGB8_ALPHA8, newWidth, newHeight);
        glBindFramebuffer(GL_FRAMEBUFFER, owner.create());
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER,
                                  buffer.get());
    };
    make(backdropFramebuffer, backdrop);
    make(framebuffer, color);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_STENCIL_ATTACHMENT, GL_RENDERBUFFER,
                              depth.get());
    glBindRenderbuffer(GL_RENDERBUFFER, 0);
    const bool isComplete = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(outer));
    return isComplete && glGetError() == GL_NO_ERROR;
}

void DraftTarget::storeBackdrop() {
    copyColors(framebuffer, backdropFramebuffer.get(), width, height);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer.get());
    hasBackdrop = true;
}

void DraftTarget::finish() {
    // As bytes: the window does not say that it is encoded.
    glDisable(GL_FRAMEBUFFER_SRGB);
    copyColors(framebuffer, static_cast<GLuint>(outer), width, height);
    glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(outer));
}

void DraftTarget::reset() {
    *this = DraftTarget();
}

} // namespace Bundled
