#pragma once

#include "VlAttribute/GroupAttribute.h"

#include <string>
#include <vector>

namespace ViewerAPI {

/// One location of a cooked proxy.
struct ProxyResultItem {
    /// Relative to the generated root: empty for the root itself, otherwise as in "/a/b".
    std::string name;
    VlAttribute::GroupAttribute attrs;

    friend bool operator==(const ProxyResultItem&, const ProxyResultItem&) = default;
};

/// A cooked proxy: at least the root, at index 0; parents before children, siblings by name.
using ProxyResult = std::vector<ProxyResultItem>;

} // namespace ViewerAPI
