#pragma once

#include "gl/glname.h"
#include "gl/shaderprogram.h"
#include "manipulator/shapes.h"
#include "viewer_api/plugin/ViewportHost.h"

#include <Imath/ImathMatrix.h>

#include <array>
#include <cstdint>
#include <memory>

namespace Bundled {

/// Draws the shapes of handles as a viewport sees them. One is shared by all handles. [gl-current]
class HandlePainter {
public:
    /// The one that others hold, or a new one.
    static std::shared_ptr<HandlePainter> share();

    /// In linear light, with a little light from the camera. The fourth number is the opacity;
    /// `opacityBehind` is what is left of it behind the shape's origin, seen from the camera.
    void draw(const Shape& shape, const Imath::M44d& shapeToWorld,
              const ViewerPlugin::ViewportHost& viewport, const std::array<float, 4>& color,
              float opacityBehind = 1.0f);
    /// Over everything, in just this colour.
    void drawOver(const Shape& shape, const Imath::M44d& shapeToWorld,
                  const ViewerPlugin::ViewportHost& viewport, const std::array<float, 4>& color);
    /// In the colour of an id, also what lies behind the shape's origin or only the rest.
    void drawId(const Shape& shape, const Imath::M44d& shapeToWorld,
                const ViewerPlugin::ViewportHost& viewport, std::uint64_t id, bool isWhole = true);

private:
    struct Look {
        std::array<float, 4> color;
        float opacityBehind;
        bool isLit;
    };

    void drawTriangles(const Shape& shape, const Imath::M44d& shapeToWorld,
                       const ViewerPlugin::ViewportHost& viewport, const Look& look);

    ShaderProgram program;
    GLBuffer buffer;
    GLVertexArray vertexArray;
};

} // namespace Bundled
