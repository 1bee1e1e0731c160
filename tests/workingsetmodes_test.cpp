// Entering and leaving working-set mode over the real engine: what is restored, and what it costs.

#include "viewersession.h"

#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <gmock/gmock.h>

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;
using VlScenelibEngine::ApplicationGraph::getNumberOfCooks;
using VlScenelibEngine::ApplicationGraph::Transaction;

GroupAttribute including(const std::vector<std::string>& paths) {
    return GroupAttribute{{"include", StringAttribute(paths)}};
}

/// Sets of 10 groups of 100 leaves, "/root/set_0/group_0/leaf_0".
class WorkingSetModes : public testing::Test {
protected:
    void view(int leaves) {
        Transaction transaction;
        const int op = transaction.createOp("Scene.Generate", {{"leafCount", IntAttribute(leaves)},
                                                               {"withGeometry", IntAttribute(0)}});
        transaction.commit();
        session.delegate->setViewOp(op);
        session.settle();
    }

    void setMode(bool isWorkingSet) {
        session.delegate->setWorkingSetVisibilityEnabled(isWorkingSet);
        session.settle();
    }
    void show(const std::vector<std::string>& paths) {
        session.delegate->setVisibilityWorkingSet(including(paths));
        session.settle();
    }

    [[nodiscard]] std::vector<std::string> knownPaths() const {
        std::vector<std::string> paths;
        for (const auto& location : session.known.locations()) {
            paths.push_back(location.first);
        }
        return paths;
    }

    /// Gives the engine a commit that changes nothing here.
    void keepBusy() {
        Transaction transaction;
        transaction.createOp("no-op");
        transaction.commit();
    }

    ViewerSession session;
};

TEST_F(WorkingSetModes, backInExpansionModeAllIsAsItWas) {
    view(2000);
    session.open("/root");
    session.open("/root/set_1");
    session.pin("/root/set_0/group_3/leaf_7");
    session.pin("/root/set_1/group_2");
    session.hide("/root/set_1/group_4");
    session.settle();
    const auto before = session.known.locations();
    ASSERT_GT(before.size(), 12U);
    show({"/root/set_0/group_1"});
    setMode(true);
    EXPECT_NE(session.known.locations(), before);
    setMode(false);
    EXPECT_EQ(session.known.locations(), before);
}

TEST_F(WorkingSetModes, pumpingWhileTheModeIsBeingLeftTakesNothingAway) {
    const std::string pinned = "/root/set_0/group_3/leaf_7";
    view(2000);
    session.open("/root");
    session.settle();
    const auto before = session.known.locations();
    show({"/root/set_0/group_1"});
    // Where the engine stands when the first pump comes is a matter of chance.
    for (int round = 0; round < 100; ++round) {
        session.pin(pinned);
        session.settle();
        setMode(true);
        session.unpin(pinned);
        for (int i = 0; i < 10 * (round % 3); ++i) {
            keepBusy();
        }
        session.delegate->setWorkingSetVisibilityEnabled(false);
        for (int i = 0; i < round % 5; ++i) {
            session.pump();
        }
        session.settle();
        ASSERT_EQ(session.known.locations(), before) << round;
    }
}

TEST_F(WorkingSetModes, whatOnlyAPinHasShownStaysAsItWas) {
    view(1000);
    session.pin("/root/set_0/group_2/leaf_7");
    session.settle();
    show({"/root/set_0/group_1/leaf_5"});
    setMode(true);
    // The set has told of its own leaf and that leaf's ancestors alone.
    EXPECT_THAT(knownPaths(), ElementsAre("/root", "/root/set_0", "/root/set_0/group_1",
                                          "/root/set_0/group_1/leaf_5", "/root/set_0/group_2",
                                          "/root/set_0/group_2/leaf_7"));
    EXPECT_FALSE(session.known.find("/root/set_0/group_2/leaf_7")->hidden);
}

TEST_F(WorkingSetModes, aLocationThatAPinKeptIsToldOfAnewWhenTheModeComesBack) {
    view(1000);
    session.pin("/root/set_0/group_2");
    session.settle();
    show({"/root/set_0/group_2/leaf_7"});
    setMode(true);
    EXPECT_TRUE(session.known.find("/root/set_0/group_2")->hidden);
    const auto before = session.known.locations();
    // Here the pin's client tells of the group; the primary client has it as it was in the mode.
    setMode(false);
    EXPECT_FALSE(session.known.find("/root/set_0/group_2")->hidden);
    setMode(true);
    EXPECT_EQ(session.known.locations(), before);
}

TEST_F(WorkingSetModes, theAncestorsOfAPinComeBackAfterTheModeHasTakenThemDown) {
    view(1000);
    session.open("/root");
    session.pin("/root/set_0/group_2");
    session.settle();
    const auto before = session.known.locations();
    ASSERT_EQ(before.size(), 3U);
    show({"/root/elsewhere"});
    setMode(true);
    EXPECT_THAT(knownPaths(), ElementsAre("/root"));
    // Only the pin's client shows the set now, which was told gone by the primary client.
    session.close("/root");
    setMode(false);
    EXPECT_THAT(knownPaths(), ElementsAre("/root", "/root/set_0", "/root/set_0/group_2"));
    EXPECT_EQ(session.known.find("/root/set_0")->attributes, before.at("/root/set_0").attributes);
}

TEST_F(WorkingSetModes, aPinOfTheModeIsRecordedAndShowsOnceTheModeIsOff) {
    view(1000);
    show({"/root/set_0/group_1/leaf_5"});
    setMode(true);
    const std::vector<std::string> shown{"/root", "/root/set_0", "/root/set_0/group_1",
                                         "/root/set_0/group_1/leaf_5"};
    EXPECT_EQ(knownPaths(), shown);
    session.pin("/root/set_0/group_2");
    session.settle();
    EXPECT_EQ(knownPaths(), shown);
    setMode(false);
    EXPECT_THAT(knownPaths(), ElementsAre("/root", "/root/set_0", "/root/set_0/group_2"));
}

TEST_F(WorkingSetModes, aPinTakenAwayInTheModeIsGoneAfterIt) {
    view(1000);
    session.pin("/root/set_0/group_2");
    session.settle();
    show({"/root/set_0/group_2"});
    setMode(true);
    session.unpin("/root/set_0/group_2");
    session.settle();
    EXPECT_EQ(knownPaths().size(), 3U + 100U);
    setMode(false);
    EXPECT_THAT(knownPaths(), ElementsAre("/root"));
}

TEST_F(WorkingSetModes, anAncestorIsShownHiddenAboveWhatIsIncluded) {
    view(1000);
    show({"/root/set_0/group_1"});
    setMode(true);
    EXPECT_TRUE(session.known.find("/root")->hidden);
    EXPECT_TRUE(session.known.find("/root/set_0")->hidden);
    EXPECT_FALSE(session.known.find("/root/set_0/group_1")->hidden);
    EXPECT_FALSE(session.known.find("/root/set_0/group_1/leaf_0")->hidden);
}

TEST_F(WorkingSetModes, theGroupOfTheResolutionDoesNotReachPlugins) {
    view(1000);
    show({"/root/set_0/group_1"});
    setMode(true);
    for (const auto& [path, location] : session.known.locations()) {
        EXPECT_FALSE(location.attributes.getChildByName("__viewerWorkingSets").isValid()) << path;
    }
}

TEST_F(WorkingSetModes, withoutAWorkingSetTheModeKeepsWhatIsShown) {
    view(1000);
    session.open("/root");
    session.open("/root/set_0");
    session.settle();
    const auto before = session.known.locations();
    ASSERT_EQ(before.size(), 12U);
    setMode(true);
    EXPECT_EQ(session.known.locations(), before);
}

// ---- Costs, counted in cooks and in records to the plug-in

struct Cost {
    std::uint64_t cooks = 0;
    std::size_t records = 0;
};

class WorkingSetCosts : public WorkingSetModes {
protected:
    template <class Action>
    Cost costOf(Action&& action) {
        const Cost before{getNumberOfCooks(), session.numberOfRecords};
        action();
        session.settle();
        return {getNumberOfCooks() - before.cooks, session.numberOfRecords - before.records};
    }
};

TEST_F(WorkingSetCosts, ofEnteringAndLeavingAreOfWhatAppearsAndDisappears) {
    for (const int leaves : {2000, 50000}) {
        SCOPED_TRACE(leaves);
        view(leaves);
        show({"/root/set_0/group_1/leaf_5", "/root/set_1/group_0"});
        // Set 0 with its group and leaf; set 1 with its group of 100 leaves; the root.
        constexpr std::size_t kShown = 3 + 102 + 1;
        const Cost entering = costOf([this] { setMode(true); });
        EXPECT_EQ(session.known.locations().size(), kShown);
        EXPECT_EQ(entering.records, kShown);
        // By the scene, the resolution and the pruning, each at most once a location.
        EXPECT_LE(entering.cooks, 3 * kShown);
        const Cost leaving = costOf([this] { setMode(false); });
        // What is below "/root" goes with two removals, of the sets.
        EXPECT_EQ(leaving.records, 3U);
        EXPECT_EQ(leaving.cooks, 0U);
        // All that was cooked is there still.
        EXPECT_EQ(costOf([this] { setMode(true); }).cooks, 0U);
        setMode(false);
    }
}

TEST_F(WorkingSetCosts, ofAnotherLocationInTheSetAreOfIt) {
    view(20000);
    std::vector<std::string> paths;
    for (int set = 0; set < 20; ++set) {
        for (int leaf = 0; leaf < 50; ++leaf) {
            paths.push_back("/root/set_" + std::to_string(set) + "/group_0/leaf_" +
                            std::to_string(leaf));
        }
    }
    show(paths);
    setMode(true);
    ASSERT_EQ(session.known.locations().size(), 1U + 20U + 20U + 1000U);
    paths.push_back("/root/set_7/group_0/leaf_77");
    const Cost adding = costOf([&] { show(paths); });
    EXPECT_EQ(adding.records, 1U);
    // The leaf and its three ancestors, each by the scene, the resolution and the pruning.
    EXPECT_LE(adding.cooks, 12U);
    paths.pop_back();
    const Cost removing = costOf([&] { show(paths); });
    EXPECT_EQ(removing.records, 1U);
    EXPECT_LE(removing.cooks, 12U);
}

} // namespace
} // namespace ViewerAPI::test
