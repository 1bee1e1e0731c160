#pragma once

#include "VlScenelibEngine/OpType.h"

namespace VlScenelibEngine {

/// "WorkingSet.Prune": its input, as "WorkingSet.MultipleOnePassResolve" made it, without what its
/// working sets don't keep: locations that none of them includes, or names as included somewhere
/// below.
///
/// `groupName`: the output group of the resolution. Without it, and where the root does not bear
/// that group, the input passes.
///
/// What is dropped is cooked neither here nor by this in the input, and where all is kept the
/// input's own locations are shown.
class PruneWorkingSets final : public OpType {
public:
    [[nodiscard]] CookResult cook(CookContext& context) const override;
};

} // namespace VlScenelibEngine
