#include "scene/wirebuilder.h"

#include "VlAttribute/IntAttribute.h"
#include "scene/pointdata.h"
#include "scene/polygons.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace Bundled {

namespace {

using Edge = std::pair<std::uint32_t, std::uint32_t>;

/// With the smaller point first, in order, each once.
std::vector<Edge> edgesOf(const Polygons& polygons, const PointData& data) {
    std::vector<Edge> edges;
    edges.reserve(polygons.vertices.size());
    for (std::size_t i = 0; i < polygons.size(); ++i) {
        const auto polygon = polygons[i];
        for (std::size_t corner = 0; corner < polygon.size(); ++corner) {
            const auto from = static_cast<std::uint32_t>(polygon[corner]);
            const auto to = static_cast<std::uint32_t>(polygon[(corner + 1) % polygon.size()]);
            if (from != to && data.isFinite(from) && data.isFinite(to)) {
                edges.emplace_back(std::min(from, to), std::max(from, to));
            }
        }
    }
    std::sort(edges.begin(), edges.end());
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
    return edges;
}

} // namespace

MeshData buildWires(const Geometry& geometry) {
    MeshData wires;
    const PointData data(geometry.attributes);
    for (std::size_t point = 0; point < data.positions.size(); ++point) {
        wires.vertices.push_back(data.vertex(point));
        if (data.isFinite(point)) {
            wires.points.push_back(static_cast<std::uint32_t>(point));
        }
    }
    const VlAttribute::IntAttribute vertexList{
        geometry.attributes.getChildByName("poly.vertexList")};
    const VlAttribute::IntAttribute startIndex{
        geometry.attributes.getChildByName("poly.startIndex")};
    const Polygons polygons{vertexList.getNearestSample(0.0f), startIndex.getNearestSample(0.0f)};
    if (polygons.isValid(data.positions.size())) {
        for (const auto& [from, to] : edgesOf(polygons, data)) {
            wires.lines.insert(wires.lines.end(), {from, to});
        }
    }
    return wires;
}

} // namespace Bundled
