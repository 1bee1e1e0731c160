#pragma once

#include "VlScenelib/ScenelibRuntimeSuite.h"

#include <cstdint>
#include <memory>
#include <string>

namespace VlScenelib {

class Op;
class Transaction;

/// A scene runtime: an op graph and the clients that view it. Cooks on its own threads; every call
/// returns at once.
class ScenelibRuntime {
public:
    /// Wraps and takes over what the host suite "ScenelibRuntimeHost" gave. Neither may be null;
    /// the table must outlive the runtime.
    static std::shared_ptr<ScenelibRuntime> CreateAndSteal(ScenelibRuntimeHandle handle,
                                                           const ScenelibRuntimeSuite* suite);
    ~ScenelibRuntime();
    ScenelibRuntime(const ScenelibRuntime&) = delete;
    ScenelibRuntime& operator=(const ScenelibRuntime&) = delete;

    [[nodiscard]] std::shared_ptr<Transaction> createTransaction();
    /// Applies the transaction and empties it. Returns the commit id: ids start at 1 and are one
    /// sequence for the whole process. A null transaction changes nothing and returns -1.
    /// Throws std::runtime_error, with nothing applied, when ops would form a cycle.
    std::int64_t commit(const std::shared_ptr<Transaction>& transaction);
    [[nodiscard]] const std::string& getRootLocationPath() const noexcept { return rootPath; }
    /// Null when there is no such op.
    [[nodiscard]] std::shared_ptr<Op> getOpFromOpId(int opId);
    /// Whether cooking is going on. When not, all that there is to report can be fetched.
    [[nodiscard]] bool isProcessing() const;
    /// Drops what is memoised; every cooked location is cooked and reported again.
    void flushCaches();

private:
    ScenelibRuntime(ScenelibRuntimeHandle stolen, const ScenelibRuntimeSuite* runtimeSuite);

    ScenelibRuntimeHandle handle;
    const ScenelibRuntimeSuite* suite;
    std::string rootPath;
};

} // namespace VlScenelib
