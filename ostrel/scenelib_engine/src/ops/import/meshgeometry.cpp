#include "ops/import/meshgeometry.h"

#include "ops/import/modelpose.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"

#include <utility>

namespace VlScenelibEngine {

namespace {

using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;

GroupAttribute makeGeometry(const ModelData::Mesh& mesh) {
    GroupBuilder others;
    if (!mesh.st.empty()) {
        others.set("st", FloatAttribute(mesh.st, 2));
    }
    if (!mesh.colors.empty()) {
        others.set("color", FloatAttribute(mesh.colors, 3));
    }
    GroupBuilder builder;
    builder.set("point", makePointGroup(mesh.points, mesh.normals, others.build()));
    if (!mesh.startIndex.empty()) {
        builder.set("poly", GroupAttribute{{"vertexList", IntAttribute(mesh.vertexList)},
                                           {"startIndex", IntAttribute(mesh.startIndex)}});
    }
    return builder.build();
}

} // namespace

MeshGeometry::MeshGeometry(ModelData::Mesh& mesh) : isPolygonal(!mesh.startIndex.empty()) {
    const bool isDeforming = !mesh.bones.empty() || !mesh.morphs.empty();
    source.points = isDeforming ? mesh.points : std::exchange(mesh.points, {});
    source.normals = isDeforming ? mesh.normals : std::exchange(mesh.normals, {});
    source.st = std::exchange(mesh.st, {});
    source.colors = std::exchange(mesh.colors, {});
    source.vertexList = std::exchange(mesh.vertexList, {});
    source.startIndex = std::exchange(mesh.startIndex, {});
}

const GroupAttribute& MeshGeometry::get() const {
    std::call_once(isMade, [this] {
        group = makeGeometry(source);
        source = {};
    });
    return group;
}

} // namespace VlScenelibEngine
