#pragma once

#include "gl/glname.h"
#include "gl/gpumesh.h"
#include "gl/gputexture.h"
#include "gl/shaderprogram.h"
#include "scene/scenemirror.h"

#include <Imath/ImathMatrix.h>

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace Bundled {

/// The camera and switches of one picture.
struct Frame {
    /// For row vectors.
    Imath::M44f worldToView;
    Imath::M44f viewToClip;
    bool cullBackFaces = false;

    /// From the 16 doubles that the host gives.
    static Imath::M44f matrix(const double* values);
    [[nodiscard]] bool isPerspective() const noexcept { return viewToClip[2][3] != 0.0f; }
};

/// A mirror's geometry, textures and instances in the graphics card's memory: uploaded when first
/// drawn, and from then on only what changed. All viewports of a delegate share one, as they share
/// the context. [gl-current]
class GpuScene {
public:
    /// Draws everything that is visible: opaque first, then cut-outs, then what shines through,
    /// from back to front. One draw call a batch.
    void draw(SceneMirror& mirror, const Frame& frame);

    /// Draw calls of the last picture.
    [[nodiscard]] std::size_t getNumberOfDrawCalls() const noexcept { return drawCalls; }
    /// Pictures that could not be read, each told once; empties the list.
    std::vector<std::string> takeErrors();

private:
    enum class Pass { Opaque, CutOut, Transparent };

    /// A batch's instances and how they meet its mesh.
    struct GpuBatch {
        GLBuffer instances;
        GLVertexArray vertexArray;
        std::size_t capacity = 0;
        std::uint64_t lastFrame = 0;
    };

    void upload(SceneMirror& mirror);
    void uploadInstances(Batch& batch, GpuBatch& gpuBatch, const GpuMesh& mesh);
    void dropUnused(const SceneMirror& mirror);
    [[nodiscard]] Pass passOf(const Material& material) const;
    void drawPass(SceneMirror& mirror, const std::vector<Batch*>& batches, const Frame& frame);
    void useMaterial(const Material& material);
    const GpuTexture* texture(const Material& material);

    ShaderProgram program;
    std::unordered_map<std::uint64_t, GpuMesh> meshes;
    std::unordered_map<std::uint64_t, GpuBatch> gpuBatches;
    std::unordered_map<std::string, GpuTexture> textures;
    std::vector<std::string> errors;
    std::uint64_t frameNumber = 0;
    std::uint64_t geometryDrops = 0;
    std::size_t drawCalls = 0;
};

} // namespace Bundled
