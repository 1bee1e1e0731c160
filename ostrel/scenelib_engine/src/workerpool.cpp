// The only source that sees the scheduler: its library isn't built with the thread sanitizer, so
// under that this source isn't either.
#include "workerpool.h"

#include <oneapi/tbb/global_control.h>
#include <oneapi/tbb/parallel_for.h>
#include <oneapi/tbb/task_arena.h>

#include <optional>

namespace VlScenelibEngine {

class WorkerPool::Impl {
public:
    explicit Impl(int workers) : arena(workers > 0 ? workers : tbb::task_arena::automatic) {
        // More than the machine runs at once must be allowed.
        const auto most = tbb::global_control::max_allowed_parallelism;
        if (workers > 0 &&
            static_cast<std::size_t>(workers) > tbb::global_control::active_value(most)) {
            allowance.emplace(most, static_cast<std::size_t>(workers));
        }
    }

    std::optional<tbb::global_control> allowance;
    tbb::task_arena arena;
};

WorkerPool::WorkerPool(int workers)
    : impl(std::make_unique<Impl>(workers)),
      workerCount(static_cast<std::size_t>(impl->arena.max_concurrency())) {}

WorkerPool::~WorkerPool() = default;

void WorkerPool::run(std::size_t count, void (*callBody)(void*, std::size_t), void* context) {
    impl->arena.execute([&] {
        tbb::parallel_for(std::size_t{0}, count, [&](std::size_t i) {
            // A cook that waits for parallel work of its own must not take up another cook
            // meanwhile, which might wait for it.
            tbb::this_task_arena::isolate([&] { callBody(context, i); });
        });
    });
}

} // namespace VlScenelibEngine
