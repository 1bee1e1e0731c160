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
                              const GroupAttribute& others) {
    VlAttribute::GroupBuilder builder;
    builder.update(others);
    builder.set("P", FloatAttribute(points, 3));
    if (!normals.empty()) {
        builder.set("N", FloatAttribute(normals, 3));
    }
    return builder.build();
}

Box3d boxAround(std::span<const float> points) {
    Box3d box;
    for (std::size_t i = 0; i + 2 < points.size(); i += 3) {
        box.extendBy(Imath::V3d(points[i], points[i + 1], points[i + 2]));
    }
    return box;
}

namespace {

// The bounds of groups around those of the meshes below them. Each mesh's box is turned into the
// space of each of its ancestors: boxes around boxes around boxes would grow at every level that
// turns.
class GroupBounds {
public:
    GroupBounds(const ModelData& model, std::span<const ModelLocation> modelLocations,
                ModelPose& modelPose)
        : locations(modelLocations), pose(modelPose), parents(locations.size()),
          matrices(locations.size()) {
        std::vector<std::size_t> depths(locations.size());
        for (std::size_t i = 0; i < locations.size(); ++i) {
            for (const M44d& inner : pose.matricesOf(model, locations[i])) {
                matrices[i] = inner * matrices[i];
            }
            for (const std::uint32_t child : locations[i].children) {
                parents[child] = i;
                depths[child] = depths[i] + 1;
            }
            work += pose.bounds[i].isEmpty() ? 0 : depths[i];
        }
    }

    void add() {
        // Meshes in chains of thousands would take all day.
        constexpr std::size_t kMuchWork = 1000000;
        work <= kMuchWork ? addMeshes() : addChildren();
    }

private:
    void addMeshes() {
        for (std::size_t i = 1; i < locations.size(); ++i) {
            if (locations[i].mesh == ModelData::kNone || pose.bounds[i].isEmpty()) {
                continue;
            }
            const Box3d box = pose.bounds[i];
            M44d matrix = matrices[i];
            for (std::size_t group = parents[i];; group = parents[group]) {
                pose.bounds[group].extendBy(Imath::affineTransform(box, matrix));
                if (group == 0) {
                    break;
                }
                matrix *= matrices[group];
            }
        }
    }

    void addChildren() {
        // Children stand after their parents.
        for (std::size_t i = locations.size(); i-- > 1;) {
            if (!pose.bounds[i].isEmpty()) {
                pose.bounds[parents[i]].extendBy(
                    Imath::affineTransform(pose.bounds[i], matrices[i]));
            }
        }
    }

    std::span<const ModelLocation> locations;
    ModelPose& pose;
    std::vector<std::size_t> parents;
    std::vector<M44d> matrices; // into the parent's space
    std::size_t work = 0;
};

} // namespace

ModelPose makeModelPose(const ModelData& model, std::span<const ModelLocation> locations,
                        std::vector<M44d> nodes,
                        const std::map<std::uint32_t, std::vector<float>>& morphWeights,
                        std::span<const std::unique_ptr<MeshGeometry>> geometries,
                        std::span<const Box3d> meshBoxes) {
    std::vector<M44d> world = nodes;
    for (std::size_t i = 1; i < nodes.size(); ++i) {
        world[i] = nodes[i] * world[static_cast<std::size_t>(model.nodes[i].parent)];
    }
    ModelPose pose;
    pose.nodes = std::move(nodes);
    pose.bounds.resize(locations.size());
    for (std::size_t i = 0; i < locations.size(); ++i) {
        const ModelLocation& location = locations[i];
        Box3d& box = pose.bounds[i];
        if (location.isDeforming) {
            const auto meshIndex = static_cast<std::size_t>(location.mesh);
            const auto weights = morphWeights.find(location.spaceNode);
            const DeformedPoints deformed =
                deform(model.meshes[meshIndex],
                       weights == morphWeights.end() ? std::span<const float>() : weights->second,
                       world, location.spaceNode);
            pose.points.emplace(
                i, makePointGroup(
                       deformed.points, deformed.normals,
                       GroupAttribute(geometries[meshIndex]->get().getChildByName("point"))));
            box = boxAround(deformed.points);
        } else if (location.mesh != ModelData::kNone) {
            box = meshBoxes[static_cast<std::size_t>(location.mesh)];
        }
    }
    GroupBounds(model, locations, pose).add();
    return pose;
}

} // namespace VlScenelibEngine
