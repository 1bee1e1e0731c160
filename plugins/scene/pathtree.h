#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Bundled {

/// Locations as a tree of names. Each has a number, its node; numbers are small, and those of
/// locations that went are used again, so that what is known of a location can stand in an array.
///
/// A node keeps its own name and not its path, which is put together when asked for: a scene's
/// locations are mostly leaves, and there are millions of them. Paths begin with "/". Not
/// thread-safe.
class PathTree {
public:
    static constexpr std::uint32_t kNone = UINT32_MAX;

    /// `kNone` when there is none.
    [[nodiscard]] std::uint32_t find(std::string_view path) const;
    /// Calls `made(node, path)` for the location and each one above it that was missing, from the
    /// top.
    template <typename Made>
    std::uint32_t findOrMake(std::string_view path, Made&& made);
    /// Takes a location away with everything below it, nearest first: calls `erasing(node)` for
    /// each just before.
    template <typename Erasing>
    void erase(std::uint32_t top, Erasing&& erasing);

    /// `kNone` at the top.
    [[nodiscard]] std::uint32_t getParent(std::uint32_t node) const { return nodes[node].parent; }
    /// 1 at the top, one more than the parent's elsewhere.
    [[nodiscard]] std::uint32_t getDepth(std::uint32_t node) const { return nodes[node].depth; }
    [[nodiscard]] bool hasChildren(std::uint32_t node) const {
        return nodes[node].firstChild != kNone;
    }
    /// Calls `visit(child)` for each, in no particular order.
    template <typename Visit>
    void forEachChild(std::uint32_t node, Visit&& visit) const {
        for (std::uint32_t child = nodes[node].firstChild; child != kNone;
             child = nodes[child].nextSibling) {
            visit(child);
        }
    }
    [[nodiscard]] std::string getPath(std::uint32_t node) const;
    /// One more than the highest number that was ever a node.
    [[nodiscard]] std::size_t getCapacity() const noexcept { return nodes.size(); }

private:
    struct Node {
        std::string name;
        std::uint32_t parent = kNone;
        std::uint32_t depth = 1;
        std::uint32_t firstChild = kNone;
        std::uint32_t nextSibling = kNone;
        std::uint32_t previousSibling = kNone;
        std::uint32_t nextInBucket = kNone;
    };

    static std::string_view nameBehind(std::string_view path, std::size_t slash);
    [[nodiscard]] std::uint32_t findChild(std::uint32_t parent, std::string_view name) const;
    std::uint32_t makeChild(std::uint32_t parent, std::string_view name);
    void eraseLeaf(std::uint32_t node);
    void growBuckets();
    void putInBucket(std::uint32_t node);
    [[nodiscard]] std::size_t bucketOf(std::uint32_t parent, std::string_view name) const;

    std::vector<Node> nodes;
    std::vector<std::uint32_t> freeNodes;
    std::vector<std::uint32_t> walk;
    /// The first node of each chain of those whose parent and name lead here; their number is a
    /// power of two.
    std::vector<std::uint32_t> buckets = std::vector<std::uint32_t>(16, kNone);
};

template <typename Made>
std::uint32_t PathTree::findOrMake(std::string_view path, Made&& made) {
    std::uint32_t node = kNone;
    for (std::size_t end = 0; end < path.size();) {
        const std::string_view name = nameBehind(path, end);
        end += 1 + name.size();
        std::uint32_t child = findChild(node, name);
        if (child == kNone) {
            child = makeChild(node, name);
            made(child, path.substr(0, end));
        }
        node = child;
    }
    return node;
}

template <typename Erasing>
void PathTree::erase(std::uint32_t top, Erasing&& erasing) {
    walk.assign(1, top);
    for (std::size_t i = 0; i < walk.size(); ++i) {
        forEachChild(walk[i], [this](std::uint32_t child) { walk.push_back(child); });
        erasing(walk[i]);
    }
    for (auto node = walk.rbegin(); node != walk.rend(); ++node) {
        eraseLeaf(*node);
    }
}

} // namespace Bundled
