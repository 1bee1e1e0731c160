#include "ops/import/deformation.h"

#include <Imath/ImathVec.h>

#include <cmath>
#include <cstddef>

namespace VlScenelibEngine {

namespace {

using Imath::M44d;
using Imath::V3d;

void addMorphs(const ModelData::Mesh& mesh, std::span<const float> weights,
               DeformedPoints& result) {
    for (std::size_t m = 0; m < mesh.morphs.size(); ++m) {
        const ModelData::Morph& morph = mesh.morphs[m];
        const float weight = m < weights.size() ? weights[m] : morph.weight;
        if (weight == 0) {
            continue;
        }
        for (std::size_t i = 0; i < morph.pointOffsets.size(); ++i) {
            result.points[i] += weight * morph.pointOffsets[i];
        }
        for (std::size_t i = 0; i < morph.normalOffsets.size(); ++i) {
            result.normals[i] += weight * morph.normalOffsets[i];
        }
    }
}

V3d vectorAt(const std::vector<float>& values, std::size_t index) {
    return {values[index * 3], values[index * 3 + 1], values[index * 3 + 2]};
}

void setVector(std::vector<float>& values, std::size_t index, const V3d& vector) {
    values[index * 3] = static_cast<float>(vector.x);
    values[index * 3 + 1] = static_cast<float>(vector.y);
    values[index * 3 + 2] = static_cast<float>(vector.z);
}

bool isFinite(const V3d& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

void followBones(const ModelData::Mesh& mesh, std::span<const M44d> world, std::size_t node,
                 DeformedPoints& result) {
    if (std::abs(world[node].determinant()) < 1e-300) {
        return; // nothing of that space can be seen
    }
    const M44d fromWorld = world[node].inverse();
    const std::size_t count = result.points.size() / 3;
    std::vector<double> weights(count);
    std::vector<V3d> points(count, V3d(0));
    std::vector<V3d> normals(result.normals.size() / 3, V3d(0));
    for (const ModelData::Bone& bone : mesh.bones) {
        const M44d matrix = toM44d(bone.toBone) * world[bone.node] * fromWorld;
        for (std::size_t i = 0; i < bone.points.size(); ++i) {
            const std::size_t point = bone.points[i];
            const double weight = bone.weights[i];
            weights[point] += weight;
            points[point] += vectorAt(result.points, point) * matrix * weight;
            if (!normals.empty()) {
                V3d normal;
                matrix.multDirMatrix(vectorAt(result.normals, point), normal);
                normals[point] += normal * weight;
            }
        }
    }
    for (std::size_t i = 0; i < count; ++i) {
        // Weights ought to add up to one; files round them.
        const V3d point = points[i] / weights[i];
        if (weights[i] > 1e-6 && isFinite(point)) {
            setVector(result.points, i, point);
            if (!normals.empty() && isFinite(normals[i])) {
                setVector(result.normals, i, normals[i].normalized());
            }
        }
    }
}

} // namespace

DeformedPoints deform(const ModelData::Mesh& mesh, std::span<const float> morphWeights,
                      std::span<const M44d> world, std::size_t node) {
    DeformedPoints result{mesh.points, mesh.normals};
    addMorphs(mesh, morphWeights, result);
    if (!mesh.bones.empty()) {
        followBones(mesh, world, node, result);
    }
    return result;
}

M44d toM44d(const ModelData::Matrix& matrix) {
    M44d result;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            result[row][column] = matrix[static_cast<std::size_t>(row * 4 + column)];
        }
    }
    return result;
}

} // namespace VlScenelibEngine
