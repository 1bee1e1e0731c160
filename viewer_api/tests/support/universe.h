#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace ViewerAPI::test {

/// The locations that a random test may bring about, parents before children. The first is
/// "/root".
struct Universe {
    struct Place {
        std::string path;
        int parent = -1; ///< index, -1 for the root
        bool isProxy = false;
    };
    std::string name;
    std::vector<Place> places;

    /// Adds a place below another and answers its index.
    int add(int parent, const std::string& leafName, bool isProxy = false) {
        places.push_back(
            {places[static_cast<std::size_t>(parent)].path + "/" + leafName, parent, isProxy});
        return static_cast<int>(places.size()) - 1;
    }

    /// Whether a place is the other or stands somewhere below it.
    [[nodiscard]] bool isAtOrBelow(int place, int ancestor) const {
        while (place > ancestor) {
            place = places[static_cast<std::size_t>(place)].parent;
        }
        return place == ancestor;
    }

    /// Several shapes: a chain, many siblings, a binary tree, and a mixture with proxies (where
    /// `withProxies`) at every level and below each other.
    static std::vector<Universe> shapes(bool withProxies);
};

} // namespace ViewerAPI::test
