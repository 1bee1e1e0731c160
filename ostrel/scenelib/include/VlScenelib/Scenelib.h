#pragma once

#include <memory>

namespace VlScenelib {

class ScenelibRuntime;

/// The scene library's services, over the host suite "VlScenelibServicesHost".
class Scenelib {
public:
    /// A new runtime with an op graph of its own, which nothing else sees.
    /// Throws std::runtime_error when the suite is not registered or gives no runtime.
    [[nodiscard]] std::shared_ptr<ScenelibRuntime> createRuntime();
};

} // namespace VlScenelib
