#include "clientview.h"

#include "locationpath.h"

#include <utility>

namespace VlScenelibEngine {

namespace {

/// Children of one piece of work: many enough to make its cost disappear, few enough to be shared
/// out among threads.
constexpr std::size_t kPieceSize = 256;

} // namespace

ClientView::ClientView(std::shared_ptr<ClientGroup> clientGroup)
    : group(std::move(clientGroup)), events(*this, tree, requests) {
    group->views.push_back(this);
}

void ClientView::close() {
    isClosed = true;
    if (op) {
        std::erase(op->views, this);
        op = nullptr;
    }
    std::erase(group->views, this);
    work.clear();
    waiting = {};
    visits.clear();
    letOthersReconsider();
}

// ---- requests

void ClientView::setActive(const std::string& path, bool isActive) {
    if (!requests.setActive(path, isActive)) {
        return;
    }
    visits.insert(path);
    if (isActive) {
        events.noteNews();
        awaitReturn(path);
    } else {
        events.forgetMissing(path);
        letOthersReconsider();
    }
}

// What has left and is wanted again before it was told gone is not told gone any more, unless it
// turns out that it does not exist.
void ClientView::awaitReturn(const std::string& path) {
    const auto names = splitPath(path);
    if (!op || !names) {
        return;
    }
    ClientNode* node = &tree.getTop();
    for (const std::string_view name : *names) {
        node = ClientTree::findKid(*node, name);
        if (!node || node->has(ClientNode::kDeparted)) {
            return;
        }
        if (!node->has(ClientNode::kLive)) {
            node->set(ClientNode::kPending);
        }
    }
}

void ClientView::setOpen(const std::string& path, bool isOpen) {
    if (!requests.setOpen(path, isOpen)) {
        return;
    }
    visits.insert(path);
    if (!isOpen) {
        letOthersReconsider();
    }
}

void ClientView::setAllOpen(bool allOpen) {
    if (!requests.setAllOpen(allOpen)) {
        return;
    }
    isWholeChanged = true;
    if (!allOpen) {
        letOthersReconsider();
    }
}

void ClientView::letOthersReconsider() {
    for (ClientView* other : group->views) {
        other->events.reconsiderOwing();
    }
}

std::vector<ClientView*> ClientView::getWitnesses() const {
    std::vector<ClientView*> witnesses;
    for (ClientView* other : group->views) {
        if (other != this && other->op == op && op) {
            witnesses.push_back(other);
        }
    }
    return witnesses;
}

bool ClientView::isWanted(const LocationNames& names) const {
    RequestTree::Cursor cursor = requests.begin();
    for (const std::string_view name : names) {
        cursor = requests.descend(cursor, name);
    }
    return op && cursor.isWanted;
}

bool ClientView::isTold(const std::string& path) {
    const auto names = splitPath(path);
    if (!names) {
        const auto found = requests.malformed.find(path);
        return op && found != requests.malformed.end() && !found->second;
    }
    if (!isWanted(*names)) {
        return false;
    }
    const RequestNode* request = requests.find(*names);
    const ClientNode* node = tree.find(*names);
    if (!node || !node->has(ClientNode::kLive)) {
        const bool isKnown = node && node->has(ClientNode::kTold | ClientNode::kPending);
        return !isKnown && !hasWork() && request && request->isActive && !request->awaitsAnswer;
    }
    const CookNode* data = node->source->resolve();
    return data && node->has(ClientNode::kTold) && !node->has(ClientNode::kForced) &&
           node->toldVersion == data->version;
}

// ---- what it views

void ClientView::setOp(GraphOp* viewedOp) {
    if (viewedOp == op) {
        return;
    }
    letOthersReconsider();
    if (op) {
        std::erase(op->views, this);
    }
    op = viewedOp;
    resumeWaiting();
    ClientNode& top = tree.getTop();
    ClientTree::forEachKid(top, [](ClientNode& root) { markPending(root); });
    if (!op) {
        ClientTree::forEachKid(top, [&](ClientNode& root) { leave(root); });
        top.clear(ClientNode::kLive);
        return;
    }
    op->views.push_back(this);
    events.noteNews();
    top.set(ClientNode::kLive);
    top.clear(ClientNode::kSynced);
    syncKids(top, requests.begin(), *op->top);
}

CookNode* ClientView::getData(const ClientNode& node) const {
    if (!node.parent) {
        return op ? op->top.get() : nullptr;
    }
    return node.source ? node.source->resolve() : nullptr;
}

RequestTree::Cursor ClientView::getCursor(const ClientNode& node) const {
    RequestTree::Cursor cursor = requests.begin();
    for (const std::string_view name : tree.getNames(node)) {
        cursor = requests.descend(cursor, name);
    }
    return cursor;
}

bool ClientView::isLive(const LocationNames& names) const {
    const ClientNode* node = const_cast<ClientTree&>(tree).find(names);
    return node && node->has(ClientNode::kLive);
}

void ClientView::onTouched(const LocationNames& names, bool isSubtree) {
    if (!isSubtree) {
        visit(names);
        return;
    }
    // Where the client has left anyway, what the other clients show decides.
    ClientNode* node = tree.find(names);
    if (node && node->has(ClientNode::kLive)) {
        markPending(*node);
    }
    const std::string replaced = joinPath(names);
    visits.merge(waiting.takeAtOrBelow(replaced));
    visits.insert(replaced);
}

void ClientView::update() {
    if (std::exchange(isWholeChanged, false) && op) {
        isSyncingWhole = true;
        syncKids(tree.getTop(), requests.begin(), *op->top);
        isSyncingWhole = false;
    }
    // Visits make no visits.
    for (const std::string& path : std::exchange(visits, {})) {
        if (const auto names = splitPath(path)) {
            visit(*names);
        }
    }
}

void ClientView::visit(const LocationNames& names) {
    if (!op) {
        return;
    }
    ClientNode* node = &tree.getTop();
    RequestTree::Cursor cursor = requests.begin();
    for (std::size_t depth = 0; depth < names.size(); ++depth) {
        CookNode* data = getData(*node);
        if (!data) {
            return;
        }
        align(*node, *data);
        const std::size_t index =
            data->children ? data->children->find(names[depth]) : ChildList::kNone;
        cursor = requests.descend(cursor, names[depth]);
        if (index == ChildList::kNone) {
            if (cursor.request && cursor.request->activeAtOrBelow > 0) {
                std::string path = joinPath(names, depth + 1);
                noteMissing(*cursor.request, path);
            }
            return;
        }
        ClientNode* kid = ClientTree::findKid(*node, names[depth]);
        if (!cursor.isWanted) {
            if (kid) {
                leave(*kid);
            }
            return;
        }
        // The last one is refreshed below.
        const bool isFollowed = kid && (depth + 1 == names.size() ? isCurrent(*kid, *data)
                                                                  : followKid(*kid, cursor, *data));
        if (!isFollowed) {
            if (kid) {
                forgetStale(*kid);
            }
            schedule(*node, index, index + 1);
            return;
        }
        node = kid;
    }
    refresh(*node, cursor);
}

void ClientView::refresh(ClientNode& node, const RequestTree::Cursor& cursor) {
    CookNode* data = getData(node);
    if (!data) {
        leave(node);
        if (cursor.request) {
            std::string path;
            tree.appendPath(node, path);
            noteMissing(*cursor.request, path);
        }
        return;
    }
    if (cursor.request && cursor.request->isActive && cursor.request->awaitsAnswer) {
        node.set(ClientNode::kForced);
    }
    if (!node.has(ClientNode::kTold) || node.toldVersion != data->version ||
        node.has(ClientNode::kForced)) {
        events.add(node);
    }
    syncKids(node, cursor, *data);
}

bool ClientView::isCurrent(const ClientNode& kid, const CookNode& data) {
    const CookBlock* block = data.getBlock();
    return kid.has(ClientNode::kLive) && block && kid.source == &block->child(kid.index);
}

bool ClientView::hasFlagsOf(const ClientNode& node, const RequestTree::Cursor& cursor) {
    return node.has(ClientNode::kExpanded) == cursor.isExpanded &&
           node.has(ClientNode::kBelowActive) == cursor.isBelowActive;
}

void ClientView::forgetStale(ClientNode& kid) {
    // What it views stands elsewhere now. So does all below it, where changes are missed until
    // then; all of it is taken up anew.
    if (kid.has(ClientNode::kLive)) {
        markPending(kid);
    }
}

bool ClientView::followKid(ClientNode& kid, const RequestTree::Cursor& cursor, CookNode& data) {
    if (!isCurrent(kid, data)) {
        forgetStale(kid);
        return false;
    }
    if (isSyncingWhole || !hasFlagsOf(kid, cursor)) {
        if (CookNode* kidData = getData(kid)) {
            syncKids(kid, cursor, *kidData);
        }
    }
    return true;
}

void ClientView::syncKids(ClientNode& node, const RequestTree::Cursor& cursor, CookNode& data) {
    align(node, data);
    const bool isAskedAsBefore = !isSyncingWhole && hasFlagsOf(node, cursor);
    node.clear(ClientNode::kExpanded | ClientNode::kBelowActive);
    node.set(static_cast<std::uint16_t>((cursor.isExpanded ? ClientNode::kExpanded : 0) |
                                        (cursor.isBelowActive ? ClientNode::kBelowActive : 0)));
    noteMissingKids(node, cursor, data.children.get());
    // Of a node that knows no children it isn't known either which names these had.
    const bool isDone = isAskedAsBefore && node.kids && node.has(ClientNode::kSynced);
    if (!data.children || isDone) {
        return;
    }
    node.set(ClientNode::kSynced);
    if (cursor.isExpanded) {
        syncExpanded(node, cursor, data, isAskedAsBefore);
    } else {
        syncRequested(node, cursor, data);
    }
}

void ClientView::syncExpanded(ClientNode& node, const RequestTree::Cursor& cursor, CookNode& data,
                              bool isAskedAsBefore) {
    const std::size_t count = data.children->size();
    const bool isUnderWay = node.work > 0;
    std::size_t from = 0;
    for (std::size_t i = 0; i < count; ++i) {
        ClientNode* kid = node.kids ? node.kids->nodes[i] : nullptr;
        // Where requests below have changed, these are visited by themselves.
        const bool isFollowed =
            (kid && ((isAskedAsBefore && isCurrent(*kid, data)) ||
                     followKid(*kid, requests.descend(cursor, data.children->getName(i)), data))) ||
            isWaiting(node, data, i);
        if (isFollowed || i - from == kPieceSize) {
            scheduleExpansion(node, from, i, isUnderWay);
            from = isFollowed ? i + 1 : i;
        }
    }
    scheduleExpansion(node, from, count, isUnderWay);
}

void ClientView::scheduleExpansion(ClientNode& parent, std::size_t from, std::size_t to,
                                   bool isUnderWay) {
    if (from < to && isUnderWay) {
        parent.set(ClientNode::kResync);
    } else {
        schedule(parent, from, to);
    }
}

void ClientView::syncRequested(ClientNode& node, const RequestTree::Cursor& cursor,
                               CookNode& data) {
    if (node.kids) {
        for (ClientNode* kid : node.kids->nodes) {
            if (kid && !requests.descend(cursor, tree.getName(*kid)).isWanted) {
                leave(*kid);
            }
        }
    }
    if (!cursor.request) {
        return;
    }
    for (const auto& [name, request] : cursor.request->children) {
        const RequestTree::Cursor kidCursor = requests.descend(cursor, name);
        const std::size_t index = kidCursor.isWanted ? data.children->find(name) : ChildList::kNone;
        if (index == ChildList::kNone) {
            continue;
        }
        ClientNode* kid = node.kids ? node.kids->nodes[index] : nullptr;
        if ((!kid || !followKid(*kid, kidCursor, data)) && !isWaiting(node, data, index)) {
            schedule(node, index, index + 1);
        }
    }
}

// Waits already, and nothing has happened that it would have to try again for.
bool ClientView::isWaiting(const ClientNode& parent, const CookNode& data,
                           std::size_t index) const {
    const CookBlock* block = waiting.isEmpty() ? nullptr : data.getBlock();
    return block && block->child(index).has(CookNode::kWaits) &&
           waiting.contains(tree.getChildPath(parent, data.children->getName(index)));
}

void ClientView::align(ClientNode& node, CookNode& data) {
    std::vector<ClientNode*> departed;
    tree.align(node, data.children, departed);
    for (ClientNode* kid : departed) {
        leave(*kid);
    }
}

void ClientView::adopt(ClientNode& parent, CookNode& data, std::size_t index,
                       const RequestTree::Cursor& cursor) {
    CookNode& source = data.getBlock()->child(index);
    if (!source.resolve()) {
        if (ClientNode* kid = parent.kids ? parent.kids->nodes[index] : nullptr) {
            leave(*kid);
        }
        if (cursor.request) {
            std::string path = tree.getChildPath(parent, data.children->getName(index));
            noteMissing(*cursor.request, path);
        }
        return;
    }
    ClientNode& kid = tree.ensureKid(parent, data.children, index);
    const bool isBack = !kid.has(ClientNode::kLive) && kid.kids;
    kid.source = &source;
    kid.set(ClientNode::kLive);
    kid.clear(ClientNode::kPending);
    refresh(kid, cursor);
    if (isBack && kid.kids) {
        // They may have been kept with it, and not for themselves.
        for (const auto& [name, departed] : kid.kids->departed) {
            events.add(*departed);
        }
    }
}

// ---- leaving

void ClientView::markLeft(ClientNode& node) {
    node.clear(ClientNode::kLive | ClientNode::kPending | ClientNode::kExpanded |
               ClientNode::kForced | ClientNode::kSynced);
    node.source = nullptr;
    if (group->views.size() > 1) {
        // Until it comes back the viewer may hear of it from another client, other data or that it
        // is gone, so what this one has told counts no longer.
        node.toldVersion = 0;
    }
    ClientTree::forEachKid(node, [this](ClientNode& kid) { markLeft(kid); });
}

void ClientView::markPending(ClientNode& node) {
    node.clear(ClientNode::kLive | ClientNode::kExpanded | ClientNode::kSynced);
    node.set(ClientNode::kPending);
    node.source = nullptr;
    if (node.kids) {
        // Not those that have departed: they are gone, whatever comes.
        for (ClientNode* kid : node.kids->nodes) {
            if (kid) {
                markPending(*kid);
            }
        }
    }
}

void ClientView::leave(ClientNode& node) {
    if (node.has(ClientNode::kLive | ClientNode::kPending)) {
        markLeft(node);
        letOthersReconsider();
    } else if (!node.has(ClientNode::kTold)) {
        return;
    }
    events.add(node);
}

void ClientView::noteMissing(const RequestNode& request, std::string& path) {
    if (requests.awaitingAnswers == 0) {
        return;
    }
    if (request.isActive && request.awaitsAnswer) {
        events.addMissing(path);
    }
    for (const auto& [name, child] : request.children) {
        if (child->activeAtOrBelow > 0) {
            const std::size_t length = path.size();
            path += '/';
            path += name;
            noteMissing(*child, path);
            path.resize(length);
        }
    }
}

void ClientView::noteMissingKids(const ClientNode& node, const RequestTree::Cursor& cursor,
                                 const ChildList* list) {
    if (!cursor.request || requests.awaitingAnswers == 0) {
        return;
    }
    for (const auto& [name, child] : cursor.request->children) {
        if (child->activeAtOrBelow > 0 && (!list || list->find(name) == ChildList::kNone)) {
            std::string path = tree.getChildPath(node, name);
            noteMissing(*child, path);
        }
    }
}

} // namespace VlScenelibEngine
