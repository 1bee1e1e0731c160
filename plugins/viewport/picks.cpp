#include "viewport/picks.h"

namespace Bundled {

std::vector<std::string> pickLocations(const ViewerPlugin::ViewportHost& viewport,
                                       const ViewerPlugin::PickRegion& region, bool deep) {
    const VlAttribute::GroupAttribute picked = viewport.getPickedObjects(region, deep);
    viewport.setDirty(true);
    std::vector<std::string> paths;
    for (std::int64_t i = 0; i < picked.getNumberOfChildren(); ++i) {
        // What other layers let pick need not be a location.
        if (const VlAttribute::StringAttribute path{picked.getChildByIndex(i)}) {
            paths.push_back(path.getValue());
        }
    }
    return paths;
}

} // namespace Bundled
