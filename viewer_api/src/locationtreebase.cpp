#include "locationtreebase.h"

#include "extentcache.h"

#include "VlScenelib/VlXFormUtil.h"

#include <ImathMatrix.h>

#include <cstdint>
#include <cstring>
#include <new>
#include <span>

namespace ViewerAPI {

using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;

namespace {

Imath::M44d toMatrix(std::span<const double, 16> values) {
    Imath::M44d matrix(Imath::UNINITIALIZED);
    std::memcpy(matrix.getValue(), values.data(), values.size_bytes());
    return matrix;
}

DoubleAttribute toAttribute(const Imath::M44d& matrix) {
    return DoubleAttribute(std::span<const double>(matrix.getValue(), 16), 4);
}

const DoubleAttribute& identityXform() {
    static const DoubleAttribute kIdentity = toAttribute(Imath::M44d());
    return kIdentity;
}

} // namespace

template <class Node>
LocationTreeBase<Node>::~LocationTreeBase() {
    // From parent to child, as they lie in memory, rather than as the index has them.
    for (Node* root : roots_) {
        destroy(root);
    }
}

template <class Node>
GroupAttribute LocationTreeBase<Node>::getAttributes(std::string_view path,
                                                     bool requireSent) const {
    const Node* node = findToRead(path, requireSent);
    return node ? node->attributes : GroupAttribute();
}

template <class Node>
GroupAttribute LocationTreeBase<Node>::getXformGroup(std::string_view path,
                                                     bool requireSent) const {
    const Node* node = findToRead(path, requireSent);
    return node ? node->xformGroup() : GroupAttribute();
}

template <class Node>
DoubleAttribute LocationTreeBase<Node>::getLocalXform(std::string_view path, bool& isAbsolute,
                                                      bool requireSent) const {
    const Node* node = findToRead(path, requireSent);
    isAbsolute = node && node->absolute;
    return node ? node->matrix : DoubleAttribute();
}

template <class Node>
DoubleAttribute LocationTreeBase<Node>::getWorldXform(std::string_view path,
                                                      bool requireSent) const {
    const Node* node = findToRead(path, requireSent);
    return node ? worldXform(node) : DoubleAttribute();
}

template <class Node>
DoubleAttribute LocationTreeBase<Node>::getParentXform(std::string_view path,
                                                       bool requireSent) const {
    const Node* node = findToRead(path, requireSent);
    return node ? worldXform(node->parent) : DoubleAttribute();
}

template <class Node>
DoubleAttribute LocationTreeBase<Node>::worldXform(const Node* node) {
    // The first matrix is taken as it is: a location under ancestors without transforms shares
    // its own.
    const DoubleAttribute* only = nullptr;
    Imath::M44d product(Imath::UNINITIALIZED);
    bool isProduct = false;
    for (; node; node = node->parent) {
        const std::span<const double> values = node->matrix.getNearestSample(0.0F);
        if (values.size() == 16) {
            const Imath::M44d local = toMatrix(values.template first<16>());
            if (!only) {
                only = &node->matrix;
                product = local;
            } else {
                product = product * local;
                isProduct = true;
            }
        }
        if (node->absolute) {
            break;
        }
    }
    return isProduct ? toAttribute(product) : only ? *only : identityXform();
}

template <class Node>
Node* LocationTreeBase<Node>::findNode(std::string_view path) const {
    // Events and their receivers ask for one location several times, and then for its next
    // sibling. Neither needs the index, which is a walk through cold memory.
    if (lastFound_) {
        const std::string_view last = lastFound_->path;
        if (last == path) {
            return lastFound_;
        }
        const std::size_t parentLength = last.rfind('/');
        if (parentLength != std::string_view::npos && lastFound_->parent &&
            path.substr(0, parentLength + 1) == last.substr(0, parentLength + 1)) {
            const NodeList<Node>& siblings = lastFound_->parent->children;
            const std::size_t next = lastFound_->childIndex + std::size_t{1};
            if (next < siblings.size() && siblings[next]->path == path) {
                return lastFound_ = siblings[next];
            }
        }
    }
    Node* found = index_.find(path);
    if (found) {
        lastFound_ = found;
    }
    return found;
}

template <class Node>
const Node* LocationTreeBase<Node>::findToRead(std::string_view path, bool requireSent) const {
    const Node* node = findNode(path);
    return node && (node->sent || !requireSent) ? node : nullptr;
}

template <class Node>
Node* LocationTreeBase<Node>::findParent(std::string_view path) {
    const std::string_view parentPath = LocationPath::parentOf(path);
    if (!lastParent_ || !(lastParent_->path == parentPath)) {
        lastParent_ = index_.find(parentPath);
    }
    return lastParent_;
}

template <class Node>
Node* LocationTreeBase<Node>::addNode(std::string_view path) {
    void* const place = memory_.malloc();
    if (!place) {
        throw std::bad_alloc();
    }
    Node* const node = new (place) Node(path);
    index_.insert(node);
    return node;
}

template <class Node>
void LocationTreeBase<Node>::attachRoot(Node& node) {
    node.childIndex = static_cast<std::uint32_t>(roots_.size());
    roots_.push_back(&node);
}

template <class Node>
void LocationTreeBase<Node>::destroy(Node* node) {
    for (Node* child : node->children) {
        destroy(child);
    }
    if constexpr (requires { node->proxyChildren; }) {
        for (Node* proxy : node->proxyChildren) {
            destroy(proxy);
        }
    }
    node->~Node(); // the memory goes with the pool
}

template <class Node>
void LocationTreeBase<Node>::attach(Node& node, Node& parent, NodeList<Node>& list) {
    node.parent = &parent;
    node.depth = parent.depth + 1;
    node.childIndex = static_cast<std::uint32_t>(list.size());
    list.push_back(&node);
}

template <class Node>
void LocationTreeBase<Node>::detach(Node& node, NodeList<Node>& list) {
    if (Node* moved = list.swapOut(node.childIndex)) {
        moved->childIndex = node.childIndex;
    }
    node.parent = nullptr;
}

template <class Node>
void LocationTreeBase<Node>::enqueue(Node& node) {
    if (!node.queued) {
        node.queued = true;
        dirty_.insert(&node);
    }
}

template <class Node>
void LocationTreeBase<Node>::deleteNode(Node* node) {
    if (node == lastFound_) {
        lastFound_ = nullptr;
    }
    if (node == lastParent_) {
        lastParent_ = nullptr;
    }
    index_.erase(node);
    node->~Node();
    memory_.free(node);
    if (index_.size() == 0) {
        memory_.purge_memory();
    }
}

template <class Node>
void LocationTreeBase<Node>::updateXform(Node& node, const GroupAttribute& attributes) {
    const GroupAttribute xform(attributes.borrowChildByName("xform"));
    if (xform == node.xformGroup()) {
        return;
    }
    auto [matrix, isAbsolute] = VlScenelib::VlXFormUtil::CalcTransformMatrixAtTime(xform, 0.0F);
    node.matrix = std::move(matrix);
    node.absolute = isAbsolute;
}

template <class Node>
bool LocationTreeBase<Node>::differsFromSent(const Node& node) {
    if (!node.sent) {
        return true;
    }
    return node.attributes.getHandle() != node.sentAttributes.getHandle() &&
           node.attributes.getHash() != node.sentAttributes.getHash();
}

template <class Node>
bool LocationTreeBase<Node>::xformDiffersFromSent(const Node& node) {
    if (!node.sent) {
        return node.absolute || node.matrix.isValid();
    }
    const GroupAttribute xform(node.attributes.borrowChildByName("xform"));
    const GroupAttribute sentXform(node.sentAttributes.borrowChildByName("xform"));
    if (xform == sentXform) {
        return false;
    }
    // Two xforms may come to the same.
    const auto [sentMatrix, sentAbsolute] =
        VlScenelib::VlXFormUtil::CalcTransformMatrixAtTime(sentXform, 0.0F);
    return node.absolute != sentAbsolute || !(node.matrix == sentMatrix);
}

template <class Node>
void LocationTreeBase<Node>::rememberSent(Node& node) {
    node.sent = true;
    node.sentAttributes = node.attributes;
}

template <class Node>
void LocationTreeBase<Node>::forgetSent(Node& node) {
    node.sent = false;
    node.sentAttributes = GroupAttribute();
}

template class LocationTreeBase<LocationNode>;
template class LocationTreeBase<SourceLocationNode>;

} // namespace ViewerAPI
