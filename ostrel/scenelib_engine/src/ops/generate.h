#pragma once

#include "VlScenelibEngine/OpType.h"

namespace VlScenelibEngine {

/// "Scene.Generate": a regular hierarchy of any size, as measurements use it.
///
/// `leafCount` (int, default 1000): how many leaves; they stand in groups of 100, these in sets of
/// 10, the sets under the root: /root/set_0/group_0/leaf_0. The last group may have fewer.
/// `withGeometry` (int, default 0): 1 gives each leaf a cube mesh.
///
/// Every set, group and leaf has an `xform` of a rotation about z and a translation inside it;
/// every leaf a unit box as its `bound`. Alike locations share their attributes and child lists.
class Generate final : public OpType {
public:
    [[nodiscard]] CookResult cook(CookContext& context) const override;
};

} // namespace VlScenelibEngine
