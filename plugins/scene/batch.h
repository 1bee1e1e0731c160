#pragma once

#include "scene/instance.h"

#include <Imath/ImathBox.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace Bundled {

/// Every visible copy of one geometry in one material: what a single draw call shows.
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

    /// Slots in the mirror's tables.
    std::uint32_t geometry = 0;
    std::uint32_t material = 0;
    /// Never reused in the life of a mirror.
    std::uint64_t serial = 0;
    std::vector<Instance> instances;
    /// The location (node of the mirror) of each instance.
    std::vector<std::uint32_t> nodes;
    Range changed;
    /// World space, around all instances; out of date while `boundsChanged`.
    Imath::Box3d bounds;
    bool boundsChanged = true;
    /// Its place in the mirror's list.
    std::size_t listPosition = 0;
};

} // namespace Bundled
