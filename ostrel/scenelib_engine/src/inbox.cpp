#include "inbox.h"

#include "oprecord.h"

#include <algorithm>
#include <utility>

namespace VlScenelibEngine {

namespace {

bool replaces(const GraphCommit& commit, const GraphCommit& before) {
    const auto setsArgsAlone = [](const GraphCommit& each) {
        return each.edits.size() == 1 && each.edits.front().kind == GraphEdit::Kind::Args;
    };
    return setsArgsAlone(commit) && setsArgsAlone(before) &&
           commit.edits.front().op == before.edits.front().op;
}

} // namespace

template <typename Change>
void Inbox::post(Change&& change) {
    {
        const std::lock_guard lock(mutex);
        change();
        idle = false;
        waiting.store(true, std::memory_order_release);
    }
    // Not with the lock held, for which the coordinator would have to sleep again.
    arrived.notify_one();
}

void Inbox::postCommit(GraphCommit commit) {
    post([&] {
        newestCommit = commit.id;
        if (!letters.commits.empty() && replaces(commit, letters.commits.back())) {
            letters.commits.back() = std::move(commit);
        } else {
            letters.commits.push_back(std::move(commit));
        }
    });
}

void Inbox::postReleasedOp(int opId) {
    post([&] { letters.releasedOps.push_back(opId); });
}

void Inbox::postFlush() {
    post([&] { letters.isFlush = true; });
}

void Inbox::postArrival() {
    post([&] { letters.isArrival = true; });
}

void Inbox::postStop() {
    post([&] { letters.isStop = true; });
}

void Inbox::poke() {
    post([] {});
}

Inbox::Letters Inbox::take(Activity activity) {
    std::unique_lock lock(mutex);
    if (activity != Activity::Working && !waiting.load(std::memory_order_relaxed)) {
        if (activity == Activity::Idle) {
            idle = true;
            becameIdle.notify_all();
        }
        arrived.wait(lock, [&] { return waiting.load(std::memory_order_relaxed); });
    }
    waiting.store(false, std::memory_order_relaxed);
    return std::exchange(letters, {});
}

bool Inbox::isIdle() const {
    const std::lock_guard lock(mutex);
    return idle;
}

bool Inbox::waitUntilIdle(std::chrono::duration<double> timeout) const {
    // So long a time that it can be added to any clock's reading.
    constexpr std::chrono::duration<double> kLongest = std::chrono::hours(24 * 365);
    const auto wait = std::chrono::duration_cast<std::chrono::steady_clock::duration>(
        std::clamp(timeout, std::chrono::duration<double>::zero(), kLongest));
    std::unique_lock lock(mutex);
    return becameIdle.wait_for(lock, wait, [&] { return idle; });
}

std::int64_t Inbox::getNewestCommit() const {
    const std::lock_guard lock(mutex);
    return newestCommit;
}

} // namespace VlScenelibEngine
