#include "vlproxygeometryfactory.h"

namespace ViewerAPI {

using VlAttribute::GroupAttribute;

VlProxyGeometryFactory::~VlProxyGeometryFactory() = default;

void VlProxyGeometryFactory::setAttributeName(std::string_view name) {
    attributeName = name;
}

bool VlProxyGeometryFactory::hasRequiredAttributes(const GroupAttribute& attrs) const {
    return attrs.borrowChildByName(attributeName + ".viewer").isValid();
}

bool VlProxyGeometryFactory::storeLocation(const LocationPath& path, const GroupAttribute& attrs) {
    return locations.assign(path, attrs.borrowChildByName(attributeName));
}

void VlProxyGeometryFactory::collectProducts(std::vector<FactoryProduct>& out) {
    collectRemovals(out);
    toProduce.clear();
}

} // namespace ViewerAPI
