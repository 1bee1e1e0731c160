#pragma once

#include "modeldata.h"

#include <Imath/ImathMatrix.h>

#include <span>
#include <vector>

namespace VlScenelibEngine {

/// A mesh's points and normals in some pose.
struct DeformedPoints {
    std::vector<float> points;
    std::vector<float> normals; ///< empty when the mesh has none
};

/// Adds the mesh's morphs in the given proportions (those at rest where a weight is missing), then
/// lets its points follow their bones. `world` has the nodes' world matrices in the pose, `node` is
/// the one the mesh hangs on, in whose space the result is. A point that no bone moves stays where
/// it is in that space.
[[nodiscard]] DeformedPoints deform(const ModelData::Mesh& mesh,
                                    std::span<const float> morphWeights,
                                    std::span<const Imath::M44d> world, std::size_t node);

/// A matrix of the model's as one of the mathematics library's.
[[nodiscard]] Imath::M44d toM44d(const ModelData::Matrix& matrix);

} // namespace VlScenelibEngine
