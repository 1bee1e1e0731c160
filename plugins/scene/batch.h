#pragma once

#include "scene/drawoptions.h"
#include "scene/frustum.h"
#include "scene/instance.h"

#include <Imath/ImathBox.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace Bundled {

/// Instances side by side in a batch.
struct InstanceRun {
    std::size_t first = 0;
    std::size_t count = 0;
};

/// Every visible copy of one geometry in one material, drawn in one way: what a single draw call
/// shows. Boxes are in world space, and around instances as they are drawn.
struct Batch {
    static constexpr std::size_t kBlockSize = 256;

    /// What is known of `kBlockSize` instances: a change costs a block, not the batch.
    struct Block {
        Imath::Box3d bounds;
        /// Whether some instance is.
        bool isMirrored = false;
        /// The former two are out of date.
        bool boundsChanged = true;
        /// Written since the consumer last took changes.
        bool instancesChanged = false;
    };

    void setInstance(std::size_t position, const Instance& instance);
    /// Notes that the box around an instance, perhaps one that is gone now, is not what it was.
    void noteBoundsChange(std::size_t position);

    /// Calls `take(first, count)` for runs of instances that hold all that were written since the
    /// last time.
    template <typename Take>
    void takeChanges(Take&& take);
    /// Counts every instance as written, for a consumer that starts afresh.
    void forgetUploads();

    /// Brings `bounds` and `isMirrored` up to date.
    void updateBounds();
    /// Empty where a place in it is farther than 1e15 from the origin, or no number.
    [[nodiscard]] Imath::Box3d getInstanceBounds(std::size_t position) const;
    /// Appends the instances that a frustum in world space can see, but for a few more near its
    /// edges.
    void appendVisibleRuns(const Frustum& frustum, std::vector<InstanceRun>& runs);

    /// Slots in the mirror's tables.
    std::uint32_t geometry = 0;
    std::uint32_t material = 0;
    DrawOptions options;
    /// Around the geometry, in local space.
    Imath::Box3d localBounds;
    /// Never reused in the life of a mirror.
    std::uint64_t serial = 0;
    std::vector<Instance> instances;
    /// The location (node of the mirror) of each instance.
    std::vector<std::uint32_t> nodes;
    std::vector<Block> blocks;
    bool instancesChanged = false;
    /// Of all instances; out of date while `boundsChanged`.
    Imath::Box3d bounds;
    bool isMirrored = false;
    bool boundsChanged = true;
    /// Locations that look like this, seen or not.
    std::size_t users = 0;
    /// Its place in the list of those with instances.
    std::size_t listPosition = 0;
};

template <typename Take>
void Batch::takeChanges(Take&& take) {
    if (!std::exchange(instancesChanged, false)) {
        return;
    }
    for (std::size_t block = 0; block < blocks.size(); ++block) {
        const std::size_t first = block * kBlockSize;
        while (block < blocks.size() && std::exchange(blocks[block].instancesChanged, false)) {
            ++block;
        }
        // Instances behind the end were taken out after they changed.
        const std::size_t end = std::min(block * kBlockSize, instances.size());
        if (first < end) {
            take(first, end - first);
        }
    }
}

} // namespace Bundled
