#pragma once

#include "modeldata.h"

#include "VlAttribute/GroupAttribute.h"

#include <mutex>

namespace VlScenelibEngine {

/// The `geometry` group of a mesh. It is made when somebody first asks for it, once for all, so
/// that a model of many meshes shows before all of them are made. [any-thread]
class MeshGeometry {
public:
    /// Takes what it needs out of the mesh; the points of what deforms stay there too.
    explicit MeshGeometry(ModelData::Mesh& mesh);

    [[nodiscard]] bool hasPolygons() const noexcept { return isPolygonal; }
    [[nodiscard]] const VlAttribute::GroupAttribute& get() const;

private:
    const bool isPolygonal;
    mutable std::once_flag isMade;
    mutable ModelData::Mesh source; // until it is made
    mutable VlAttribute::GroupAttribute group;
};

} // namespace VlScenelibEngine
