#include "livevalues.h"

#include "callboth.h"
#include "manipulatorbridge.h"
#include "vlviewerdelegatehost.h"

#include "VlAttribute/GroupBuilder.h"
#include "VlScenelib/Client.h"
#include "viewer_api/SceneView.h"

#include <utility>
#include <vector>

namespace ViewerAPI {

using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;

namespace {

GroupAttribute withOverrides(GroupBuilder builder, const LiveEntry& entry) {
    for (const auto& [name, value] : entry.overrides) {
        builder.set(name, value);
    }
    return builder.build();
}

} // namespace

GroupAttribute LiveEntry::getOverrides() const {
    return withOverrides(GroupBuilder(), *this);
}

GroupAttribute LiveEntry::merge() const {
    GroupBuilder builder;
    builder.update(base);
    return withOverrides(std::move(builder), *this);
}

bool LiveValues::setAttribute(const std::string& path, const std::string& name,
                              const Attribute& value, bool isFinal) {
    if (!value.isValid()) {
        return false;
    }
    // Throws where the merge would, again and again once such a name stood in an entry.
    GroupBuilder().set(name, value);
    // Shown also when the application refuses it or fails: what it cooks next tells.
    delegate_.bridge->setValue(path, name, value, isFinal);
    const bool isSetInPrimary = setPrimary(path, name, value);
    const GroupAttribute merged = setLookThrough(path, name, value);
    if (!isSetInPrimary && !merged.isValid()) {
        return false;
    }
    // The value stands whatever a listener makes of it, so it is guarded and told in any case.
    callBoth(
        [&] {
            if (merged.isValid()) {
                delegate_.lookThrough.onAttributesMerged(path, merged);
            }
        },
        [&] {
            delegate_.manipulationFreeze.onValueSet(isFinal);
            if (!isManipulated(path)) {
                delegate_.flushLocationChanges(true);
            }
        });
    return true;
}

bool LiveValues::setPrimary(const std::string& path, const std::string& name,
                            const Attribute& value) {
    auto entry = liveAttributes.find(path);
    if (entry == liveAttributes.end()) {
        GroupAttribute base = delegate_.locationTree.getAttributes(path, true);
        if (!base.isValid()) {
            forget(path);
            return false;
        }
        entry = liveAttributes.try_emplace(path, LiveEntry{std::move(base), {}}).first;
    }
    entry->second.overrides[name] = value;
    delegate_.locationTree.setAttributes(path, entry->second.merge());
    return true;
}

GroupAttribute LiveValues::setLookThrough(const std::string& path, const std::string& name,
                                          const Attribute& value) {
    auto entry = lookThroughLiveAttributes.find(path);
    if (entry == lookThroughLiveAttributes.end()) {
        // An entry that went while its merged attributes stayed begins on top of them: what was
        // shown last goes on showing until the look-through client tells otherwise.
        GroupAttribute base = delegate_.getAttributes(path, kVlViewerDelegateLookThrough);
        if (!base.isValid()) {
            return {};
        }
        entry = lookThroughLiveAttributes.try_emplace(path, LiveEntry{std::move(base), {}}).first;
    }
    entry->second.overrides[name] = value;
    return lookThroughMergedAttributes[path] = entry->second.merge();
}

void LiveValues::openGroup(const std::string& path) {
    delegate_.bridge->openManipulationGroup(path);
    manipulatedLocations.insert(path);
}

void LiveValues::closeGroup(const std::string& path) {
    delegate_.bridge->closeManipulationGroup(path);
    if (!isManipulated(path)) {
        return;
    }
    const auto tell = [&] {
        callBoth([&] { delegate_.lookThrough.releaseDeferred(path); },
                 [&] { delegate_.flushLocationChanges(true); });
    };
    // Open to the end: a value that is set while the news goes out waits for the next flush.
    callBoth(tell, [&] { manipulatedLocations.erase(path); });
}

const LiveEntry* LiveValues::findEntry(std::string_view path, int sceneView) const {
    const LiveAttributes* live = nullptr;
    if (sceneView == kVlViewerDelegatePrimary) {
        live = &liveAttributes;
    } else if (sceneView == kVlViewerDelegateLookThrough) {
        live = &lookThroughLiveAttributes;
    }
    if (!live) {
        return nullptr;
    }
    const auto found = live->find(path);
    return found == live->end() ? nullptr : &found->second;
}

void LiveValues::forget(const std::string& path) {
    delegate_.bridge->cleanupLiveAttributes(path);
    liveAttributes.erase(path);
    lookThroughLiveAttributes.erase(path);
}

void LiveValues::forgetLookThrough(const std::string& path) {
    lookThroughLiveAttributes.erase(path);
    lookThroughMergedAttributes.erase(path);
}

void LiveValues::forgetCurrent() {
    forgetCurrent(liveAttributes, *delegate_.scene.primaryClient);
    forgetCurrent(lookThroughLiveAttributes, *delegate_.scene.lookThroughClient);
}

void LiveValues::forgetCurrent(LiveAttributes& live, const VlScenelib::Client& client) {
    // The bridge may change the map while it is told.
    std::vector<std::string> paths;
    paths.reserve(live.size());
    for (const auto& entry : live) {
        paths.push_back(entry.first);
    }
    for (const std::string& path : paths) {
        if (!live.contains(path) || !client.isLocationDataCurrent(
                                        path, delegate_.manipulationFreeze.manipulationCommitId)) {
            continue;
        }
        delegate_.bridge->cleanupLiveAttributes(path);
        live.erase(path);
    }
}

} // namespace ViewerAPI
