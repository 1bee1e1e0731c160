#pragma once

namespace VlScenelibEngine {

/// Registers the op types that come with the engine.
void registerBuiltinOps();

} // namespace VlScenelibEngine
