#include "hostsuites.h"

#include "VlPluginSystem/VlPluginSystem.h"

namespace ViewerAPI {

void registerHostSuites() {
    using VlPluginSystem::addHostSuite;
    addHostSuite(getOptionIdGeneratorHostSuite(), "OptionIdGeneratorHost", 1);
    addHostSuite(getViewerDelegateComponentHostSuite(), "ViewerDelegateComponentHost", 2);
    // Both versions stay available, so that plug-ins built against either load.
    addHostSuite(getViewerDelegateHostSuiteV2(), "ViewerDelegateHost", 2);
    addHostSuite(getViewerDelegateHostSuite(), "ViewerDelegateHost", 3);
}

} // namespace ViewerAPI
