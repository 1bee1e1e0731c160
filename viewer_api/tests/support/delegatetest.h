#pragma once

#include "pythonchannel.h"
#include "steadyclock.h"
#include "support/attributetext.h"
#include "support/recordingbridge.h"
#include "support/recordingplugins.h"
#include "support/scriptedruntime.h"
#include "vlviewerdelegatecomponenthost.h"
#include "vlviewerdelegatehost.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace ViewerAPI::test {

/// Time that stands still until it is moved; in place of the machine's while it lives.
class StoppedClock {
public:
    StoppedClock() {
        now = 5'000'000'000;
        setSteadyClockSource([] { return now; });
    }
    ~StoppedClock() { setSteadyClockSource(nullptr); }
    StoppedClock(const StoppedClock&) = delete;
    StoppedClock& operator=(const StoppedClock&) = delete;

    static void advanceMs(std::int64_t milliseconds) { now += milliseconds * 1'000'000; }
    static void advanceNs(std::int64_t nanoseconds) { now += nanoseconds; }

    static inline std::int64_t now = 0;
};

/// The user interface's side of the channels: records what is fired as `channel NAME VALUE` in a
/// PluginLog and answers as told.
class RecordingChannels {
public:
    explicit RecordingChannels(PluginLog& log) {
        setChannelDispatch(
            [this, &log](void* object, const char* name, const VlAttribute::Attribute& value) {
                hostedPythonObject = object;
                log.lines.push_back("channel " + std::string(name) + " " + textOf(value));
                return onFire ? onFire(name) : VlAttribute::Attribute();
            });
    }
    ~RecordingChannels() { setChannelDispatch({}); }
    RecordingChannels(const RecordingChannels&) = delete;
    RecordingChannels& operator=(const RecordingChannels&) = delete;

    std::function<VlAttribute::Attribute(const std::string& name)> onFire;
    void* hostedPythonObject = nullptr; ///< of the last call
};

/// Numbers of the scripted clients, in their order of creation.
enum ClientNumber { kPrimaryClient = 1, kPinnedClient, kSourcesClient, kLookThroughClient };

/// A delegate among doubles of everything around it. Plug-ins "D", and the components "A", "B" and
/// "C", are registered; the delegate is of "D".
class DelegateTest : public testing::Test {
protected:
    using Lines = std::vector<std::string>;

    DelegateTest() { start(); }
    ~DelegateTest() override { delegate.reset(); }

    /// What a test makes doubles do refers to its own variables, which end before the delegate.
    void TearDown() override {
        for (RecordingPlugin* const recorder : {&plugin, &componentA, &componentB, &componentC}) {
            recorder->onCall = nullptr;
        }
        bridge.onCall = nullptr;
        channels.onFire = nullptr;
    }

    /// A fresh delegate with an empty log.
    void start() {
        delegate.reset();
        runtime.reset(); // before the next one: each withdraws the host suite at its end
        runtime = std::make_unique<ScriptedRuntime>();
        delegate = std::make_unique<VlViewerDelegateHostStruct>("D", &pythonObject);
        log.take();
        runtime->takeCalls();
    }

    ScriptedClient& client(int number) { return runtime->client(number); }

    /// Reports "/root" and these locations, each open, and pumps; forgets what plug-ins heard.
    void
    populate(const std::vector<std::pair<std::string, VlAttribute::GroupAttribute>>& locations);

    VlAttribute::GroupAttribute named(const std::string& name) {
        return VlAttribute::GroupAttribute{{"name", VlAttribute::StringAttribute(name)}};
    }

    /// The log without bridge lines, which stand for every event.
    Lines takePluginLines() {
        Lines lines = log.take();
        std::erase_if(lines, [](const std::string& line) { return line.rfind("bridge ", 0) == 0; });
        return lines;
    }

    PluginLog log;
    StoppedClock clock;
    RecordingBridge bridge{log};
    RecordingChannels channels{log};
    RecordingPlugin plugin{log, RecordingPlugin::Kind::Delegate, "D"};
    RecordingPlugin componentA{log, RecordingPlugin::Kind::Component, "A"};
    RecordingPlugin componentB{log, RecordingPlugin::Kind::Component, "B"};
    RecordingPlugin componentC{log, RecordingPlugin::Kind::Component, "C"};
    int pythonObject = 0;
    std::unique_ptr<ScriptedRuntime> runtime;
    std::unique_ptr<VlViewerDelegateHostStruct> delegate;
};

inline void DelegateTest::populate(
    const std::vector<std::pair<std::string, VlAttribute::GroupAttribute>>& locations) {
    std::vector<const char*> open{"/root"};
    client(kPrimaryClient).report("/root", VlAttribute::GroupAttribute::Empty(), {"x"});
    for (const auto& [path, attributes] : locations) {
        client(kPrimaryClient).report(path, attributes, {"x"});
        open.push_back(path.c_str());
    }
    delegate->openLocations(open.data(), static_cast<std::uint32_t>(open.size()));
    delegate->processLocationEvents();
    log.take();
    runtime->takeCalls();
    plugin.events.clear();
}

} // namespace ViewerAPI::test
