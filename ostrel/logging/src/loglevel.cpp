#include "VlLogging/LogLevel.h"

#include <array>

namespace {

constexpr std::array kLevels = {LogLevel::Debug, LogLevel::Info, LogLevel::Warning, LogLevel::Error,
                                LogLevel::Off};

} // namespace

const char* logLevelName(LogLevel level) noexcept {
    switch (level) {
    case LogLevel::Debug:
        return "debug";
    case LogLevel::Info:
        return "info";
    case LogLevel::Warning:
        return "warning";
    case LogLevel::Error:
        return "error";
    case LogLevel::Off:
        break;
    }
    return "off";
}

std::optional<LogLevel> logLevelFromName(std::string_view name) noexcept {
    for (const LogLevel level : kLevels) {
        if (name == logLevelName(level)) {
            return level;
        }
    }
    return std::nullopt;
}
