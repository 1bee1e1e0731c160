#include "ops/import/modelreader.h"

#include <algorithm>
#include <utility>

namespace VlScenelibEngine {

ModelReader& ModelReader::get() {
    static ModelReader& reader = []() -> ModelReader& {
        auto* made = new ModelReader;
        // Before the libraries that the threads run in are taken down.
        std::atexit([] { get().stop(); });
        return *made;
    }();
    return reader;
}

void ModelReader::run(std::function<void()> read, std::shared_ptr<ImportProcess> process) {
    const std::size_t most = std::max(2U, std::thread::hardware_concurrency());
    const std::lock_guard lock(mutex);
    if (isStopped) {
        return;
    }
    waiting.push_back({std::move(read), std::move(process)});
    if (numberOfIdle < waiting.size() && threads.size() < most) {
        threads.emplace_back([this] { work(); });
    }
    changed.notify_one();
}

void ModelReader::work() {
    std::unique_lock lock(mutex);
    for (;;) {
        ++numberOfIdle;
        changed.wait(lock, [this] { return isStopped || !waiting.empty(); });
        --numberOfIdle;
        if (isStopped) {
            return;
        }
        Task task = std::move(waiting.front());
        waiting.pop_front();
        underWay.push_back(task.process);
        lock.unlock();
        task.read();
        // Not with the lock held: it may be the last to know a model.
        task.read = nullptr;
        lock.lock();
        underWay.erase(std::ranges::find(underWay, task.process));
    }
}

void ModelReader::stop() {
    // A process that was forked off has none of the threads, may have the mutex locked, and would
    // cancel what the first one reads.
    if (getpid() != owner) {
        return;
    }
    {
        const std::lock_guard lock(mutex);
        isStopped = true;
        for (const std::shared_ptr<ImportProcess>& process : underWay) {
            process->cancel();
        }
    }
    changed.notify_all();
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace VlScenelibEngine
