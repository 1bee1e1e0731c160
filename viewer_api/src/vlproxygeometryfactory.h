#pragma once

#include "keyedqueue.h"
#include "pathmap.h"
#include "proxyjob.h"
#include "proxyresult.h"
#include "proxyruntime.h"
#include "vlproxyfactory.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace ViewerAPI {

/// Shows a light substitute for what a location holds, where an attribute of the location says how
/// to load one: the generated location, with a whole scene below it.
///
/// A substitute is cooked elsewhere, which takes time. Each request becomes a job; jobs wait in a
/// queue, cook, and what was cooked is kept by the job's key until `clear`, failures too, so that
/// going back to an earlier frame costs a look-up. Locations with the same job share a cook.
///
/// A known location is idle, or queued, or cooking, or ready to be published. [ui-thread]
class VlProxyGeometryFactory final : public VlProxyFactory {
public:
    using VlProxyFactory::VlProxyFactory;
    ~VlProxyGeometryFactory() override;

    void setOwner(VlViewerDelegateHostStruct* delegate) override;
    void initialise() override;
    void setAttributeName(std::string_view name) override;

    [[nodiscard]] bool
    hasRequiredAttributes(const VlAttribute::GroupAttribute& attrs) const override;
    /// Keeps that attribute alone: whether the location is new, or it has another content.
    bool storeLocation(const LocationPath& path, const VlAttribute::GroupAttribute& attrs) override;
    /// What had been published for the locations stays remembered: one that comes back is compared
    /// with what it showed.
    void removeSubtree(std::string_view path) override;

    void requestProduce(const LocationPath& path) override;
    void requestRemove(const LocationPath& path) override;
    void requestProduceAll() override;
    void requestRemoveAll() override;
    /// Asks anew for every location whose job becomes another: the frame is in the args.
    void setSystemArgs(const VlAttribute::GroupAttribute& args) override;

    /// Takes what has been cooked, submits what waits, and publishes. Passes on what the listener
    /// of "getViewerProxyLoaderOp" throws; the location in hand gets nothing then.
    void collectProducts(std::vector<FactoryProduct>& out) override;
    [[nodiscard]] bool hasPendingWork() const override;
    void clear() override;

protected:
    void collectRemovals(std::vector<FactoryProduct>& out) override;

private:
    /// What a location shows and is about to show; null for nothing. Values of `results`.
    struct PublishedProxy {
        const ProxyResult* current = nullptr;
        const ProxyResult* next = nullptr;
    };

    void poll();
    void submitQueued();
    SubmitStatus submit(const LocationPath& location, const ProxyJob& job);
    void publish(std::vector<FactoryProduct>& out);
    void publishResult(const LocationPath& path, const ProxyResult* shown,
                       const ProxyResult& result, std::vector<FactoryProduct>& out) const;

    void serveWaiters(std::uint64_t key);
    void serveQueued(std::uint64_t key);
    void makeReady(const LocationPath& path, const ProxyResult& result);
    /// The location waits for a cook from now on, and not any more.
    void assign(const LocationPath& path, std::uint64_t key);
    void unassign(std::string_view path);

    std::string attributeName;
    VlAttribute::GroupAttribute systemArgs;
    KeyedQueue jobQueue;
    ProxyRuntime proxyRuntime;
    std::map<std::uint64_t, ProxyResult> results;
    std::map<std::uint64_t, std::vector<LocationPath>> waiters;
    PathMap<std::uint64_t> assigned; ///< the key of the job that each waiter waits for
    PathMap<PublishedProxy> published;
};

} // namespace ViewerAPI
