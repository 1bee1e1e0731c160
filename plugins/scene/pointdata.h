#pragma once

#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupAttribute.h"
#include "scene/meshdata.h"

#include <Imath/ImathVec.h>

#include <cstddef>
#include <vector>

namespace Bundled {

/// What a `geometry` group says about each of its points, nearest to time 0. Attributes of the
/// wrong length count as missing, and are null here.
struct PointData {
    explicit PointData(const VlAttribute::GroupAttribute& geometry);

    [[nodiscard]] bool isFinite(std::size_t point) const;
    [[nodiscard]] MeshData::Vertex vertex(std::size_t point) const;

    std::vector<Imath::V3f> positions;
    VlAttribute::FloatAttribute normals;
    VlAttribute::FloatAttribute st;
    VlAttribute::FloatAttribute colors;
};

} // namespace Bundled
