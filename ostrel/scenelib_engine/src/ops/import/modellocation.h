#pragma once

#include "modeldata.h"

#include "VlAttribute/StringAttribute.h"

#include <cstdint>
#include <vector>

namespace VlScenelibEngine {

/// A location of a model: one of its nodes, or something that hangs on a node.
struct ModelLocation {
    /// What its matrix is made of, outermost first: a node and the pivots around it. Empty for what
    /// hangs on the parent location's node.
    std::vector<std::uint32_t> nodes;
    /// What it is; at most one of the three, a group or locator if none.
    std::int32_t mesh = ModelData::kNone;
    std::int32_t camera = ModelData::kNone;
    std::int32_t light = ModelData::kNone;

    std::vector<std::uint32_t> children;     ///< locations; each stands after its parent
    VlAttribute::StringAttribute childNames; ///< null without children

    /// The node whose space the location's own content is in.
    std::uint32_t spaceNode = 0;
    bool isDeforming = false;
    bool isAnimated = false;
};

/// The locations of a model's nodes. The first is the model's own and always a group. Elsewhere a
/// node that has nothing but one mesh, camera or light is that itself; otherwise these become its
/// first children. Names are safe, and unique among siblings.
[[nodiscard]] std::vector<ModelLocation> makeLocations(const ModelData& model);

} // namespace VlScenelibEngine
