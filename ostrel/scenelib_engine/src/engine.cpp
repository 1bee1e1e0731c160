#include "engine.h"

#include "locationpath.h"
#include "optyperegistry.h"

#include <algorithm>
#include <atomic>
#include <stdexcept>
#include <unordered_set>
#include <utility>

namespace VlScenelibEngine {

namespace {

constexpr std::size_t kSmallestBatch = 16;
constexpr std::size_t kFirstBatch = 512;
constexpr std::size_t kLargestBatch = 16384;
constexpr std::chrono::microseconds kShortBatch{1000};
constexpr std::chrono::microseconds kLongBatch{4000};

/// Ids are unique in the process, so that one op graph's are never taken for another's.
std::atomic<int> lastOpId{0};
std::atomic<std::int64_t> lastCommitId{0};

/// Whether the op can be reached from its own inputs.
bool isOnCycle(const OpRecord& op) {
    std::vector<const OpRecord*> stack{&op};
    std::unordered_set<const OpRecord*> seen;
    while (!stack.empty()) {
        const OpRecord* next = stack.back();
        stack.pop_back();
        for (const std::shared_ptr<OpRecord>& input : next->inputs) {
            if (input.get() == &op) {
                return true;
            }
            if (input && seen.insert(input.get()).second) {
                stack.push_back(input.get());
            }
        }
    }
    return false;
}

} // namespace

Engine::Engine(int numberOfWorkers)
    : workers(numberOfWorkers), batchSize(kFirstBatch), coordinator([this] { run(); }) {}

Engine::~Engine() {
    stop();
}

void Engine::stop() {
    inbox->postStop();
    if (coordinator.joinable()) {
        coordinator.join();
    }
}

// ---- the graph

std::shared_ptr<OpRecord> Engine::createOp() {
    auto record = std::make_shared<OpRecord>(++lastOpId, inbox);
    const std::lock_guard lock(editMutex);
    records[record->id] = record;
    return record;
}

std::shared_ptr<OpRecord> Engine::findOp(int opId) {
    const std::lock_guard lock(editMutex);
    const auto found = records.find(opId);
    return found == records.end() ? nullptr : found->second.lock();
}

std::int64_t Engine::commit(std::vector<GraphEdit> edits) {
    // Freed after the commit has been posted: an op must not end before it ceases to be an input.
    std::vector<std::pair<OpRecord*, std::vector<std::shared_ptr<OpRecord>>>> before;
    const std::lock_guard lock(editMutex);
    for (const GraphEdit& edit : edits) {
        if (edit.kind == GraphEdit::Kind::Inputs) {
            before.emplace_back(edit.op.get(), std::exchange(edit.op->inputs, edit.inputs));
        }
    }
    for (const auto& [op, inputs] : before) {
        if (isOnCycle(*op)) {
            const int opId = op->id;
            for (auto entry = before.rbegin(); entry != before.rend(); ++entry) {
                std::swap(entry->first->inputs, entry->second);
            }
            throw std::runtime_error("Op " + std::to_string(opId) +
                                     " can't have these inputs: it would depend on itself");
        }
    }
    for (const GraphEdit& edit : edits) {
        if (edit.kind == GraphEdit::Kind::ClientOp) {
            edit.view->announceOp();
        }
    }
    const std::int64_t id = ++lastCommitId;
    inbox->postCommit({id, std::move(edits)});
    return id;
}

bool Engine::isCommitCooked(std::int64_t commitId) {
    const std::lock_guard lock(stateMutex);
    return isCooked(commitId);
}

bool Engine::isCooked(std::int64_t commitId) const {
    if (commitId > lastCommitId.load()) {
        return false;
    }
    // Ids of other graphs lie between this one's.
    return cookedCommit >= std::min(commitId, inbox->getNewestCommit());
}

// ---- clients

std::shared_ptr<ClientView> Engine::createView(std::shared_ptr<ClientGroup> group) {
    const std::lock_guard lock(stateMutex);
    views.push_back(std::make_shared<ClientView>(std::move(group)));
    return views.back();
}

void Engine::closeView(const std::shared_ptr<ClientView>& view) {
    std::shared_ptr<OpRecord> op;
    {
        const std::lock_guard lock(stateMutex);
        view->close();
        std::erase(views, view);
        if (const auto found = viewed.find(view.get()); found != viewed.end()) {
            op = std::move(found->second);
            viewed.erase(found);
        }
    }
    inbox->poke();
}

bool Engine::isDataCurrent(ClientView& view, const std::string& path, std::int64_t commitId) {
    const std::lock_guard lock(stateMutex);
    return isCooked(commitId < 0 ? inbox->getNewestCommit() : commitId) && view.isTold(path);
}

std::size_t Engine::countToCome() {
    const std::lock_guard lock(stateMutex);
    std::size_t count = 0;
    for (const std::shared_ptr<ClientView>& view : views) {
        count += view->countToCome();
    }
    return count;
}

// ---- the coordinator

void Engine::run() {
    auto activity = Inbox::Activity::Idle;
    for (;;) {
        Inbox::Letters letters = inbox->take(activity);
        if (letters.isStop) {
            return;
        }
        apply(letters);
        activity = step();
    }
}

void Engine::apply(Inbox::Letters& letters) {
    const std::lock_guard lock(stateMutex);
    for (GraphCommit& commit : letters.commits) {
        for (GraphEdit& edit : commit.edits) {
            apply(edit);
        }
        appliedCommit = commit.id;
    }
    for (const int opId : letters.releasedOps) {
        if (auto op = ops.extract(opId)) {
            recooking.remove(std::move(op.mapped()));
        }
        const std::lock_guard editLock(editMutex);
        records.erase(opId);
    }
    if (letters.isFlush) {
        dropAllMemos();
    }
    if (letters.isArrival) {
        for (const std::shared_ptr<ClientView>& view : views) {
            view->resumeArrived();
        }
    }
    setSettled(false);
}

void Engine::apply(GraphEdit& edit) {
    switch (edit.kind) {
    case GraphEdit::Kind::Args: {
        GraphOp& op = ensureOp(*edit.op);
        recooking.setType(op, edit.typeName);
        recooking.setArgs(op, edit.args ? edit.args : VlAttribute::GroupAttribute::Empty());
        break;
    }
    case GraphEdit::Kind::Inputs: {
        std::vector<GraphOp*> inputs;
        inputs.reserve(edit.inputs.size());
        for (const std::shared_ptr<OpRecord>& input : edit.inputs) {
            inputs.push_back(input ? &ensureOp(*input) : nullptr);
        }
        recooking.setInputs(ensureOp(*edit.op), std::move(inputs));
        break;
    }
    case GraphEdit::Kind::ClientOp:
        edit.view->arriveAtOp();
        if (!edit.view->isOver()) {
            edit.view->setOp(edit.op ? &ensureOp(*edit.op) : nullptr);
            viewed[edit.view.get()] = std::move(edit.op);
        }
        break;
    case GraphEdit::Kind::Recook:
        if (const auto names = splitPath(edit.path)) {
            recooking.recookLocation(ensureOp(*edit.op), *names);
        }
        break;
    }
}

GraphOp& Engine::ensureOp(const OpRecord& record) {
    std::unique_ptr<GraphOp>& op = ops[record.id];
    if (!op) {
        op = std::make_unique<GraphOp>(record.id);
        op->type = findOpType(op->typeName);
    }
    return *op;
}

void Engine::dropAllMemos() {
    for (const auto& [id, op] : ops) {
        recooking.dropMemo(*op);
    }
}

void Engine::setSettled(bool isSettled) {
    if (std::exchange(settled, isSettled) == isSettled) {
        return;
    }
    for (const std::shared_ptr<ClientView>& view : views) {
        view->setSettled(isSettled);
        if (isSettled) {
            view->getEvents().reconsiderOwing();
        }
    }
}

bool Engine::dropUnwantedWaiting() {
    bool isAnyDropped = false;
    recooking.letGo();
    for (const std::shared_ptr<ClientView>& view : views) {
        view->getWaiting().letGo();
        isAnyDropped = view->dropUnwantedWaiting() || isAnyDropped;
    }
    return isAnyDropped;
}

bool Engine::isWaiting() const {
    return std::ranges::any_of(views,
                               [](const auto& view) { return !view->getWaiting().isEmpty(); });
}

Inbox::Activity Engine::step() {
    std::unique_lock lock(stateMutex);
    if (!recooking.isClean()) {
        recook(lock);
        return Inbox::Activity::Working;
    }
    cookedCommit = appliedCommit;
    recooking.buryRemoved();
    const bool areWaitsAffected = recooking.takeWaitsAffected();
    for (const std::shared_ptr<ClientView>& view : views) {
        if (areWaitsAffected) {
            view->resumeWaiting();
        }
        view->update();
    }
    if (cookWanted(lock)) {
        setSettled(false);
        return Inbox::Activity::Working;
    }
    if (dropUnwantedWaiting()) {
        return Inbox::Activity::Working;
    }
    const bool isAnyWaiting = isWaiting();
    setSettled(!isAnyWaiting);
    return isAnyWaiting ? Inbox::Activity::Waiting : Inbox::Activity::Idle;
}

void Engine::recook(std::unique_lock<AdaptiveMutex>& lock) {
    Recooking::Slice slice = recooking.takeSlice(batchSize);
    if (slice.nodes.empty()) {
        return;
    }
    lock.unlock();
    const auto begin = std::chrono::steady_clock::now();
    workers.forEach(slice.nodes.size(), [&](std::size_t i) { recooking.cookEntry(slice, i); });
    const auto elapsed = std::chrono::steady_clock::now() - begin;
    lock.lock();
    if (slice.nodes.size() == batchSize) {
        adaptBatch(elapsed);
    }
    recooking.storeSlice(slice);
}

bool Engine::cookWanted(std::unique_lock<AdaptiveMutex>& lock) {
    // Pieces small enough that all threads get some.
    const std::size_t pieceSize =
        std::max<std::size_t>(1, batchSize / (4 * workers.getNumberOfWorkers()));
    std::vector<Piece> pieces;
    std::size_t count = 0;
    std::size_t idleViews = 0;
    while (count < batchSize && idleViews < views.size()) {
        nextView = (nextView + 1) % views.size();
        Piece piece{views[nextView], {}, {}};
        if (!piece.view->takeWork(pieceSize, piece.work)) {
            ++idleViews;
            continue;
        }
        idleViews = 0;
        count += piece.work.to - piece.work.from;
        pieces.push_back(std::move(piece));
    }
    if (pieces.empty()) {
        return false;
    }
    lock.unlock();
    const auto begin = std::chrono::steady_clock::now();
    workers.forEach(pieces.size(), [&](std::size_t i) { cookPiece(pieces[i]); });
    const auto elapsed = std::chrono::steady_clock::now() - begin;
    lock.lock();
    if (count >= batchSize) {
        adaptBatch(elapsed);
    }
    for (const Piece& piece : pieces) {
        if (!piece.view->isOver()) {
            piece.view->finishWork(piece.work, piece.waiting);
        }
    }
    return true;
}

void Engine::cookPiece(Piece& piece) {
    CookNode& data = *piece.work.data;
    GraphOp& op = data.getOp();
    CookBlock& block = data.ensureBlock();
    InputPlaces places(cooker, op, data);
    for (std::size_t i = piece.work.from; i < piece.work.to; ++i) {
        // At least one is cooked, so that every batch gets on.
        if (i > piece.work.from && inbox->hasLetters()) {
            return;
        }
        try {
            cooker.ensureCooked(op, block.child(i), places);
        } catch (const CookWaits& waits) {
            piece.waiting.emplace_back(i, waits.awaited);
        }
    }
}

void Engine::adaptBatch(std::chrono::steady_clock::duration elapsed) {
    if (elapsed < kShortBatch) {
        batchSize = std::min(batchSize * 2, kLargestBatch);
    } else if (elapsed > kLongBatch) {
        batchSize = std::max(batchSize / 2, kSmallestBatch);
    }
}

} // namespace VlScenelibEngine
