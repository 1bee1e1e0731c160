#pragma once

#include "locationpath.h"

#include <map>
#include <string_view>
#include <vector>

namespace ViewerAPI {

/// Orders paths as text; for look-ups by plain text too.
struct LocationPathLess {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const noexcept {
        return left < right;
    }
};

/// By location, in the order of their paths as text.
template <class Value>
using PathMap = std::map<LocationPath, Value, LocationPathLess>;

/// The keys at or below a location, in order. Costs what begins like the path.
template <class Value>
[[nodiscard]] std::vector<LocationPath> keysAtOrBelow(const PathMap<Value>& map,
                                                      std::string_view path) {
    std::vector<LocationPath> keys;
    for (auto place = map.lower_bound(path);
         place != map.end() && place->first.view().starts_with(path); ++place) {
        // "/root/ab" and "/root/a.b" stand among what lies below "/root/a".
        if (LocationPath::isAtOrBelow(place->first, path)) {
            keys.push_back(place->first);
        }
    }
    return keys;
}

} // namespace ViewerAPI
