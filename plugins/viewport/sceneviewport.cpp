#include "viewport/sceneviewport.h"

#include "gl/drawstate.h"
#include "gl/shaders.h"
#include "viewer_api/ViewportCameraPluginSuite.h"
#include "viewer_api/plugin/ViewportLayerHost.h"

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

void SceneViewport::cleanup() {
    target.reset();
    background = ShaderProgram();
    corners.reset();
}

void SceneViewport::draw() {
    if (!isGLReady()) {
        return;
    }
    const FramebufferGuard guard;
    const int width = host.getWidth();
    const int height = host.getHeight();
    target.begin(width, height);
    glViewport(0, 0, width, height);
    glDepthMask(GL_TRUE);
    glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    drawBackground();
    for (std::uint32_t i = 0; i < host.getNumberOfLayers(); ++i) {
        ViewerPlugin::ViewportLayerHost(host.getLayerByIndex(i).host).draw();
    }
    target.finish();
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
