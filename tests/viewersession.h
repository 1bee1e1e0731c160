#pragma once

#include "support/knownview.h"
#include "support/recordingbridge.h"
#include "support/recordingplugins.h"
#include "vlviewerdelegatehost.h"

#include "VlScenelibEngine/ScenelibEngine.h"
#include "viewer_api/ViewerLocationEvent.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace ViewerAPI::test {

/// A delegate that views the real engine, and what its plug-in knows that does nothing but to
/// replay the events it gets.
class ViewerSession {
public:
    ViewerSession() {
        VlScenelibEngine::registerScenelibEngine();
        delegate = std::make_unique<VlViewerDelegateHostStruct>("D", nullptr);
        // Boxes that the viewer makes are no part of the scene.
        delegate->setBoundingBoxesEnabled(false);
        bridge.onCall = [this](const std::string& line) {
            if (onRootEvent && line == "cleanupLiveAttributes /root") {
                onRootEvent();
            }
        };
    }
    ~ViewerSession() { delegate.reset(); }
    ViewerSession(const ViewerSession&) = delete;
    ViewerSession& operator=(const ViewerSession&) = delete;

    /// Brings what is ready to the plug-in, and replays it.
    void pump() {
        delegate->processLocationEvents();
        std::vector<LocationChange> changes;
        for (const RecordedEvent& event : plugin.events) {
            changes.push_back(toChange(event));
            if (onRecord) {
                onRecord(changes.back());
            }
        }
        plugin.events.clear();
        log.lines.clear();
        numberOfRecords += changes.size();
        for (const std::string& complaint : known.apply(changes)) {
            ADD_FAILURE() << complaint;
        }
    }

    /// Pumps until the engine has nothing left to do and to tell.
    void settle() {
        do {
            ASSERT_TRUE(VlScenelibEngine::ApplicationGraph::waitUntilIdle(std::chrono::minutes(1)));
            pump();
        } while (delegate->isProcessing());
    }

    using ListMethod = void (VlViewerDelegateHostStruct::*)(const char* const*, std::uint32_t);
    void call(ListMethod method, const std::string& path) {
        const char* const paths[] = {path.c_str()};
        (delegate.get()->*method)(paths, 1);
    }
    void open(const std::string& path) { call(&VlViewerDelegateHostStruct::openLocations, path); }
    void close(const std::string& path) { call(&VlViewerDelegateHostStruct::closeLocations, path); }
    void pin(const std::string& path) { call(&VlViewerDelegateHostStruct::pinLocations, path); }
    void unpin(const std::string& path) { call(&VlViewerDelegateHostStruct::unpinLocations, path); }
    void hide(const std::string& path) { call(&VlViewerDelegateHostStruct::hideLocations, path); }
    void unhide(const std::string& path) {
        call(&VlViewerDelegateHostStruct::unhideLocations, path);
    }

private:
    static LocationChange toChange(const RecordedEvent& event) {
        const auto has = [&event](VlLocationEventFlag flag) { return (event.flags & flag) != 0; };
        LocationChange change;
        change.path = LocationPath(event.path);
        change.attributes = VlAttribute::GroupAttribute(event.attributes);
        change.matrix = VlAttribute::DoubleAttribute(event.xform);
        change.absolute = has(kVlLocationEventXformAbsolute);
        change.hidden = has(kVlLocationEventHidden);
        change.leaf = has(kVlLocationEventLeaf);
        change.proxy = has(kVlLocationEventProxy);
        change.removed = has(kVlLocationEventRemoved);
        change.attributesChanged = has(kVlLocationEventAttributesChanged);
        change.xformChanged = has(kVlLocationEventXformChanged);
        change.hiddenChanged = has(kVlLocationEventHiddenChanged);
        change.leafChanged = has(kVlLocationEventLeafChanged);
        return change;
    }

    PluginLog log;
    RecordingBridge bridge{log};
    RecordingPlugin plugin{log, RecordingPlugin::Kind::Delegate, "D"};

public:
    /// Hears of every record before it is replayed.
    std::function<void(const LocationChange& record)> onRecord;
    /// The scene tells of "/root", for which the bridge is called.
    std::function<void()> onRootEvent;
    KnownView known{false};
    std::size_t numberOfRecords = 0; ///< replayed so far
    std::unique_ptr<VlViewerDelegateHostStruct> delegate;
};

} // namespace ViewerAPI::test
