#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <utility>

namespace ViewerAPI {

/// A growing list of pointers to nodes, one pointer wide while empty. A scene's locations are
/// mostly leaves, and there are millions of them: two vectors would cost each of them 48 bytes for
/// nothing. Does not own the nodes.
template <class Node>
class NodeList {
public:
    NodeList() noexcept = default;
    ~NodeList() { ::operator delete(block_); }
    NodeList(const NodeList&) = delete;
    NodeList& operator=(const NodeList&) = delete;

    [[nodiscard]] std::size_t size() const noexcept { return block_ ? block_->size : 0; }
    [[nodiscard]] bool empty() const noexcept { return size() == 0; }
    [[nodiscard]] Node* const* begin() const noexcept { return block_ ? items() : nullptr; }
    [[nodiscard]] Node* const* end() const noexcept { return block_ ? items() + size() : nullptr; }
    [[nodiscard]] Node* operator[](std::size_t index) const noexcept { return items()[index]; }

    void push_back(Node* node) {
        if (!block_ || block_->size == block_->capacity) {
            grow();
        }
        items()[block_->size++] = node;
    }

    /// The last element takes the place of the one that goes. Answers the element that moved, or
    /// null when none had to.
    Node* swapOut(std::size_t index) noexcept {
        Node* last = items()[--block_->size];
        if (index == block_->size) {
            return nullptr;
        }
        items()[index] = last;
        return last;
    }

private:
    /// Followed in memory by `capacity` pointers.
    struct Block {
        std::uint32_t size;
        std::uint32_t capacity;
    };
    static_assert(sizeof(Block) % alignof(Node*) == 0);

    [[nodiscard]] Node** items() const noexcept { return reinterpret_cast<Node**>(block_ + 1); }

    void grow() {
        const std::uint32_t size = block_ ? block_->size : 0;
        const std::uint32_t capacity = size == 0 ? 2 : size * 2;
        void* memory = ::operator new(sizeof(Block) + capacity * sizeof(Node*));
        Block* larger = new (memory) Block{size, capacity};
        if (block_) {
            std::memcpy(larger + 1, block_ + 1, size * sizeof(Node*));
        }
        ::operator delete(std::exchange(block_, larger));
    }

    Block* block_ = nullptr;
};

} // namespace ViewerAPI
