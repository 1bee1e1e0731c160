#include "gl/gpuscene.h"

#include "scene/meshbuilder.h"

#include <unordered_set>

namespace Bundled {

void GpuScene::draw(SceneMirror& mirror, const Frame& frame) {
    update(mirror);
    drawCalls = shadedPass.draw(collect(mirror, Frustum(frame.worldToClip())), textures, frame);
}

void GpuScene::drawIds(SceneMirror& mirror, const Frame& frame, const Frustum& part,
                       const IdPass::GetId& getId) {
    update(mirror);
    idPass.draw(collect(mirror, part), mirror, textures, frame, part, getId);
}

void GpuScene::update(SceneMirror& mirror) {
    mirror.update();
    ++updateNumber;
    for (Batch* batch : mirror.getBatches()) {
        const std::uint64_t serial = mirror.getGeometries().getSerial(batch->geometry);
        auto mesh = meshes.find(serial);
        if (mesh == meshes.end()) {
            const Geometry& geometry = mirror.getGeometries()[batch->geometry];
            mesh = meshes.emplace(serial, GpuMesh(buildMesh(geometry))).first;
        }
        GpuBatch& gpuBatch = gpuBatches[batch->serial];
        gpuBatch.lastUpdate = updateNumber;
        gpuBatch.upload(*batch, mesh->second);
        textures.load(mirror.getMaterials()[batch->material]);
    }
    dropUnused(mirror);
}

std::span<const DrawItem> GpuScene::collect(SceneMirror& mirror, const Frustum& frustum) {
    items.clear();
    runs.clear();
    std::vector<std::size_t> ends;
    for (Batch* batch : mirror.getBatches()) {
        const std::size_t first = runs.size();
        mirror.appendVisibleRuns(*batch, frustum, runs);
        if (runs.size() == first) {
            continue;
        }
        ends.push_back(runs.size());
        items.push_back({batch,
                         &mirror.getMaterials()[batch->material],
                         &meshes.at(mirror.getGeometries().getSerial(batch->geometry)),
                         &gpuBatches.at(batch->serial),
                         {}});
    }
    // Only now do the runs stay where they are.
    std::size_t first = 0;
    for (std::size_t i = 0; i < items.size(); ++i) {
        items[i].runs = std::span(runs).subspan(first, ends[i] - first);
        first = ends[i];
    }
    return items;
}

void GpuScene::dropUnused(const SceneMirror& mirror) {
    if (gpuBatches.size() != mirror.getBatches().size()) {
        std::erase_if(gpuBatches, [this](const auto& entry) {
            return entry.second.lastUpdate != updateNumber;
        });
    }
    // Geometry that is hidden now stays: it is likely to come back.
    if (geometryDrops != mirror.getGeometries().getDropCount()) {
        geometryDrops = mirror.getGeometries().getDropCount();
        std::unordered_set<std::uint64_t> used;
        mirror.getGeometries().forEach(
            [&used](std::uint64_t serial, const Geometry&) { used.insert(serial); });
        std::erase_if(meshes, [&used](const auto& entry) { return !used.contains(entry.first); });
        textures.dropUnused(mirror.getMaterials());
    }
}

} // namespace Bundled
