#include "support/knownview.h"

#include <sstream>

namespace ViewerAPI::test {

const KnownView::Location* KnownView::find(const std::string& path) const {
    const auto found = locations_.find(path);
    return found == locations_.end() ? nullptr : &found->second;
}

std::vector<std::string> KnownView::apply(const std::vector<LocationChange>& changes) {
    std::vector<std::string> complaints;
    for (const LocationChange& change : changes) {
        const std::string complaint = applyOne(change);
        if (!complaint.empty()) {
            std::ostringstream line;
            line << complaint << ": " << change;
            complaints.push_back(line.str());
        }
    }
    return complaints;
}

std::string KnownView::applyOne(const LocationChange& change) {
    const std::string path = change.path.str();
    const Location* known = find(path);
    if (change.removed) {
        if (!known) {
            return "removes an unknown location";
        }
        LocationChange expected;
        expected.path = change.path;
        expected.proxy = known->proxy;
        expected.removed = true;
        locations_.erase(path);
        std::erase_if(locations_, [below = path + "/"](const auto& entry) {
            return entry.first.compare(0, below.size(), below) == 0;
        });
        return change == expected ? "" : "tells more than a removal";
    }
    std::string complaint;
    if (!known) {
        const bool tellsAll = change.attributesChanged &&
                              (isSources_ || (change.hiddenChanged && change.leafChanged));
        const bool tellsXform = change.matrix.isValid() || change.absolute;
        const std::string parent(LocationPath::parentOf(path));
        if (!tellsAll || change.xformChanged != tellsXform) {
            complaint = "the first record leaves something out, or tells too much";
        } else if (parentsComeFirst && !parent.empty() && !find(parent)) {
            complaint = "comes before its parent";
        }
    } else if (!change.attributesChanged && !change.hiddenChanged && !change.leafChanged) {
        complaint = "tells nothing";
    } else if ((change.attributesChanged && change.attributes == known->attributes) ||
               (change.xformChanged && change.matrix == known->matrix &&
                change.absolute == known->absolute) ||
               (change.hiddenChanged && change.hidden == known->hidden) ||
               (change.leafChanged && change.leaf == known->leaf)) {
        complaint = "tells what is known";
    } else if (change.proxy != known->proxy) {
        complaint = "changes the proxy bit";
    }
    Location& location = locations_[path];
    location.proxy = change.proxy;
    if (change.attributesChanged) {
        location.attributes = change.attributes;
    }
    if (change.xformChanged) {
        location.matrix = change.matrix;
        location.absolute = change.absolute;
    }
    if (change.hiddenChanged) {
        location.hidden = change.hidden;
    }
    if (change.leafChanged) {
        location.leaf = change.leaf;
    }
    return complaint;
}

} // namespace ViewerAPI::test
