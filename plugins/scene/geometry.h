#pragma once

#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/Hash.h"

#include <Imath/ImathBox.h>
#include <Imath/ImathVec.h>

#include <cstdint>
#include <optional>

namespace Bundled {

/// How a location's points are drawn.
enum class GeometryKind : std::uint8_t {
    Mesh,  ///< polygons; those of two points as lines, of one as points
    Points ///< each point as a dot
};

/// The `geometry` group of a location that can be drawn, and what is known without unpacking it.
struct Geometry {
    VlAttribute::GroupAttribute attributes;
    GeometryKind kind = GeometryKind::Mesh;
    /// Local space, around all points that are finite.
    Imath::Box3d bounds;

    /// Whether a location with these attributes has something to draw, and as what.
    static std::optional<GeometryKind> kindOf(const VlAttribute::GroupAttribute& location);
    /// Equal for geometries that look the same; cheap.
    static VlAttribute::Hash contentOf(const VlAttribute::GroupAttribute& geometry,
                                       GeometryKind kind);
    static Geometry fromAttributes(const VlAttribute::GroupAttribute& geometry, GeometryKind kind);
};

/// Calls `visit(const V3f&)` for each point of a `geometry` group: `point.P`, or `point.Pw`, whose
/// x, y and z are multiplied by w, as the viewer's own extents do. A count that the tuple size
/// does not divide gives no points.
template <typename Visit>
void forEachPoint(const VlAttribute::GroupAttribute& geometry, Visit&& visit);

} // namespace Bundled

#include "VlAttribute/FloatAttribute.h"

template <typename Visit>
void Bundled::forEachPoint(const VlAttribute::GroupAttribute& geometry, Visit&& visit) {
    const VlAttribute::FloatAttribute points{geometry.getChildByName("point.P")};
    if (const auto values = points.getNearestSample(0.0f); !values.empty()) {
        if (values.size() % 3 == 0) {
            for (std::size_t i = 0; i < values.size(); i += 3) {
                visit(Imath::V3f(values[i], values[i + 1], values[i + 2]));
            }
        }
        return;
    }
    const VlAttribute::FloatAttribute weighted{geometry.getChildByName("point.Pw")};
    const auto values = weighted.getNearestSample(0.0f);
    if (values.size() % 4 == 0) {
        for (std::size_t i = 0; i < values.size(); i += 4) {
            visit(Imath::V3f(values[i], values[i + 1], values[i + 2]) * values[i + 3]);
        }
    }
}
