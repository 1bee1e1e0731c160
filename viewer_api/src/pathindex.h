#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace ViewerAPI {

/// A hash table from path to node that keeps no copy of the path and allocates nothing per node:
/// the nodes stand in one array, each beside its hash, so that a look-up touches one place of the
/// array, and of the nodes mostly none but the one that it finds. Does not own the nodes.
///
/// A node offers `path`, convertible to std::string_view and constant while the node is here.
template <class Node>
class PathIndex {
public:
    PathIndex() : slots_(kInitialSlots) {}

    [[nodiscard]] std::size_t size() const noexcept { return size_; }

    /// Null when there is none.
    [[nodiscard]] Node* find(std::string_view path) const noexcept {
        const std::uint32_t hash = hashOf(path);
        for (std::size_t i = hash & mask(); slots_[i].node; i = (i + 1) & mask()) {
            if (slots_[i].hash == hash && std::string_view(slots_[i].node->path) == path) {
                return slots_[i].node;
            }
        }
        return nullptr;
    }

    /// The path must not be in the index.
    void insert(Node* node) {
        if ((size_ + 1) * 4 > slots_.size() * 3) {
            grow();
        }
        put({node, hashOf(node->path)});
        ++size_;
    }

    /// The node must be in the index.
    void erase(Node* node) noexcept {
        std::size_t gap = hashOf(node->path) & mask();
        while (slots_[gap].node != node) {
            gap = (gap + 1) & mask();
        }
        // What stands behind moves up, unless that would take it before its own place.
        for (std::size_t i = (gap + 1) & mask(); slots_[i].node; i = (i + 1) & mask()) {
            const std::size_t distanceFromHome = (i - slots_[i].hash) & mask();
            if (distanceFromHome >= ((i - gap) & mask())) {
                slots_[gap] = slots_[i];
                gap = i;
            }
        }
        slots_[gap].node = nullptr;
        --size_;
    }

private:
    struct Slot {
        Node* node = nullptr;
        std::uint32_t hash = 0; ///< enough to tell as many nodes apart as there will ever be
    };

    static constexpr std::size_t kInitialSlots = 16; // a power of two, as every later count

    static std::uint32_t hashOf(std::string_view path) noexcept {
        return static_cast<std::uint32_t>(std::hash<std::string_view>{}(path));
    }

    [[nodiscard]] std::size_t mask() const noexcept { return slots_.size() - 1; }

    void put(Slot slot) noexcept {
        std::size_t i = slot.hash & mask();
        while (slots_[i].node) {
            i = (i + 1) & mask();
        }
        slots_[i] = slot;
    }

    void grow() {
        std::vector<Slot> fewer(slots_.size() * 2);
        fewer.swap(slots_);
        for (const Slot& slot : fewer) {
            if (slot.node) {
                put(slot);
            }
        }
    }

    std::vector<Slot> slots_;
    std::size_t size_ = 0;
};

} // namespace ViewerAPI
