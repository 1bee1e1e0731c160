#pragma once

#include "modeldata.h"

#include <string>
#include <unordered_map>

struct aiMesh;

/// The places of the nodes that bear a name.
using NodeIndices = std::unordered_map<std::string, std::uint32_t>;

/// Makes a mesh of an imported one: leaves out faces that refer to points that aren't there or
/// aren't finite, and points that no face refers to; points that are equal in every respect become
/// one. `uvChannel` says which texture coordinates are meant, `hasLinearColors` whether colours are
/// linear already or as they show on a screen. The bones of nodes that are not in `nodes` are left
/// out. Throws std::runtime_error when the mesh is too large for 32-bit indices.
[[nodiscard]] ModelData::Mesh readMesh(const aiMesh& mesh, unsigned uvChannel, bool hasLinearColors,
                                       const NodeIndices& nodes);
