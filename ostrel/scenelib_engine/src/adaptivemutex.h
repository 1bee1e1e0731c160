#pragma once

#include <pthread.h>

namespace VlScenelibEngine {

/// A mutex for what is held for moments: who finds it locked looks again for a while before
/// sleeping, since being woken on another core takes longer than most of what is done under it.
/// Meets the standard library's Lockable. [any-thread]
class AdaptiveMutex {
public:
    AdaptiveMutex() = default;
    ~AdaptiveMutex() { pthread_mutex_destroy(&mutex); }
    AdaptiveMutex(const AdaptiveMutex&) = delete;
    AdaptiveMutex& operator=(const AdaptiveMutex&) = delete;

    void lock() noexcept { pthread_mutex_lock(&mutex); }
    [[nodiscard]] bool try_lock() noexcept { return pthread_mutex_trylock(&mutex) == 0; }
    void unlock() noexcept { pthread_mutex_unlock(&mutex); }

private:
    pthread_mutex_t mutex = PTHREAD_ADAPTIVE_MUTEX_INITIALIZER_NP;
};

} // namespace VlScenelibEngine
