#pragma once

#include "ops/import/model.h"

#include <memory>
#include <string>

namespace VlScenelibEngine {

/// The model of a file, read once for all who want it at the same time, and again when the file has
/// changed. It is kept as long as anyone has it. Waits while it is read. Throws std::runtime_error,
/// as importModel() does. What the reader warns of is logged. [any-thread]
[[nodiscard]] std::shared_ptr<const Model> loadModel(const std::string& path);

} // namespace VlScenelibEngine
