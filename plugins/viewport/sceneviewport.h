#pragma once

#include "gl/drafttarget.h"
#include "gl/rendertarget.h"
#include "gl/scissorguard.h"
#include "gl/shaderprogram.h"
#include "viewer_api/plugin/ViewportPlugin.h"
#include "viewport/interaction.h"

#include "VlAttribute/IntAttribute.h"

#include <optional>

namespace Bundled {

/// "SceneViewport": a picture of a soft gradient and, over it, the viewport's layers in order.
///
/// Layers draw linear light into a framebuffer of several samples a pixel, which is bound for them;
/// the viewport brings it to the window, averaged and encoded. A new size goes to every camera.
///
/// A pick of the viewport asks the layers in their order. Before the first pass only the region
/// that is picked is cleared of the picking surface, so that what lies around it is of earlier
/// picks; before the later passes of a deep pick all of it is.
///
/// Events (docs/events.md) go to the layers, last to first, until one takes them, and then to what
/// `Interaction` does with them. Hovering goes to all layers.
///
/// Before each picture and pick the active camera's projection gets a range of depth that fits the
/// scene, so that nothing of any size is cut off. A location that drives the camera may name its
/// own `geometry.near` and `geometry.far`, which hold.
///
/// Option "isSoftwareRenderer" (int, read only): pictures are computed on the processor, so drafts
/// are worth while; 0 before setup.
///
/// Option "draft" (int, 0): pictures come sooner, with one sample a pixel and simple light; for
/// while something moves.
///
/// Option "pickRegion" (int: x, y, width, height in pixels from the top left, and whether to look
/// behind what is seen): where "picked" looks. Option "picked" (read only): the paths of the
/// locations there, a StringAttribute, found when it is read. As after every pick, the window wants
/// a new picture.
class SceneViewport final : public ViewerPlugin::ViewportPlugin {
public:
    explicit SceneViewport(ViewerPlugin::ViewportHost viewportHost);

    void setup() override;
    void cleanup() override;
    bool event(const GroupAttribute& event) override;
    void draw() override;
    void resize(int width, int height) override;
    void hover(bool isHovering, int x, int y) override;
    std::optional<ViewerPlugin::PickResult> customPick(const ViewerPlugin::PickRegion& region,
                                                       bool deepPicking) override;
    void pickerDraw(const ViewerPlugin::PickRegion& region,
                    const GroupAttribute& excluded) override;
    void setOption(std::uint64_t optionId, const Attribute& value) override;
    Attribute getOption(std::uint64_t optionId) override;

    /// Whether layers should be quick rather than fine.
    [[nodiscard]] bool isDraft() const noexcept { return draft; }
    /// Whether a pick of the whole viewport is under way, and not one of a layer.
    [[nodiscard]] bool isBeingPicked() const noexcept { return beingPicked; }

private:
    [[nodiscard]] Attribute pick() const;
    void drawFine();
    void drawDraft();
    void drawBackground();
    void drawLayers();
    void drawRectangle(const ViewerPlugin::PickRegion& region) const;
    void fitDepth() const;

    const std::uint64_t draftId;
    const std::uint64_t softwareRendererId;
    const std::uint64_t pickRegionId;
    const std::uint64_t pickedId;
    bool draft = false;
    bool softwareRenderer = false;
    bool beingPicked = false;
    /// From the beginning of a pick until the picking surface has been cleared, or, where the pick
    /// does not get as far, until the next of the entries that clear or draw something else.
    std::optional<ScissorGuard> clearedPart;
    /// Whether nothing was drawn since ids were: so the window's picture and depths are cleared.
    bool wasPickedLast = false;
    VlAttribute::IntAttribute pickRegion;
    RenderTarget target;
    DraftTarget draftTarget;
    ShaderProgram background;
    GLVertexArray corners;
    Interaction interaction;
};

} // namespace Bundled
