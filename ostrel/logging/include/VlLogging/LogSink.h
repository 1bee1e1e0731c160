#pragma once

#include "VlLogging/LogLevel.h"

#include <functional>
#include <string>

/// One log line.
struct LogRecord {
    LogLevel level = LogLevel::Info; ///< never Off
    std::string channel;             ///< who speaks, such as "VlViewportHost"
    std::string text;                ///< without a line end
    std::string source;              ///< the source file's name; empty when not told
    int line = 0;                    ///< the line in it; 0 when not told

    friend bool operator==(const LogRecord&, const LogRecord&) = default;
};

/// Where log lines go. Called on the thread that logs, and by several threads at once if several
/// log: a sink guards its own state. A line that a sink logs itself, and the line of a sink that
/// throws, go to stderr.
using LogSink = std::function<void(const LogRecord&)>;

/// Sets the threshold of the whole process; Warning at start. [any-thread]
void setLogLevel(LogLevel level) noexcept;
[[nodiscard]] LogLevel getLogLevel() noexcept;

/// Sends the lines of the whole process to a sink of the caller's instead of to stderr; an empty
/// one restores stderr. Returns while other threads may still be inside the sink that was there.
/// [any-thread]
void setLogSink(LogSink sink);
