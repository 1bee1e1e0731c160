#pragma once

#include "VlLogging/LogSink.h"

#include <string>
#include <utility>
#include <vector>

/// The lines that are logged while it lives, those of level Debug included.
class DebugLog {
public:
    DebugLog() {
        setLogLevel(LogLevel::Debug);
        setLogSink([this](const LogRecord& record) { texts.push_back(record.text); });
    }
    DebugLog(const DebugLog&) = delete;
    DebugLog& operator=(const DebugLog&) = delete;
    ~DebugLog() {
        setLogSink({});
        setLogLevel(levelBefore);
    }

    /// Those since the last call.
    std::vector<std::string> take() { return std::exchange(texts, {}); }

private:
    const LogLevel levelBefore = getLogLevel();
    std::vector<std::string> texts;
};
