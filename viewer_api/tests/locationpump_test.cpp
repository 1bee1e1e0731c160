#include "support/delegatetest.h"

#include "VlScenelib/Client.h"

#include <stdexcept>

namespace ViewerAPI::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

/// processLocationEvents: what it fetches, in what order it handles, and what it holds back.
class LocationPump : public DelegateTest {
protected:
    void pump() { delegate->processLocationEvents(); }

    LiveEntry liveEntry() {
        LiveEntry entry;
        entry.base = named("cooked");
        entry.overrides["name"] = StringAttribute("live");
        return entry;
    }

    Lines fetches() {
        Lines lines = runtime->takeCalls();
        std::erase_if(
            lines, [](const std::string& line) { return line.rfind("getLocationEvents", 0) != 0; });
        return lines;
    }

    void freezeNow() {
        bridge.commitId = -1;
        delegate->manipulationFreeze.onValueSet(true);
    }
};

TEST_F(LocationPump, fetchesAllFourClientsBeforeItHandlesAny) {
    client(kPrimaryClient).report("/root");
    Lines fetchedBefore;
    bridge.onCall = [&](const std::string&) { fetchedBefore = fetches(); };
    pump();
    EXPECT_THAT(fetchedBefore,
                ElementsAre("getLocationEvents client1", "getLocationEvents client2",
                            "getLocationEvents client3", "getLocationEvents client4"));
}

TEST_F(LocationPump, leavesThePinnedClientAloneInWorkingSetMode) {
    delegate->setWorkingSetVisibilityEnabled(true);
    runtime->takeCalls();
    client(kPinnedClient).report("/root");
    pump();
    EXPECT_THAT(fetches(), ElementsAre("getLocationEvents client1", "getLocationEvents client3",
                                       "getLocationEvents client4"));
    EXPECT_EQ(client(kPinnedClient).getNumberOfWaitingEvents(), 1U);
    EXPECT_THAT(plugin.takeEventLines(), IsEmpty());
}

TEST_F(LocationPump, takesNoMoreThanTheEventLimitOfEachClient) {
    delegate->eventLimit = 2;
    for (const int number : {kPrimaryClient, kPinnedClient, kSourcesClient, kLookThroughClient}) {
        for (const char* const path : {"/root", "/root/a", "/root/b"}) {
            client(number).report(path);
        }
    }
    pump();
    for (const int number : {kPrimaryClient, kPinnedClient, kSourcesClient, kLookThroughClient}) {
        EXPECT_EQ(client(number).getNumberOfWaitingEvents(), 1U) << "client " << number;
    }
    EXPECT_THAT(
        log.take("cleanupLiveAttributes"),
        ElementsAre("bridge cleanupLiveAttributes /root", "bridge cleanupLiveAttributes /root/a",
                    "bridge cleanupLiveAttributes /root", "bridge cleanupLiveAttributes /root/a"));
}

TEST_F(LocationPump, bringsCookedLocationsToThePlugin) {
    client(kPrimaryClient).report("/root", named("root"), {"a"});
    client(kPrimaryClient).report("/root/a", named("a"));
    const char* path = "/root";
    delegate->openLocations(&path, 1);
    pump();
    ASSERT_EQ(plugin.events.size(), 2U);
    EXPECT_EQ(plugin.events[0].attributes, Attribute(named("root")));
    EXPECT_EQ(plugin.events[1].attributes, Attribute(named("a")));
    EXPECT_THAT(plugin.takeEventLines(),
                ElementsAre("/root attributesChanged hiddenChanged leafChanged handled=0",
                            "/root/a leaf attributesChanged hiddenChanged leafChanged handled=0"));
}

TEST_F(LocationPump, bringsTheLocalMatrix) {
    const GroupAttribute attributes =
        GroupBuilder()
            .set("xform.interactive.translate", VlAttribute::DoubleAttribute({1, 2, 3}))
            .build();
    client(kPrimaryClient).report("/root", attributes);
    pump();
    ASSERT_EQ(plugin.events.size(), 1U);
    EXPECT_EQ(textOf(plugin.events[0].xform), "(1 0 0 0 0 1 0 0 0 0 1 0 1 2 3 1)");
    EXPECT_NE(plugin.events[0].flags & kVlLocationEventXformChanged, 0U);
}

TEST_F(LocationPump, takesWorkingSetDataOutBeforePluginsSeeTheAttributes) {
    const GroupAttribute attributes =
        GroupBuilder()
            .set("name", StringAttribute("a"))
            .set("__viewerWorkingSets.viewerVisibility.polished.included", IntAttribute(1))
            .build();
    client(kPrimaryClient).report("/root", attributes);
    pump();
    ASSERT_EQ(plugin.events.size(), 1U);
    EXPECT_EQ(plugin.events[0].attributes, Attribute(named("a")));
}

TEST_F(LocationPump, handlesThePinnedClientsEventsAfterThePrimaryOnes) {
    client(kPinnedClient).report("/root", named("from the pinned client"));
    client(kPrimaryClient).report("/root", named("from the primary client"));
    pump();
    EXPECT_EQ(textOf(delegate->getAttributes("/root", 0)), "{name=\"from the pinned client\"}");
}

TEST_F(LocationPump, tellsTheBridgeOfEveryPrimaryAndPinnedEventAndOfNoOther) {
    client(kPrimaryClient).report("/root");
    client(kPrimaryClient).reportGone("/root/gone");
    client(kPinnedClient).report("/root");
    client(kSourcesClient).report("/root/source");
    client(kLookThroughClient).report("/root/camera");
    pump();
    EXPECT_THAT(log.take("cleanupLiveAttributes"),
                ElementsAre("bridge cleanupLiveAttributes /root",
                            "bridge cleanupLiveAttributes /root/gone",
                            "bridge cleanupLiveAttributes /root"));
}

TEST_F(LocationPump, anEventSupersedesTheLiveValuesOfItsLocation) {
    populate({{"/root/a", named("a")}, {"/root/b", named("b")}});
    for (const char* path : {"/root/a", "/root/b"}) {
        delegate->liveValues.liveAttributes[path] = liveEntry();
        delegate->liveValues.lookThroughLiveAttributes[path] = liveEntry();
    }
    bridge.onCall = [this](const std::string&) {
        EXPECT_EQ(delegate->liveValues.liveAttributes.count("/root/a"), 1U);
    };
    client(kPrimaryClient).report("/root/a", named("a"));
    pump();
    EXPECT_EQ(delegate->liveValues.liveAttributes.count("/root/a"), 0U);
    EXPECT_EQ(delegate->liveValues.lookThroughLiveAttributes.count("/root/a"), 0U);
    EXPECT_EQ(delegate->liveValues.liveAttributes.count("/root/b"), 1U);
    EXPECT_EQ(delegate->liveValues.lookThroughLiveAttributes.count("/root/b"), 1U);
}

TEST_F(LocationPump, aLookThroughEventSupersedesOnlyTheLookThroughLiveValues) {
    delegate->liveValues.liveAttributes["/root/a"] = liveEntry();
    delegate->liveValues.lookThroughLiveAttributes["/root/a"] = liveEntry();
    client(kLookThroughClient).report("/root/a");
    pump();
    EXPECT_EQ(delegate->liveValues.liveAttributes.count("/root/a"), 1U);
    EXPECT_EQ(delegate->liveValues.lookThroughLiveAttributes.count("/root/a"), 0U);
}

TEST_F(LocationPump, removesALocationThatIsGone) {
    populate({{"/root/a", named("a")}});
    client(kPrimaryClient).reportGone("/root/a");
    pump();
    EXPECT_THAT(plugin.takeEventLines(), Contains("/root/a removed handled=0"));
}

TEST_F(LocationPump, aLocationDeletedAndCookedInOneBatchEndsInTheLastState) {
    populate({{"/root/a", named("a")}});
    client(kPrimaryClient).reportGone("/root/a");
    client(kPrimaryClient).report("/root/a", named("again"));
    pump();
    EXPECT_EQ(textOf(delegate->getAttributes("/root/a", 0)), "{name=\"again\"}");
    client(kPrimaryClient).report("/root/a", named("once more"));
    client(kPrimaryClient).reportGone("/root/a");
    pump();
    EXPECT_FALSE(delegate->getAttributes("/root/a", 0).isValid());
}

TEST_F(LocationPump, keepsTheSourcesTreeApart) {
    const char* path = "/root";
    delegate->activateSourceLocations(&path, 1);
    client(kSourcesClient).report("/root", named("source"));
    pump();
    EXPECT_THAT(log.take("sourceLocationEvent"),
                ElementsAre("D sourceLocationEvent /root attributesChanged"));
    EXPECT_EQ(textOf(delegate->getAttributes("/root", kVlViewerDelegateSources)),
              "{name=\"source\"}");
    EXPECT_FALSE(delegate->getAttributes("/root", kVlViewerDelegatePrimary).isValid());
    client(kSourcesClient).reportGone("/root");
    pump();
    EXPECT_THAT(log.take("sourceLocationEvent"),
                ElementsAre("D sourceLocationEvent /root removed"));
}

// ---- The freeze

TEST_F(LocationPump, holdsEventsInTheClientsWhileFrozen) {
    freezeNow();
    client(kPrimaryClient).report("/root");
    pump();
    EXPECT_THAT(fetches(), IsEmpty());
    EXPECT_EQ(client(kPrimaryClient).getNumberOfWaitingEvents(), 1U);
    EXPECT_THAT(plugin.takeEventLines(), IsEmpty());
    EXPECT_TRUE(delegate->isFrozenDueToManipulation());
    bridge.commitId = 3;
    pump();
    EXPECT_FALSE(delegate->isFrozenDueToManipulation());
    EXPECT_EQ(plugin.takeEventLines().size(), 1U);
}

TEST_F(LocationPump, sendsLiveChangesWhileFrozenButNotThatTheSelectionMayHaveChanged) {
    populate({{"/root/a", named("a")}});
    freezeNow();
    delegate->locationTree.setAttributes("/root/a", named("live"));
    pump();
    EXPECT_EQ(plugin.takeEventLines().size(), 1U);
    EXPECT_THAT(log.take("__SELECTED_ENABLED_LOCATIONS_CHANGED"), IsEmpty());
}

TEST_F(LocationPump, doesNotLookForStaleLiveValuesWhileFrozen) {
    delegate->liveValues.liveAttributes["/root/a"] = liveEntry();
    client(kPrimaryClient).isCurrent = [](const std::string&, std::int64_t) { return true; };
    freezeNow();
    clock.advanceMs(5000);
    pump();
    EXPECT_EQ(delegate->liveValues.liveAttributes.size(), 1U);
    bridge.commitId = 3;
    pump();
    EXPECT_TRUE(delegate->liveValues.liveAttributes.empty());
}

TEST_F(LocationPump, aPeriodOfZeroAsksForTheCommitInTheNextPump) {
    bridge.commitId = 8;
    delegate->manipulationFreeze.onValueSet(true);
    client(kPrimaryClient).report("/root");
    pump();
    EXPECT_EQ(delegate->manipulationFreeze.manipulationCommitId, 8);
    EXPECT_EQ(plugin.takeEventLines().size(), 1U);
}

TEST_F(LocationPump, theFreezePeriodIsSetFromOutside) {
    delegate->setManipulationFreezePeriod(100);
    delegate->manipulationFreeze.onValueSet(true);
    pump();
    EXPECT_TRUE(delegate->isFrozenDueToManipulation());
    clock.advanceMs(100);
    pump();
    EXPECT_FALSE(delegate->isFrozenDueToManipulation());
}

// ---- The pass that drops live values whose data has arrived

TEST_F(LocationPump, looksForStaleLiveValuesOnceInAnInterval) {
    client(kPrimaryClient).isCurrent = [](const std::string&, std::int64_t) { return true; };
    delegate->liveValues.liveAttributes["/root/a"] = liveEntry();
    clock.advanceMs(999);
    pump();
    EXPECT_EQ(delegate->liveValues.liveAttributes.size(), 1U);
    clock.advanceMs(1);
    pump();
    EXPECT_TRUE(delegate->liveValues.liveAttributes.empty());
    EXPECT_EQ(delegate->lastCleanup, clock.now);
    EXPECT_THAT(log.take("cleanupLiveAttributes"),
                ElementsAre("bridge cleanupLiveAttributes /root/a"));
}

TEST_F(LocationPump, looksForStaleLiveValuesBetweenTheFetchAndTheFirstEvent) {
    client(kPrimaryClient).report("/root");
    Lines fetchedBefore;
    Lines handledBefore;
    client(kPrimaryClient).isCurrent = [&](const std::string&, std::int64_t) {
        fetchedBefore = fetches();
        handledBefore = log.take("cleanupLiveAttributes");
        return false;
    };
    delegate->liveValues.liveAttributes["/root/a"] = liveEntry();
    clock.advanceMs(1000);
    pump();
    EXPECT_EQ(fetchedBefore.size(), 4U);
    EXPECT_THAT(handledBefore, IsEmpty());
    EXPECT_EQ(log.take("cleanupLiveAttributes").size(), 1U) << "the event's";
}

TEST_F(LocationPump, dropsOnlyLiveValuesWhoseDataReflectsTheManipulationsCommit) {
    delegate->manipulationFreeze.manipulationCommitId = 6;
    std::vector<std::int64_t> askedFor;
    client(kPrimaryClient).isCurrent = [&](const std::string& path, std::int64_t commitId) {
        askedFor.push_back(commitId);
        return path == "/root/a";
    };
    client(kLookThroughClient).isCurrent = [](const std::string& path, std::int64_t) {
        return path == "/root/b";
    };
    for (const char* path : {"/root/a", "/root/b"}) {
        delegate->liveValues.liveAttributes[path] = liveEntry();
        delegate->liveValues.lookThroughLiveAttributes[path] = liveEntry();
    }
    clock.advanceMs(1000);
    pump();
    EXPECT_THAT(askedFor, ElementsAre(6, 6));
    EXPECT_EQ(delegate->liveValues.liveAttributes.count("/root/a"), 0U);
    EXPECT_EQ(delegate->liveValues.liveAttributes.count("/root/b"), 1U);
    EXPECT_EQ(delegate->liveValues.lookThroughLiveAttributes.count("/root/a"), 1U);
    EXPECT_EQ(delegate->liveValues.lookThroughLiveAttributes.count("/root/b"), 0U);
    EXPECT_THAT(log.take("cleanupLiveAttributes"),
                ElementsAre("bridge cleanupLiveAttributes /root/a",
                            "bridge cleanupLiveAttributes /root/b"));
}

TEST_F(LocationPump, survivesABridgeThatDropsLiveValuesDuringThePass) {
    client(kPrimaryClient).isCurrent = [](const std::string&, std::int64_t) { return true; };
    for (const char* path : {"/root/a", "/root/b", "/root/c"}) {
        delegate->liveValues.liveAttributes[path] = liveEntry();
    }
    bridge.onCall = [this](const std::string&) { delegate->liveValues.liveAttributes.clear(); };
    clock.advanceMs(1000);
    pump();
    EXPECT_THAT(log.take("cleanupLiveAttributes"),
                ElementsAre("bridge cleanupLiveAttributes /root/a"));
}

// ---- Pumps within pumps, and failures

TEST_F(LocationPump, aPumpFromTheBridgeLeavesNewerEventsForTheNextOne) {
    client(kPrimaryClient).report("/root", named("old"));
    bool isNested = false;
    bridge.onCall = [&](const std::string&) {
        if (!std::exchange(isNested, true)) {
            client(kPrimaryClient).report("/root", named("new"));
            pump();
        }
    };
    pump();
    EXPECT_EQ(textOf(delegate->getAttributes("/root", 0)), "{name=\"old\"}");
    pump();
    EXPECT_EQ(textOf(delegate->getAttributes("/root", 0)), "{name=\"new\"}");
}

TEST_F(LocationPump, aPumpFromAPluginHandlesWhatWaits) {
    client(kPrimaryClient).report("/root", named("old"));
    bool isNested = false;
    plugin.onCall = [&](std::string_view entry, std::string_view) {
        if (entry == "locationEvent" && !std::exchange(isNested, true)) {
            client(kPrimaryClient).report("/root", named("new"));
            pump();
        }
    };
    pump();
    ASSERT_EQ(plugin.events.size(), 2U);
    EXPECT_EQ(plugin.events[1].attributes, Attribute(named("new")));
}

TEST_F(LocationPump, aListenersErrorLeavesThePumpAndTheNextOneGoesOn) {
    channels.onFire = [](const std::string&) -> Attribute { throw std::runtime_error("listener"); };
    client(kPrimaryClient).report("/root");
    EXPECT_THROW(pump(), std::runtime_error);
    EXPECT_EQ(plugin.takeEventLines().size(), 1U);
    channels.onFire = nullptr;
    client(kPrimaryClient).report("/root", named("new"));
    pump();
    EXPECT_EQ(plugin.takeEventLines().size(), 1U);
}

TEST_F(LocationPump, anErrorWhileEventsAreHandledLosesThemToTheTreesAndNothingElse) {
    client(kPrimaryClient).report("/root");
    client(kPrimaryClient).report("/root/a");
    bridge.onCall = [](const std::string& line) {
        if (line == "cleanupLiveAttributes /root/a") {
            throw std::runtime_error("bridge");
        }
    };
    EXPECT_THROW(pump(), std::runtime_error);
    bridge.onCall = nullptr;
    pump();
    EXPECT_THAT(plugin.takeEventLines(),
                ElementsAre("/root leaf attributesChanged hiddenChanged leafChanged handled=0"));
    client(kPrimaryClient).report("/root", named("new"));
    pump();
    EXPECT_EQ(plugin.takeEventLines().size(), 1U);
}

// ---- isProcessing

TEST_F(LocationPump, isProcessingWhileTheRuntimeCooksAndAsksNobodyElse) {
    delegate->addComponent("A", "a");
    log.take();
    runtime->setProcessing(true);
    EXPECT_TRUE(delegate->isProcessing());
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(LocationPump, isProcessingWhileAnyClientHasEvents) {
    for (const int number : {kPrimaryClient, kPinnedClient, kSourcesClient, kLookThroughClient}) {
        client(number).report("/root");
        EXPECT_TRUE(delegate->isProcessing()) << "client " << number;
        pump();
        EXPECT_FALSE(delegate->isProcessing()) << "client " << number;
    }
}

TEST_F(LocationPump, doesNotCountThePinnedClientsEventsInWorkingSetMode) {
    client(kPinnedClient).report("/root");
    delegate->setWorkingSetVisibilityEnabled(true);
    EXPECT_FALSE(delegate->isProcessing());
}

TEST_F(LocationPump, isProcessingWhileAComponentOrThePluginIsInThatOrder) {
    delegate->addComponent("A", "a");
    delegate->addComponent("B", "b");
    log.take();
    EXPECT_FALSE(delegate->isProcessing());
    EXPECT_THAT(log.take(), ElementsAre("A isProcessing", "B isProcessing", "D isProcessing"));
    componentA.processing = 2;
    EXPECT_TRUE(delegate->isProcessing());
    EXPECT_THAT(log.take(), ElementsAre("A isProcessing"));
    componentA.processing = 0;
    plugin.processing = -1;
    EXPECT_TRUE(delegate->isProcessing());
}

} // namespace
} // namespace ViewerAPI::test
