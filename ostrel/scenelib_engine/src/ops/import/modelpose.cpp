#include "ops/import/modelpose.h"

#include "ops/import/deformation.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"

#include <Imath/ImathBoxAlgo.h>

#include <utility>

namespace VlScenelibEngine {

using Imath::Box3d;
using Imath::M44d;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;

std::vector<M44d> ModelPose::matricesOf(const ModelData& model,
                                        const ModelLocation& location) const {
    std::vector<M44d> matrices;
    for (const std::uint32_t node : location.nodes) {
        matrices.push_back(nodes[node]);
    }
    if (location.camera != ModelData::kNone) {
        matrices.push_back(toM44d(model.cameras[static_cast<std::size_t>(location.camera)].matrix));
    }
    if (location.light != ModelData::kNone) {
        matrices.push_back(toM44d(model.lights[static_cast<std::size_t>(location.light)].matrix));
    }
    return matrices;
}

GroupAttribute makePointGroup(std::span<const float> points, std::span<const float> normals,
                              const VlAttribute::Attribute& st) {
    VlAttribute::GroupBuilder builder;
    builder.set("P", FloatAttribute(points, 3));
    if (!normals.empty()) {
        builder.set("N", FloatAttribute(normals, 3));
    }
    builder.set("st", st);
    return builder.build();
}

Box3d boxAround(std::span<const float> points) {
    Box3d box;
    for (std::size_t i = 0; i + 2 < points.size(); i += 3) {
        box.extendBy(Imath::V3d(points[i], points[i + 1], points[i + 2]));
    }
    return box;
}

ModelPose makeModelPose(const ModelData& model, std::span<const ModelLocation> locations,
                        std::vector<M44d> nodes,
                        const std::map<std::uint32_t, std::vector<float>>& morphWeights,
                        std::span<const GroupAttribute> geometries,
                        std::span<const Box3d> meshBoxes) {
    std::vector<M44d> world = nodes;
    for (std::size_t i = 1; i < nodes.size(); ++i) {
        world[i] = nodes[i] * world[static_cast<std::size_t>(model.nodes[i].parent)];
    }
    ModelPose pose;
    pose.nodes = std::move(nodes);
    pose.bounds.resize(locations.size());
    // Children stand after their parents.
    for (std::size_t i = locations.size(); i-- > 0;) {
        const ModelLocation& location = locations[i];
        Box3d& box = pose.bounds[i];
        if (location.isDeforming) {
            const auto meshIndex = static_cast<std::size_t>(location.mesh);
            const auto weights = morphWeights.find(location.spaceNode);
            const DeformedPoints deformed =
                deform(model.meshes[meshIndex],
                       weights == morphWeights.end() ? std::span<const float>() : weights->second,
                       world, location.spaceNode);
            pose.points.emplace(i,
                                makePointGroup(deformed.points, deformed.normals,
                                               geometries[meshIndex].getChildByName("point.st")));
            box = boxAround(deformed.points);
        } else if (location.mesh != ModelData::kNone) {
            box = meshBoxes[static_cast<std::size_t>(location.mesh)];
        }
        for (const std::uint32_t child : location.children) {
            Box3d childBox = pose.bounds[child];
            if (childBox.isEmpty()) {
                continue;
            }
            M44d matrix;
            for (const M44d& inner : pose.matricesOf(model, locations[child])) {
                matrix = inner * matrix;
            }
            box.extendBy(Imath::affineTransform(childBox, matrix));
        }
    }
    return pose;
}

} // namespace VlScenelibEngine
