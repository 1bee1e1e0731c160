#include "support/livevaluestest.h"

#include <limits>
#include <string>
#include <tuple>

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::IntAttribute;

constexpr std::int64_t kHourMs = 3'600'000;
constexpr std::int32_t kEarlierCommit = 5;

/// Where the pump finds the freeze, reached by setManipulatedAttribute and pumps alone.
struct Start {
    const char* name;
    FreezeState state;
    bool asksForTheCommit;
    std::int64_t periodMs;
};

constexpr Start kIdle{"Idle", FreezeState::Idle, false, 0};
constexpr Start kManipulating{"Manipulating", FreezeState::Manipulating, false, 0};
constexpr Start kSettling{"Settling", FreezeState::Settling, false, kHourMs};
constexpr Start kSettled{"Settled", FreezeState::Settling, true, 0};
constexpr Start kWaiting{"Waiting", FreezeState::WaitingForCommit, true, 0};

/// What the application says of the commit, and what it does to a freeze that asked.
struct Answer {
    const char* name;
    std::int32_t commitId;
    FreezeState state;
    std::int32_t storedCommitId;
};

constexpr Answer kAnswers[] = {
    {"NotYet", -1, FreezeState::WaitingForCommit, kEarlierCommit},
    {"Failure", -2, FreezeState::Idle, kEarlierCommit},
    {"OtherNegative", std::numeric_limits<std::int32_t>::min(), FreezeState::Idle, kEarlierCommit},
    {"Zero", 0, FreezeState::Idle, 0},
    {"Positive", 7, FreezeState::Idle, 7},
    {"Largest", std::numeric_limits<std::int32_t>::max(), FreezeState::Idle,
     std::numeric_limits<std::int32_t>::max()},
};

enum class Clock { Stopped, Machine };

/// One pump from every state of the freeze, with every answer of the bridge, by both clocks.
class ManipulationPump : public DelegateTest,
                         public testing::WithParamInterface<std::tuple<Start, Answer, Clock>> {
protected:
    ManipulationPump() {
        if (std::get<Clock>(GetParam()) == Clock::Machine) {
            setSteadyClockSource(nullptr);
        }
        populate({{"/root/a", named("a")}, {"/root/b", named("b")}});
        delegate->cleanupIntervalMs = 0;
        delegate->lastCleanup = steadyNow();
        client(kPrimaryClient).isCurrent = [this](const std::string&, std::int64_t) {
            ++numberOfPasses;
            return false;
        };
        delegate->manipulationFreeze.manipulationCommitId = kEarlierCommit;
        begin();
        bridge.commitId = answer.commitId;
        // Something for each of the pump's steps: an event that waits, a live entry for the pass,
        // and a change that was made here.
        client(kPrimaryClient).report("/root/b", named("cooked"), {"x"});
        delegate->liveValues.liveAttributes["/root/a"].base = named("base");
        const char* path = "/root/a";
        delegate->hideLocations(&path, 1);
        log.take();
        runtime->takeCalls();
        plugin.events.clear();
        numberOfPasses = 0;
        delegate->processLocationEvents();
    }

    void begin() {
        delegate->setManipulationFreezePeriod(begun.periodMs);
        if (begun.state == FreezeState::Idle) {
            return;
        }
        const bool isFinal = begun.state != FreezeState::Manipulating;
        EXPECT_TRUE(delegate->setManipulatedAttribute("/root/a", "x", IntAttribute(1), isFinal));
        if (begun.state == FreezeState::WaitingForCommit) {
            bridge.commitId = -1;
            delegate->processLocationEvents();
        }
        ASSERT_EQ(delegate->manipulationFreeze.freezeState, begun.state);
    }

    [[nodiscard]] bool isIdleAfterwards() const { return stateAfterwards() == FreezeState::Idle; }
    [[nodiscard]] FreezeState stateAfterwards() const {
        return begun.asksForTheCommit ? answer.state : begun.state;
    }

    const Start begun = std::get<Start>(GetParam());
    const Answer answer = std::get<Answer>(GetParam());
    int numberOfPasses = 0;
};

TEST_P(ManipulationPump, movesTheFreeze) {
    EXPECT_EQ(delegate->manipulationFreeze.freezeState, stateAfterwards());
    EXPECT_EQ(delegate->isFrozenDueToManipulation(), !isIdleAfterwards());
    EXPECT_EQ(delegate->manipulationFreeze.manipulationCommitId,
              begun.asksForTheCommit ? answer.storedCommitId : kEarlierCommit);
    EXPECT_EQ(log.take("getManipulationCommitId").size(), begun.asksForTheCommit ? 1U : 0U);
}

TEST_P(ManipulationPump, fetchesEventsOnlyWhenIdle) {
    EXPECT_EQ(client(kPrimaryClient).getNumberOfWaitingEvents(), isIdleAfterwards() ? 0U : 1U);
    EXPECT_EQ(textOf(delegate->getAttributes("/root/b", 0)),
              isIdleAfterwards() ? "{name=\"cooked\"}" : "{name=\"b\"}");
}

TEST_P(ManipulationPump, looksForCurrentLiveValuesOnlyWhenIdle) {
    EXPECT_EQ(numberOfPasses, isIdleAfterwards() ? 1 : 0);
}

TEST_P(ManipulationPump, tellsPluginsWhatChangedHereInEveryState) {
    ASSERT_FALSE(plugin.events.empty());
    EXPECT_EQ(plugin.events[0].path, "/root/a");
    EXPECT_NE(plugin.events[0].flags & kVlLocationEventHiddenChanged, 0U);
}

TEST_P(ManipulationPump, tellsTheUserInterfaceOnlyWhenIdle) {
    EXPECT_EQ(log.take("__SELECTED_ENABLED_LOCATIONS_CHANGED").size(),
              isIdleAfterwards() ? 1U : 0U);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ManipulationPump,
    testing::Combine(testing::Values(kIdle, kManipulating, kSettling, kSettled, kWaiting),
                     testing::ValuesIn(kAnswers), testing::Values(Clock::Stopped, Clock::Machine)),
    [](const auto& row) {
        return std::string(std::get<Start>(row.param).name) + std::get<Answer>(row.param).name +
               (std::get<Clock>(row.param) == Clock::Stopped ? "StoppedClock" : "MachineClock");
    });

/// The freeze over several pumps, from a manipulator's value on.
class ManipulationFreezeRun : public DelegateTest {
protected:
    ManipulationFreezeRun() { populate({{"/root/a", named("a")}}); }

    void set(bool isFinal) {
        ASSERT_TRUE(delegate->setManipulatedAttribute("/root/a", "x", IntAttribute(++x), isFinal));
    }
    void pump() { delegate->processLocationEvents(); }
    [[nodiscard]] FreezeState state() const { return delegate->manipulationFreeze.freezeState; }

    int x = 0;
};

TEST_F(ManipulationFreezeRun, nothingLeavesManipulatingButAFinalValue) {
    bridge.commitId = 3;
    set(false);
    for (int i = 0; i < 10; ++i) {
        clock.advanceMs(kHourMs);
        delegate->setManipulationFreezePeriod(i);
        pump();
        delegate->freeze();
        delegate->thaw();
        delegate->flushCaches();
        ASSERT_EQ(state(), FreezeState::Manipulating);
    }
    EXPECT_THAT(log.take("getManipulationCommitId"), IsEmpty());
}

TEST_F(ManipulationFreezeRun, aPeriodOfZeroGoesThroughAllStatesInTheNextPump) {
    bridge.commitId = 3;
    delegate->setManipulationFreezePeriod(0);
    set(true);
    EXPECT_EQ(state(), FreezeState::Settling);
    FreezeState asked = FreezeState::Idle;
    bridge.onCall = [&](const std::string&) { asked = state(); };
    pump();
    EXPECT_EQ(asked, FreezeState::WaitingForCommit);
    EXPECT_EQ(state(), FreezeState::Idle);
}

TEST_F(ManipulationFreezeRun, withoutACommitIdTheViewerStaysFrozenForEver) {
    bridge.commitId = -1;
    set(true);
    client(kPrimaryClient).report("/root/a", named("cooked"), {"x"});
    for (int i = 0; i < 100; ++i) {
        clock.advanceMs(kHourMs);
        pump();
        ASSERT_TRUE(delegate->isFrozenDueToManipulation());
    }
    EXPECT_EQ(log.take("getManipulationCommitId").size(), 100U);
    EXPECT_EQ(client(kPrimaryClient).getNumberOfWaitingEvents(), 1U);
}

TEST_F(ManipulationFreezeRun, theFirstPumpAfterTheFreezeGetsAllThatWaited) {
    bridge.commitId = 3;
    set(false);
    for (int i = 0; i < 5; ++i) {
        client(kPrimaryClient).report("/root/a", named(std::to_string(i)), {"x"});
        pump();
    }
    plugin.events.clear();
    set(true);
    pump();
    EXPECT_EQ(textOf(delegate->getAttributes("/root/a", 0)), "{name=\"4\"}");
    EXPECT_EQ(client(kPrimaryClient).getNumberOfWaitingEvents(), 0U);
}

TEST_F(ManipulationFreezeRun, whileFrozenOnlyPluginsHear) {
    client(kPrimaryClient).isCurrent = [](const std::string&, std::int64_t) { return true; };
    client(kPrimaryClient).report("/root/a", named("cooked"), {"x"});
    delegate->openManipulationGroup("/root/a");
    set(false);
    clock.advanceMs(5000);
    log.take();
    pump();
    EXPECT_THAT(log.take(), ElementsAre("D locationEvent /root/a attributesChanged handled=0"));
    EXPECT_TRUE(delegate->getLiveAttributes("/root/a", 0).isValid());
    EXPECT_EQ(client(kPrimaryClient).getNumberOfWaitingEvents(), 1U);
}

TEST_F(ManipulationFreezeRun, aNewPeriodRestartsARunningClockInEveryState) {
    for (const FreezeState from : kFreezeStates) {
        ManipulationFreeze& freeze = delegate->manipulationFreeze;
        freeze.freezeState = from;
        freeze.freezeStart = clock.now;
        clock.advanceMs(20);
        delegate->setManipulationFreezePeriod(20);
        EXPECT_NE(freeze.freezeStart, clock.now) << "has run out";
        delegate->setManipulationFreezePeriod(21);
        EXPECT_EQ(freeze.freezeStart, clock.now);
        EXPECT_EQ(freeze.freezePeriodMs, 21);
        EXPECT_EQ(freeze.freezeState, from);
    }
}

TEST_F(ManipulationFreezeRun, aPeriodSetWhileSettlingCountsFromThen) {
    delegate->setManipulationFreezePeriod(50);
    set(true);
    clock.advanceMs(40);
    delegate->setManipulationFreezePeriod(50);
    clock.advanceMs(49);
    pump();
    EXPECT_EQ(state(), FreezeState::Settling);
    clock.advanceMs(1);
    pump();
    EXPECT_EQ(state(), FreezeState::Idle);
}

TEST_F(ManipulationFreezeRun, aFailureUnfreezesWithoutStoring) {
    bridge.commitId = 6;
    set(true);
    pump();
    bridge.commitId = -2;
    set(true);
    pump();
    EXPECT_EQ(state(), FreezeState::Idle);
    EXPECT_EQ(delegate->manipulationFreeze.manipulationCommitId, 6);
}

TEST_F(ManipulationFreezeRun, aValueSetWhileTheCommitIsAskedForHolds) {
    bridge.commitId = 3;
    set(true);
    bridge.onCall = [this](const std::string& line) {
        if (line == "getManipulationCommitId") {
            set(false);
        }
    };
    client(kPrimaryClient).report("/root/a", named("stale"), {"x"});
    pump();
    EXPECT_EQ(state(), FreezeState::Manipulating);
    EXPECT_EQ(client(kPrimaryClient).getNumberOfWaitingEvents(), 1U);
}

TEST_F(ManipulationFreezeRun, aPumpWhileTheCommitIsAskedForAsksAgain) {
    bridge.commitId = -1;
    set(true);
    client(kPrimaryClient).report("/root/a", named("cooked"), {"x"});
    bridge.onCall = [&, isDone = false](const std::string& line) mutable {
        if (line == "getManipulationCommitId" && !std::exchange(isDone, true)) {
            pump();
            bridge.commitId = 8;
        }
    };
    log.take();
    pump();
    EXPECT_EQ(log.take("getManipulationCommitId").size(), 2U);
    EXPECT_EQ(state(), FreezeState::Idle);
    EXPECT_EQ(textOf(delegate->getAttributes("/root/a", 0)), "{name=\"cooked\"}");
}

} // namespace
} // namespace ViewerAPI::test
