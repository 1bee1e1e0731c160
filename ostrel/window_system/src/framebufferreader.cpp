#include "framebufferreader.h"

// The system's own entry points: nobody need have loaded any.
#define GL_GLEXT_PROTOTYPES
#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>
#include <array>

namespace {

GLint getInteger(GLenum name) {
    GLint value = 0;
    glGetIntegerv(name, &value);
    return value;
}

// How pixels are laid out in memory, put to what a tight image needs and back.
class TightPacking {
public:
    TightPacking() {
        for (std::size_t i = 0; i < kNames.size(); ++i) {
            before[i] = getInteger(kNames[i]);
            glPixelStorei(kNames[i], kNames[i] == GL_PACK_ALIGNMENT ? 4 : 0);
        }
    }
    ~TightPacking() {
        for (std::size_t i = 0; i < kNames.size(); ++i) {
            glPixelStorei(kNames[i], before[i]);
        }
    }
    TightPacking(const TightPacking&) = delete;
    TightPacking& operator=(const TightPacking&) = delete;

private:
    static constexpr std::array<GLenum, 4> kNames = {GL_PACK_ALIGNMENT, GL_PACK_ROW_LENGTH,
                                                     GL_PACK_SKIP_ROWS, GL_PACK_SKIP_PIXELS};
    std::array<GLint, kNames.size()> before{};
};

} // namespace

void readDefaultFramebuffer(int width, int height, Image& image) {
    const std::size_t rowSize = static_cast<std::size_t>(width) * 4;
    image.width = width;
    image.height = height;
    image.rgba.resize(rowSize * static_cast<std::size_t>(height));

    const GLint framebuffer = getInteger(GL_READ_FRAMEBUFFER_BINDING);
    const GLint packBuffer = getInteger(GL_PIXEL_PACK_BUFFER_BINDING);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    const GLint readBuffer = getInteger(GL_READ_BUFFER);
    // Off-screen surfaces may have one buffer only, which is then the front one.
    glReadBuffer(getInteger(GL_DOUBLEBUFFER) ? GL_BACK : GL_FRONT);
    {
        const TightPacking packing;
        glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, image.rgba.data());
    }
    glReadBuffer(static_cast<GLenum>(readBuffer));
    glBindBuffer(GL_PIXEL_PACK_BUFFER, static_cast<GLuint>(packBuffer));
    glBindFramebuffer(GL_READ_FRAMEBUFFER, static_cast<GLuint>(framebuffer));

    // GL's rows come from the bottom.
    for (int top = 0, bottom = height - 1; top < bottom; ++top, --bottom) {
        const auto row = [&](int index) {
            return image.rgba.begin() + static_cast<std::ptrdiff_t>(rowSize) * index;
        };
        std::swap_ranges(row(top), row(top + 1), row(bottom));
    }
}
