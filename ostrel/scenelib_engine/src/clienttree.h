#pragma once

#include "cooknode.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace VlScenelibEngine {

struct ClientKids;

/// A location as one client knows it: what it views there, and what it has told.
struct ClientNode {
    static constexpr std::uint16_t kTold = 0x1;     ///< reported as existing, and not as gone since
    static constexpr std::uint16_t kLive = 0x2;     ///< cooked for this client; `source` is set
    static constexpr std::uint16_t kPending = 0x4;  ///< not known yet whether it still exists
    static constexpr std::uint16_t kQueued = 0x10;  ///< stands in the event queue
    static constexpr std::uint16_t kForced = 0x20;  ///< to be reported also without news
    static constexpr std::uint16_t kOwing = 0x40;   ///< told, left, and kept for another client
    static constexpr std::uint16_t kStaged = 0x400; ///< about to be told gone
    static constexpr std::uint16_t kDeparted = 0x80; ///< not in the child list any more
    static constexpr std::uint16_t kExpanded = 0x100;
    static constexpr std::uint16_t kBelowActive = 0x200;
    static constexpr std::uint16_t kResync = 0x800;  ///< its children are to be gone through again
                                                     ///< when the work under way is done
    static constexpr std::uint16_t kSynced = 0x1000; ///< its children have been gone through since
                                                     ///< their names changed; what has happened to
                                                     ///< one of them since was seen to there

    ClientNode* parent = nullptr;
    /// The parent's child in the cook tree, perhaps an alias. Null unless live.
    CookNode* source = nullptr;
    std::unique_ptr<ClientKids> kids;
    /// Of the data last told.
    std::uint64_t toldVersion = 0;
    /// In the parent's list, or among the departed.
    std::uint32_t index = 0;
    std::uint16_t flags = 0;
    /// Work items that refer to it.
    std::uint16_t work = 0;

    [[nodiscard]] bool has(std::uint16_t flag) const noexcept { return (flags & flag) != 0; }
    void set(std::uint16_t flag) noexcept { flags = static_cast<std::uint16_t>(flags | flag); }
    void clear(std::uint16_t flag) noexcept { flags = static_cast<std::uint16_t>(flags & ~flag); }
};

static_assert(sizeof(ClientNode) <= 40, "a million of them are ordinary");

/// The children of a ClientNode.
struct ClientKids {
    ChildList::Ptr list;
    /// One place per name of the list; null where the client knows nothing.
    std::vector<ClientNode*> nodes;
    /// Those whose name has left the list, until nothing is to be said of them any more.
    std::vector<std::pair<std::string, ClientNode*>> departed;
    /// Nodes in both.
    std::size_t count = 0;
};

/// The locations that one client knows, as a tree below a node above the roots. Addresses are
/// stable.
class ClientTree {
public:
    ClientTree();
    ~ClientTree();
    ClientTree(const ClientTree&) = delete;
    ClientTree& operator=(const ClientTree&) = delete;

    [[nodiscard]] ClientNode& getTop() noexcept { return top; }

    [[nodiscard]] static ClientNode* findKid(const ClientNode& node, std::string_view name);
    /// Null when the client knows nothing of the location.
    [[nodiscard]] ClientNode* find(const LocationNames& names);
    /// The child at a place of the list, to which the node is aligned; made when it is not there.
    ClientNode& ensureKid(ClientNode& node, const ChildList::Ptr& list, std::size_t index);
    /// Brings the children into the order of a list. Those that it does not name depart, those that
    /// had departed and are named return; the former are appended to `departed`.
    void align(ClientNode& node, const ChildList::Ptr& list, std::vector<ClientNode*>& departed);

    /// Frees the node, and then its ancestors, as far as nothing is known, said or to be done
    /// there.
    void reap(ClientNode* node);

    [[nodiscard]] std::string_view getName(const ClientNode& node) const noexcept;
    [[nodiscard]] LocationNames getNames(const ClientNode& node) const;
    void appendPath(const ClientNode& node, std::string& path) const;
    /// Whether or not there is a node for the child.
    [[nodiscard]] std::string getChildPath(const ClientNode& parent, std::string_view name) const;

    /// Calls `visit` for each child.
    template <typename Visit>
    static void forEachKid(const ClientNode& node, Visit&& visit) {
        if (!node.kids) {
            return;
        }
        for (ClientNode* kid : node.kids->nodes) {
            if (kid) {
                visit(*kid);
            }
        }
        for (const auto& [name, kid] : node.kids->departed) {
            visit(*kid);
        }
    }

private:
    ClientNode* allocate();
    void free(ClientNode* node);
    void removeFromParent(ClientNode& node);

    static constexpr std::size_t kSlabSize = 512;

    ClientNode top;
    std::vector<std::unique_ptr<ClientNode[]>> slabs;
    std::size_t usedInLastSlab = kSlabSize;
    std::vector<ClientNode*> freeNodes;
};

} // namespace VlScenelibEngine
