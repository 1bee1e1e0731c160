#include "vlproxyfactorylist.h"

#include "vlboundingboxfactory.h"
#include "vlproxygeometryfactory.h"
#include "vlviewerdelegatehost.h"

#include <algorithm>

namespace ViewerAPI {

using VlAttribute::GroupAttribute;

namespace {

constexpr std::size_t kBoundingBoxes = 0;
constexpr std::size_t kProxyGeometry = 1;

} // namespace

VlProxyFactoryList::VlProxyFactoryList() = default;

VlProxyFactoryList::~VlProxyFactoryList() = default;

void VlProxyFactoryList::createFactories() {
    factories_.resize(2);
    factories_[kBoundingBoxes] = std::make_unique<VlBoundingBoxFactory>("__VlOst_bbox");
    auto proxies = std::make_unique<VlProxyGeometryFactory>("__VlOst_proxy");
    proxies->setAttributeName("proxies");
    // A proxy is wanted also where the location has points of its own; a box isn't.
    proxies->skipGeometry = false;
    factories_[kProxyGeometry] = std::move(proxies);
}

void VlProxyFactoryList::initialise() {
    for (const auto& factory : factories_) {
        factory->initialise();
    }
}

void VlProxyFactoryList::setOwner(VlViewerDelegateHostStruct* delegate) {
    owner_ = delegate;
    for (const auto& factory : factories_) {
        factory->setOwner(delegate);
    }
}

void VlProxyFactoryList::setSystemArgs(const GroupAttribute& args) {
    for (const auto& factory : factories_) {
        factory->setSystemArgs(args);
    }
}

void VlProxyFactoryList::setBoundingBoxesEnabled(bool isEnabled) {
    if (!factories_.empty()) {
        setEnabled(*factories_[kBoundingBoxes], isEnabled);
    }
}

void VlProxyFactoryList::setProxyGeometryEnabled(bool isEnabled) {
    if (!factories_.empty()) {
        setEnabled(*factories_[kProxyGeometry], isEnabled);
    }
}

void VlProxyFactoryList::setEnabled(VlProxyFactory& factory, bool isEnabled) {
    if (isEnabled == factory.isEnabled()) {
        return;
    }
    if (isEnabled) {
        learn(factory);
    }
    factory.setEnabled(isEnabled);
    if (!isEnabled) {
        factory.forgetLocations();
    }
}

void VlProxyFactoryList::learn(VlProxyFactory& factory) const {
    if (!owner_) {
        return;
    }
    // In the midst of a delivery the tree is ahead of what the factories have been told. What they
    // are told of then is known already, or goes: products are collected only after it.
    owner_->locationTree.visitSent([&factory](const LocationChange& location) {
        if (!location.proxy && factory.isEligible(location)) {
            factory.storeLocation(location.path, location.attributes);
        }
    });
}

void VlProxyFactoryList::applyChanges(std::span<const LocationChange> changes) {
    for (const LocationChange& change : changes) {
        if (change.proxy) {
            continue;
        }
        if (change.removed) {
            // The tree has dropped the generated locations with their parent.
            removeSubtree(change.path);
            continue;
        }
        for (const auto& factory : factories_) {
            if (factory->isEnabled()) {
                applyChange(*factory, change);
            }
        }
    }
}

void VlProxyFactoryList::applyChange(VlProxyFactory& factory, const LocationChange& change) {
    const bool isKnown = factory.hasLocation(change.path);
    if (!factory.isEligible(change)) {
        if (!isKnown) {
            return;
        }
        factory.forgetLocation(change.path);
        factory.requestRemove(change.path);
    } else if (change.attributesChanged || !isKnown) {
        if (factory.storeLocation(change.path, change.attributes)) {
            factory.requestProduce(change.path);
        }
    }
}

void VlProxyFactoryList::collectProducts(std::vector<FactoryProduct>& out) {
    for (const auto& factory : factories_) {
        factory->collectProducts(out);
    }
}

bool VlProxyFactoryList::hasPendingWork() const {
    return std::any_of(factories_.begin(), factories_.end(),
                       [](const auto& factory) { return factory->hasPendingWork(); });
}

void VlProxyFactoryList::removeSubtree(std::string_view path) {
    for (const auto& factory : factories_) {
        factory->removeSubtree(path);
    }
}

void VlProxyFactoryList::clear() {
    for (const auto& factory : factories_) {
        factory->clear();
    }
}

} // namespace ViewerAPI
