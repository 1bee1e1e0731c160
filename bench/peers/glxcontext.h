#pragma once

#include "picturescenes.h"

#include <cstdint>
#include <vector>

#define GL_GLEXT_PROTOTYPES 1
#include <GL/gl.h>
#include <GL/glext.h>
#include <GL/glx.h>

namespace bench {

/// An OpenGL context for libraries that draw into the application's own, with a picture of one or
/// several samples a pixel that no screen shows. Current for good once it is there.
class GlxContext {
public:
    /// So many samples a pixel, or as many as the driver has. Throws std::runtime_error without a
    /// display that has GLX.
    explicit GlxContext(int samples);
    GlxContext(const GlxContext&) = delete;
    GlxContext& operator=(const GlxContext&) = delete;
    ~GlxContext();

    /// The framebuffer to draw into, bound already: the surface's own back buffer, which is never
    /// swapped, where a pixel has one sample.
    [[nodiscard]] GLuint framebuffer() const { return framebuffer_; }

    /// Averages a pixel's samples, and waits until the renderer has finished.
    void finish() const;
    /// Of the finished picture.
    [[nodiscard]] std::vector<std::uint8_t> readRgb() const;

private:
    void addFramebuffer(int samples);

    Display* display_;
    GLXPbuffer surface_ = 0;
    GLXContext context_ = nullptr;
    GLuint framebuffer_ = 0;
    GLuint buffers_[2] = {}; ///< color and depth, several samples a pixel
};

} // namespace bench
