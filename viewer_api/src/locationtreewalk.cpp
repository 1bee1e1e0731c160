// The collecting half of LocationTree: from what is marked to records.

#include "locationtree.h"

namespace ViewerAPI {

namespace {

/// What lies below a proxy are proxies, and those don't heed whether it is open.
bool collapsesChildren(const LocationNode& node) {
    return node.collapsed || (!node.proxy && !node.open);
}

} // namespace

void LocationTree::collect(std::vector<LocationChange>& out) {
    out.clear();
    if (mode_ != previousMode_) {
        if (LocationNode* root = findNode("/root")) {
            Inherited inherited;
            inherited.modeChanged = true;
            walk(*root, inherited, out);
        }
        previousMode_ = mode_;
    }
    out.reserve(out.size() + dirty_.size());
    // A node that a walk from above has reached already isn't queued any more, and is passed over.
    dirty_.drain([this, &out](LocationNode& node) { walk(node, Inherited(), out); });
    deleteDoomed();
}

void LocationTree::walk(LocationNode& node, const Inherited& inherited,
                        std::vector<LocationChange>& out) {
    if (!node.queued && !inherited.any()) {
        return;
    }
    const bool isExpansion = mode_ == Mode::Expansion;
    const bool wasCooked = node.wasCooked || node.cooked;
    const bool didCollapseChildren = node.collapsed || (!node.proxy && !node.wasOpen);
    const bool didHideChildren = node.wasHidden || node.inheritedHidden;
    const bool wasSent = node.sent;
    const bool didInheritHidden = node.inheritedHidden;

    if (inherited.parentRemoved) {
        // The parent's removal covers this location too.
        forget(node);
        if (node.proxy) {
            node.cooked = node.workingSetCooked = false;
        }
    }
    if (inherited.parentUncooked) {
        node.cooked = node.workingSetCooked = false;
    }
    if (inherited.collapsedChanged && isExpansion) {
        node.collapsed = node.proxy ? node.parent->collapsed : collapsesChildren(*node.parent);
    }
    if (inherited.inheritState) {
        inheritState(node, *node.parent);
    }
    if (inherited.hiddenChanged) {
        node.inheritedHidden = isHidden(*node.parent);
    }

    bool isRemoved = false;
    if (isVisible(node)) {
        appendChange(node, out);
    } else if (node.sent) {
        isRemoved = true;
        forget(node);
        LocationChange& change = out.emplace_back();
        change.path = node.path;
        change.proxy = node.proxy;
        change.removed = true;
    }

    if (node.sent != wasSent || node.inheritedHidden != didInheritHidden) {
        dropExtents(node);
    }

    const bool isDoomed =
        !inherited.parentDeleted && !node.cooked && !node.pinned && node.pinnedDescendants == 0;
    if (isDoomed) {
        doomed_.push_back(&node);
    }

    Inherited forChildren;
    forChildren.parentRemoved = inherited.parentRemoved || isRemoved;
    forChildren.parentUncooked = wasCooked && !node.cooked;
    forChildren.parentDeleted = inherited.parentDeleted || isDoomed;
    forChildren.collapsedChanged =
        isExpansion && (inherited.modeChanged || didCollapseChildren != collapsesChildren(node));
    forChildren.inheritState = inherited.inheritState;
    forChildren.modeChanged = inherited.modeChanged;
    forChildren.hiddenChanged = didHideChildren != isHidden(node);

    const bool areProxiesDirty = node.proxiesDirty;
    node.queued = node.proxiesDirty = false;
    node.wasCooked = node.cooked;
    node.wasOpen = node.open;
    node.wasHidden = node.hidden;

    if (forChildren.any()) {
        for (LocationNode* child : node.children) {
            walk(*child, forChildren, out);
        }
    }
    if (!node.proxyChildren.empty()) {
        // Proxies stand beside their location rather than below it: what closing or hiding the
        // location does to its children is not done to them, only what is done to the location.
        Inherited forProxies = forChildren;
        forProxies.collapsedChanged = inherited.collapsedChanged;
        forProxies.hiddenChanged = inherited.hiddenChanged;
        forProxies.inheritState = areProxiesDirty;
        if (forProxies.any()) {
            for (LocationNode* proxy : node.proxyChildren) {
                walk(*proxy, forProxies, out);
            }
        }
    }
}

bool LocationTree::isVisible(const LocationNode& node) const {
    if (!node.cooked) {
        return false;
    }
    if (mode_ == Mode::Expansion) {
        return !node.collapsed || showsByPin(node);
    }
    return node.hasWorkingSetData ? node.workingSetCooked : node.sent;
}

bool LocationTree::showsHidden(const LocationNode& node) const {
    if (isHidden(node)) {
        return true;
    }
    return mode_ == Mode::WorkingSet &&
           (node.hasWorkingSetData ? !node.workingSetIncluded : node.sentHidden);
}

bool LocationTree::showsChildren(const LocationNode& node) const {
    if (node.proxy) {
        return true;
    }
    if (mode_ == Mode::WorkingSet && !node.hasWorkingSetData) {
        return !node.sentLeaf;
    }
    if (node.leaf) {
        return false;
    }
    if (mode_ == Mode::WorkingSet) {
        return !node.workingSetLeaf;
    }
    return node.pinnedDescendants != 0 || (node.open && !node.collapsed);
}

void LocationTree::appendChange(LocationNode& node, std::vector<LocationChange>& out) const {
    const bool isHiddenNow = showsHidden(node);
    const bool isLeafNow = !showsChildren(node);
    const bool attributesChanged = differsFromSent(node);
    const bool xformChanged = attributesChanged && xformDiffersFromSent(node);
    const bool hiddenChanged = !node.sent || node.sentHidden != isHiddenNow;
    const bool leafChanged = !node.sent || node.sentLeaf != isLeafNow;
    if (!attributesChanged && !hiddenChanged && !leafChanged) {
        return;
    }
    LocationChange& change = out.emplace_back();
    change.path = node.path;
    change.attributes = node.attributes;
    change.matrix = node.matrix;
    change.absolute = node.absolute;
    change.hidden = isHiddenNow;
    change.leaf = isLeafNow;
    change.proxy = node.proxy;
    change.attributesChanged = attributesChanged;
    change.xformChanged = xformChanged;
    change.hiddenChanged = hiddenChanged;
    change.leafChanged = leafChanged;

    rememberSent(node);
    node.sentHidden = isHiddenNow;
    node.sentLeaf = isLeafNow;
}

void LocationTree::forget(LocationNode& node) {
    forgetSent(node);
    node.sentHidden = node.sentLeaf = false;
}

void LocationTree::deleteDoomed() {
    for (LocationNode* node : doomed_) {
        if (LocationNode* parent = node->parent) {
            detach(*node, node->proxy && !parent->proxy ? parent->proxyChildren : parent->children);
        } else {
            detach(*node, roots_);
        }
        deleteSubtree(node);
    }
    doomed_.clear();
}

void LocationTree::deleteSubtree(LocationNode* node) {
    for (const NodeList<LocationNode>* list : {&node->children, &node->proxyChildren}) {
        for (LocationNode* child : *list) {
            deleteSubtree(child);
        }
    }
    if (node->open) {
        // A location that comes back comes back open.
        pendingOpen_.insert(node->path);
    }
    deleteNode(node);
}

} // namespace ViewerAPI
