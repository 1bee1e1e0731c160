#include "vlproxyfactory.h"

#include "VlAttribute/IntAttribute.h"
#include "VlLogging/VlLoggerGlue.h"

#include <sstream>

namespace ViewerAPI {

using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;

namespace {

constexpr const char* kLogSource = "viewer_api/src/vlproxyfactory";
constexpr int kProductLine = 103;

const VlLoggerGlue& logger() {
    static const VlLoggerGlue glue("ViewerAPI.VlProxyFactory");
    return glue;
}

} // namespace

VlProxyFactory::VlProxyFactory(std::string_view name) : locationSuffix("/" + std::string(name)) {}

VlProxyFactory::~VlProxyFactory() = default;

void VlProxyFactory::setOwner(VlViewerDelegateHostStruct* /*delegate*/) {}

void VlProxyFactory::initialise() {}

void VlProxyFactory::setAttributeName(std::string_view /*name*/) {}

bool VlProxyFactory::isEligible(const LocationChange& change) const {
    // What most locations lack comes first: this is asked for every change of the scene.
    const GroupAttribute& attributes = change.attributes;
    if ((leavesOnly && !change.leaf) || change.hidden || !hasRequiredAttributes(attributes)) {
        return false;
    }
    if (skipGeometry && attributes.borrowChildByName("geometry.point").isValid()) {
        return false;
    }
    const IntAttribute hide(attributes.borrowChildByName("viewer.default.drawOptions.hide"));
    return hide.getValue(0) == 0;
}

bool VlProxyFactory::storeLocation(const LocationPath& path, const GroupAttribute& attrs) {
    return locations.insert(path, attrs);
}

bool VlProxyFactory::hasLocation(std::string_view path) const {
    return locations.contains(path);
}

void VlProxyFactory::forgetLocation(std::string_view path) {
    locations.erase(path);
}

void VlProxyFactory::removeSubtree(std::string_view path) {
    locations.eraseAtOrBelow(path);
}

void VlProxyFactory::requestProduce(const LocationPath& path) {
    toProduce.push_back(path);
}

void VlProxyFactory::requestRemove(const LocationPath& path) {
    toRemove.push_back(path);
}

void VlProxyFactory::requestProduceAll() {
    for (const auto& location : locations) {
        toProduce.push_back(location.first);
    }
}

void VlProxyFactory::requestRemoveAll() {
    for (const auto& location : locations) {
        toRemove.push_back(location.first);
    }
}

void VlProxyFactory::setSystemArgs(const GroupAttribute& /*args*/) {}

bool VlProxyFactory::hasPendingWork() const {
    return !toProduce.empty() || !toRemove.empty();
}

void VlProxyFactory::clear() {
    locations.clear();
}

void VlProxyFactory::setEnabled(bool isEnabled) {
    if (isEnabled == enabled) {
        return;
    }
    enabled = isEnabled;
    if (enabled) {
        requestProduceAll();
    } else {
        requestRemoveAll();
    }
}

void VlProxyFactory::logProducts(const std::vector<FactoryProduct>& products, std::size_t first) {
    if (!logger().debugEnabled()) {
        return;
    }
    for (std::size_t index = first; index < products.size(); ++index) {
        std::ostringstream text;
        text << products[index];
        logger().debug(text.str(), kLogSource, kProductLine);
    }
}

void VlProxyFactory::collectRemovals(std::vector<FactoryProduct>& out) {
    for (const LocationPath& path : toRemove) {
        out.push_back(makeRemoval(path));
    }
    toRemove.clear();
}

void VlProxyFactory::dropRequestsIfDisabled() {
    if (!enabled) {
        toProduce.clear();
    }
}

std::string VlProxyFactory::generatedPath(const LocationPath& path) const {
    std::string generated;
    generated.reserve(path.view().size() + locationSuffix.size());
    return generated.append(path.view()).append(locationSuffix);
}

FactoryProduct VlProxyFactory::makeRemoval(const LocationPath& path) const {
    return {kFactoryProductRemoved, generatedPath(path), GroupAttribute::Empty()};
}

} // namespace ViewerAPI
