#include "gl/gpumesh.h"

#include <cstddef>

namespace Bundled {

namespace {

template <typename Element>
GLsizeiptr bytes(const std::vector<Element>& elements) {
    return static_cast<GLsizeiptr>(elements.size() * sizeof(Element));
}

const void* indexOffset(GLsizei index) {
    return reinterpret_cast<const void*>(static_cast<std::size_t>(index) * sizeof(std::uint32_t));
}

} // namespace

GpuMesh::GpuMesh(const MeshData& data)
    : triangles(static_cast<GLsizei>(data.triangles.size())),
      lines(static_cast<GLsizei>(data.lines.size())),
      points(static_cast<GLsizei>(data.points.size())) {
    glBindBuffer(GL_ARRAY_BUFFER, vertexBuffer.create());
    glBufferData(GL_ARRAY_BUFFER, bytes(data.vertices), data.vertices.data(), GL_STATIC_DRAW);
    std::vector<std::uint32_t> indices;
    indices.reserve(data.triangles.size() + data.lines.size() + data.points.size());
    for (const auto* part : {&data.triangles, &data.lines, &data.points}) {
        indices.insert(indices.end(), part->begin(), part->end());
    }
    // Filled as an array buffer: the element binding belongs to whatever vertex array is bound.
    glBindBuffer(GL_ARRAY_BUFFER, indexBuffer.create());
    glBufferData(GL_ARRAY_BUFFER, bytes(indices), indices.data(), GL_STATIC_DRAW);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

void GpuMesh::bindAttributes() const {
    struct Attribute {
        GLint size;
        std::size_t offset;
    };
    const Attribute attributes[] = {{3, offsetof(MeshData::Vertex, position)},
                                    {3, offsetof(MeshData::Vertex, normal)},
                                    {2, offsetof(MeshData::Vertex, st)},
                                    {3, offsetof(MeshData::Vertex, color)}};
    glBindBuffer(GL_ARRAY_BUFFER, vertexBuffer.get());
    GLuint location = 0;
    for (const Attribute& attribute : attributes) {
        glEnableVertexAttribArray(location);
        glVertexAttribPointer(location, attribute.size, GL_FLOAT, GL_FALSE,
                              sizeof(MeshData::Vertex),
                              reinterpret_cast<const void*>(attribute.offset));
        ++location;
    }
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, indexBuffer.get());
}

void GpuMesh::drawTriangles(GLsizei instances) const {
    if (triangles != 0) {
        glDrawElementsInstanced(GL_TRIANGLES, triangles, GL_UNSIGNED_INT, indexOffset(0),
                                instances);
    }
}

void GpuMesh::drawLinesAndPoints(GLsizei instances) const {
    if (lines != 0) {
        glDrawElementsInstanced(GL_LINES, lines, GL_UNSIGNED_INT, indexOffset(triangles),
                                instances);
    }
    if (points != 0) {
        glDrawElementsInstanced(GL_POINTS, points, GL_UNSIGNED_INT, indexOffset(triangles + lines),
                                instances);
    }
}

} // namespace Bundled
