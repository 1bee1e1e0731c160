#include "scene/meshbuilder.h"

#include "VlAttribute/IntAttribute.h"
#include "scene/normals.h"
#include "scene/pointdata.h"
#include "scene/polygons.h"

#include <algorithm>
#include <limits>

namespace Bundled {

namespace {

using VlAttribute::IntAttribute;

constexpr float kCreaseAngleDegrees = 45.0f;
constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();

/// Gives each corner a vertex; corners at one point share one when their normals are equal.
class CornerVertices {
public:
    CornerVertices(const PointData& pointData, MeshData& meshData)
        : data(pointData), mesh(meshData), firstAtPoint(pointData.positions.size(), kNone) {}

    std::uint32_t at(std::size_t point, const Imath::V3f& normal) {
        std::uint32_t* place = &firstAtPoint[point];
        while (*place != kNone) {
            if (mesh.vertices[*place].normal == normal) {
                return *place;
            }
            place = &nextAtPoint[*place];
        }
        const auto index = static_cast<std::uint32_t>(mesh.vertices.size());
        *place = index;
        mesh.vertices.push_back(data.vertex(point));
        mesh.vertices.back().normal = normal;
        nextAtPoint.push_back(kNone);
        return index;
    }

private:
    const PointData& data;
    MeshData& mesh;
    std::vector<std::uint32_t> firstAtPoint;
    std::vector<std::uint32_t> nextAtPoint;
};

void addPolygons(const Polygons& polygons, const PointData& data, MeshData& mesh) {
    // The vertex of each corner.
    std::vector<std::uint32_t> vertices(polygons.vertices.begin(), polygons.vertices.end());
    if (data.normals.isValid()) {
        for (std::size_t point = 0; point < data.positions.size(); ++point) {
            mesh.vertices.push_back(data.vertex(point));
        }
    } else {
        const auto normals = computeCornerNormals(polygons, data.positions, kCreaseAngleDegrees);
        CornerVertices cornerVertices(data, mesh);
        for (std::size_t corner = 0; corner < normals.size(); ++corner) {
            vertices[corner] = cornerVertices.at(
                static_cast<std::size_t>(polygons.vertices[corner]), normals[corner]);
        }
    }
    std::vector<std::uint32_t> corners;
    for (std::size_t i = 0; i < polygons.size(); ++i) {
        const auto polygon = polygons[i];
        if (!std::all_of(polygon.begin(), polygon.end(), [&](std::int32_t point) {
                return data.isFinite(static_cast<std::size_t>(point));
            })) {
            continue;
        }
        const std::uint32_t* own = vertices.data() + polygons.starts[i];
        if (polygon.size() == 1) {
            mesh.points.push_back(own[0]);
        } else if (polygon.size() == 2) {
            mesh.lines.insert(mesh.lines.end(), {own[0], own[1]});
        } else {
            corners.clear();
            triangulate(polygon, data.positions, corners);
            for (const std::uint32_t corner : corners) {
                mesh.triangles.push_back(own[corner]);
            }
        }
    }
}

} // namespace

MeshData buildMesh(const Geometry& geometry) {
    MeshData mesh;
    const PointData data(geometry.attributes);
    if (geometry.kind == GeometryKind::Points) {
        for (std::size_t point = 0; point < data.positions.size(); ++point) {
            if (data.isFinite(point)) {
                mesh.points.push_back(static_cast<std::uint32_t>(mesh.vertices.size()));
                mesh.vertices.push_back(data.vertex(point));
            }
        }
        return mesh;
    }
    const IntAttribute vertexList{geometry.attributes.getChildByName("poly.vertexList")};
    const IntAttribute startIndex{geometry.attributes.getChildByName("poly.startIndex")};
    const Polygons polygons{vertexList.getNearestSample(0.0f), startIndex.getNearestSample(0.0f)};
    if (polygons.isValid(data.positions.size())) {
        addPolygons(polygons, data, mesh);
    }
    return mesh;
}

} // namespace Bundled
