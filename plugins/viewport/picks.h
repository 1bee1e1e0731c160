#pragma once

#include "viewer_api/plugin/PickRegion.h"
#include "viewer_api/plugin/ViewportHost.h"

#include <string>
#include <vector>

namespace Bundled {

/// The paths of the locations that a region of a viewport's picture shows, and with `deep` of those
/// hidden behind them, each as often as it was registered. Asks for a new picture, as picking draws
/// in the window's buffers.
std::vector<std::string> pickLocations(const ViewerPlugin::ViewportHost& viewport,
                                       const ViewerPlugin::PickRegion& region, bool deep);

} // namespace Bundled
