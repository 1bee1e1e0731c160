#pragma once

#include "delegate/scenedelegate.h"
#include "viewer_api/plugin/ViewportLayerPlugin.h"

#include <cstdint>
#include <memory>

namespace Bundled {

/// "MeshLayer": draws the meshes, lines and points that a SceneDelegate mirrors, shaded by a soft
/// light that moves with the camera. Under another delegate it draws nothing.
///
/// Colours go to the bound framebuffer as linear light. Every location can be picked: as an object
/// that is a StringAttribute of its path.
///
/// Option "cullBackFaces" (int, 0): leaves out polygons seen from behind.
class MeshLayer final : public ViewerPlugin::ViewportLayerPlugin {
public:
    explicit MeshLayer(ViewerPlugin::ViewportLayerHost layerHost);

    void cleanup() override;
    void draw() override;
    void pickerDraw(const ViewerPlugin::PickRegion& region,
                    const GroupAttribute& excluded) override;
    void setOption(std::uint64_t optionId, const Attribute& value) override;
    Attribute getOption(std::uint64_t optionId) override;

private:
    /// Null under another delegate, and without a context.
    SceneDelegate* findDelegate();

    const std::uint64_t cullBackFacesId;
    bool cullBackFaces = false;
    std::shared_ptr<GpuScene> gpuScene;
};

} // namespace Bundled
