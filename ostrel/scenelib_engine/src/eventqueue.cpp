#include "eventqueue.h"

#include "clientview.h"
#include "locationpath.h"

#include <algorithm>
#include <utility>

namespace VlScenelibEngine {

void EventQueue::add(ClientNode& node) {
    if (!node.has(ClientNode::kQueued)) {
        node.set(ClientNode::kQueued);
        queue.push_back(&node);
        noteNews();
    }
}

void EventQueue::beginDrain() {
    leftInDrain = queue.size();
    stagedBefore = staged.size();
}

bool EventQueue::next(std::string& paths, LocationReport& report) {
    if (ClientNode* node = findNext()) {
        if (node->has(ClientNode::kLive) && node == queue.front()) {
            popFront();
        }
        tell(*node, paths, report);
        return true;
    }
    if (tellMissing(paths, report)) {
        return true;
    }
    noteWhatIsLeft();
    return false;
}

bool EventQueue::hasNext() {
    beginDrain();
    if (findNext()) {
        return true;
    }
    if (std::any_of(missing.begin(), missing.end(),
                    [&](const std::string& path) { return isStillMissing(path); }) ||
        (view.getOp() && std::any_of(requests.malformed.begin(), requests.malformed.end(),
                                     [](const auto& entry) { return entry.second; }))) {
        return true;
    }
    noteWhatIsLeft();
    return false;
}

// What came up while the drain went on lies behind its end.
void EventQueue::noteWhatIsLeft() noexcept {
    mayHaveNews.store(!queue.empty() || !staged.empty() || !missing.empty(),
                      std::memory_order_relaxed);
}

bool EventQueue::hasNews(const ClientNode& node) const {
    const CookNode* data = node.source->resolve();
    return data && (node.has(ClientNode::kForced) || !node.has(ClientNode::kTold) ||
                    node.toldVersion != data->version);
}

void EventQueue::unstage() {
    staged.front()->clear(ClientNode::kStaged);
    staged.pop_front();
    stagedBefore -= stagedBefore > 0 ? 1 : 0;
}

void EventQueue::popFront() {
    ClientNode* node = queue.front();
    queue.pop_front();
    leftInDrain -= leftInDrain > 0 ? 1 : 0;
    node->clear(ClientNode::kQueued);
}

ClientNode* EventQueue::findNext() {
    for (;;) {
        while (!staged.empty()) {
            ClientNode* node = staged.front();
            const bool isGone = node->has(ClientNode::kTold) &&
                                !node->has(ClientNode::kLive | ClientNode::kPending);
            bool isKept = false;
            if (isGone && stagedBefore > 0) {
                std::vector<Witness> witnesses = walkToParent(*node);
                walkOn(witnesses, *node);
                isKept = isKeptFor(witnesses);
            }
            if (isGone && !isKept) {
                if (!hasToldKid(*node)) {
                    return node;
                }
                // While this one waited, one below it was not known to be gone.
                unstage();
                stageGone(*node);
                continue;
            }
            // It came back, here or with another client, while it waited.
            unstage();
            if (isKept) {
                keep(*node);
            } else if (node->has(ClientNode::kLive)) {
                add(*node);
            } else {
                tree.reap(node);
            }
        }
        if (leftInDrain == 0) {
            return nullptr;
        }
        ClientNode* node = queue.front();
        if (node->has(ClientNode::kLive)) {
            if (hasNews(*node)) {
                for (ClientNode* above = node->parent; above; above = above->parent) {
                    node = above->has(ClientNode::kTold) ? node : above;
                }
                return node;
            }
            popFront();
            continue;
        }
        popFront();
        if (node->has(ClientNode::kTold) && !node->has(ClientNode::kPending)) {
            stageGone(*node);
        } else {
            tree.reap(node);
        }
    }
}

bool EventQueue::hasToldKid(const ClientNode& node) {
    bool isAnyTold = false;
    ClientTree::forEachKid(
        node, [&](const ClientNode& kid) { isAnyTold = isAnyTold || kid.has(ClientNode::kTold); });
    return isAnyTold;
}

std::vector<EventQueue::Witness> EventQueue::walkToParent(const ClientNode& node) {
    std::vector<Witness> witnesses;
    const LocationNames names = tree.getNames(node);
    for (ClientView* other : view.getWitnesses()) {
        Witness witness{other, other->getRequests().begin(), &other->getTree().getTop()};
        for (std::size_t i = 0; i + 1 < names.size(); ++i) {
            witness.cursor = other->getRequests().descend(witness.cursor, names[i]);
            witness.node = witness.node ? ClientTree::findKid(*witness.node, names[i]) : nullptr;
        }
        witnesses.push_back(witness);
    }
    return witnesses;
}

void EventQueue::walkOn(std::vector<Witness>& witnesses, const ClientNode& node) {
    const std::string_view name = witnesses.empty() ? std::string_view() : tree.getName(node);
    std::erase_if(witnesses, [&](Witness& witness) {
        witness.cursor = witness.view->getRequests().descend(witness.cursor, name);
        witness.node = witness.node ? ClientTree::findKid(*witness.node, name) : nullptr;
        // Until all is settled, what is wanted may be just about to be shown.
        const bool isShown = witness.node && witness.node->has(ClientNode::kLive);
        return !witness.cursor.isWanted || (!isShown && view.isSettled());
    });
}

bool EventQueue::isKeptFor(const std::vector<Witness>& witnesses) const {
    return !witnesses.empty() || view.isOpUnderWay();
}

void EventQueue::stageGone(ClientNode& node) {
    const bool isParentKept =
        node.parent->has(ClientNode::kOwing) && !node.parent->has(ClientNode::kLive);
    stageGone(node, walkToParent(node), isParentKept);
}

void EventQueue::stageGone(ClientNode& node, std::vector<Witness> witnesses, bool isParentKept) {
    walkOn(witnesses, node);
    const bool isKept = isKeptFor(witnesses) && node.has(ClientNode::kTold);
    ClientTree::forEachKid(node, [&](ClientNode& kid) {
        if (!kid.has(ClientNode::kLive)) {
            stageGone(kid, witnesses, isKept);
        }
    });
    if (!node.has(ClientNode::kTold) || node.has(ClientNode::kPending)) {
        return;
    }
    if (!isKept) {
        if (!node.has(ClientNode::kStaged)) {
            node.set(ClientNode::kStaged);
            staged.push_back(&node);
        }
    } else if (!isParentKept) {
        // What is kept with its parent is reconsidered with it.
        keep(node);
    }
}

void EventQueue::keep(ClientNode& node) {
    if (!node.has(ClientNode::kOwing)) {
        node.set(ClientNode::kOwing);
        owing.push_back(&node);
    }
}

void EventQueue::reconsiderOwing() {
    for (ClientNode* node : std::exchange(owing, {})) {
        node->clear(ClientNode::kOwing);
        add(*node);
    }
}

void EventQueue::tell(ClientNode& node, std::string& paths, LocationReport& report) {
    const std::size_t begin = paths.size();
    appendPath(node, paths);
    const std::string_view path = std::string_view(paths).substr(begin);
    if (node.has(ClientNode::kLive)) {
        const CookNode* data = node.source->resolve();
        report.exists = true;
        report.attrs = data->attrs;
        report.potentialChildren =
            data->children ? data->children->getNames() : VlAttribute::StringAttribute();
        node.toldVersion = data->version;
        node.set(ClientNode::kTold);
        node.clear(ClientNode::kForced);
        noteAnswered(node);
        remember(path, report);
        return;
    }
    report = LocationReport();
    unstage();
    node.clear(ClientNode::kTold | ClientNode::kForced);
    noteAnswered(node);
    if (requests.isActive(path)) {
        remember(path, report);
    } else if (isCaching) {
        cache.erase(std::string(path));
    }
    if (prefixNode == node.parent) {
        prefixNode = nullptr;
    }
    tree.reap(&node);
}

bool EventQueue::isStillMissing(const std::string& path) const {
    const auto names = splitPath(path);
    const RequestNode* request = names ? requests.find(*names) : nullptr;
    const ClientNode* node = names ? tree.find(*names) : nullptr;
    constexpr std::uint16_t kKnown = ClientNode::kTold | ClientNode::kLive | ClientNode::kPending;
    return view.getOp() && request && request->isActive && request->awaitsAnswer &&
           !(node && node->has(kKnown));
}

bool EventQueue::tellMissing(std::string& paths, LocationReport& report) {
    report = LocationReport();
    while (!missing.empty()) {
        const std::string path = std::move(missing.extract(missing.begin()).value());
        if (isStillMissing(path)) {
            requests.find(*splitPath(path))->awaitsAnswer = false;
            --requests.awaitingAnswers;
            paths += path;
            remember(path, report);
            return true;
        }
    }
    for (auto& [malformed, awaitsAnswer] : requests.malformed) {
        if (awaitsAnswer && view.getOp()) {
            awaitsAnswer = false;
            paths += malformed;
            remember(malformed, report);
            return true;
        }
    }
    return false;
}

void EventQueue::noteAnswered(const ClientNode& node) {
    if (requests.awaitingAnswers == 0) {
        return;
    }
    RequestNode* request = requests.find(tree.getNames(node));
    if (request && request->awaitsAnswer) {
        request->awaitsAnswer = false;
        --requests.awaitingAnswers;
    }
}

void EventQueue::appendPath(const ClientNode& node, std::string& paths) {
    if (prefixNode != node.parent) {
        prefix.clear();
        tree.appendPath(*node.parent, prefix);
        prefix += '/';
        prefixNode = node.parent;
    }
    paths += prefix;
    paths += tree.getName(node);
}

void EventQueue::setCachingEnabled(bool enabled) {
    isCaching = enabled;
    if (!enabled) {
        cache.clear();
    }
}

const LocationReport* EventQueue::getCached(const std::string& path) const {
    const auto found = cache.find(path);
    return found == cache.end() ? nullptr : &found->second;
}

void EventQueue::forgetMissing(const std::string& path) {
    const auto found = cache.find(path);
    if (found != cache.end() && !found->second.exists) {
        cache.erase(found);
    }
}

void EventQueue::remember(std::string_view path, const LocationReport& report) {
    if (isCaching) {
        cache[std::string(path)] = report;
    }
}

} // namespace VlScenelibEngine
