#pragma once

#include "VlScenelibEngine/OpType.h"

namespace VlScenelibEngine {

/// Shows what its first input shows; without one, nothing.
class NoOp final : public OpType {
public:
    [[nodiscard]] CookResult cook(CookContext& context) const override;
};

} // namespace VlScenelibEngine
