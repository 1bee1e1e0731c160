#include "requesttree.h"

#include "locationpath.h"

#include <utility>

namespace VlScenelibEngine {

namespace {

void collectActive(const RequestNode& node, std::string& path, std::vector<std::string>& active) {
    if (node.isActive) {
        active.push_back(path);
    }
    for (const auto& [name, child] : node.children) {
        if (child->activeAtOrBelow > 0) {
            const std::size_t length = path.size();
            path += '/';
            path += name;
            collectActive(*child, path, active);
            path.resize(length);
        }
    }
}

bool isAtOrBelow(std::string_view path, std::string_view root) {
    return root.empty() || path == root ||
           (path.size() > root.size() && path.starts_with(root) && path[root.size()] == '/');
}

} // namespace

RequestNode* RequestNode::find(std::string_view name) const {
    const auto found = children.find(name);
    return found == children.end() ? nullptr : found->second.get();
}

RequestNode& RequestNode::obtain(std::string_view name) {
    auto found = children.find(name);
    if (found == children.end()) {
        found = children.emplace(std::string(name), std::make_unique<RequestNode>()).first;
    }
    return *found->second;
}

RequestTree::Cursor RequestTree::descend(const Cursor& parent, std::string_view name) const {
    Cursor cursor;
    cursor.request = parent.request ? parent.request->find(name) : nullptr;
    const RequestNode* request = cursor.request;
    cursor.isBelowActive = parent.isBelowActive || (request && request->isActive);
    cursor.isWanted =
        parent.isWanted && (parent.isExpanded || (request && request->activeAtOrBelow > 0));
    cursor.isExpanded =
        cursor.isWanted && cursor.isBelowActive && (isAllOpen || (request && request->isOpen));
    return cursor;
}

bool RequestTree::setActive(std::string_view path, bool isActive) {
    const auto names = splitPath(path);
    if (!names) {
        const auto found = malformed.find(path);
        if (isActive == (found != malformed.end())) {
            return false;
        }
        if (isActive) {
            malformed.emplace(path, true);
        } else {
            malformed.erase(found);
        }
        return true;
    }
    RequestNode* existing = find(*names);
    if ((existing && existing->isActive) == isActive) {
        return false;
    }
    RequestNode* node = &top;
    for (const std::string_view name : *names) {
        node = &node->obtain(name);
        node->activeAtOrBelow += isActive ? 1 : static_cast<std::size_t>(-1);
    }
    node->isActive = isActive;
    if (node->awaitsAnswer != isActive) {
        node->awaitsAnswer = isActive;
        awaitingAnswers += isActive ? 1 : static_cast<std::size_t>(-1);
    }
    if (!isActive) {
        prune(*names);
    }
    return true;
}

bool RequestTree::setOpen(std::string_view path, bool isOpen) {
    const auto names = splitPath(path);
    if (!names) {
        return false;
    }
    RequestNode* existing = find(*names);
    if ((existing && existing->isOpen) == isOpen) {
        return false;
    }
    RequestNode* node = &top;
    for (const std::string_view name : *names) {
        node = &node->obtain(name);
    }
    node->isOpen = isOpen;
    if (!isOpen) {
        prune(*names);
    }
    return true;
}

bool RequestTree::setAllOpen(bool allOpen) {
    return std::exchange(isAllOpen, allOpen) != allOpen;
}

bool RequestTree::isActive(std::string_view path) const {
    const auto names = splitPath(path);
    if (!names) {
        return malformed.contains(path);
    }
    const RequestNode* node = find(*names);
    return node && node->isActive;
}

std::vector<std::string> RequestTree::getActive(std::string_view root) const {
    std::vector<std::string> active;
    std::string path;
    if (root.empty()) {
        collectActive(top, path, active);
    } else if (const auto names = splitPath(root)) {
        if (const RequestNode* node = find(*names)) {
            path = root;
            collectActive(*node, path, active);
        }
    }
    for (const auto& [odd, awaitsAnswer] : malformed) {
        if (isAtOrBelow(odd, root)) {
            active.push_back(odd);
        }
    }
    return active;
}

RequestNode* RequestTree::find(const LocationNames& names) const {
    const RequestNode* node = &top;
    for (const std::string_view name : names) {
        node = node->find(name);
        if (!node) {
            return nullptr;
        }
    }
    return const_cast<RequestNode*>(node);
}

void RequestTree::prune(const LocationNames& names) {
    std::vector<RequestNode*> chain{&top};
    for (const std::string_view name : names) {
        chain.push_back(chain.back()->find(name));
    }
    for (std::size_t depth = names.size(); depth > 0 && chain[depth]->isEmpty(); --depth) {
        RequestNode& parent = *chain[depth - 1];
        parent.children.erase(parent.children.find(names[depth - 1]));
    }
}

} // namespace VlScenelibEngine
