#pragma once

#include "probetest.h"

#include "pythonchannel.h"
#include "support/attributetext.h"
#include "support/recordingbridge.h"
#include "vlviewporthost.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupBuilder.h"

#include <array>
#include <sstream>
#include <stdexcept>
#include <string>

constexpr std::size_t kNumberOfDelegateHostEntries = 50;

/// The text of a matrix that moves along x.
inline std::string translation(const char* x) {
    return std::string("(1 0 0 0 0 1 0 0 0 0 1 0 ") + x + " 0 0 1)";
}

/// "delegate" is version 3, "delegate2" version 2.
using Version = const char*;

/// A probe whose host suite is called. Its delegate views "/root" > "a" > "b", all of them open,
/// and has a component "c" and a viewport "v".
class DelegateHostSuiteTest : public ProbeTest {
protected:
    void SetUp() override {
        using namespace VlAttribute;
        using ViewerAPI::test::textOf;
        ViewerAPI::setChannelDispatch([this](void*, const char* name, const Attribute& value) {
            ui.lines.push_back("channel " + std::string(name) + " " + textOf(value));
            if (name == std::string("failing")) {
                throw std::runtime_error("the listener failed");
            }
            if (name == std::string("__GET_SELECTED_LOCATIONS") || name == std::string("answer")) {
                return answer;
            }
            return name == std::string("echo") ? value : Attribute();
        });
        ProbeTest::SetUp();
        delegate->addComponent("ProbeComponent", "c");
        delegate->addViewport(
            new ViewerAPI::VlViewportHostStruct("ProbeViewport", "v", delegate.get()), "v");
        delegate->setBoundingBoxesEnabled(false); // "/root/a" and "/root/a/b" shall be all there is
        op = runtime.addOp();
        const auto sideways = [](double x) { return DoubleAttribute({x, 0, 0}); };
        runtime.client(1).report("/root", GroupAttribute::Empty(), {"a"});
        runtime.client(1).report("/root/a",
                                 GroupBuilder()
                                     .set("name", StringAttribute("a"))
                                     .set("xform.before.translate", sideways(10))
                                     .set("xform.g.translate", sideways(100))
                                     .set("xform.after.translate", sideways(1000))
                                     .set("bound", DoubleAttribute({0, 1, 0, 1, 0, 1}))
                                     .build(),
                                 {"b"});
        runtime.client(1).report("/root/a/b", GroupBuilder()
                                                  .set("xform.g.reset", DoubleAttribute(1))
                                                  .set("xform.g.translate", sideways(5))
                                                  .build());
        command("return:1@ProbeManipulator.matches#1");
        command("returnAttribute:group:label=string:Probe it;rank=int:2@ProbeManipulator.getTags");
        std::array<const char*, 2> open{"/root", "/root/a"};
        delegate->openLocations(open.data(), open.size());
        delegate->processLocationEvents();
        takeEffects();
    }
    void TearDown() override {
        ProbeTest::TearDown();
        delegate.reset();
        ViewerAPI::setChannelDispatch({});
    }

    /// Makes the call from within the plug-in.
    std::string call(Version version, std::string line) {
        const auto replace = [&line](const std::string& word, const auto& value) {
            if (const std::size_t place = line.find(word); place != std::string::npos) {
                std::ostringstream text;
                text << value();
                line.replace(place, word.size(), text.str());
            }
        };
        replace("{op}", [this] { return op; });
        replace("{viewport}", [this]() -> void* {
            return new ViewerAPI::VlViewportHostStruct("ProbeViewport", "w", delegate.get());
        });
        command("call:" + std::string(version) + "." + line);
        const std::string entry = line.substr(0, line.find(' '));
        const std::string recorded = log().back();
        const std::string begin = "-> " + std::string(version) + "." + entry + ": ";
        EXPECT_EQ(recorded.substr(0, begin.size()), begin);
        return recorded.substr(begin.size());
    }

    Lines takeEffects() {
        Lines effects = runtime.takeCommands();
        for (std::string& line : ui.take()) {
            effects.push_back(std::move(line));
        }
        for (std::string& line : log("libraryLog")) {
            if (line.find("-> ") == std::string::npos) {
                effects.push_back(std::move(line));
            }
        }
        clearLog();
        return effects;
    }

    ViewerAPI::test::PluginLog ui;
    ViewerAPI::test::RecordingBridge bridge{ui};
    int op = 0;
    VlAttribute::Attribute answer =
        VlAttribute::StringAttribute("/root/a"); ///< of the channels that have one
};
