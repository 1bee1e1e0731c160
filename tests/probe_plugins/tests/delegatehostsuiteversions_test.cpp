// What holds for the whole of the delegate's host suite, and how its versions differ.

#include "delegatehostsuitetest.h"

#include "vlviewerdelegatecomponenthost.h"

#include "VlPluginSystem/PluginManager.h"
#include "viewer_api/ViewerDelegateHostSuite.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <utility>

namespace {

using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::StringAttribute;

/// The table as the plug-in manager gives it to a library.
using DelegateHostEntries = std::array<std::uintptr_t, kNumberOfDelegateHostEntries>;

DelegateHostEntries entriesOf(std::uint32_t version) {
    static_assert(sizeof(DelegateHostEntries) == sizeof(ViewerDelegateHostSuite));
    DelegateHostEntries entries{};
    std::memcpy(entries.data(),
                PluginManager::getHost()->getSuite(VL_VIEWER_DELEGATE_HOST_SUITE, version),
                sizeof(entries));
    return entries;
}

TEST_F(DelegateHostSuiteTest, theVersionsDifferInEntry5Alone) {
    const DelegateHostEntries version2 = entriesOf(VL_VIEWER_DELEGATE_HOST_SUITE_VERSION_2);
    const DelegateHostEntries version3 = entriesOf(VL_VIEWER_DELEGATE_HOST_SUITE_VERSION);
    for (std::size_t entry = 0; entry < version2.size(); ++entry) {
        EXPECT_EQ(version2[entry] == version3[entry], entry != 5) << "entry " << entry;
    }
}

TEST_F(DelegateHostSuiteTest, version2TakesInTheParentAndTheGroupsBeforeAndVersion3AsTold) {
    delegate->locationTree.setAttributes(
        "/root", GroupBuilder().set("xform.g.translate", DoubleAttribute({1, 0, 0})).build());
    delegate->flushLocationChanges(true);
    const std::string arguments = "getPartialXform /root/a g translate 1 0";
    EXPECT_EQ(call("delegate2", arguments), translation("111"));
    const std::pair<const char*, const char*> flags[] = {
        {" 0 0 0", "100"},  {" 1 0 0", "101"},  {" 0 1 0", "110"},  {" 1 1 0", "111"},
        {" 0 0 1", "1100"}, {" 1 0 1", "1101"}, {" 0 1 1", "1110"}, {" -1 2 256", "1111"}};
    for (const auto& [words, x] : flags) {
        EXPECT_EQ(call("delegate", arguments + words), translation(x)) << words;
    }
}

TEST_F(DelegateHostSuiteTest, bothVersionsReachOneDelegate) {
    EXPECT_EQ(call("delegate2", "addComponent ProbeComponent fromVersion2"), "found");
    EXPECT_EQ(call("delegate", "getComponentIndex fromVersion2"), "1");
    EXPECT_EQ(call("delegate", "hideLocations /root/a"), "done");
    EXPECT_EQ(call("delegate2", "getHiddenLocations"), "\"/root/a\"");
}

TEST_F(DelegateHostSuiteTest, aComponentReachesItsDelegate) {
    const auto commandComponent = [this](const char* text) {
        delegate->getComponent("c")->setOption(id("command"), StringAttribute(text));
    };
    commandComponent("call:component.getViewerDelegate");
    commandComponent("call:delegate.getComponentName 0");
    commandComponent("call:delegate2.getComponentName 0");
    EXPECT_EQ(log("libraryLog"), (Lines{"ProbeComponent -> component.getViewerDelegate: found",
                                        "ProbeComponent -> delegate.getComponentName: c",
                                        "ProbeComponent -> delegate2.getComponentName: c"}));
}

class DelegateHostSuiteVersion : public DelegateHostSuiteTest,
                                 public testing::WithParamInterface<Version> {};

TEST_P(DelegateHostSuiteVersion, letsExceptionsThrough) {
    const std::pair<const char*, const char*> rows[] = {
        {"callPythonCallback failing int:1", "the listener failed"},
        {"addComponent Nobody n", "Couldn't load ViewerDelegateComponent plugin type 'Nobody'."},
        {"addComponent (null) n", "Couldn't load ViewerDelegateComponent plugin type ''."},
        {"insertComponent Nobody n 0",
         "Couldn't load ViewerDelegateComponent plugin type 'Nobody'."},
    };
    for (const auto& [line, text] : rows) {
        try {
            call(GetParam(), line);
            FAIL() << line;
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), text) << line;
        }
    }
    EXPECT_EQ(delegate->getNumberOfComponents(), 1U);
}

TEST_P(DelegateHostSuiteVersion, aReturnedHandleIsTheCallersAndAPassedOneStaysItsOwn) {
    const GroupAttribute attributes = delegate->getAttributes("/root/a", 0);
    // The library releases what it is given, and what it has passed.
    const char* const lines[] = {"getAttributes /root/a 0", "getCookedAttributes /root/a 0",
                                 "getSelectedLocations", "callPythonCallback answer int:1"};
    const std::pair<std::uint32_t, std::uint32_t> before{attributes.getHandle()->refCount,
                                                         answer.getHandle()->refCount};
    for (const char* const line : lines) {
        for (int i = 0; i < 3; ++i) {
            EXPECT_NE(call(GetParam(), line), "null");
        }
        EXPECT_EQ(attributes.getHandle()->refCount, before.first) << line;
        EXPECT_EQ(answer.getHandle()->refCount, before.second) << line;
    }
}

INSTANTIATE_TEST_SUITE_P(Versions, DelegateHostSuiteVersion,
                         testing::Values("delegate2", "delegate"),
                         [](const auto& row) { return std::string(row.param); });

} // namespace
