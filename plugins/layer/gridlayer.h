#pragma once

#include "gl/glname.h"
#include "gl/shaderprogram.h"
#include "viewer_api/plugin/ViewportLayerPlugin.h"

#include <Imath/ImathBox.h>

namespace Bundled {

/// Where a ground grid lies and how fine it is.
struct GridLayout {
    Imath::V3f centre{0.0f};
    /// Where it has faded out.
    float radius = 100.0f;
    /// Between neighbouring lines: a power of ten.
    float spacing = 1.0f;

    /// For a scene in these bounds (world space; empty: a grid around the origin). The grid lies at
    /// height 0, under the scene, and reaches well beyond it.
    static GridLayout around(const Imath::Box3d& bounds);
    friend bool operator==(const GridLayout&, const GridLayout&) = default;
};

/// "GridLayer": a ground grid at height 0 that fades out, with the x axis in red and the z axis in
/// blue. It hides nothing, and gives way to surfaces that lie in the ground. Draw it after opaque
/// layers. Colours go to the bound framebuffer as linear light.
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
