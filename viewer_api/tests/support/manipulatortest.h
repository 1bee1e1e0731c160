#pragma once

#include "sharedglcontext.h"
#include "support/countingwindowsystem.h"
#include "support/delegatetest.h"
#include "support/plainxform.h"
#include "support/recordingglcalls.h"
#include "support/recordinghandle.h"
#include "support/recordingmanipulator.h"
#include "support/viewportplugins.h"
#include "vlmanipulatorhandlehost.h"
#include "vlmanipulatorhost.h"
#include "vlviewporthost.h"

#include "VlAttribute/StringAttribute.h"

#include <string>
#include <vector>

namespace ViewerAPI::test {

/// A delegate with the viewport "view". The manipulators "Move" and "Aim" edit locations that have
/// a "fits", and their handles are of "Arrow" and "Ring". What plug-ins, bridge and channels get
/// stands in one log; the windows and the viewport's plug-in write into the journal.
class ManipulatorTest : public DelegateTest {
protected:
    ManipulatorTest() {
        SharedGLContext::instance() = SharedGLContext();
        windows.isQuiet = gl.isQuiet = true;
        move.onMatches = aim.onMatches = [](const VlAttribute::GroupAttribute& location) {
            return location.getChildByName("fits").isValid() ? 1 : 0;
        };
        viewport = addViewport("view");
        log.take();
    }
    ~ManipulatorTest() override {
        delegate.reset(); // before the plug-ins
        SharedGLContext::instance() = SharedGLContext();
    }
    void TearDown() override {
        DelegateTest::TearDown();
        for (RecordingManipulator* const each : {&move, &aim}) {
            each->onCall = nullptr;
        }
        for (RecordingHandle* const each : {&arrow, &ring}) {
            each->onCall = nullptr;
        }
        move.onMatches = aim.onMatches = nullptr;
        plugins.hooks.clear();
    }

    VlViewportHostStruct* addViewport(const std::string& name) {
        auto* const added = new VlViewportHostStruct("Recording", name, delegate.get());
        delegate->addViewport(added, name);
        return added;
    }

    /// Null when it is not active afterwards.
    VlManipulatorHostStruct* activate(const std::vector<std::string>& paths,
                                      const std::string& name = "Move") {
        viewport->activateManipulator(name, VlAttribute::StringAttribute(paths), true);
        return viewport->getActiveManipulator(name);
    }

    void cook(const std::string& path, const VlAttribute::GroupAttribute& attributes) {
        client(kPrimaryClient).report(path, attributes);
        delegate->processLocationEvents();
    }
    void remove(const std::string& path) {
        client(kPrimaryClient).reportGone(path);
        delegate->processLocationEvents();
    }

    [[nodiscard]] static VlAttribute::GroupAttribute fits() {
        return VlAttribute::GroupAttribute{{"fits", VlAttribute::IntAttribute(1)}};
    }
    /// The same, with a further child by its dotted name.
    [[nodiscard]] static VlAttribute::GroupAttribute fitsWith(const std::string& name,
                                                              const VlAttribute::Attribute& value) {
        return VlAttribute::GroupBuilder().update(fits()).set(name, value).build();
    }
    [[nodiscard]] static VlAttribute::GroupAttribute exclusiveTo(const std::string& node) {
        return fitsWith("attributeEditor.xform.exclusiveTo", VlAttribute::StringAttribute(node));
    }
    [[nodiscard]] static VlAttribute::GroupAttribute at(double x, double y, double z) {
        return fitsWith("xform", toAttribute({{"group", {{"translate", {x, y, z}}}}}));
    }

    [[nodiscard]] static std::string pathsOf(const VlManipulatorHostStruct& manipulator) {
        return textOf(manipulator.getLocationPaths());
    }

    CallJournal journal;
    CountingWindowSystem windows{journal};
    RecordingGLCalls gl{journal};
    ViewportPlugins plugins{journal};
    RecordingManipulator move{log, "Move"};
    RecordingManipulator aim{log, "Aim"};
    RecordingHandle arrow{log, "Arrow"};
    RecordingHandle ring{log, "Ring"};
    VlViewportHostStruct* viewport = nullptr;
};

/// What a call throws, or "nothing".
template <class Call>
std::string textThrownBy(const Call& call) {
    try {
        call();
    } catch (const std::exception& error) {
        return error.what();
    }
    return "nothing";
}

} // namespace ViewerAPI::test
