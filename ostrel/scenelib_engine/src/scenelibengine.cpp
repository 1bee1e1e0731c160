#include "VlScenelibEngine/ScenelibEngine.h"

#include "applicationgraph.h"
#include "ops/builtinops.h"
#include "runtimesuite.h"

#include "VlPluginSystem/VlPluginSystem.h"
#include "VlScenelib/ScenelibRuntimeSuite.h"

#include <memory>
#include <mutex>
#include <string_view>

namespace VlScenelibEngine {

namespace {

void createRuntimeOfType(const char* typeName, ScenelibRuntimeHandle* runtime,
                         const ScenelibRuntimeSuite** suite) {
    const bool isKnown = typeName && std::string_view(typeName) == "runtime-async";
    *runtime = isKnown ? createRuntime(getApplicationEngine()) : nullptr;
    *suite = isKnown ? getRuntimeSuite() : nullptr;
}

void createIndependentRuntime(ScenelibRuntimeHandle* runtime, const ScenelibRuntimeSuite** suite) {
    *runtime = createRuntime(std::make_shared<Engine>());
    *suite = getRuntimeSuite();
}

} // namespace

void registerScenelibEngine() {
    static std::once_flag isRegistered;
    std::call_once(isRegistered, [] {
        registerBuiltinOps();
        static const ScenelibRuntimeHostSuite runtimeHost{createRuntimeOfType};
        VlPluginSystem::addHostSuite(&runtimeHost, SCENELIB_RUNTIME_HOST_SUITE_NAME,
                                     SCENELIB_RUNTIME_HOST_SUITE_VERSION);
        static const ScenelibServicesHostSuite servicesHost{createIndependentRuntime};
        VlPluginSystem::addHostSuite(&servicesHost, SCENELIB_SERVICES_HOST_SUITE_NAME,
                                     SCENELIB_SERVICES_HOST_SUITE_VERSION);
    });
}

} // namespace VlScenelibEngine
