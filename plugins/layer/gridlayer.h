#pragma once

#include "gl/glname.h"
#include "gl/shaderprogram.h"
#include "layer/gridlayout.h"
#include "viewer_api/plugin/ViewportLayerPlugin.h"

namespace Bundled {

/// "GridLayer": a ground grid at height 0 that fades out, with the x axis in red and the z axis in
/// blue. It hides nothing. Drawn before the layers that it lies under, it stays behind them
/// altogether; drawn after, it cuts through what stands in the ground, and gives way to surfaces
/// that lie in it. Colours go to the bound framebuffer as linear light.
class GridLayer final : public ViewerPlugin::ViewportLayerPlugin {
public:
    using ViewportLayerPlugin::ViewportLayerPlugin;

    void cleanup() override;
    void draw() override;

private:
    GridLayout layout;
    ShaderProgram program;
    GLVertexArray corners;
};

} // namespace Bundled
