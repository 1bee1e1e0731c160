#pragma once

#include "VlScenelibEngine/ChildList.h"

#include "VlAttribute/GroupAttribute.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace VlScenelibEngine {

class CookBlock;
class GraphOp;

/// The names from the root to a location, the root's included.
using LocationNames = std::vector<std::string_view>;

/// A location of one op, cooked or not yet: it exists because its parent's result lists it. Its
/// address is stable as long as it does.
///
/// Threads: while cooks run, a node is written by the one thread that claimed it (Uncooked to
/// Cooking) and may be read by others once it is Cooked; blocks of children are only added. All
/// other changes are made by the coordinator while no cook runs.
class CookNode {
public:
    enum class Kind : std::uint8_t {
        Location,
        Nothing, ///< does not exist; only a root
        Alias,   ///< what another op has at the same path, and so is everything below it
    };
    /// The argument set of a cook that read all arguments.
    static constexpr std::uint8_t kAllArgs = 255;

    CookNode() noexcept = default;
    ~CookNode();
    CookNode(const CookNode&) = delete;
    CookNode& operator=(const CookNode&) = delete;

    // ---- state; see the class comment for who may call what

    [[nodiscard]] bool isCooked() const noexcept {
        return (bits.load(std::memory_order_acquire) & kStateMask) == kCooked;
    }
    /// True for the one caller who is to cook it.
    [[nodiscard]] bool claim() noexcept;
    /// Ends a claim: it is cooked.
    void publish() noexcept;
    /// Ends a claim: it is not, for now.
    void abandon() noexcept;
    /// Waits until another thread's claim has ended.
    void awaitEndOfClaim() const noexcept;
    void setUncooked() noexcept { bits.fetch_and(static_cast<std::uint16_t>(~kStateMask)); }

    [[nodiscard]] bool has(std::uint16_t flag) const noexcept {
        return (bits.load(std::memory_order_relaxed) & flag) != 0;
    }
    void set(std::uint16_t flag) noexcept { bits.fetch_or(flag, std::memory_order_relaxed); }
    void clear(std::uint16_t flag) noexcept {
        bits.fetch_and(static_cast<std::uint16_t>(~flag), std::memory_order_relaxed);
    }

    static constexpr std::uint16_t kDirty = 0x10;      ///< is to be cooked again
    static constexpr std::uint16_t kArgsBelow = 0x20;  ///< something below it read arguments
    static constexpr std::uint16_t kReads = 0x40;      ///< has entries in its op's read registry
    static constexpr std::uint16_t kInputCount = 0x80; ///< read the number of inputs
    static constexpr std::uint16_t kRemoved = 0x100;   ///< no longer listed; waits for its end
    static constexpr std::uint16_t kBuried = 0x200;    ///< removed, and nobody points to it
    static constexpr std::uint16_t kForced = 0x400;    ///< dirty, and its viewers are to hear of it
    static constexpr std::uint16_t kWaits = 0x800;     ///< not cooked, as its cook waits; what that
                                                       ///< has read until then is recorded

    [[nodiscard]] Kind getKind() const noexcept {
        return static_cast<Kind>((bits.load(std::memory_order_relaxed) & kKindMask) >> kKindShift);
    }
    void setKind(Kind kind) noexcept;

    // ---- result

    /// Null unless a Location.
    VlAttribute::GroupAttribute attrs;
    ChildList::Ptr children;
    /// Of a Location: a number that this result bears and no other. Of an Alias: the index of the
    /// input.
    std::uint64_t version = 0;

    /// Of an Alias: the node at the same path in the input, itself perhaps an alias; null when the
    /// input has nothing there.
    [[nodiscard]] CookNode* getTarget() const noexcept {
        return static_cast<CookNode*>(link.load(std::memory_order_acquire));
    }
    void setTarget(CookNode* target) noexcept { link.store(target, std::memory_order_release); }

    /// Of a Location: the children's nodes, null until somebody wanted one.
    [[nodiscard]] CookBlock* getBlock() const noexcept {
        return static_cast<CookBlock*>(link.load(std::memory_order_acquire));
    }
    /// The same, made when there is none. `children` must not be null. [any-thread]
    [[nodiscard]] CookBlock& ensureBlock();
    std::unique_ptr<CookBlock> takeBlock() noexcept;

    /// The node that holds the data: itself, or what its chain of aliases leads to. Null when that
    /// is nothing. The node must be cooked.
    [[nodiscard]] const CookNode* resolve() const noexcept;
    [[nodiscard]] CookNode* resolve() noexcept {
        return const_cast<CookNode*>(static_cast<const CookNode*>(this)->resolve());
    }

    // ---- place

    CookNode* parent = nullptr;
    /// In the parent's child list.
    std::uint32_t index = 0;
    /// Which inputs it read at its own path: bit i for input i, bit 7 for 7 and above.
    std::uint8_t inputsRead = 0;
    /// Which arguments it read: an id of its op's ArgSets; 0: none.
    std::uint8_t argSet = 0;

    [[nodiscard]] std::string_view getName() const noexcept {
        return parent->children->getName(index);
    }
    [[nodiscard]] LocationNames getLocationNames() const;
    [[nodiscard]] GraphOp& getOp() const noexcept;
    /// 1 for a root.
    [[nodiscard]] std::size_t getDepth() const noexcept;

    [[nodiscard]] static std::uint8_t inputBit(std::size_t input) noexcept {
        return static_cast<std::uint8_t>(1U << (input < 7 ? input : 7));
    }

private:
    static constexpr std::uint16_t kStateMask = 0x3;
    static constexpr std::uint16_t kCooking = 0x1;
    static constexpr std::uint16_t kCooked = 0x2;
    static constexpr std::uint16_t kKindMask = 0xC;
    static constexpr int kKindShift = 2;

    std::atomic<void*> link{nullptr};
    std::atomic<std::uint16_t> bits{0};
};

static_assert(sizeof(CookNode) <= 56, "a million of them are ordinary");

/// The node above an op's root. Never cooked; its one child is the root.
class TopNode : public CookNode {
public:
    explicit TopNode(GraphOp& owner);
    /// {"root"}, the same for all.
    [[nodiscard]] static const ChildList::Ptr& rootList();

    GraphOp& op;
};

/// The children of a node, in the order of its child list.
class CookBlock {
public:
    CookBlock(CookNode& parent, std::size_t size);

    [[nodiscard]] std::size_t size() const noexcept { return count; }
    [[nodiscard]] CookNode& child(std::size_t i) const noexcept {
        return order.empty() ? slab[i] : *order[i];
    }

    /// Puts the children into the order of a changed child list: entry i of `nodes` is a child kept
    /// from before, or null for a new one. Kept children stay where they are in memory.
    void rearrange(CookNode& parent, std::vector<CookNode*> nodes);

private:
    std::size_t count;
    /// The children as they were first; also the order, while `order` is empty.
    std::unique_ptr<CookNode[]> slab;
    std::vector<CookNode*> order;
    std::vector<std::unique_ptr<CookNode>> added;
};

} // namespace VlScenelibEngine
