#pragma once

#include "support/recordingplugins.h"

#include "VlAttribute/GroupAttribute.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace ViewerAPI::test {

/// A Manipulator plug-in that lives in the test program, registered as long as this object lives.
/// It records its calls in the log and answers as told. One object may have several instances;
/// they share it.
///
///     Move matches {type="polymesh"}
///     Move getTags
///     Move create
///     Move event {type="press"}
///     Move pickerDraw 7
///     Move setOption 17 "text"
class RecordingManipulator {
public:
    enum class Table { Whole, None };

    RecordingManipulator(PluginLog& log, std::string name, Table table = Table::Whole);
    ~RecordingManipulator();
    RecordingManipulator(const RecordingManipulator&) = delete;
    RecordingManipulator& operator=(const RecordingManipulator&) = delete;

    /// The answer of `matches`; 0 for all when empty. May throw, and may call the host.
    std::function<int(const VlAttribute::GroupAttribute& location)> onMatches;
    /// Runs in `getTags` before it answers.
    std::function<void()> onGetTags;
    /// The answer of `getTags`.
    VlAttribute::Attribute tags;

    /// Runs in every entry of an instance, and in `create`, once its line is written. May throw,
    /// and may call the host.
    std::function<void(std::string_view entry)> onCall;
    bool refusesCreate = false; ///< `create` answers null
    int handles = 0;            ///< the answer of `event`
    /// What `setOption` stored; `getOption` answers from here.
    std::map<std::uint64_t, VlAttribute::Attribute> options;
    void* host = nullptr; ///< what the last `create` got
    int numberOfInstances = 0;

private:
    friend struct ManipulatorEntries;
    void called(std::string_view entry, const std::string& arguments = {});

    PluginLog& log;
    const std::string name;
    std::size_t slot = 0;
};

} // namespace ViewerAPI::test
