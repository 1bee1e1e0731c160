#include "mergedextentwalk.h"

#include "locationtree.h"
#include "matrixattribute.h"
#include "scenebounds.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlScenelib/VlXFormUtil.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace ViewerAPI {

using VlAttribute::DoubleAttribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlScenelib::VlXFormUtil::CalcTransformedBoundsAtExistingTimes;
using VlScenelib::VlXFormUtil::MergeBounds;

namespace {

// With fewer there is little to gain by keeping what comes of them.
constexpr std::size_t kManyChildren = 8;
constexpr std::int64_t kManyPointValues = 256;

std::optional<Box> constantBoundOf(const LocationNode& node) {
    return toBox(DoubleAttribute(node.attributes.borrowChildByName("bound")));
}

bool hasManyPoints(const LocationNode& node) {
    const GroupAttribute points(node.attributes.borrowChildByName("geometry.point"));
    return FloatAttribute(points.borrowChildByName("P")).getNumberOfValues() >= kManyPointValues ||
           FloatAttribute(points.borrowChildByName("Pw")).getNumberOfValues() >= kManyPointValues;
}

ExtentCache& cacheOf(const LocationNode& node) {
    if (!node.extents) {
        node.extents = std::make_unique<ExtentCache>();
    }
    return *node.extents;
}

} // namespace

void MergedExtentWalk::addStart(const LocationNode* node) {
    if (node && takesPart(*node) && starts_.insert(node).second) {
        stack_.push_back(node);
    }
}

DoubleAttribute MergedExtentWalk::run() {
    while (!stack_.empty()) {
        const LocationNode& node = *stack_.back();
        stack_.pop_back();
        visit(node);
    }
    // A box that doesn't vary changes no other's times, so that all of them can come last.
    return constant_ ? MergeBounds(varying_, toAttribute(*constant_)) : varying_;
}

bool MergedExtentWalk::takesPart(const LocationNode& node) const {
    return node.sent && &node != excluded_ && !LocationTree::isHidden(node);
}

void MergedExtentWalk::visit(const LocationNode& node) {
    const WorldMatrix world = matrices_.get(node);
    const char* const path = node.path.c_str();
    if (const DoubleAttribute box = bounds_.getBounds(node.attributes, path)) {
        merge(box, world);
        return;
    }
    merge(bounds_.computeExtent(pointExtentOf(node), path), world);
    visitChildren(node, world);
}

DoubleAttribute MergedExtentWalk::pointExtentOf(const LocationNode& node) {
    if (node.extents && node.extents->pointExtent) {
        return node.extents->pointExtent;
    }
    DoubleAttribute extent = pointExtent(node.attributes);
    if (hasManyPoints(node)) {
        cacheOf(node).pointExtent = extent;
    }
    return extent;
}

void MergedExtentWalk::visitChildren(const LocationNode& node, const WorldMatrix& world) {
    const std::size_t count = node.children.size() + node.proxyChildren.size();
    if (count == 0) {
        return;
    }
    // What is kept knows nothing of an excluded child.
    const bool isKept = count >= kManyChildren && !(excluded_ && excluded_->parent == &node);
    const ExtentCache::Children* children =
        isKept && node.extents ? node.extents->children.get() : nullptr;
    ExtentCache::Children gathered;
    if (!children || !(children->parentWorld == world)) {
        gathered = gatherChildren(node, world);
        children = &gathered;
    }
    push(children->others);
    if (children->bounds) {
        mergeBox(constant_, *children->bounds);
    }
    // Where most have to be asked the walk costs as much with the rest.
    if (children == &gathered && isKept && gathered.others.size() * 2 <= count) {
        gathered.others.shrink_to_fit();
        cacheOf(node).children = std::make_unique<const ExtentCache::Children>(std::move(gathered));
    }
}

ExtentCache::Children MergedExtentWalk::gatherChildren(const LocationNode& node,
                                                       const WorldMatrix& world) const {
    ExtentCache::Children gathered;
    gathered.parentWorld = world;
    for (const NodeList<LocationNode>* list : {&node.children, &node.proxyChildren}) {
        for (const LocationNode* child : *list) {
            if (!takesPart(*child)) {
                continue;
            }
            const std::optional<Box> box = constantBoundOf(*child);
            const std::optional<Box> moved =
                box ? transformBox(*box, worldMatrixOf(*child, world)) : std::nullopt;
            if (moved) {
                mergeBox(gathered.bounds, *moved);
            } else {
                gathered.others.push_back(child);
            }
        }
    }
    return gathered;
}

void MergedExtentWalk::push(const std::vector<const LocationNode*>& nodes) {
    // Each node has one parent, so only a start can be reached twice.
    for (const LocationNode* node : nodes) {
        if (starts_.find(node) == starts_.end()) {
            stack_.push_back(node);
        }
    }
}

void MergedExtentWalk::merge(const DoubleAttribute& box, const WorldMatrix& world) {
    if (const std::optional<Box> constant = toBox(box)) {
        if (const std::optional<Box> moved = transformBox(*constant, world)) {
            mergeBox(constant_, *moved);
            return;
        }
    }
    const DoubleAttribute matrix =
        world.isIdentity ? DoubleAttribute() : toMatrixAttribute(world.values);
    varying_ = MergeBounds(varying_, CalcTransformedBoundsAtExistingTimes(matrix, box));
}

} // namespace ViewerAPI
