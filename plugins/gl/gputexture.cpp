#include "gl/gputexture.h"

#include "gl/miplevels.h"
#include "gl/renderer.h"

#include <algorithm>

namespace Bundled {

namespace {

void uploadLevel(int level, const Picture& picture) {
    glTexImage2D(GL_TEXTURE_2D, level, GL_SRGB8_ALPHA8, picture.width, picture.height, 0, GL_RGBA,
                 GL_UNSIGNED_BYTE, picture.rgba.data());
}

void uploadSmallerLevels(const Picture& picture) {
    if (!isSoftwareRenderer()) {
        glGenerateMipmap(GL_TEXTURE_2D);
        return;
    }
    // The renderer would compile programs first, which takes far longer than the work itself.
    Picture level = picture;
    for (int i = 1; level.width > 1 || level.height > 1; ++i) {
        level = nextMipLevel(level);
        uploadLevel(i, level);
    }
}

} // namespace

GpuTexture::GpuTexture(const std::string& file) : GpuTexture(readPicture(file)) {}

GpuTexture::GpuTexture(const Picture& picture) {
    if (picture.rgba.empty()) {
        error = picture.error;
        return;
    }
    alpha = picture.hasAlpha();
    GLint largest = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    if (picture.width > largest || picture.height > largest) {
        error = "A picture is larger than the graphics card takes.";
        return;
    }
    glBindTexture(GL_TEXTURE_2D, texture.create());
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    uploadLevel(0, picture);
    uploadSmallerLevels(picture);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    if (GLEW_EXT_texture_filter_anisotropic) {
        GLfloat most = 1.0f;
        glGetFloatv(GL_MAX_TEXTURE_MAX_ANISOTROPY_EXT, &most);
        glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAX_ANISOTROPY_EXT, std::min(most, 8.0f));
    }
    glBindTexture(GL_TEXTURE_2D, 0);
}

} // namespace Bundled
