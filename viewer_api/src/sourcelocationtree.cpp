#include "sourcelocationtree.h"

#include <utility>

namespace ViewerAPI {

using VlAttribute::GroupAttribute;

void SourceLocationTree::cook(std::string_view path, GroupAttribute attributes) {
    SourceLocationNode* node = findNode(path);
    if (!node) {
        node = createNode(path, false);
    }
    if (!node || (node->cooked && attributes == node->attributes)) {
        return;
    }
    node->cooked = true;
    node->attributes = std::move(attributes);
    enqueue(*node);
}

void SourceLocationTree::deleteLocation(std::string_view path) {
    SourceLocationNode* node = findNode(path);
    if (node && node->cooked) {
        node->cooked = false;
        // Also if it came only since the last collection: what was cooked below it goes with it.
        node->wasCooked = true;
        enqueue(*node);
    }
}

void SourceLocationTree::pinLocation(std::string_view path) {
    SourceLocationNode* node = findNode(path);
    if (!node) {
        node = createNode(path, true);
    }
    if (!node->pinned) {
        node->pinned = true;
        changePinnedAncestors(*node, 1);
        enqueue(*node);
    }
}

void SourceLocationTree::unpinLocation(std::string_view path) {
    SourceLocationNode* node = findNode(path);
    if (node && node->pinned) {
        node->pinned = false;
        changePinnedAncestors(*node, -1);
        enqueue(*node);
    }
}

void SourceLocationTree::changePinnedAncestors(SourceLocationNode& node, std::int32_t by) {
    for (SourceLocationNode* ancestor = node.parent; ancestor; ancestor = ancestor->parent) {
        const bool hadPinned = ancestor->pinnedDescendants != 0;
        ancestor->pinnedDescendants += by;
        if (hadPinned != (ancestor->pinnedDescendants != 0) && !ancestor->pinned) {
            enqueue(*ancestor);
        }
    }
}

SourceLocationNode* SourceLocationTree::createNode(std::string_view path, bool createParents) {
    SourceLocationNode* parent = nullptr;
    const std::string_view parentPath = LocationPath::parentOf(path);
    if (!parentPath.empty()) {
        parent = findParent(path);
        if (!parent && createParents) {
            parent = createNode(parentPath, true);
        }
        if (!parent) {
            return nullptr;
        }
    }
    SourceLocationNode* node = addNode(path);
    if (parent) {
        attach(*node, *parent, parent->children);
        // What the parent was at the last collection: what it has become since, its own walk
        // brings, by comparing with what it was.
        node->inheritedPinned = parent->inheritedPinned || parent->wasPinned;
    } else {
        attachRoot(*node);
    }
    return node;
}

void SourceLocationTree::collect(std::vector<LocationChange>& out) {
    out.clear();
    dirty_.drain([this, &out](SourceLocationNode& node) { walk(node, Inherited(), out); });
    deleteDoomed();
}

void SourceLocationTree::walk(SourceLocationNode& node, const Inherited& inherited,
                              std::vector<LocationChange>& out) {
    if (!node.queued && !inherited.any()) {
        return;
    }
    const bool wasCooked = node.wasCooked || node.cooked;
    const bool didPinChildren = node.wasPinned || node.inheritedPinned;

    if (inherited.parentRemoved) {
        // The parent's removal covers this location too.
        forgetSent(node);
    }
    if (inherited.parentUncooked) {
        node.cooked = false;
    }
    if (inherited.pinChanged) {
        node.inheritedPinned = node.parent->inheritedPinned || node.parent->pinned;
    }

    bool isRemoved = false;
    if (node.cooked && (node.pinned || node.pinnedDescendants != 0 || node.inheritedPinned)) {
        appendChange(node, out);
    } else if (node.sent) {
        isRemoved = true;
        forgetSent(node);
        LocationChange& change = out.emplace_back();
        change.path = node.path;
        change.removed = true;
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
    forChildren.pinChanged = didPinChildren != (node.pinned || node.inheritedPinned);

    node.queued = false;
    node.wasCooked = node.cooked;
    node.wasPinned = node.pinned;

    if (forChildren.any()) {
        for (SourceLocationNode* child : node.children) {
            walk(*child, forChildren, out);
        }
    }
}

void SourceLocationTree::appendChange(SourceLocationNode& node, std::vector<LocationChange>& out) {
    if (!differsFromSent(node)) {
        return;
    }
    if (!node.sent) {
        // They may be left from attributes that were sent once.
        node.matrix = {};
        node.absolute = false;
    }
    updateXform(node, node.attributes);
    LocationChange& change = out.emplace_back();
    change.path = node.path;
    change.attributes = node.attributes;
    change.matrix = node.matrix;
    change.absolute = node.absolute;
    change.attributesChanged = true;
    change.xformChanged = xformDiffersFromSent(node);
    rememberSent(node);
}

void SourceLocationTree::deleteDoomed() {
    for (SourceLocationNode* node : doomed_) {
        if (SourceLocationNode* parent = node->parent) {
            detach(*node, parent->children);
        } else {
            detach(*node, roots_);
        }
        deleteSubtree(node);
    }
    doomed_.clear();
}

void SourceLocationTree::deleteSubtree(SourceLocationNode* node) {
    for (SourceLocationNode* child : node->children) {
        deleteSubtree(child);
    }
    deleteNode(node);
}

} // namespace ViewerAPI
