#pragma once

#include <Imath/ImathVec.h>

#include <cstdint>
#include <vector>

namespace Bundled {

/// A geometry unpacked for the graphics card.
struct MeshData {
    struct Vertex {
        Imath::V3f position{0.0f};
        Imath::V3f normal{0.0f};
        /// Origin at the bottom left of the picture.
        Imath::V2f st{0.0f};
        /// Linear; white where the geometry has no colours of its own.
        Imath::V3f color{1.0f};
    };

    std::vector<Vertex> vertices;
    /// Three a triangle, two a line, one a point.
    std::vector<std::uint32_t> triangles;
    std::vector<std::uint32_t> lines;
    std::vector<std::uint32_t> points;
};
static_assert(sizeof(MeshData::Vertex) == 11 * sizeof(float));

} // namespace Bundled
