#include "allocationcounter.h"

#include <cstdlib>
#include <new>

namespace {
thread_local int count = 0;
} // namespace

int allocationCount() noexcept {
    return count;
}

// The test program's own operators. They stand apart from their users, so that the compiler can't
// inline the one without the other and then warn of a mismatch.
void* operator new(std::size_t size) {
    ++count;
    if (void* memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}
// The library's own would come to the above; a sanitizer's would not, and be freed below.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    ++count;
    return std::malloc(size == 0 ? 1 : size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
