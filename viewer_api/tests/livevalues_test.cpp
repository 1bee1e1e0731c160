#include "support/livevaluestest.h"

#include <stdexcept>
#include <utility>

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::Attribute;
using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

// ---- One value, step by step

TEST_F(LiveValuesTest, aValueGoesToTheBridgeFirstAndThenToThePlugin) {
    EXPECT_TRUE(set("/root/a", "x", IntAttribute(1)));
    EXPECT_THAT(log.take(), ElementsAre("bridge setValue /root/a x 1",
                                        "D locationEvent /root/a attributesChanged handled=0"));
    EXPECT_THAT(takeShown(), ElementsAre("/root/a {name=\"a\" x=1}"));
}

TEST_F(LiveValuesTest, theBridgeHearsWhetherTheValueIsFinal) {
    set("/root/a", "x", IntAttribute(1), true);
    EXPECT_THAT(log.take("setValue"), ElementsAre("bridge setValue /root/a x 1 final"));
}

TEST_F(LiveValuesTest, aNullValueIsRefusedBeforeAnybodyHearsOfIt) {
    EXPECT_FALSE(set("/root/a", "x", Attribute(), true));
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(live("/root/a"), "null");
    EXPECT_EQ(state(), FreezeState::Idle);
}

TEST_F(LiveValuesTest, aNameThatNoAttributeCanHaveThrowsBeforeAnybodyHearsOfIt) {
    for (const char* name : {"", ".", "a.", ".a", "a..b"}) {
        EXPECT_THROW(set("/root/a", name, IntAttribute(1)), std::runtime_error) << name;
    }
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(live("/root/a"), "null");
    EXPECT_EQ(state(), FreezeState::Idle);
}

TEST_F(LiveValuesTest, aValueThatTheApplicationRefusesShowsAllTheSame) {
    bridge.takesValues = false;
    EXPECT_TRUE(set("/root/a", "x", IntAttribute(1)));
    EXPECT_EQ(shown("/root/a"), "{name=\"a\" x=1}");
    EXPECT_EQ(state(), FreezeState::Manipulating);
}

TEST_F(LiveValuesTest, aLocationNotYetSentToPluginsFailsQuietlyAndTheFreezeStateStays) {
    delegate->locationTree.cook("/root/new", named("new"), {}, false, true);
    ManipulationFreeze& freeze = delegate->manipulationFreeze;
    for (const FreezeState from : kFreezeStates) {
        freeze.freezeState = from;
        const std::int64_t start = freeze.freezeStart;
        clock.advanceMs(10);
        for (const char* path : {"/root/new", "/root/unknown", "", "a", "/"}) {
            EXPECT_FALSE(set(path, "x", IntAttribute(1), true)) << path;
            EXPECT_EQ(live(path, kVlViewerDelegatePrimary), "null") << path;
            EXPECT_EQ(live(path, kVlViewerDelegateLookThrough), "null") << path;
        }
        EXPECT_EQ(state(), from);
        EXPECT_EQ(freeze.freezeStart, start);
    }
    EXPECT_THAT(takePluginLines(), IsEmpty()) << "nothing is flushed";
}

TEST_F(LiveValuesTest, aValueOnALocationThatNobodyKnowsIsTakenBackFromTheBridge) {
    set("/root/unknown", "x", IntAttribute(1));
    EXPECT_THAT(log.take(), ElementsAre("bridge setValue /root/unknown x 1",
                                        "bridge cleanupLiveAttributes /root/unknown"));
}

TEST_F(LiveValuesTest, theBaseIsWhatWasCookedAtTheFirstTouch) {
    set("/root/a", "x", IntAttribute(1));
    set("/root/a", "y", IntAttribute(2));
    EXPECT_EQ(cooked("/root/a"), "{name=\"a\"}");
    EXPECT_EQ(shown("/root/a"), "{name=\"a\" x=1 y=2}");
    EXPECT_EQ(live("/root/a"), "{x=1 y=2}");
}

TEST_F(LiveValuesTest, aLaterValueReplacesTheEarlierOneOfItsName) {
    set("/root/a", "x", IntAttribute(1));
    set("/root/a", "x", StringAttribute("two"));
    EXPECT_EQ(live("/root/a"), "{x=\"two\"}");
    EXPECT_EQ(shown("/root/a"), "{name=\"a\" x=\"two\"}");
}

TEST_F(LiveValuesTest, anEqualValueTellsPluginsNothing) {
    set("/root/a", "x", IntAttribute(1));
    takeShown();
    EXPECT_TRUE(set("/root/a", "x", IntAttribute(1), true));
    EXPECT_THAT(takeShown(), IsEmpty());
    EXPECT_EQ(state(), FreezeState::Settling);
}

TEST_F(LiveValuesTest, aDottedNameGoesIntoTheGroupsThatAreThere) {
    client(kPrimaryClient)
        .report("/root/a",
                GroupBuilder()
                    .set("xform.g.translate", DoubleAttribute({1, 2, 3}))
                    .set("xform.g.scale", DoubleAttribute({1, 1, 1}))
                    .set("other", IntAttribute(4))
                    .build(),
                {"x"});
    pump();
    plugin.events.clear();
    set("/root/a", "xform.g.translate", DoubleAttribute({5, 0, 0}));
    set("/root/a", "new.group", IntAttribute(6));
    EXPECT_EQ(shown("/root/a"),
              "{xform={g={translate=(5 0 0) scale=(1 1 1)}} other=4 new={group=6}}");
    EXPECT_EQ(live("/root/a"), "{new={group=6} xform={g={translate=(5 0 0)}}}");
    ASSERT_EQ(plugin.events.size(), 2U);
    EXPECT_NE(plugin.events[0].flags & kVlLocationEventXformChanged, 0U);
    EXPECT_EQ(textOf(plugin.events[0].xform), "(1 0 0 0 0 1 0 0 0 0 1 0 5 0 0 1)");
}

TEST_F(LiveValuesTest, liveAttributesComeInTheOrderOfTheirNames) {
    for (const char* name : {"c", "a.z", "b", "a.b"}) {
        set("/root/both", name, IntAttribute(1));
    }
    for (const int view : {kVlViewerDelegatePrimary, kVlViewerDelegateLookThrough}) {
        EXPECT_EQ(live("/root/both", view), "{a={b=1 z=1} b=1 c=1}") << view;
    }
}

TEST_F(LiveValuesTest, liveAttributesWithViewOneAreAlwaysInvalid) {
    const char* path = "/root/a";
    delegate->activateSourceLocations(&path, 1);
    client(kSourcesClient).report("/root");
    client(kSourcesClient).report("/root/a", named("source"));
    pump();
    set("/root/a", "x", IntAttribute(1));
    EXPECT_EQ(live("/root/a", kVlViewerDelegateSources), "null");
    EXPECT_EQ(cooked("/root/a", kVlViewerDelegateSources), "{name=\"source\"}");
    EXPECT_EQ(shown("/root/a", kVlViewerDelegateSources), "{name=\"source\"}");
    for (const int view : {-1, 3}) {
        EXPECT_EQ(live("/root/a", view), "null");
        EXPECT_EQ(cooked("/root/a", view), "null");
        EXPECT_EQ(shown("/root/a", view), "null");
    }
}

TEST_F(LiveValuesTest, aValueOnAChildOfAClosedLocationStillMerges) {
    set("/root/a", "x", IntAttribute(1));
    const char* path = "/root";
    delegate->closeLocations(&path, 1);
    delegate->flushLocationChanges(true);
    EXPECT_EQ(shown("/root/a"), "null") << "plug-ins know it no more";
    EXPECT_TRUE(set("/root/a", "x", IntAttribute(2))) << "but its entry is there";
    delegate->openLocations(&path, 1);
    takeShown();
    delegate->flushLocationChanges(true);
    EXPECT_EQ(shown("/root/a"), "{name=\"a\" x=2}");
}

// ---- The two views

struct ViewRow {
    const char* path;
    bool isSet;
    const char* primary;
    const char* lookThrough;
};

TEST_F(LiveValuesTest, aValueGoesIntoTheViewsThatKnowTheLocation) {
    const ViewRow rows[] = {
        {"/root/a", true, "{name=\"a\" x=1}", "null"},
        {"/root/camera", true, "null", "{name=\"camera\" x=1}"},
        {"/root/both", true, "{name=\"both\" x=1}", "{name=\"through\" x=1}"},
        {"/root/unknown", false, "null", "null"},
    };
    for (const ViewRow& row : rows) {
        SCOPED_TRACE(row.path);
        EXPECT_EQ(set(row.path, "x", IntAttribute(1)), row.isSet);
        EXPECT_EQ(shown(row.path), row.primary);
        EXPECT_EQ(shown(row.path, kVlViewerDelegateLookThrough), row.lookThrough);
    }
}

TEST_F(LiveValuesTest, theLookThroughViewHasABaseOfItsOwn) {
    set("/root/both", "x", IntAttribute(1));
    EXPECT_EQ(cooked("/root/both", kVlViewerDelegatePrimary), "{name=\"both\"}");
    EXPECT_EQ(cooked("/root/both", kVlViewerDelegateLookThrough), "{name=\"through\"}");
}

TEST_F(LiveValuesTest, aValueInTheLookThroughViewAloneFreezesAndTellsPluginsNothing) {
    EXPECT_TRUE(set("/root/camera", "x", IntAttribute(1)));
    EXPECT_EQ(state(), FreezeState::Manipulating);
    EXPECT_THAT(takePluginLines(), IsEmpty());
    EXPECT_EQ(live("/root/camera", kVlViewerDelegatePrimary), "null");
    EXPECT_EQ(live("/root/camera", kVlViewerDelegateLookThrough), "{x=1}");
}

TEST_F(LiveValuesTest, aLocationThatThePrimaryViewLacksStartsAnewOnWhatTheLookThroughViewShows) {
    // The primary view's failure takes both entries away at every value, and the merged attributes
    // stay: so the values add up in what is shown, while only the last one counts as live.
    set("/root/camera", "x", IntAttribute(1));
    set("/root/camera", "y", IntAttribute(2));
    EXPECT_EQ(shown("/root/camera", kVlViewerDelegateLookThrough), "{name=\"camera\" x=1 y=2}");
    EXPECT_EQ(live("/root/camera", kVlViewerDelegateLookThrough), "{y=2}");
    EXPECT_EQ(cooked("/root/camera", kVlViewerDelegateLookThrough), "{name=\"camera\" x=1}");
}

TEST_F(LiveValuesTest, mergedAttributesStandBeforeWhatTheLookThroughClientHas) {
    set("/root/camera", "x", IntAttribute(1));
    client(kLookThroughClient).cache("/root/camera", named("newer"));
    EXPECT_EQ(shown("/root/camera", kVlViewerDelegateLookThrough), "{name=\"camera\" x=1}");
}

// ---- The freeze

TEST_F(LiveValuesTest, aValueFreezesAndAFinalOneStartsTheClockFromEveryState) {
    for (const FreezeState from : kFreezeStates) {
        ManipulationFreeze& freeze = delegate->manipulationFreeze;
        freeze.freezeState = from;
        const std::int64_t start = freeze.freezeStart;
        clock.advanceMs(10);
        set("/root/a", "x", IntAttribute(1), false);
        EXPECT_EQ(freeze.freezeState, FreezeState::Manipulating);
        EXPECT_EQ(freeze.freezeStart, start);
        freeze.freezeState = from;
        set("/root/a", "x", IntAttribute(1), true);
        EXPECT_EQ(freeze.freezeState, FreezeState::Settling);
        EXPECT_EQ(freeze.freezeStart, clock.now);
    }
}

TEST_F(LiveValuesTest, theFreezeStandsBeforePluginsHear) {
    set("/root/a", "x", IntAttribute(1));
    EXPECT_THAT(log.take("__SELECTED_ENABLED_LOCATIONS_CHANGED"), IsEmpty());
    plugin.onCall = [this](std::string_view, std::string_view) {
        EXPECT_TRUE(delegate->isFrozenDueToManipulation());
    };
    delegate->manipulationFreeze.freezeState = FreezeState::Idle;
    set("/root/a", "x", IntAttribute(2), true);
    EXPECT_THAT(log.take("__SELECTED_ENABLED_LOCATIONS_CHANGED"), IsEmpty());
}

// ---- Groups

TEST_F(LiveValuesTest, duringAGroupTheMergedValueShowsAtOnceAndPluginsHearAtTheClose) {
    delegate->openManipulationGroup("/root/a");
    for (int x = 1; x <= 3; ++x) {
        EXPECT_TRUE(set("/root/a", "x", IntAttribute(x)));
        EXPECT_EQ(shown("/root/a"), "{name=\"a\" x=" + std::to_string(x) + "}");
        EXPECT_THAT(takeShown(), IsEmpty());
    }
    delegate->closeManipulationGroup("/root/a");
    EXPECT_THAT(takeShown(), ElementsAre("/root/a {name=\"a\" x=3}"));
}

TEST_F(LiveValuesTest, theBridgeHearsOfAGroupBeforeTheDelegateTakesItUpOrEndsIt) {
    std::vector<bool> wasOpen;
    bridge.onCall = [&](const std::string&) {
        wasOpen.push_back(delegate->liveValues.isManipulated("/root/a"));
    };
    delegate->openManipulationGroup("/root/a");
    EXPECT_TRUE(delegate->liveValues.isManipulated("/root/a"));
    delegate->closeManipulationGroup("/root/a");
    EXPECT_FALSE(delegate->liveValues.isManipulated("/root/a"));
    EXPECT_THAT(log.take(), ElementsAre("bridge openManipulationGroup /root/a",
                                        "bridge closeManipulationGroup /root/a"));
    EXPECT_THAT(wasOpen, ElementsAre(false, true));
}

TEST_F(LiveValuesTest, aGroupIsOpenUntilItsNewsHasGoneOut) {
    delegate->openManipulationGroup("/root/a");
    set("/root/a", "x", IntAttribute(1));
    bool wasOpen = false;
    plugin.onCall = [&](std::string_view, std::string_view) {
        wasOpen = delegate->liveValues.isManipulated("/root/a");
    };
    delegate->closeManipulationGroup("/root/a");
    EXPECT_TRUE(wasOpen);
}

TEST_F(LiveValuesTest, aValueSetWhileAGroupsNewsGoesOutWaitsForTheNextFlush) {
    delegate->openManipulationGroup("/root/a");
    set("/root/a", "x", IntAttribute(1));
    plugin.onCall = [&, isDone = false](std::string_view, std::string_view) mutable {
        if (!std::exchange(isDone, true)) {
            set("/root/a", "x", IntAttribute(2));
        }
    };
    delegate->closeManipulationGroup("/root/a");
    EXPECT_THAT(takeShown(), ElementsAre("/root/a {name=\"a\" x=1}"));
    delegate->flushLocationChanges(true);
    EXPECT_THAT(takeShown(), ElementsAre("/root/a {name=\"a\" x=2}"));
}

TEST_F(LiveValuesTest, closingWhatIsNotOpenTellsTheBridgeAndFlushesNothing) {
    const char* path = "/root/a";
    delegate->hideLocations(&path, 1);
    delegate->closeManipulationGroup("/root/a");
    delegate->closeManipulationGroup("/root/unknown");
    EXPECT_THAT(log.take(), ElementsAre("bridge closeManipulationGroup /root/a",
                                        "bridge closeManipulationGroup /root/unknown"));
}

TEST_F(LiveValuesTest, aGroupOpenedTwiceIsClosedByTheFirstClose) {
    delegate->openManipulationGroup("/root/a");
    delegate->openManipulationGroup("/root/a");
    delegate->closeManipulationGroup("/root/a");
    EXPECT_FALSE(delegate->liveValues.isManipulated("/root/a"));
    EXPECT_EQ(log.take().size(), 3U) << "the bridge hears of each call";
}

TEST_F(LiveValuesTest, aGroupHoldsBackItsOwnLocationUntilAnyFlush) {
    delegate->openManipulationGroup("/root/a");
    set("/root/a", "x", IntAttribute(1));
    set("/root/both", "x", IntAttribute(2));
    EXPECT_THAT(takeShown(), ElementsAre("/root/a {name=\"a\" x=1}", "/root/both {name=\"both\" "
                                                                     "x=2}"));
    set("/root/a", "x", IntAttribute(3));
    EXPECT_THAT(takeShown(), IsEmpty());
    pump();
    EXPECT_THAT(takeShown(), ElementsAre("/root/a {name=\"a\" x=3}"));
}

TEST_F(LiveValuesTest, aGroupEndsAlsoWhenAPluginFails) {
    delegate->openManipulationGroup("/root/a");
    set("/root/a", "x", IntAttribute(1));
    plugin.onCall = [](std::string_view, std::string_view) { throw std::runtime_error("D"); };
    EXPECT_THROW(delegate->closeManipulationGroup("/root/a"), std::runtime_error);
    plugin.onCall = nullptr;
    EXPECT_FALSE(delegate->liveValues.isManipulated("/root/a"));
    takeShown();
    set("/root/a", "x", IntAttribute(2));
    EXPECT_THAT(takeShown(), ElementsAre("/root/a {name=\"a\" x=2}"));
}

// ---- What ends live values

TEST_F(LiveValuesTest, anEventErasesTheEntriesAfterTheBridgeHasHeard) {
    for (const int number : {kPrimaryClient, kPinnedClient}) {
        SCOPED_TRACE(number);
        set("/root/both", "x", IntAttribute(1), true);
        log.take();
        bool wereThere = false;
        bridge.onCall = [&](const std::string& line) {
            if (line == "cleanupLiveAttributes /root/both") {
                wereThere = live("/root/both") == "{x=1}" && live("/root/both", 2) == "{x=1}" &&
                            shown("/root/both") == "{name=\"both\" x=1}";
            }
        };
        client(number).report("/root/both", named("both"), {"x"});
        pump();
        bridge.onCall = nullptr;
        EXPECT_TRUE(wereThere);
        EXPECT_EQ(live("/root/both"), "null");
        EXPECT_EQ(live("/root/both", 2), "null");
        EXPECT_EQ(shown("/root/both"), "{name=\"both\"}") << "although the data is the old one's";
        EXPECT_EQ(shown("/root/both", 2), "{name=\"through\" x=1}")
            << "merged attributes wait for the look-through client";
    }
}

TEST_F(LiveValuesTest, anEventThatALocationIsGoneErasesItsEntries) {
    set("/root/both", "x", IntAttribute(1), true);
    client(kPrimaryClient).reportGone("/root/both");
    pump();
    EXPECT_EQ(live("/root/both"), "null");
    EXPECT_EQ(live("/root/both", 2), "null");
    EXPECT_EQ(shown("/root/both"), "null");
}

TEST_F(LiveValuesTest, anEventOfAnotherLocationLeavesTheEntriesAlone) {
    set("/root/both", "x", IntAttribute(1), true);
    client(kPrimaryClient).report("/root/a", named("a"), {"x"});
    client(kSourcesClient).report("/root/both", named("source"));
    pump();
    EXPECT_EQ(live("/root/both"), "{x=1}");
    EXPECT_EQ(live("/root/both", 2), "{x=1}");
}

TEST_F(LiveValuesTest, aLookThroughEventErasesWhatTheLookThroughViewHas) {
    set("/root/both", "x", IntAttribute(1), true);
    log.take();
    client(kLookThroughClient).report("/root/both", named("newer"));
    pump();
    EXPECT_EQ(shown("/root/both", 2), "{name=\"newer\"}");
    EXPECT_EQ(live("/root/both", 2), "null");
    EXPECT_EQ(live("/root/both"), "{x=1}") << "the primary view waits for its own event";
    EXPECT_THAT(log.take("cleanupLiveAttributes"), IsEmpty());
}

TEST_F(LiveValuesTest, anEventDuringADragIsHandledAfterIt) {
    set("/root/a", "x", IntAttribute(1));
    client(kPrimaryClient).report("/root/a", named("stale"), {"x"});
    pump();
    EXPECT_EQ(shown("/root/a"), "{name=\"a\" x=1}");
    set("/root/a", "x", IntAttribute(2), true);
    pump();
    EXPECT_EQ(shown("/root/a"), "{name=\"stale\"}");
}

TEST_F(LiveValuesTest, thePassErasesWhatIsCurrentForTheManipulationsCommit) {
    std::vector<std::string> asked;
    const auto ask = [&asked](const char* view) {
        return [&asked, view](const std::string& path, std::int64_t commit) {
            asked.push_back(view + (" " + path) + " " + std::to_string(commit));
            return path != "/root/a";
        };
    };
    client(kPrimaryClient).isCurrent = ask("primary");
    client(kLookThroughClient).isCurrent = ask("lookThrough");
    bridge.commitId = 7;
    set("/root/both", "x", IntAttribute(1));
    set("/root/a", "x", IntAttribute(1), true);
    log.take();
    clock.advanceMs(1000);
    pump();
    EXPECT_THAT(asked, ElementsAre("primary /root/a 7", "primary /root/both 7",
                                   "lookThrough /root/both 7"));
    EXPECT_THAT(log.take(), ElementsAre("bridge getManipulationCommitId",
                                        "bridge cleanupLiveAttributes /root/both",
                                        "bridge cleanupLiveAttributes /root/both"));
    EXPECT_EQ(live("/root/a"), "{x=1}");
    EXPECT_EQ(live("/root/both"), "null");
    EXPECT_EQ(live("/root/both", 2), "null");
    // What shows is the scene's to change.
    EXPECT_EQ(shown("/root/both"), "{name=\"both\" x=1}");
    EXPECT_EQ(shown("/root/both", 2), "{name=\"through\" x=1}");
}

} // namespace
} // namespace ViewerAPI::test
