#include "scene/drawoptions.h"

#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <utility>

namespace Bundled {

namespace {

constexpr std::pair<DisplayMode, const char*> kNames[] = {
    {DisplayMode::Shaded, "shaded"},
    {DisplayMode::Wireframe, "wireframe"},
    {DisplayMode::WireframeOnShaded, "wireframeOnShaded"},
    {DisplayMode::Points, "points"}};

} // namespace

std::optional<DisplayMode> displayModeFromName(std::string_view name) {
    for (const auto& [mode, itsName] : kNames) {
        if (name == itsName) {
            return mode;
        }
    }
    return std::nullopt;
}

const char* nameOf(DisplayMode mode) {
    return kNames[static_cast<std::size_t>(mode)].second;
}

DrawOptions DrawOptions::fromAttributes(const VlAttribute::GroupAttribute& location) {
    DrawOptions result;
    const VlAttribute::GroupAttribute options{
        location.getChildByName("viewer.default.drawOptions")};
    if (!options) {
        return result;
    }
    const VlAttribute::StringAttribute fill{options.getChildByName("fill")};
    result.fill = displayModeFromName(fill.getValueCstr());
    const VlAttribute::StringAttribute smoothing{options.getChildByName("smoothing")};
    result.smooth = std::string_view(smoothing.getValueCstr()) != "off";
    result.hide = VlAttribute::IntAttribute(options.getChildByName("hide")).getValue(0) != 0;
    return result;
}

} // namespace Bundled
