#pragma once

#include "sharedglcontext.h"
#include "support/calljournal.h"
#include "support/viewportplugins.h"
#include "vlviewporthost.h"

#include "VlLogging/LogSink.h"
#include "VlWindowSystem/Offscreen.h"

#include <GL/gl.h>
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace ViewerAPI::test {

using Pixel = std::array<int, 4>;

/// A viewport of recording plug-ins that is set up in an off-screen window; the test is skipped
/// where there is no context.
class ViewportGL : public testing::Test {
protected:
    // The shared context, once made, serves all tests of the process, as it would an application.
    void SetUp() override {
        SharedGLContext::instance() = sharedContext();
        setLogSink([this](const LogRecord& record) { log.push_back(record); });
        window = createOffscreen(kWidth, kHeight);
        viewport = std::make_unique<VlViewportHostStruct>("Recording", "view", nullptr);
        viewport->resize(kWidth, kHeight);
        viewport->setup(window);
        sharedContext() = SharedGLContext::instance();
        if (!viewport->isInitialized) {
            GTEST_SKIP() << "no GL context: " << (log.empty() ? "no reason told" : log[0].text);
        }
    }
    void TearDown() override {
        viewport.reset();
        destroyOffscreen(window);
        setLogSink({});
        SharedGLContext::instance() = SharedGLContext();
    }

    static SharedGLContext& sharedContext() {
        static SharedGLContext context;
        return context;
    }

    /// From now on an instance's draw fills the window.
    void drawWithColor(const std::string& instance, float red, float green, float blue) {
        plugins.hooks[instance + ".draw"] = [=](auto&) {
            glClearColor(red, green, blue, 1.0f);
            glClear(GL_COLOR_BUFFER_BIT);
        };
    }

    static Pixel pixelAt(int windowId, int x, int y) {
        const Image image = readPixels(windowId);
        const auto* bytes = &image.rgba[static_cast<size_t>((y * image.width + x) * 4)];
        return {bytes[0], bytes[1], bytes[2], bytes[3]};
    }

    static constexpr int kWidth = 32;
    static constexpr int kHeight = 24;
    static constexpr Pixel kRed = {255, 0, 0, 255};
    static constexpr Pixel kGreen = {0, 255, 0, 255};

    CallJournal journal;
    ViewportPlugins plugins{journal};
    std::vector<LogRecord> log;
    int window = 0;
    std::unique_ptr<VlViewportHostStruct> viewport;
};

} // namespace ViewerAPI::test
