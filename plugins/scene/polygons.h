#pragma once

#include <Imath/ImathVec.h>

#include <cstdint>
#include <span>
#include <vector>

namespace Bundled {

/// The polygons of a mesh: indices of points and where each polygon begins among them.
struct Polygons {
    std::span<const std::int32_t> vertices;
    /// One more than polygons; rises from 0 to the number of vertices.
    std::span<const std::int32_t> starts;

    [[nodiscard]] std::size_t size() const noexcept {
        return starts.empty() ? 0 : starts.size() - 1;
    }
    [[nodiscard]] std::span<const std::int32_t> operator[](std::size_t polygon) const noexcept {
        const auto first = static_cast<std::size_t>(starts[polygon]);
        return vertices.subspan(first, static_cast<std::size_t>(starts[polygon + 1]) - first);
    }

    /// Whether every start and every point index is in range: what all else relies on.
    [[nodiscard]] bool isValid(std::size_t numberOfPoints) const noexcept;
};

/// Twice the polygon's area along its normal, counter-clockwise seen from the normal's tip (the
/// method of Newell, which holds for polygons that are concave or not quite flat).
Imath::V3f areaNormal(std::span<const std::int32_t> polygon, std::span<const Imath::V3f> points);

/// Appends the polygon's triangles as corners (0 to its length less 1), wound as the polygon is.
/// Concave polygons are cut by ears; one that crosses itself still yields length less 2 triangles.
void triangulate(std::span<const std::int32_t> polygon, std::span<const Imath::V3f> points,
                 std::vector<std::uint32_t>& corners);

} // namespace Bundled
