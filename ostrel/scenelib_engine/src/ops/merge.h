#pragma once

#include "VlScenelibEngine/OpType.h"

namespace VlScenelibEngine {

/// "Scene.Merge": the locations of all inputs in one hierarchy.
///
/// Where one input alone has a location, that location and all below it is passed on as it is.
/// Where several have it, its attributes are those of the first input updated with the top-level
/// attributes of each later one in turn, so that a later input wins, attribute by attribute; and
/// its children are those of all, in the order in which the inputs name them.
class Merge final : public OpType {
public:
    [[nodiscard]] CookResult cook(CookContext& context) const override;
};

} // namespace VlScenelibEngine
