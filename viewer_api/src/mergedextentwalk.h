#pragma once

#include "box.h"
#include "extentcache.h"
#include "worldmatrix.h"

#include "VlAttribute/DoubleAttribute.h"

#include <boost/unordered_set.hpp>

#include <optional>
#include <vector>

namespace ViewerAPI {

struct LocationNode;
class SceneBounds;

/// Walks down from the locations asked for and gathers their boxes in world space.
///
/// Plug-ins may answer differently each time, so that all locations without a `bound` are walked to
/// and asked about. Locations with one need nobody: what a location's children of that kind fill
/// together is kept beside the location, in its ExtentCache, and found there by the next walk.
///
/// A plug-in that is asked may change locations: those that the walk has come by count as they
/// were, and so do the matrices above where it is. The next walk finds all as they are. None may go
/// meanwhile. [ui-thread]
class MergedExtentWalk {
public:
    /// Leaves out `excluded`, which may be null, with all below it.
    MergedExtentWalk(const SceneBounds& bounds, const LocationNode* excluded)
        : bounds_(bounds), excluded_(excluded) {}

    /// All are added before the walk. Null is passed over, and so is a location that does not take
    /// part.
    void addStart(const LocationNode* node);

    /// The box around everything; null when there is none. Once.
    [[nodiscard]] VlAttribute::DoubleAttribute run();

private:
    [[nodiscard]] bool takesPart(const LocationNode& node) const;
    void visit(const LocationNode& node);
    [[nodiscard]] static VlAttribute::DoubleAttribute pointExtentOf(const LocationNode& node);
    void visitChildren(const LocationNode& node, const WorldMatrix& world);
    [[nodiscard]] ExtentCache::Children gatherChildren(const LocationNode& node,
                                                       const WorldMatrix& world) const;
    void push(const std::vector<const LocationNode*>& nodes);
    void merge(const VlAttribute::DoubleAttribute& box, const WorldMatrix& world);

    const SceneBounds& bounds_;
    const LocationNode* const excluded_;
    boost::unordered_set<const LocationNode*> starts_;
    std::vector<const LocationNode*> stack_;
    WorldMatrices matrices_;
    std::optional<Box> constant_;          ///< around the boxes that don't vary with time
    VlAttribute::DoubleAttribute varying_; ///< around the others
};

} // namespace ViewerAPI
