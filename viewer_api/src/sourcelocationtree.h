#pragma once

#include "locationchange.h"
#include "locationtreebase.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace ViewerAPI {

/// The sources view: the locations that were activated, with everything above and below them.
///
/// A simple sister of LocationTree: a location shows when it exists and it, an ancestor or a
/// location below is pinned. There are no modes, no hiding and no proxies. Its records set only
/// `absolute`, `removed`, `attributesChanged` and `xformChanged`. [ui-thread]
class SourceLocationTree : public LocationTreeBase<SourceLocationNode> {
public:
    SourceLocationTree() = default;

    /// The location exists, with these attributes. Parents are cooked before children: a location
    /// whose parent is unknown is passed over.
    void cook(std::string_view path, VlAttribute::GroupAttribute attributes);
    /// The location does not exist, and therefore nothing below it. Unknown ones are ignored.
    void deleteLocation(std::string_view path);

    /// A pinned location that isn't there yet stands in the tree, with its ancestors, uncooked.
    void pinLocation(std::string_view path);
    void unpinLocation(std::string_view path);

    /// Replaces `out` by the records of what changed since the last call, parents before children.
    void collect(std::vector<LocationChange>& out);

private:
    /// What a walk brings from the parent.
    struct Inherited {
        bool parentRemoved = false;
        bool parentUncooked = false;
        bool parentDeleted = false;
        bool pinChanged = false;

        [[nodiscard]] bool any() const {
            return parentRemoved || parentUncooked || parentDeleted || pinChanged;
        }
    };

    /// Null when the parent is unknown and is not to be created.
    SourceLocationNode* createNode(std::string_view path, bool createParents);
    void changePinnedAncestors(SourceLocationNode& node, std::int32_t by);
    void walk(SourceLocationNode& node, const Inherited& inherited,
              std::vector<LocationChange>& out);
    static void appendChange(SourceLocationNode& node, std::vector<LocationChange>& out);
    void deleteDoomed();
    void deleteSubtree(SourceLocationNode* node);
};

} // namespace ViewerAPI
