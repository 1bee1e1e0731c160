#include "hostsuites.h"

#include "manipulatorhandlehostsuite.h"
#include "manipulatorhostsuite.h"
#include "optionidgeneratorhostsuite.h"
#include "viewerdelegatecomponenthostsuite.h"
#include "viewerdelegatehostsuite.h"
#include "viewportcamerahostsuite.h"
#include "viewporthostsuite.h"
#include "viewportlayerhostsuite.h"

#include "VlPluginSystem/VlPluginSystem.h"

namespace ViewerAPI {

void registerHostSuites() {
    using VlPluginSystem::addHostSuite;
    addHostSuite(getManipulatorHandleHostSuite(), "ManipulatorHandleHost", 1);
    addHostSuite(getManipulatorHostSuite(), "ManipulatorHost", 2);
    addHostSuite(getOptionIdGeneratorHostSuite(), "OptionIdGeneratorHost", 1);
    addHostSuite(getViewerDelegateComponentHostSuite(), "ViewerDelegateComponentHost", 2);
    // Both versions stay available, so that plug-ins built against either load.
    addHostSuite(getViewerDelegateHostSuiteV2(), "ViewerDelegateHost", 2);
    addHostSuite(getViewerDelegateHostSuite(), "ViewerDelegateHost", 3);
    addHostSuite(getViewportCameraHostSuite(), "ViewportCameraHost", 2);
    addHostSuite(getViewportHostSuite(), "ViewportHost", 3);
    addHostSuite(getViewportLayerHostSuite(), "ViewportLayerHost", 2);
}

} // namespace ViewerAPI
