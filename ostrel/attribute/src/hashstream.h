#pragma once

#include "VlAttribute/Hash.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <span>
#include <type_traits>

#define XXH_STATIC_LINKING_ONLY // the state as a local, without an allocation
#include <xxhash.h>

namespace VlAttribute {

/// The bits under which a number is hashed: numbers that compare equal give the same, and so do
/// all that are not a number.
template <typename T>
[[nodiscard]] T canonicalNumber(T value) noexcept {
    if constexpr (std::is_floating_point_v<T>) {
        // Adding 0.0 turns -0.0 into 0.0 and leaves everything else alone.
        return std::isnan(value) ? std::numeric_limits<T>::quiet_NaN() : value + T{0};
    } else {
        return value;
    }
}

/// XXH3, 128 bits, over a sequence of pieces. The result depends on their concatenation only.
class HashStream {
public:
    HashStream() noexcept {} // NOLINT(modernize-use-equals-default): the buffer stays unset
    HashStream(const HashStream&) = delete;
    HashStream& operator=(const HashStream&) = delete;

    void append(const void* data, std::size_t size) noexcept {
        if (size > buffer.size() - used) {
            flush();
            if (size > buffer.size()) {
                XXH3_128bits_update(&state, data, size);
                return;
            }
        }
        if (size != 0) {
            std::memcpy(buffer.data() + used, data, size);
            used += size;
        }
    }

    template <typename T>
    void appendValue(const T& value) noexcept {
        static_assert(std::has_unique_object_representations_v<T>);
        append(&value, sizeof value);
    }

    template <typename T>
    void appendNumbers(std::span<const T> numbers) noexcept {
        if constexpr (std::is_floating_point_v<T>) {
            std::array<T, 64> canonical;
            while (!numbers.empty()) {
                const std::size_t count = std::min(numbers.size(), canonical.size());
                for (std::size_t i = 0; i < count; ++i) {
                    canonical[i] = canonicalNumber(numbers[i]);
                }
                append(canonical.data(), count * sizeof(T));
                numbers = numbers.subspan(count);
            }
        } else {
            append(numbers.data(), numbers.size_bytes());
        }
    }

    [[nodiscard]] Hash finish() noexcept;

private:
    void flush() noexcept;

    XXH3_state_t state;
    std::array<std::byte, 1024> buffer;
    std::size_t used = 0;
    bool isStreaming = false;
};

} // namespace VlAttribute
