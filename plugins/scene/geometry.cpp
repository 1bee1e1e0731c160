#include "scene/geometry.h"

#include "VlAttribute/StringAttribute.h"

#include <cmath>
#include <string_view>

namespace Bundled {

std::optional<GeometryKind> Geometry::kindOf(const VlAttribute::GroupAttribute& location) {
    const VlAttribute::GroupAttribute point{location.getChildByName("geometry.point")};
    if (!point.getChildByName("P") && !point.getChildByName("Pw")) {
        return std::nullopt;
    }
    if (location.getChildByName("geometry.poly")) {
        return GeometryKind::Mesh;
    }
    const VlAttribute::StringAttribute type{location.getChildByName("type")};
    if (std::string_view(type.getValueCstr()) == "points") {
        return GeometryKind::Points;
    }
    return std::nullopt;
}

VlAttribute::Hash Geometry::contentOf(const VlAttribute::GroupAttribute& geometry,
                                      GeometryKind kind) {
    VlAttribute::Hash content = geometry.getHash();
    content.second ^= static_cast<std::uint64_t>(kind);
    return content;
}

Geometry Geometry::fromAttributes(const VlAttribute::GroupAttribute& geometry, GeometryKind kind) {
    Geometry result{geometry, kind, {}};
    forEachPoint(geometry, [&result](const Imath::V3f& point) {
        if (std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z)) {
            result.bounds.extendBy(Imath::V3d(point));
        }
    });
    return result;
}

} // namespace Bundled
