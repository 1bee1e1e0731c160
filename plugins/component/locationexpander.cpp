#include "component/locationexpander.h"

#include "VlAttribute/IntAttribute.h"
#include "viewer_api/ViewerLocationEvent.h"
#include "viewer_api/plugin/ViewerDelegateHost.h"

#include <vector>

namespace Bundled {

using ViewerPlugin::ViewerDelegateHost;
using VlAttribute::IntAttribute;

namespace {

constexpr std::string_view kRoot = "/root";

bool isTop(std::string_view path) {
    return path.size() > kRoot.size() && path.find('/', kRoot.size() + 1) == path.npos;
}

} // namespace

LocationExpander::LocationExpander(ViewerPlugin::ViewerDelegateComponentHost componentHost)
    : ViewerDelegateComponentPlugin(componentHost),
      collapsedId(ViewerPlugin::optionId("collapsed")) {}

bool LocationExpander::locationEvent(const ViewerLocationEvent& event, bool /*handled*/) {
    // All three come together when a location is told for the first time since it came into view.
    constexpr std::uint32_t kFirstTold = kVlLocationEventAttributesChanged |
                                         kVlLocationEventHiddenChanged |
                                         kVlLocationEventLeafChanged;
    if ((event.flags & kVlLocationEventProxy) != 0) {
        return false;
    }
    follow(event.locationPath, (event.flags & kVlLocationEventRemoved) != 0);
    const bool isNew = (event.flags & kFirstTold) == kFirstTold;
    const bool showsNoChildren = (event.flags & kVlLocationEventLeaf) != 0;
    if (isNew && showsNoChildren && !(isCollapsed && isTop(event.locationPath))) {
        const std::string path = event.locationPath;
        ViewerDelegateHost(host.getViewerDelegate().host).openLocations({&path, 1});
    }
    return false;
}

void LocationExpander::follow(std::string_view path, bool isRemoved) {
    if (isRemoved && path == kRoot) {
        tops.clear();
    } else if (isTop(path)) {
        const auto known = tops.find(path);
        if (isRemoved && known != tops.end()) {
            tops.erase(known);
        } else if (!isRemoved && known == tops.end()) {
            tops.emplace(path);
        }
    }
}

void LocationExpander::setOption(std::uint64_t optionId, const Attribute& value) {
    const bool isOn = IntAttribute(value).getValue(0) != 0;
    if (optionId != collapsedId || isOn == isCollapsed) {
        return;
    }
    isCollapsed = isOn;
    const std::vector<std::string> paths(tops.begin(), tops.end());
    const ViewerDelegateHost delegate(host.getViewerDelegate().host);
    if (isCollapsed) {
        delegate.closeLocations(paths);
    } else {
        delegate.openLocations(paths);
    }
}

LocationExpander::Attribute LocationExpander::getOption(std::uint64_t optionId) {
    return optionId == collapsedId ? IntAttribute(isCollapsed ? 1 : 0) : Attribute();
}

} // namespace Bundled

VL_REGISTER_PLUGIN(Bundled::LocationExpander, "LocationExpander");
