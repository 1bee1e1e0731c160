#pragma once

#include <cstdint>

namespace ViewerAPI {

class ManipulatorBridge;

enum class FreezeState : std::uint32_t {
    Idle = 0,             ///< events flow
    Manipulating = 1,     ///< a non-final value arrived: events are held
    Settling = 2,         ///< a final value arrived: the freeze period runs
    WaitingForCommit = 3, ///< the period is over, the application has no commit id yet
};

/// Holds scene updates back while a manipulator drags, so that data cooked before its values can't
/// overwrite them. Only a final value leads out of Manipulating, and only the application's answer
/// out of WaitingForCommit: there is no timeout. [ui-thread]
class ManipulationFreeze {
public:
    /// A manipulated value has been set.
    void onValueSet(bool isFinal);

    /// One step at the start of every pump. Asks the bridge for the commit id once the period that
    /// follows a final value is over.
    void update(ManipulatorBridge& bridge);

    /// How long events are held after a final value, in milliseconds. A clock that still runs by
    /// the new period is started again, in every state.
    void setPeriod(std::int64_t periodMs);

    [[nodiscard]] bool isFrozen() const noexcept { return freezeState != FreezeState::Idle; }

    FreezeState freezeState = FreezeState::Idle;
    std::int64_t freezePeriodMs = 0;
    std::int64_t freezeStart = 0; ///< nanoseconds of steadyNow
    /// The last commit that manipulated values ended in: data that reflects it supersedes them.
    std::int32_t manipulationCommitId = 0;
};

} // namespace ViewerAPI
