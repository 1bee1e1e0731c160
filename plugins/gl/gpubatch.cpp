#include "gl/gpubatch.h"

#include "gl/renderer.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace Bundled {

namespace {

constexpr GLuint kFirstInstanceAttribute = 4;
/// Above this many indices a copy's own vertices outweigh what an instance costs.
constexpr GLsizei kSmallMesh = 300;

/// As OpenGL reads it.
struct DrawCommand {
    GLuint count = 0;
    GLuint instanceCount = 1;
    GLuint firstIndex = 0;
    GLint baseVertex = 0;
    GLuint baseInstance = 0;
};

void drawRuns(const GpuMesh::IndexRange& range, std::span<const InstanceRun> runs) {
    for (const InstanceRun& run : runs) {
        const auto count = static_cast<GLsizei>(run.count);
        if (run.first == 0) {
            glDrawElementsInstanced(range.mode, range.count, GL_UNSIGNED_INT, range.offset(),
                                    count);
        } else {
            glDrawElementsInstancedBaseInstance(range.mode, range.count, GL_UNSIGNED_INT,
                                                range.offset(), count,
                                                static_cast<GLuint>(run.first));
        }
    }
}

} // namespace

void GpuBatch::bindAttributes(const GpuMesh& batchMesh) const {
    batchMesh.bindAttributes();
    glBindBuffer(GL_ARRAY_BUFFER, instances.get());
    for (GLuint row = 0; row < 5; ++row) {
        const GLuint location = kFirstInstanceAttribute + row;
        const std::size_t offset = row < 4 ? row * sizeof(float[3]) : offsetof(Instance, selected);
        glEnableVertexAttribArray(location);
        glVertexAttribPointer(location, row < 4 ? 3 : 1, GL_FLOAT, GL_FALSE, sizeof(Instance),
                              reinterpret_cast<const void*>(offset));
        glVertexAttribDivisor(location, 1);
    }
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

void GpuBatch::upload(Batch& batch, const GpuMesh& batchMesh) {
    if (!vertexArray) {
        mesh = &batchMesh;
        glBindVertexArray(vertexArray.create());
        instances.create();
        bindAttributes(*mesh);
        glBindVertexArray(0);
    }
    if (batch.instancesChanged || batch.instances.size() > capacity) {
        uploadInstances(batch);
    }
}

void GpuBatch::uploadInstances(Batch& batch) {
    const std::size_t count = batch.instances.size();
    glBindBuffer(GL_ARRAY_BUFFER, instances.get());
    if (count > capacity) {
        // Room to grow, so that a scene that arrives bit by bit is not copied at each bit.
        capacity = std::max(count, capacity + capacity / 2);
        glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(capacity * sizeof(Instance)), nullptr,
                     GL_DYNAMIC_DRAW);
        batch.forgetUploads();
    }
    batch.takeChanges([&batch](std::size_t first, std::size_t changed) {
        glBufferSubData(GL_ARRAY_BUFFER, static_cast<GLintptr>(first * sizeof(Instance)),
                        static_cast<GLsizeiptr>(changed * sizeof(Instance)),
                        &batch.instances[first]);
    });
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

bool GpuBatch::prefersSeparateDraws() const {
    return isSoftwareRenderer() && GLEW_ARB_multi_draw_indirect &&
           mesh->getRange(GpuMesh::Part::Triangles).count <= kSmallMesh;
}

void GpuBatch::draw(GpuMesh::Part part, std::span<const InstanceRun> runs) {
    const GpuMesh::IndexRange range = mesh->getRange(part);
    if (range.count == 0) {
        return;
    }
    glBindVertexArray(vertexArray.get());
    if (part != GpuMesh::Part::Triangles || !prefersSeparateDraws()) {
        drawRuns(range, runs);
        return;
    }
    glBindBuffer(GL_DRAW_INDIRECT_BUFFER, commands.create());
    if (commandCapacity < capacity) {
        commandCapacity = capacity;
        std::vector<DrawCommand> list(commandCapacity);
        for (std::size_t i = 0; i < list.size(); ++i) {
            list[i].count = static_cast<GLuint>(range.count);
            list[i].baseInstance = static_cast<GLuint>(i);
        }
        glBufferData(GL_DRAW_INDIRECT_BUFFER,
                     static_cast<GLsizeiptr>(list.size() * sizeof(DrawCommand)), list.data(),
                     GL_STATIC_DRAW);
    }
    for (const InstanceRun& run : runs) {
        glMultiDrawElementsIndirect(range.mode, GL_UNSIGNED_INT,
                                    reinterpret_cast<const void*>(run.first * sizeof(DrawCommand)),
                                    static_cast<GLsizei>(run.count), 0);
    }
    glBindBuffer(GL_DRAW_INDIRECT_BUFFER, 0);
}

void GpuBatch::drawWires(const GpuMesh& wires, GpuMesh::Part part,
                         std::span<const InstanceRun> runs) {
    const bool isNew = !wireVertexArray;
    glBindVertexArray(wireVertexArray.create());
    if (isNew) {
        bindAttributes(wires);
    }
    if (const GpuMesh::IndexRange& range = wires.getRange(part); range.count != 0) {
        drawRuns(range, runs);
    }
}

} // namespace Bundled
