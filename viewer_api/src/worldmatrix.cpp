#include "worldmatrix.h"

#include "locationnode.h"
#include "matrixattribute.h"

#include <cstddef>

namespace ViewerAPI {

WorldMatrix worldMatrixOf(const LocationNode& node, const WorldMatrix& parentWorld) {
    if (!node.matrix) {
        return node.absolute ? WorldMatrix() : parentWorld;
    }
    const Imath::M44d local = toMatrix(node.matrix);
    const bool isLocal = node.absolute || parentWorld.isIdentity;
    return {isLocal ? local : local * parentWorld.values, false};
}

const WorldMatrix& WorldMatrices::get(const LocationNode& node) {
    // Up to where the old line and the new one part, and back down.
    const LocationNode* joint = &node;
    for (; joint && !isOnLine(*joint); joint = joint->parent) {
        climbed_.push_back(joint);
    }
    line_.resize(joint ? static_cast<std::size_t>(joint->depth) : 0);
    for (; !climbed_.empty(); climbed_.pop_back()) {
        const LocationNode& next = *climbed_.back();
        line_.push_back(
            {&next, worldMatrixOf(next, line_.empty() ? WorldMatrix() : line_.back().world)});
    }
    return line_.back().world;
}

bool WorldMatrices::isOnLine(const LocationNode& node) const {
    const auto depth = static_cast<std::size_t>(node.depth);
    return depth <= line_.size() && line_[depth - 1].node == &node;
}

} // namespace ViewerAPI
