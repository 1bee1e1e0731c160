#pragma once

#include "vlproxyfactory.h"

namespace ViewerAPI {

/// Shows a wireframe box for each location that has a `bound` of six doubles, shows no children
/// and has no points of its own. The box is that of the `bound` at time 0: one that moves with
/// time has a box that doesn't. A minimum above its maximum is taken as it stands. [ui-thread]
class VlBoundingBoxFactory final : public VlProxyFactory {
public:
    using VlProxyFactory::VlProxyFactory;
    ~VlBoundingBoxFactory() override;

    /// A `bound` of exactly six doubles a sample; six floats don't count.
    [[nodiscard]] bool
    hasRequiredAttributes(const VlAttribute::GroupAttribute& attrs) const override;
    /// Keeps `bound` alone: whether the location is new, or its `bound` has another content.
    bool storeLocation(const LocationPath& path, const VlAttribute::GroupAttribute& attrs) override;
    /// Every box that was asked for is delivered at once.
    void collectProducts(std::vector<FactoryProduct>& out) override;
};

} // namespace ViewerAPI
