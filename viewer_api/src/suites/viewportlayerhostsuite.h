#pragma once

#include "viewer_api/ViewportLayerHostSuite.h"

namespace ViewerAPI {

/// The table through which plug-ins reach a VlViewportLayerHostStruct, whose pointer its entries
/// take as host. The same pointer every time, valid for the process's life.
[[nodiscard]] const ViewportLayerHostSuite* getViewportLayerHostSuite();

} // namespace ViewerAPI
