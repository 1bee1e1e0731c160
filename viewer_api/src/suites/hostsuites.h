#pragma once

#include "viewer_api/OptionIdGeneratorHostSuite.h"
#include "viewer_api/ViewerDelegateComponentHostSuite.h"
#include "viewer_api/ViewerDelegateHostSuite.h"
#include "viewer_api/ViewerDelegateHostSuiteV2.h"
#include "viewer_api/ViewportCameraHostSuite.h"
#include "viewer_api/ViewportHostSuite.h"
#include "viewer_api/ViewportLayerHostSuite.h"

namespace ViewerAPI {

/// The tables that plug-ins call the viewer through; each lasts for the process. [any-thread]
[[nodiscard]] const OptionIdGeneratorHostSuite* getOptionIdGeneratorHostSuite();
[[nodiscard]] const ViewerDelegateComponentHostSuite* getViewerDelegateComponentHostSuite();
[[nodiscard]] const ViewerDelegateHostSuiteV2* getViewerDelegateHostSuiteV2();
[[nodiscard]] const ViewerDelegateHostSuite* getViewerDelegateHostSuite();
[[nodiscard]] const ViewportCameraHostSuite* getViewportCameraHostSuite();
[[nodiscard]] const ViewportHostSuite* getViewportHostSuite();
[[nodiscard]] const ViewportLayerHostSuite* getViewportLayerHostSuite();

/// Offers every table to plug-ins by its name and version. Called once at module start-up, before
/// any plug-in makes an instance; calling it again changes nothing. [ui-thread]
void registerHostSuites();

} // namespace ViewerAPI
