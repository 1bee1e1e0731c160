#include "scene/batch.h"

#include <cmath>

namespace Bundled {

namespace {

/// Lengths are squared in single precision as they are drawn: what is farther away than this shows
/// nothing.
constexpr double kFarthest = 1e15;

} // namespace

void Batch::setInstance(std::size_t position, const Instance& instance) {
    instances[position] = instance;
    noteBoundsChange(position);
    blocks[position / kBlockSize].instancesChanged = true;
    instancesChanged = true;
}

void Batch::noteBoundsChange(std::size_t position) {
    const std::size_t block = position / kBlockSize;
    if (block >= blocks.size()) {
        blocks.resize(block + 1);
    }
    blocks[block].boundsChanged = true;
    boundsChanged = true;
}

void Batch::forgetUploads() {
    for (Block& block : blocks) {
        block.instancesChanged = true;
    }
    instancesChanged = true;
}

void Batch::updateBounds() {
    if (!std::exchange(boundsChanged, false)) {
        return;
    }
    bounds = Imath::Box3d();
    isMirrored = false;
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        Block& block = blocks[i];
        if (std::exchange(block.boundsChanged, false)) {
            block.bounds = Imath::Box3d();
            block.isMirrored = false;
            const std::size_t end = std::min((i + 1) * kBlockSize, instances.size());
            for (std::size_t j = i * kBlockSize; j < end; ++j) {
                block.bounds.extendBy(getInstanceBounds(j));
                block.isMirrored = block.isMirrored || instances[j].isMirrored();
            }
        }
        bounds.extendBy(block.bounds);
        isMirrored = isMirrored || block.isMirrored;
    }
}

Imath::Box3d Batch::getInstanceBounds(std::size_t position) const {
    if (localBounds.isEmpty()) {
        return {};
    }
    const Imath::V3d center = localBounds.center();
    const Imath::V3d half = localBounds.max - center;
    const auto& rows = instances[position].rows;
    Imath::Box3d box;
    for (unsigned axis = 0; axis < 3; ++axis) {
        const double middle = center.x * rows[0][axis] + center.y * rows[1][axis] +
                              center.z * rows[2][axis] + rows[3][axis];
        const double reach = half.x * std::abs(rows[0][axis]) + half.y * std::abs(rows[1][axis]) +
                             half.z * std::abs(rows[2][axis]);
        if (!(std::abs(middle) + reach < kFarthest)) {
            return {};
        }
        box.min[axis] = middle - reach;
        box.max[axis] = middle + reach;
    }
    return box;
}

void Batch::appendVisibleRuns(const Frustum& frustum, std::vector<InstanceRun>& runs) {
    updateBounds();
    switch (frustum.sideOf(bounds)) {
    case Frustum::Side::Outside:
        return;
    case Frustum::Side::Inside:
        runs.push_back({0, instances.size()});
        return;
    case Frustum::Side::Across:
        break;
    }
    const std::size_t ownRuns = runs.size();
    for (std::size_t first = 0; first < instances.size(); first += kBlockSize) {
        if (frustum.sideOf(blocks[first / kBlockSize].bounds) == Frustum::Side::Outside) {
            continue;
        }
        const std::size_t count = std::min(kBlockSize, instances.size() - first);
        if (runs.size() > ownRuns && runs.back().first + runs.back().count == first) {
            runs.back().count += count;
        } else {
            runs.push_back({first, count});
        }
    }
}

} // namespace Bundled
