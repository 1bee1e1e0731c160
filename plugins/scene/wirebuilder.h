#pragma once

#include "scene/geometry.h"
#include "scene/meshdata.h"

namespace Bundled {

/// The wires of a mesh: one vertex a point; as lines, the edges of its polygons, each once whatever
/// the number of polygons that share it; as points, all that are finite. Edges with a point that is
/// not finite are left out, and so are all edges when polygons name points that don't exist.
MeshData buildWires(const Geometry& geometry);

} // namespace Bundled
