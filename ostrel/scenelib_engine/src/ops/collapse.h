#pragma once

#include "VlScenelibEngine/OpType.h"

namespace VlScenelibEngine {

/// "HierarchyCollapse": a root without children, whose one attribute `staticScene` is the whole of
/// its input: each level a group of `a`, the location's attributes, and `c`, its children by name,
/// each in this same form; the top level is the root. What "Scene.Literal" shows as a scene again.
///
/// A dot in a child's name makes nested groups of it, as in any name of an attribute: such
/// locations can't be read back. Without an input nothing is shown.
class Collapse final : public OpType {
public:
    [[nodiscard]] CookResult cook(CookContext& context) const override;
};

} // namespace VlScenelibEngine
