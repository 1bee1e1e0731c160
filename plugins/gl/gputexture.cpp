#include "gl/gputexture.h"

#include <algorithm>

namespace Bundled {

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
    glTexImage2D(GL_TEXTURE_2D, 0, GL_SRGB8_ALPHA8, picture.width, picture.height, 0, GL_RGBA,
                 GL_UNSIGNED_BYTE, picture.rgba.data());
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    glGenerateMipmap(GL_TEXTURE_2D);
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
