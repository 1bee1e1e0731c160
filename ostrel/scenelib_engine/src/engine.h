#pragma once

#include "adaptivemutex.h"
#include "clientview.h"
#include "cooker.h"
#include "graphedit.h"
#include "inbox.h"
#include "oprecord.h"
#include "recooking.h"
#include "workerpool.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

namespace VlScenelibEngine {

/// One op graph, the clients that view it, and the thread that keeps the two in step.
///
/// That thread, the coordinator, is the only one to change ops, cook trees and what clients view.
/// In turns it applies commits, has what they affect cooked again, and has cooked what clients
/// newly want, each in small batches on a pool of threads, so that news are soon looked at. The
/// state lock is held while it changes something, never while anything cooks. Other threads take it
/// to change requests and to fetch events; commits go through the inbox.
///
/// All public members: [any-thread]
class Engine {
public:
    /// With 0 workers, as many threads cook as the machine runs at once.
    explicit Engine(int numberOfWorkers = 0);
    /// Stops; what is being cooked at the moment is finished first.
    ~Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;
    /// Stops the coordinator for good. For the end of the process.
    void stop();

    // ---- the graph

    [[nodiscard]] std::shared_ptr<OpRecord> createOp();
    /// Null when there is none.
    [[nodiscard]] std::shared_ptr<OpRecord> findOp(int opId);
    /// Returns the commit id. Throws std::runtime_error when ops would form a cycle, and then
    /// applies nothing.
    std::int64_t commit(std::vector<GraphEdit> edits);
    void flushCaches() { inbox->postFlush(); }
    /// Whether all that was cooked before the commit and is affected by it has been cooked again:
    /// no event that is fetched from now on is older than the commit. False for an id that no
    /// commit has had yet.
    [[nodiscard]] bool isCommitCooked(std::int64_t commitId);

    [[nodiscard]] bool isProcessing() const { return !inbox->isIdle(); }
    [[nodiscard]] bool waitUntilIdle(std::chrono::duration<double> timeout) const {
        return inbox->waitUntilIdle(timeout);
    }

    // ---- clients

    [[nodiscard]] std::shared_ptr<ClientView> createView(std::shared_ptr<ClientGroup> group);
    void closeView(const std::shared_ptr<ClientView>& view);
    /// Runs `change` on a view, which may change its requests, and sees to what follows.
    template <typename Change>
    void request(ClientView& view, Change&& change) {
        {
            const std::lock_guard lock(stateMutex);
            change(view);
        }
        inbox->poke();
    }
    /// Runs `query` on a view without changing its requests.
    template <typename Query>
    decltype(auto) query(ClientView& view, Query&& theQuery) {
        const std::lock_guard lock(stateMutex);
        return theQuery(view);
    }
    /// Locations that clients want and that are not there yet, as far as they are known.
    [[nodiscard]] std::size_t countToCome();
    /// Whether what was fetched for the path reflects the commit (-1: the newest).
    [[nodiscard]] bool isDataCurrent(ClientView& view, const std::string& path,
                                     std::int64_t commitId);

    /// Cooks run so far.
    [[nodiscard]] std::uint64_t getNumberOfCooks() const noexcept {
        return cooker.getNumberOfCooks();
    }

private:
    /// Children of some client's location that are cooked in one go by one thread.
    struct Piece {
        std::shared_ptr<ClientView> view;
        ClientWork work;
        WaitingChildren waiting;
    };

    void run();
    void apply(Inbox::Letters& letters);
    void apply(GraphEdit& edit);
    [[nodiscard]] GraphOp& ensureOp(const OpRecord& record);
    /// One batch of work.
    Inbox::Activity step();
    void recook(std::unique_lock<AdaptiveMutex>& lock);
    bool cookWanted(std::unique_lock<AdaptiveMutex>& lock);
    void cookPiece(Piece& piece);
    /// Once all is cooked but for what waits. Whether there was any.
    bool dropUnwantedWaiting();
    [[nodiscard]] bool isWaiting() const;
    [[nodiscard]] bool isCooked(std::int64_t commitId) const;
    void setSettled(bool isSettled);
    void dropAllMemos();
    void adaptBatch(std::chrono::steady_clock::duration elapsed);

    std::shared_ptr<Inbox> inbox = std::make_shared<Inbox>();
    WorkerPool workers;

    /// Guards what those who edit see of the graph, and the order of commits.
    std::mutex editMutex;
    std::unordered_map<int, std::weak_ptr<OpRecord>> records;

    /// Guards everything below.
    AdaptiveMutex stateMutex;
    Cooker cooker{[box = inbox] { box->postArrival(); }};
    Recooking recooking{cooker};
    std::unordered_map<int, std::unique_ptr<GraphOp>> ops;
    std::vector<std::shared_ptr<ClientView>> views;
    /// What each client views, kept alive.
    std::unordered_map<const ClientView*, std::shared_ptr<OpRecord>> viewed;
    std::int64_t appliedCommit = 0;
    /// The last commit that nothing cooked is older than.
    std::int64_t cookedCommit = 0;
    bool settled = false;
    /// Cooks per batch, so that one takes a millisecond or two.
    std::size_t batchSize;
    std::size_t nextView = 0;

    std::thread coordinator;
};

} // namespace VlScenelibEngine
