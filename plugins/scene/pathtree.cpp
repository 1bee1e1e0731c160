#include "scene/pathtree.h"

#include <functional>
#include <utility>

namespace Bundled {

std::uint32_t PathTree::find(std::string_view path) const {
    if (!path.starts_with('/')) {
        return kNone;
    }
    std::uint32_t node = kNone;
    for (std::size_t end = 0; end < path.size();) {
        const std::string_view name = nameBehind(path, end);
        end += 1 + name.size();
        node = findChild(node, name);
        if (node == kNone) {
            return kNone;
        }
    }
    return node;
}

std::string PathTree::getPath(std::uint32_t node) const {
    std::size_t length = 0;
    for (std::uint32_t step = node; step != kNone; step = nodes[step].parent) {
        length += 1 + nodes[step].name.size();
    }
    std::string path(length, '/');
    for (std::uint32_t step = node; step != kNone; step = nodes[step].parent) {
        const std::string& name = nodes[step].name;
        length -= name.size();
        path.replace(length, name.size(), name);
        --length;
    }
    return path;
}

std::string_view PathTree::nameBehind(std::string_view path, std::size_t slash) {
    return path.substr(slash + 1, path.find('/', slash + 1) - slash - 1);
}

std::uint32_t PathTree::findChild(std::uint32_t parent, std::string_view name) const {
    std::uint32_t node = buckets[bucketOf(parent, name)];
    while (node != kNone && (nodes[node].parent != parent || nodes[node].name != name)) {
        node = nodes[node].nextInBucket;
    }
    return node;
}

std::uint32_t PathTree::makeChild(std::uint32_t parent, std::string_view name) {
    std::uint32_t node = kNone;
    if (freeNodes.empty()) {
        if (nodes.size() == buckets.size()) {
            growBuckets();
        }
        node = static_cast<std::uint32_t>(nodes.size());
        nodes.emplace_back();
    } else {
        node = freeNodes.back();
        freeNodes.pop_back();
    }
    Node& own = nodes[node];
    own.name = name;
    if (parent != kNone) {
        own.parent = parent;
        own.depth = nodes[parent].depth + 1;
        own.nextSibling = std::exchange(nodes[parent].firstChild, node);
        if (own.nextSibling != kNone) {
            nodes[own.nextSibling].previousSibling = node;
        }
    }
    putInBucket(node);
    return node;
}

void PathTree::eraseLeaf(std::uint32_t node) {
    Node& own = nodes[node];
    if (own.previousSibling != kNone) {
        nodes[own.previousSibling].nextSibling = own.nextSibling;
    } else if (own.parent != kNone) {
        nodes[own.parent].firstChild = own.nextSibling;
    }
    if (own.nextSibling != kNone) {
        nodes[own.nextSibling].previousSibling = own.previousSibling;
    }
    std::uint32_t* link = &buckets[bucketOf(own.parent, own.name)];
    while (*link != node) {
        link = &nodes[*link].nextInBucket;
    }
    *link = own.nextInBucket;
    own = {};
    freeNodes.push_back(node);
}

/// Comes when every node is in use: free ones are taken first.
void PathTree::growBuckets() {
    buckets.assign(2 * buckets.size(), kNone);
    for (std::uint32_t node = 0; node < nodes.size(); ++node) {
        putInBucket(node);
    }
}

void PathTree::putInBucket(std::uint32_t node) {
    std::uint32_t& first = buckets[bucketOf(nodes[node].parent, nodes[node].name)];
    nodes[node].nextInBucket = std::exchange(first, node);
}

/// Children of one name, and one parent's children, are many: both spread over all buckets.
std::size_t PathTree::bucketOf(std::uint32_t parent, std::string_view name) const {
    const std::uint64_t hash =
        (std::hash<std::string_view>{}(name) ^ parent) * 0x9e37'79b9'7f4a'7c15;
    return (hash >> 32U) & (buckets.size() - 1);
}

} // namespace Bundled
