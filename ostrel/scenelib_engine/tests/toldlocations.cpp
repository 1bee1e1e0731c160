#include "toldlocations.h"

#include "VlScenelib/Path.h"

using VlScenelib::LocationEvent;

void ToldLocations::replay(const std::vector<LocationEvent>& events) {
    touched.clear();
    missing.clear();
    gone.clear();
    for (const LocationEvent& event : events) {
        const std::string path(event.getLocationPath());
        touched.insert(path);
        if (event.getLocationData().doesLocationExist()) {
            const std::string parent = VlScenelib::Path::GetLocationParent(path);
            if (!parent.empty() && !known.contains(parent)) {
                complaints.push_back(path + " was told before its parent");
            }
            if (!event.getLocationData().getAttrs().isValid()) {
                complaints.push_back(path + " exists without attributes");
            }
            known[path] = event.getLocationData();
            continue;
        }
        if (event.getLocationData().getAttrs().isValid()) {
            complaints.push_back(path + " has attributes and does not exist");
        }
        if (!known.contains(path)) {
            missing.insert(path);
            continue;
        }
        const auto below = known.lower_bound(path + "/");
        if (below != known.end() && below->first.starts_with(path + "/")) {
            complaints.push_back(path + " went before " + below->first);
        }
        known.erase(path);
        gone.push_back(path);
    }
}
