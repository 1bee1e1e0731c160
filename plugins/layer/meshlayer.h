#pragma once

#include "delegate/scenedelegate.h"
#include "viewer_api/plugin/ViewportLayerPlugin.h"

#include <cstdint>
#include <memory>

namespace Bundled {

/// "MeshLayer": draws the meshes, lines and points that a SceneDelegate mirrors, shaded by a soft
/// light that moves with the camera, and an outline around what is selected. Under another delegate
/// it draws nothing.
///
/// Colours go to the bound framebuffer as linear light. Every location can be picked where it is
/// seen: as an object that is a StringAttribute of its path.
///
/// Option "cullBackFaces" (int, 0): leaves out polygons seen from behind, and picks don't hit them;
/// not of mirrored locations, nor of those that share their geometry and material.
///
/// Option "displayMode" (string, "shaded"): what of meshes is drawn: "shaded", "wireframe" (the
/// edges of polygons), "wireframeOnShaded" or "points". A location may ask for a mode of its own,
/// by its attribute `viewer.default.drawOptions.fill`. Any other value changes nothing.
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
    const std::uint64_t displayModeId;
    bool cullBackFaces = false;
    DisplayMode displayMode = DisplayMode::Shaded;
    std::shared_ptr<GpuScene> gpuScene;
};

} // namespace Bundled
