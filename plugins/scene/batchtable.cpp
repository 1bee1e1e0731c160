#include "scene/batchtable.h"

namespace Bundled {

Batch* BatchTable::acquire(const VlAttribute::GroupAttribute& location) {
    const auto kind = Geometry::kindOf(location);
    if (!kind) {
        return nullptr;
    }
    const DrawOptions options = DrawOptions::fromAttributes(location);
    if (options.hide) {
        return nullptr;
    }
    const VlAttribute::GroupAttribute group{location.getChildByName("geometry")};
    const VlAttribute::GroupAttribute look{location.getChildByName("material")};
    const std::uint32_t geometry = geometries.acquire(
        Geometry::contentOf(group, *kind), [&] { return Geometry::fromAttributes(group, *kind); });
    const std::uint32_t material =
        materials.acquire(look.getHash(), [&] { return Material::fromAttributes(look); });
    const auto [place, isNew] = batches.try_emplace({geometry, material, options});
    Batch& batch = place->second;
    if (isNew) {
        batch.geometry = geometry;
        batch.material = material;
        batch.options = options;
        batch.localBounds = geometries[geometry].bounds;
        batch.serial = ++lastSerial;
    } else {
        geometries.release(geometry);
        materials.release(material);
    }
    ++batch.users;
    return &batch;
}

void BatchTable::release(Batch* batch) {
    if (!batch || --batch->users != 0) {
        return;
    }
    geometries.release(batch->geometry);
    materials.release(batch->material);
    batches.erase({batch->geometry, batch->material, batch->options});
}

std::uint32_t BatchTable::addInstance(Batch& batch, std::uint32_t node) {
    if (batch.nodes.empty()) {
        batch.listPosition = shown.size();
        shown.push_back(&batch);
    }
    batch.nodes.push_back(node);
    batch.instances.emplace_back();
    return static_cast<std::uint32_t>(batch.nodes.size() - 1);
}

void BatchTable::removeInstance(Batch& batch, std::uint32_t position) {
    if (position + 1 != batch.nodes.size()) {
        batch.nodes[position] = batch.nodes.back();
        batch.setInstance(position, batch.instances.back());
    }
    batch.nodes.pop_back();
    batch.instances.pop_back();
    batch.noteBoundsChange(batch.nodes.size());
    if (batch.nodes.empty()) {
        shown.back()->listPosition = batch.listPosition;
        shown[batch.listPosition] = shown.back();
        shown.pop_back();
    }
}

} // namespace Bundled
