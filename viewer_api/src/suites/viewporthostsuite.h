#pragma once

#include "viewer_api/ViewportHostSuite.h"

namespace ViewerAPI {

/// The table through which plug-ins reach a VlViewportHostStruct, whose pointer its entries take as
/// host. The same pointer every time, valid for the process's life.
[[nodiscard]] const ViewportHostSuite* getViewportHostSuite();

} // namespace ViewerAPI
