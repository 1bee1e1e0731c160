#include "locationdelivery.h"

#include "support/delegatetest.h"

#include <functional>
#include <stdexcept>

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;

/// flushLocationChanges: who hears what, in what order, and what happens when those who hear change
/// the world meanwhile.
class LocationDeliveryTest : public DelegateTest {
protected:
    void cook(const char* path, const GroupAttribute& attributes) {
        delegate->locationTree.cook(path, attributes, {}, false, true);
    }
    void flush() { delegate->flushLocationChanges(true); }

    /// Cooks "/root" and three locations below it, ready to be flushed.
    void cookScene() {
        delegate->locationTree.openLocation("/root");
        delegate->locationTree.cook("/root", named("root"), {}, false, false);
        for (const char* path : {"/root/a", "/root/b", "/root/c"}) {
            cook(path, named(path));
        }
    }

    /// Runs `action` when the first plug-in hears of `path`.
    static auto once(const char* path, std::function<void()> action) {
        return [path, action, isDone = false](std::string_view entry,
                                              std::string_view subject) mutable {
            if (entry == "locationEvent" && subject == path && !std::exchange(isDone, true)) {
                action();
            }
        };
    }

    std::vector<std::string> pathsHeardBy(RecordingPlugin& receiver) {
        std::vector<std::string> paths;
        for (const RecordedEvent& event : std::exchange(receiver.events, {})) {
            paths.push_back(event.path);
        }
        return paths;
    }
};

const char* const kNew = " leaf attributesChanged hiddenChanged leafChanged";

TEST_F(LocationDeliveryTest, tellsComponentsFromLastToFirstAndThenThePluginPerRecord) {
    delegate->addComponent("A", "a");
    delegate->addComponent("B", "b");
    cookScene();
    log.take();
    flush();
    Lines lines = takePluginLines();
    ASSERT_EQ(lines.size(), 4U * 3U + 1U);
    lines.resize(6);
    EXPECT_THAT(
        lines,
        ElementsAre("B locationEvent /root attributesChanged hiddenChanged leafChanged handled=0",
                    "A locationEvent /root attributesChanged hiddenChanged leafChanged handled=0",
                    "D locationEvent /root attributesChanged hiddenChanged leafChanged handled=0",
                    std::string("B locationEvent /root/a") + kNew + " handled=0",
                    std::string("A locationEvent /root/a") + kNew + " handled=0",
                    std::string("D locationEvent /root/a") + kNew + " handled=0"));
}

TEST_F(LocationDeliveryTest, passesHandledAlongAndStopsNobody) {
    delegate->addComponent("A", "a");
    delegate->addComponent("B", "b");
    delegate->addComponent("C", "c");
    componentB.handles = 7;
    cook("/root", named("root"));
    flush();
    ASSERT_EQ(componentC.events.size(), 1U);
    ASSERT_EQ(componentB.events.size(), 1U);
    ASSERT_EQ(componentA.events.size(), 1U);
    ASSERT_EQ(plugin.events.size(), 1U);
    EXPECT_EQ(componentC.events[0].handled, 0);
    EXPECT_EQ(componentB.events[0].handled, 0);
    EXPECT_EQ(componentA.events[0].handled, 1);
    EXPECT_EQ(plugin.events[0].handled, 1);
}

TEST_F(LocationDeliveryTest, handledCountsForOneRecordOnly) {
    delegate->addComponent("A", "a");
    componentA.handles = 1;
    cook("/root", named("root"));
    flush();
    componentA.handles = 0;
    cook("/root", named("other"));
    flush();
    ASSERT_EQ(plugin.events.size(), 2U);
    EXPECT_EQ(plugin.events[0].handled, 1);
    EXPECT_EQ(plugin.events[1].handled, 0);
}

TEST_F(LocationDeliveryTest, tellsThePluginAloneOfTheSources) {
    delegate->addComponent("A", "a");
    log.take();
    delegate->sourceLocationTree.pinLocation("/root");
    delegate->sourceLocationTree.cook("/root", named("root"));
    flush();
    EXPECT_THAT(takePluginLines(), ElementsAre("D sourceLocationEvent /root attributesChanged"));
}

TEST_F(LocationDeliveryTest, tellsOfThePrimaryTreeBeforeTheSources) {
    delegate->sourceLocationTree.pinLocation("/root");
    delegate->sourceLocationTree.cook("/root", named("root"));
    cook("/root", named("root"));
    flush();
    EXPECT_THAT(takePluginLines(),
                ElementsAre(std::string("D locationEvent /root") + kNew + " handled=0",
                            "D sourceLocationEvent /root attributesChanged",
                            "channel __SELECTED_ENABLED_LOCATIONS_CHANGED null"));
}

TEST_F(LocationDeliveryTest, firesTheChannelOnlyForChangesOfThePrimaryTreeWhileIdle) {
    flush();
    EXPECT_THAT(takePluginLines(), IsEmpty());
    cook("/root", named("root"));
    flush();
    EXPECT_THAT(log.take("__SELECTED_ENABLED_LOCATIONS_CHANGED"),
                ElementsAre("channel __SELECTED_ENABLED_LOCATIONS_CHANGED null"));
    flush();
    EXPECT_THAT(takePluginLines(), IsEmpty());
    delegate->manipulationFreeze.onValueSet(false);
    cook("/root", named("other"));
    flush();
    EXPECT_THAT(log.take("__SELECTED_ENABLED_LOCATIONS_CHANGED"), IsEmpty());
}

TEST_F(LocationDeliveryTest, lendsPathAndAttributesForTheCall) {
    const GroupAttribute attributes = named("root");
    cook("/root", attributes);
    flush();
    ASSERT_EQ(plugin.events.size(), 1U);
    EXPECT_EQ(plugin.events[0].attributes.getHandle(), attributes.getHandle());
    EXPECT_FALSE(plugin.events[0].xform.isValid());
}

// ---- Flushes within a delivery

TEST_F(LocationDeliveryTest, queuesTheBatchOfANestedFlushBehindTheOneUnderWay) {
    cookScene();
    plugin.onCall = once("/root/a", [this] {
        cook("/root/b", named("newer"));
        flush();
    });
    flush();
    EXPECT_THAT(pathsHeardBy(plugin),
                ElementsAre("/root", "/root/a", "/root/b", "/root/c", "/root/b"));
}

TEST_F(LocationDeliveryTest, firesTheChannelOncePerBatch) {
    cookScene();
    plugin.onCall = once("/root/a", [this] {
        cook("/root/b", named("newer"));
        flush();
    });
    flush();
    EXPECT_EQ(log.take("__SELECTED_ENABLED_LOCATIONS_CHANGED").size(), 2U);
}

TEST_F(LocationDeliveryTest, aFlushFromTheChannelDeliversBeforeItReturns) {
    cook("/root", named("root"));
    bool isNested = false;
    channels.onFire = [&](const std::string&) {
        if (!std::exchange(isNested, true)) {
            cook("/root", named("newer"));
            flush();
            EXPECT_EQ(plugin.events.size(), 2U);
        }
        return Attribute();
    };
    flush();
    EXPECT_EQ(plugin.events.size(), 2U);
}

TEST_F(LocationDeliveryTest, everyReceiverEndsWithTheNewestStateAfterNestedFlushes) {
    delegate->addComponent("A", "a");
    delegate->addComponent("B", "b");
    cookScene();
    componentB.onCall = once("/root", [this] {
        cook("/root/c", named("from B"));
        flush();
    });
    componentA.onCall = once("/root/c", [this] {
        cook("/root/c", named("from A"));
        flush();
    });
    flush();
    for (RecordingPlugin* receiver : {&componentA, &componentB, &plugin}) {
        ASSERT_FALSE(receiver->events.empty());
        EXPECT_EQ(receiver->events.back().path, "/root/c");
        EXPECT_EQ(receiver->events.back().attributes, Attribute(named("from A")))
            << receiver->getName();
    }
}

// ---- Changes of the list within a delivery

TEST_F(LocationDeliveryTest, aComponentThatRemovesItselfOutlivesItsCallAndHearsNoMore) {
    delegate->addComponent("A", "a");
    delegate->addComponent("B", "b");
    log.take();
    cookScene();
    componentB.onCall = once("/root", [this] {
        delegate->removeComponent("b");
        EXPECT_EQ(delegate->getNumberOfComponents(), 1U);
        EXPECT_THAT(log.take("cleanup"), ElementsAre("B cleanup"));
        EXPECT_EQ(componentB.numberOfInstances, 1);
    });
    flush();
    EXPECT_EQ(componentB.numberOfInstances, 0);
    EXPECT_THAT(pathsHeardBy(componentB), ElementsAre("/root"));
    EXPECT_EQ(pathsHeardBy(componentA).size(), 4U);
    EXPECT_EQ(pathsHeardBy(plugin).size(), 4U);
}

TEST_F(LocationDeliveryTest, aComponentRemovedByAnotherIsPassedOver) {
    delegate->addComponent("A", "a");
    delegate->addComponent("B", "b");
    cookScene();
    componentB.onCall = once("/root", [this] { delegate->removeComponent("a"); });
    flush();
    EXPECT_THAT(pathsHeardBy(componentA), IsEmpty());
    EXPECT_EQ(componentA.numberOfInstances, 0);
    EXPECT_EQ(pathsHeardBy(componentB).size(), 4U);
    EXPECT_EQ(pathsHeardBy(plugin).size(), 4U);
}

TEST_F(LocationDeliveryTest, aComponentAddedMeanwhileHearsFromTheNextRecordOn) {
    delegate->addComponent("A", "a");
    cookScene();
    componentA.onCall = once("/root/a", [this] { delegate->addComponent("B", "b"); });
    flush();
    EXPECT_THAT(pathsHeardBy(componentB), ElementsAre("/root/b", "/root/c"));
}

TEST_F(LocationDeliveryTest, allComponentsMayGoAtOnce) {
    delegate->addComponent("A", "a");
    delegate->addComponent("B", "b");
    delegate->addComponent("C", "c");
    cookScene();
    componentB.onCall = once("/root", [this] {
        while (delegate->getNumberOfComponents() > 0) {
            delegate->removeComponentByIndex(0);
        }
    });
    flush();
    EXPECT_THAT(pathsHeardBy(componentC), ElementsAre("/root"));
    EXPECT_THAT(pathsHeardBy(componentB), ElementsAre("/root"));
    EXPECT_THAT(pathsHeardBy(componentA), IsEmpty());
    EXPECT_EQ(pathsHeardBy(plugin).size(), 4U);
    EXPECT_EQ(componentA.numberOfInstances + componentB.numberOfInstances +
                  componentC.numberOfInstances,
              0);
}

// ---- Exceptions

TEST_F(LocationDeliveryTest, whatIsBehindARecordThatThrewIsDeliveredByTheNextFlush) {
    cookScene();
    plugin.onCall = once("/root/a", [] { throw std::runtime_error("plug-in"); });
    EXPECT_THROW(flush(), std::runtime_error);
    EXPECT_THAT(pathsHeardBy(plugin), ElementsAre("/root", "/root/a"));
    EXPECT_THAT(log.take("__SELECTED_ENABLED_LOCATIONS_CHANGED"), IsEmpty());
    flush();
    EXPECT_THAT(pathsHeardBy(plugin), ElementsAre("/root/b", "/root/c"));
    EXPECT_EQ(log.take("__SELECTED_ENABLED_LOCATIONS_CHANGED").size(), 1U);
}

TEST_F(LocationDeliveryTest, aListenerThatRaisesBetweenTwoBatchesLosesNeitherNorTheirOrder) {
    cookScene();
    plugin.onCall = once("/root/a", [this] {
        cook("/root/b", named("second batch"));
        flush();
    });
    channels.onFire = [](const std::string&) -> Attribute { throw std::runtime_error("listener"); };
    EXPECT_THROW(flush(), std::runtime_error);
    EXPECT_THAT(pathsHeardBy(plugin), ElementsAre("/root", "/root/a", "/root/b", "/root/c"));
    channels.onFire = nullptr;
    cook("/root/b", named("third batch"));
    flush();
    ASSERT_EQ(plugin.events.size(), 2U);
    EXPECT_EQ(plugin.events[0].attributes, Attribute(named("second batch")));
    EXPECT_EQ(plugin.events[1].attributes, Attribute(named("third batch")));
}

TEST_F(LocationDeliveryTest, aSourceRecordThatThrewIsNotDeliveredTwice) {
    delegate->sourceLocationTree.pinLocation("/root");
    delegate->sourceLocationTree.cook("/root", named("root"));
    delegate->sourceLocationTree.cook("/root/a", named("a"));
    bool isThrown = false;
    plugin.onCall = [&](std::string_view, std::string_view) {
        if (!std::exchange(isThrown, true)) {
            throw 1;
        }
    };
    EXPECT_THROW(flush(), int);
    flush();
    EXPECT_THAT(pathsHeardBy(plugin), ElementsAre("/root", "/root/a"));
}

TEST_F(LocationDeliveryTest, aComponentThatThrowsKeepsTheRecordFromThoseBehindIt) {
    delegate->addComponent("A", "a");
    cookScene();
    componentA.onCall = once("/root/b", [] { throw std::runtime_error("component"); });
    EXPECT_THROW(flush(), std::runtime_error);
    flush();
    EXPECT_THAT(pathsHeardBy(componentA), ElementsAre("/root", "/root/a", "/root/b", "/root/c"));
    EXPECT_THAT(pathsHeardBy(plugin), ElementsAre("/root", "/root/a", "/root/c"));
}

} // namespace
} // namespace ViewerAPI::test
