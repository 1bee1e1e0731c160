#pragma once

#include "VlLogging/LogSink.h"

#include <atomic>
#include <memory>
#include <mutex>

/// The log of the process: its threshold and where its lines go.
class LogHost {
public:
    /// Never destroyed, so that what logs while the process ends still finds it.
    static LogHost& get();

    LogHost(const LogHost&) = delete;
    LogHost& operator=(const LogHost&) = delete;

    [[nodiscard]] LogLevel getLevel() const noexcept {
        return level.load(std::memory_order_relaxed);
    }
    void setLevel(LogLevel newLevel) noexcept { level.store(newLevel, std::memory_order_relaxed); }
    void setSink(LogSink newSink);

    /// Passes a line on, whatever its level. Throws nothing that a sink throws.
    void write(const LogRecord& record);

private:
    LogHost() = default;

    std::atomic<LogLevel> level{LogLevel::Warning};
    std::mutex sinkMutex;
    std::shared_ptr<const LogSink> sink; // null: stderr; guarded by sinkMutex
};
