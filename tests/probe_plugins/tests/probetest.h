#pragma once

#include "optionidgenerator.h"
#include "suites/hostsuites.h"
#include "support/scriptedruntime.h"
#include "vlviewerdelegatehost.h"

#include "VlAttribute/StringAttribute.h"
#include "VlPluginSystem/VlPluginSystem.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// A delegate of "ProbeDelegate", from the library that the plug-in manager loaded, with an empty
/// log. It is driven through its options.
class ProbeTest : public testing::Test {
protected:
    using Lines = std::vector<std::string>;

    void SetUp() override {
        ViewerAPI::registerHostSuites();
        ASSERT_EQ(VlPluginSystem::loadLibrary(PROBE_PLUGINS), 7);
        delegate =
            std::make_unique<ViewerAPI::VlViewerDelegateHostStruct>("ProbeDelegate", nullptr);
        clearLog();
    }
    void TearDown() override { command("clear"); }

    static std::uint64_t id(const char* name) {
        return ViewerAPI::VlOptionIdGeneratorHostStruct::instance().generate(name);
    }
    void clearLog() { delegate->setOption(id("clearLog"), {}); }
    void command(const std::string& text) {
        delegate->setOption(id("command"), VlAttribute::StringAttribute(text));
    }
    Lines log(const char* which = "log") {
        const VlAttribute::StringAttribute lines(delegate->getOption(id(which)));
        Lines result;
        for (const auto& line : lines.getNearestSample(0.0F)) {
            result.emplace_back(line);
        }
        return result;
    }

    ViewerAPI::test::ScriptedRuntime runtime;
    std::unique_ptr<ViewerAPI::VlViewerDelegateHostStruct> delegate;
};
