#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/// How grave a log line is, and as a threshold: lines of the threshold and graver ones pass.
enum class LogLevel : std::uint8_t {
    Debug,
    Info,
    Warning,
    Error,
    Off ///< as a threshold: nothing passes; no line has this level
};

/// "debug", "info", "warning", "error" or "off".
[[nodiscard]] const char* logLevelName(LogLevel level) noexcept;

/// The level of one of these names, in lower case; nothing for any other text.
[[nodiscard]] std::optional<LogLevel> logLevelFromName(std::string_view name) noexcept;
