#pragma once

#include "scene/drawoptions.h"
#include "scene/instance.h"

#include <Imath/ImathBox.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace Bundled {

/// Instances side by side in a batch.
struct InstanceRun {
    std::size_t first = 0;
    std::size_t count = 0;
};

/// Every visible copy of one geometry in one material, drawn in one way: what a single draw call
/// shows.
struct Batch {
    /// Instances that differ from what a consumer has uploaded; empty when first >= last.
    struct Range {
        std::size_t first = std::numeric_limits<std::size_t>::max();
        std::size_t last = 0;

        [[nodiscard]] bool isEmpty() const noexcept { return first >= last; }
        void include(std::size_t index) noexcept {
            first = std::min(first, index);
            last = std::max(last, index + 1);
        }
    };

    static constexpr std::size_t kBlockSize = 256;

    /// Notes that an instance was written.
    void noteChange(std::size_t position) {
        changed.include(position);
        noteBoundsChange(position);
    }
    /// Notes that the box around an instance, perhaps one that is gone now, is not what it was.
    void noteBoundsChange(std::size_t position) {
        const std::size_t block = position / kBlockSize;
        if (block >= blockChanged.size()) {
            blockChanged.resize(block + 1, true);
            blockBounds.resize(block + 1);
            blockMirrored.resize(block + 1);
        }
        blockChanged[block] = true;
        boundsChanged = true;
    }

    /// Slots in the mirror's tables.
    std::uint32_t geometry = 0;
    std::uint32_t material = 0;
    DrawOptions options;
    /// Never reused in the life of a mirror.
    std::uint64_t serial = 0;
    std::vector<Instance> instances;
    /// The location (node of the mirror) of each instance.
    std::vector<std::uint32_t> nodes;
    Range changed;
    /// World space, around all instances; out of date while `boundsChanged`.
    Imath::Box3d bounds;
    bool boundsChanged = true;
    /// The same for each run of `kBlockSize` instances: a change costs a block, not the batch.
    std::vector<Imath::Box3d> blockBounds;
    std::vector<bool> blockChanged;
    /// Whether some instance's transform turns the geometry inside out; kept with the bounds.
    bool isMirrored = false;
    std::vector<bool> blockMirrored;
    /// Its place in the mirror's list.
    std::size_t listPosition = 0;
};

} // namespace Bundled
