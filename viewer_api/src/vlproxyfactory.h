#pragma once

#include "factoryproduct.h"
#include "knownlocations.h"
#include "locationchange.h"

#include "VlAttribute/GroupAttribute.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ViewerAPI {

struct VlViewerDelegateHostStruct;

/// Shows more than the cooked scene: for each location that qualifies, a generated location of one
/// name below it. This base knows which locations qualify and what is asked for; a factory of a
/// kind makes the generated locations.
///
/// Changes of the view become requests, and a collection turns the requests into products, which
/// the delegate brings into its location tree. A location is known here while it qualifies;
/// requests are made only while the factory is enabled. Requests are not de-duplicated: a path may
/// be asked for twice in one collection.
///
/// Nothing here has a thread or a lock of its own: everything runs inside calls of the delegate.
/// [ui-thread]
class VlProxyFactory {
public:
    /// `name` is that of the generated locations.
    explicit VlProxyFactory(std::string_view name);
    virtual ~VlProxyFactory();
    VlProxyFactory(const VlProxyFactory&) = delete;
    VlProxyFactory& operator=(const VlProxyFactory&) = delete;

    /// The delegate to call upwards, not owned.
    virtual void setOwner(VlViewerDelegateHostStruct* delegate);
    /// Makes what the factory needs of its surroundings; once, before all else.
    virtual void initialise();
    /// Which attribute of a location the factory reads, where that is configurable.
    virtual void setAttributeName(std::string_view name);

    /// Whether the location, as the change describes it, is to have a generated one.
    [[nodiscard]] virtual bool isEligible(const LocationChange& change) const;
    [[nodiscard]] virtual bool
    hasRequiredAttributes(const VlAttribute::GroupAttribute& attrs) const = 0;

    /// Knows the location from now on; whether that calls for a new product.
    virtual bool storeLocation(const LocationPath& path, const VlAttribute::GroupAttribute& attrs);
    [[nodiscard]] virtual bool hasLocation(std::string_view path) const;
    virtual void forgetLocation(std::string_view path);
    /// Forgets all locations, and nothing of what was made for them.
    void forgetLocations() { locations.clear(); }
    /// The location at `path` and all below have left the view, and their generated locations with
    /// them: forgets them without asking for removals.
    virtual void removeSubtree(std::string_view path);

    /// `path` is that of a known location.
    virtual void requestProduce(const LocationPath& path);
    virtual void requestRemove(const LocationPath& path);
    /// For every known location.
    virtual void requestProduceAll();
    virtual void requestRemoveAll();

    /// The op system args of the application, which may be null.
    virtual void setSystemArgs(const VlAttribute::GroupAttribute& args);

    /// Appends the products of what was asked for, removals before what is produced.
    virtual void collectProducts(std::vector<FactoryProduct>& out) = 0;
    /// Whether a collection to come has something to bring.
    [[nodiscard]] virtual bool hasPendingWork() const;

    /// Forgets all locations, and what was made for them. Requests stay: those for locations that
    /// are not known any more come to nothing.
    virtual void clear();

    /// Off takes every product away at the next collection, on brings products for exactly what
    /// qualifies then. Does nothing when that is the state already.
    void setEnabled(bool isEnabled);
    [[nodiscard]] bool isEnabled() const { return enabled; }

    /// Writes the products from index `first` on to the debug log.
    static void logProducts(const std::vector<FactoryProduct>& products, std::size_t first);

    /// Only a location that shows no children qualifies.
    bool leavesOnly = true;
    /// A location that has points of its own to show doesn't qualify.
    bool skipGeometry = true;

protected:
    /// Appends the removals that were asked for, and forgets the wishes.
    virtual void collectRemovals(std::vector<FactoryProduct>& out);

    /// Wishes that came up before the factory was disabled: enabling it asks for everything anew.
    void dropRequestsIfDisabled();
    [[nodiscard]] std::string generatedPath(const LocationPath& path) const;
    [[nodiscard]] FactoryProduct makeRemoval(const LocationPath& path) const;

    /// "/" and the generated locations' name.
    const std::string locationSuffix;
    /// What qualifies.
    KnownLocations locations;
    std::vector<LocationPath> toProduce;
    std::vector<LocationPath> toRemove;

private:
    bool enabled = true;
};

} // namespace ViewerAPI
