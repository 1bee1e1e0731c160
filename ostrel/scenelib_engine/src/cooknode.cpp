#include "cooknode.h"

namespace VlScenelibEngine {

CookNode::~CookNode() {
    takeBlock();
}

bool CookNode::claim() noexcept {
    std::uint16_t seen = bits.load(std::memory_order_acquire);
    while ((seen & kStateMask) == 0) {
        if (bits.compare_exchange_weak(seen, static_cast<std::uint16_t>(seen | kCooking),
                                       std::memory_order_acquire)) {
            return true;
        }
    }
    return false;
}

void CookNode::publish() noexcept {
    // Nobody else writes while it is claimed.
    const std::uint16_t claimed = bits.load(std::memory_order_relaxed);
    bits.store(static_cast<std::uint16_t>((claimed & ~kStateMask) | kCooked),
               std::memory_order_release);
    bits.notify_all();
}

void CookNode::abandon() noexcept {
    setUncooked();
    bits.notify_all();
}

void CookNode::awaitEndOfClaim() const noexcept {
    std::uint16_t seen = bits.load(std::memory_order_acquire);
    while ((seen & kStateMask) == kCooking) {
        bits.wait(seen, std::memory_order_acquire);
        seen = bits.load(std::memory_order_acquire);
    }
}

void CookNode::setKind(Kind kind) noexcept {
    const auto others =
        static_cast<unsigned>(bits.load(std::memory_order_relaxed)) & ~unsigned{kKindMask};
    bits.store(static_cast<std::uint16_t>(others | static_cast<unsigned>(kind) << kKindShift),
               std::memory_order_relaxed);
}

CookBlock& CookNode::ensureBlock() {
    if (CookBlock* block = getBlock()) {
        return *block;
    }
    auto fresh = std::make_unique<CookBlock>(*this, children->size());
    void* expected = nullptr;
    if (link.compare_exchange_strong(expected, fresh.get(), std::memory_order_acq_rel)) {
        return *fresh.release();
    }
    return *static_cast<CookBlock*>(expected);
}

std::unique_ptr<CookBlock> CookNode::takeBlock() noexcept {
    if (getKind() != Kind::Location) {
        return nullptr;
    }
    return std::unique_ptr<CookBlock>(static_cast<CookBlock*>(link.exchange(nullptr)));
}

const CookNode* CookNode::resolve() const noexcept {
    const CookNode* node = this;
    while (node && node->getKind() == Kind::Alias) {
        node = node->getTarget();
    }
    return node && node->getKind() == Kind::Location ? node : nullptr;
}

LocationNames CookNode::getLocationNames() const {
    LocationNames names(getDepth());
    const CookNode* node = this;
    for (std::size_t i = names.size(); i-- > 0; node = node->parent) {
        names[i] = node->getName();
    }
    return names;
}

GraphOp& CookNode::getOp() const noexcept {
    const CookNode* node = this;
    while (node->parent) {
        node = node->parent;
    }
    return static_cast<const TopNode*>(node)->op;
}

std::size_t CookNode::getDepth() const noexcept {
    std::size_t depth = 0;
    for (const CookNode* node = parent; node; node = node->parent) {
        ++depth;
    }
    return depth;
}

TopNode::TopNode(GraphOp& owner) : op(owner) {
    children = rootList();
}

const ChildList::Ptr& TopNode::rootList() {
    static const ChildList::Ptr list = ChildList::create(VlAttribute::StringAttribute("root"));
    return list;
}

CookBlock::CookBlock(CookNode& parent, std::size_t size)
    : count(size), slab(std::make_unique<CookNode[]>(size)) {
    for (std::size_t i = 0; i < size; ++i) {
        slab[i].parent = &parent;
        slab[i].index = static_cast<std::uint32_t>(i);
    }
}

void CookBlock::rearrange(CookNode& parent, std::vector<CookNode*> nodes) {
    // Those that left in an earlier change and have met their end since.
    std::erase_if(
        added, [](const std::unique_ptr<CookNode>& node) { return node->has(CookNode::kBuried); });
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (!nodes[i]) {
            added.push_back(std::make_unique<CookNode>());
            nodes[i] = added.back().get();
            nodes[i]->parent = &parent;
        }
        nodes[i]->index = static_cast<std::uint32_t>(i);
    }
    order = std::move(nodes);
    count = order.size();
}

} // namespace VlScenelibEngine
