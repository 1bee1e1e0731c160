#pragma once

#include "gl/drawitem.h"
#include "gl/frame.h"
#include "gl/shaderprogram.h"

#include <cstddef>
#include <span>
#include <vector>

namespace Bundled {

/// Draws what shows its surfaces by a soft light that moves with the camera: opaque ones first,
/// then cut-outs, then what shines through, from back to front. Writes linear light, but where the
/// driver encodes what is written it writes the plain surfaces of drafts encoded. [gl-current]
class ShadedPass {
public:
    /// Answers the number of draw calls.
    std::size_t draw(std::span<const DrawItem> items, const Frame& frame);

private:
    /// Who encodes colours, if anybody does.
    enum class Encoder { Driver, Vertices };

    void drawPlain(const std::vector<const DrawItem*>& items, const Frame& frame);
    void drawItems(const std::vector<const DrawItem*>& items, const Frame& frame, Encoder encoder);
    ShaderProgram& programFor(const Frame& frame, bool hasTexture);

    /// Fine or draft, without a texture or with one: software renderers read textures even where a
    /// branch says not to.
    ShaderProgram programs[2][2];
    std::size_t drawCalls = 0;
};

} // namespace Bundled
