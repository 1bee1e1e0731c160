#include "locationchange.h"

#include "viewer_api/ViewerLocationEvent.h"

#include <ostream>

namespace ViewerAPI {

std::uint32_t LocationChange::getFlags() const noexcept {
    std::uint32_t flags = 0;
    const auto add = [&flags](bool isSet, VlLocationEventFlag bit) {
        flags |= isSet ? static_cast<std::uint32_t>(bit) : 0U;
    };
    add(absolute, kVlLocationEventXformAbsolute);
    add(hidden, kVlLocationEventHidden);
    add(leaf, kVlLocationEventLeaf);
    add(proxy, kVlLocationEventProxy);
    add(removed, kVlLocationEventRemoved);
    add(attributesChanged, kVlLocationEventAttributesChanged);
    add(xformChanged, kVlLocationEventXformChanged);
    add(hiddenChanged, kVlLocationEventHiddenChanged);
    add(leafChanged, kVlLocationEventLeafChanged);
    return flags;
}

std::ostream& operator<<(std::ostream& out, const LocationChange& change) {
    out << change.path;
    const auto name = [&out](bool isSet, const char* text) {
        if (isSet) {
            out << ' ' << text;
        }
    };
    name(change.absolute, "absolute");
    name(change.hidden, "hidden");
    name(change.leaf, "leaf");
    name(change.proxy, "proxy");
    name(change.removed, "removed");
    name(change.attributesChanged, "attributesChanged");
    name(change.xformChanged, "xformChanged");
    name(change.hiddenChanged, "hiddenChanged");
    name(change.leafChanged, "leafChanged");
    if (change.attributes.isValid()) {
        out << " attributes=" << change.attributes.getHash().str();
    }
    if (change.matrix.isValid()) {
        out << " matrix=(";
        const char* separator = "";
        for (const double value : change.matrix.getNearestSample(0.0F)) {
            out << separator << value;
            separator = " ";
        }
        out << ')';
    }
    return out;
}

} // namespace ViewerAPI
