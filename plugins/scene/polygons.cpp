#include "scene/polygons.h"

#include <algorithm>
#include <cmath>

namespace Bundled {

namespace {

/// A polygon's outline in the plane that its normal faces most.
std::vector<Imath::V2f> flatten(std::span<const std::int32_t> polygon,
                                std::span<const Imath::V3f> points, const Imath::V3f& normal) {
    int drop = 0;
    for (int axis = 1; axis < 3; ++axis) {
        if (std::abs(normal[axis]) > std::abs(normal[drop])) {
            drop = axis;
        }
    }
    // Chosen so that the outline is counter-clockwise.
    int first = (drop + 1) % 3;
    int second = (drop + 2) % 3;
    if (normal[drop] < 0.0f) {
        std::swap(first, second);
    }
    std::vector<Imath::V2f> outline;
    outline.reserve(polygon.size());
    for (const std::int32_t index : polygon) {
        const Imath::V3f& point = points[static_cast<std::size_t>(index)];
        outline.emplace_back(point[first], point[second]);
    }
    return outline;
}

/// Positive when c lies left of the line from a to b.
float side(const Imath::V2f& a, const Imath::V2f& b, const Imath::V2f& c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

bool isConvex(const std::vector<Imath::V2f>& outline) {
    const std::size_t count = outline.size();
    for (std::size_t i = 0; i < count; ++i) {
        if (side(outline[i], outline[(i + 1) % count], outline[(i + 2) % count]) < 0.0f) {
            return false;
        }
    }
    return true;
}

/// Whether the corner at `place` can be cut off: it bends left, and no other corner lies in its
/// triangle.
bool isEar(const std::vector<Imath::V2f>& outline, const std::vector<std::uint32_t>& left,
           std::size_t place) {
    const std::size_t count = left.size();
    const Imath::V2f& a = outline[left[(place + count - 1) % count]];
    const Imath::V2f& b = outline[left[place]];
    const Imath::V2f& c = outline[left[(place + 1) % count]];
    if (side(a, b, c) <= 0.0f) {
        return false;
    }
    return std::none_of(left.begin(), left.end(), [&](std::uint32_t corner) {
        const Imath::V2f& p = outline[corner];
        return p != a && p != b && p != c && side(a, b, p) >= 0.0f && side(b, c, p) >= 0.0f &&
               side(c, a, p) >= 0.0f;
    });
}

} // namespace

bool Polygons::isValid(std::size_t numberOfPoints) const noexcept {
    if (starts.empty()) {
        return vertices.empty();
    }
    if (starts.front() != 0 || static_cast<std::size_t>(starts.back()) != vertices.size() ||
        !std::is_sorted(starts.begin(), starts.end())) {
        return false;
    }
    return std::all_of(vertices.begin(), vertices.end(), [numberOfPoints](std::int32_t index) {
        return index >= 0 && static_cast<std::size_t>(index) < numberOfPoints;
    });
}

Imath::V3f areaNormal(std::span<const std::int32_t> polygon, std::span<const Imath::V3f> points) {
    Imath::V3f normal(0.0f);
    if (polygon.empty()) {
        return normal;
    }
    // Relative to a corner, so that a polygon far from the origin keeps its digits.
    const Imath::V3f& origin = points[static_cast<std::size_t>(polygon[0])];
    for (std::size_t i = 1; i + 1 < polygon.size(); ++i) {
        const Imath::V3f a = points[static_cast<std::size_t>(polygon[i])] - origin;
        const Imath::V3f b = points[static_cast<std::size_t>(polygon[i + 1])] - origin;
        normal += a.cross(b);
    }
    return normal;
}

void triangulate(std::span<const std::int32_t> polygon, std::span<const Imath::V3f> points,
                 std::vector<std::uint32_t>& corners) {
    const auto count = static_cast<std::uint32_t>(polygon.size());
    if (count < 3) {
        return;
    }
    const auto fan = [&] {
        for (std::uint32_t i = 1; i + 1 < count; ++i) {
            corners.insert(corners.end(), {0, i, i + 1});
        }
    };
    if (count == 3) {
        return fan();
    }
    const std::vector<Imath::V2f> outline = flatten(polygon, points, areaNormal(polygon, points));
    if (isConvex(outline)) {
        return fan();
    }
    std::vector<std::uint32_t> left(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        left[i] = i;
    }
    while (left.size() > 3) {
        // Without an ear the outline crosses itself: any corner is as good as another.
        std::size_t ear = 0;
        for (std::size_t place = 0; place < left.size(); ++place) {
            if (isEar(outline, left, place)) {
                ear = place;
                break;
            }
        }
        const std::size_t size = left.size();
        corners.insert(corners.end(),
                       {left[(ear + size - 1) % size], left[ear], left[(ear + 1) % size]});
        left.erase(left.begin() + static_cast<std::ptrdiff_t>(ear));
    }
    corners.insert(corners.end(), {left[0], left[1], left[2]});
}

} // namespace Bundled
