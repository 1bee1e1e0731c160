#pragma once

#include "modeldata.h"
#include "ops/import/meshgeometry.h"
#include "ops/import/modellocation.h"

#include "VlAttribute/GroupAttribute.h"

#include <Imath/ImathBox.h>
#include <Imath/ImathMatrix.h>

#include <map>
#include <memory>
#include <span>
#include <vector>

namespace VlScenelibEngine {

/// A model at one moment.
struct ModelPose {
    std::vector<Imath::M44d> nodes;   ///< by node, in the parent's space
    std::vector<Imath::Box3d> bounds; ///< by location, in its own space; empty without geometry
    /// The `geometry.point` groups of what deforms, by location.
    std::map<std::size_t, VlAttribute::GroupAttribute> points;

    /// The location's matrices, outermost first: those of its nodes, then its camera's or light's.
    [[nodiscard]] std::vector<Imath::M44d> matricesOf(const ModelData& model,
                                                      const ModelLocation& location) const;
};

/// A `geometry.point` group with whatever else `others` has; that may be null.
[[nodiscard]] VlAttribute::GroupAttribute makePointGroup(std::span<const float> points,
                                                         std::span<const float> normals,
                                                         const VlAttribute::GroupAttribute& others);

/// The box around points, 3 values each, all finite.
[[nodiscard]] Imath::Box3d boxAround(std::span<const float> points);

/// The pose of a model in which its nodes have these matrices, and the morphs on a node these
/// weights. `meshBoxes` has the boxes of the meshes that don't deform.
[[nodiscard]] ModelPose
makeModelPose(const ModelData& model, std::span<const ModelLocation> locations,
              std::vector<Imath::M44d> nodes,
              const std::map<std::uint32_t, std::vector<float>>& morphWeights,
              std::span<const std::unique_ptr<MeshGeometry>> geometries,
              std::span<const Imath::Box3d> meshBoxes);

} // namespace VlScenelibEngine
