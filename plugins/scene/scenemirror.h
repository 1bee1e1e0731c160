#pragma once

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupAttribute.h"
#include "scene/batchtable.h"
#include "scene/nodeset.h"
#include "scene/pathtree.h"
#include "viewer_api/ViewerLocationEvent.h"

#include <Imath/ImathBox.h>
#include <Imath/ImathMatrix.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace Bundled {

/// A location event with its handles wrapped.
struct LocationUpdate {
    std::string_view path;
    VlAttribute::GroupAttribute attributes;
    VlAttribute::DoubleAttribute xform;
    std::uint32_t flags = 0;

    /// Retains what the event lends.
    static LocationUpdate fromEvent(const ViewerLocationEvent& event);
};

/// What a delegate was told of the scene, kept ready to draw.
///
/// Locations stand in an array, by their node in a tree of names; what they look like is shared.
/// All visible locations of one look form a batch, whose instances lie side by side as the graphics
/// card wants them. `apply` notes what changed; `update` brings world matrices and instances up to
/// date, touching only what changed and what is below it.
///
/// After `update` the mirror equals one that was built from the present state of every location
/// alone, but for the order of batches and of instances in a batch. Not thread-safe.
class SceneMirror {
public:
    /// Takes over what the update's change bits say. A removal covers everything below. Locations
    /// may come before their parents: those count as the identity until they come. A path that
    /// does not begin with "/" is passed over.
    void apply(const LocationUpdate& update);

    /// These locations and everything below them are drawn as selected, now and when they come.
    void setSelection(std::span<const char* const> paths);

    /// Brings everything that the queries below answer up to date.
    void update();

    /// Counts every instance as changed, for a consumer that starts afresh.
    void forgetUploads();

    /// In no particular order; none is empty. Valid until the next `apply`.
    [[nodiscard]] std::span<Batch* const> getBatches() const noexcept { return looks.getShown(); }
    [[nodiscard]] const SharedTable<Geometry>& getGeometries() const noexcept {
        return looks.getGeometries();
    }
    [[nodiscard]] const SharedTable<Material>& getMaterials() const noexcept {
        return looks.getMaterials();
    }
    /// The nodes of visible locations that are drawn as selected, in no particular order. Valid
    /// until the next `apply` or `update`.
    [[nodiscard]] std::span<const std::uint32_t> getSelectedNodes() const noexcept {
        return selectedNodes.get();
    }
    /// Where the instance of a visible location is: its batch, and the position there.
    [[nodiscard]] std::pair<Batch*, std::size_t> getInstance(std::uint32_t node) const {
        return {locations[node].batch, locations[node].position};
    }
    /// World space, around everything that is visible, as it is drawn; empty when nothing is.
    [[nodiscard]] Imath::Box3d getBounds();
    /// Whether the location has been told of and not removed.
    [[nodiscard]] bool hasLocation(std::string_view path) const;
    /// Of all locations that have been told of and not removed, sorted: parents before children.
    [[nodiscard]] std::vector<std::string> getLocationPaths() const;
    /// The identity for an unknown location.
    [[nodiscard]] Imath::M44d getWorldXform(std::string_view path) const;
    [[nodiscard]] std::string getPath(std::uint32_t node) const { return names.getPath(node); }
    [[nodiscard]] std::size_t getNumberOfLocations() const noexcept { return known; }
    /// World matrices computed by `update` since the mirror was made: a measure of its work.
    [[nodiscard]] std::uint64_t getWorldXformComputations() const noexcept { return computations; }

private:
    static constexpr std::uint32_t kNone = PathTree::kNone;

    /// There may be millions of them: kept small.
    struct Location {
        VlAttribute::DoubleAttribute xform;
        /// To world space, as of the last update; null without children. A leaf's is worked out
        /// from its parent's where it is needed.
        std::unique_ptr<Imath::M44d> world;
        /// What the location looks like; null when there is nothing to see.
        Batch* batch = nullptr;
        /// Of its instance in the batch; `kNone` while it is not visible.
        std::uint32_t position = kNone;
        /// Told of, and not only the ancestor of something that was.
        bool known : 1 = false;
        bool hidden : 1 = false;
        bool absolute : 1 = false;
        bool dirty : 1 = false;
        bool selectedItself : 1 = false;
        bool selected : 1 = false;
    };
    struct PathHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view path) const noexcept {
            return std::hash<std::string_view>{}(path);
        }
    };

    std::uint32_t findOrMake(std::string_view path);
    void remove(std::uint32_t top);
    void erase(std::uint32_t top);
    void markDirty(std::uint32_t node);
    void setLook(std::uint32_t node, const VlAttribute::GroupAttribute& attributes);
    void showOrHide(std::uint32_t node);
    void hide(std::uint32_t node);
    void refreshSubtree(std::uint32_t top);
    bool refresh(std::uint32_t node);
    [[nodiscard]] Imath::M44d computeWorld(std::uint32_t node) const;

    PathTree names;
    std::vector<Location> locations;
    BatchTable looks;
    std::vector<std::uint32_t> dirtyNodes;
    std::vector<std::uint32_t> walk;
    std::unordered_set<std::string, PathHash, std::equal_to<>> selection;
    NodeSet selectedNodes;
    std::uint64_t computations = 0;
    std::size_t known = 0;
};

} // namespace Bundled
