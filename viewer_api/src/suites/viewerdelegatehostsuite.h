#pragma once

#include "viewer_api/ViewerDelegateHostSuite.h"
#include "viewer_api/ViewerDelegateHostSuiteV2.h"

namespace ViewerAPI {

/// The tables through which plug-ins reach a VlViewerDelegateHostStruct, whose pointer their
/// entries take as host. The same pointers every time, valid for the process's life. Version 2
/// differs in the arguments of getPartialXform alone.
[[nodiscard]] const ViewerDelegateHostSuiteV2* getViewerDelegateHostSuiteV2();
[[nodiscard]] const ViewerDelegateHostSuite* getViewerDelegateHostSuite();

} // namespace ViewerAPI
