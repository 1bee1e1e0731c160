#pragma once

#include "scene/meshdata.h"

namespace Bundled {

/// Whether the triangles enclose a volume, each connected part of them with its front sides
/// outwards: seen from outside, their back sides are then never seen. Corners at one place count as
/// one point. Without triangles false.
[[nodiscard]] bool isClosedOutwards(const MeshData& mesh);

} // namespace Bundled
