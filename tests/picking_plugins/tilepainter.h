#pragma once

#include <cstdint>

/// Fills rectangles of the bound framebuffer with four bytes each, exactly: the colours of a
/// picture, or ids. Its program is made when it is first needed and serves the whole process, whose
/// viewports share one context. [gl-current]
class TilePainter {
public:
    static TilePainter& instance();

    /// In pixels from the top left of a viewport of that size; depth from 0 (near) to 1. Nothing
    /// happens without a context.
    void fill(int x, int y, int width, int height, float depth, std::uint32_t color,
              int viewportWidth, int viewportHeight);

private:
    [[nodiscard]] bool prepare();

    unsigned program = 0;
    int colorUniform = -1;
};
