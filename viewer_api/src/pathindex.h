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
/// The places are in the order of the hashes, so that growing by half is one walk through old and
/// new array side by side.
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
        for (std::size_t i = homeOf(hash); slots_[i].node; i = after(i)) {
            if (slots_[i].hash == hash && std::string_view(slots_[i].node->path) == path) {
                return slots_[i].node;
            }
        }
        return nullptr;
    }

    /// To be called some look-ups ahead: what a look-up waits for is the memory of its place.
    void expect(std::string_view path) const noexcept {
        __builtin_prefetch(&slots_[homeOf(hashOf(path))]);
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
        std::size_t gap = homeOf(hashOf(node->path));
        while (slots_[gap].node != node) {
            gap = after(gap);
        }
        // What stands behind moves up, unless that would take it before its own place.
        for (std::size_t i = after(gap); slots_[i].node; i = after(i)) {
            if (distance(homeOf(slots_[i].hash), i) >= distance(gap, i)) {
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

    static constexpr std::size_t kInitialSlots = 16;

    static std::uint32_t hashOf(std::string_view path) noexcept {
        return static_cast<std::uint32_t>(std::hash<std::string_view>{}(path));
    }

    [[nodiscard]] std::size_t homeOf(std::uint32_t hash) const noexcept {
        return static_cast<std::size_t>((std::uint64_t{hash} * slots_.size()) >> 32U);
    }
    [[nodiscard]] std::size_t after(std::size_t i) const noexcept {
        return i + 1 == slots_.size() ? 0 : i + 1;
    }
    /// How many steps `to` lies behind `from`.
    [[nodiscard]] std::size_t distance(std::size_t from, std::size_t to) const noexcept {
        return from <= to ? to - from : to + slots_.size() - from;
    }

    void put(Slot slot) noexcept {
        std::size_t i = homeOf(slot.hash);
        while (slots_[i].node) {
            i = after(i);
        }
        slots_[i] = slot;
    }

    void grow() {
        std::vector<Slot> fewer(slots_.size() + slots_.size() / 2);
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
