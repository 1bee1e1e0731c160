#pragma once

#include "gl/glname.h"
#include "gl/gpumesh.h"
#include "scene/batch.h"

#include <cstddef>
#include <span>

namespace Bundled {

/// A batch's instances in the graphics card's memory, and how they meet their mesh. [gl-current]
class GpuBatch {
public:
    /// Brings over what changed. `mesh` stays the same one for the batch's life.
    void upload(Batch& batch, const GpuMesh& mesh);

    /// Draws these instances of a part of the mesh with the program in use: one call a run.
    void draw(GpuMesh::Part part, std::span<const InstanceRun> runs);
    /// The same with the wires of the mesh, which stay the same ones for the batch's life.
    void drawWires(const GpuMesh& wires, GpuMesh::Part part, std::span<const InstanceRun> runs);

    /// The number of the scene's update that last had this batch.
    std::uint64_t lastUpdate = 0;

private:
    void uploadInstances(Batch& batch);
    void bindAttributes(const GpuMesh& batchMesh) const;
    [[nodiscard]] bool prefersSeparateDraws() const;

    const GpuMesh* mesh = nullptr;
    GLBuffer instances;
    GLVertexArray vertexArray;
    GLVertexArray wireVertexArray;
    std::size_t capacity = 0;
    /// One command an instance, for renderers that are quicker with separate draws of small meshes
    /// than with instances.
    GLBuffer commands;
    std::size_t commandCapacity = 0;
};

} // namespace Bundled
