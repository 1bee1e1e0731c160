#include "component/errorcollector.h"

#include "VlAttribute/GroupAttribute.h"
#include "viewer_api/ViewerLocationEvent.h"

#include <string_view>
#include <vector>

namespace Bundled {

using VlAttribute::GroupAttribute;
using VlAttribute::StringAttribute;

ErrorCollector::ErrorCollector(ViewerPlugin::ViewerDelegateComponentHost componentHost)
    : ViewerDelegateComponentPlugin(componentHost), errorsId(ViewerPlugin::optionId("errors")) {}

bool ErrorCollector::locationEvent(const ViewerLocationEvent& event, bool /*handled*/) {
    if ((event.flags & kVlLocationEventRemoved) != 0) {
        forgetSubtree(event.locationPath);
    } else if ((event.flags & kVlLocationEventAttributesChanged) != 0) {
        const GroupAttribute attributes(Attribute::CreateAndRetain(event.attributes));
        const StringAttribute type(attributes.getChildByName("type"));
        if (std::string_view(type.getValueCstr()) == "error") {
            messages[event.locationPath] =
                StringAttribute(attributes.getChildByName("errorMessage")).getValue();
        } else if (!messages.empty()) {
            messages.erase(event.locationPath);
        }
    }
    return false;
}

VlAttribute::Attribute ErrorCollector::getOption(std::uint64_t optionId) {
    if (optionId != errorsId) {
        return {};
    }
    std::vector<std::string> errors;
    for (const auto& [path, message] : messages) {
        errors.push_back(path);
        errors.push_back(message);
    }
    return StringAttribute(errors, 2);
}

void ErrorCollector::forgetSubtree(const std::string& path) {
    messages.erase(path);
    const std::string below = path + '/';
    for (auto next = messages.lower_bound(below);
         next != messages.end() && next->first.starts_with(below);) {
        next = messages.erase(next);
    }
}

} // namespace Bundled

VL_REGISTER_PLUGIN(Bundled::ErrorCollector, "ErrorCollector");
