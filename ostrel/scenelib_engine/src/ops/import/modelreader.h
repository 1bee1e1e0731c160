#pragma once

#include "ops/import/importprocess.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <unistd.h>
#include <vector>

namespace VlScenelibEngine {

/// The threads on which models are read, as many as the machine runs at once. They mostly wait for
/// processes, so they are none of those that cook. [any-thread]
class ModelReader {
public:
    /// Never destroyed; the threads end with the process that asked first. One that it forks off
    /// has none.
    [[nodiscard]] static ModelReader& get();

    /// Has `read`, which waits for `process`, called on a thread, in the order of the calls. It
    /// must not throw.
    void run(std::function<void()> read, std::shared_ptr<ImportProcess> process);

private:
    struct Task {
        std::function<void()> read;
        std::shared_ptr<ImportProcess> process;
    };

    void work();
    void stop();

    const pid_t owner = getpid();
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Task> waiting;
    std::vector<std::shared_ptr<ImportProcess>> underWay;
    std::size_t numberOfIdle = 0;
    bool isStopped = false;
    std::vector<std::thread> threads;
};

} // namespace VlScenelibEngine
