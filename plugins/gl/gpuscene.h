#pragma once

#include "gl/drawitem.h"
#include "gl/frame.h"
#include "gl/gpubatch.h"
#include "gl/gpumesh.h"
#include "gl/idpass.h"
#include "gl/outlinepass.h"
#include "gl/shadedpass.h"
#include "gl/texturestore.h"
#include "gl/wirepass.h"
#include "scene/frustum.h"
#include "scene/scenemirror.h"

#include <cstdint>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace Bundled {

/// A mirror's geometry, textures and instances in the graphics card's memory: uploaded when first
/// drawn, and from then on only what changed. All viewports of a delegate share one, as they share
/// the context. [gl-current]
class GpuScene {
public:
    /// Draws everything that is visible, and an outline around what is selected.
    void draw(SceneMirror& mirror, const Frame& frame);

    /// Draws every location that a part of the picture can show in its own colour, as `getId` says.
    void drawIds(SceneMirror& mirror, const Frame& frame, const Frustum& part,
                 const IdPass::GetId& getId);

    /// Brings over what changed in the mirror.
    void update(SceneMirror& mirror);
    /// What a frustum in world space can see of the mirror that was brought over, to be drawn in
    /// this mode where a location doesn't ask for another; valid until the next call.
    std::span<const DrawItem> collect(SceneMirror& mirror, const Frustum& frustum,
                                      DisplayMode displayMode);
    /// The same of what is selected, without wires, at the cost of that alone; `bounds` becomes the
    /// box in world space around it.
    std::span<const DrawItem> collectSelected(SceneMirror& mirror, const Frustum& frustum,
                                              DisplayMode displayMode, Imath::Box3d& bounds);

    /// Draw calls of the last picture.
    [[nodiscard]] std::size_t getNumberOfDrawCalls() const noexcept { return drawCalls; }
    /// Pictures that could not be read, each told once; empties the list.
    std::vector<std::string> takeErrors() { return textures.takeErrors(); }

private:
    DrawItem itemOf(const SceneMirror& mirror, const Batch& batch, DisplayMode displayMode);
    const GpuMesh* loadWires(const SceneMirror& mirror, const Batch& batch);
    void setRuns(const std::vector<std::size_t>& ends);
    void dropUnused(const SceneMirror& mirror);

    std::unordered_map<std::uint64_t, GpuMesh> meshes;
    /// Of the meshes that were shown in a mode that needs them.
    std::unordered_map<std::uint64_t, GpuMesh> wires;
    std::unordered_map<std::uint64_t, GpuBatch> gpuBatches;
    TextureStore textures;
    ShadedPass shadedPass;
    WirePass wirePass;
    OutlinePass outlinePass;
    IdPass idPass;
    std::vector<DrawItem> items;
    std::vector<InstanceRun> runs;
    std::uint64_t updateNumber = 0;
    std::uint64_t geometryDrops = 0;
    std::size_t drawCalls = 0;
};

} // namespace Bundled
