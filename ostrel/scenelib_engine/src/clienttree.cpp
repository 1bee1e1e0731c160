#include "clienttree.h"

#include <utility>

namespace VlScenelibEngine {

ClientTree::ClientTree() {
    top.set(ClientNode::kTold);
}

ClientTree::~ClientTree() = default;

ClientNode* ClientTree::findKid(const ClientNode& node, std::string_view name) {
    if (!node.kids) {
        return nullptr;
    }
    const std::size_t index = node.kids->list ? node.kids->list->find(name) : ChildList::kNone;
    if (index != ChildList::kNone) {
        return node.kids->nodes[index];
    }
    for (const auto& [departedName, kid] : node.kids->departed) {
        if (departedName == name) {
            return kid;
        }
    }
    return nullptr;
}

ClientNode* ClientTree::find(const LocationNames& names) {
    ClientNode* node = &top;
    for (const std::string_view name : names) {
        node = findKid(*node, name);
        if (!node) {
            return nullptr;
        }
    }
    return node;
}

ClientNode& ClientTree::ensureKid(ClientNode& node, const ChildList::Ptr& list, std::size_t index) {
    if (!node.kids) {
        node.kids = std::make_unique<ClientKids>();
        node.kids->list = list;
        node.kids->nodes.resize(list->size());
    }
    ClientNode*& place = node.kids->nodes[index];
    if (!place) {
        place = allocate();
        place->parent = &node;
        place->index = static_cast<std::uint32_t>(index);
        ++node.kids->count;
    }
    return *place;
}

void ClientTree::align(ClientNode& node, const ChildList::Ptr& list,
                       std::vector<ClientNode*>& departed) {
    if (!node.kids || node.kids->list == list) {
        return;
    }
    ClientKids& kids = *node.kids;
    const ChildList::Ptr before = std::exchange(kids.list, list);
    if (before && list && before->getNames() == list->getNames()) {
        return;
    }
    node.clear(ClientNode::kSynced);
    std::vector<ClientNode*> nodes(list ? list->size() : 0);
    std::vector<std::pair<std::string, ClientNode*>> gone;
    for (ClientNode* kid : kids.nodes) {
        if (!kid) {
            continue;
        }
        const std::string_view name = before->getName(kid->index);
        const std::size_t index = list ? list->find(name, kid->index) : ChildList::kNone;
        if (index == ChildList::kNone) {
            kid->set(ClientNode::kDeparted);
            gone.emplace_back(name, kid);
            departed.push_back(kid);
        } else {
            kid->index = static_cast<std::uint32_t>(index);
            nodes[index] = kid;
        }
    }
    for (auto& [name, kid] : kids.departed) {
        const std::size_t index = list ? list->find(name) : ChildList::kNone;
        if (index == ChildList::kNone) {
            gone.emplace_back(std::move(name), kid);
        } else {
            kid->clear(ClientNode::kDeparted);
            kid->index = static_cast<std::uint32_t>(index);
            nodes[index] = kid;
        }
    }
    for (std::size_t i = 0; i < gone.size(); ++i) {
        gone[i].second->index = static_cast<std::uint32_t>(i);
    }
    kids.nodes = std::move(nodes);
    kids.departed = std::move(gone);
}

void ClientTree::reap(ClientNode* node) {
    constexpr std::uint16_t kInUse = ClientNode::kTold | ClientNode::kLive | ClientNode::kQueued |
                                     ClientNode::kStaged | ClientNode::kOwing;
    while (node && !node->has(kInUse) && node->work == 0 && !node->kids) {
        ClientNode* parent = node->parent;
        removeFromParent(*node);
        free(node);
        node = parent;
    }
}

void ClientTree::removeFromParent(ClientNode& node) {
    ClientKids& kids = *node.parent->kids;
    if (node.has(ClientNode::kDeparted)) {
        std::swap(kids.departed[node.index], kids.departed.back());
        kids.departed[node.index].second->index = node.index;
        kids.departed.pop_back();
    } else {
        kids.nodes[node.index] = nullptr;
    }
    if (--kids.count == 0) {
        node.parent->kids.reset();
    }
}

std::string_view ClientTree::getName(const ClientNode& node) const noexcept {
    const ClientKids& kids = *node.parent->kids;
    return node.has(ClientNode::kDeparted) ? std::string_view(kids.departed[node.index].first)
                                           : kids.list->getName(node.index);
}

LocationNames ClientTree::getNames(const ClientNode& node) const {
    std::size_t depth = 0;
    for (const ClientNode* above = node.parent; above; above = above->parent) {
        ++depth;
    }
    LocationNames names(depth);
    for (const ClientNode* at = &node; depth > 0; at = at->parent) {
        names[--depth] = getName(*at);
    }
    return names;
}

void ClientTree::appendPath(const ClientNode& node, std::string& path) const {
    if (node.parent) {
        appendPath(*node.parent, path);
        path += '/';
        path += getName(node);
    }
}

std::string ClientTree::getChildPath(const ClientNode& parent, std::string_view name) const {
    std::string path;
    appendPath(parent, path);
    path += '/';
    path += name;
    return path;
}

ClientNode* ClientTree::allocate() {
    if (!freeNodes.empty()) {
        ClientNode* node = freeNodes.back();
        freeNodes.pop_back();
        return node;
    }
    if (usedInLastSlab == kSlabSize) {
        slabs.push_back(std::make_unique<ClientNode[]>(kSlabSize));
        usedInLastSlab = 0;
    }
    return &slabs.back()[usedInLastSlab++];
}

void ClientTree::free(ClientNode* node) {
    *node = ClientNode();
    freeNodes.push_back(node);
}

} // namespace VlScenelibEngine
