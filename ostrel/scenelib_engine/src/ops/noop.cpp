#include "ops/noop.h"

namespace VlScenelibEngine {

CookResult NoOp::cook(CookContext& /*context*/) const {
    return CookResult::sameAsInput(0);
}

} // namespace VlScenelibEngine
