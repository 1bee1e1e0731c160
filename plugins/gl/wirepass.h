#pragma once

#include "gl/drawitem.h"
#include "gl/frame.h"
#include "gl/shaderprogram.h"

#include <cstddef>
#include <span>

namespace Bundled {

/// Draws edges and points of what is shown so: those on surfaces in a shade that stands out from
/// the surface, the others in its own colour. Comes after the surfaces. Writes linear light.
/// [gl-current]
class WirePass {
public:
    /// Answers the number of draw calls.
    std::size_t draw(std::span<const DrawItem> items, const Frame& frame);

private:
    void drawItem(const DrawItem& item);

    ShaderProgram program;
    std::size_t drawCalls = 0;
};

} // namespace Bundled
