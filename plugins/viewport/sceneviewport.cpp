#include "viewport/sceneviewport.h"

#include "gl/drawstate.h"
#include "gl/shaders.h"
#include "viewer_api/ViewportCameraPluginSuite.h"
#include "viewer_api/ViewportLayerPluginSuite.h"
#include "viewer_api/plugin/OptionIds.h"
#include "viewer_api/plugin/ViewportLayerHost.h"

#include "VlAttribute/IntAttribute.h"

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

/// Ends the driver's encoding, also when a layer throws.
class SRGBGuard {
public:
    SRGBGuard() = default;
    SRGBGuard(const SRGBGuard&) = delete;
    SRGBGuard& operator=(const SRGBGuard&) = delete;
    ~SRGBGuard() { glDisable(GL_FRAMEBUFFER_SRGB); }
};

} // namespace

SceneViewport::SceneViewport(ViewerPlugin::ViewportHost viewportHost)
    : ViewportPlugin(viewportHost), draftId(ViewerPlugin::optionId("draft")) {}

void SceneViewport::cleanup() {
    target.reset();
    draftTarget.reset();
    background = ShaderProgram();
    corners.reset();
}

void SceneViewport::draw() {
    if (!isGLReady()) {
        return;
    }
    const FramebufferGuard guard;
    if (draft) {
        drawDraft();
    } else {
        drawFine();
    }
}

void SceneViewport::drawFine() {
    target.begin(host.getWidth(), host.getHeight());
    glViewport(0, 0, host.getWidth(), host.getHeight());
    glDepthMask(GL_TRUE);
    glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    drawBackground();
    drawLayers();
    target.finish();
}

void SceneViewport::drawDraft() {
    if (!draftTarget.begin(host.getWidth(), host.getHeight())) {
        drawFine();
        return;
    }
    const SRGBGuard guard;
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

void SceneViewport::pickerDraw(const ViewerPlugin::PickRegion& region,
                               const GroupAttribute& excluded) {
    struct Guard {
        explicit Guard(bool& raised) : flag(raised) { flag = true; }
        Guard(const Guard&) = delete;
        Guard& operator=(const Guard&) = delete;
        ~Guard() { flag = false; }
        bool& flag;
    };
    const Guard guard(beingPicked);
    for (std::uint32_t i = 0; i < host.getNumberOfLayers(); ++i) {
        const ViewerPlugin::Triple layer = host.getLayerByIndex(i);
        static_cast<const ViewportLayerPluginSuite*>(layer.suite)
            ->pickerDraw(layer.instance, region.x, region.y, region.width, region.height,
                         excluded.getHandle());
    }
}

void SceneViewport::setOption(std::uint64_t optionId, const Attribute& value) {
    const bool wanted = VlAttribute::IntAttribute(value).getValue(0) != 0;
    if (optionId == draftId && wanted != draft) {
        draft = wanted;
        host.setDirty(true);
    }
}

VlAttribute::Attribute SceneViewport::getOption(std::uint64_t optionId) {
    return optionId == draftId ? VlAttribute::IntAttribute(draft ? 1 : 0) : Attribute();
}

void SceneViewport::resize(int width, int height) {
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
    const DrawState state({.depthTest = false, .depthWrite = false});
    background.use();
    glBindVertexArray(corners.create());
    glDrawArrays(GL_TRIANGLES, 0, 3);
}

} // namespace Bundled

VL_REGISTER_PLUGIN(Bundled::SceneViewport, "SceneViewport");
