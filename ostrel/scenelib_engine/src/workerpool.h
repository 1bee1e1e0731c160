#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <type_traits>

namespace VlScenelibEngine {

/// The threads that cook. They are shared by the whole process; a pool only says how many of them
/// work for it at once.
class WorkerPool {
public:
    /// With 0 workers, as many as the machine runs threads at once. The caller is one of them.
    explicit WorkerPool(int workers);
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    [[nodiscard]] std::size_t getNumberOfWorkers() const noexcept { return workerCount; }

    /// Calls body(0) to body(count - 1), each once, in no order, several at a time, and returns
    /// when all have returned. A body must not throw.
    template <typename Body>
    void forEach(std::size_t count, Body&& body) {
        if (count == 1) {
            body(std::size_t{0});
            return;
        }
        Job<std::remove_reference_t<Body>> job{body};
        job.isPublished.store(true, std::memory_order_release);
        run(count, Job<std::remove_reference_t<Body>>::callBody, &job);
        // All that the bodies did has happened before what follows.
        static_cast<void>(job.numberDone.load(std::memory_order_acquire));
    }

private:
    /// What the threads share of one forEach(). Its atomics order the bodies after what came before
    /// the call and before what comes after it, whatever the scheduler does for that.
    template <typename Body>
    struct Job {
        Body& body;
        std::atomic<bool> isPublished{false};
        std::atomic<std::size_t> numberDone{0};

        static void callBody(void* context, std::size_t i) {
            auto& job = *static_cast<Job*>(context);
            static_cast<void>(job.isPublished.load(std::memory_order_acquire));
            job.body(i);
            job.numberDone.fetch_add(1, std::memory_order_release);
        }
    };

    void run(std::size_t count, void (*callBody)(void*, std::size_t), void* context);

    class Impl;
    std::unique_ptr<Impl> impl;
    std::size_t workerCount;
};

} // namespace VlScenelibEngine
