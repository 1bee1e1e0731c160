#include "scene/normals.h"

#include <cmath>
#include <cstdint>
#include <numbers>

namespace Bundled {

namespace {

/// Beyond so many polygons at a point, comparing each with each would take longer than it shows.
constexpr std::size_t kMostComparedPolygons = 64;

Imath::V3f normalizedOrZero(const Imath::V3f& vector) {
    const float length = vector.length();
    return length > 0.0f ? vector / length : Imath::V3f(0.0f);
}

} // namespace

std::vector<Imath::V3f> computeCornerNormals(const Polygons& polygons,
                                             std::span<const Imath::V3f> points,
                                             float creaseAngleDegrees) {
    const std::size_t corners = polygons.vertices.size();
    std::vector<Imath::V3f> areaNormals(polygons.size());
    std::vector<Imath::V3f> units(polygons.size());
    std::vector<std::uint32_t> polygonOfCorner(corners);
    for (std::size_t polygon = 0; polygon < polygons.size(); ++polygon) {
        areaNormals[polygon] = areaNormal(polygons[polygon], points);
        units[polygon] = normalizedOrZero(areaNormals[polygon]);
        for (auto corner = polygons.starts[polygon]; corner < polygons.starts[polygon + 1];
             ++corner) {
            polygonOfCorner[static_cast<std::size_t>(corner)] = static_cast<std::uint32_t>(polygon);
        }
    }

    // The corners at each point, side by side.
    std::vector<std::uint32_t> firstAtPoint(points.size() + 1, 0);
    for (const std::int32_t point : polygons.vertices) {
        ++firstAtPoint[static_cast<std::size_t>(point) + 1];
    }
    for (std::size_t point = 0; point < points.size(); ++point) {
        firstAtPoint[point + 1] += firstAtPoint[point];
    }
    std::vector<std::uint32_t> cornersAtPoint(corners);
    std::vector<std::uint32_t> filled(firstAtPoint.begin(), firstAtPoint.end());
    for (std::size_t corner = 0; corner < corners; ++corner) {
        const auto point = static_cast<std::size_t>(polygons.vertices[corner]);
        cornersAtPoint[filled[point]++] = static_cast<std::uint32_t>(corner);
    }

    // A little wider than asked for, so that equal normals count as equal in spite of rounding.
    const float leastCosine =
        std::cos(creaseAngleDegrees * std::numbers::pi_v<float> / 180.0f) - 1e-5f;
    std::vector<Imath::V3f> normals(corners);
    for (std::size_t point = 0; point < points.size(); ++point) {
        const std::span<const std::uint32_t> around(cornersAtPoint.data() + firstAtPoint[point],
                                                    firstAtPoint[point + 1] - firstAtPoint[point]);
        const bool isCompared = around.size() <= kMostComparedPolygons;
        // Otherwise those near the average of all are averaged again, without the others.
        Imath::V3f common(0.0f);
        for (int pass = 0; pass < 2 && !isCompared; ++pass) {
            Imath::V3f sum(0.0f);
            for (const std::uint32_t corner : around) {
                const std::uint32_t polygon = polygonOfCorner[corner];
                if (pass == 0 || units[polygon].dot(common) >= leastCosine) {
                    sum += areaNormals[polygon];
                }
            }
            common = normalizedOrZero(sum);
        }
        for (const std::uint32_t corner : around) {
            const Imath::V3f& own = units[polygonOfCorner[corner]];
            Imath::V3f sum(0.0f);
            if (!isCompared) {
                sum = own.dot(common) >= leastCosine ? common : own;
            }
            for (std::size_t i = 0; i < around.size() && isCompared; ++i) {
                const std::uint32_t other = polygonOfCorner[around[i]];
                if (own.dot(units[other]) >= leastCosine) {
                    sum += areaNormals[other];
                }
            }
            const Imath::V3f average = normalizedOrZero(sum);
            // Opposite polygons can cancel each other out.
            normals[corner] = average == Imath::V3f(0.0f) ? own : average;
        }
    }
    return normals;
}

} // namespace Bundled
