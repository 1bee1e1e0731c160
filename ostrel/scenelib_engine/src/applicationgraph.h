#pragma once

#include "engine.h"

#include <memory>

namespace VlScenelibEngine {

/// The engine of the application's op graph, made when first asked for. Its coordinator is stopped
/// when the process exits. [any-thread]
[[nodiscard]] const std::shared_ptr<Engine>& getApplicationEngine();

} // namespace VlScenelibEngine
