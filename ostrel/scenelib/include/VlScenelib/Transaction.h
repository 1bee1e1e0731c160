#pragma once

#include "VlScenelib/ScenelibRuntimeSuite.h"

#include "VlAttribute/GroupAttribute.h"

#include <memory>
#include <string>
#include <vector>

namespace VlScenelib {

class Client;
class Op;

/// Edits that are applied together by `ScenelibRuntime::commit`. Made by
/// `ScenelibRuntime::createTransaction`; used from one thread at a time.
///
/// Clients and ops that it creates can be used at once, and are part of the scene after the commit.
/// A null client or op makes a call do nothing, except where a null op has a meaning.
class Transaction {
public:
    /// Takes over the handle, which must not be null.
    Transaction(ScenelibTransactionHandle stolen,
                const ScenelibRuntimeSuite* runtimeSuite) noexcept;
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// Views nothing until it is given an op.
    [[nodiscard]] std::shared_ptr<Client> createClient();
    /// A "no-op" without inputs until told otherwise.
    [[nodiscard]] std::shared_ptr<Op> createOp();
    /// With a null op the client views nothing.
    void setClientOp(const std::shared_ptr<Client>& client, const std::shared_ptr<Op>& op);
    /// Null args count as empty.
    void setOpArgs(const std::shared_ptr<Op>& op, const std::string& opType,
                   const VlAttribute::GroupAttribute& args);
    /// Replaces the inputs. A null among them is an input that shows nothing.
    void setOpInputs(const std::shared_ptr<Op>& op, const std::vector<std::shared_ptr<Op>>& inputs);

    /// Borrowed.
    [[nodiscard]] ScenelibTransactionHandle getHandle() const noexcept { return handle; }

private:
    ScenelibTransactionHandle handle;
    const ScenelibRuntimeSuite* suite;
};

} // namespace VlScenelib
