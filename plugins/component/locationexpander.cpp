#include "component/locationexpander.h"

#include "viewer_api/ViewerLocationEvent.h"
#include "viewer_api/plugin/ViewerDelegateHost.h"

#include <string>

namespace Bundled {

bool LocationExpander::locationEvent(const ViewerLocationEvent& event, bool /*handled*/) {
    // All three come together when a location is told for the first time since it came into view.
    constexpr std::uint32_t kFirstTold = kVlLocationEventAttributesChanged |
                                         kVlLocationEventHiddenChanged |
                                         kVlLocationEventLeafChanged;
    const bool isNew = (event.flags & kFirstTold) == kFirstTold;
    const bool showsNoChildren = (event.flags & kVlLocationEventLeaf) != 0;
    if (isNew && showsNoChildren && (event.flags & kVlLocationEventProxy) == 0) {
        const std::string path = event.locationPath;
        ViewerPlugin::ViewerDelegateHost(host.getViewerDelegate().host).openLocations({&path, 1});
    }
    return false;
}

} // namespace Bundled

VL_REGISTER_PLUGIN(Bundled::LocationExpander, "LocationExpander");
