#include "matrixcache.h"

#include <bit>

namespace VlScenelib {

MatrixCache::Entry& MatrixCache::slot(const VlAttribute::GroupAttribute& xform,
                                      float time) noexcept {
    // Allocations are 16-byte aligned at least; the multiplication mixes the rest upwards.
    std::uint64_t key = reinterpret_cast<std::uintptr_t>(xform.getHandle()) >> 4;
    key = (key + std::bit_cast<std::uint32_t>(time)) * 0x9E3779B97F4A7C15ULL;
    return entries[(key >> 32) % kSlots];
}

bool MatrixCache::holds(const Entry& entry, const VlAttribute::GroupAttribute& xform,
                        float time) noexcept {
    return entry.xform.getHandle() == xform.getHandle() && entry.time == time;
}

} // namespace VlScenelib
