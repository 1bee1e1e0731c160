#pragma once

#include "box.h"
#include "worldmatrix.h"

#include "VlAttribute/DoubleAttribute.h"

#include <memory>
#include <optional>
#include <vector>

namespace ViewerAPI {

struct LocationNode;

/// What a location keeps of the last question for an extent, so that the next one finds what has
/// not changed. LocationTree drops it with each change of what it depends on: the location's
/// attributes, and which children plug-ins know, which are hidden, and what attributes they have.
/// Only the matrices above them are compared when it is used.
struct ExtentCache {
    /// Of the children and proxy children together.
    struct Children {
        WorldMatrix parentWorld;   ///< for which it holds
        std::optional<Box> bounds; ///< in world space, around those with a constant `bound`
        std::vector<const LocationNode*> others; ///< those that have to be asked themselves
    };

    std::unique_ptr<const Children> children;
    VlAttribute::DoubleAttribute pointExtent; ///< null when it wasn't worth keeping
};

} // namespace ViewerAPI
