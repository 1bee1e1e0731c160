#pragma once

#include "gl/rendertarget.h"
#include "gl/shaderprogram.h"
#include "viewer_api/plugin/ViewportPlugin.h"

namespace Bundled {

/// "SceneViewport": a picture of a soft gradient and, over it, the viewport's layers in order.
///
/// Layers draw linear light into a framebuffer of several samples a pixel, which is bound for them;
/// the viewport brings it to the window, averaged and encoded. A new size goes to every camera.
class SceneViewport final : public ViewerPlugin::ViewportPlugin {
public:
    using ViewportPlugin::ViewportPlugin;

    void cleanup() override;
    void draw() override;
    void resize(int width, int height) override;

private:
    void drawBackground();

    RenderTarget target;
    ShaderProgram background;
    GLVertexArray corners;
};

} // namespace Bundled
