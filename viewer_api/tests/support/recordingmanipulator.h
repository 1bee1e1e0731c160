#pragma once

#include "support/recordingplugins.h"

#include "VlAttribute/GroupAttribute.h"

#include <cstddef>
#include <functional>
#include <string>

namespace ViewerAPI::test {

/// A Manipulator plug-in that lives in the test program, registered as long as this object lives.
/// It has the two entries that belong to the kind and not to an instance, records their calls in
/// the log and answers as told:
///
///     Move matches {type="polymesh"}
///     Move getTags
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

private:
    friend struct ManipulatorEntries;

    PluginLog& log;
    const std::string name;
    std::size_t slot = 0;
};

} // namespace ViewerAPI::test
