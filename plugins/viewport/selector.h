#pragma once

#include "viewer_api/plugin/PickRegion.h"
#include "viewer_api/plugin/ViewportHost.h"

namespace Bundled {

/// Selects what stands in a part of a viewport's picture. The selection is the application's: it is
/// asked for the present one and told of the new one, and tells the delegate in turn. [ui-thread]
class Selector {
public:
    enum class Mode {
        Replace, ///< what is picked is the selection; nothing picked clears it
        Add,
        Toggle ///< what was selected is no longer, what was not is
    };

    explicit Selector(ViewerPlugin::ViewportHost viewportHost) : host(viewportHost) {}

    /// Picks what is seen in the region, in pixels. A generated location, a bounding box say,
    /// counts as the one that it was generated for.
    void select(const ViewerPlugin::PickRegion& region, Mode mode) const;

private:
    const ViewerPlugin::ViewportHost host;
};

} // namespace Bundled
