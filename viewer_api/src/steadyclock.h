#pragma once

#include <cstdint>

namespace ViewerAPI {

/// The one time base of the viewer: monotonic nanoseconds since an arbitrary start. Only
/// differences mean anything. [any-thread]
[[nodiscard]] std::int64_t steadyNow();

/// Where steadyNow() reads from.
using SteadyClockSource = std::int64_t (*)();

/// Replaces the clock, so that time can be told instead of waited for; null restores the
/// machine's. [ui-thread]
void setSteadyClockSource(SteadyClockSource source);

/// Whole milliseconds from `start` to `now`, both in nanoseconds; every interval is compared in
/// this unit, so an interval of 999,999 ns counts as 0.
[[nodiscard]] constexpr std::int64_t elapsedMs(std::int64_t start, std::int64_t now) noexcept {
    return (now - start) / 1000000;
}

} // namespace ViewerAPI
