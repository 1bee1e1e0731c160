#include "loghost.h"

#include <spdlog/logger.h>
#include <spdlog/sinks/stdout_sinks.h>

#include <utility>

namespace {

// The sink that this thread is in. What it logs itself goes to stderr, or a sink that logs would
// never return.
thread_local bool isInSink = false;

spdlog::level::level_enum toSpdlog(LogLevel level) noexcept {
    switch (level) {
    case LogLevel::Debug:
        return spdlog::level::debug;
    case LogLevel::Info:
        return spdlog::level::info;
    case LogLevel::Warning:
        return spdlog::level::warn;
    case LogLevel::Error:
        return spdlog::level::err;
    case LogLevel::Off:
        break;
    }
    return spdlog::level::off;
}

std::shared_ptr<spdlog::sinks::sink> makeStderrSink() {
    auto sink = std::make_shared<spdlog::sinks::stderr_sink_mt>();
    sink->set_pattern("%H:%M:%S.%e %l %n: %v");
    return sink;
}

void writeToStderr(const LogRecord& record) {
    static auto* const sink = new std::shared_ptr<spdlog::sinks::sink>(makeStderrSink());
    std::string line = record.text;
    if (!record.source.empty()) {
        line += " [" + record.source + ":" + std::to_string(record.line) + "]";
    }
    spdlog::logger logger(record.channel, *sink);
    logger.set_level(spdlog::level::trace);
    logger.log(toSpdlog(record.level), line);
    logger.flush();
}

} // namespace

LogHost& LogHost::get() {
    static auto* const host = new LogHost;
    return *host;
}

void LogHost::setSink(LogSink newSink) {
    auto replacement = newSink ? std::make_shared<const LogSink>(std::move(newSink)) : nullptr;
    // The old sink ends after the lock: its end may run code that logs.
    const std::lock_guard lock(sinkMutex);
    sink.swap(replacement);
}

void LogHost::write(const LogRecord& record) {
    std::shared_ptr<const LogSink> current;
    if (!isInSink) {
        const std::lock_guard lock(sinkMutex);
        current = sink;
    }
    if (!current) {
        writeToStderr(record);
        return;
    }
    isInSink = true;
    try {
        (*current)(record);
        isInSink = false;
    } catch (...) {
        isInSink = false;
        writeToStderr(record);
    }
}

void setLogLevel(LogLevel level) noexcept {
    LogHost::get().setLevel(level);
}

LogLevel getLogLevel() noexcept {
    return LogHost::get().getLevel();
}

void setLogSink(LogSink sink) {
    LogHost::get().setSink(std::move(sink));
}
