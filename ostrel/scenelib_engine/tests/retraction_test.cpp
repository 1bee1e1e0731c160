#include "enginescene.h"
#include "heldengine.h"

#include "VlAttribute/IntAttribute.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// A viewer's two clients on one scene: one that expands, one that pins.
class Retraction : public testing::Test {
protected:
    Retraction() {
        op = scene.createOp("Scene.Literal", literalArgs({{"/root/a/b", 1}, {"/root/a/c", 1}}));
        expanding = scene.createClient(op);
        pinning = scene.createClient(op);
        expanding->setLocationsActive(paths({"/root"}));
        expanding->setLocationsOpen(paths({"/root", "/root/a"}));
        scene.fetch(expanding);
    }

    EngineScene scene;
    EngineScene::OpPtr op;
    EngineScene::ClientPtr expanding;
    EngineScene::ClientPtr pinning;
};

TEST_F(Retraction, closingTakesAwayWhatNobodyElseShowsChildrenFirst) {
    expanding->setLocationsClosed(paths({"/root"}));
    EXPECT_THAT(scene.fetch(expanding), ElementsAre("-/root/a/b", "-/root/a/c", "-/root/a"));
}

TEST_F(Retraction, pinnedThenClosedLocationStaysWithoutARemovalAndAReturn) {
    pinning->setLocationsActive(paths({"/root/a/b"}));
    expanding->setLocationsClosed(paths({"/root"}));
    // Fetched at whatever moment, it is never taken away.
    while (scene.runtime->isProcessing()) {
        for (const std::string& line : EngineScene::fetchNow(expanding)) {
            EXPECT_EQ(line, "-/root/a/c");
        }
    }
    const auto lines = scene.fetch(expanding);
    EXPECT_TRUE(lines.empty() || lines == std::vector<std::string>{"-/root/a/c"});
    EXPECT_THAT(scene.fetch(pinning), ElementsAre("+/root", "+/root/a", "+/root/a/b"));
}

TEST_F(Retraction, unpinnedUnderAnOpenParentStays) {
    pinning->setLocationsActive(paths({"/root/a/b"}));
    scene.fetch(pinning);
    pinning->setLocationsInactive(paths({"/root/a/b"}));
    EXPECT_THAT(scene.fetch(pinning), IsEmpty());
    EXPECT_THAT(scene.fetch(expanding), IsEmpty());
}

TEST_F(Retraction, closedAndUnpinnedGoesFromBoth) {
    pinning->setLocationsActive(paths({"/root/a/b"}));
    scene.fetch(pinning);
    expanding->setLocationsClosed(paths({"/root/a"}));
    EXPECT_THAT(scene.fetch(expanding), ElementsAre("-/root/a/c"));
    pinning->setLocationsInactive(paths({"/root/a/b"}));
    EXPECT_THAT(scene.fetch(expanding), ElementsAre("-/root/a/b"));
    EXPECT_THAT(scene.fetch(pinning), ElementsAre("-/root/a/b"));
    expanding->setLocationsInactive(paths({"/root"}));
    EXPECT_THAT(scene.fetch(pinning), ElementsAre("-/root/a", "-/root"));
    EXPECT_THAT(scene.fetch(expanding), ElementsAre("-/root/a", "-/root"));
}

TEST_F(Retraction, whatChangedWhileItWasNotCookedIsToldOnReopening) {
    pinning->setLocationsActive(paths({"/root/a/b"}));
    scene.fetch(pinning);
    expanding->setLocationsClosed(paths({"/root/a"}));
    scene.fetch(expanding);
    scene.setArgs(op, "Scene.Literal", literalArgs({{"/root/a/b", 2}, {"/root/a/c", 1}}));
    // The ancestors have been cooked again on the way, and so are told again.
    EXPECT_THAT(scene.fetch(expanding), ElementsAre("+/root", "+/root/a"));
    EXPECT_THAT(scene.fetch(pinning), ElementsAre("+/root", "+/root/a", "+/root/a/b"));
    expanding->setLocationsOpen(paths({"/root/a"}));
    EXPECT_THAT(scene.fetch(expanding), UnorderedElementsAre("+/root/a/b", "+/root/a/c"));
    EXPECT_EQ(
        VlAttribute::IntAttribute(scene.getFetched("/root/a/b").getChildByName("value")).getValue(),
        2);
}

TEST_F(Retraction, nothingStaleComesBackOnReopening) {
    expanding->setLocationsClosed(paths({"/root/a"}));
    scene.setArgs(op, "Scene.Literal", literalArgs({{"/root/a/c", 5}}));
    EXPECT_THAT(scene.fetch(expanding),
                UnorderedElementsAre("-/root/a/b", "-/root/a/c", "+/root", "+/root/a"));
    expanding->setLocationsOpen(paths({"/root/a"}));
    EXPECT_THAT(scene.fetch(expanding), ElementsAre("+/root/a/c"));
}

TEST_F(Retraction, aKeptLocationGoesWhenItNoLongerExists) {
    pinning->setLocationsActive(paths({"/root/a/b"}));
    scene.fetch(pinning);
    expanding->setLocationsClosed(paths({"/root/a"}));
    scene.fetch(expanding);
    scene.setArgs(op, "Scene.Literal", literalArgs({{"/root/a/c", 1}}));
    EXPECT_THAT(scene.fetch(expanding), UnorderedElementsAre("-/root/a/b", "+/root", "+/root/a"));
    EXPECT_THAT(scene.fetch(pinning), UnorderedElementsAre("-/root/a/b", "+/root", "+/root/a"));
}

TEST_F(Retraction, aKeptLocationGoesWithTheClientThatShowedIt) {
    pinning->setLocationsActive(paths({"/root/a/b"}));
    scene.fetch(pinning);
    expanding->setLocationsClosed(paths({"/root/a"}));
    scene.fetch(expanding);
    pinning.reset();
    EXPECT_THAT(scene.fetch(expanding), ElementsAre("-/root/a/b"));
}

TEST_F(Retraction, aClientOfAnotherOpKeepsNothing) {
    const auto other = scene.createOp("no-op", {}, {op});
    scene.setOp(pinning, other);
    pinning->setLocationsActive(paths({"/root/a/b"}));
    scene.fetch(pinning);
    expanding->setLocationsClosed(paths({"/root"}));
    EXPECT_THAT(scene.fetch(expanding), ElementsAre("-/root/a/b", "-/root/a/c", "-/root/a"));
}

TEST_F(Retraction, aViewThatMovesToAnEqualSceneRetractsNothing) {
    const auto other = scene.createOp("no-op", {}, {op});
    scene.setOp(expanding, other);
    EXPECT_THAT(scene.fetch(expanding), IsEmpty());
}

TEST_F(Retraction, aViewThatMovesToAnotherSceneTellsTheDifference) {
    scene.setOp(expanding,
                scene.createOp("Scene.Literal", literalArgs({{"/root/a/c", 1}, {"/root/d", 1}})));
    EXPECT_THAT(scene.fetch(expanding),
                UnorderedElementsAre("+/root", "+/root/a", "+/root/a/c", "-/root/a/b", "+/root/d"));
}

TEST_F(Retraction, aViewWithoutAnOpRetractsAll) {
    scene.setOp(expanding, nullptr);
    EXPECT_THAT(scene.fetch(expanding),
                ElementsAre("-/root/a/b", "-/root/a/c", "-/root/a", "-/root"));
}

TEST_F(Retraction, isTakenBackWhenTheLocationReturnsBeforeTheFetch) {
    expanding->setLocationsClosed(paths({"/root"}));
    scene.settle();
    expanding->setLocationsOpen(paths({"/root"}));
    // Told again all the same: another client may have told of it meanwhile.
    EXPECT_THAT(scene.fetch(expanding),
                UnorderedElementsAre("+/root/a", "+/root/a/b", "+/root/a/c"));
}

TEST_F(Retraction, leavesNothingToldThatAnotherClientHasRetracted) {
    // What the pins' client shows, it stops showing unheard; the other tells it gone.
    pinning->setLocationsActive(paths({"/root/a/b"}));
    scene.fetch(pinning);
    pinning->setLocationsInactive(paths({"/root/a/b"}));
    expanding->setLocationsClosed(paths({"/root"}));
    EXPECT_THAT(scene.fetch(expanding), ElementsAre("-/root/a/b", "-/root/a/c", "-/root/a"));
    pinning->setLocationsActive(paths({"/root/a/b"}));
    EXPECT_THAT(scene.fetch(pinning), ElementsAre("+/root", "+/root/a", "+/root/a/b"));
}

TEST_F(Retraction, waitsWhileAnotherClientIsOnItsWayToTheSameOp) {
    // As when a viewer leaves working-set mode: what was pinned is owed, and the expanding client
    // comes back to it with a commit that is not applied yet.
    pinning->setLocationsActive(paths({"/root/a/b"}));
    scene.fetch(pinning);
    scene.setOp(expanding, scene.createOp("no-op", {}, {op}));
    pinning->setLocationsInactive(paths({"/root/a/b"}));
    scene.settle();
    HeldEngine held(scene);
    scene.setOp(expanding, op);
    EXPECT_FALSE(pinning->hasLocationEvents());
    EXPECT_THAT(EngineScene::fetchNow(pinning), IsEmpty());
    held.release();
    EXPECT_THAT(scene.fetch(pinning), IsEmpty());
    expanding->setLocationsInactive(paths({"/root"}));
    EXPECT_THAT(scene.fetch(pinning), ElementsAre("-/root/a/b", "-/root/a", "-/root"));
}

TEST_F(Retraction, thatWaitedForAnotherClientsOpIsPaidWhenThatIsAnotherOne) {
    pinning->setLocationsActive(paths({"/root/a/b"}));
    scene.fetch(pinning);
    pinning->setLocationsInactive(paths({"/root/a/b"}));
    scene.settle();
    HeldEngine held(scene);
    scene.setOp(expanding, nullptr);
    EXPECT_THAT(EngineScene::fetchNow(pinning), IsEmpty());
    held.release();
    EXPECT_THAT(scene.fetch(pinning), ElementsAre("-/root/a/b", "-/root/a", "-/root"));
}

TEST_F(Retraction, thatWaitedForAClientIsPaidWhenTheClientHasEnded) {
    const auto other = scene.createOp("no-op", {}, {op});
    scene.setOp(expanding, other);
    pinning->setLocationsActive(paths({"/root/a/b"}));
    scene.fetch(pinning);
    pinning->setLocationsInactive(paths({"/root/a/b"}));
    HeldEngine held(scene);
    scene.setOp(expanding, op);
    expanding.reset();
    EXPECT_THAT(EngineScene::fetchNow(pinning), IsEmpty());
    held.release();
    EXPECT_THAT(scene.fetch(pinning), ElementsAre("-/root/a/b", "-/root/a", "-/root"));
}

TEST_F(Retraction, ofAParentWaitsForAChildThatWasThoughtToReturn) {
    scene.setArgs(op, "Scene.Literal", literalArgs({{"/root/a/b", 1}}));
    expanding->setLocationsInactive(paths({"/root"}));
    scene.settle();
    EXPECT_TRUE(expanding->hasLocationEvents());
    HeldEngine held(scene);
    expanding->setLocationsActive(paths({"/root/a/b"}));
    std::vector<VlScenelib::LocationEvent> events;
    expanding->getLocationEvents(events, 1);
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events.front().getLocationPath(), "/root/a/c");
    scene.setOp(expanding, nullptr);
    held.release();
    EXPECT_THAT(scene.fetch(expanding), ElementsAre("-/root/a/b", "-/root/a", "-/root"));
}

} // namespace
