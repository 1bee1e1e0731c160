#pragma once

#include "gl/frame.h"
#include "gl/gpubatch.h"
#include "gl/gpumesh.h"
#include "gl/gputexture.h"
#include "scene/batch.h"
#include "scene/material.h"

#include <span>

namespace Bundled {

/// What of a batch a picture can show. Borrows all of it.
struct DrawItem {
    const Batch* batch = nullptr;
    const Material* material = nullptr;
    /// The material's; null for none, and for one that can't be read.
    const GpuTexture* picture = nullptr;
    const GpuMesh* mesh = nullptr;
    DisplayMode mode = DisplayMode::Shaded;
    /// The mesh's wires; null where the mode shows none.
    const GpuMesh* wires = nullptr;
    GpuBatch* gpu = nullptr;
    std::span<const InstanceRun> runs;

    [[nodiscard]] bool showsSurface() const noexcept {
        return mode == DisplayMode::Shaded || mode == DisplayMode::WireframeOnShaded;
    }
    /// Whether its picture lets through what is behind, here or there.
    [[nodiscard]] bool hasHoles() const noexcept { return picture && picture->hasAlpha(); }
    /// That picture; null without holes.
    [[nodiscard]] const GpuTexture* getHoles() const noexcept {
        return hasHoles() ? picture : nullptr;
    }
    /// Whether its back sides are not to be seen: as the layer has it, or the material. Never where
    /// a mirror swaps the sides of one of the batch: both show then.
    [[nodiscard]] bool leavesOutBackSides(const Frame& frame) const noexcept {
        return (frame.cullBackFaces || !material->isDoubleSided) && !batch->isMirrored;
    }
    /// Whether its back sides are not to be seen, or can be left out unseen. A camera at `eye`
    /// among the instances might stand in one of them, so it does not count as outside; nor one
    /// that is so near that it cuts front sides off.
    [[nodiscard]] bool hidesBackSides(const Frame& frame, const Imath::V3d& eye) const {
        if (leavesOutBackSides(frame)) {
            return true;
        }
        if (!mesh->isClosed() || material->opacity < 1.0f || hasHoles() || batch->isMirrored ||
            !frame.isPerspective()) {
            return false;
        }
        const Imath::V3d margin(frame.nearReach());
        const Imath::Box3d& bounds = batch->bounds;
        return !Imath::Box3d(bounds.min - margin, bounds.max + margin).intersects(eye);
    }
};

} // namespace Bundled
