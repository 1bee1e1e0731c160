#include "VlScenelib/Transaction.h"

#include "VlScenelib/Client.h"
#include "VlScenelib/Op.h"

namespace VlScenelib {

Transaction::Transaction(ScenelibTransactionHandle stolen,
                         const ScenelibRuntimeSuite* runtimeSuite) noexcept
    : handle(stolen), suite(runtimeSuite) {}

Transaction::~Transaction() {
    suite->releaseTransaction(handle);
}

std::shared_ptr<Client> Transaction::createClient() {
    return std::make_shared<Client>(suite->createClient(handle), suite);
}

std::shared_ptr<Op> Transaction::createOp() {
    return std::make_shared<Op>(suite->createOp(handle), suite);
}

void Transaction::setClientOp(const std::shared_ptr<Client>& client,
                              const std::shared_ptr<Op>& op) {
    if (client) {
        suite->setClientOp(handle, client->getHandle(), op ? op->getHandle() : nullptr);
    }
}

void Transaction::setOpArgs(const std::shared_ptr<Op>& op, const std::string& opType,
                            const VlAttribute::GroupAttribute& args) {
    if (op) {
        suite->setOpArgs(handle, op->getHandle(), opType.c_str(), args.getHandle());
    }
}

void Transaction::setOpInputs(const std::shared_ptr<Op>& op,
                              const std::vector<std::shared_ptr<Op>>& inputs) {
    if (!op) {
        return;
    }
    std::vector<ScenelibOpHandle> handles;
    handles.reserve(inputs.size());
    for (const std::shared_ptr<Op>& input : inputs) {
        handles.push_back(input ? input->getHandle() : nullptr);
    }
    suite->setOpInputs(handle, op->getHandle(), handles.data(),
                       static_cast<std::uint32_t>(handles.size()));
}

} // namespace VlScenelib
