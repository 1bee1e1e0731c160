#include "scenereader.h"

#include "animationreader.h"
#include "convert.h"
#include "materialreader.h"
#include "meshreader.h"

#include <assimp/Importer.hpp>
#include <assimp/importerdesc.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr double kDegrees = 180 / std::numbers::pi;

using Vector = std::array<double, 3>;

Vector toVector(const aiVector3D& v) {
    return {v.x, v.y, v.z};
}

Vector cross(const Vector& a, const Vector& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

// False for a vector without direction, which is left as it is.
bool normalise(Vector& v) {
    const double length = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
    if (!(length > 1e-12) || !std::isfinite(length)) {
        return false;
    }
    for (double& component : v) {
        component /= length;
    }
    return true;
}

// The matrix of something at `position` whose -Z points along `direction`, with Y as close to `up`
// as can be.
ModelData::Matrix orientation(const aiVector3D& position, const aiVector3D& direction,
                              const aiVector3D& up) {
    Vector z = toVector(-direction);
    if (!normalise(z)) {
        z = {0, 0, 1};
    }
    Vector x = cross(toVector(up), z);
    if (!normalise(x)) {
        x = cross(std::abs(z[1]) < 0.9 ? Vector{0, 1, 0} : Vector{0, 0, 1}, z);
        normalise(x);
    }
    const Vector y = cross(z, x);
    return {x[0], x[1], x[2], 0, y[0],       y[1],       y[2],       0,
            z[0], z[1], z[2], 0, position.x, position.y, position.z, 1};
}

ModelData::Camera readCamera(const aiCamera& camera, const ModelData::Matrix& node, bool isGltf) {
    ModelData::Camera result;
    aiVector3D position = camera.mPosition;
    // The readers of some formats repeat the node's place in its camera.
    const aiVector3D place(static_cast<float>(node[12]), static_cast<float>(node[13]),
                           static_cast<float>(node[14]));
    if (position == place) {
        position = aiVector3D();
    }
    result.matrix = orientation(position, camera.mLookAt, camera.mUp);
    result.nearPlane = camera.mClipPlaneNear;
    result.farPlane = camera.mClipPlaneFar;
    if (camera.mOrthographicWidth > 0) {
        result.isOrthographic = true;
        result.orthographicWidth = 2.0 * camera.mOrthographicWidth;
    }
    const double aspect = camera.mAspect > 0 ? camera.mAspect : 1;
    // And that of glTF multiplies angles where tangents are meant.
    const double half = isGltf ? camera.mHorizontalFOV / 2 / aspect
                               : std::atan(std::tan(camera.mHorizontalFOV / 2) / aspect);
    if (half > 0 && std::isfinite(half)) {
        result.fov = 2 * half * kDegrees;
    }
    return result;
}

ModelData::Light readLight(const aiLight& light) {
    ModelData::Light result;
    result.matrix = orientation(light.mPosition, light.mDirection, light.mUp);
    switch (light.mType) {
    case aiLightSource_DIRECTIONAL:
        result.kind = ModelData::LightKind::Directional;
        break;
    case aiLightSource_SPOT:
        result.kind = ModelData::LightKind::Spot;
        result.coneAngle = light.mAngleOuterCone * kDegrees;
        break;
    case aiLightSource_AREA:
        result.kind = ModelData::LightKind::Area;
        break;
    case aiLightSource_AMBIENT:
        result.kind = ModelData::LightKind::Ambient;
        break;
    default:
        break;
    }
    const aiColor3D& color =
        light.mType == aiLightSource_AMBIENT ? light.mColorAmbient : light.mColorDiffuse;
    result.color = {color.r, color.g, color.b};
    return result;
}

// Reads the nodes, each before its children. A list instead of a recursion: files can nest deeper
// than the stack.
void readNodes(const aiScene& scene, ModelData& model) {
    std::vector<std::pair<const aiNode*, std::int32_t>> waiting = {
        {scene.mRootNode, ModelData::kNone}};
    while (!waiting.empty()) {
        const auto [source, parent] = waiting.back();
        waiting.pop_back();
        ModelData::Node node;
        node.name = toString(source->mName);
        node.parent = parent;
        node.matrix = toMatrix(source->mTransformation);
        if (!std::ranges::all_of(node.matrix, [](double value) { return std::isfinite(value); })) {
            node.matrix = ModelData::kIdentity;
        }
        for (unsigned i = 0; i < source->mNumMeshes; ++i) {
            if (source->mMeshes[i] < scene.mNumMeshes) {
                node.meshes.push_back(source->mMeshes[i]);
            }
        }
        const auto index = static_cast<std::int32_t>(model.nodes.size());
        model.nodes.push_back(std::move(node));
        for (unsigned i = source->mNumChildren; i-- > 0;) {
            // Some importers leave gaps.
            if (source->mChildren[i]) {
                waiting.emplace_back(source->mChildren[i], index);
            }
        }
    }
}

// Files of this format name their axes, and the importer passes the names on without heeding them.
void turnYUp(const aiScene& scene, ModelData& model) {
    std::array<int, 3> axes = {};
    std::array<int, 3> signs = {};
    constexpr std::array kNames = {"CoordAxis", "UpAxis", "FrontAxis"};
    if (!scene.mMetaData) {
        return;
    }
    for (std::size_t i = 0; i < kNames.size(); ++i) {
        if (!scene.mMetaData->Get(kNames[i], axes[i]) ||
            !scene.mMetaData->Get(std::string(kNames[i]) + "Sign", signs[i]) || axes[i] < 0 ||
            axes[i] > 2 || (signs[i] != 1 && signs[i] != -1)) {
            return;
        }
    }
    if (axes[0] == axes[1] || axes[1] == axes[2] || axes[0] == axes[2]) {
        return;
    }
    ModelData::Matrix turn = {};
    turn[15] = 1;
    for (std::size_t i = 0; i < 3; ++i) {
        turn[static_cast<std::size_t>(axes[i]) * 4 + i] = signs[i];
    }
    ModelData::Matrix& root = model.nodes.front().matrix;
    ModelData::Matrix turned = {};
    for (std::size_t row = 0; row < 4; ++row) {
        for (std::size_t column = 0; column < 4; ++column) {
            for (std::size_t k = 0; k < 4; ++k) {
                turned[row * 4 + column] += root[row * 4 + k] * turn[k * 4 + column];
            }
        }
    }
    root = turned;
}

std::string oneLine(std::string text) {
    std::ranges::replace_if(
        text, [](unsigned char c) { return c < ' '; }, ' ');
    constexpr std::size_t kLongest = 300;
    if (text.size() > kLongest) {
        text = text.substr(0, kLongest) + "...";
    }
    while (text.ends_with(' ') || text.ends_with('.')) {
        text.pop_back();
    }
    return text;
}

} // namespace

ModelData readScene(const aiScene& scene, const std::string& path, bool isGltf) {
    if (!scene.mRootNode) {
        throw std::runtime_error("there is no scene in it");
    }
    if (scene.mNumMeshes == 0 && scene.mNumCameras == 0 && scene.mNumLights == 0 &&
        scene.mRootNode->mNumChildren == 0) {
        throw std::runtime_error("there is nothing in it");
    }
    ModelData model;
    readNodes(scene, model);
    NodeIndices nodes;
    for (std::size_t i = 0; i < model.nodes.size(); ++i) {
        nodes.try_emplace(model.nodes[i].name, static_cast<std::uint32_t>(i));
    }
    turnYUp(scene, model);

    MaterialReader materials(scene, path, isGltf);
    for (unsigned i = 0; i < scene.mNumMaterials; ++i) {
        model.materials.push_back(materials.read(*scene.mMaterials[i], model));
    }
    if (std::string warning = materials.getWarning(); !warning.empty()) {
        model.warnings.push_back(oneLine(std::move(warning)));
    }
    for (unsigned i = 0; i < scene.mNumMeshes; ++i) {
        const aiMesh& source = *scene.mMeshes[i];
        const bool hasMaterial = source.mMaterialIndex < scene.mNumMaterials;
        model.meshes.push_back(readMesh(
            source,
            hasMaterial ? materials.getUVChannel(*scene.mMaterials[source.mMaterialIndex]) : 0,
            isGltf, nodes));
        if (!hasMaterial) {
            model.meshes.back().material = ModelData::kNone;
        }
    }
    for (unsigned i = 0; i < scene.mNumCameras; ++i) {
        if (const auto node = nodes.find(toString(scene.mCameras[i]->mName)); node != nodes.end()) {
            model.nodes[node->second].camera = static_cast<std::int32_t>(model.cameras.size());
            model.cameras.push_back(
                readCamera(*scene.mCameras[i], model.nodes[node->second].matrix, isGltf));
        }
    }
    for (unsigned i = 0; i < scene.mNumLights; ++i) {
        if (const auto node = nodes.find(toString(scene.mLights[i]->mName)); node != nodes.end()) {
            model.nodes[node->second].light = static_cast<std::int32_t>(model.lights.size());
            model.lights.push_back(readLight(*scene.mLights[i]));
        }
    }
    for (unsigned i = 0; i < scene.mNumAnimations; ++i) {
        model.animations.push_back(readAnimation(*scene.mAnimations[i], nodes));
    }
    return model;
}

ModelData readModelFile(const std::string& path) {
    Assimp::Importer importer;
    const aiScene* const scene = importer.ReadFile(path, aiProcess_TransformUVCoords);
    if (!scene) {
        std::string reason = oneLine(importer.GetErrorString());
        if (reason.empty() || reason.starts_with("No suitable reader found")) {
            reason = "its format is unknown";
        } else if (reason.starts_with("std::bad_alloc")) {
            reason = "it needs too much memory; it may be damaged";
        }
        throw std::runtime_error(reason);
    }
    const int index = importer.GetPropertyInteger("importerIndex", -1);
    const aiImporterDesc* const description =
        index >= 0 ? importer.GetImporterInfo(static_cast<std::size_t>(index)) : nullptr;
    const bool isGltf = description && std::string_view(description->mName).starts_with("glTF2");
    return readScene(*scene, path, isGltf);
}
