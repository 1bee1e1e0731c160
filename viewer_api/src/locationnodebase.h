#pragma once

#include "locationpath.h"
#include "nodelist.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupAttribute.h"

#include <cstdint>
#include <string_view>

namespace ViewerAPI {

/// What the nodes of both location trees have in common. `Node` is the deriving class.
///
/// There may be millions of nodes: the fields are ordered and packed for size.
template <class Node>
struct LocationNodeBase {
    explicit LocationNodeBase(std::string_view text) : path(text) {}

    const LocationPath path;                ///< key in the tree
    Node* parent = nullptr;                 ///< null at a root
    NodeList<Node> children;                ///< in no particular order once one was deleted
    VlAttribute::GroupAttribute attributes; ///< latest, cooked or live
    VlAttribute::DoubleAttribute matrix;    ///< local, of xformGroup(); null without one

    /// The attributes last sent, while `sent`. They stand in for their hash, by which they are
    /// compared with newer ones: so nobody computes the hash of a location that never changes.
    /// The transform that was sent is theirs.
    VlAttribute::GroupAttribute sentAttributes;

    std::uint32_t childIndex = 0;       ///< place in the parent's list
    std::int32_t depth = 1;             ///< root 1, child parent + 1
    std::int32_t pinnedDescendants = 0; ///< pinned locations below, at any depth

    bool absolute : 1 = false;  ///< the xform does not inherit
    bool cooked : 1 = false;    ///< the location exists
    bool wasCooked : 1 = false; ///< it did at the last collection, or at some time since
    bool pinned : 1 = false;
    bool queued : 1 = false; ///< in the dirty set
    bool sent : 1 = false;   ///< plug-ins know the location
};

} // namespace ViewerAPI
