#include "steadyclock.h"

#include <boost/chrono/chrono.hpp>
#include <boost/chrono/system_clocks.hpp>

#include <atomic>

namespace ViewerAPI {
namespace {

std::int64_t machineClock() {
    using boost::chrono::nanoseconds;
    return boost::chrono::duration_cast<nanoseconds>(
               boost::chrono::steady_clock::now().time_since_epoch())
        .count();
}

std::atomic<SteadyClockSource> clockSource{&machineClock};

} // namespace

std::int64_t steadyNow() {
    return clockSource.load(std::memory_order_relaxed)();
}

void setSteadyClockSource(SteadyClockSource source) {
    clockSource.store(source ? source : &machineClock, std::memory_order_relaxed);
}

} // namespace ViewerAPI
