#pragma once

#include "VlAttribute/GroupAttribute.h"

#include <functional>
#include <map>
#include <string>

namespace ViewerAPI {

/// What manipulators have set on top of one location in one view.
struct LiveEntry {
    /// The cooked attributes at the first touch.
    VlAttribute::GroupAttribute base;
    /// Attribute name, which may be dotted, to value.
    std::map<std::string, VlAttribute::Attribute> overrides;
};

/// Live entries by location path.
using LiveAttributes = std::map<std::string, LiveEntry, std::less<>>;

} // namespace ViewerAPI
