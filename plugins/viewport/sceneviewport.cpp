#include "viewport/sceneviewport.h"

#include "delegate/scenedelegate.h"
#include "gl/capabilityguard.h"
#include "gl/drawstate.h"
#include "gl/renderer.h"
#include "gl/shaders.h"
#include "scene/raisedflag.h"
#include "viewer_api/ViewportCameraPluginSuite.h"
#include "viewer_api/ViewportLayerPluginSuite.h"
#include "viewer_api/plugin/OptionIds.h"
#include "viewer_api/plugin/ViewportEvent.h"
#include "viewer_api/plugin/ViewportLayerHost.h"
#include "viewport/depthfitting.h"
#include "viewport/picks.h"

#include "VlAttribute/StringAttribute.h"

#include <string>
#include <utility>
#include <vector>

namespace Bundled {

namespace {

/// Binds a framebuffer again, also when a layer throws.
class FramebufferGuard {
public:
    FramebufferGuard() { glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &bound); }
    FramebufferGuard(const FramebufferGuard&) = delete;
    FramebufferGuard& operator=(const FramebufferGuard&) = delete;
    ~FramebufferGuard() { glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(bound)); }

private:
    GLint bound = 0;
};

} // namespace

SceneViewport::SceneViewport(ViewerPlugin::ViewportHost viewportHost)
    : ViewportPlugin(viewportHost), draftId(ViewerPlugin::optionId("draft")),
      softwareRendererId(ViewerPlugin::optionId("isSoftwareRenderer")),
      pickRegionId(ViewerPlugin::optionId("pickRegion")),
      pickedId(ViewerPlugin::optionId("picked")), interaction(viewportHost) {}

void SceneViewport::setup() {
    softwareRenderer = isGLReady() && isSoftwareRenderer();
}

void SceneViewport::cleanup() {
    clearedPart.reset();
    target.reset();
    draftTarget.reset();
    background = ShaderProgram();
    corners.reset();
}

void SceneViewport::draw() {
    clearedPart.reset();
    wasPickedLast = false;
    if (!isGLReady()) {
        return;
    }
    fitDepth();
    const FramebufferGuard guard;
    if (draft) {
        drawDraft();
    } else {
        drawFine();
    }
    if (const auto rectangle = interaction.getRectangle()) {
        drawRectangle(*rectangle);
    }
}

bool SceneViewport::event(const GroupAttribute& event) {
    // A layer may remove others while it is asked.
    for (std::uint32_t i = host.getNumberOfLayers(); i-- > 0;) {
        const ViewerPlugin::Triple layer = host.getLayerByIndex(i);
        if (layer && ViewerPlugin::ViewportLayerHost(layer.host).event(event)) {
            return true;
        }
    }
    const auto parsed = ViewerPlugin::ViewportEvent::parse(event);
    return parsed && interaction.event(*parsed);
}

void SceneViewport::hover(bool isHovering, int x, int y) {
    for (std::uint32_t i = host.getNumberOfLayers(); i-- > 0;) {
        if (const ViewerPlugin::Triple layer = host.getLayerByIndex(i)) {
            ViewerPlugin::ViewportLayerHost(layer.host).hover(isHovering, x, y);
        }
    }
}

void SceneViewport::fitDepth() const {
    if (auto* delegate = ViewerPlugin::pluginCast<SceneDelegate>(host.getViewerDelegate())) {
        delegate->getMirror().update();
        fitDepthRange(host, delegate->getMirror().getBounds());
    }
}

void SceneViewport::drawFine() {
    target.begin(host.getWidth(), host.getHeight());
    glViewport(0, 0, host.getWidth(), host.getHeight());
    glDepthMask(GL_TRUE);
    // The background covers every pixel.
    glClear(GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    drawBackground();
    drawLayers();
    target.finish();
}

void SceneViewport::drawDraft() {
    // The target switches the driver's encoding on.
    const CapabilityGuard encoding(GL_FRAMEBUFFER_SRGB);
    if (!draftTarget.begin(host.getWidth(), host.getHeight())) {
        drawFine();
        return;
    }
    glViewport(0, 0, host.getWidth(), host.getHeight());
    glDepthMask(GL_TRUE);
    glClear(GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    if (draftTarget.needsBackdrop()) {
        drawBackground();
        draftTarget.storeBackdrop();
    }
    drawLayers();
    draftTarget.finish();
}

void SceneViewport::drawLayers() {
    for (std::uint32_t i = 0; i < host.getNumberOfLayers(); ++i) {
        ViewerPlugin::ViewportLayerHost(host.getLayerByIndex(i).host).draw();
    }
}

std::optional<ViewerPlugin::PickResult>
SceneViewport::customPick(const ViewerPlugin::PickRegion& region, bool /*deepPicking*/) {
    // The host picks, and first clears its surface: of that, only the region is going to be read.
    GLint bound = 0;
    if (!beingPicked && host.makeGLContextCurrent() && isGLReady()) {
        glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &bound);
        // A pick from within another one, of a layer, does not get as far as clearing.
        if (bound == 0) {
            if (std::exchange(wasPickedLast, false)) {
                // The last pick ended with clearing the window's colours and depths, which the
                // renderer puts off. On the processor, clearing depths beside stencils that stay
                // takes twice as long as clearing both.
                glClear(GL_STENCIL_BUFFER_BIT);
            }
            clearedPart.emplace();
            clearedPart->cutTo(region, host.getHeight());
        }
    }
    return std::nullopt;
}

void SceneViewport::pickerDraw(const ViewerPlugin::PickRegion& region,
                               const GroupAttribute& excluded) {
    clearedPart.reset();
    wasPickedLast = true;
    const RaisedFlag picking(beingPicked);
    fitDepth();
    for (std::uint32_t i = 0; i < host.getNumberOfLayers(); ++i) {
        const ViewerPlugin::Triple layer = host.getLayerByIndex(i);
        static_cast<const ViewportLayerPluginSuite*>(layer.suite)
            ->pickerDraw(layer.instance, region.x, region.y, region.width, region.height,
                         excluded.getHandle());
    }
}

void SceneViewport::drawRectangle(const ViewerPlugin::PickRegion& region) const {
    const ScissorGuard scissor;
    glClearColor(1.0f, 0.75f, 0.3f, 1.0f);
    const int right = region.x + region.width - 1;
    const int bottom = region.y + region.height - 1;
    const ViewerPlugin::PickRegion sides[] = {{region.x, region.y, region.width, 1},
                                              {region.x, bottom, region.width, 1},
                                              {region.x, region.y, 1, region.height},
                                              {right, region.y, 1, region.height}};
    for (const ViewerPlugin::PickRegion& side : sides) {
        scissor.cutTo(side, host.getHeight());
        glClear(GL_COLOR_BUFFER_BIT);
    }
}

void SceneViewport::setOption(std::uint64_t optionId, const Attribute& value) {
    const VlAttribute::IntAttribute numbers(value);
    if (optionId == pickRegionId) {
        pickRegion = numbers;
    } else if (const bool wanted = numbers.getValue(0) != 0;
               optionId == draftId && wanted != draft) {
        draft = wanted;
        host.setDirty(true);
    }
}

VlAttribute::Attribute SceneViewport::getOption(std::uint64_t optionId) {
    if (optionId == draftId) {
        return VlAttribute::IntAttribute(draft ? 1 : 0);
    }
    if (optionId == softwareRendererId) {
        return VlAttribute::IntAttribute(softwareRenderer ? 1 : 0);
    }
    if (optionId == pickRegionId) {
        return pickRegion;
    }
    return optionId == pickedId ? pick() : Attribute();
}

VlAttribute::Attribute SceneViewport::pick() const {
    const auto region = pickRegion.getNearestSample(0.0f);
    std::vector<std::string> paths;
    if (region.size() == 5) {
        paths = pickLocations(host, {region[0], region[1], region[2], region[3]}, region[4] != 0);
    }
    return VlAttribute::StringAttribute(paths);
}

void SceneViewport::resize(int width, int height) {
    clearedPart.reset();
    for (std::uint32_t i = 0; i < host.getNumberOfCameras(); ++i) {
        const ViewerPlugin::Triple camera = host.getCameraByIndex(i);
        static_cast<const ViewportCameraPluginSuite*>(camera.suite)
            ->setViewportDimensions(camera.instance, width, height);
    }
}

void SceneViewport::drawBackground() {
    if (!background) {
        background =
            ShaderProgram("background", kFullscreenVertexShader, kBackgroundFragmentShader);
    }
    // All samples of a pixel are alike. Like this the driver can set its triangle up by the same
    // code as that of what averages and encodes, which takes milliseconds to compile.
    const DrawState state({.depthTest = false, .depthWrite = false, .multisample = false});
    background.use();
    background.set("pixelSize", Imath::V2f(1.0f / static_cast<float>(host.getWidth()),
                                           1.0f / static_cast<float>(host.getHeight())));
    glBindVertexArray(corners.create());
    glDrawArrays(GL_TRIANGLES, 0, 3);
}

} // namespace Bundled

VL_REGISTER_PLUGIN(Bundled::SceneViewport, "SceneViewport");
