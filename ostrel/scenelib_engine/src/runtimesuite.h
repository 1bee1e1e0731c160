#pragma once

#include "engine.h"

#include "VlScenelib/ScenelibRuntimeSuite.h"

#include <memory>

namespace VlScenelibEngine {

/// The table through which an engine is used as a scene runtime.
[[nodiscard]] const ScenelibRuntimeSuite* getRuntimeSuite() noexcept;

/// A runtime on an engine, with a group of clients of its own. The caller releases it through the
/// table.
[[nodiscard]] ScenelibRuntimeHandle createRuntime(std::shared_ptr<Engine> engine);

} // namespace VlScenelibEngine
