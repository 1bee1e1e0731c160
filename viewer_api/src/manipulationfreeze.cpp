#include "manipulationfreeze.h"

#include "manipulatorbridge.h"
#include "steadyclock.h"

namespace ViewerAPI {
namespace {

constexpr std::int32_t kNotCommittedYet = -1;

} // namespace

void ManipulationFreeze::onValueSet(bool isFinal) {
    if (isFinal) {
        freezeStart = steadyNow();
        freezeState = FreezeState::Settling;
    } else {
        freezeState = FreezeState::Manipulating;
    }
}

void ManipulationFreeze::update(ManipulatorBridge& bridge) {
    if (freezeState == FreezeState::Settling) {
        if (elapsedMs(freezeStart, steadyNow()) < freezePeriodMs) {
            return;
        }
        freezeState = FreezeState::WaitingForCommit;
    }
    if (freezeState != FreezeState::WaitingForCommit) {
        return;
    }
    const std::int32_t commitId = bridge.getManipulationCommitId();
    if (commitId == kNotCommittedYet) {
        return;
    }
    // Other negative answers stand for a failure in the application: nothing to wait for, and
    // nothing to learn.
    if (commitId >= 0) {
        manipulationCommitId = commitId;
    }
    // A drag that began while the application was asked is not what it answered about.
    if (freezeState == FreezeState::WaitingForCommit) {
        freezeState = FreezeState::Idle;
    }
}

void ManipulationFreeze::setPeriod(std::int64_t periodMs) {
    freezePeriodMs = periodMs;
    const std::int64_t now = steadyNow();
    if (elapsedMs(freezeStart, now) < periodMs) {
        freezeStart = now;
    }
}

} // namespace ViewerAPI
