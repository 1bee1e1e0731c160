#pragma once

#include "clienttree.h"
#include "eventqueue.h"
#include "graphop.h"
#include "requesttree.h"
#include "waitinglocations.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace VlScenelibEngine {

class ClientView;

/// The clients of one runtime, who feed one viewer together.
struct ClientGroup {
    std::vector<ClientView*> views;
    /// Edits of what these clients view that are committed and not applied yet. Until they are,
    /// nobody knows who views the same.
    std::atomic<int> opChangesUnderWay{0};
};

/// Children of a location that a client wants cooked.
struct ClientWork {
    ClientNode* parent = nullptr;
    /// The location whose children they are, resolved; and their places in its list.
    CookNode* data = nullptr;
    std::size_t from = 0;
    std::size_t to = 0;
};

/// The places of children in a piece of work whose cooks wait, in order, and for what.
using WaitingChildren = std::vector<std::pair<std::size_t, std::shared_ptr<Awaited>>>;

/// One client: what it has asked for, what of it is cooked, and what it is to be told. It views an
/// op's tree and follows every change there.
///
/// All members are called with the engine's lock held, and the graph does not change meanwhile.
class ClientView {
public:
    explicit ClientView(std::shared_ptr<ClientGroup> clientGroup);
    ClientView(const ClientView&) = delete;
    ClientView& operator=(const ClientView&) = delete;

    // ---- requests

    void setActive(const std::string& path, bool isActive);
    void setOpen(const std::string& path, bool isOpen);
    void setAllOpen(bool allOpen);
    [[nodiscard]] RequestTree& getRequests() noexcept { return requests; }

    // ---- what it views

    /// To be called when a commit that brings a setOp() is posted, and when it is applied.
    void announceOp() noexcept { ++group->opChangesUnderWay; }
    void arriveAtOp() noexcept { --group->opChangesUnderWay; }
    [[nodiscard]] bool isOpUnderWay() const noexcept { return group->opChangesUnderWay > 0; }
    /// Null: nothing.
    void setOp(GraphOp* viewedOp);
    [[nodiscard]] GraphOp* getOp() const noexcept { return op; }

    /// The location's data has changed, or (isSubtree) it is about to be replaced with everything
    /// below it.
    void onTouched(const LocationNames& names, bool isSubtree);
    [[nodiscard]] bool isLive(const LocationNames& names) const;

    // ---- following it

    [[nodiscard]] bool hasWork() const noexcept {
        return !work.empty() || !visits.empty() || isWholeChanged || !waiting.isEmpty();
    }
    /// Locations that are to be cooked and that wait.
    [[nodiscard]] std::size_t countToCome() const noexcept {
        std::size_t count = waiting.size();
        for (const ClientWork& piece : work) {
            count += piece.to - piece.from;
        }
        return count;
    }
    /// Takes what was requested and what was replaced into account. What must be cooked for it
    /// becomes work.
    void update();
    /// Takes the next piece of work, of at most `limit` children. False when there is none.
    [[nodiscard]] bool takeWork(std::size_t limit, ClientWork& piece);
    /// Shows what has been cooked of a piece; the rest becomes work again, but for the children
    /// that wait.
    void finishWork(const ClientWork& piece, const WaitingChildren& waitingChildren);
    [[nodiscard]] WaitingLocations& getWaiting() noexcept { return waiting; }
    /// Has those become work that wait no longer.
    void resumeArrived() { visits.merge(waiting.takeArrived()); }
    /// Has all become work that wait.
    void resumeWaiting() { visits.merge(waiting.takeAll()); }
    /// Forgets those that wait and are not wanted any more. Whether there were any.
    bool dropUnwantedWaiting();

    // ---- what it tells

    [[nodiscard]] EventQueue& getEvents() noexcept { return events; }
    [[nodiscard]] ClientTree& getTree() noexcept { return tree; }
    /// The other clients of the group that view the same op.
    [[nodiscard]] std::vector<ClientView*> getWitnesses() const;
    /// Whether the client cooks the path, by its requests.
    [[nodiscard]] bool isWanted(const LocationNames& names) const;
    /// Whether what was fetched for the path is what was cooked last.
    [[nodiscard]] bool isTold(const std::string& path);

    /// Whether all views of the engine have caught up with the op graph and their requests. The
    /// engine keeps it.
    [[nodiscard]] bool isSettled() const noexcept { return settled; }
    void setSettled(bool isSettledNow) noexcept { settled = isSettledNow; }

    /// Ends the client: it follows and tells nothing any more.
    void close();
    /// What is still under way for a closed client comes to nothing.
    [[nodiscard]] bool isOver() const noexcept { return isClosed; }

private:
    [[nodiscard]] CookNode* getData(const ClientNode& node) const;
    [[nodiscard]] RequestTree::Cursor getCursor(const ClientNode& node) const;
    void visit(const LocationNames& names);
    void refresh(ClientNode& node, const RequestTree::Cursor& cursor);
    void syncKids(ClientNode& node, const RequestTree::Cursor& cursor, CookNode& data);
    /// When requests say of the node what they said when its children were synchronised last, those
    /// that are current are passed over.
    void syncExpanded(ClientNode& node, const RequestTree::Cursor& cursor, CookNode& data,
                      bool isAskedAsBefore);
    void syncRequested(ClientNode& node, const RequestTree::Cursor& cursor, CookNode& data);
    /// True when the child is cooked for this client as it now is.
    [[nodiscard]] static bool isCurrent(const ClientNode& kid, const CookNode& data);
    /// Whether the node was synchronised with what requests say of it.
    [[nodiscard]] static bool hasFlagsOf(const ClientNode& node, const RequestTree::Cursor& cursor);
    static void forgetStale(ClientNode& kid);
    /// As isCurrent(), and sees to what changed requests mean for what is below it.
    bool followKid(ClientNode& kid, const RequestTree::Cursor& cursor, CookNode& data);
    void adopt(ClientNode& parent, CookNode& data, std::size_t index,
               const RequestTree::Cursor& cursor);
    [[nodiscard]] bool isWaiting(const ClientNode& parent, const CookNode& data,
                                 std::size_t index) const;
    void align(ClientNode& node, CookNode& data);
    /// The client does not cook the location (any more): it is to be decided what it tells.
    void leave(ClientNode& node);
    void markLeft(ClientNode& node);
    static void markPending(ClientNode& node);
    void noteMissing(const RequestNode& request, std::string& path);
    void noteMissingKids(const ClientNode& node, const RequestTree::Cursor& cursor,
                         const ChildList* list);
    void schedule(ClientNode& parent, std::size_t from, std::size_t to);
    void scheduleExpansion(ClientNode& parent, std::size_t from, std::size_t to, bool isUnderWay);
    void endWork(ClientNode& parent);
    /// Takes children that are not wanted off the beginning; returns the end of those that are.
    [[nodiscard]] std::size_t skipUnwanted(ClientWork& piece) const;
    void letOthersReconsider();
    void awaitReturn(const std::string& path);

    std::shared_ptr<ClientGroup> group;
    GraphOp* op = nullptr;
    RequestTree requests;
    ClientTree tree;
    EventQueue events;
    std::deque<ClientWork> work;
    WaitingLocations waiting;
    /// Paths where requests have changed or subtrees were replaced.
    std::set<std::string> visits;
    /// Requests changed everywhere at once.
    bool isWholeChanged = false;
    bool isSyncingWhole = false;
    bool settled = false;
    bool isClosed = false;
};

} // namespace VlScenelibEngine
