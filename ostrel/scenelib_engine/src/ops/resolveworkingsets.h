#pragma once

#include "VlScenelibEngine/OpType.h"

namespace VlScenelibEngine {

/// "WorkingSet.MultipleOnePassResolve": its input, with what working sets make of each location
/// written on it.
///
/// `workingSetsInfo`: a group of working sets by name. Each is a group of `include` and `exclude`
/// (lists of paths; a path in both is excluded), `childrenInherit` (1 unless told: what is below an
/// included location is included too, down to what is excluded; 0: only the very locations are)
/// and `polish` (0 unless told). `outputGroupName`: where to write. Without either, or without a
/// set, the input passes.
///
/// A location that a set includes, or on the way to one that it names as included, and in any case
/// the root, bears a group of the set's name in the output group:
///
/// - with `polish`, a group `polished` of integers, 0 or 1: `included`; `hasIncludedChildren`,
///   whether it has a child that the set names as included or as an ancestor of such a location;
///   `childrenInheritInclusion`, whether what is below it is included unless excluded by name.
/// - `keptChildren`, the names of the children that the set keeps, where children don't inherit
///   inclusion; or `droppedChildren`, the names of those that it does not keep, where they do and
///   something below is excluded; or neither, where the set includes all that is below.
///
/// Everything else is the input's own, and is not cooked here.
///
/// One pass: each location learns all there is to know from its parent's cook and its own input.
class ResolveWorkingSets final : public OpType {
public:
    [[nodiscard]] CookResult cook(CookContext& context) const override;
};

} // namespace VlScenelibEngine
