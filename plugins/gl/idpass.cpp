#include "gl/idpass.h"

#include "gl/capabilityguard.h"
#include "gl/drawstate.h"
#include "gl/pointsize.h"

#include <cstddef>

namespace Bundled {

namespace {

constexpr GLuint kFirstRowAttribute = 4;
constexpr GLuint kIdAttribute = 9;
/// Shown lines are one pixel wide; this many can be hit.
constexpr float kLineWidthPx = 5.0f;

} // namespace

void IdPass::draw(std::span<const DrawItem> items, const Frame& frame, const Frustum& frustum,
                  const GetId& getId) {
    gather(items, frustum, getId);
    if (instances.empty()) {
        return;
    }
    const DrawState state({.dither = false, .multisample = false});
    programs.begin(frame);
    glPointSize(kPointSizePx);
    glLineWidth(kLineWidthPx);
    glBindVertexArray(vertexArray.create());
    glBindBuffer(GL_ARRAY_BUFFER, buffer.create());
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(instances.size() * sizeof(IdInstance)),
                 instances.data(), GL_STREAM_DRAW);
    const Imath::V3d eye = frame.eye();
    for (const Share& share : shares) {
        switchCapability(GL_CULL_FACE, share.item->hidesBackSides(frame, eye));
        drawShare(share, frame);
    }
    glLineWidth(1.0f);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glBindTexture(GL_TEXTURE_2D, 0);
}

void IdPass::gather(std::span<const DrawItem> items, const Frustum& frustum, const GetId& getId) {
    instances.clear();
    shares.clear();
    for (const DrawItem& item : items) {
        const std::size_t first = instances.size();
        for (const InstanceRun& run : item.runs) {
            for (std::size_t i = run.first; i < run.first + run.count; ++i) {
                if (frustum.sideOf(item.batch->getInstanceBounds(i)) == Frustum::Side::Outside) {
                    continue;
                }
                const std::uint64_t id = getId(item.batch->nodes[i]);
                if (id != kLeftOut) {
                    instances.push_back(
                        {item.batch->instances[i].rows, static_cast<std::uint32_t>(id)});
                }
            }
        }
        if (instances.size() > first) {
            shares.push_back({&item, first, instances.size() - first});
        }
    }
}

void IdPass::drawShare(const Share& share, const Frame& frame) {
    const DrawItem& item = *share.item;
    if (item.showsSurface()) {
        bindAttributes(share, *item.mesh);
        programs.use(item.getHoles());
        for (const auto part :
             {GpuMesh::Part::Triangles, GpuMesh::Part::Lines, GpuMesh::Part::Points}) {
            drawPart(share, *item.mesh, part);
        }
        // Polygons that are left out show their wires all the same.
        if (!item.wires || !item.leavesOutBackSides(frame)) {
            return;
        }
    }
    programs.use(nullptr);
    bindAttributes(share, *item.wires);
    if (item.mode == DisplayMode::Points) {
        drawPart(share, *item.wires, GpuMesh::Part::Points);
    } else {
        drawPart(share, *item.wires, GpuMesh::Part::Lines);
        bindAttributes(share, *item.mesh);
        drawPart(share, *item.mesh, GpuMesh::Part::Points);
    }
}

void IdPass::bindAttributes(const Share& share, const GpuMesh& mesh) const {
    mesh.bindAttributes();
    glBindBuffer(GL_ARRAY_BUFFER, buffer.get());
    const auto place = [&share](std::size_t offset) {
        return reinterpret_cast<const void*>(share.first * sizeof(IdInstance) + offset);
    };
    for (GLuint row = 0; row < 4; ++row) {
        const GLuint location = kFirstRowAttribute + row;
        glEnableVertexAttribArray(location);
        glVertexAttribPointer(location, 3, GL_FLOAT, GL_FALSE, sizeof(IdInstance),
                              place(offsetof(IdInstance, rows) + row * sizeof(float[3])));
        glVertexAttribDivisor(location, 1);
    }
    glEnableVertexAttribArray(kIdAttribute);
    glVertexAttribIPointer(kIdAttribute, 1, GL_UNSIGNED_INT, sizeof(IdInstance),
                           place(offsetof(IdInstance, id)));
    glVertexAttribDivisor(kIdAttribute, 1);
}

void IdPass::drawPart(const Share& share, const GpuMesh& mesh, GpuMesh::Part part) {
    const GpuMesh::IndexRange& range = mesh.getRange(part);
    if (range.count != 0) {
        glDrawElementsInstanced(range.mode, range.count, GL_UNSIGNED_INT, range.offset(),
                                static_cast<GLsizei>(share.count));
    }
}

} // namespace Bundled
