#include "gl/masktarget.h"

#include <algorithm>

namespace Bundled {

namespace {

/// The renderbuffer that holds the depths of the bound framebuffer; 0 for a window's own, and for
/// a texture.
GLuint findDepth(GLint framebuffer) {
    if (framebuffer == 0) {
        return 0;
    }
    GLint type = GL_NONE;
    GLint name = 0;
    glGetFramebufferAttachmentParameteriv(GL_DRAW_FRAMEBUFFER, GL_DEPTH_ATTACHMENT,
                                          GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE, &type);
    if (type == GL_RENDERBUFFER) {
        glGetFramebufferAttachmentParameteriv(GL_DRAW_FRAMEBUFFER, GL_DEPTH_ATTACHMENT,
                                              GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME, &name);
    }
    return static_cast<GLuint>(name);
}

} // namespace

bool MaskTarget::begin(const PixelBox& box) {
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &outer);
    glGetIntegerv(GL_SAMPLES, &outerSamples);
    region = box;
    if (!allocate(std::max(width, box.x + box.width), std::max(height, box.y + box.height),
                  outerSamples)) {
        glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(outer));
        return false;
    }
    depth = findDepth(outer);
    glBindFramebuffer(GL_FRAMEBUFFER, outerSamples > 0 ? multisampled.get() : resolved.get());
    if (depth != 0 && !attachDepth(depth)) {
        attachDepth(0);
        depth = 0;
    }
    glScissor(box.x, box.y, box.width, box.height);
    glEnable(GL_SCISSOR_TEST);
    constexpr GLfloat kBlack[] = {0.0f, 0.0f, 0.0f, 0.0f};
    glClearBufferfv(GL_COLOR, 0, kBlack);
    return true;
}

bool MaskTarget::allocate(int newWidth, int newHeight, int newSamples) {
    const bool grows = newWidth > width || newHeight > height;
    if (!grows && (newSamples == 0 || newSamples == samples)) {
        return true;
    }
    clearGLErrors();
    bool isComplete = true;
    if (grows) {
        glBindTexture(GL_TEXTURE_2D, picture.create());
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RG8, newWidth, newHeight, 0, GL_RG, GL_UNSIGNED_BYTE,
                     nullptr);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        glBindTexture(GL_TEXTURE_2D, 0);
        glBindFramebuffer(GL_FRAMEBUFFER, resolved.create());
        glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, picture.get(),
                               0);
        isComplete = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    }
    // A draft between fine pictures needs no buffer, and leaves the one of those alone.
    samples = newSamples > 0 ? newSamples : grows ? 0 : samples;
    if (newSamples > 0) {
        glBindRenderbuffer(GL_RENDERBUFFER, color.create());
        glRenderbufferStorageMultisample(GL_RENDERBUFFER, newSamples, GL_RG8, newWidth, newHeight);
        glBindRenderbuffer(GL_RENDERBUFFER, 0);
        glBindFramebuffer(GL_FRAMEBUFFER, multisampled.create());
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER,
                                  color.get());
        isComplete =
            isComplete && glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    }
    glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(outer));
    // Tried again with the next picture after a failure.
    const bool worked = isComplete && glGetError() == GL_NO_ERROR;
    width = worked ? newWidth : 0;
    height = worked ? newHeight : 0;
    return worked;
}

bool MaskTarget::attachDepth(GLuint renderbuffer) {
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, renderbuffer);
    return glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
}

void MaskTarget::finish() {
    if (depth != 0) {
        // An attachment would keep the buffer alive after its owner.
        attachDepth(0);
    }
    if (outerSamples > 0) {
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, resolved.get());
        const int right = region.x + region.width;
        const int top = region.y + region.height;
        glBlitFramebuffer(region.x, region.y, right, top, region.x, region.y, right, top,
                          GL_COLOR_BUFFER_BIT, GL_NEAREST);
    }
    glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(outer));
}

} // namespace Bundled
