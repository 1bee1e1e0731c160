#pragma once

#include "support/recordingplugins.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace ViewerAPI::test {

/// A ManipulatorHandle plug-in that lives in the test program, registered as long as this object
/// lives. It records its calls in the log and answers as told. One object may have several
/// instances; they share it.
///
///     Arrow create
///     Arrow event {type="press"}
///     Arrow pickerDraw 7
class RecordingHandle {
public:
    enum class Table { Whole, None };

    RecordingHandle(PluginLog& log, std::string name, Table table = Table::Whole);
    ~RecordingHandle();
    RecordingHandle(const RecordingHandle&) = delete;
    RecordingHandle& operator=(const RecordingHandle&) = delete;

    /// Runs in every entry once its line is written. May throw, and may call the host.
    std::function<void(std::string_view entry)> onCall;
    bool refusesCreate = false; ///< `create` answers null
    int handles = 0;            ///< the answer of `event`
    void* host = nullptr;       ///< what the last `create` got
    int numberOfInstances = 0;

private:
    friend struct HandleEntries;
    void called(std::string_view entry, const std::string& arguments = {});

    PluginLog& log;
    const std::string name;
    std::size_t slot = 0;
};

} // namespace ViewerAPI::test
