#pragma once

#include "VlAttribute/Attribute.h"
#include "viewer_api/ViewerLocationEvent.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ViewerAPI::test {

/// What plug-ins were called with, in order, across all that share the log. A line is the
/// plug-in's name, the entry and its arguments:
///
///     D create
///     C locationEvent /root attributesChanged hiddenChanged leafChanged handled=0
///     D sourceLocationEvent /root attributesChanged
///     D locationsSelected [/root/a /root/b]
///     D setOption 17 "text"
///     D getBounds /root/a
struct PluginLog {
    std::vector<std::string> lines;
    /// The lines since the last call.
    std::vector<std::string> take() { return std::exchange(lines, {}); }
    /// The same, only those whose entry (the second word) is this one.
    std::vector<std::string> take(std::string_view entry);
};

/// A location event as a plug-in got it, with references of its own.
struct RecordedEvent {
    std::string path;
    VlAttribute::Attribute attributes;
    VlAttribute::Attribute xform;
    std::uint32_t flags = 0;
    int handled = 0;
    bool isSource = false;
};

/// A ViewerDelegate or ViewerDelegateComponent plug-in that lives in the test program, registered
/// as long as this object lives. It records its calls and answers as told. One object may have
/// several instances; they share it.
class RecordingPlugin {
public:
    enum class Kind { Delegate, Component };

    RecordingPlugin(PluginLog& log, Kind kind, std::string name);
    ~RecordingPlugin();
    RecordingPlugin(const RecordingPlugin&) = delete;
    RecordingPlugin& operator=(const RecordingPlugin&) = delete;

    /// Runs in every entry once its line is written, and before it answers. The subject is the
    /// path or option id where there is one. May throw, and may call the host.
    std::function<void(std::string_view entry, std::string_view subject)> onCall;
    bool refusesCreate = false; ///< `create` answers null
    int handles = 0;            ///< the answer of a component's `locationEvent`
    int processing = 0;         ///< the answer of `isProcessing`
    /// What `setOption` stored; `getOption` answers from here.
    std::map<std::uint64_t, VlAttribute::Attribute> options;
    /// Answers of `getBounds` and `computeExtent` by path; null for others.
    std::map<std::string, VlAttribute::Attribute> bounds;
    std::map<std::string, VlAttribute::Attribute> extents;

    std::vector<RecordedEvent> events;
    void* host = nullptr; ///< what the last `create` got
    int numberOfInstances = 0;

    [[nodiscard]] const std::string& getName() const { return name; }

    /// The location events since the last call, as the log has them but without name and entry.
    std::vector<std::string> takeEventLines();

private:
    friend struct RecordingEntries;
    void called(std::string_view entry, std::string_view subject = {}, std::string_view rest = {});

    PluginLog& log;
    const Kind kind;
    const std::string name;
    int slot = 0;
};

} // namespace ViewerAPI::test
