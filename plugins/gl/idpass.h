#pragma once

#include "gl/coverprograms.h"
#include "gl/drawitem.h"
#include "gl/frame.h"
#include "gl/shaders.h"
#include "scene/frustum.h"

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace Bundled {

/// Draws every location in its own colour, for picking: instanced as the shown picture is, and
/// only what a frustum can touch. Of wires and points it draws more than is shown, so that they can
/// be hit. Blending, dithering and all else that could touch a colour is
/// off meanwhile. [gl-current]
class IdPass {
public:
    /// What a pick asks of each location (node of the mirror) that the frustum can touch: its id,
    /// or `kLeftOut`.
    using GetId = std::function<std::uint64_t(std::uint32_t node)>;
    static constexpr std::uint64_t kLeftOut = UINT64_MAX;

    void draw(std::span<const DrawItem> items, const Frame& frame, const Frustum& frustum,
              const GetId& getId);

private:
    /// In the layout of the instance buffer.
    struct IdInstance {
        std::array<std::array<float, 3>, 4> rows;
        std::uint32_t id;
    };
    /// Instances of one item, side by side.
    struct Share {
        const DrawItem* item;
        std::size_t first;
        std::size_t count;
    };

    void gather(std::span<const DrawItem> items, const Frustum& frustum, const GetId& getId);
    void drawShare(const Share& share, const Frame& frame);
    void bindAttributes(const Share& share, const GpuMesh& mesh) const;
    static void drawPart(const Share& share, const GpuMesh& mesh, GpuMesh::Part part);

    CoverPrograms programs{{"id", kIdVertexShader, kIdFragmentShader, kHoleyIdFragmentShader}};
    GLVertexArray vertexArray;
    GLBuffer buffer;
    std::vector<IdInstance> instances;
    std::vector<Share> shares;
};

} // namespace Bundled
