#include "recooking.h"

#include "clientview.h"
#include "locationpath.h"
#include "optyperegistry.h"

#include <algorithm>
#include <typeinfo>
#include <unordered_set>
#include <utility>

namespace VlScenelibEngine {

namespace {

/// False also where there are none.
bool haveSameKind(const ChildContexts* left, const ChildContexts* right) {
    return left && right && typeid(*left) == typeid(*right);
}

/// Whether a child at `index` of one list is handed the same as the one at `otherIndex` of another.
bool hasSameContext(const ChildList& list, std::size_t index, const ChildList& other,
                    std::size_t otherIndex) {
    const ChildContexts* contexts = list.getContexts().get();
    const ChildContexts* otherContexts = other.getContexts().get();
    return haveSameKind(contexts, otherContexts)
               ? contexts->isSame(index, *otherContexts, otherIndex)
               : contexts == otherContexts;
}

/// What the op shows at a path; null where it has not cooked that.
CookNode* findCooked(const GraphOp& op, const LocationNames& names) {
    CookNode* node = op.top.get();
    for (const std::string_view name : names) {
        CookBlock* block = node->children ? node->getBlock() : nullptr;
        const std::size_t index = block ? node->children->find(name) : ChildList::kNone;
        CookNode* child = index == ChildList::kNone ? nullptr : &block->child(index);
        node = child && child->isCooked() ? child->resolve() : nullptr;
        if (!node) {
            return nullptr;
        }
    }
    return node;
}

bool hasSameNames(const ChildList::Ptr& list, const ChildList::Ptr& other) {
    if (!list || !other) {
        return list == other;
    }
    return list == other || list->getNames() == other->getNames();
}

} // namespace

Recooking::~Recooking() {
    buryRemoved();
}

// ---- edits of the graph

void Recooking::setType(GraphOp& op, const std::string& typeName) {
    std::shared_ptr<const OpType> type = op.type;
    if (typeName != op.typeName || !type) {
        type = findOpType(typeName);
    }
    if (typeName == op.typeName && type == op.type) {
        return;
    }
    op.typeName = typeName;
    op.type = std::move(type);
    dropMemo(op);
}

void Recooking::setArgs(GraphOp& op, const VlAttribute::GroupAttribute& args) {
    const auto changed = op.argSets.findChanged(op.args, args);
    op.args = args;
    if (changed.any()) {
        markWhere(op, *op.top, true, [&](const CookNode& node) { return changed[node.argSet]; });
    }
}

void Recooking::setInputs(GraphOp& op, std::vector<GraphOp*> inputs) {
    const std::vector<GraphOp*> before = std::exchange(op.inputs, std::move(inputs));
    if (before == op.inputs) {
        return;
    }
    for (GraphOp* input : before) {
        if (input) {
            std::erase(input->outputs, &op);
            if (std::find(op.inputs.begin(), op.inputs.end(), input) == op.inputs.end()) {
                op.forgetFarReadsOf(*input);
            }
        }
    }
    for (GraphOp* input : op.inputs) {
        if (input &&
            std::find(input->outputs.begin(), input->outputs.end(), &op) == input->outputs.end()) {
            input->outputs.push_back(&op);
        }
    }
    updateDepth(op);
    std::uint8_t changedInputs = 0;
    std::vector<bool> isChanged(std::max(before.size(), op.inputs.size()));
    for (std::size_t i = 0; i < isChanged.size(); ++i) {
        isChanged[i] = (i < before.size() ? before[i] : nullptr) != op.getInput(i);
        if (isChanged[i]) {
            changedInputs = static_cast<std::uint8_t>(changedInputs | CookNode::inputBit(i));
        }
    }
    const bool countChanged = before.size() != op.inputs.size();
    std::vector<const CookNode*> changedAliases;
    markWhere(op, *op.top, false, [&](const CookNode& node) {
        const bool isAliasOfChanged = node.getKind() == CookNode::Kind::Alias &&
                                      node.version < isChanged.size() && isChanged[node.version];
        if (isAliasOfChanged) {
            changedAliases.push_back(&node);
        }
        return isAliasOfChanged || (node.inputsRead & changedInputs) != 0 ||
               (countChanged && node.has(CookNode::kInputCount));
    });
    // Nothing leads from the former input to here any more: who views it through here is to let go
    // of it now.
    for (const CookNode* alias : changedAliases) {
        touch(op, alias->getLocationNames(), Touch::Subtree);
    }
}

void Recooking::recookLocation(GraphOp& op, const LocationNames& names) {
    std::vector<GraphOp*> pending{&op};
    std::unordered_set<const GraphOp*> seen{&op};
    while (!pending.empty()) {
        GraphOp& next = *pending.back();
        pending.pop_back();
        if (CookNode* node = findCooked(next, names)) {
            markDirty(node->getOp(), *node);
            node->set(CookNode::kForced);
            continue;
        }
        // It may be about to show what clients have been told of an input.
        for (GraphOp* input : next.inputs) {
            if (input && seen.insert(input).second) {
                pending.push_back(input);
            }
        }
    }
}

void Recooking::dropMemo(GraphOp& op) {
    static const LocationNames kRoot{"root"};
    touch(op, kRoot, Touch::Subtree);
    dropReadsBelow(op, *op.top);
    removedTops.push_back(std::exchange(op.top, std::make_unique<TopNode>(op)));
    op.dirtyByDepth.clear();
    std::erase(dirtyOps, &op);
}

void Recooking::remove(std::unique_ptr<GraphOp> op) {
    dropMemo(*op);
    for (GraphOp* input : op->inputs) {
        if (input) {
            std::erase(input->outputs, op.get());
        }
    }
    op->inputs.clear();
    removedOps.push_back(std::move(op));
}

void Recooking::updateDepth(GraphOp& op) {
    std::size_t depth = 0;
    for (const GraphOp* input : op.inputs) {
        depth = input ? std::max(depth, input->depth + 1) : depth;
    }
    if (depth != op.depth) {
        op.depth = depth;
        for (GraphOp* output : op.outputs) {
            updateDepth(*output);
        }
    }
}

// ---- propagation

void Recooking::touch(GraphOp& op, const LocationNames& names, Touch kind) {
    // Views, and those who read from elsewhere, learn of what is added from the parent.
    for (ClientView* view : op.views) {
        if (kind != Touch::Added) {
            view->onTouched(names, kind == Touch::Subtree);
        }
    }
    if (kind >= Touch::Changed && kind != Touch::Added && !op.readers.isEmpty()) {
        op.readers.forEach(joinPath(names), kind == Touch::Subtree,
                           [&](CookNode& reader) { markDirty(reader.getOp(), reader); });
    }
    for (GraphOp* output : op.outputs) {
        touchOutput(*output, op, names, kind);
    }
}

void Recooking::touchOutput(GraphOp& output, const GraphOp& changed, const LocationNames& names,
                            Touch kind) {
    CookNode* node = output.top.get();
    std::size_t depth = 0;
    for (const std::string_view name : names) {
        CookBlock* block = node->children ? node->getBlock() : nullptr;
        const std::size_t index = block ? node->children->find(name) : ChildList::kNone;
        if (index == ChildList::kNone) {
            return;
        }
        node = &block->child(index);
        ++depth;
        if (!node->isCooked()) {
            break;
        }
        if (node->getKind() == CookNode::Kind::Alias) {
            // When it is itself to be looked at again, that passes the change on.
            const bool isPassed = depth < names.size() || kind < Touch::Subtree;
            if (isPassed && output.getInput(node->version) == &changed) {
                touch(output, names, kind);
            }
            break;
        }
        if (node->getKind() == CookNode::Kind::Nothing) {
            break;
        }
    }
    if (kind == Touch::Rerun || depth != names.size()) {
        return;
    }
    if (output.readsOp(node->inputsRead, changed)) {
        markDirty(output, *node);
        if (kind == Touch::Forced && node->isCooked()) {
            node->set(CookNode::kForced);
        }
    }
    if (kind >= Touch::Subtree) {
        markReadersBelow(output, *node, changed);
    }
}

void Recooking::markReadersBelow(GraphOp& op, CookNode& node, const GraphOp& read) {
    if (!node.isCooked() && !node.has(CookNode::kWaits)) {
        return;
    }
    const bool isLocation = node.getKind() == CookNode::Kind::Location;
    const bool isAlias =
        node.getKind() == CookNode::Kind::Alias && op.getInput(node.version) == &read;
    if (isAlias) {
        touch(op, node.getLocationNames(), Touch::Subtree);
    }
    if (isAlias || op.readsOp(node.inputsRead, read)) {
        markDirty(op, node);
    }
    CookBlock* block = isLocation ? node.getBlock() : nullptr;
    for (std::size_t i = 0; block && i < block->size(); ++i) {
        markReadersBelow(op, block->child(i), read);
    }
}

void Recooking::markDirty(GraphOp& op, CookNode& node) {
    areWaitsAffected = areWaitsAffected || node.has(CookNode::kWaits);
    if (!node.isCooked() || node.has(CookNode::kDirty)) {
        return;
    }
    node.set(CookNode::kDirty);
    op.dirtyByDepth[node.getDepth()].push_back(&node);
    if (std::find(dirtyOps.begin(), dirtyOps.end(), &op) == dirtyOps.end()) {
        dirtyOps.push_back(&op);
    }
}

void Recooking::markWhere(GraphOp& op, CookNode& node, bool argReadersOnly,
                          const std::function<bool(const CookNode&)>& isAffected) {
    CookBlock* block = node.getKind() == CookNode::Kind::Location ? node.getBlock() : nullptr;
    for (std::size_t i = 0; block && i < block->size(); ++i) {
        CookNode& child = block->child(i);
        if (!child.isCooked() && !child.has(CookNode::kWaits)) {
            continue;
        }
        if (isAffected(child)) {
            markDirty(op, child);
        }
        if (!argReadersOnly || child.has(CookNode::kArgsBelow)) {
            markWhere(op, child, argReadersOnly, isAffected);
        }
    }
}

bool Recooking::isUsed(const GraphOp& op, const LocationNames& names) const {
    for (const ClientView* view : op.views) {
        if (view->isLive(names)) {
            return true;
        }
    }
    if (!op.readers.isEmpty() && op.readers.isRead(joinPath(names))) {
        return true;
    }
    for (const GraphOp* output : op.outputs) {
        const CookNode* node = output->top.get();
        std::size_t depth = 0;
        bool isAlias = false;
        while (depth < names.size() && !isAlias) {
            const CookBlock* block = node->children ? node->getBlock() : nullptr;
            const std::size_t index = block ? node->children->find(names[depth]) : ChildList::kNone;
            if (index == ChildList::kNone || !block->child(index).isCooked()) {
                break;
            }
            node = &block->child(index);
            isAlias = node->getKind() == CookNode::Kind::Alias;
            ++depth;
        }
        const bool readsIt = depth == names.size() && output->readsOp(node->inputsRead, op);
        if ((readsIt || (isAlias && output->getInput(node->version) == &op)) &&
            isUsed(*output, names)) {
            return true;
        }
    }
    return false;
}

// ---- cooking again

Recooking::Slice Recooking::takeSlice(std::size_t limit) {
    Slice slice;
    const auto shallowest =
        std::min_element(dirtyOps.begin(), dirtyOps.end(), [](const GraphOp* a, const GraphOp* b) {
            return std::pair(a->depth, a->id) < std::pair(b->depth, b->id);
        });
    slice.op = *shallowest;
    GraphOp& op = *slice.op;
    while (!op.dirtyByDepth.empty() && slice.nodes.size() < limit) {
        const auto level = op.dirtyByDepth.begin();
        // A slice does not reach into the next level, whose nodes this one's may remove.
        if (!slice.nodes.empty() && slice.nodes.front()->getDepth() != level->first) {
            break;
        }
        std::vector<CookNode*>& nodes = level->second;
        while (!nodes.empty() && slice.nodes.size() < limit) {
            CookNode* node = nodes.back();
            nodes.pop_back();
            node->clear(CookNode::kDirty);
            bool isRemoved = !node->isCooked();
            for (const CookNode* above = node; above && !isRemoved; above = above->parent) {
                isRemoved = above->has(CookNode::kRemoved);
            }
            if (isRemoved) {
                continue;
            }
            const LocationNames names = node->getLocationNames();
            if (isUsed(op, names)) {
                slice.nodes.push_back(node);
            } else {
                uncook(op, *node, names);
            }
        }
        if (nodes.empty()) {
            op.dirtyByDepth.erase(level);
        }
    }
    slice.outcomes.resize(slice.nodes.size());
    slice.awaited.resize(slice.nodes.size());
    if (op.dirtyByDepth.empty()) {
        dirtyOps.erase(std::find(dirtyOps.begin(), dirtyOps.end(), &op));
    }
    return slice;
}

void Recooking::cookEntry(Slice& slice, std::size_t i) {
    try {
        slice.outcomes[i] = cooker.recook(*slice.op, *slice.nodes[i]);
    } catch (const CookWaits& waits) {
        slice.awaited[i] = waits.awaited;
    }
}

void Recooking::storeSlice(Slice& slice) {
    for (std::size_t i = 0; i < slice.nodes.size(); ++i) {
        if (slice.outcomes[i]) {
            store(*slice.op, *slice.nodes[i], *slice.outcomes[i]);
        } else {
            awaited.push_back(std::move(slice.awaited[i]));
            uncook(*slice.op, *slice.nodes[i], slice.nodes[i]->getLocationNames());
        }
    }
}

void Recooking::uncook(GraphOp& op, CookNode& node, const LocationNames& names) {
    touch(op, names, Touch::Subtree);
    dropReadsBelow(op, node);
    retire(node.takeBlock());
    node.setTarget(nullptr);
    node.setKind(CookNode::Kind::Location);
    node.attrs = VlAttribute::GroupAttribute();
    node.children = nullptr;
    node.clear(CookNode::kForced);
    node.setUncooked();
}

void Recooking::store(GraphOp& op, CookNode& node, CookOutcome& outcome) {
    const LocationNames names = node.getLocationNames();
    const bool isLocation = outcome.result.kind == CookResult::Kind::Location;
    const bool isForced = node.has(CookNode::kForced);
    node.clear(CookNode::kForced);
    if (isLocation && node.getKind() == CookNode::Kind::Location) {
        Cooker::storeReads(op, node, outcome);
        storeLocation(op, node, names, outcome.result);
        if (isForced) {
            touch(op, names, Touch::Forced);
        }
        return;
    }
    const bool isSameAlias = outcome.result.kind == CookResult::Kind::SameAsInput &&
                             node.getKind() == CookNode::Kind::Alias &&
                             node.version == outcome.result.input &&
                             node.getTarget() == outcome.target;
    const bool isNothingStill = outcome.result.kind == CookResult::Kind::Nothing &&
                                node.getKind() == CookNode::Kind::Nothing;
    if (isSameAlias || isNothingStill) {
        Cooker::storeReads(op, node, outcome);
        return;
    }
    // Another kind of result, or an alias of another location: all below it is another.
    touch(op, names, Touch::Subtree);
    dropReadsBelow(op, node);
    retire(node.takeBlock());
    node.setTarget(nullptr);
    Cooker::storeReads(op, node, outcome);
    if (!isLocation) {
        node.attrs = VlAttribute::GroupAttribute();
        node.children = nullptr;
    }
    Cooker::storeResult(node, outcome);
}

void Recooking::storeLocation(GraphOp& op, CookNode& node, const LocationNames& names,
                              CookResult& result) {
    const bool sameNames = hasSameNames(node.children, result.children);
    const bool isEqual = sameNames && node.attrs == result.attrs;
    // Kept until the end: names in paths are views into it.
    const ChildList::Ptr before = std::exchange(node.children, std::move(result.children));
    node.attrs = std::move(result.attrs);
    node.version = Cooker::makeVersion();
    if (before != node.children && node.getBlock() && sameNames) {
        compareContexts(op, node, *before);
    } else if (before != node.children && node.getBlock()) {
        rearrangeChildren(op, node, names, before.get());
    }
    if (!sameNames && node.children && !op.outputs.empty()) {
        touchAdded(op, names, before.get(), *node.children);
    }
    touch(op, names, isEqual ? Touch::Rerun : Touch::Changed);
}

void Recooking::touchAdded(GraphOp& op, const LocationNames& names, const ChildList* before,
                           const ChildList& after) {
    LocationNames childNames = names;
    childNames.emplace_back();
    for (std::size_t i = 0; i < after.size(); ++i) {
        childNames.back() = after.getName(i);
        if (!before || before->find(childNames.back(), i) == ChildList::kNone) {
            touch(op, childNames, Touch::Added);
        }
    }
}

void Recooking::compareContexts(GraphOp& op, CookNode& node, const ChildList& before) {
    const ChildContexts* contexts = node.children->getContexts().get();
    const ChildContexts* contextsBefore = before.getContexts().get();
    CookBlock& block = *node.getBlock();
    if (haveSameKind(contexts, contextsBefore)) {
        for (const std::size_t i : contexts->findChanged(*contextsBefore, block.size())) {
            markDirty(op, block.child(i));
        }
    } else if (contexts != contextsBefore) {
        for (std::size_t i = 0; i < block.size(); ++i) {
            markDirty(op, block.child(i));
        }
    }
}

void Recooking::rearrangeChildren(GraphOp& op, CookNode& node, const LocationNames& names,
                                  const ChildList* before) {
    CookBlock& block = *node.getBlock();
    const std::size_t count = node.children ? node.children->size() : 0;
    std::vector<CookNode*> nodes(count);
    std::vector<bool> isKept(block.size());
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t old = before->find(node.children->getName(i), i);
        if (old == ChildList::kNone) {
            continue;
        }
        isKept[old] = true;
        nodes[i] = &block.child(old);
        if (!hasSameContext(*node.children, i, *before, old)) {
            markDirty(op, *nodes[i]);
        }
    }
    LocationNames childNames = names;
    childNames.emplace_back();
    for (std::size_t old = 0; old < isKept.size(); ++old) {
        CookNode& child = block.child(old);
        if (isKept[old]) {
            continue;
        }
        child.set(CookNode::kRemoved);
        if (child.isCooked() || child.has(CookNode::kWaits)) {
            childNames.back() = before->getName(old);
            touch(op, childNames, Touch::Subtree);
            dropReadsBelow(op, child);
        }
        removedNodes.push_back(&child);
    }
    if (count == 0) {
        retire(node.takeBlock());
    } else {
        block.rearrange(node, std::move(nodes));
    }
}

void Recooking::retire(std::unique_ptr<CookBlock> block) {
    if (!block) {
        return;
    }
    for (std::size_t i = 0; i < block->size(); ++i) {
        block->child(i).set(CookNode::kRemoved);
    }
    removedBlocks.push_back(std::move(block));
}

void Recooking::dropReadsBelow(GraphOp& op, CookNode& node) {
    op.dropFarReads(node);
    CookBlock* block = node.getKind() == CookNode::Kind::Location ? node.getBlock() : nullptr;
    for (std::size_t i = 0; block && i < block->size(); ++i) {
        dropReadsBelow(op, block->child(i));
    }
}

void Recooking::buryRemoved() {
    for (CookNode* node : removedNodes) {
        node->takeBlock();
        node->attrs = VlAttribute::GroupAttribute();
        node->children = nullptr;
        node->setUncooked();
        node->set(CookNode::kBuried);
    }
    removedNodes.clear();
    removedBlocks.clear();
    removedTops.clear();
    removedOps.clear();
}

} // namespace VlScenelibEngine
