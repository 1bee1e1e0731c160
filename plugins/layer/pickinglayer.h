#pragma once

#include "viewer_api/plugin/ViewportLayerPlugin.h"

#include <memory>

namespace Bundled {

class GpuScene;

/// "PickingLayer": shows nothing, and keeps a picture of what stands at each pixel, drawn with
/// every picture of the viewport. Picks of the layer that are not deep then read it and draw
/// nothing: for what picks at every move of the pointer. Picks of the viewport pass it over.
/// Surfaces are hit from both sides, but for what materials say, whatever a MeshLayer leaves out.
class PickingLayer final : public ViewerPlugin::ViewportLayerPlugin {
public:
    using ViewportLayerPlugin::ViewportLayerPlugin;

    void cleanup() override { gpuScene.reset(); }
    bool usesPickingCache() override { return true; }
    void pickerDraw(const ViewerPlugin::PickRegion& region,
                    const GroupAttribute& excluded) override;

private:
    /// Held, so that it does not end with each pick.
    std::shared_ptr<GpuScene> gpuScene;
};

} // namespace Bundled
