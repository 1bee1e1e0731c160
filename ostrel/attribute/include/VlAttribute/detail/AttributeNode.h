#pragma once

#include "VlAttribute/AttributeType.h"
#include "VlAttribute/Hash.h"

#include <atomic>
#include <cstdint>

/// The head of every attribute value. What follows it in the same allocation is private to the
/// library; this much is public only so that copying a handle is an inlined increment.
///
/// A node is immutable once it has been handed out, except for its reference count and its hash,
/// which is computed when first asked for. Both may be touched by any number of threads.
struct VlAttributeStruct {
    std::atomic<std::uint32_t> refCount{1};
    const VlAttribute::AttributeType type;
    std::atomic<std::uint8_t> hashState{
        0}; ///< 0: none, 1: a thread computes it, 2: `hash` is final
    std::uint16_t flags = 0;
    VlAttribute::Hash hash{};

    explicit VlAttributeStruct(VlAttribute::AttributeType nodeType) noexcept : type(nodeType) {}
    VlAttributeStruct(const VlAttributeStruct&) = delete;
    VlAttributeStruct& operator=(const VlAttributeStruct&) = delete;
};

namespace VlAttribute::detail {

/// Frees a node that nobody refers to any more, and gives up its references to its children.
void destroyNode(VlAttributeStruct* node) noexcept;

inline void retainNode(VlAttributeStruct* node) noexcept {
    if (node) {
        node->refCount.fetch_add(1, std::memory_order_relaxed);
    }
}

inline void releaseNode(VlAttributeStruct* node) noexcept {
    // The sole owner needs no read-modify-write: nobody else can take a reference meanwhile.
    if (node && (node->refCount.load(std::memory_order_acquire) == 1 ||
                 node->refCount.fetch_sub(1, std::memory_order_acq_rel) == 1)) {
        destroyNode(node);
    }
}

} // namespace VlAttribute::detail
