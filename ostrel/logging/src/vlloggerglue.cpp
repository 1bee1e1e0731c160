#include "VlLogging/VlLoggerGlue.h"

#include "loghost.h"

#include <utility>

VlLoggerGlue::VlLoggerGlue(std::string channelName) : channel(std::move(channelName)) {}

bool VlLoggerGlue::isEnabled(LogLevel level) const noexcept {
    return level != LogLevel::Off && level >= LogHost::get().getLevel();
}

void VlLoggerGlue::log(LogLevel level, std::string_view text, const char* source, int line) const {
    if (isEnabled(level)) {
        LogHost::get().write({level, channel, std::string(text),
                              source ? std::string(source) : std::string(), line});
    }
}

void VlLoggerGlue::debug(std::string_view text, const char* source, int line) const {
    log(LogLevel::Debug, text, source, line);
}

void VlLoggerGlue::info(std::string_view text, const char* source, int line) const {
    log(LogLevel::Info, text, source, line);
}

void VlLoggerGlue::warning(std::string_view text, const char* source, int line) const {
    log(LogLevel::Warning, text, source, line);
}

void VlLoggerGlue::error(std::string_view text, const char* source, int line) const {
    log(LogLevel::Error, text, source, line);
}
