#pragma once

#include "gl/gpubatch.h"
#include "gl/gpumesh.h"
#include "scene/batch.h"
#include "scene/material.h"

#include <span>

namespace Bundled {

/// What of a batch a picture can show. Borrows all of it.
struct DrawItem {
    const Batch* batch = nullptr;
    const Material* material = nullptr;
    const GpuMesh* mesh = nullptr;
    DisplayMode mode = DisplayMode::Shaded;
    /// The mesh's wires; null where the mode shows none.
    const GpuMesh* wires = nullptr;
    GpuBatch* gpu = nullptr;
    std::span<const InstanceRun> runs;

    [[nodiscard]] bool showsSurface() const noexcept {
        return mode == DisplayMode::Shaded || mode == DisplayMode::WireframeOnShaded;
    }
};

} // namespace Bundled
