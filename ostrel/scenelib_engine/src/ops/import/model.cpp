#include "ops/import/model.h"

#include "ops/import/animationsampler.h"
#include "ops/import/deformation.h"
#include "ops/import/modelpose.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

namespace VlScenelibEngine {

namespace {

using Imath::Box3d;
using Imath::M44d;
using VlAttribute::DoubleAttribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

constexpr std::size_t kRememberedPoses = 4;

GroupAttribute makeMaterial(const ModelData::Material& material, const ModelData& model) {
    GroupBuilder builder;
    if (material.hasColor) {
        builder.set("baseColor", FloatAttribute(material.color, 3));
    }
    if (material.opacity < 1) {
        builder.set("opacity", FloatAttribute(material.opacity));
    }
    if (!material.isDoubleSided) {
        builder.set("doubleSided", IntAttribute(0));
    }
    if (!material.texture.empty()) {
        builder.set("texture", StringAttribute(material.texture));
    }
    if (material.embeddedTexture != ModelData::kNone) {
        builder.set(
            "textureData",
            StringAttribute(model.textures[static_cast<std::size_t>(material.embeddedTexture)]));
    }
    return builder.isValid() ? builder.build() : GroupAttribute();
}

GroupAttribute makeCamera(const ModelData::Camera& camera) {
    GroupBuilder builder;
    builder.set("projection",
                StringAttribute(camera.isOrthographic ? "orthographic" : "perspective"));
    builder.set("fov", DoubleAttribute(camera.fov));
    if (camera.isOrthographic) {
        builder.set("orthographicWidth", DoubleAttribute(camera.orthographicWidth));
    }
    if (camera.farPlane > camera.nearPlane && std::isfinite(camera.farPlane)) {
        builder.set("near", DoubleAttribute(camera.nearPlane));
        builder.set("far", DoubleAttribute(camera.farPlane));
    }
    return builder.build();
}

GroupAttribute makeLight(const ModelData::Light& light) {
    static constexpr std::array kKinds = {"point", "directional", "spot", "area", "ambient"};
    GroupBuilder builder;
    builder.set("kind", StringAttribute(kKinds[static_cast<std::size_t>(light.kind)]));
    builder.set("color", FloatAttribute(light.color, 3));
    if (light.kind == ModelData::LightKind::Spot) {
        builder.set("coneAngle", DoubleAttribute(light.coneAngle));
    }
    return builder.build();
}

// Null for the identity.
GroupAttribute makeXform(const std::vector<M44d>& matrices) {
    GroupBuilder builder;
    for (std::size_t i = 0; i < matrices.size(); ++i) {
        if (matrices[i] != M44d()) {
            const std::string name = i == 0 ? "local" : "local" + std::to_string(i + 1);
            builder.set(name + ".matrix",
                        DoubleAttribute(std::span(matrices[i].getValue(), 16), 4));
        }
    }
    return builder.isValid() ? builder.build() : GroupAttribute();
}

const char* typeOf(const ModelLocation& location, const MeshGeometry* geometry) {
    if (geometry) {
        return geometry->hasPolygons() ? "polymesh" : "points";
    }
    if (location.camera != ModelData::kNone) {
        return "camera";
    }
    if (location.light != ModelData::kNone) {
        return "light";
    }
    return location.children.empty() ? "locator" : "group";
}

} // namespace

Model::Model(ModelData model) : data(std::move(model)), locations(makeLocations(data)) {
    for (const ModelData::Material& material : data.materials) {
        materials.push_back(makeMaterial(material, data));
    }
    data.textures.clear();
    findAnimated();
    prepareMeshes();
    rest = makePose({-1, 0});
}

Model::~Model() = default;

void Model::findAnimated() {
    std::vector<bool> moves(data.nodes.size());
    std::vector<bool> morphs(data.nodes.size());
    for (const ModelData::Animation& animation : data.animations) {
        for (const ModelData::Channel& channel : animation.channels) {
            moves[channel.node] = true;
        }
        for (const ModelData::MorphChannel& channel : animation.morphChannels) {
            morphs[channel.node] = true;
        }
    }
    // Children stand after their parents.
    for (std::size_t i = locations.size(); i-- > 0;) {
        ModelLocation& location = locations[i];
        const bool isMoved =
            std::ranges::any_of(location.nodes, [&](std::uint32_t node) { return moves[node]; });
        bool isDeformed = false;
        if (location.mesh != ModelData::kNone) {
            const ModelData::Mesh& mesh = data.meshes[static_cast<std::size_t>(location.mesh)];
            location.isDeforming = !mesh.bones.empty() || !mesh.morphs.empty();
            isDeformed = (!mesh.bones.empty() && !data.animations.empty()) ||
                         (!mesh.morphs.empty() && morphs[location.spaceNode]);
        }
        // A group's bound follows what is below it.
        const bool changesBelow = std::ranges::any_of(
            location.children, [this](std::uint32_t child) { return locations[child].isAnimated; });
        location.isAnimated = isMoved || isDeformed || changesBelow;
    }
}

void Model::prepareMeshes() {
    for (ModelData::Mesh& mesh : data.meshes) {
        meshBoxes.push_back(boxAround(mesh.points));
        geometries.push_back(std::make_unique<MeshGeometry>(mesh));
    }
}

std::shared_ptr<const ModelPose> Model::makePose(const Moment& moment) const {
    std::vector<M44d> nodes;
    nodes.reserve(data.nodes.size());
    for (const ModelData::Node& node : data.nodes) {
        nodes.push_back(toM44d(node.matrix));
    }
    std::map<std::uint32_t, std::vector<float>> weights;
    if (moment.animation >= 0 &&
        static_cast<std::size_t>(moment.animation) < data.animations.size()) {
        const auto& animation = data.animations[static_cast<std::size_t>(moment.animation)];
        for (const ModelData::Channel& channel : animation.channels) {
            nodes[channel.node] = sampleMatrix(channel, moment.seconds, nodes[channel.node]);
        }
        for (const ModelData::MorphChannel& channel : animation.morphChannels) {
            weights[channel.node] = sampleWeights(channel, moment.seconds);
        }
    }
    return std::make_shared<const ModelPose>(
        makeModelPose(data, locations, std::move(nodes), weights, geometries, meshBoxes));
}

std::shared_ptr<const ModelPose> Model::getPose(const Moment& moment) const {
    // Held while the pose is made: others that want it wait rather than make it too.
    const std::lock_guard lock(posesMutex);
    const auto found =
        std::ranges::find(poses, moment, [](const auto& pose) { return pose.first; });
    if (found != poses.end()) {
        std::rotate(poses.begin(), found, found + 1);
    } else {
        auto pose = makePose(moment);
        if (poses.size() == kRememberedPoses) {
            poses.pop_back();
        }
        poses.insert(poses.begin(), {moment, std::move(pose)});
    }
    return poses.front().second;
}

GroupAttribute Model::getAttrs(std::size_t index, const Moment& moment) const {
    const ModelLocation& location = locations.at(index);
    const auto pose = location.isAnimated ? getPose(moment) : rest;
    const MeshGeometry* geometry = location.mesh != ModelData::kNone
                                       ? geometries[static_cast<std::size_t>(location.mesh)].get()
                                       : nullptr;
    GroupBuilder builder;
    builder.set("type", StringAttribute(typeOf(location, geometry)));
    builder.set("xform", makeXform(pose->matricesOf(data, location)));
    if (const Box3d& box = pose->bounds[index]; !box.isEmpty()) {
        builder.set("bound", DoubleAttribute({box.min.x, box.max.x, box.min.y, box.max.y, box.min.z,
                                              box.max.z}));
    }
    if (geometry) {
        const auto deformed = pose->points.find(index);
        builder.set(
            "geometry",
            deformed == pose->points.end()
                ? geometry->get()
                : GroupBuilder().update(geometry->get()).set("point", deformed->second).build());
        const std::int32_t material = data.meshes[static_cast<std::size_t>(location.mesh)].material;
        if (material != ModelData::kNone) {
            builder.set("material", materials[static_cast<std::size_t>(material)]);
        }
    }
    if (location.camera != ModelData::kNone) {
        builder.set("geometry",
                    makeCamera(data.cameras[static_cast<std::size_t>(location.camera)]));
    }
    if (location.light != ModelData::kNone) {
        builder.set("light", makeLight(data.lights[static_cast<std::size_t>(location.light)]));
    }
    return builder.build();
}

} // namespace VlScenelibEngine
