#pragma once

#include "modeldata.h"

#include <string>

namespace VlScenelibEngine {

/// Reads a model file by the import program, in a process of its own: a damaged file can end or
/// occupy that process, which is then given up. Waits for it. Throws std::runtime_error, "Can't
/// import 'PATH': REASON." in one line, when there is no such file or it can't be read.
/// [any-thread]
[[nodiscard]] ModelData importModel(const std::string& path);

} // namespace VlScenelibEngine
