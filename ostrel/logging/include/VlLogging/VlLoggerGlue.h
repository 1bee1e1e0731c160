#pragma once

#include "VlLogging/LogLevel.h"

#include <string>
#include <string_view>

/// A named voice in the log. Ask whether a level is enabled before a text is built:
///
///     if (logger.errorEnabled()) {
///         logger.error("No such window: " + std::to_string(id), "myplugin/window", 42);
///     }
///
/// A line below the threshold is dropped, asked or not. `source` and `line` say where the line
/// comes from; `source` may be null. Nothing here throws except for want of memory. [any-thread]
class VlLoggerGlue {
public:
    explicit VlLoggerGlue(std::string channel);

    [[nodiscard]] const std::string& getChannel() const noexcept { return channel; }

    [[nodiscard]] bool debugEnabled() const noexcept { return isEnabled(LogLevel::Debug); }
    [[nodiscard]] bool infoEnabled() const noexcept { return isEnabled(LogLevel::Info); }
    [[nodiscard]] bool warningEnabled() const noexcept { return isEnabled(LogLevel::Warning); }
    [[nodiscard]] bool errorEnabled() const noexcept { return isEnabled(LogLevel::Error); }

    void debug(std::string_view text, const char* source, int line) const;
    void info(std::string_view text, const char* source, int line) const;
    void warning(std::string_view text, const char* source, int line) const;
    void error(std::string_view text, const char* source, int line) const;

    /// A line of a level that is known at run time only. Off logs nothing.
    void log(LogLevel level, std::string_view text, const char* source, int line) const;
    [[nodiscard]] bool isEnabled(LogLevel level) const noexcept;

private:
    std::string channel;
};
