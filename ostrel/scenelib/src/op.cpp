#include "VlScenelib/Op.h"

namespace VlScenelib {

Op::Op(ScenelibOpHandle stolen, const ScenelibRuntimeSuite* runtimeSuite) noexcept
    : handle(stolen), suite(runtimeSuite) {}

Op::~Op() {
    suite->releaseOp(handle);
}

int Op::getId() const {
    return suite->getOpId(handle);
}

} // namespace VlScenelib
