#pragma once

#include "locationchange.h"
#include "locationtreebase.h"
#include "pathset.h"
#include "workingsetstate.h"

#include "VlAttribute/StringAttribute.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

namespace ViewerAPI {

/// The primary view: what was cooked, joined with what the user opened, pinned and hid, the
/// working set, and the proxies that the viewer generates. Plug-ins are not told what was cooked;
/// they are told what changed in the view since they were told last.
///
/// Every operation only marks what it touches. `collect` then walks what was marked, and only its
/// subtrees, and appends a record for each location whose view changed. Applying all records to
/// an empty view in order always gives the view of the tree as it was at the last collection.
///
/// There are two modes. In expansion mode a location shows when no ancestor is closed, or when it
/// is pinned or has pinned locations below. In working-set mode openness and pins don't count:
/// the working set decides. A location of which the working set has not told keeps showing, or
/// not, as plug-ins know it.
///
/// A location that exists in the tree without being cooked is there for a pin of itself or of a
/// location below; the tree drops it at the next collection after that reason is gone. [ui-thread]
class LocationTree : public LocationTreeBase<LocationNode> {
public:
    LocationTree() = default;

    /// The location exists, with these attributes (working-set data taken out). Parents are
    /// cooked before children: a location whose parent is unknown is passed over, and so is a proxy
    /// whose parent is not cooked.
    /// `isLeaf`: it has no potential children. `isProxy` counts when the location is new.
    void cook(std::string_view path, VlAttribute::GroupAttribute attributes,
              const WorkingSetState& workingSet, bool isProxy, bool isLeaf);
    /// The location does not exist, and therefore nothing below it. Unknown ones are ignored.
    void deleteLocation(std::string_view path);

    /// Openness is remembered for locations that don't exist, or go and come back.
    void openLocation(std::string_view path);
    void closeLocation(std::string_view path);
    /// A pinned location that isn't there yet stands in the tree, with its ancestors, uncooked.
    void pinLocation(std::string_view path);
    void unpinLocation(std::string_view path);

    /// Hiding is remembered for locations that don't exist. An existing proxy can't be hidden and
    /// is passed over.
    void hideLocations(std::span<const char* const> paths);
    void unhideLocations(std::span<const char* const> paths);
    void unhideAllLocations();
    /// All paths that are hidden by themselves, sorted; those of unknown locations too. Valid also
    /// when there is none.
    [[nodiscard]] VlAttribute::StringAttribute getHiddenLocations() const;

    /// Puts a live value in place of the cooked attributes. Unknown locations are ignored.
    void setAttributes(std::string_view path, VlAttribute::GroupAttribute attributes);

    /// Working-set mode on or off, from the next collection on.
    void setMode(bool workingSetEnabled);

    /// Whether a collection has something to look at.
    [[nodiscard]] bool isDirty() const {
        return mode_ != previousMode_ || LocationTreeBase::isDirty();
    }

    /// Replaces `out` by the records of what changed since the last call, parents before children.
    void collect(std::vector<LocationChange>& out);

    /// The locations below this one that plug-ins know, without itself, nearest first: per
    /// location its children, then its proxies. Null when plug-ins don't know the location.
    [[nodiscard]] VlAttribute::StringAttribute getDescendantLocations(std::string_view path) const;

    /// Describes every location that plug-ins know, parents before children, by the record that
    /// would tell of it for the first time; without its transform. `visit` must leave the tree
    /// alone.
    void visitSent(const std::function<void(const LocationChange&)>& visit) const;

    /// Hidden by itself or by an ancestor, now.
    [[nodiscard]] static bool isHidden(const LocationNode& node) {
        return node.hidden || node.inheritedHidden;
    }

private:
    enum class Mode : std::uint32_t { Expansion = 0, WorkingSet = 1 };

    /// What a walk brings from the parent.
    struct Inherited {
        bool parentRemoved = false;
        bool parentUncooked = false;
        bool parentDeleted = false;
        bool collapsedChanged = false;
        bool inheritState = false;
        bool modeChanged = false;
        bool hiddenChanged = false;

        [[nodiscard]] bool any() const {
            return parentRemoved || parentUncooked || parentDeleted || collapsedChanged ||
                   inheritState || modeChanged || hiddenChanged;
        }
    };

    /// Null when the parent is unknown and is not to be created, and for the proxy of an uncooked
    /// one.
    LocationNode* createNode(std::string_view path, bool createParents, bool isProxy);
    void attachToParent(LocationNode& node, LocationNode& parent, bool isProxy);
    static void inheritState(LocationNode& proxy, const LocationNode& parent);
    /// Whether the location shows although it is collapsed, and its proxies with it.
    [[nodiscard]] static bool showsByPin(const LocationNode& node) {
        return node.pinned || node.pinnedDescendants != 0;
    }
    void changePinnedAncestors(LocationNode& node, std::int32_t by);
    /// Of the location and its parent: something has changed that extents depend on.
    static void dropExtents(LocationNode& node);
    void setHidden(LocationNode& node, bool isHidden);
    static bool storeAttributes(LocationNode& node, VlAttribute::GroupAttribute attributes);

    void walk(LocationNode& node, const Inherited& inherited, std::vector<LocationChange>& out);
    [[nodiscard]] bool isVisible(const LocationNode& node) const;
    [[nodiscard]] bool showsHidden(const LocationNode& node) const;
    [[nodiscard]] bool showsChildren(const LocationNode& node) const;
    static void forget(LocationNode& node);
    void appendChange(LocationNode& node, std::vector<LocationChange>& out) const;
    void deleteDoomed();
    void deleteSubtree(LocationNode* node);

    PathSet pendingOpen_; ///< open, and without a node
    PathSet hidden_;
    Mode mode_ = Mode::Expansion;
    Mode previousMode_ = Mode::Expansion; ///< at the last collection
};

} // namespace ViewerAPI
