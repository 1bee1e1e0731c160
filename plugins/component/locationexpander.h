#pragma once

#include "viewer_api/plugin/OptionIds.h"
#include "viewer_api/plugin/ViewerDelegateComponentPlugin.h"

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>

namespace Bundled {

/// "LocationExpander": opens every location when it comes into view, so that a whole scene unfolds
/// from "/root" without anybody knowing its paths. What is closed afterwards stays closed until it
/// leaves the view and returns.
///
/// Option "collapsed" (an int, 0 at first): with 1 the locations right below "/root" are closed,
/// those that come later too, so that each shows as what the viewer generates for it; 0 opens them.
class LocationExpander final : public ViewerPlugin::ViewerDelegateComponentPlugin {
public:
    explicit LocationExpander(ViewerPlugin::ViewerDelegateComponentHost componentHost);

    bool locationEvent(const ViewerLocationEvent& event, bool handled) override;
    void setOption(std::uint64_t optionId, const Attribute& value) override;
    Attribute getOption(std::uint64_t optionId) override;

private:
    void follow(std::string_view path, bool isRemoved);

    const std::uint64_t collapsedId;
    bool isCollapsed = false;
    /// The locations in view right below "/root".
    std::set<std::string, std::less<>> tops;
};

} // namespace Bundled
