#pragma once

#include "dirtyset.h"
#include "locationnode.h"
#include "pathindex.h"
#include "sourcelocationnode.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupAttribute.h"

#include <boost/pool/pool.hpp>

#include <cstddef>
#include <string_view>
#include <vector>

namespace ViewerAPI {

/// What both location trees have in common: the nodes and their index, the dirty set, and reading.
///
/// Readers take `requireSent`: with it, a location that the plug-ins don't know reads as absent.
/// That concerns the location asked for, not its ancestors. [ui-thread]
template <class Node>
class LocationTreeBase {
public:
    LocationTreeBase() = default;
    LocationTreeBase(const LocationTreeBase&) = delete;
    LocationTreeBase& operator=(const LocationTreeBase&) = delete;

    /// Null when there is none. The node lives until a collection that finds it without a reason
    /// to stay; its address is stable.
    [[nodiscard]] const Node* find(std::string_view path) const { return findNode(path); }
    [[nodiscard]] std::size_t getNumberOfLocations() const { return index_.size(); }
    /// Says that a location will be asked for or cooked soon. Quickens that; no more.
    void expect(std::string_view path) const { index_.expect(path); }

    /// Whether a collection has something to look at.
    [[nodiscard]] bool isDirty() const { return dirty_.size() != 0; }

    /// Null when absent.
    [[nodiscard]] VlAttribute::GroupAttribute getAttributes(std::string_view path,
                                                            bool requireSent) const;
    /// Null when absent, or without an "xform".
    [[nodiscard]] VlAttribute::GroupAttribute getXformGroup(std::string_view path,
                                                            bool requireSent) const;
    /// The local matrix; null when absent, or without an "xform". `isAbsolute` is always written:
    /// false when absent.
    [[nodiscard]] VlAttribute::DoubleAttribute
    getLocalXform(std::string_view path, bool& isAbsolute, bool requireSent) const;
    /// From local to world space, 16 values; null when absent.
    [[nodiscard]] VlAttribute::DoubleAttribute getWorldXform(std::string_view path,
                                                             bool requireSent) const;
    /// From the parent's space to world space, the identity at a root; null when absent.
    [[nodiscard]] VlAttribute::DoubleAttribute getParentXform(std::string_view path,
                                                              bool requireSent) const;

protected:
    ~LocationTreeBase();

    [[nodiscard]] Node* findNode(std::string_view path) const;
    [[nodiscard]] Node* findParent(std::string_view path);
    /// A node in the index; `attach` it, or `attachRoot`, next.
    Node* addNode(std::string_view path);
    void attachRoot(Node& node);
    /// Appends to a list of the parent's (its children or another) and sets parent and depth.
    static void attach(Node& node, Node& parent, NodeList<Node>& list);
    /// Undoes `attach`: the list's last element takes the node's place.
    static void detach(Node& node, NodeList<Node>& list);
    void enqueue(Node& node);
    /// Takes the node, which has no children any more, out of the index and deletes it.
    void deleteNode(Node* node);

    /// Computes the matrix anew if these attributes have another xform than the one it is of.
    static void updateXform(Node& node, const VlAttribute::GroupAttribute& attributes);
    /// Whether plug-ins would see other attributes than they were sent.
    [[nodiscard]] static bool differsFromSent(const Node& node);
    [[nodiscard]] static bool xformDiffersFromSent(const Node& node);
    static void rememberSent(Node& node);
    static void forgetSent(Node& node);

    /// Deletes the node with all below it, and leaves the index alone.
    void destroy(Node* node);

    DirtySet<Node> dirty_;
    /// Nodes to be deleted at the end of the collection under way; none of them below another.
    std::vector<Node*> doomed_;
    NodeList<Node> roots_; ///< "/root"; whatever else was pinned that has no parent

private:
    [[nodiscard]] const Node* findToRead(std::string_view path, bool requireSent) const;
    [[nodiscard]] static VlAttribute::DoubleAttribute worldXform(const Node* node);

    /// Nodes come and go by the thousand. The memory of those that went is for later ones of this
    /// tree; the process gets it back with the tree's end, or once no location is left at all, and
    /// "/root" mostly stays.
    static constexpr std::size_t kNodesInBlock = 512;
    boost::pool<> memory_{sizeof(Node), kNodesInBlock, kNodesInBlock};
    PathIndex<Node> index_;
    mutable Node* lastFound_ = nullptr;
    /// The parent found last: siblings mostly come in a row.
    Node* lastParent_ = nullptr;
};

extern template class LocationTreeBase<LocationNode>;
extern template class LocationTreeBase<SourceLocationNode>;

} // namespace ViewerAPI
