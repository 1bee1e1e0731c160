#pragma once

#include <boost/unordered_map.hpp>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace ViewerAPI {

/// The nodes of a tree that changed since the last collection, each at most once (the caller sees
/// to that with the node's `queued`). They are handed out parents before children, by depth, and
/// siblings side by side; among parents, and among siblings, in the order in which they became
/// dirty. So the order depends on the history of the tree alone, never on addresses.
///
/// A node offers `depth` (from 1) and `parent`.
template <class Node>
class DirtySet {
public:
    [[nodiscard]] std::size_t size() const { return size_; }

    void insert(Node* node) {
        const auto depth = static_cast<std::size_t>(node->depth);
        if (depth > byDepth_.size()) {
            byDepth_.resize(depth);
        }
        byDepth_[depth - 1].push_back(node);
        ++size_;
    }

    /// Empties the set and hands every node to `visit`, which must not insert.
    template <class Visit>
    void drain(Visit&& visit) {
        for (std::vector<Node*>& nodes : byDepth_) {
            groupSiblings(nodes);
            for (Node* node : nodes) {
                visit(*node);
            }
            nodes.clear();
            if (nodes.capacity() > kKeptCapacity) {
                nodes.shrink_to_fit();
            }
        }
        size_ = 0;
    }

private:
    /// A scene that arrives makes every location dirty once; that much memory is given back.
    static constexpr std::size_t kKeptCapacity = 4096;

    static void groupSiblings(std::vector<Node*>& nodes) {
        // Scenes cook siblings together, so that mostly there is nothing to do but to see that.
        boost::unordered_map<const Node*, std::size_t> rank;
        bool isGrouped = true;
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            if (i == 0 || nodes[i]->parent != nodes[i - 1]->parent) {
                isGrouped = rank.emplace(nodes[i]->parent, rank.size()).second && isGrouped;
            }
        }
        if (!isGrouped) {
            std::stable_sort(nodes.begin(), nodes.end(),
                             [&rank](const Node* left, const Node* right) {
                                 return rank.at(left->parent) < rank.at(right->parent);
                             });
        }
    }

    std::vector<std::vector<Node*>> byDepth_;
    std::size_t size_ = 0;
};

} // namespace ViewerAPI
