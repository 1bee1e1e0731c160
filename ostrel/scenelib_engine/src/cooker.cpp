#include "cooker.h"

#include <atomic>
#include <utility>

namespace VlScenelibEngine {

Cooker::Place Cooker::locate(GraphOp& op, const LocationNames& names) {
    Place place;
    CookNode* current = op.top.get();
    for (const std::string_view name : names) {
        CookNode* child = cookedChild(*current, name, ChildList::kNone);
        current = child ? child->resolve() : nullptr;
        if (!current) {
            return place;
        }
        ++place.depth;
    }
    place.node = current;
    return place;
}

CookNode* Cooker::cookedChild(CookNode& parent, std::string_view name, std::size_t hint) {
    if (!parent.children) {
        return nullptr;
    }
    const std::size_t index = parent.children->find(name, hint);
    if (index == ChildList::kNone) {
        return nullptr;
    }
    CookNode& child = parent.ensureBlock().child(index);
    if (!child.isCooked()) {
        GraphOp& op = parent.getOp();
        InputPlaces places(*this, op, parent);
        ensureCooked(op, child, places);
    }
    return &child;
}

void Cooker::ensureCooked(GraphOp& op, CookNode& node, InputPlaces& places) {
    while (!node.claim()) {
        if (node.isCooked()) {
            return;
        }
        node.awaitEndOfClaim();
    }
    if (node.has(CookNode::kWaits)) {
        node.clear(CookNode::kWaits);
    }
    CookRun run(*this, op, node, places);
    CookOutcome outcome;
    try {
        outcome = run.run();
    } catch (const CookWaits&) {
        // An edit of what it has read may mean that it needn't wait.
        outcome = run.takeReads();
        storeReads(op, node, outcome);
        node.set(CookNode::kWaits);
        node.abandon();
        throw;
    }
    numberOfCooks.increment();
    storeReads(op, node, outcome);
    storeResult(node, outcome);
    node.publish();
}

CookOutcome Cooker::recook(GraphOp& op, CookNode& node) {
    InputPlaces places(*this, op, *node.parent);
    CookOutcome outcome = CookRun(*this, op, node, places).run();
    numberOfCooks.increment();
    return outcome;
}

std::uint64_t Cooker::makeVersion() noexcept {
    // Each thread takes them by the thousand, so that cooks don't meet at one counter.
    constexpr std::uint64_t kShare = 1024;
    static std::atomic<std::uint64_t> nextShare{1};
    thread_local std::uint64_t next = 0;
    thread_local std::uint64_t end = 0;
    if (next == end) {
        next = nextShare.fetch_add(kShare, std::memory_order_relaxed);
        end = next + kShare;
    }
    return next++;
}

void Cooker::storeReads(GraphOp& op, CookNode& node, CookOutcome& outcome) {
    node.inputsRead = outcome.inputsRead;
    node.argSet =
        outcome.allArgs ? CookNode::kAllArgs : op.argSets.add(std::move(outcome.argNames));
    if (outcome.inputCount && !node.has(CookNode::kInputCount)) {
        node.set(CookNode::kInputCount);
    } else if (!outcome.inputCount && node.has(CookNode::kInputCount)) {
        node.clear(CookNode::kInputCount);
    }
    if (node.argSet != 0) {
        for (CookNode* above = node.parent; above && !above->has(CookNode::kArgsBelow);
             above = above->parent) {
            above->set(CookNode::kArgsBelow);
        }
    }
    op.dropFarReads(node);
    if (!outcome.farReads.empty()) {
        op.setFarReads(node, std::move(outcome.farReads));
    }
}

void Cooker::storeResult(CookNode& node, CookOutcome& outcome) {
    CookResult& result = outcome.result;
    switch (result.kind) {
    case CookResult::Kind::Location:
        node.setKind(CookNode::Kind::Location);
        node.attrs = std::move(result.attrs);
        node.children = std::move(result.children);
        node.version = makeVersion();
        break;
    case CookResult::Kind::Nothing:
        node.setKind(CookNode::Kind::Nothing);
        break;
    case CookResult::Kind::SameAsInput:
        node.setKind(CookNode::Kind::Alias);
        node.version = result.input;
        node.setTarget(outcome.target);
        break;
    }
}

} // namespace VlScenelibEngine
