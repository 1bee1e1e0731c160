#include "VlScenelib/ScenelibRuntime.h"

#include "VlScenelib/Op.h"
#include "VlScenelib/Transaction.h"

namespace VlScenelib {

std::shared_ptr<ScenelibRuntime>
ScenelibRuntime::CreateAndSteal(ScenelibRuntimeHandle handle, const ScenelibRuntimeSuite* suite) {
    return std::shared_ptr<ScenelibRuntime>(new ScenelibRuntime(handle, suite));
}

ScenelibRuntime::ScenelibRuntime(ScenelibRuntimeHandle stolen,
                                 const ScenelibRuntimeSuite* runtimeSuite)
    : handle(stolen), suite(runtimeSuite), rootPath(runtimeSuite->getRootLocationPath(stolen)) {}

ScenelibRuntime::~ScenelibRuntime() {
    suite->releaseRuntime(handle);
}

std::shared_ptr<Transaction> ScenelibRuntime::createTransaction() {
    return std::make_shared<Transaction>(suite->createTransaction(handle), suite);
}

std::int64_t ScenelibRuntime::commit(const std::shared_ptr<Transaction>& transaction) {
    return transaction ? suite->commit(handle, transaction->getHandle()) : -1;
}

std::shared_ptr<Op> ScenelibRuntime::getOpFromOpId(int opId) {
    const ScenelibOpHandle op = suite->getOpFromOpId(handle, opId);
    return op ? std::make_shared<Op>(op, suite) : nullptr;
}

bool ScenelibRuntime::isProcessing() const {
    return suite->isProcessing(handle) != 0;
}

void ScenelibRuntime::flushCaches() {
    suite->flushCaches(handle);
}

} // namespace VlScenelib
