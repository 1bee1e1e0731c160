#include "scene/closedmesh.h"

#include <bit>
#include <cstdint>
#include <numeric>

namespace Bundled {

namespace {

std::uint64_t mix(std::uint64_t value) {
    value ^= value >> 31;
    value *= 0x7fb5d329728ea185ULL;
    value ^= value >> 27;
    value *= 0x81dadef4bc2dd44dULL;
    return value ^ (value >> 33);
}

/// For each vertex, the first vertex at the same place.
std::vector<std::uint32_t> pointsOf(const std::vector<MeshData::Vertex>& vertices) {
    constexpr auto kFree = UINT32_MAX;
    std::vector<std::uint32_t> table(std::bit_ceil(2 * vertices.size() + 1), kFree);
    std::vector<std::uint32_t> points(vertices.size());
    for (std::uint32_t i = 0; i < vertices.size(); ++i) {
        std::uint64_t hash = 0;
        for (int axis = 0; axis < 3; ++axis) {
            // 0.0 is the sum, so that -0.0 and 0.0 are one place.
            hash = mix(hash ^ std::bit_cast<std::uint32_t>(vertices[i].position[axis] + 0.0f));
        }
        std::size_t slot = hash & (table.size() - 1);
        while (table[slot] != kFree && vertices[table[slot]].position != vertices[i].position) {
            slot = (slot + 1) & (table.size() - 1);
        }
        if (table[slot] == kFree) {
            table[slot] = i;
        }
        points[i] = table[slot];
    }
    return points;
}

/// Which points hang together.
class Parts {
public:
    explicit Parts(std::size_t size) : above(size) { std::iota(above.begin(), above.end(), 0u); }

    std::uint32_t find(std::uint32_t point) {
        while (above[point] != point) {
            point = above[point] = above[above[point]];
        }
        return point;
    }
    void join(std::uint32_t a, std::uint32_t b) { above[find(a)] = find(b); }

private:
    std::vector<std::uint32_t> above;
};

} // namespace

bool isClosedOutwards(const MeshData& mesh) {
    if (mesh.triangles.empty()) {
        return false;
    }
    const std::vector<std::uint32_t> points = pointsOf(mesh.vertices);
    Parts parts(points.size());
    // Each edge must be passed as often one way as the other. The sum of the hashes of all
    // passages, those back taken away, is zero then, and by chance only once in 2^64.
    std::uint64_t balance = 0;
    const auto passage = [](std::uint32_t from, std::uint32_t to) {
        return mix(static_cast<std::uint64_t>(from) << 32 | to);
    };
    for (std::size_t i = 0; i < mesh.triangles.size(); i += 3) {
        for (std::size_t side = 0; side < 3; ++side) {
            const std::uint32_t from = points[mesh.triangles[i + side]];
            const std::uint32_t to = points[mesh.triangles[i + (side + 1) % 3]];
            balance += passage(from, to) - passage(to, from);
            parts.join(from, to);
        }
    }
    if (balance != 0) {
        return false;
    }
    std::vector<double> volumes(points.size(), 0.0);
    const Imath::V3d origin(mesh.vertices[mesh.triangles[0]].position);
    for (std::size_t i = 0; i < mesh.triangles.size(); i += 3) {
        Imath::V3d corners[3];
        for (std::size_t k = 0; k < 3; ++k) {
            corners[k] = Imath::V3d(mesh.vertices[mesh.triangles[i + k]].position) - origin;
        }
        volumes[parts.find(points[mesh.triangles[i]])] +=
            corners[0].dot(corners[1].cross(corners[2]));
    }
    for (std::size_t i = 0; i < mesh.triangles.size(); i += 3) {
        if (!(volumes[parts.find(points[mesh.triangles[i]])] > 0.0)) {
            return false;
        }
    }
    return true;
}

} // namespace Bundled
