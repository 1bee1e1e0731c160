#include "sceneclients.h"

#include "support/delegatetest.h"

#include "VlScenelib/Client.h"
#include "VlScenelib/Op.h"

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

class SceneClientsTest : public DelegateTest {
protected:
    void pin(const char* path) { delegate->pinLocations(&path, 1); }
    void unpin(const char* path) { delegate->unpinLocations(&path, 1); }

    // Ops 1 to 3 are the delegate's: no-op, resolve, prune.
    const GroupAttribute workingSet{{"include", StringAttribute("/root/a")}};
};

// ---- The viewed op

TEST_F(SceneClientsTest, setViewOpPointsEveryClientAtTheOp) {
    const int opId = runtime->addOp();
    EXPECT_EQ(delegate->setViewOp(opId), 2);
    EXPECT_THAT(runtime->takeCommands(),
                ElementsAre("getOpFromOpId 4", "setAllOpen client1 0", "createTransaction",
                            "setClientOp client1 op4", "setClientOp client2 op4",
                            "setClientOp client3 op4", "setClientOp client4 op4", "commit 2"));
}

TEST_F(SceneClientsTest, setViewOpTellsTheBridgeFirst) {
    bridge.onCall = [this](const std::string&) { EXPECT_THAT(runtime->takeCalls(), IsEmpty()); };
    delegate->setViewOp(runtime->addOp());
    EXPECT_THAT(log.take(), ElementsAre("bridge updateOp 4"));
}

TEST_F(SceneClientsTest, theSameOpTwiceIsToldTwiceAndCommittedOnce) {
    const int opId = runtime->addOp();
    delegate->setViewOp(opId);
    runtime->takeCommands();
    EXPECT_EQ(delegate->setViewOp(opId), -1);
    EXPECT_THAT(runtime->takeCommands(), IsEmpty());
    EXPECT_THAT(log.take(), ElementsAre("bridge updateOp 4", "bridge updateOp 4"));
}

TEST_F(SceneClientsTest, theNoOpsIdChangesNothingAtFirst) {
    EXPECT_EQ(delegate->setViewOp(delegate->scene.noOp->getId()), -1);
    EXPECT_THAT(runtime->takeCommands(), IsEmpty());
    EXPECT_THAT(log.take(), ElementsAre("bridge updateOp 1"));
}

TEST_F(SceneClientsTest, anUnknownOpEmptiesTheView) {
    EXPECT_EQ(delegate->setViewOp(99), 2);
    EXPECT_THAT(runtime->takeCommands(),
                ElementsAre("getOpFromOpId 99", "setAllOpen client1 0", "createTransaction",
                            "setClientOp client1 null", "setClientOp client2 null",
                            "setClientOp client3 null", "setClientOp client4 null", "commit 2"));
    const int opId = runtime->addOp();
    EXPECT_EQ(delegate->setViewOp(opId), 3);
    EXPECT_EQ(client(kPrimaryClient).viewedOp, opId);
}

// ---- Working sets

TEST_F(SceneClientsTest, workingSetModeViewsTheEndOfTheChainWithAllOpen) {
    delegate->setViewOp(runtime->addOp());
    runtime->takeCommands();
    delegate->setWorkingSetVisibilityEnabled(true);
    EXPECT_TRUE(delegate->getWorkingSetVisibilityEnabled());
    EXPECT_THAT(runtime->takeCommands(),
                ElementsAre("createTransaction",
                            "setOpArgs op2 WorkingSet.MultipleOnePassResolve {}",
                            "setOpInputs op2 [op4]", "setClientOp client1 op3",
                            "setClientOp client2 op4", "setClientOp client3 op4",
                            "setClientOp client4 op4", "commit 3", "setAllOpen client1 1"));
}

TEST_F(SceneClientsTest, endingWorkingSetModeClosesBeforeTheCommit) {
    delegate->setViewOp(runtime->addOp());
    delegate->setWorkingSetVisibilityEnabled(true);
    runtime->takeCommands();
    delegate->setWorkingSetVisibilityEnabled(false);
    EXPECT_THAT(runtime->takeCommands(),
                ElementsAre("setAllOpen client1 0", "createTransaction", "setClientOp client1 op4",
                            "setClientOp client2 op4", "setClientOp client3 op4",
                            "setClientOp client4 op4", "commit 4",
                            "setLocationsActive client2 []"));
}

TEST_F(SceneClientsTest, theSameModeAgainChangesNothing) {
    delegate->setWorkingSetVisibilityEnabled(false);
    EXPECT_THAT(runtime->takeCalls(), IsEmpty());
    delegate->setWorkingSetVisibilityEnabled(true);
    runtime->takeCalls();
    delegate->setWorkingSetVisibilityEnabled(true);
    EXPECT_THAT(runtime->takeCalls(), IsEmpty());
}

TEST_F(SceneClientsTest, theWorkingSetGoesIntoTheResolveOpsArguments) {
    delegate->setVisibilityWorkingSet(workingSet);
    EXPECT_THAT(runtime->takeCommands(),
                ElementsAre("createTransaction",
                            "setOpArgs op2 WorkingSet.MultipleOnePassResolve {workingSetsInfo={"
                            "viewerVisibility={include=\"/root/a\" polish=1}} "
                            "outputGroupName=\"__viewerWorkingSets\"}",
                            "commit 2"));
}

TEST_F(SceneClientsTest, theSameWorkingSetTwiceCommitsOnce) {
    delegate->setVisibilityWorkingSet(workingSet);
    runtime->takeCommands();
    delegate->setVisibilityWorkingSet(GroupAttribute{{"include", StringAttribute("/root/a")}});
    EXPECT_THAT(runtime->takeCommands(), IsEmpty());
}

TEST_F(SceneClientsTest, anInvalidWorkingSetWritesEmptyArgumentsAndKeepsTheChain) {
    delegate->setVisibilityWorkingSet(workingSet);
    runtime->takeCommands();
    delegate->setVisibilityWorkingSet({});
    EXPECT_THAT(runtime->takeCommands(),
                ElementsAre("createTransaction",
                            "setOpArgs op2 WorkingSet.MultipleOnePassResolve {}", "commit 3"));
    delegate->setWorkingSetVisibilityEnabled(true);
    EXPECT_EQ(client(kPrimaryClient).viewedOp, 3);
}

TEST_F(SceneClientsTest, aNewViewOpGoesBelowTheChainInWorkingSetMode) {
    delegate->setWorkingSetVisibilityEnabled(true);
    runtime->takeCommands();
    delegate->setViewOp(runtime->addOp());
    EXPECT_THAT(runtime->takeCommands(),
                ElementsAre("getOpFromOpId 4", "createTransaction",
                            "setOpArgs op2 WorkingSet.MultipleOnePassResolve {}",
                            "setOpInputs op2 [op4]", "setClientOp client1 op3",
                            "setClientOp client2 op4", "setClientOp client3 op4",
                            "setClientOp client4 op4", "commit 3", "setAllOpen client1 1"));
}

TEST_F(SceneClientsTest, pinsRestWhileWorkingSetModeIsOnAndComeBack) {
    pin("/root/a");
    runtime->takeCommands();
    delegate->setWorkingSetVisibilityEnabled(true);
    EXPECT_THAT(client(kPinnedClient).active, IsEmpty());
    pin("/root/b");
    pin("/root/c");
    unpin("/root/c");
    EXPECT_THAT(client(kPinnedClient).active, IsEmpty());
    delegate->setWorkingSetVisibilityEnabled(false);
    EXPECT_THAT(client(kPinnedClient).active, ElementsAre("/root/a", "/root/b"));
    EXPECT_TRUE(delegate->scene.savedPinnedLocations.empty());
}

TEST_F(SceneClientsTest, pinsMoveAsideBeforeTheViewChanges) {
    pin("/root/a");
    runtime->takeCalls();
    delegate->setWorkingSetVisibilityEnabled(true);
    const Lines commands = runtime->takeCommands();
    ASSERT_FALSE(commands.empty());
    EXPECT_EQ(commands.front(), "setLocationsInactive client2 [/root/a]");
}

TEST_F(SceneClientsTest, withoutPinsThePinnedClientIsLeftAlone) {
    delegate->setWorkingSetVisibilityEnabled(true);
    EXPECT_THAT(runtime->takeCommands(),
                testing::Not(testing::Contains(testing::StartsWith("setLocationsInactive"))));
}

TEST_F(SceneClientsTest, unpinInWorkingSetModeDropsWhatWasPinnedBefore) {
    pin("/root/a");
    delegate->setWorkingSetVisibilityEnabled(true);
    unpin("/root/a");
    delegate->setWorkingSetVisibilityEnabled(false);
    EXPECT_THAT(client(kPinnedClient).active, IsEmpty());
}

} // namespace
} // namespace ViewerAPI::test
