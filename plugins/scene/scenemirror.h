#pragma once

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupAttribute.h"
#include "scene/batch.h"
#include "scene/drawoptions.h"
#include "scene/frustum.h"
#include "scene/geometry.h"
#include "scene/material.h"
#include "scene/nodeset.h"
#include "scene/sharedtable.h"
#include "viewer_api/ViewerLocationEvent.h"

#include <Imath/ImathBox.h>
#include <Imath/ImathMatrix.h>

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
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
/// Locations live in parallel arrays, one place a location; equal geometries and equal materials
/// exist once; all visible locations with the same pair of them, and the same draw options, form a
/// batch, whose instances lie side by side as the graphics card wants them. `apply` notes what
/// changed; `update` brings world matrices and instances up to date, touching only what changed and
/// what is below it.
///
/// After `update` the mirror equals one that was built from the present state of every location
/// alone, but for the order of batches and of instances in a batch. Not thread-safe.
class SceneMirror {
public:
    /// Takes over what the update's change bits say. A removal covers everything below. Locations
    /// may come before their parents: those count as the identity until they come.
    void apply(const LocationUpdate& update);

    /// These locations and everything below them are drawn as selected, now and when they come.
    void setSelection(std::span<const char* const> paths);

    /// Brings everything that the queries below answer up to date.
    void update();

    /// Counts every instance as changed, for a consumer that starts afresh.
    void forgetUploads();

    /// In no particular order; none is empty. Valid until the next `apply`.
    [[nodiscard]] std::span<Batch* const> getBatches() const noexcept { return batchList; }
    [[nodiscard]] const SharedTable<Geometry>& getGeometries() const noexcept { return geometries; }
    [[nodiscard]] const SharedTable<Material>& getMaterials() const noexcept { return materials; }
    /// The nodes of visible locations that are drawn as selected, in no particular order. Valid
    /// until the next `apply` or `update`.
    [[nodiscard]] std::span<const std::uint32_t> getSelectedNodes() const noexcept {
        return selectedNodes.get();
    }
    /// Where the instance of a visible location is: its batch, and the position there.
    [[nodiscard]] std::pair<Batch*, std::size_t> getInstance(std::uint32_t node) const {
        return {contents[node].batch, contents[node].position};
    }
    /// World space, around everything that is visible; empty when nothing is.
    [[nodiscard]] Imath::Box3d getBounds();
    /// Appends the instances of a batch that a frustum in world space can see, but for a few more
    /// near its edges.
    void appendVisibleRuns(Batch& batch, const Frustum& frustum, std::vector<InstanceRun>& runs);
    /// World space, around one instance of a batch.
    [[nodiscard]] Imath::Box3d getInstanceBounds(const Batch& batch, std::size_t position) const;
    /// Whether the location has been told of and not removed.
    [[nodiscard]] bool hasLocation(std::string_view path) const;
    /// Of all locations that have been told of and not removed, sorted: parents before children.
    [[nodiscard]] std::vector<std::string> getLocationPaths() const;
    /// The identity for an unknown location.
    [[nodiscard]] Imath::M44d getWorldXform(std::string_view path) const;
    [[nodiscard]] const std::string& getPath(std::uint32_t node) const { return *paths[node]; }
    [[nodiscard]] std::size_t getNumberOfLocations() const noexcept { return known; }
    /// World matrices computed since the mirror was made: a measure of the work of `update`.
    [[nodiscard]] std::uint64_t getWorldXformComputations() const noexcept { return computations; }

private:
    static constexpr std::uint32_t kNone = UINT32_MAX;

    struct Flags {
        /// Told of, and not only the ancestor of something that was.
        bool known : 1;
        bool hidden : 1;
        bool absolute : 1;
        bool dirty : 1;
        bool selectedItself : 1;
        bool selected : 1;
    };
    /// Neighbours in the tree.
    struct Links {
        std::uint32_t parent = kNone;
        std::uint32_t firstChild = kNone;
        std::uint32_t nextSibling = kNone;
        std::uint32_t previousSibling = kNone;
        std::uint32_t depth = 0;
    };
    /// What a location shows and where its instance is.
    struct Content {
        std::uint32_t geometry = kNone;
        std::uint32_t material = kNone;
        DrawOptions options;
        Batch* batch = nullptr;
        std::uint32_t position = 0;
    };
    struct PathHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view path) const noexcept {
            return std::hash<std::string_view>{}(path);
        }
    };

    [[nodiscard]] std::uint32_t find(std::string_view path) const;
    std::uint32_t findOrCreate(std::string_view path);
    std::uint32_t takeNode(std::uint32_t parent);
    void removeSubtree(std::uint32_t top);
    void freeNode(std::uint32_t node);
    void unlink(std::uint32_t node);
    void markDirty(std::uint32_t node);
    void setContent(std::uint32_t node, const VlAttribute::GroupAttribute& attributes);
    void placeInBatch(std::uint32_t node);
    void takeOutOfBatch(std::uint32_t node);
    void updateBounds(Batch& batch) const;
    void refreshSubtree(std::uint32_t top);
    bool refresh(std::uint32_t node);

    // One entry a location, all of the same length; free places are listed in `freeNodes`.
    std::vector<Links> links;
    std::vector<Flags> flags;
    std::vector<Content> contents;
    std::vector<VlAttribute::DoubleAttribute> xforms;
    std::vector<Imath::M44d> worlds;
    std::vector<const std::string*> paths;

    std::vector<std::uint32_t> freeNodes;
    std::vector<std::uint32_t> dirtyNodes;
    std::vector<std::uint32_t> walk;
    std::unordered_map<std::string, std::uint32_t, PathHash, std::equal_to<>> nodeByPath;
    std::unordered_set<std::string, PathHash, std::equal_to<>> selection;
    NodeSet selectedNodes;

    SharedTable<Geometry> geometries;
    SharedTable<Material> materials;
    /// By geometry, material and draw options. The addresses of batches are stable.
    std::map<std::tuple<std::uint32_t, std::uint32_t, DrawOptions>, Batch> batches;
    std::vector<Batch*> batchList;
    std::uint64_t lastBatchSerial = 0;
    std::uint64_t computations = 0;
    std::size_t known = 0;
};

} // namespace Bundled
