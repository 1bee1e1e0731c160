#include "gl/gpuscene.h"

#include "scene/meshbuilder.h"
#include "scene/wirebuilder.h"

#include <algorithm>
#include <tuple>
#include <unordered_set>

namespace Bundled {

void GpuScene::draw(SceneMirror& mirror, const Frame& frame) {
    // What stands there already is drawn while this prepares what comes.
    glFlush();
    update(mirror);
    const Frustum frustum(frame.worldToClip());
    const auto visible = collect(mirror, frustum, frame.displayMode);
    drawCalls = shadedPass.draw(visible, frame);
    drawCalls += wirePass.draw(visible, frame);
    if (!mirror.getSelectedNodes().empty()) {
        Imath::Box3d bounds;
        const auto selected = collectSelected(mirror, frustum, frame.displayMode, bounds);
        outlinePass.draw(selected, bounds, frame);
    }
}

void GpuScene::drawIds(SceneMirror& mirror, const Frame& frame, const Frustum& part,
                       const IdPass::GetId& getId) {
    update(mirror);
    idPass.draw(collect(mirror, part, frame.displayMode), frame, part, getId);
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

std::span<const DrawItem> GpuScene::collect(SceneMirror& mirror, const Frustum& frustum,
                                            DisplayMode displayMode) {
    items.clear();
    runs.clear();
    std::vector<std::size_t> ends;
    for (Batch* batch : mirror.getBatches()) {
        const std::size_t first = runs.size();
        batch->appendVisibleRuns(frustum, runs);
        if (runs.size() == first) {
            continue;
        }
        ends.push_back(runs.size());
        items.push_back(itemOf(mirror, *batch, displayMode));
        DrawItem& item = items.back();
        if (item.mode != DisplayMode::Shaded) {
            item.wires = loadWires(mirror, *batch);
        }
    }
    setRuns(ends);
    return items;
}

std::span<const DrawItem> GpuScene::collectSelected(SceneMirror& mirror, const Frustum& frustum,
                                                    DisplayMode displayMode, Imath::Box3d& bounds) {
    std::vector<std::pair<Batch*, std::size_t>> instances;
    for (const std::uint32_t node : mirror.getSelectedNodes()) {
        const auto [batch, position] = mirror.getInstance(node);
        const Imath::Box3d box = batch->getInstanceBounds(position);
        if (frustum.sideOf(box) != Frustum::Side::Outside) {
            bounds.extendBy(box);
            instances.emplace_back(batch, position);
        }
    }
    std::sort(instances.begin(), instances.end(), [](const auto& a, const auto& b) {
        return std::tie(a.first->serial, a.second) < std::tie(b.first->serial, b.second);
    });
    items.clear();
    runs.clear();
    std::vector<std::size_t> ends;
    for (const auto& [batch, position] : instances) {
        const bool isFirst = items.empty() || items.back().batch != batch;
        if (!isFirst && runs.back().first + runs.back().count == position) {
            ++runs.back().count;
            continue;
        }
        runs.push_back({position, 1});
        if (isFirst) {
            items.push_back(itemOf(mirror, *batch, displayMode));
            ends.push_back(0);
        }
        ends.back() = runs.size();
    }
    setRuns(ends);
    return items;
}

DrawItem GpuScene::itemOf(const SceneMirror& mirror, const Batch& batch, DisplayMode displayMode) {
    DrawItem item;
    item.batch = &batch;
    item.material = &mirror.getMaterials()[batch.material];
    item.picture = textures.find(*item.material);
    item.mesh = &meshes.at(mirror.getGeometries().getSerial(batch.geometry));
    item.gpu = &gpuBatches.at(batch.serial);
    // Dots have no other side to show.
    if (mirror.getGeometries()[batch.geometry].kind == GeometryKind::Mesh) {
        item.mode = batch.options.fill.value_or(displayMode);
    }
    return item;
}

const GpuMesh* GpuScene::loadWires(const SceneMirror& mirror, const Batch& batch) {
    const std::uint64_t serial = mirror.getGeometries().getSerial(batch.geometry);
    auto found = wires.find(serial);
    if (found == wires.end()) {
        const Geometry& geometry = mirror.getGeometries()[batch.geometry];
        found = wires.emplace(serial, GpuMesh(buildWires(geometry))).first;
    }
    return &found->second;
}

/// Each item's runs end where `ends` says: known only now, when they stay where they are.
void GpuScene::setRuns(const std::vector<std::size_t>& ends) {
    std::size_t first = 0;
    for (std::size_t i = 0; i < items.size(); ++i) {
        items[i].runs = std::span(runs).subspan(first, ends[i] - first);
        first = ends[i];
    }
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
        const auto isUnused = [&used](const auto& entry) { return !used.contains(entry.first); };
        std::erase_if(meshes, isUnused);
        std::erase_if(wires, isUnused);
        textures.dropUnused(mirror.getMaterials());
    }
}

} // namespace Bundled
