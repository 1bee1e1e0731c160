#include "gl/distancetarget.h"

#include <algorithm>

namespace Bundled {

bool DistanceTarget::begin(int neededWidth, int neededHeight) {
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &outer);
    if (neededWidth <= width && neededHeight <= height) {
        glBindFramebuffer(GL_FRAMEBUFFER, framebuffer.get());
        return true;
    }
    clearGLErrors();
    const int newWidth = std::max(width, neededWidth);
    const int newHeight = std::max(height, neededHeight);
    glBindTexture(GL_TEXTURE_2D, picture.create());
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, newWidth, newHeight, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                 nullptr);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glBindTexture(GL_TEXTURE_2D, 0);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer.create());
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, picture.get(), 0);
    // Tried again with the next picture after a failure.
    const bool worked = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE &&
                        glGetError() == GL_NO_ERROR;
    width = worked ? newWidth : 0;
    height = worked ? newHeight : 0;
    if (!worked) {
        finish();
    }
    return worked;
}

void DistanceTarget::finish() const {
    glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(outer));
}

} // namespace Bundled
