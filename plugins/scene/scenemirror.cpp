#include "scene/scenemirror.h"

#include <Imath/ImathBoxAlgo.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace Bundled {

namespace {

/// "" for a top-level location.
std::string_view parentPath(std::string_view path) {
    const auto slash = path.rfind('/');
    return slash == std::string_view::npos || slash == 0 ? std::string_view{}
                                                         : path.substr(0, slash);
}

/// The identity unless the attribute holds 16 values.
Imath::M44d toMatrix(const VlAttribute::DoubleAttribute& xform) {
    Imath::M44d matrix;
    const auto values = xform.getNearestSample(0.0f);
    if (values.size() == 16) {
        std::memcpy(matrix.getValue(), values.data(), 16 * sizeof(double));
    }
    return matrix;
}

} // namespace

LocationUpdate LocationUpdate::fromEvent(const ViewerLocationEvent& event) {
    using VlAttribute::Attribute;
    return {event.locationPath,
            VlAttribute::GroupAttribute(Attribute::CreateAndRetain(event.attributes)),
            VlAttribute::DoubleAttribute(Attribute::CreateAndRetain(event.xform)), event.flags};
}

void SceneMirror::apply(const LocationUpdate& update) {
    if (update.path.empty()) {
        return;
    }
    if (update.flags & kVlLocationEventRemoved) {
        if (const std::uint32_t node = find(update.path); node != kNone) {
            removeSubtree(node);
        }
        return;
    }
    const std::uint32_t node = findOrCreate(update.path);
    if (!flags[node].known) {
        flags[node].known = true;
        ++known;
    }
    if (update.flags & kVlLocationEventXformChanged) {
        xforms[node] = update.xform;
        flags[node].absolute = (update.flags & kVlLocationEventXformAbsolute) != 0;
        markDirty(node);
    }
    if (update.flags & kVlLocationEventHiddenChanged) {
        flags[node].hidden = (update.flags & kVlLocationEventHidden) != 0;
    }
    if (update.flags & kVlLocationEventAttributesChanged) {
        setContent(node, update.attributes);
    }
    placeInBatch(node);
}

void SceneMirror::setSelection(std::span<const char* const> selectedPaths) {
    const auto mark = [this](std::string_view path, bool isSelected) {
        if (const std::uint32_t node = find(path); node != kNone) {
            flags[node].selectedItself = isSelected;
            markDirty(node);
        }
    };
    for (const std::string& path : selection) {
        mark(path, false);
    }
    selection.clear();
    for (const char* path : selectedPaths) {
        selection.emplace(path);
        mark(path, true);
    }
}

void SceneMirror::update() {
    // An ancestor's walk covers its descendants, so those that come later are found clean.
    std::sort(dirtyNodes.begin(), dirtyNodes.end(),
              [this](std::uint32_t a, std::uint32_t b) { return links[a].depth < links[b].depth; });
    for (const std::uint32_t node : dirtyNodes) {
        if (flags[node].dirty) {
            refreshSubtree(node);
        }
    }
    dirtyNodes.clear();
}

void SceneMirror::forgetUploads() {
    for (Batch* batch : batchList) {
        batch->changed = {0, batch->instances.size()};
    }
}

Imath::Box3d SceneMirror::getBounds() {
    Imath::Box3d all;
    for (Batch* batch : batchList) {
        if (batch->boundsChanged) {
            updateBounds(*batch);
        }
        all.extendBy(batch->bounds);
    }
    return all;
}

void SceneMirror::appendVisibleRuns(Batch& batch, const Frustum& frustum,
                                    std::vector<InstanceRun>& runs) {
    if (batch.boundsChanged) {
        updateBounds(batch);
    }
    switch (frustum.sideOf(batch.bounds)) {
    case Frustum::Side::Outside:
        return;
    case Frustum::Side::Inside:
        runs.push_back({0, batch.instances.size()});
        return;
    case Frustum::Side::Across:
        break;
    }
    const std::size_t ownRuns = runs.size();
    for (std::size_t first = 0; first < batch.instances.size(); first += Batch::kBlockSize) {
        const Imath::Box3d& box = batch.blockBounds[first / Batch::kBlockSize];
        if (frustum.sideOf(box) == Frustum::Side::Outside) {
            continue;
        }
        const std::size_t count = std::min(Batch::kBlockSize, batch.instances.size() - first);
        if (runs.size() > ownRuns && runs.back().first + runs.back().count == first) {
            runs.back().count += count;
        } else {
            runs.push_back({first, count});
        }
    }
}

void SceneMirror::updateBounds(Batch& batch) const {
    const Imath::Box3d& local = geometries[batch.geometry].bounds;
    batch.bounds = Imath::Box3d();
    batch.isMirrored = false;
    for (std::size_t block = 0; block < batch.blockBounds.size(); ++block) {
        if (batch.blockChanged[block]) {
            Imath::Box3d box;
            bool isMirrored = false;
            const std::size_t end = std::min((block + 1) * Batch::kBlockSize, batch.nodes.size());
            for (std::size_t i = block * Batch::kBlockSize; i < end && !local.isEmpty(); ++i) {
                const Imath::M44d& world = worlds[batch.nodes[i]];
                box.extendBy(Imath::transform(local, world));
                isMirrored = isMirrored || world.determinant() < 0.0;
            }
            batch.blockMirrored[block] = isMirrored;
            batch.blockBounds[block] = box;
            batch.blockChanged[block] = false;
        }
        batch.bounds.extendBy(batch.blockBounds[block]);
        batch.isMirrored = batch.isMirrored || batch.blockMirrored[block];
    }
    batch.boundsChanged = false;
}

Imath::Box3d SceneMirror::getInstanceBounds(const Batch& batch, std::size_t position) const {
    return Imath::transform(geometries[batch.geometry].bounds, worlds[batch.nodes[position]]);
}

bool SceneMirror::hasLocation(std::string_view path) const {
    const std::uint32_t node = find(path);
    return node != kNone && flags[node].known;
}

std::vector<std::string> SceneMirror::getLocationPaths() const {
    std::vector<std::string> told;
    told.reserve(known);
    for (const auto& [path, node] : nodeByPath) {
        if (flags[node].known) {
            told.push_back(path);
        }
    }
    std::sort(told.begin(), told.end());
    return told;
}

Imath::M44d SceneMirror::getWorldXform(std::string_view path) const {
    const std::uint32_t node = find(path);
    return node == kNone ? Imath::M44d() : worlds[node];
}

std::uint32_t SceneMirror::find(std::string_view path) const {
    const auto found = nodeByPath.find(path);
    return found == nodeByPath.end() ? kNone : found->second;
}

std::uint32_t SceneMirror::findOrCreate(std::string_view path) {
    std::uint32_t node = find(path);
    if (node != kNone) {
        return node;
    }
    // Everything that is missing on the way from the top, topmost first.
    std::vector<std::string_view> missing;
    for (std::string_view step = path; !step.empty() && node == kNone;) {
        missing.push_back(step);
        step = parentPath(step);
        node = step.empty() ? kNone : find(step);
    }
    std::for_each(missing.rbegin(), missing.rend(), [&](std::string_view step) {
        node = takeNode(node);
        const auto place = nodeByPath.emplace(step, node).first;
        paths[node] = &place->first;
        flags[node].selectedItself = selection.contains(step);
        markDirty(node);
    });
    return node;
}

std::uint32_t SceneMirror::takeNode(std::uint32_t parent) {
    auto node = static_cast<std::uint32_t>(links.size());
    if (freeNodes.empty()) {
        links.emplace_back();
        flags.emplace_back();
        contents.emplace_back();
        xforms.emplace_back();
        worlds.emplace_back();
        paths.push_back(nullptr);
    } else {
        node = freeNodes.back();
        freeNodes.pop_back();
    }
    if (parent != kNone) {
        Links& own = links[node];
        own.parent = parent;
        own.depth = links[parent].depth + 1;
        own.nextSibling = std::exchange(links[parent].firstChild, node);
        if (own.nextSibling != kNone) {
            links[own.nextSibling].previousSibling = node;
        }
    }
    return node;
}

void SceneMirror::removeSubtree(std::uint32_t top) {
    std::uint32_t above = links[top].parent;
    unlink(top);
    walk.assign(1, top);
    for (std::size_t i = 0; i < walk.size(); ++i) {
        for (std::uint32_t child = links[walk[i]].firstChild; child != kNone;
             child = links[child].nextSibling) {
            walk.push_back(child);
        }
    }
    for (const std::uint32_t node : walk) {
        freeNode(node);
    }
    // Ancestors that nobody told of stood only for what has gone now.
    while (above != kNone && !flags[above].known && links[above].firstChild == kNone) {
        const std::uint32_t next = links[above].parent;
        unlink(above);
        freeNode(above);
        above = next;
    }
}

void SceneMirror::freeNode(std::uint32_t node) {
    takeOutOfBatch(node);
    geometries.release(contents[node].geometry);
    materials.release(contents[node].material);
    known -= flags[node].known ? 1 : 0;
    nodeByPath.erase(nodeByPath.find(*paths[node]));
    links[node] = {};
    flags[node] = {};
    contents[node] = {};
    xforms[node] = {};
    worlds[node] = {};
    paths[node] = nullptr;
    freeNodes.push_back(node);
}

void SceneMirror::unlink(std::uint32_t node) {
    const Links& own = links[node];
    if (own.previousSibling != kNone) {
        links[own.previousSibling].nextSibling = own.nextSibling;
    } else if (own.parent != kNone) {
        links[own.parent].firstChild = own.nextSibling;
    }
    if (own.nextSibling != kNone) {
        links[own.nextSibling].previousSibling = own.previousSibling;
    }
}

void SceneMirror::markDirty(std::uint32_t node) {
    if (!flags[node].dirty) {
        flags[node].dirty = true;
        dirtyNodes.push_back(node);
    }
}

void SceneMirror::setContent(std::uint32_t node, const VlAttribute::GroupAttribute& attributes) {
    std::uint32_t geometry = kNone;
    std::uint32_t material = kNone;
    const DrawOptions options = DrawOptions::fromAttributes(attributes);
    if (const auto kind = Geometry::kindOf(attributes); kind && !options.hide) {
        const VlAttribute::GroupAttribute group{attributes.getChildByName("geometry")};
        geometry = geometries.acquire(Geometry::contentOf(group, *kind),
                                      [&] { return Geometry::fromAttributes(group, *kind); });
        const VlAttribute::GroupAttribute look{attributes.getChildByName("material")};
        material =
            materials.acquire(look.getHash(), [&] { return Material::fromAttributes(look); });
    }
    // Out of the batch before its geometry can go.
    Content& content = contents[node];
    if (content.geometry != geometry || content.material != material ||
        content.options != options) {
        takeOutOfBatch(node);
    }
    content.options = options;
    geometries.release(std::exchange(content.geometry, geometry));
    materials.release(std::exchange(content.material, material));
}

void SceneMirror::placeInBatch(std::uint32_t node) {
    Content& content = contents[node];
    const bool visible = flags[node].known && !flags[node].hidden && content.geometry != kNone;
    if (!visible) {
        takeOutOfBatch(node);
        return;
    }
    if (content.batch) {
        return;
    }
    const auto [place, isNew] =
        batches.try_emplace({content.geometry, content.material, content.options});
    Batch& batch = place->second;
    if (isNew) {
        batch.geometry = content.geometry;
        batch.material = content.material;
        batch.options = content.options;
        batch.serial = ++lastBatchSerial;
        batch.listPosition = batchList.size();
        batchList.push_back(&batch);
    }
    content.batch = &batch;
    content.position = static_cast<std::uint32_t>(batch.nodes.size());
    batch.nodes.push_back(node);
    // `update` writes the instance, once the world matrix is known.
    batch.instances.emplace_back();
    markDirty(node);
}

void SceneMirror::takeOutOfBatch(std::uint32_t node) {
    Content& content = contents[node];
    Batch* batch = std::exchange(content.batch, nullptr);
    if (!batch) {
        return;
    }
    selectedNodes.erase(node);
    const std::uint32_t last = batch->nodes.back();
    if (last != node) {
        batch->nodes[content.position] = last;
        batch->instances[content.position] = batch->instances.back();
        contents[last].position = content.position;
        batch->noteChange(content.position);
    }
    batch->nodes.pop_back();
    batch->instances.pop_back();
    batch->noteBoundsChange(batch->nodes.size());
    if (batch->nodes.empty()) {
        batchList.back()->listPosition = batch->listPosition;
        batchList[batch->listPosition] = batchList.back();
        batchList.pop_back();
        batches.erase({batch->geometry, batch->material, batch->options});
    }
}

void SceneMirror::refreshSubtree(std::uint32_t top) {
    walk.assign(1, top);
    while (!walk.empty()) {
        const std::uint32_t node = walk.back();
        walk.pop_back();
        if (refresh(node)) {
            for (std::uint32_t child = links[node].firstChild; child != kNone;
                 child = links[child].nextSibling) {
                walk.push_back(child);
            }
        }
    }
}

/// Whether something changed that locations below inherit.
bool SceneMirror::refresh(std::uint32_t node) {
    const std::uint32_t parent = links[node].parent;
    const bool inherits = parent != kNone && !flags[node].absolute;
    const Imath::M44d local = toMatrix(xforms[node]);
    const Imath::M44d world = inherits ? local * worlds[parent] : local;
    const bool selected = flags[node].selectedItself || (parent != kNone && flags[parent].selected);
    ++computations;

    const bool changed = world != worlds[node] || selected != flags[node].selected;
    worlds[node] = world;
    flags[node].selected = selected;
    flags[node].dirty = false;
    if (Content& content = contents[node]; content.batch) {
        content.batch->instances[content.position] = Instance(world, selected);
        content.batch->noteChange(content.position);
        if (selected) {
            selectedNodes.insert(node);
        } else {
            selectedNodes.erase(node);
        }
    }
    return changed;
}

} // namespace Bundled
