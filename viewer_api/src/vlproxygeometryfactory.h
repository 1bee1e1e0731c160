#pragma once

#include "vlproxyfactory.h"

namespace ViewerAPI {

/// Knows the locations that say, in an attribute of a configurable name, how to load a light
/// substitute for what they hold. [ui-thread]
class VlProxyGeometryFactory final : public VlProxyFactory {
public:
    using VlProxyFactory::VlProxyFactory;
    ~VlProxyGeometryFactory() override;

    void setAttributeName(std::string_view name) override;
    [[nodiscard]] bool
    hasRequiredAttributes(const VlAttribute::GroupAttribute& attrs) const override;
    bool storeLocation(const LocationPath& path, const VlAttribute::GroupAttribute& attrs) override;
    void collectProducts(std::vector<FactoryProduct>& out) override;

private:
    std::string attributeName;
};

} // namespace ViewerAPI
