#pragma once

#include "gl/glname.h"
#include "scene/meshdata.h"

namespace Bundled {

/// A geometry in the graphics card's memory. [gl-current]
class GpuMesh {
public:
    explicit GpuMesh(const MeshData& data);

    [[nodiscard]] bool hasTriangles() const noexcept { return triangles != 0; }
    [[nodiscard]] bool hasLinesOrPoints() const noexcept { return lines != 0 || points != 0; }

    /// Sets the vertex attributes 0 to 3 and the index buffer of the vertex array that is bound.
    void bindAttributes() const;
    void drawTriangles(GLsizei instances) const;
    void drawLinesAndPoints(GLsizei instances) const;

private:
    GLBuffer vertexBuffer;
    GLBuffer indexBuffer;
    // Counts of indices, one kind behind the other.
    GLsizei triangles = 0;
    GLsizei lines = 0;
    GLsizei points = 0;
};

} // namespace Bundled
