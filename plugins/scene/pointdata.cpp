#include "scene/pointdata.h"

#include "scene/geometry.h"

#include <cmath>

namespace Bundled {

using VlAttribute::FloatAttribute;

PointData::PointData(const VlAttribute::GroupAttribute& geometry) {
    forEachPoint(geometry, [this](const Imath::V3f& point) { positions.push_back(point); });
    const auto ofLength = [&](const char* name, std::size_t tuple) {
        FloatAttribute values{geometry.getChildByName(name)};
        return values.getNearestSample(0.0f).size() == tuple * positions.size() ? values
                                                                                : FloatAttribute();
    };
    normals = ofLength("point.N", 3);
    st = ofLength("point.st", 2);
    colors = ofLength("point.color", 3);
}

bool PointData::isFinite(std::size_t point) const {
    const Imath::V3f& p = positions[point];
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

MeshData::Vertex PointData::vertex(std::size_t point) const {
    MeshData::Vertex result;
    result.position = positions[point];
    if (normals.isValid()) {
        const float* n = &normals.getNearestSample(0.0f)[3 * point];
        result.normal = Imath::V3f(n[0], n[1], n[2]);
    }
    if (st.isValid()) {
        const float* t = &st.getNearestSample(0.0f)[2 * point];
        result.st = Imath::V2f(t[0], t[1]);
    }
    if (colors.isValid()) {
        const float* c = &colors.getNearestSample(0.0f)[3 * point];
        result.color = Imath::V3f(c[0], c[1], c[2]);
    }
    return result;
}

} // namespace Bundled
