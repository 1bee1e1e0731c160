#pragma once

#include "VlAttribute/GroupAttribute.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace VlScenelibEngine {

/// Registers the engine's host suites ("ScenelibRuntimeHost", 2, and "VlScenelibServicesHost", 1)
/// and its op types. Further calls do nothing. [any-thread]
void registerScenelibEngine();

/// The application's op graph: the one that runtimes of type "runtime-async" work on. It lives as
/// long as the process, and so do the ops made here.
///
/// Every function may be called from any thread and returns without waiting for cooking, except
/// waitUntilIdle(). Errors are std::runtime_error with the value in the text.
namespace ApplicationGraph {

/// Edits that are applied together. Used from one thread at a time.
class Transaction {
public:
    Transaction();
    ~Transaction();
    Transaction(Transaction&&) noexcept;
    Transaction& operator=(Transaction&&) noexcept;

    /// Returns the new op's id: positive, unique in the process. Throws as setOpInputs() does.
    int createOp(const std::string& opType,
                 const VlAttribute::GroupAttribute& args = VlAttribute::GroupAttribute(),
                 const std::vector<int>& inputs = {});
    /// Null args count as empty. Throws when there is no such op.
    void setOpArgs(int opId, const std::string& opType, const VlAttribute::GroupAttribute& args);
    /// Replaces the inputs. Throws when one of the ops does not exist.
    void setOpInputs(int opId, const std::vector<int>& inputs);
    /// Has a location of the op cooked again and reported to the clients that view it, also through
    /// other ops and also when nothing has changed there: only a report takes away a value that a
    /// viewer shows on top of a location. What the op has not cooked yet stands for that of its
    /// inputs, which clients may have been told; nothing happens where nobody has cooked such a
    /// location. Throws when there is no such op.
    void recookLocation(int opId, const std::string& path);
    /// Applies what was recorded, in order, and empties the transaction. Returns the commit id.
    /// Throws when ops would form a cycle; the transaction is then empty and nothing is applied.
    std::int64_t commit();

private:
    class Impl;
    std::unique_ptr<Impl> impl;
};

/// Waits until every commit and request on the application's graph is finished and what it cooked
/// can be fetched. Returns false when that takes longer than `timeout`.
[[nodiscard]] bool waitUntilIdle(std::chrono::duration<double> timeout);

/// How many locations clients want that are not there yet: they are to be cooked, or wait for a
/// file that is being read. What is below them is not known and comes on top. Those are not counted
/// that are told of already and are being cooked again, nor those that are cooked at this moment.
/// Each client counts for itself. 0 when nothing is processed.
[[nodiscard]] std::size_t countLocationsToCome();

/// Whether every location that was cooked before this commit and is affected by it has been cooked
/// again: no event that a client fetches from now on is older than the commit. Other work, such as
/// locations that are cooked for the first time, may still be under way. False for an id that no
/// commit has had yet.
[[nodiscard]] bool isCommitCooked(std::int64_t commitId);

/// Cooks run so far: by it one tells what an edit has cost.
[[nodiscard]] std::uint64_t getNumberOfCooks();

/// Drops what is memoised; every cooked location is cooked and reported again.
void flushCaches();

} // namespace ApplicationGraph

} // namespace VlScenelibEngine
