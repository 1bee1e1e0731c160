#pragma once

#include "scene/polygons.h"

#include <Imath/ImathVec.h>

#include <span>
#include <vector>

namespace Bundled {

/// A normal for every corner of every polygon (as many as there are vertices), of unit length, or
/// zero where the polygon has no area.
///
/// At each point the polygons that meet there are averaged, weighted by area, but for those whose
/// own normals differ by more than the crease angle: so a sphere comes out smooth and a cube flat.
/// With 0 every polygon is flat; with 180 everything is smooth. `polygons` must be valid.
std::vector<Imath::V3f> computeCornerNormals(const Polygons& polygons,
                                             std::span<const Imath::V3f> points,
                                             float creaseAngleDegrees);

} // namespace Bundled
