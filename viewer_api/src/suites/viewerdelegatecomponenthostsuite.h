#pragma once

#include "viewer_api/ViewerDelegateComponentHostSuite.h"

namespace ViewerAPI {

/// The table through which plug-ins reach a VlViewerDelegateComponentHostStruct, whose pointer its
/// entries take as host. The same pointer every time, valid for the process's life.
[[nodiscard]] const ViewerDelegateComponentHostSuite* getViewerDelegateComponentHostSuite();

} // namespace ViewerAPI
