#include "manipulationfreeze.h"

#include "support/delegatetest.h"

#include <gtest/gtest.h>

namespace ViewerAPI {
namespace {

class ManipulationFreezeTest : public testing::Test {
protected:
    void update() { freeze.update(*bridge); }

    test::PluginLog log;
    test::StoppedClock clock;
    test::RecordingBridge recorder{log};
    std::unique_ptr<ManipulatorBridge> bridge = createManipulatorBridge();
    ManipulationFreeze freeze;
};

using Lines = std::vector<std::string>;
const Lines kAskedOnce{"bridge getManipulationCommitId"};

TEST(SteadyClock, countsWholeMilliseconds) {
    EXPECT_EQ(elapsedMs(0, 999'999), 0);
    EXPECT_EQ(elapsedMs(0, 1'000'000), 1);
    EXPECT_EQ(elapsedMs(5'000'000, 8'999'999), 3);
}

TEST(SteadyClock, neverGoesBack) {
    const std::int64_t first = steadyNow();
    EXPECT_LE(first, steadyNow());
}

TEST_F(ManipulationFreezeTest, isIdleAtFirstAndAsksNothing) {
    update();
    EXPECT_FALSE(freeze.isFrozen());
    EXPECT_TRUE(log.take().empty());
}

TEST_F(ManipulationFreezeTest, holdsFromTheFirstNonFinalValueUntilAFinalOne) {
    freeze.onValueSet(false);
    clock.advanceMs(100'000);
    update();
    EXPECT_EQ(freeze.freezeState, FreezeState::Manipulating);
    EXPECT_TRUE(log.take().empty());
}

TEST_F(ManipulationFreezeTest, withoutAPeriodAsksForTheCommitInTheSameUpdate) {
    recorder.commitId = 4;
    freeze.onValueSet(true);
    EXPECT_EQ(freeze.freezeState, FreezeState::Settling);
    update();
    EXPECT_EQ(freeze.freezeState, FreezeState::Idle);
    EXPECT_EQ(freeze.manipulationCommitId, 4);
    EXPECT_EQ(log.take(), kAskedOnce);
}

TEST_F(ManipulationFreezeTest, waitsForTheWholePeriodAfterAFinalValue) {
    freeze.setPeriod(50);
    freeze.onValueSet(true);
    clock.advanceMs(49);
    clock.advanceNs(999'999);
    update();
    EXPECT_EQ(freeze.freezeState, FreezeState::Settling);
    EXPECT_TRUE(log.take().empty());
    clock.advanceNs(1);
    update();
    EXPECT_EQ(freeze.freezeState, FreezeState::Idle);
}

TEST_F(ManipulationFreezeTest, staysForEverWhileThereIsNoCommitId) {
    recorder.commitId = -1;
    freeze.onValueSet(true);
    for (int pump = 0; pump < 100; ++pump) {
        clock.advanceMs(10'000);
        update();
        ASSERT_EQ(freeze.freezeState, FreezeState::WaitingForCommit);
    }
    EXPECT_EQ(log.take().size(), 100U);
    recorder.commitId = 0;
    update();
    EXPECT_FALSE(freeze.isFrozen());
}

TEST_F(ManipulationFreezeTest, aCommitIdOfZeroEndsItAndIsStored) {
    freeze.manipulationCommitId = 9;
    recorder.commitId = 0;
    freeze.onValueSet(true);
    update();
    EXPECT_FALSE(freeze.isFrozen());
    EXPECT_EQ(freeze.manipulationCommitId, 0);
}

TEST_F(ManipulationFreezeTest, aFailureEndsItAndLeavesTheCommitIdAlone) {
    freeze.manipulationCommitId = 9;
    recorder.commitId = -2;
    freeze.onValueSet(true);
    update();
    EXPECT_FALSE(freeze.isFrozen());
    EXPECT_EQ(freeze.manipulationCommitId, 9);
}

TEST_F(ManipulationFreezeTest, aDragThatBeginsWhileTheCommitIsAskedForHolds) {
    recorder.commitId = 4;
    recorder.onCall = [this](const std::string&) { freeze.onValueSet(false); };
    freeze.onValueSet(true);
    update();
    EXPECT_EQ(freeze.freezeState, FreezeState::Manipulating);
    EXPECT_EQ(freeze.manipulationCommitId, 4);
}

TEST_F(ManipulationFreezeTest, aNewDragDuringThePeriodHoldsAgain) {
    freeze.setPeriod(50);
    freeze.onValueSet(true);
    freeze.onValueSet(false);
    clock.advanceMs(60);
    update();
    EXPECT_EQ(freeze.freezeState, FreezeState::Manipulating);
}

TEST_F(ManipulationFreezeTest, aNewPeriodRestartsAClockThatStillRunsByIt) {
    freeze.setPeriod(50);
    freeze.onValueSet(true);
    clock.advanceMs(40);
    freeze.setPeriod(45);
    clock.advanceMs(40);
    update();
    EXPECT_EQ(freeze.freezeState, FreezeState::Settling);
    clock.advanceMs(5);
    update();
    EXPECT_EQ(freeze.freezeState, FreezeState::Idle);
}

TEST_F(ManipulationFreezeTest, aNewPeriodLeavesAClockThatHasRunOutAlone) {
    freeze.onValueSet(true);
    const std::int64_t start = freeze.freezeStart;
    clock.advanceMs(40);
    freeze.setPeriod(40);
    EXPECT_EQ(freeze.freezeStart, start);
    update();
    EXPECT_EQ(freeze.freezeState, FreezeState::Idle);
}

TEST_F(ManipulationFreezeTest, aNewPeriodRestartsTheClockInEveryState) {
    freeze.freezeStart = clock.now;
    clock.advanceMs(10);
    freeze.setPeriod(20);
    EXPECT_EQ(freeze.freezeState, FreezeState::Idle);
    EXPECT_EQ(freeze.freezeStart, clock.now);
}

} // namespace
} // namespace ViewerAPI
