#pragma once

#include "graphedit.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <vector>

namespace VlScenelibEngine {

/// What the coordinator is told by other threads, and where they learn whether it is done.
/// [any-thread]
class Inbox {
public:
    struct Letters {
        std::vector<GraphCommit> commits;
        std::vector<int> releasedOps;
        bool isFlush = false;
        bool isArrival = false;
        bool isStop = false;
    };

    /// Of commits that do nothing but set one op's arguments, and come while the last one waits, as
    /// in a drag, only the newest is kept.
    void postCommit(GraphCommit commit);
    void postReleasedOp(int opId);
    void postFlush();
    /// Something is there that cooks wait for.
    void postArrival();
    void postStop();
    /// Something that the coordinator finds by itself has changed.
    void poke();

    /// Whether letters wait: long work is to be interrupted.
    [[nodiscard]] bool hasLetters() const noexcept {
        return waiting.load(std::memory_order_acquire);
    }
    enum class Activity {
        Working, ///< there is more to do
        Waiting, ///< for what cooks wait for
        Idle,
    };
    /// For the coordinator: takes what waits. If nothing does, and the caller has nothing to do
    /// either, waits until something comes.
    [[nodiscard]] Letters take(Activity activity);

    [[nodiscard]] bool isIdle() const;
    /// False when it takes longer.
    [[nodiscard]] bool waitUntilIdle(std::chrono::duration<double> timeout) const;
    /// The newest commit posted; 0 when there is none.
    [[nodiscard]] std::int64_t getNewestCommit() const;

private:
    template <typename Change>
    void post(Change&& change);

    mutable std::mutex mutex;
    std::condition_variable arrived;
    mutable std::condition_variable becameIdle;
    Letters letters;
    std::atomic<bool> waiting{false};
    bool idle = false;
    std::int64_t newestCommit = 0;
};

} // namespace VlScenelibEngine
