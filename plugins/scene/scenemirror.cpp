#include "scene/scenemirror.h"

#include <algorithm>
#include <cstring>

namespace Bundled {

namespace {

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
    if (!update.path.starts_with('/')) {
        return;
    }
    if (update.flags & kVlLocationEventRemoved) {
        if (const std::uint32_t node = names.find(update.path); node != kNone) {
            remove(node);
        }
        return;
    }
    const std::uint32_t node = findOrMake(update.path);
    Location& location = locations[node];
    if (!location.known) {
        location.known = true;
        ++known;
    }
    if (update.flags & kVlLocationEventXformChanged) {
        location.xform = update.xform;
        location.absolute = (update.flags & kVlLocationEventXformAbsolute) != 0;
        markDirty(node);
    }
    if (update.flags & kVlLocationEventHiddenChanged) {
        location.hidden = (update.flags & kVlLocationEventHidden) != 0;
    }
    if (update.flags & kVlLocationEventAttributesChanged) {
        setLook(node, update.attributes);
    }
    showOrHide(node);
}

void SceneMirror::setSelection(std::span<const char* const> selectedPaths) {
    const auto mark = [this](std::string_view path, bool isSelected) {
        if (const std::uint32_t node = names.find(path); node != kNone) {
            locations[node].selectedItself = isSelected;
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
    std::sort(dirtyNodes.begin(), dirtyNodes.end(), [this](std::uint32_t a, std::uint32_t b) {
        return names.getDepth(a) < names.getDepth(b);
    });
    for (const std::uint32_t node : dirtyNodes) {
        if (locations[node].dirty) {
            refreshSubtree(node);
        }
    }
    dirtyNodes.clear();
}

void SceneMirror::forgetUploads() {
    for (Batch* batch : getBatches()) {
        batch->forgetUploads();
    }
}

Imath::Box3d SceneMirror::getBounds() {
    Imath::Box3d all;
    for (Batch* batch : getBatches()) {
        batch->updateBounds();
        all.extendBy(batch->bounds);
    }
    return all;
}

bool SceneMirror::hasLocation(std::string_view path) const {
    const std::uint32_t node = names.find(path);
    return node != kNone && locations[node].known;
}

std::vector<std::string> SceneMirror::getLocationPaths() const {
    std::vector<std::string> told;
    told.reserve(known);
    for (std::uint32_t node = 0; node < locations.size(); ++node) {
        if (locations[node].known) {
            told.push_back(getPath(node));
        }
    }
    std::sort(told.begin(), told.end());
    return told;
}

Imath::M44d SceneMirror::getWorldXform(std::string_view path) const {
    const std::uint32_t node = names.find(path);
    return node == kNone ? Imath::M44d() : computeWorld(node);
}

std::uint32_t SceneMirror::findOrMake(std::string_view path) {
    return names.findOrMake(path, [this](std::uint32_t node, std::string_view step) {
        locations.resize(names.getCapacity());
        locations[node].selectedItself = selection.contains(step);
        markDirty(node);
        const std::uint32_t parent = names.getParent(node);
        if (parent != kNone && !locations[parent].world) {
            locations[parent].world = std::make_unique<Imath::M44d>();
            markDirty(parent);
        }
    });
}

void SceneMirror::remove(std::uint32_t top) {
    std::uint32_t above = names.getParent(top);
    erase(top);
    // Ancestors that nobody told of stood only for what has gone now.
    while (above != kNone && !names.hasChildren(above)) {
        if (locations[above].known) {
            locations[above].world.reset();
            return;
        }
        erase(std::exchange(above, names.getParent(above)));
    }
}

void SceneMirror::erase(std::uint32_t top) {
    names.erase(top, [this](std::uint32_t node) {
        hide(node);
        looks.release(locations[node].batch);
        known -= locations[node].known ? 1 : 0;
        locations[node] = {};
    });
}

void SceneMirror::markDirty(std::uint32_t node) {
    if (!locations[node].dirty) {
        locations[node].dirty = true;
        dirtyNodes.push_back(node);
    }
}

void SceneMirror::setLook(std::uint32_t node, const VlAttribute::GroupAttribute& attributes) {
    Batch* batch = looks.acquire(attributes);
    if (batch != locations[node].batch) {
        hide(node);
    }
    looks.release(std::exchange(locations[node].batch, batch));
}

void SceneMirror::showOrHide(std::uint32_t node) {
    Location& location = locations[node];
    if (!location.batch || location.hidden) {
        hide(node);
    } else if (location.position == kNone) {
        location.position = looks.addInstance(*location.batch, node);
        // `update` writes the instance, once the world matrix is known.
        markDirty(node);
    }
}

void SceneMirror::hide(std::uint32_t node) {
    Location& location = locations[node];
    if (location.position == kNone) {
        return;
    }
    selectedNodes.erase(node);
    Batch& batch = *location.batch;
    const std::uint32_t position = std::exchange(location.position, kNone);
    looks.removeInstance(batch, position);
    if (position < batch.nodes.size()) {
        locations[batch.nodes[position]].position = position;
    }
}

void SceneMirror::refreshSubtree(std::uint32_t top) {
    walk.assign(1, top);
    while (!walk.empty()) {
        const std::uint32_t node = walk.back();
        walk.pop_back();
        if (refresh(node)) {
            names.forEachChild(node, [this](std::uint32_t child) { walk.push_back(child); });
        }
    }
}

/// Whether something changed that locations below inherit.
bool SceneMirror::refresh(std::uint32_t node) {
    Location& location = locations[node];
    const Imath::M44d world = computeWorld(node);
    ++computations;
    const std::uint32_t parent = names.getParent(node);
    const bool selected =
        location.selectedItself || (parent != kNone && locations[parent].selected);
    const bool changed =
        selected != location.selected || (location.world && *location.world != world);
    if (location.world) {
        *location.world = world;
    }
    location.selected = selected;
    location.dirty = false;
    if (location.position != kNone) {
        location.batch->setInstance(location.position, Instance(world, selected));
        if (selected) {
            selectedNodes.insert(node);
        } else {
            selectedNodes.erase(node);
        }
    }
    return changed;
}

Imath::M44d SceneMirror::computeWorld(std::uint32_t node) const {
    const Location& location = locations[node];
    const Imath::M44d local = toMatrix(location.xform);
    const std::uint32_t parent = names.getParent(node);
    return parent == kNone || location.absolute ? local : local * *locations[parent].world;
}

} // namespace Bundled
