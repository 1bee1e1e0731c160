// Listeners of the look-through channels that call back into the delegate, or raise.

#include "lookthrough.h"

#include "support/lookthroughtest.h"

#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::IntAttribute;

class LookThroughReentrance : public LookThroughTest {
protected:
    /// The listener of "__LOOKTHROUGH_LOCATION_" and this name does something when it is called
    /// next.
    void atNext(const std::string& channel, std::function<void()> action) {
        channels.onFire = [channel = "__LOOKTHROUGH_LOCATION_" + channel,
                           action = std::move(action)](const std::string& name) mutable {
            if (name == channel && action) {
                std::exchange(action, nullptr)();
            }
            return VlAttribute::Attribute();
        };
    }
    void raiseAtNext(const std::string& channel) {
        atNext(channel, [] { throw std::runtime_error("listener"); });
    }

    /// Both viewports ask for the camera; nothing is cooked.
    void lookTogether() {
        look(left, kCamera);
        look(right, kCamera);
        log.take();
        runtime->takeCalls();
    }
};

TEST_F(LookThroughReentrance, aListenerThatAsksForAnotherPathHearsNoChangeToTheFirst) {
    look(left, kCamera);
    takeFired();
    atNext("COOKED", [this] { look(left, kLight); });
    cook(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera), requested("left", kLight)));
    cook(kLight);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kLight), changed("left", kLight)));
}

TEST_F(LookThroughReentrance, aListenerThatAsksForTheSamePathHasItResolvedByWhatItJustHeard) {
    look(left, kCamera);
    takeFired();
    atNext("COOKED", [this] { look(left, kCamera); });
    cook(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera), requested("left", kCamera),
                                         changed("left", kCamera)));
    cook(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera)));
}

TEST_F(LookThroughReentrance, aListenerThatEndsTheLookThroughHearsNoOtherChange) {
    look(left, kCamera);
    takeFired();
    atNext("COOKED", [this] { look(left, ""); });
    cook(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera), changed("left", "", nullptr)));
}

TEST_F(LookThroughReentrance, aListenerThatGivesUpWhatDoesNotExistAwaitsItNoMore) {
    look(left, kCamera);
    takeFired();
    atNext("DOES_NOT_EXIST", [this] { look(left, ""); });
    takeAway(kCamera);
    EXPECT_THAT(takeFired(),
                ElementsAre(doesNotExist("left", kCamera), changed("left", "", nullptr)));
    EXPECT_THAT(delegate->lookThrough.pendingLookThrough, IsEmpty());
    cook(kCamera);
    EXPECT_THAT(takeFired(), IsEmpty());
}

TEST_F(LookThroughReentrance, aListenerMayRemoveTheViewportItHearsOf) {
    lookTogether();
    atNext("COOKED", [this] { delegate->removeViewport("left"); });
    cook(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera), cooked("right", kCamera),
                                         changed("right", kCamera)));
    EXPECT_TRUE(plugins.instance("viewport1").isDestroyed);
}

TEST_F(LookThroughReentrance, aListenerMayRemoveTheViewportThatComesNext) {
    lookTogether();
    atNext("COOKED", [this] { delegate->removeViewport("right"); });
    cook(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera), changed("left", kCamera)));
    EXPECT_THAT(runtime->takeCommands(), IsEmpty());
}

TEST_F(LookThroughReentrance, aListenerMayHaveAnotherViewportJoin) {
    look(left, kCamera);
    takeFired();
    atNext("COOKED", [this] { look(right, kCamera); });
    cook(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera), requested("right", kCamera),
                                         changed("left", kCamera), cooked("right", kCamera),
                                         changed("right", kCamera)));
}

TEST_F(LookThroughReentrance, aListenerMayLetTheDelegateGo) {
    lookTogether();
    atNext("COOKED", [this] { HostObject::retire(delegate.release()); });
    client(kLookThroughClient).report(kCamera, named("cam"));
    delegate->processLocationEvents();
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera), changed("left", kCamera),
                                         cooked("right", kCamera), changed("right", kCamera)));
    EXPECT_EQ(plugin.numberOfInstances, 0);
}

TEST_F(LookThroughReentrance, whatIsHeldBackWhileAGroupClosesGoesOutAsWell) {
    resolve(left, kCamera);
    resolve(right, kCamera);
    delegate->openManipulationGroup(kCamera);
    cook(kCamera, "cooked");
    atNext("COOKED", [this] { delegate->lookThrough.onAttributesMerged(kCamera, named("live")); });
    delegate->closeManipulationGroup(kCamera);
    EXPECT_THAT(takeFired(),
                ElementsAre(cooked("left", kCamera, "cooked"), cooked("right", kCamera, "cooked"),
                            cooked("left", kCamera, "live"), cooked("right", kCamera, "live")));
    EXPECT_THAT(delegate->lookThrough.deferredLookThroughEvents, IsEmpty());
}

TEST_F(LookThroughReentrance, aGroupThatIsClosedWhileItClosesTellsOnce) {
    resolve(left, kCamera);
    resolve(right, kCamera);
    delegate->openManipulationGroup(kCamera);
    cook(kCamera);
    atNext("COOKED", [this] { delegate->closeManipulationGroup(kCamera); });
    delegate->closeManipulationGroup(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera), cooked("right", kCamera)));
}

// ---- listeners that raise

TEST_F(LookThroughReentrance, aRequestWhoseAttributesCouldNotBeToldStaysOpen) {
    lookTogether();
    raiseAtNext("COOKED");
    EXPECT_THROW(cook(kCamera), std::runtime_error);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera)));
    cook(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera), changed("left", kCamera),
                                         cooked("right", kCamera), changed("right", kCamera)));
}

TEST_F(LookThroughReentrance, aRequestWhoseChangeWasToldToOneThatRaisesIsResolved) {
    look(left, kCamera);
    takeFired();
    raiseAtNext("CHANGED");
    EXPECT_THROW(cook(kCamera), std::runtime_error);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera), changed("left", kCamera)));
    cook(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera)));
}

TEST_F(LookThroughReentrance, whatDoesNotExistIsAwaitedAlsoWhenItsListenerRaises) {
    resolve(left, kCamera);
    raiseAtNext("DOES_NOT_EXIST");
    EXPECT_THROW(takeAway(kCamera), std::runtime_error);
    takeFired();
    cook(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera), changed("left", kCamera)));
}

TEST_F(LookThroughReentrance, aRequestStandsAlsoWhenItsListenerRaises) {
    raiseAtNext("CHANGE_REQUESTED");
    EXPECT_THROW(look(left, kCamera), std::runtime_error);
    takeFired();
    cook(kCamera);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera), changed("left", kCamera)));
}

TEST_F(LookThroughReentrance, aLookThroughHasEndedAlsoWhenItsListenerRaises) {
    resolve(left, kCamera);
    raiseAtNext("CHANGED");
    EXPECT_THROW(look(left, ""), std::runtime_error);
    takeFired();
    cook(kCamera);
    EXPECT_THAT(takeFired(), IsEmpty());
}

TEST_F(LookThroughReentrance, aValueIsGuardedAndPluginsHearOfItAlsoWhenItsListenerRaises) {
    populate({{kCamera, named("cam")}});
    resolve(left, kCamera);
    for (const bool isFinal : {false, true}) {
        SCOPED_TRACE(isFinal);
        clock.advanceMs(10);
        plugin.events.clear();
        raiseAtNext("COOKED");
        EXPECT_THROW(
            delegate->setManipulatedAttribute(kCamera, "isFinal", IntAttribute(isFinal), isFinal),
            std::runtime_error);
        const std::string shown = isFinal ? "{name=\"cam\" isFinal=1}" : "{name=\"cam\" isFinal=0}";
        EXPECT_EQ(textOf(delegate->getAttributes(kCamera, kVlViewerDelegatePrimary)), shown);
        EXPECT_EQ(textOf(delegate->getAttributes(kCamera, kVlViewerDelegateLookThrough)), shown);
        ASSERT_EQ(plugin.events.size(), 1U);
        EXPECT_EQ(textOf(plugin.events[0].attributes), shown);
        EXPECT_EQ(delegate->manipulationFreeze.freezeState,
                  isFinal ? FreezeState::Settling : FreezeState::Manipulating);
    }
    EXPECT_EQ(delegate->manipulationFreeze.freezeStart, clock.now);
}

TEST_F(LookThroughReentrance, aValueInAnOpenGroupWaitsForTheCloseAlsoWhenAListenerBelowRaises) {
    populate({{"/root/a", named("a")}});
    client(kLookThroughClient).cache("/root/a", named("a"));
    resolve(left, "/root/a/camera");
    delegate->openManipulationGroup("/root/a");
    raiseAtNext("COOKED");
    EXPECT_THROW(setLive("/root/a", 40), std::runtime_error);
    EXPECT_TRUE(delegate->isFrozenDueToManipulation());
    EXPECT_THAT(plugin.events, IsEmpty());
    delegate->closeManipulationGroup("/root/a");
    EXPECT_EQ(plugin.events.size(), 1U);
}

TEST_F(LookThroughReentrance, whereListenerAndPluginBothRaiseThePluginsErrorComesOut) {
    populate({{kCamera, named("cam")}});
    resolve(left, kCamera);
    raiseAtNext("COOKED");
    plugin.onCall = [](std::string_view, std::string_view) { throw std::runtime_error("plug-in"); };
    try {
        setLive(kCamera, 40);
        FAIL() << "does not throw";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "plug-in");
    }
    EXPECT_TRUE(delegate->isFrozenDueToManipulation());
    EXPECT_FALSE(delegate->isInCall());
}

TEST_F(LookThroughReentrance, pluginsHearOfAGroupsValuesAlsoWhenAListenerRaisesAtItsClose) {
    populate({{kCamera, named("cam")}});
    resolve(left, kCamera);
    delegate->openManipulationGroup(kCamera);
    setLive(kCamera, 40);
    EXPECT_THAT(plugin.events, IsEmpty());
    raiseAtNext("COOKED");
    EXPECT_THROW(delegate->closeManipulationGroup(kCamera), std::runtime_error);
    ASSERT_EQ(plugin.events.size(), 1U);
    EXPECT_EQ(textOf(plugin.events[0].attributes), "{name=\"cam\" fov=40}");
    EXPECT_FALSE(delegate->liveValues.isManipulated(kCamera));
}

TEST_F(LookThroughReentrance, aGroupEndsAlsoWhenAListenerRaisesAtItsClose) {
    resolve(left, kCamera);
    resolve(right, kCamera);
    delegate->openManipulationGroup(kCamera);
    cook(kCamera);
    raiseAtNext("COOKED");
    EXPECT_THROW(delegate->closeManipulationGroup(kCamera), std::runtime_error);
    EXPECT_THAT(takeFired(), ElementsAre(cooked("left", kCamera)));
    EXPECT_THAT(delegate->lookThrough.deferredLookThroughEvents, IsEmpty());
    cook(kCamera, "next");
    EXPECT_THAT(takeFired(),
                ElementsAre(cooked("left", kCamera, "next"), cooked("right", kCamera, "next")));
}

} // namespace
} // namespace ViewerAPI::test
