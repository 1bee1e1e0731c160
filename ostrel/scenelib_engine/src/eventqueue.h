#pragma once

#include "clienttree.h"
#include "requesttree.h"

#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <atomic>
#include <cstdint>
#include <deque>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace VlScenelibEngine {

class ClientView;

/// What is told of one location.
struct LocationReport {
    bool exists = false;
    VlAttribute::GroupAttribute attrs;
    VlAttribute::StringAttribute potentialChildren;
};

/// The locations of which one client has something to tell. It holds no data: what is told of a
/// location is decided when it is fetched, so that newer data takes the place of older, and what
/// nobody was told of and is gone again is not mentioned.
///
/// A location is told after its parent. One that is gone is told after all below it, and only if it
/// was told before and either does not exist any more or is not shown by any other client of the
/// runtime that views the same op. While a client of the runtime is on its way to another op,
/// nothing is told gone.
class EventQueue {
public:
    EventQueue(ClientView& owner, ClientTree& clientTree, RequestTree& clientRequests)
        : view(owner), tree(clientTree), requests(clientRequests) {}

    /// Something about the node may be to be told.
    void add(ClientNode& node);
    /// The path is active, and known not to exist.
    void addMissing(std::string path) {
        missing.insert(std::move(path));
        noteNews();
    }
    /// Something else may be to be told.
    void noteNews() noexcept { mayHaveNews.store(true, std::memory_order_release); }
    /// True unless nothing has come up since a drain left nothing. Needs no lock, so that who often
    /// looks for news and finds none doesn't meet the coordinator. [any-thread]
    [[nodiscard]] bool isWorthDraining() const noexcept {
        return mayHaveNews.load(std::memory_order_acquire);
    }

    /// Begins a drain: next() then gives only what is in the queue now.
    void beginDrain();
    /// Begins a batch of next() calls between which nothing else happens.
    void beginBatch() noexcept { prefixNode = nullptr; }
    /// Takes the next report of the drain, and appends its path to `paths`. False when there is
    /// none.
    bool next(std::string& paths, LocationReport& report);
    /// How many more the drain may give.
    [[nodiscard]] std::size_t countLeft() const noexcept {
        return leftInDrain + staged.size() + missing.size();
    }
    /// Whether a drain would give anything.
    [[nodiscard]] bool hasNext();

    /// To be called when other clients of the runtime may have ceased to show something.
    void reconsiderOwing();

    void setCachingEnabled(bool enabled);
    /// Null when there is none.
    [[nodiscard]] const LocationReport* getCached(const std::string& path) const;
    /// Drops what is kept of a path if it is that there is nothing.
    void forgetMissing(const std::string& path);

private:
    /// How far another client's walk has come beside ours.
    struct Witness {
        ClientView* view = nullptr;
        RequestTree::Cursor cursor;
        ClientNode* node = nullptr;
    };

    /// The node of which the next report tells, null when there is none.
    ClientNode* findNext();
    void noteWhatIsLeft() noexcept;
    [[nodiscard]] bool hasNews(const ClientNode& node) const;
    [[nodiscard]] static bool hasToldKid(const ClientNode& node);
    /// Decides for the node and all below it what is to be told gone.
    void stageGone(ClientNode& node);
    void stageGone(ClientNode& node, std::vector<Witness> witnesses, bool isParentKept);
    void keep(ClientNode& node);
    /// The other clients' walks beside ours, as far as the node's parent.
    [[nodiscard]] std::vector<Witness> walkToParent(const ClientNode& node);
    /// Takes the walks on to the node; those who don't show it end.
    void walkOn(std::vector<Witness>& witnesses, const ClientNode& node);
    /// Whether what has left stays, as these still show it, or for as long as that is not known.
    [[nodiscard]] bool isKeptFor(const std::vector<Witness>& witnesses) const;
    void tell(ClientNode& node, std::string& paths, LocationReport& report);
    bool tellMissing(std::string& paths, LocationReport& report);
    [[nodiscard]] bool isStillMissing(const std::string& path) const;
    void noteAnswered(const ClientNode& node);
    void popFront();
    void unstage();
    void appendPath(const ClientNode& node, std::string& paths);
    void remember(std::string_view path, const LocationReport& report);

    ClientView& view;
    ClientTree& tree;
    RequestTree& requests;
    std::deque<ClientNode*> queue;
    /// What the head of the queue turned out to be: nodes to be told gone, children first.
    std::deque<ClientNode*> staged;
    std::vector<ClientNode*> owing;
    std::set<std::string> missing;
    std::size_t leftInDrain = 0;
    /// How many of `staged` an earlier drain has left: things may have changed for them.
    std::size_t stagedBefore = 0;
    /// The parent whose path was built last, for the siblings that mostly follow.
    const ClientNode* prefixNode = nullptr;
    std::string prefix;
    bool isCaching = false;
    std::unordered_map<std::string, LocationReport> cache;
    std::atomic<bool> mayHaveNews{false};
};

} // namespace VlScenelibEngine
