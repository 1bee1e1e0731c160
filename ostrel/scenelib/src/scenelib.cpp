#include "VlScenelib/Scenelib.h"

#include "VlScenelib/ScenelibRuntime.h"

#include "VlPluginSystem/PluginManager.h"

#include <stdexcept>

namespace VlScenelib {

std::shared_ptr<ScenelibRuntime> Scenelib::createRuntime() {
    const auto* services =
        static_cast<const ScenelibServicesHostSuite*>(PluginManager::getHostSuite(
            SCENELIB_SERVICES_HOST_SUITE_NAME, SCENELIB_SERVICES_HOST_SUITE_VERSION));
    if (!services) {
        throw std::runtime_error("Scenelib::createRuntime(): the host suite "
                                 "\"" SCENELIB_SERVICES_HOST_SUITE_NAME "\" is not registered");
    }
    ScenelibRuntimeHandle handle = nullptr;
    const ScenelibRuntimeSuite* suite = nullptr;
    services->createRuntime(&handle, &suite);
    if (!handle || !suite) {
        throw std::runtime_error("Scenelib::createRuntime(): the host suite "
                                 "\"" SCENELIB_SERVICES_HOST_SUITE_NAME "\" gave no runtime");
    }
    return ScenelibRuntime::CreateAndSteal(handle, suite);
}

} // namespace VlScenelib
