#pragma once

#include "scene/geometry.h"
#include "scene/meshdata.h"

namespace Bundled {

/// Unpacks a geometry: cuts polygons into triangles and computes normals where `point.N` is
/// missing. Values are those nearest to time 0. Arrays of the wrong length count as missing, and a
/// mesh whose polygons name points that don't exist, or a point that isn't finite, gives what can
/// be drawn of it.
///
/// With normals of its own a mesh keeps one vertex a point; computed ones split a point where
/// polygons meet at an edge sharper than 45 degrees.
MeshData buildMesh(const Geometry& geometry);

} // namespace Bundled
