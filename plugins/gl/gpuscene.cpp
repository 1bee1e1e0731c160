#include "gl/gpuscene.h"

#include "gl/drawstate.h"
#include "gl/shaders.h"
#include "scene/meshbuilder.h"

#include <algorithm>
#include <cstddef>
#include <unordered_set>
#include <utility>

namespace Bundled {

namespace {

constexpr float kPointSizePx = 3.0f;
constexpr GLuint kFirstInstanceAttribute = 4;

void bindInstanceAttributes(const GLBuffer& instances) {
    glBindBuffer(GL_ARRAY_BUFFER, instances.get());
    for (GLuint row = 0; row < 5; ++row) {
        const GLuint location = kFirstInstanceAttribute + row;
        const std::size_t offset = row < 4 ? row * sizeof(float[3]) : offsetof(Instance, selected);
        glEnableVertexAttribArray(location);
        glVertexAttribPointer(location, row < 4 ? 3 : 1, GL_FLOAT, GL_FALSE, sizeof(Instance),
                              reinterpret_cast<const void*>(offset));
        glVertexAttribDivisor(location, 1);
    }
}

} // namespace

Imath::M44f Frame::matrix(const double* values) {
    Imath::M44f result;
    std::transform(values, values + 16, result.getValue(),
                   [](double value) { return static_cast<float>(value); });
    return result;
}

void GpuScene::draw(SceneMirror& mirror, const Frame& frame) {
    if (!program) {
        program = ShaderProgram("mesh", kMeshVertexShader, kMeshFragmentShader);
    }
    ++frameNumber;
    drawCalls = 0;
    upload(mirror);

    std::vector<Batch*> passes[3];
    for (Batch* batch : mirror.getBatches()) {
        const Pass pass = passOf(mirror.getMaterials()[batch->material]);
        passes[static_cast<std::size_t>(pass)].push_back(batch);
    }
    const auto& [opaque, cutOut, transparent] = passes;
    {
        const DrawState state({});
        drawPass(mirror, opaque, frame);
    }
    if (!cutOut.empty()) {
        const DrawState state({.alphaToCoverage = true});
        drawPass(mirror, cutOut, frame);
    }
    if (!transparent.empty()) {
        // Brings the boxes of batches up to date.
        static_cast<void>(mirror.getBounds());
        const auto depth = [&frame](const Batch* batch) {
            return (Imath::V3f(batch->bounds.center()) * frame.worldToView).z;
        };
        std::vector<std::pair<float, Batch*>> sorted;
        for (Batch* batch : transparent) {
            sorted.emplace_back(depth(batch), batch);
        }
        std::stable_sort(sorted.begin(), sorted.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
        std::vector<Batch*> backToFront;
        for (const auto& [distance, batch] : sorted) {
            backToFront.push_back(batch);
        }
        const DrawState state({.depthWrite = false, .blend = true});
        drawPass(mirror, backToFront, frame);
    }
    dropUnused(mirror);
}

std::vector<std::string> GpuScene::takeErrors() {
    return std::exchange(errors, {});
}

void GpuScene::upload(SceneMirror& mirror) {
    mirror.update();
    for (Batch* batch : mirror.getBatches()) {
        const std::uint64_t serial = mirror.getGeometries().getSerial(batch->geometry);
        auto mesh = meshes.find(serial);
        if (mesh == meshes.end()) {
            const Geometry& geometry = mirror.getGeometries()[batch->geometry];
            mesh = meshes.emplace(serial, GpuMesh(buildMesh(geometry))).first;
        }
        GpuBatch& gpuBatch = gpuBatches[batch->serial];
        gpuBatch.lastFrame = frameNumber;
        uploadInstances(*batch, gpuBatch, mesh->second);
        texture(mirror.getMaterials()[batch->material]);
    }
}

void GpuScene::uploadInstances(Batch& batch, GpuBatch& gpuBatch, const GpuMesh& mesh) {
    const std::size_t count = batch.instances.size();
    if (!gpuBatch.vertexArray) {
        glBindVertexArray(gpuBatch.vertexArray.create());
        mesh.bindAttributes();
        gpuBatch.instances.create();
        bindInstanceAttributes(gpuBatch.instances);
        glBindVertexArray(0);
    }
    glBindBuffer(GL_ARRAY_BUFFER, gpuBatch.instances.get());
    if (count > gpuBatch.capacity) {
        // Room to grow, so that a scene that arrives bit by bit is not copied at each bit.
        gpuBatch.capacity = std::max(count, gpuBatch.capacity + gpuBatch.capacity / 2);
        glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(gpuBatch.capacity * sizeof(Instance)),
                     nullptr, GL_DYNAMIC_DRAW);
        batch.changed = {0, count};
    }
    // Instances behind the end were taken out after they changed.
    batch.changed.last = std::min(batch.changed.last, count);
    if (!batch.changed.isEmpty()) {
        glBufferSubData(
            GL_ARRAY_BUFFER, static_cast<GLintptr>(batch.changed.first * sizeof(Instance)),
            static_cast<GLsizeiptr>((batch.changed.last - batch.changed.first) * sizeof(Instance)),
            &batch.instances[batch.changed.first]);
    }
    batch.changed = {};
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

void GpuScene::dropUnused(const SceneMirror& mirror) {
    if (gpuBatches.size() != mirror.getBatches().size()) {
        std::erase_if(gpuBatches,
                      [this](const auto& entry) { return entry.second.lastFrame != frameNumber; });
    }
    // Geometry that is hidden now stays: it is likely to come back.
    if (geometryDrops != mirror.getGeometries().getDropCount()) {
        geometryDrops = mirror.getGeometries().getDropCount();
        std::unordered_set<std::uint64_t> used;
        mirror.getGeometries().forEach(
            [&used](std::uint64_t serial, const Geometry&) { used.insert(serial); });
        std::erase_if(meshes, [&used](const auto& entry) { return !used.contains(entry.first); });
        std::unordered_set<std::string_view> files;
        mirror.getMaterials().forEach(
            [&files](std::uint64_t, const Material& material) { files.insert(material.texture); });
        std::erase_if(textures,
                      [&files](const auto& entry) { return !files.contains(entry.first); });
    }
}

GpuScene::Pass GpuScene::passOf(const Material& material) const {
    if (material.opacity < 1.0f) {
        return Pass::Transparent;
    }
    const auto found = textures.find(material.texture);
    return found != textures.end() && found->second.hasAlpha() ? Pass::CutOut : Pass::Opaque;
}

void GpuScene::drawPass(SceneMirror& mirror, const std::vector<Batch*>& batches,
                        const Frame& frame) {
    program.use();
    program.set("worldToView", frame.worldToView);
    program.set("viewToClip", frame.viewToClip);
    program.set("perspective", frame.isPerspective() ? 1.0f : 0.0f);
    program.set("surfaceTexture", 0);
    glPointSize(kPointSizePx);
    if (frame.cullBackFaces) {
        glEnable(GL_CULL_FACE);
    }
    glActiveTexture(GL_TEXTURE0);
    for (const Batch* batch : batches) {
        const GpuMesh& mesh = meshes.at(mirror.getGeometries().getSerial(batch->geometry));
        const auto instances = static_cast<GLsizei>(batch->instances.size());
        useMaterial(mirror.getMaterials()[batch->material]);
        glBindVertexArray(gpuBatches.at(batch->serial).vertexArray.get());
        if (mesh.hasTriangles()) {
            program.set("hasSurface", 1);
            mesh.drawTriangles(instances);
            ++drawCalls;
        }
        if (mesh.hasLinesOrPoints()) {
            program.set("hasSurface", 0);
            mesh.drawLinesAndPoints(instances);
            ++drawCalls;
        }
    }
    glBindTexture(GL_TEXTURE_2D, 0);
}

void GpuScene::useMaterial(const Material& material) {
    const GpuTexture* picture = texture(material);
    program.set("baseColor",
                Imath::V3f(material.baseColor[0], material.baseColor[1], material.baseColor[2]));
    program.set("opacity", material.opacity);
    program.set("hasTexture", picture ? 1 : 0);
    glBindTexture(GL_TEXTURE_2D, picture ? picture->get() : 0);
}

/// Null without a picture, and for one that can't be read.
const GpuTexture* GpuScene::texture(const Material& material) {
    const std::string& name = material.texture;
    if (name.empty()) {
        return nullptr;
    }
    auto found = textures.find(name);
    if (found == textures.end()) {
        const auto content = material.textureData.getSample(0);
        found =
            textures
                .emplace(name, content.empty() ? GpuTexture(name)
                                               : GpuTexture(readPictureContent(content[0], name)))
                .first;
        if (!found->second) {
            errors.push_back(found->second.getError());
        }
    }
    return found->second ? &found->second : nullptr;
}

} // namespace Bundled
