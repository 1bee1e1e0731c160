#include "hashstream.h"

namespace VlAttribute {

void HashStream::flush() noexcept {
    if (!isStreaming) {
        XXH3_128bits_reset(&state);
        isStreaming = true;
    }
    XXH3_128bits_update(&state, buffer.data(), used);
    used = 0;
}

Hash HashStream::finish() noexcept {
    XXH128_hash_t result;
    if (isStreaming) {
        flush();
        result = XXH3_128bits_digest(&state);
    } else {
        result = XXH3_128bits(buffer.data(), used);
    }
    return Hash{result.high64, result.low64};
}

} // namespace VlAttribute
