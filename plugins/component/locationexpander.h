#pragma once

#include "viewer_api/plugin/ViewerDelegateComponentPlugin.h"

namespace Bundled {

/// "LocationExpander": opens every location when it comes into view, so that a whole scene unfolds
/// from "/root" without anybody knowing its paths. What is closed afterwards stays closed until it
/// leaves the view and returns.
class LocationExpander final : public ViewerPlugin::ViewerDelegateComponentPlugin {
public:
    using ViewerDelegateComponentPlugin::ViewerDelegateComponentPlugin;

    bool locationEvent(const ViewerLocationEvent& event, bool handled) override;
};

} // namespace Bundled
