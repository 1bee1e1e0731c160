#pragma once

#include "sharedglcontext.h"
#include "support/calljournal.h"
#include "support/countingwindowsystem.h"
#include "support/recordingglcalls.h"
#include "support/viewportplugins.h"
#include "vlviewporthost.h"

#include "VlLogging/LogSink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace ViewerAPI::test {

using Lines = std::vector<std::string>;

/// A process in which no viewport has been set up yet: counting windows, recorded GL, recording
/// plug-ins and a log that is kept, all in one journal. Viewports stand alone, without a delegate.
class ViewportTest : public ::testing::Test {
protected:
    ViewportTest() {
        SharedGLContext::instance() = SharedGLContext();
        setLogSink([this](const LogRecord& record) { log.push_back(record); });
    }
    ~ViewportTest() override {
        plugins.endCameras();
        setLogSink({});
        setLogLevel(logLevelBefore_);
        SharedGLContext::instance() = SharedGLContext();
    }

    std::unique_ptr<VlViewportHostStruct> makeViewport(const std::string& name = "view") {
        return std::make_unique<VlViewportHostStruct>("Recording", name, nullptr);
    }

    /// From now on the journal shows plug-ins, glEnable and glDisable only.
    void hideBindings() { windows.isQuiet = gl.isQuiet = true; }

    static LogRecord error(const std::string& text, int line) {
        return {LogLevel::Error, "VlViewportHost", text, "viewer_api/src/vlviewporthost", line};
    }

    CallJournal journal;
    std::vector<LogRecord> log;
    CountingWindowSystem windows{journal};
    RecordingGLCalls gl{journal};
    ViewportPlugins plugins{journal};

private:
    LogLevel logLevelBefore_ = getLogLevel();
};

} // namespace ViewerAPI::test
