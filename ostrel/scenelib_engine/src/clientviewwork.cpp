// The half of ClientView that hands out what is to be cooked, and takes in what was.

#include "clientview.h"

#include "locationpath.h"

#include <algorithm>
#include <limits>

namespace VlScenelibEngine {

void ClientView::schedule(ClientNode& parent, std::size_t from, std::size_t to) {
    if (from >= to) {
        return;
    }
    if (parent.work == std::numeric_limits<std::uint16_t>::max()) {
        parent.set(ClientNode::kResync);
        return;
    }
    ++parent.work;
    work.push_back({&parent, nullptr, from, to});
}

void ClientView::endWork(ClientNode& parent) {
    if (--parent.work > 0) {
        return;
    }
    const bool needsResync = parent.has(ClientNode::kResync);
    parent.clear(ClientNode::kResync);
    if (needsResync) {
        parent.clear(ClientNode::kSynced);
    }
    CookNode* data = parent.has(ClientNode::kLive) ? getData(parent) : nullptr;
    if (needsResync && data) {
        syncKids(parent, getCursor(parent), *data);
    } else {
        tree.reap(&parent);
    }
}

// Closed meanwhile, or not active any more.
std::size_t ClientView::skipUnwanted(ClientWork& piece) const {
    const RequestTree::Cursor cursor = getCursor(*piece.parent);
    if (cursor.isExpanded || piece.from >= piece.to) {
        return piece.to;
    }
    const auto isKidWanted = [&](std::size_t i) {
        return requests.descend(cursor, piece.data->children->getName(i)).isWanted;
    };
    const std::size_t from = piece.from;
    while (piece.from < piece.to && !isKidWanted(piece.from)) {
        ++piece.from;
    }
    std::size_t end = piece.from;
    while (end < piece.to && isKidWanted(end)) {
        ++end;
    }
    if (piece.from > from) {
        piece.parent->clear(ClientNode::kSynced);
    }
    return end;
}

bool ClientView::takeWork(std::size_t limit, ClientWork& piece) {
    while (!work.empty()) {
        ClientWork& next = work.front();
        ClientNode& parent = *next.parent;
        next.data = parent.has(ClientNode::kLive) ? getData(parent) : nullptr;
        const std::size_t count =
            next.data && next.data->children ? next.data->children->size() : 0;
        next.to = std::min(next.to, count);
        const std::size_t end = skipUnwanted(next);
        if (next.from >= next.to) {
            // It left, its children changed, which has been seen to, or nobody wants them any more.
            work.pop_front();
            endWork(parent);
            continue;
        }
        piece = next;
        piece.to = std::min(end, piece.from + limit);
        if (piece.to < next.to) {
            next.from = piece.to;
            ++parent.work;
        } else {
            work.pop_front();
        }
        return true;
    }
    return false;
}

void ClientView::finishWork(const ClientWork& piece, const WaitingChildren& waitingChildren) {
    ClientNode& parent = *piece.parent;
    if (!parent.has(ClientNode::kLive) || getData(parent) != piece.data) {
        endWork(parent);
        return;
    }
    CookNode& data = *piece.data;
    align(parent, data);
    const RequestTree::Cursor cursor = getCursor(parent);
    CookBlock* block = data.getBlock();
    auto nextWaiting = waitingChildren.begin();
    for (std::size_t i = piece.from; i < piece.to; ++i) {
        if (nextWaiting != waitingChildren.end() && nextWaiting->first == i) {
            waiting.add(tree.getChildPath(parent, data.children->getName(i)), nextWaiting->second);
            ++nextWaiting;
            continue;
        }
        if (!block || !block->child(i).isCooked()) {
            work.push_front({&parent, nullptr, i, piece.to});
            return;
        }
        const RequestTree::Cursor kidCursor = requests.descend(cursor, data.children->getName(i));
        if (kidCursor.isWanted) {
            adopt(parent, data, i, kidCursor);
        } else {
            parent.clear(ClientNode::kSynced);
        }
    }
    endWork(parent);
}

bool ClientView::dropUnwantedWaiting() {
    return waiting.dropIf([this](const std::string& path) { return !isWanted(*splitPath(path)); });
}

} // namespace VlScenelibEngine
