#pragma once

#include "VlAttribute/GroupAttribute.h"
#include "scene/batch.h"
#include "scene/drawoptions.h"
#include "scene/geometry.h"
#include "scene/material.h"
#include "scene/sharedtable.h"

#include <cstdint>
#include <map>
#include <span>
#include <tuple>
#include <vector>

namespace Bundled {

/// A batch for each way in which locations look: equal geometries and equal materials exist once,
/// and all locations with the same pair of them, and the same draw options, share a batch.
class BatchTable {
public:
    /// The batch of everything that looks as these attributes say, and one more user; null when
    /// they show nothing. Its address is stable while it has users.
    Batch* acquire(const VlAttribute::GroupAttribute& location);
    /// One user less; its instance, if it has one, was taken out. Null is allowed.
    void release(Batch* batch);

    /// Appends an instance for the location, to be written. Answers its position.
    std::uint32_t addInstance(Batch& batch, std::uint32_t node);
    /// The last instance takes the place of the one that goes.
    void removeInstance(Batch& batch, std::uint32_t position);

    /// Those with instances, in no particular order.
    [[nodiscard]] std::span<Batch* const> getShown() const noexcept { return shown; }
    [[nodiscard]] const SharedTable<Geometry>& getGeometries() const noexcept { return geometries; }
    [[nodiscard]] const SharedTable<Material>& getMaterials() const noexcept { return materials; }

private:
    SharedTable<Geometry> geometries;
    SharedTable<Material> materials;
    /// By geometry, material and draw options. Each batch is one user of the former two.
    std::map<std::tuple<std::uint32_t, std::uint32_t, DrawOptions>, Batch> batches;
    std::vector<Batch*> shown;
    std::uint64_t lastSerial = 0;
};

} // namespace Bundled
