#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <thread>

/// Waits until a condition holds that other threads or processes bring about. Fails the test after
/// a minute.
inline void until(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!condition()) {
        ASSERT_LT(std::chrono::steady_clock::now(), deadline);
        std::this_thread::yield();
    }
}
