#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace ViewerAPI {

/// A hash table from path to node whose links live in the nodes themselves: a location costs no
/// second copy of its path and no allocation, and one look-up hashes the path once. Does not own
/// the nodes.
///
/// A node offers `path` (convertible to std::string_view, constant while the node is here), and
/// the index's own fields `nextInBucket` and `pathHash`.
template <class Node>
class PathIndex {
public:
    PathIndex() : buckets_(kInitialBuckets) {}

    [[nodiscard]] std::size_t size() const noexcept { return size_; }

    /// Null when there is none.
    [[nodiscard]] Node* find(std::string_view path) const noexcept {
        const std::uint32_t hash = hashOf(path);
        for (Node* node = buckets_[hash & mask()]; node; node = node->nextInBucket) {
            if (node->pathHash == hash && std::string_view(node->path) == path) {
                return node;
            }
        }
        return nullptr;
    }

    /// The path must not be in the index.
    void insert(Node* node) {
        if (size_ == buckets_.size()) {
            grow();
        }
        node->pathHash = hashOf(node->path);
        link(node);
        ++size_;
    }

    /// The node must be in the index.
    void erase(Node* node) noexcept {
        Node** slot = &buckets_[node->pathHash & mask()];
        while (*slot != node) {
            slot = &(*slot)->nextInBucket;
        }
        *slot = node->nextInBucket;
        --size_;
    }

private:
    static constexpr std::size_t kInitialBuckets = 16; // a power of two, as every later count

    /// 32 bits distinguish as many buckets as there will ever be, and fit a gap in the node.
    static std::uint32_t hashOf(std::string_view path) noexcept {
        return static_cast<std::uint32_t>(std::hash<std::string_view>{}(path));
    }

    [[nodiscard]] std::size_t mask() const noexcept { return buckets_.size() - 1; }

    void link(Node* node) noexcept {
        Node*& bucket = buckets_[node->pathHash & mask()];
        node->nextInBucket = bucket;
        bucket = node;
    }

    void grow() {
        std::vector<Node*> fewer(buckets_.size() * 2);
        fewer.swap(buckets_);
        for (Node* node : fewer) {
            while (node) {
                Node* next = node->nextInBucket;
                link(node);
                node = next;
            }
        }
    }

    std::vector<Node*> buckets_;
    std::size_t size_ = 0;
};

} // namespace ViewerAPI
