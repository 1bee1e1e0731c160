#include "support/livevaluestest.h"

#include <memory>
#include <stdexcept>
#include <utility>

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using VlAttribute::Attribute;
using VlAttribute::IntAttribute;

/// What the bridge, plug-ins and listeners do to the delegate while a value is being set.
class LiveValuesReentrance : public LiveValuesTest {};

TEST_F(LiveValuesReentrance, aPumpFromSetValueComesBeforeTheValue) {
    client(kPrimaryClient).report("/root/a", named("newer"), {"x"});
    bridge.onCall = [this](const std::string& line) {
        if (line.starts_with("setValue")) {
            pump();
        }
    };
    EXPECT_TRUE(set("/root/a", "x", IntAttribute(1)));
    EXPECT_EQ(cooked("/root/a"), "{name=\"newer\"}");
    EXPECT_EQ(shown("/root/a"), "{name=\"newer\" x=1}");
}

TEST_F(LiveValuesReentrance, aLocationThatGoesDuringSetValueFailsQuietly) {
    bridge.onCall = [this](const std::string& line) {
        if (line.starts_with("setValue")) {
            client(kPrimaryClient).reportGone("/root/a");
            pump();
        }
    };
    EXPECT_FALSE(set("/root/a", "x", IntAttribute(1)));
    EXPECT_EQ(state(), FreezeState::Idle);
}

TEST_F(LiveValuesReentrance, aValueSetFromSetValueStandsBelowTheOneUnderWay) {
    bridge.onCall = [&, isDone = false](const std::string& line) mutable {
        if (line.starts_with("setValue") && !std::exchange(isDone, true)) {
            EXPECT_TRUE(set("/root/a", "x", IntAttribute(1)));
            EXPECT_TRUE(set("/root/a", "y", IntAttribute(2)));
        }
    };
    EXPECT_TRUE(set("/root/a", "x", IntAttribute(3)));
    EXPECT_EQ(live("/root/a"), "{x=3 y=2}");
}

TEST_F(LiveValuesReentrance, aValueSetWhileTheBridgeCleansUpIsErasedWithTheEvent) {
    bridge.onCall = [&, isDone = false](const std::string& line) mutable {
        if (line == "cleanupLiveAttributes /root/a" && !std::exchange(isDone, true)) {
            set("/root/a", "x", IntAttribute(1), true);
        }
    };
    client(kPrimaryClient).report("/root/a", named("newer"), {"x"});
    pump();
    EXPECT_EQ(live("/root/a"), "null");
    EXPECT_EQ(shown("/root/a"), "{name=\"newer\"}");
}

TEST_F(LiveValuesReentrance, aBridgeThatThrowsLeavesNothingBehind) {
    bridge.onCall = [](const std::string&) { throw std::runtime_error("bridge"); };
    EXPECT_THROW(set("/root/a", "x", IntAttribute(1)), std::runtime_error);
    EXPECT_THROW(delegate->openManipulationGroup("/root/a"), std::runtime_error);
    bridge.onCall = nullptr;
    EXPECT_EQ(live("/root/a"), "null");
    EXPECT_EQ(state(), FreezeState::Idle);
    EXPECT_FALSE(delegate->liveValues.isManipulated("/root/a"));
    EXPECT_FALSE(delegate->isInCall());
}

TEST_F(LiveValuesReentrance, aPluginThatSetsAValueWhileItIsToldSeesRecordsInOrder) {
    for (const char* path : {"/root", "/root/a", "/root/both"}) {
        delegate->locationTree.setAttributes(path, named("newer"));
    }
    plugin.onCall = [&, isDone = false](std::string_view, std::string_view subject) mutable {
        if (subject == "/root/a" && !std::exchange(isDone, true)) {
            EXPECT_TRUE(set("/root/both", "x", IntAttribute(1)));
            EXPECT_TRUE(set("/root", "x", IntAttribute(2)));
            EXPECT_EQ(shown("/root/both"), "{name=\"newer\" x=1}");
        }
    };
    delegate->flushLocationChanges(true);
    EXPECT_THAT(takeShown(),
                ElementsAre("/root {name=\"newer\"}", "/root/a {name=\"newer\"}",
                            "/root/both {name=\"newer\"}", "/root/both {name=\"newer\" x=1}",
                            "/root {name=\"newer\" x=2}"));
}

TEST_F(LiveValuesReentrance, aComponentThatSetsAValueWhileItIsToldReachesAllInTheSameOrder) {
    delegate->addComponent("A", "a");
    delegate->addComponent("B", "b");
    componentB.onCall = [&, x = 0](std::string_view entry, std::string_view) mutable {
        if (entry == "locationEvent" && ++x < 4) {
            set("/root/a", "x", IntAttribute(x));
        }
    };
    delegate->locationTree.setAttributes("/root/a", named("newer"));
    delegate->flushLocationChanges(true);
    for (RecordingPlugin* receiver : {&componentA, &componentB, &plugin}) {
        SCOPED_TRACE(receiver->getName());
        Lines seen;
        for (const RecordedEvent& event : std::exchange(receiver->events, {})) {
            seen.push_back(textOf(event.attributes));
        }
        EXPECT_THAT(seen, ElementsAre("{name=\"newer\"}", "{name=\"newer\" x=1}",
                                      "{name=\"newer\" x=2}", "{name=\"newer\" x=3}"));
    }
}

TEST_F(LiveValuesReentrance, aValueSetFromASourceRecordIsDeliveredBehindTheBatch) {
    const char* paths[] = {"/root", "/root/a"};
    delegate->activateSourceLocations(paths, 2);
    plugin.onCall = [&, isDone = false](std::string_view entry, std::string_view) mutable {
        if (entry == "sourceLocationEvent" && !std::exchange(isDone, true)) {
            set("/root/a", "x", IntAttribute(1));
        }
    };
    client(kSourcesClient).report("/root", named("source root"));
    client(kSourcesClient).report("/root/a", named("source a"));
    pump();
    EXPECT_THAT(takeShown(),
                ElementsAre("/root {name=\"source root\"}", "/root/a {name=\"source a\"}",
                            "/root/a {name=\"a\" x=1}"));
}

TEST_F(LiveValuesReentrance, aValueSetFromTheChannelFreezesTheBatchesBehindIt) {
    channels.onFire = [&, isDone = false](const std::string&) mutable {
        if (!std::exchange(isDone, true)) {
            EXPECT_TRUE(set("/root/a", "x", IntAttribute(1)));
            EXPECT_THAT(takeShown(),
                        ElementsAre("/root {name=\"newer\"}", "/root/a {name=\"a\" x=1}"));
        }
        return Attribute();
    };
    client(kPrimaryClient).report("/root", named("newer"), {"x"});
    pump();
    EXPECT_EQ(log.take("__SELECTED_ENABLED_LOCATIONS_CHANGED").size(), 1U);
    EXPECT_TRUE(delegate->isFrozenDueToManipulation());
}

/// Something that can happen while the delegate is on the stack: the line of a log, and how to get
/// there.
struct CallRow {
    const char* line;
    void (*act)(VlViewerDelegateHostStruct& delegate);
};

void setX(VlViewerDelegateHostStruct& delegate) {
    delegate.setManipulatedAttribute("/root/a", "x", IntAttribute(1), false);
}

TEST_F(LiveValuesReentrance, aDelegateThatEndsInItsOwnCallLivesUntilTheCallReturns) {
    const CallRow rows[] = {
        {"bridge setValue /root/a x 1", setX},
        {"D locationEvent /root/a attributesChanged handled=0", setX},
        {"bridge cleanupLiveAttributes /root/unknown",
         [](auto& d) { d.setManipulatedAttribute("/root/unknown", "x", IntAttribute(1), false); }},
        {"bridge openManipulationGroup /root/a",
         [](auto& d) { d.openManipulationGroup("/root/a"); }},
        {"bridge closeManipulationGroup /root/a",
         [](auto& d) {
             d.openManipulationGroup("/root/a");
             d.closeManipulationGroup("/root/a");
         }},
        {"bridge cleanupLiveAttributes /root/a", [](auto& d) { d.processLocationEvents(); }},
        {"bridge getManipulationCommitId",
         [](auto& d) {
             d.manipulationFreeze.onValueSet(true);
             d.processLocationEvents();
         }},
        {"channel __SELECTED_ENABLED_LOCATIONS_CHANGED null",
         [](auto& d) { d.processLocationEvents(); }},
    };
    for (const CallRow& row : rows) {
        SCOPED_TRACE(row.line);
        start();
        populate({{"/root/a", named("a")}});
        client(kPrimaryClient).report("/root/a", named("newer"), {"x"});
        const std::weak_ptr<const void> life = delegate->watch();
        const auto end = [&] {
            if (delegate && log.lines.back() == row.line) {
                HostObject::retire(delegate.release());
            }
        };
        bridge.onCall = [&](const std::string&) { end(); };
        plugin.onCall = [&](std::string_view, std::string_view) { end(); };
        channels.onFire = [&](const std::string&) {
            end();
            return Attribute();
        };
        row.act(*delegate);
        EXPECT_FALSE(delegate) << "the row's line was never written";
        EXPECT_TRUE(life.expired());
        EXPECT_EQ(plugin.numberOfInstances, 0);
        TearDown();
        delegate.reset();
    }
}

TEST_F(LiveValuesReentrance, componentsMayComeAndGoWhileAValueIsSet) {
    delegate->addComponent("A", "a");
    bridge.onCall = [this](const std::string&) {
        delegate->removeComponent("a");
        delegate->addComponent("B", "b");
    };
    componentB.onCall = [this](std::string_view entry, std::string_view) {
        if (entry == "locationEvent") {
            delegate->removeComponent("b");
        }
    };
    EXPECT_TRUE(set("/root/a", "x", IntAttribute(1)));
    EXPECT_EQ(componentA.events.size(), 0U);
    EXPECT_EQ(componentB.events.size(), 1U);
    EXPECT_EQ(componentA.numberOfInstances + componentB.numberOfInstances, 0);
    EXPECT_THAT(takeShown(), ElementsAre("/root/a {name=\"a\" x=1}"));
}

} // namespace
} // namespace ViewerAPI::test
