#include "manipulator/liveedits.h"
#include "support/fakehost.h"
#include "viewer_api/plugin/HostSuites.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

// Which manipulation groups a gesture holds open.
namespace {

using Bundled::LiveEdits;
using testing::ElementsAre;
using testing::IsEmpty;
using ViewerPlugin::ManipulatorHost;

class LiveEditGroups : public testing::Test {
protected:
    LiveEditGroups() {
        ViewerPlugin::pluginHost() = fakePluginHost();
        viewport.delegate = &delegate;
        manipulator.viewport = &viewport;
    }

    std::vector<LiveEdits::Target> targets(const std::vector<std::string>& paths) {
        std::vector<LiveEdits::Target> each;
        for (const std::string& path : paths) {
            each.push_back({path, "x", {}});
        }
        return each;
    }

    FakeDelegate delegate;
    FakeViewport viewport;
    FakeManipulator manipulator;
};

TEST_F(LiveEditGroups, areOpenOnceForEachLocationUntilTheEnd) {
    {
        const LiveEdits edits(ManipulatorHost(&manipulator), targets({"/a", "/a", "/b", "/a"}));
        EXPECT_THAT(manipulator.openGroups, ElementsAre("/a", "/b"));
    }
    EXPECT_THAT(manipulator.openGroups, IsEmpty());
}

TEST_F(LiveEditGroups, areClosedAgainWhenOneOfThemCantBeOpened) {
    manipulator.failingGroup = "/b";
    EXPECT_THROW(LiveEdits(ManipulatorHost(&manipulator), targets({"/a", "/b", "/c"})),
                 std::runtime_error);
    EXPECT_THAT(manipulator.openGroups, IsEmpty());
}

} // namespace
