#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace Bundled {

/// A set of small numbers: walked at the cost of its members, changed at the cost of one.
class NodeSet {
public:
    void insert(std::uint32_t node) {
        if (node >= places.size()) {
            places.resize(node + 1, kNone);
        }
        if (places[node] == kNone) {
            places[node] = static_cast<std::uint32_t>(nodes.size());
            nodes.push_back(node);
        }
    }
    void erase(std::uint32_t node) {
        if (node >= places.size() || places[node] == kNone) {
            return;
        }
        nodes[places[node]] = nodes.back();
        places[nodes.back()] = places[node];
        places[node] = kNone;
        nodes.pop_back();
    }
    /// In no particular order; valid until the next change.
    [[nodiscard]] std::span<const std::uint32_t> get() const noexcept { return nodes; }

private:
    static constexpr std::uint32_t kNone = UINT32_MAX;

    std::vector<std::uint32_t> nodes;
    std::vector<std::uint32_t> places;
};

} // namespace Bundled
