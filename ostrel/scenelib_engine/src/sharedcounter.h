#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace VlScenelibEngine {

/// A count to which many threads add without meeting at one place in memory. [any-thread]
class SharedCounter {
public:
    void increment() noexcept {
        static std::atomic<std::size_t> numberOfThreads{0};
        thread_local const std::size_t place = numberOfThreads++ % kPlaces;
        shares[place].value.fetch_add(1, std::memory_order_relaxed);
    }
    [[nodiscard]] std::uint64_t get() const noexcept {
        std::uint64_t sum = 0;
        for (const Share& share : shares) {
            sum += share.value.load(std::memory_order_relaxed);
        }
        return sum;
    }

private:
    static constexpr std::size_t kPlaces = 16;
    static constexpr std::size_t kCacheLine = 64;

    struct alignas(kCacheLine) Share {
        std::atomic<std::uint64_t> value{0};
    };
    std::array<Share, kPlaces> shares;
};

} // namespace VlScenelibEngine
