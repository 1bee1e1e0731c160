#pragma once

#include "gl/glname.h"
#include "scene/meshdata.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace Bundled {

/// A geometry in the graphics card's memory. [gl-current]
class GpuMesh {
public:
    enum class Part : std::uint8_t { Triangles, Lines, Points };

    /// Where the indices of a part lie in the index buffer.
    struct IndexRange {
        GLenum mode = GL_TRIANGLES;
        GLsizei first = 0;
        GLsizei count = 0;

        [[nodiscard]] const void* offset() const {
            return reinterpret_cast<const void*>(static_cast<std::size_t>(first) *
                                                 sizeof(std::uint32_t));
        }
    };

    explicit GpuMesh(const MeshData& data);

    [[nodiscard]] const IndexRange& getRange(Part part) const {
        return ranges[static_cast<std::size_t>(part)];
    }
    /// Whether back sides are never seen from outside.
    [[nodiscard]] bool isClosed() const noexcept { return closed; }

    /// Sets the vertex attributes 0 to 3 and the index buffer of the vertex array that is bound.
    void bindAttributes() const;

private:
    GLBuffer vertexBuffer;
    GLBuffer indexBuffer;
    std::array<IndexRange, 3> ranges;
    bool closed = false;
};

} // namespace Bundled
