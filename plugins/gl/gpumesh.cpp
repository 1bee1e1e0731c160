#include "gl/gpumesh.h"

#include "scene/closedmesh.h"

#include <cstddef>

namespace Bundled {

namespace {

template <typename Element>
GLsizeiptr bytes(const std::vector<Element>& elements) {
    return static_cast<GLsizeiptr>(elements.size() * sizeof(Element));
}

} // namespace

GpuMesh::GpuMesh(const MeshData& data) : closed(isClosedOutwards(data)) {
    glBindBuffer(GL_ARRAY_BUFFER, vertexBuffer.create());
    glBufferData(GL_ARRAY_BUFFER, bytes(data.vertices), data.vertices.data(), GL_STATIC_DRAW);
    constexpr GLenum kModes[] = {GL_TRIANGLES, GL_LINES, GL_POINTS};
    std::vector<std::uint32_t> indices;
    indices.reserve(data.triangles.size() + data.lines.size() + data.points.size());
    std::size_t kind = 0;
    for (const auto* part : {&data.triangles, &data.lines, &data.points}) {
        ranges[kind] = {kModes[kind], static_cast<GLsizei>(indices.size()),
                        static_cast<GLsizei>(part->size())};
        indices.insert(indices.end(), part->begin(), part->end());
        ++kind;
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

} // namespace Bundled
