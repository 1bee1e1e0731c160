// The handles of a manipulator: how they are found, numbered and removed, and each by itself.

#include "vlmanipulatorhandlehost.h"

#include "support/manipulatortest.h"

#include "viewer_api/ManipulatorHandlePluginSuite.h"

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::DoubleAttribute;

constexpr const char* kIdentity = "(1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1)";

class ManipulatorHandles : public ManipulatorTest {
protected:
    ManipulatorHandles() : host(*activate({})) { log.take(); }

    /// Handles of "Arrow" under these names.
    void add(const std::vector<std::string>& names) {
        for (const std::string& name : names) {
            added.push_back(host.addManipulatorHandle("Arrow", name));
        }
        log.take();
    }
    [[nodiscard]] std::vector<std::string> namesByIndex() const {
        std::vector<std::string> names;
        for (std::uint32_t index = 0; index < host.getNumberOfManipulatorHandles(); ++index) {
            names.emplace_back(host.getManipulatorHandleName(index));
        }
        return names;
    }

    VlManipulatorHostStruct& host;
    std::vector<VlManipulatorHandleHostStruct*> added;
};

// ---- The list

TEST_F(ManipulatorHandles, areFoundByNameAndByIndexInOrderOfCreation) {
    VlManipulatorHandleHostStruct* const first = host.addManipulatorHandle("Arrow", "z");
    VlManipulatorHandleHostStruct* const second = host.addManipulatorHandle("Ring", "a");
    EXPECT_THAT(log.take(), ElementsAre("Arrow create", "Ring create"));
    EXPECT_EQ(host.getNumberOfManipulatorHandles(), 2U);
    EXPECT_EQ(host.getManipulatorHandle("z"), first);
    EXPECT_EQ(host.getManipulatorHandle("a"), second);
    EXPECT_EQ(host.getManipulatorHandleByIndex(0), first);
    EXPECT_EQ(host.getManipulatorHandleByIndex(1), second);
    EXPECT_THAT(namesByIndex(), ElementsAre("z", "a"));
    EXPECT_EQ(first->manipulator, &host);
}

TEST_F(ManipulatorHandles, thatAreNotThereAreNullAndHaveNoName) {
    add({"a"});
    EXPECT_EQ(host.getManipulatorHandle("b"), nullptr);
    for (const std::uint32_t index : {1U, 2U, ~0U}) {
        EXPECT_EQ(host.getManipulatorHandleByIndex(index), nullptr);
        EXPECT_STREQ(host.getManipulatorHandleName(index), "");
    }
}

TEST_F(ManipulatorHandles, twoUnderOneNameStayAndByNameTheSecondIsFound) {
    add({"a", "a"});
    EXPECT_EQ(host.getNumberOfManipulatorHandles(), 2U);
    EXPECT_EQ(host.getManipulatorHandle("a"), added[1]);
    EXPECT_EQ(host.getManipulatorHandleByIndex(0), added[0]);
    EXPECT_THAT(namesByIndex(), ElementsAre("", "a"));
    host.removeManipulatorHandle("a");
    EXPECT_EQ(host.getManipulatorHandle("a"), nullptr) << "the first has no name any more";
    EXPECT_THAT(host.handles, ElementsAre(added[0]));
}

TEST_F(ManipulatorHandles, removalByNameKeepsAllOtherNamesInStep) {
    add({"b", "d", "a", "c"});
    host.removeManipulatorHandle("d");
    EXPECT_THAT(log.take(), ElementsAre("Arrow destroy"));
    EXPECT_THAT(namesByIndex(), ElementsAre("b", "a", "c"));
    for (const char* name : {"a", "b", "c"}) {
        EXPECT_STREQ(host.getManipulatorHandleName(host.handleIndexByName.at(name)), name);
    }
    host.removeManipulatorHandle("d");
    EXPECT_THAT(log.take(), IsEmpty()) << "a name that is missing";
}

TEST_F(ManipulatorHandles, removalByIndexLeavesNamesBehindTheRemovedOneStale) {
    add({"b", "c", "a", "d"});
    host.removeManipulatorHandleByIndex(0); // "b"
    EXPECT_THAT(host.handles, ElementsAre(added[1], added[2], added[3]));
    // "a" sorts before "b" and follows; "c" and "d" sort behind and keep what they had.
    EXPECT_THAT(host.handleIndexByName,
                ElementsAre(std::pair("a", 1U), std::pair("c", 1U), std::pair("d", 3U)));
    EXPECT_EQ(host.getManipulatorHandle("a"), added[2]);
    EXPECT_EQ(host.getManipulatorHandle("c"), added[2]) << "one further than it stands";
    EXPECT_EQ(host.getManipulatorHandle("d"), nullptr) << "past the end";
    EXPECT_STREQ(host.getManipulatorHandleName(3), "d");
}

TEST_F(ManipulatorHandles, removalByIndexOfOneWithoutANameFollowsInAllNames) {
    add({"a", "a", "b", "c"});
    host.removeManipulatorHandleByIndex(0);
    EXPECT_THAT(namesByIndex(), ElementsAre("a", "b", "c"));
}

TEST_F(ManipulatorHandles, removalByNameOfAStaleNameEndsAtMostTheHandleItLeadsTo) {
    add({"a", "b", "c"});
    host.removeManipulatorHandleByIndex(0);
    host.removeManipulatorHandle("c"); // its index is past the end
    EXPECT_EQ(host.getNumberOfManipulatorHandles(), 2U);
    host.removeManipulatorHandle("b"); // its index is "c"'s now
    EXPECT_THAT(host.handles, ElementsAre(added[1]));
    EXPECT_THAT(host.handleIndexByName, IsEmpty());
}

TEST_F(ManipulatorHandles, removalAtTheEndThrowsAndBeyondDoesNothing) {
    for (const char* name : {"", "a"}) {
        const std::uint32_t count = host.getNumberOfManipulatorHandles();
        EXPECT_THROW(host.removeManipulatorHandleByIndex(count), std::out_of_range);
        EXPECT_EQ(textThrownBy([&] { host.removeManipulatorHandleByIndex(count); }),
                  "invalid vector<T> subscript");
        host.removeManipulatorHandleByIndex(count + 1);
        host.removeManipulatorHandleByIndex(~0U);
        EXPECT_EQ(host.getNumberOfManipulatorHandles(), count);
        add({name});
    }
}

TEST_F(ManipulatorHandles, pluginsThatCannotBeHadThrowTheirTextsAndAddNothing) {
    const RecordingHandle withoutTable(log, "WithoutTable", RecordingHandle::Table::None);
    ring.refusesCreate = true;
    add({"a"});
    const std::pair<const char*, std::string> kRows[] = {
        {"Nobody", "Couldn't load ManipulatorHandle plugin type 'Nobody'."},
        {"Move", "Couldn't load ManipulatorHandle plugin type 'Move'."},
        {"WithoutTable", "Error getting ManipulatorHandle plugin suite for 'WithoutTable'."},
        {"Ring", "Failed to create ManipulatorHandle plugin instance for 'Ring'."},
    };
    for (const auto& [name, text] : kRows) {
        EXPECT_EQ(textThrownBy([&, name = name] { host.addManipulatorHandle(name, "a"); }), text);
        EXPECT_THAT(host.handles, ElementsAre(added[0]));
        EXPECT_EQ(host.getManipulatorHandle("a"), added[0]);
    }
    EXPECT_THAT(log.take(), ElementsAre("Ring create")) << "and nothing to destroy";
}

TEST_F(ManipulatorHandles, endInTheirOrderBeforeTheirManipulator) {
    host.addManipulatorHandle("Ring", "a");
    host.addManipulatorHandle("Arrow", "b");
    host.addManipulatorHandle("Ring", "a");
    log.take();
    viewport->deactivateManipulator("Move", false);
    EXPECT_THAT(log.take(),
                ElementsAre("Ring destroy", "Arrow destroy", "Ring destroy", "Move destroy"));
}

// ---- One handle

TEST_F(ManipulatorHandles, aNewOnesCombinedXformIsTheManipulators) {
    const DoubleAttribute xform({2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 5, 6, 7, 1}, 4);
    host.setXform(xform);
    const VlManipulatorHandleHostStruct& handle = *host.addManipulatorHandle("Arrow", "a");
    EXPECT_EQ(handle.getCombinedXform(), xform);
    EXPECT_EQ(handle.getCombinedXform().getTupleSize(), 4);
    EXPECT_FALSE(handle.getLocalXform().isValid()) << "until it is set";
}

TEST_F(ManipulatorHandles, theLocalXformStandsOnTheLeft) {
    VlManipulatorHandleHostStruct& handle = *host.addManipulatorHandle("Arrow", "a");
    host.setXform(DoubleAttribute({0, 2, 0, 0, -2, 0, 0, 0, 0, 0, 2, 0, 10, 0, 0, 1}, 4));
    handle.setLocalXform(DoubleAttribute({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1, 0, 0, 1}, 4));
    // One along the manipulator's own x axis, which is turned to y and twice as long.
    EXPECT_EQ(textOf(handle.getCombinedXform()), "(0 2 0 0 -2 0 0 0 0 0 2 0 10 2 0 1)");
}

TEST_F(ManipulatorHandles, theCombinedXformFollowsTheManipulator) {
    VlManipulatorHandleHostStruct& handle = *host.addManipulatorHandle("Arrow", "a");
    handle.setLocalXform(DoubleAttribute({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1, 2, 3, 1}, 4));
    host.setXform(DoubleAttribute({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 4, 4, 4, 1}, 4));
    EXPECT_EQ(textOf(handle.getCombinedXform()), "(1 0 0 0 0 1 0 0 0 0 1 0 5 6 7 1)");
    host.setXform(DoubleAttribute());
    EXPECT_EQ(textOf(handle.getCombinedXform()), "(1 0 0 0 0 1 0 0 0 0 1 0 1 2 3 1)");
}

TEST_F(ManipulatorHandles, aNullLocalXformIsTheIdentityAndStaysNull) {
    VlManipulatorHandleHostStruct& handle = *host.addManipulatorHandle("Arrow", "a");
    handle.setLocalXform(DoubleAttribute({2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1}, 4));
    EXPECT_TRUE(handle.getLocalXform().isValid());
    handle.setLocalXform(DoubleAttribute());
    EXPECT_FALSE(handle.getLocalXform().isValid());
    EXPECT_EQ(handle.localXformMatrix, Imath::M44d());
    EXPECT_EQ(textOf(handle.getCombinedXform()), kIdentity);
}

TEST_F(ManipulatorHandles, callsGoToThePlugin) {
    VlManipulatorHandleHostStruct& handle = *host.addManipulatorHandle("Arrow", "a");
    log.take();
    EXPECT_FALSE(handle.event(named("press").getHandle()));
    arrow.handles = -3;
    EXPECT_TRUE(handle.event(nullptr));
    handle.draw();
    handle.pickerDraw(0xFFFF'FFFF'FFFF'FFFF);
    handle.notifyPlugin();
    EXPECT_THAT(log.take(),
                ElementsAre("Arrow event {name=\"press\"}", "Arrow event null", "Arrow draw",
                            "Arrow pickerDraw 18446744073709551615", "Arrow notify"));
}

TEST_F(ManipulatorHandles, areDrawnWhetherOrNotTheManipulatorHasLocations) {
    VlManipulatorHandleHostStruct& handle = *host.addManipulatorHandle("Arrow", "a");
    log.take();
    EXPECT_FALSE(host.draw());
    handle.draw();
    EXPECT_THAT(log.take(), ElementsAre("Arrow draw"));
}

TEST_F(ManipulatorHandles, isEngagedFollowsTheFlagWhateverTheLocationsAre) {
    populate({{"/root/a", fits()}});
    for (const std::vector<std::string>& paths :
         {std::vector<std::string>{}, std::vector<std::string>{"/root/a"}}) {
        viewport->deactivateAllManipulators(false);
        VlManipulatorHandleHostStruct& handle = *activate(paths)->addManipulatorHandle("Arrow", "");
        EXPECT_FALSE(handle.isEngaged()) << "at first";
        handle.engaged = true;
        EXPECT_TRUE(handle.isEngaged());
        handle.engaged = false;
        EXPECT_FALSE(handle.isEngaged());
    }
}

TEST_F(ManipulatorHandles, noneIsEngagedWhileTheManipulatorIsMade) {
    bool isEngaged = true;
    VlManipulatorHandleHostStruct* handle = nullptr;
    aim.onCall = [&](std::string_view entry) {
        if (entry != "create") {
            return;
        }
        handle = static_cast<VlManipulatorHostStruct*>(aim.host)->addManipulatorHandle("Arrow", "");
        handle->engaged = true;
        isEngaged = handle->isEngaged();
    };
    activate({}, "Aim");
    EXPECT_FALSE(isEngaged);
    EXPECT_TRUE(handle->isEngaged());
}

} // namespace
} // namespace ViewerAPI::test
