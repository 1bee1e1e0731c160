#pragma once

#include "VlScenelibEngine/OpType.h"

#include <memory>
#include <string>

namespace VlScenelibEngine {

/// Null when nobody has registered the name. [any-thread]
[[nodiscard]] std::shared_ptr<const OpType> findOpType(const std::string& name);

} // namespace VlScenelibEngine
