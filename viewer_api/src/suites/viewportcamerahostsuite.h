#pragma once

#include "viewer_api/ViewportCameraHostSuite.h"

namespace ViewerAPI {

/// The table through which plug-ins reach a VlViewportCameraHostStruct, whose pointer its entries
/// take as host. The same pointer every time, valid for the process's life.
[[nodiscard]] const ViewportCameraHostSuite* getViewportCameraHostSuite();

} // namespace ViewerAPI
