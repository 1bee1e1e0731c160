#pragma once

#include "locationnodebase.h"

namespace ViewerAPI {

/// A location of the sources view. Written by SourceLocationTree alone. `matrix` and `absolute` are
/// those of the attributes last sent.
struct SourceLocationNode : LocationNodeBase<SourceLocationNode> {
    using LocationNodeBase::LocationNodeBase;

    /// Child "xform" of the attributes last sent; null without one.
    [[nodiscard]] VlAttribute::GroupAttribute xformGroup() const {
        return VlAttribute::GroupAttribute(sentAttributes.borrowChildByName("xform"));
    }

    bool inheritedPinned : 1 = false; ///< an ancestor is pinned
    bool wasPinned : 1 = false;       ///< at the last collection
};

} // namespace ViewerAPI
