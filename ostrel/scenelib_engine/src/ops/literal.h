#pragma once

#include "VlScenelibEngine/OpType.h"

namespace VlScenelibEngine {

/// "Scene.Literal": a small hierarchy that stands in the arguments.
///
/// `staticScene`: a group of `a`, the root's attributes, and `c`, a group of its children by name,
/// each in this same form. Both may be left out. Without `staticScene` nothing is shown.
///
/// Only the root's cook reads the argument; each child is handed its own group, so that an edit
/// cooks the locations on the way to what changed and no others.
class Literal final : public OpType {
public:
    [[nodiscard]] CookResult cook(CookContext& context) const override;
};

} // namespace VlScenelibEngine
