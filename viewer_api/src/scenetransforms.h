#pragma once

#include "partialxform.h"

#include "VlAttribute/DoubleAttribute.h"

#include <string>
#include <string_view>

namespace ViewerAPI {

struct VlViewerDelegateHostStruct;

/// Transforms of locations in the three views of a delegate: matrices of 16 doubles, row vectors,
/// world = local x parent. The primary and sources views answer from the trees, for what plug-ins
/// were told of; the look-through view, which has no tree, works them out from the attributes that
/// its client has cached. An unknown view, or a location that a tree doesn't have, yields null.
/// [ui-thread]
class SceneTransforms {
public:
    explicit SceneTransforms(const VlViewerDelegateHostStruct& delegate) : delegate_(delegate) {}

    /// `isAbsolute` becomes true when the transform does not inherit the parent's; always false in
    /// the look-through view, where a location without an `xform` has the identity.
    [[nodiscard]] VlAttribute::DoubleAttribute getLocalXform(std::string_view path,
                                                             bool& isAbsolute, int sceneView) const;

    [[nodiscard]] VlAttribute::DoubleAttribute getWorldXform(std::string_view path,
                                                             int sceneView) const;

    /// The world transform of the parent; at the root the identity.
    [[nodiscard]] VlAttribute::DoubleAttribute getParentXform(std::string_view path,
                                                              int sceneView) const;

    /// With `includeParentXform` in world space, unless the part is absolute; else in the parent's.
    [[nodiscard]] VlAttribute::DoubleAttribute getPartialXform(const std::string& path,
                                                               const PartialXformQuery& query,
                                                               int sceneView,
                                                               bool includeParentXform) const;

private:
    const VlViewerDelegateHostStruct& delegate_;
};

} // namespace ViewerAPI
