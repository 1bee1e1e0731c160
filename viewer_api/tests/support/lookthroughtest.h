#pragma once

#include "sharedglcontext.h"
#include "support/countingwindowsystem.h"
#include "support/delegatetest.h"
#include "support/recordingglcalls.h"
#include "support/viewportplugins.h"
#include "vlviewporthost.h"

#include "VlAttribute/FloatAttribute.h"

#include <string>

namespace ViewerAPI::test {

/// A delegate with two viewports, "left" and "right" in this order, and lines for what its
/// look-through channels are fired with.
class LookThroughTest : public DelegateTest {
protected:
    static constexpr const char* kCamera = "/root/camera";
    static constexpr const char* kLight = "/root/light";

    LookThroughTest() {
        SharedGLContext::instance() = SharedGLContext();
        windows.isQuiet = gl.isQuiet = true;
        left = addViewport("left");
        right = addViewport("right");
    }
    ~LookThroughTest() override {
        delegate.reset();
        SharedGLContext::instance() = SharedGLContext();
    }
    void TearDown() override {
        plugins.hooks.clear();
        DelegateTest::TearDown();
    }

    VlViewportHostStruct* addViewport(const std::string& name) {
        auto* const viewport = new VlViewportHostStruct("Recording", name, delegate.get());
        delegate->addViewport(viewport, name);
        return viewport;
    }

    void look(VlViewportHostStruct* viewport, const char* path) {
        delegate->setLookThroughLocation(viewport, path);
    }

    /// Has the viewport look through a location that is cooked with the name "cam"; forgets what
    /// was told of that.
    void resolve(VlViewportHostStruct* viewport, const char* path) {
        look(viewport, path);
        cook(path);
        log.take();
        runtime->takeCalls();
    }

    /// The look-through client tells of the location, and the delegate hears of it.
    void cook(const char* path, const char* name = "cam") {
        client(kLookThroughClient).report(path, named(name));
        delegate->processLocationEvents();
    }
    void takeAway(const char* path) {
        client(kLookThroughClient).reportGone(path);
        delegate->processLocationEvents();
    }

    /// Sets the attribute "fov" as a manipulator does while it drags, which holds back scene
    /// events.
    void setLive(const char* path, float fov) {
        delegate->setManipulatedAttribute(path, "fov", VlAttribute::FloatAttribute(fov), false);
    }

    static bool always(const std::string&, std::int64_t) { return true; }

    /// What channels were fired since the last call.
    Lines takeFired() {
        Lines lines = log.take();
        std::erase_if(lines, [](const std::string& line) {
            return line.rfind("channel __LOOKTHROUGH", 0) != 0;
        });
        return lines;
    }

    static std::string requested(const std::string& viewport, const std::string& path) {
        return line("CHANGE_REQUESTED", viewport, path, nullptr);
    }
    static std::string cooked(const std::string& viewport, const std::string& path,
                              const char* name = "cam") {
        return line("COOKED", viewport, path, name);
    }
    static std::string changed(const std::string& viewport, const std::string& path,
                               const char* name = "cam") {
        return line("CHANGED", viewport, path, name);
    }
    static std::string doesNotExist(const std::string& viewport, const std::string& path) {
        return line("DOES_NOT_EXIST", viewport, path, nullptr);
    }

    CallJournal journal;
    CountingWindowSystem windows{journal};
    RecordingGLCalls gl{journal};
    ViewportPlugins plugins{journal};
    VlViewportHostStruct* left = nullptr;
    VlViewportHostStruct* right = nullptr;

private:
    /// `name` is the attribute of the payload's "attrs"; null for a payload without.
    static std::string line(const std::string& channel, const std::string& viewport,
                            const std::string& path, const char* name) {
        return "channel __LOOKTHROUGH_LOCATION_" + channel + " {viewport=\"" + viewport +
               "\" location=\"" + path + "\"" +
               (name ? " attrs={name=\"" + std::string(name) + "\"}" : "") + "}";
    }
};

} // namespace ViewerAPI::test
