#pragma once

#include "VlScenelibEngine/OpType.h"

namespace VlScenelibEngine {

/// "Scene.Edit": its input with attributes set on top of it, location by location.
///
/// `edits`: a group of `a`, attributes that are set on the root, and `c`, a group of the edits of
/// its children by name, each in this same form. Both may be left out. A group among the attributes
/// is merged into the group that the input has of that name, in the same manner; anything else
/// replaces what it has, at its place. Edits of locations that the input does not have are ignored.
///
/// A location with an edit neither on it nor below it is the input's own, so that an edit costs
/// only the way to its location; and a changed one cooks only the way to what changed.
class Edit final : public OpType {
public:
    [[nodiscard]] CookResult cook(CookContext& context) const override;
};

} // namespace VlScenelibEngine
