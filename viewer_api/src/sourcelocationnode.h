#pragma once

#include "locationnodebase.h"

namespace ViewerAPI {

/// A location of the sources view. Written by SourceLocationTree alone. `xformGroup`, `matrix` and
/// `absolute` are those of the attributes last sent.
struct SourceLocationNode : LocationNodeBase<SourceLocationNode> {
    using LocationNodeBase::LocationNodeBase;

    bool inheritedPinned : 1 = false; ///< an ancestor is pinned
    bool wasPinned : 1 = false;       ///< at the last collection
};

} // namespace ViewerAPI
