#include "lookthrough.h"

#include "support/lookthroughtest.h"

#include <stdexcept>

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// ---- the roads of one request

TEST_F(LookThroughTest, aFreshRequestMakesTheLocationActiveAndWaits) {
    look(left, kCamera);
    EXPECT_THAT(takeFired(), ElementsAre("channel __LOOKTHROUGH_LOCATION_CHANGE_REQUESTED "
                                         "{viewport=\"left\" location=\"/root/camera\"}"));
    EXPECT_THAT(runtime->takeCommands(), ElementsAre("setLocationsActive client4 [/root/camera]"));
}

TEST_F(LookThroughTest, aRequestResolvesWhenItsLocationIsCooked) {
    look(left, kCamera);
    takeFired();
    cook(kCamera, "first");
    EXPECT_THAT(
        takeFired(),
        ElementsAre("channel __LOOKTHROUGH_LOCATION_COOKED "
                    "{viewport=\"left\" location=\"/root/camera\" attrs={name=\"first\"}}",
                    "channel __LOOKTHROUGH_LOCATION_CHANGED "
                    "{viewport=\"left\" location=\"/root/camera\" attrs={name=\"first\"}}"));
    EXPECT_THAT(delegate->lookThrough.pendingLookThrough, IsEmpty());
}

TEST_F(LookThroughTest, aResolvedRequestIsToldOfEachFurtherCook) {
    resolve(left, kCamera);
    cook(kCamera, "second");
    cook(kCamera, "third");
    EXPECT_THAT(takeFired(),
                ElementsAre(cooked("left", kCamera, "second"), cooked("left", kCamera, "third")));
}

TEST_F(LookThroughTest, whatIsCookedAndCurrentIsToldAtOnceAndNotAsRequested) {
    resolve(left, kCamera);
    client(kLookThroughClient).isCurrent = [](const std::string& path, std::int64_t commitId) {
        return path == kCamera && commitId == -1;
    };
    look(right, kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("right", kCamera), changed("right", kCamera)));
    EXPECT_THAT(runtime->takeCommands(), IsEmpty());
    EXPECT_THAT(delegate->lookThrough.pendingLookThrough, IsEmpty());
}

TEST_F(LookThroughTest, whatIsActiveButNotFoundIsWaitedForWithoutTouchingTheClient) {
    look(left, kCamera);
    client(kLookThroughClient).isCurrent = always;
    takeFired();
    runtime->takeCommands();
    look(right, kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(requested("right", kCamera)));
    EXPECT_THAT(runtime->takeCommands(), IsEmpty());
}

TEST_F(LookThroughTest, whatIsFoundButStaleIsWaitedForWithoutTouchingTheClient) {
    resolve(left, kCamera);
    look(right, kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(requested("right", kCamera)));
    EXPECT_THAT(runtime->takeCommands(), IsEmpty());
    cook(kCamera, "new");
    EXPECT_THAT(takeFired(),
                ElementsAre(cooked("left", kCamera, "new"), cooked("right", kCamera, "new"),
                            changed("right", kCamera, "new")));
}

TEST_F(LookThroughTest, whatWasStaleAndTurnsOutUnchangedResolvesWithTheNextPump) {
    resolve(left, kCamera);
    look(right, kCamera);
    takeFired();
    delegate->processLocationEvents();
    EXPECT_FALSE(delegate->isProcessing());
    EXPECT_THAT(takeFired(), IsEmpty()) << "still stale";
    client(kLookThroughClient).isCurrent = always;
    EXPECT_TRUE(delegate->isProcessing());
    delegate->processLocationEvents();
    EXPECT_THAT(takeFired(), ElementsAre(cooked("right", kCamera), changed("right", kCamera)));
    EXPECT_FALSE(delegate->isProcessing());
    delegate->processLocationEvents();
    EXPECT_THAT(takeFired(), IsEmpty());
}

TEST_F(LookThroughTest, whatWasStaleAndIsGivenUpIsNotResolved) {
    resolve(left, kCamera);
    look(right, kCamera);
    look(right, "");
    takeFired();
    client(kLookThroughClient).isCurrent = always;
    delegate->processLocationEvents();
    EXPECT_THAT(takeFired(), IsEmpty());
}

TEST_F(LookThroughTest, whatDoesNotExistIsAwaitedUntilItDoes) {
    look(left, kCamera);
    takeFired();
    runtime->takeCommands();
    takeAway(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre("channel __LOOKTHROUGH_LOCATION_DOES_NOT_EXIST "
                                         "{viewport=\"left\" location=\"/root/camera\"}"));
    EXPECT_THAT(runtime->takeCommands(), IsEmpty()) << "the path stays active";
    takeAway(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(doesNotExist("left", kCamera)));
    cook(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera), changed("left", kCamera)));
}

TEST_F(LookThroughTest, whatIsKnownNotToExistIsToldAtOnceAndAwaited) {
    look(left, kCamera);
    takeAway(kCamera);
    takeFired();
    client(kLookThroughClient).isCurrent = always;
    look(right, kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(doesNotExist("right", kCamera)));
    cook(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera), changed("left", kCamera),
                                         cooked("right", kCamera), changed("right", kCamera)));
}

TEST_F(LookThroughTest, whatGoesAfterItWasResolvedIsAwaitedAgain) {
    resolve(left, kCamera);
    takeAway(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(doesNotExist("left", kCamera)));
    cook(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera), changed("left", kCamera)));
}

// ---- the end of a request

TEST_F(LookThroughTest, anEmptyPathEndsALookThroughWithAnEmptyLocation) {
    for (const char* const nothing : {"", static_cast<const char*>(nullptr)}) {
        resolve(left, kCamera);
        look(left, nothing);
        EXPECT_THAT(takeFired(), ElementsAre("channel __LOOKTHROUGH_LOCATION_CHANGED "
                                             "{viewport=\"left\" location=\"\"}"));
        EXPECT_THAT(runtime->takeCommands(),
                    ElementsAre("setLocationsInactive client4 [/root/camera]"));
        cook(kCamera);
        EXPECT_THAT(takeFired(), IsEmpty());
    }
}

TEST_F(LookThroughTest, anEmptyPathIsToldAlsoWhenNothingWasLookedThrough) {
    look(left, "");
    EXPECT_THAT(takeFired(), ElementsAre(changed("left", "", nullptr)));
    EXPECT_THAT(runtime->takeCommands(), IsEmpty());
}

TEST_F(LookThroughTest, aPathWithoutALeadingSlashThrowsAfterTheOldRequestIsGone) {
    resolve(left, kCamera);
    try {
        look(left, "root/camera");
        FAIL() << "does not throw";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "Invalid look-through location (\"root/camera\")");
    }
    EXPECT_THAT(takeFired(), IsEmpty());
    EXPECT_THAT(runtime->takeCommands(),
                ElementsAre("setLocationsInactive client4 [/root/camera]"));
    cook(kCamera);
    EXPECT_THAT(takeFired(), IsEmpty()) << "it looks through nothing";
}

TEST_F(LookThroughTest, anotherPathTakesThePlaceOfTheFirst) {
    resolve(left, kCamera);
    look(left, kLight);
    EXPECT_THAT(takeFired(), ElementsAre(requested("left", kLight)));
    EXPECT_THAT(runtime->takeCommands(), ElementsAre("setLocationsInactive client4 [/root/camera]",
                                                     "setLocationsActive client4 [/root/light]"));
    cook(kCamera);
    cook(kLight);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kLight), changed("left", kLight)));
}

TEST_F(LookThroughTest, theSamePathAgainIsAFreshRequestOfWhichNobodyHearsThatItDoesNotExist) {
    resolve(left, kCamera);
    client(kLookThroughClient).isCurrent = always;
    look(left, kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(requested("left", kCamera)));
    EXPECT_THAT(runtime->takeCommands(), ElementsAre("setLocationsInactive client4 [/root/camera]",
                                                     "setLocationsActive client4 [/root/camera]"));
    cook(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera), changed("left", kCamera)));
}

TEST_F(LookThroughTest, theSamePathAgainWhileAnotherViewportLooksThroughItResolvesAtOnce) {
    resolve(left, kCamera);
    resolve(right, kCamera);
    client(kLookThroughClient).isCurrent = always;
    look(left, kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera), changed("left", kCamera)));
    EXPECT_THAT(runtime->takeCommands(), IsEmpty());
}

TEST_F(LookThroughTest, aPathOutsideTheRootStaysActiveAtTheClient) {
    look(left, "/elsewhere");
    look(left, kCamera);
    EXPECT_THAT(runtime->takeCommands(), ElementsAre("setLocationsActive client4 [/elsewhere]",
                                                     "setLocationsActive client4 [/root/camera]"));
}

// ---- two viewports

TEST_F(LookThroughTest, twoViewportsOfOnePathAreEachToldInTheDelegatesOrder) {
    look(right, kCamera);
    look(left, kCamera);
    takeFired();
    cook(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera), changed("left", kCamera),
                                         cooked("right", kCamera), changed("right", kCamera)));
    cook(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera), cooked("right", kCamera)));
    takeAway(kCamera);
    EXPECT_THAT(takeFired(),
                ElementsAre(doesNotExist("left", kCamera), doesNotExist("right", kCamera)));
}

TEST_F(LookThroughTest, aPathStaysActiveUntilTheLastViewportLeavesIt) {
    resolve(left, kCamera);
    resolve(right, kCamera);
    look(left, kLight);
    EXPECT_THAT(runtime->takeCommands(), ElementsAre("setLocationsActive client4 [/root/light]"));
    look(right, "");
    EXPECT_THAT(runtime->takeCommands(),
                ElementsAre("setLocationsInactive client4 [/root/camera]"));
}

// ---- ancestors

TEST_F(LookThroughTest, anAncestorsEventTellsTheLocationAnew) {
    resolve(left, "/root/a/b/camera");
    cook("/root/a", "ancestor");
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", "/root/a/b/camera")));
}

TEST_F(LookThroughTest, anAncestorsEventSaysNothingOfARequestThatIsStillOpen) {
    look(left, "/root/a/camera");
    takeFired();
    cook("/root/a", "ancestor");
    EXPECT_THAT(takeFired(), IsEmpty()) << "not cooked";
    takeAway("/root/a/camera");
    takeFired();
    takeAway("/root/a");
    cook("/root", "ancestor");
    EXPECT_THAT(takeFired(), IsEmpty()) << "does not exist";
    cook("/root/a/camera");
    EXPECT_THAT(takeFired(),
                ElementsAre(cooked("left", "/root/a/camera"), changed("left", "/root/a/camera")));
}

TEST_F(LookThroughTest, otherLocationsEventsSayNothing) {
    resolve(left, "/root/a/camera");
    for (const char* const path :
         {"/root/a/camera/b", "/root/a/cam", "/root/a/camera2", "/root/b"}) {
        cook(path, "other");
    }
    EXPECT_THAT(takeFired(), IsEmpty());
}

// ---- manipulation

TEST_F(LookThroughTest, aLiveValueIsToldWithTheCookedAttributesBelowIt) {
    resolve(left, kCamera);
    setLive(kCamera, 40);
    EXPECT_THAT(takeFired(), ElementsAre("channel __LOOKTHROUGH_LOCATION_COOKED {viewport=\"left\" "
                                         "location=\"/root/camera\" attrs={name=\"cam\" fov=40}}"));
}

TEST_F(LookThroughTest, aLiveValueOfAnAncestorTellsTheLocationAnew) {
    resolve(left, "/root/a/camera");
    client(kLookThroughClient).report("/root/a", named("ancestor"));
    delegate->processLocationEvents();
    takeFired();
    setLive("/root/a", 40);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", "/root/a/camera")));
}

TEST_F(LookThroughTest, duringAManipulationGroupAttributesWaitForItsClose) {
    resolve(left, kCamera);
    delegate->openManipulationGroup(kCamera);
    setLive(kCamera, 40);
    setLive(kCamera, 50);
    EXPECT_THAT(takeFired(), IsEmpty());
    delegate->closeManipulationGroup(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre("channel __LOOKTHROUGH_LOCATION_COOKED {viewport=\"left\" "
                                         "location=\"/root/camera\" attrs={name=\"cam\" fov=50}}"));
    EXPECT_THAT(delegate->lookThrough.deferredLookThroughEvents, IsEmpty());
    delegate->closeManipulationGroup(kCamera);
    EXPECT_THAT(takeFired(), IsEmpty()) << "told once";
}

TEST_F(LookThroughTest, aRequestThatResolvesDuringAManipulationGroupChangesAtOnce) {
    delegate->openManipulationGroup(kCamera);
    look(left, kCamera);
    takeFired();
    cook(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(changed("left", kCamera)));
    delegate->closeManipulationGroup(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera)));
}

TEST_F(LookThroughTest, whatDoesNotExistIsToldAlsoDuringAManipulationGroup) {
    resolve(left, kCamera);
    delegate->openManipulationGroup(kCamera);
    takeAway(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(doesNotExist("left", kCamera)));
}

TEST_F(LookThroughTest, aClosedGroupTellsInTheOrderInWhichViewportsFirstHadSomething) {
    delegate->openManipulationGroup(kCamera);
    client(kLookThroughClient).isCurrent = always;
    resolve(right, kCamera);
    look(left, kCamera);
    cook(kCamera, "last");
    takeFired();
    delegate->closeManipulationGroup(kCamera);
    EXPECT_THAT(takeFired(),
                ElementsAre(cooked("right", kCamera, "last"), cooked("left", kCamera, "last")));
}

TEST_F(LookThroughTest, aClosedGroupTellsOnlyOfItsLocation) {
    resolve(left, kCamera);
    resolve(right, kLight);
    delegate->openManipulationGroup(kCamera);
    delegate->openManipulationGroup(kLight);
    cook(kCamera);
    cook(kLight);
    delegate->closeManipulationGroup(kLight);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("right", kLight)));
    delegate->closeManipulationGroup(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera)));
}

TEST_F(LookThroughTest, aClosedGroupTellsBeforePluginsHearOfTheValues) {
    populate({{kCamera, named("cam")}});
    resolve(left, kCamera);
    delegate->openManipulationGroup(kCamera);
    setLive(kCamera, 40);
    log.take();
    delegate->closeManipulationGroup(kCamera);
    EXPECT_THAT(log.take(),
                ElementsAre("bridge closeManipulationGroup /root/camera",
                            "channel __LOOKTHROUGH_LOCATION_COOKED {viewport=\"left\" "
                            "location=\"/root/camera\" attrs={name=\"cam\" fov=40}}",
                            "D locationEvent /root/camera attributesChanged handled=0"));
}

TEST_F(LookThroughTest, whatWasHeldBackIsToldAlsoWhenTheViewportLooksElsewhereOrHasGone) {
    resolve(left, kCamera);
    resolve(right, kCamera);
    delegate->openManipulationGroup(kCamera);
    cook(kCamera);
    look(left, "");
    delegate->removeViewport("right");
    takeFired();
    delegate->closeManipulationGroup(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera), cooked("right", kCamera)));
}

// ---- viewports that go

TEST_F(LookThroughTest, aRemovedViewportLeavesItsPathBeforeItsCleanupAndWithoutAWord) {
    resolve(left, kCamera);
    left->setup(1);
    plugins.hooks["viewport1.cleanup"] = [this](ViewportPlugins::Instance&) {
        EXPECT_THAT(runtime->takeCommands(),
                    ElementsAre("setLocationsInactive client4 [/root/camera]"));
    };
    journal.take();
    delegate->removeViewport("left");
    EXPECT_THAT(journal.take(), ElementsAre("viewport1.cleanup", "viewport1.destroy"));
    cook(kCamera);
    EXPECT_THAT(takeFired(), IsEmpty());
    EXPECT_THAT(delegate->lookThrough.requestedLookThrough, IsEmpty());
}

TEST_F(LookThroughTest, aRemovedViewportLeavesThePathToOthers) {
    resolve(left, kCamera);
    look(right, kCamera);
    takeFired();
    delegate->removeViewport("right");
    EXPECT_THAT(runtime->takeCommands(), IsEmpty());
    EXPECT_THAT(delegate->lookThrough.pendingLookThrough, IsEmpty());
    cook(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera)));
}

TEST_F(LookThroughTest, aViewportThatIsNotTheDelegatesIsIgnored) {
    const VlViewportHostStruct stranger("Recording", "stranger", nullptr);
    look(const_cast<VlViewportHostStruct*>(&stranger), kCamera);
    look(nullptr, kCamera);
    plugins.hooks["viewport1.draw"] = [this](ViewportPlugins::Instance&) {
        delegate->removeViewport("left");
        look(left, kCamera);
    };
    left->draw();
    EXPECT_THAT(takeFired(), IsEmpty());
    EXPECT_THAT(runtime->takeCommands(), IsEmpty());
}

} // namespace
} // namespace ViewerAPI::test
