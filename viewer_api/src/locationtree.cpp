#include "locationtree.h"

#include "extentcache.h"

#include <algorithm>
#include <utility>

namespace ViewerAPI {

using VlAttribute::GroupAttribute;
using VlAttribute::StringAttribute;

void LocationTree::cook(std::string_view path, GroupAttribute attributes,
                        const WorkingSetState& workingSet, bool isProxy, bool isLeaf) {
    LocationNode* node = findNode(path);
    if (!node) {
        node = createNode(path, false, isProxy);
    }
    if (!node || (node->proxy && !node->parent->cooked)) {
        return;
    }
    bool hasChanged = storeAttributes(*node, std::move(attributes));
    if (!node->cooked) {
        node->cooked = true;
        hasChanged = true;
        if (node->proxy) {
            // Its cooks never tell of the working set, and its deletion took that state away.
            inheritState(*node, *node->parent);
        }
    }
    if (node->leaf != isLeaf) {
        node->leaf = isLeaf;
        hasChanged = true;
    }
    // The root is in every working set, whether or not anything told so.
    const bool isRootOfWorkingSet = mode_ == Mode::WorkingSet && node->depth == 1;
    if (!workingSet.hasData && !isRootOfWorkingSet) {
        if (!isProxy) {
            node->hasWorkingSetData = false;
        }
        if (!node->proxyChildren.empty()) {
            node->proxiesDirty = true;
            hasChanged = true;
        }
    } else {
        // Each of these is handed down to proxies.
        if (!node->workingSetCooked || !node->hasWorkingSetData ||
            node->workingSetIncluded != workingSet.included) {
            node->workingSetCooked = true;
            node->hasWorkingSetData = true;
            node->workingSetIncluded = workingSet.included;
            node->proxiesDirty = true;
            hasChanged = true;
        }
        if (node->workingSetLeaf != workingSet.leaf) {
            node->workingSetLeaf = workingSet.leaf;
            hasChanged = true;
        }
    }
    if (hasChanged) {
        enqueue(*node);
    }
}

void LocationTree::deleteLocation(std::string_view path) {
    LocationNode* node = findNode(path);
    if (!node) {
        return;
    }
    node->workingSetCooked = false;
    if (node->cooked) {
        node->cooked = false;
        // Also if it came only since the last collection: what was cooked below it goes with it.
        node->wasCooked = true;
        enqueue(*node);
    }
}

void LocationTree::openLocation(std::string_view path) {
    LocationNode* node = findNode(path);
    if (!node) {
        pendingOpen_.insert(path);
    } else if (!node->open) {
        node->open = true;
        enqueue(*node);
    }
}

void LocationTree::closeLocation(std::string_view path) {
    LocationNode* node = findNode(path);
    if (!node) {
        pendingOpen_.erase(path);
    } else if (node->open) {
        node->open = false;
        enqueue(*node);
    }
}

void LocationTree::pinLocation(std::string_view path) {
    LocationNode* node = findNode(path);
    if (!node) {
        node = createNode(path, true, false);
    }
    if (node->pinnedItself) {
        return;
    }
    node->pinned = node->pinnedItself = true;
    changePinnedAncestors(*node, 1);
    if (node->pinnedDescendants == 0) {
        node->proxiesDirty = true;
        enqueue(*node);
    }
}

void LocationTree::unpinLocation(std::string_view path) {
    LocationNode* node = findNode(path);
    if (!node || !node->pinnedItself) {
        return;
    }
    node->pinnedItself = false;
    changePinnedAncestors(*node, -1);
    node->pinned = node->proxy && showsByPin(*node->parent);
    if (node->pinnedDescendants == 0) {
        node->proxiesDirty = true;
        enqueue(*node);
    }
}

void LocationTree::changePinnedAncestors(LocationNode& node, std::int32_t by) {
    for (LocationNode* ancestor = node.parent; ancestor; ancestor = ancestor->parent) {
        const bool hadPinned = ancestor->pinnedDescendants != 0;
        ancestor->pinnedDescendants += by;
        if (hadPinned != (ancestor->pinnedDescendants != 0)) {
            ancestor->proxiesDirty = true;
            enqueue(*ancestor);
        }
    }
}

void LocationTree::hideLocations(std::span<const char* const> paths) {
    for (const char* path : paths) {
        LocationNode* node = findNode(path);
        if (!node) {
            hidden_.insert(path);
        } else if (!node->proxy && !node->hidden) {
            hidden_.insert(path);
            setHidden(*node, true);
        }
    }
}

void LocationTree::unhideLocations(std::span<const char* const> paths) {
    for (const char* path : paths) {
        LocationNode* node = findNode(path);
        if (!node) {
            hidden_.erase(path);
        } else if (node->hidden) {
            hidden_.erase(path);
            setHidden(*node, false);
        }
    }
}

void LocationTree::unhideAllLocations() {
    for (const std::string& path : hidden_) {
        LocationNode* node = findNode(path);
        if (node && node->hidden) {
            setHidden(*node, false);
        }
    }
    hidden_.clear();
}

void LocationTree::setHidden(LocationNode& node, bool isHidden) {
    node.hidden = isHidden;
    dropExtents(node);
    enqueue(node);
}

StringAttribute LocationTree::getHiddenLocations() const {
    std::vector<std::string_view> paths(hidden_.begin(), hidden_.end());
    std::sort(paths.begin(), paths.end());
    return StringAttribute(std::span<const std::string_view>(paths));
}

void LocationTree::setAttributes(std::string_view path, GroupAttribute attributes) {
    LocationNode* node = findNode(path);
    if (node && storeAttributes(*node, std::move(attributes))) {
        enqueue(*node);
    }
}

void LocationTree::setMode(bool workingSetEnabled) {
    mode_ = workingSetEnabled ? Mode::WorkingSet : Mode::Expansion;
}

StringAttribute LocationTree::getDescendantLocations(std::string_view path) const {
    const LocationNode* start = find(path);
    if (!start || !start->sent) {
        return StringAttribute();
    }
    std::vector<const LocationNode*> nodes{start};
    std::vector<std::string_view> paths;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        for (const NodeList<LocationNode>* list : {&nodes[i]->children, &nodes[i]->proxyChildren}) {
            for (const LocationNode* child : *list) {
                if (child->sent) {
                    nodes.push_back(child);
                    paths.push_back(child->path);
                }
            }
        }
    }
    return StringAttribute(std::span<const std::string_view>(paths));
}

void LocationTree::visitSent(const std::function<void(const LocationChange&)>& visit) const {
    std::vector<const LocationNode*> nodes(roots_.begin(), roots_.end());
    while (!nodes.empty()) {
        const LocationNode& node = *nodes.back();
        nodes.pop_back();
        if (node.sent) {
            LocationChange change;
            change.path = node.path;
            change.attributes = node.sentAttributes;
            change.hidden = node.sentHidden;
            change.leaf = node.sentLeaf;
            change.proxy = node.proxy;
            change.attributesChanged = change.hiddenChanged = change.leafChanged = true;
            visit(change);
        }
        nodes.insert(nodes.end(), node.children.begin(), node.children.end());
        nodes.insert(nodes.end(), node.proxyChildren.begin(), node.proxyChildren.end());
    }
}

bool LocationTree::storeAttributes(LocationNode& node, GroupAttribute attributes) {
    if (attributes == node.attributes) {
        return false;
    }
    updateXform(node, attributes);
    node.attributes = std::move(attributes);
    dropExtents(node);
    return true;
}

void LocationTree::dropExtents(LocationNode& node) {
    node.extents.reset();
    if (node.parent) {
        node.parent->extents.reset();
    }
}

LocationNode* LocationTree::createNode(std::string_view path, bool createParents, bool isProxy) {
    LocationNode* parent = nullptr;
    const std::string_view parentPath = LocationPath::parentOf(path);
    if (!parentPath.empty()) {
        parent = findParent(path);
        if (!parent && createParents) {
            parent = createNode(parentPath, true, false);
        }
        // A pin keeps a location in the tree that does not exist, and has no proxies.
        if (!parent || (isProxy && !parent->cooked)) {
            return nullptr;
        }
    }
    LocationNode* node = addNode(path);
    if (parent) {
        attachToParent(*node, *parent, isProxy);
    } else {
        attachRoot(*node);
    }
    if (node->proxy) {
        return node;
    }
    node->wasOpen = node->open = pendingOpen_.erase(path);
    node->hidden = hidden_.contains(path);
    return node;
}

void LocationTree::attachToParent(LocationNode& node, LocationNode& parent, bool isProxy) {
    if (isProxy) {
        node.proxy = true;
        node.collapsed = parent.collapsed;
        inheritState(node, parent);
        attach(node, parent, parent.proxy ? parent.children : parent.proxyChildren);
    } else {
        // What the parent was at the last collection: what it has become since, its own walk
        // brings, by comparing with what it was.
        node.collapsed = parent.collapsed || (!parent.proxy && !parent.wasOpen);
        attach(node, parent, parent.children);
    }
    node.inheritedHidden = parent.wasHidden || parent.inheritedHidden;
}

void LocationTree::inheritState(LocationNode& proxy, const LocationNode& parent) {
    proxy.hasWorkingSetData = parent.hasWorkingSetData;
    proxy.workingSetIncluded = parent.workingSetIncluded;
    proxy.workingSetCooked = parent.workingSetCooked;
    proxy.pinned = proxy.pinnedItself || showsByPin(parent);
}

} // namespace ViewerAPI
