#include "vlproxygeometryfactory.h"

#include "VlAttribute/StringAttribute.h"

#include <algorithm>
#include <span>
#include <utility>

namespace ViewerAPI {

using VlAttribute::GroupAttribute;
using VlAttribute::StringAttribute;

namespace {

/// What stands in the place of a proxy that can't be loaded.
ProxyResult makeWarning() {
    return {{"",
             {{"type", StringAttribute("warning")},
              {"warningMessage", StringAttribute("Unable to produce proxy")}}}};
}

} // namespace

VlProxyGeometryFactory::~VlProxyGeometryFactory() = default;

void VlProxyGeometryFactory::setOwner(VlViewerDelegateHostStruct* delegate) {
    proxyRuntime.setOwner(delegate);
}

void VlProxyGeometryFactory::initialise() {
    proxyRuntime.initialise();
}

void VlProxyGeometryFactory::setAttributeName(std::string_view name) {
    attributeName = name;
}

// ---- What is known

bool VlProxyGeometryFactory::hasRequiredAttributes(const GroupAttribute& attrs) const {
    const GroupAttribute proxy(attrs.borrowChildByName(attributeName));
    return proxy.borrowChildByName("viewer").isValid();
}

bool VlProxyGeometryFactory::storeLocation(const LocationPath& path, const GroupAttribute& attrs) {
    return locations.assign(path, attrs.borrowChildByName(attributeName));
}

void VlProxyGeometryFactory::removeSubtree(std::string_view path) {
    for (const LocationPath& location : keysAtOrBelow(assigned, path)) {
        const std::uint64_t key = assigned.find(location)->second;
        unassign(location);
        if (!waiters.contains(key)) {
            proxyRuntime.cancel(key);
        }
    }
    for (const LocationPath& location : jobQueue.locationsAtOrBelow(path)) {
        jobQueue.remove(location);
    }
    VlProxyFactory::removeSubtree(path);
}

// ---- What is asked for

void VlProxyGeometryFactory::requestProduce(const LocationPath& path) {
    const ProxyJob job = makeProxyJob(GroupAttribute(*locations.find(path)), systemArgs);
    const auto waiting = assigned.find(path);
    if (const auto result = results.find(job.key); result != results.end()) {
        // An older wish of the location that is still queued keeps its place: its result is
        // published too when it comes.
        makeReady(path, result->second);
        if (waiting != assigned.end()) {
            proxyRuntime.cancel(waiting->second);
            unassign(path);
        }
    } else if (waiting == assigned.end()) {
        jobQueue.push(path, job);
    } else if (waiting->second != job.key) {
        // Whether or not others wait for that cook: they mostly turn to another job as well, for
        // the same reason.
        proxyRuntime.cancel(waiting->second);
        unassign(path);
        jobQueue.push(path, job);
    }
}

void VlProxyGeometryFactory::requestRemove(const LocationPath& path) {
    bool isShown = false;
    if (const auto found = published.find(path); found != published.end()) {
        isShown = found->second.current;
        found->second.next = nullptr; // what was ready is not wanted any more
    }
    if (const auto waiting = assigned.find(path); waiting != assigned.end()) {
        // Others may wait for that cook. They come free when their job changes.
        proxyRuntime.cancel(waiting->second);
        unassign(path);
    } else if (jobQueue.contains(path)) {
        jobQueue.remove(path);
    } else {
        isShown = true; // for all that is known here
    }
    if (isShown) {
        toRemove.push_back(path);
    }
}

void VlProxyGeometryFactory::requestProduceAll() {
    for (const auto& location : locations) {
        requestProduce(location.first);
    }
}

void VlProxyGeometryFactory::requestRemoveAll() {
    for (const auto& location : locations) {
        requestRemove(location.first);
    }
}

void VlProxyGeometryFactory::setSystemArgs(const GroupAttribute& args) {
    if (args == systemArgs) {
        return;
    }
    systemArgs = args;
    if (isEnabled()) {
        requestProduceAll();
    }
}

// ---- Collection

void VlProxyGeometryFactory::collectProducts(std::vector<FactoryProduct>& out) {
    poll();
    submitQueued();
    collectRemovals(out);
    dropRequestsIfDisabled();
    publish(out);
}

void VlProxyGeometryFactory::poll() {
    for (const ProxyRuntime::FinishedCook& cook : proxyRuntime.pollFinished()) {
        ProxyRuntime::storeStaticScene(cook.key, cook.staticScene, results);
        serveWaiters(cook.key);
        serveQueued(cook.key);
    }
}

void VlProxyGeometryFactory::submitQueued() {
    while (jobQueue.size() > 0 &&
           proxyRuntime.getNumberOfCooks() < ProxyRuntime::kMaxInFlightCooks) {
        const auto [location, job] = jobQueue.pop();
        if (submit(location, job) == SubmitStatus::Cooking) {
            continue;
        }
        // Cached like a result, for all that wait for it: it is not tried again until `clear`.
        results[job.key] = makeWarning();
        serveQueued(job.key);
        if (const auto waiting = assigned.find(location);
            waiting != assigned.end() && waiting->second == job.key) {
            unassign(location);
            makeReady(location, results[job.key]);
        }
    }
}

SubmitStatus VlProxyGeometryFactory::submit(const LocationPath& location, const ProxyJob& job) {
    // It waits from before the submission on: the user interface may be asked meanwhile, and may
    // do whatever it likes, such as to remove the location.
    assign(location, job.key);
    try {
        return proxyRuntime.submit(job);
    } catch (...) {
        unassign(location);
        throw;
    }
}

void VlProxyGeometryFactory::collectRemovals(std::vector<FactoryProduct>& out) {
    for (const LocationPath& path : toRemove) {
        out.push_back(makeRemoval(path));
        const auto found = published.find(path);
        if (found == published.end()) {
            continue;
        }
        PublishedProxy& proxy = found->second;
        if (!proxy.next) {
            published.erase(found);
            continue;
        }
        // What was asked for after the removal is still to come. A root that goes and comes in one
        // pass stays, and would keep what stands below it.
        if (proxy.current) {
            const std::string root = generatedPath(path);
            for (const ProxyResultItem& item : std::span(*proxy.current).subspan(1)) {
                out.push_back({kFactoryProductRemoved, root + item.name, GroupAttribute::Empty()});
            }
        }
        proxy.current = nullptr;
    }
    toRemove.clear();
}

void VlProxyGeometryFactory::publish(std::vector<FactoryProduct>& out) {
    for (const LocationPath& path : toProduce) {
        const auto found = published.find(path);
        // Nothing for a path that had its turn in this pass, and for one that was forgotten.
        if (found == published.end()) {
            continue;
        }
        PublishedProxy& proxy = found->second;
        const ProxyResult* const next = std::exchange(proxy.next, nullptr);
        if (!next || !hasLocation(path)) {
            continue;
        }
        publishResult(path, proxy.current, *next, out);
        proxy.current = next;
    }
    toProduce.clear();
}

void VlProxyGeometryFactory::publishResult(const LocationPath& path, const ProxyResult* shown,
                                           const ProxyResult& result,
                                           std::vector<FactoryProduct>& out) const {
    const std::string root = generatedPath(path);
    if (shown) {
        // Both count as sorted, which they are among siblings only. What is removed here though it
        // stays, for that reason, comes back below: hence removals stand first.
        auto kept = result.begin();
        for (const ProxyResultItem& old : *shown) {
            while (kept != result.end() && kept->name < old.name) {
                ++kept;
            }
            if (kept != result.end() && kept->name == old.name) {
                ++kept;
            } else {
                out.push_back({kFactoryProductRemoved, root + old.name, GroupAttribute::Empty()});
            }
        }
    }
    for (const ProxyResultItem& item : result) {
        out.push_back({kFactoryProductProduced, root + item.name, item.attrs});
    }
}

void VlProxyGeometryFactory::serveWaiters(std::uint64_t key) {
    const auto found = waiters.find(key);
    if (found == waiters.end()) {
        return;
    }
    for (const LocationPath& path : found->second) {
        makeReady(path, results[key]);
        assigned.erase(path);
    }
    waiters.erase(found);
}

void VlProxyGeometryFactory::serveQueued(std::uint64_t key) {
    for (const LocationPath& path : jobQueue.locationsForJob(key)) {
        makeReady(path, results[key]);
        jobQueue.remove(path);
    }
}

void VlProxyGeometryFactory::makeReady(const LocationPath& path, const ProxyResult& result) {
    toProduce.push_back(path);
    published[path].next = &result;
}

void VlProxyGeometryFactory::assign(const LocationPath& path, std::uint64_t key) {
    assigned[path] = key;
    waiters[key].push_back(path);
}

void VlProxyGeometryFactory::unassign(std::string_view path) {
    const auto found = assigned.find(path);
    if (found == assigned.end()) {
        return;
    }
    const auto waiting = waiters.find(found->second);
    std::vector<LocationPath>& paths = waiting->second;
    if (paths.size() == 1) {
        waiters.erase(waiting);
    } else {
        std::swap(*std::find(paths.begin(), paths.end(), path), paths.back());
        paths.pop_back();
    }
    assigned.erase(found);
}

// ---- The rest

bool VlProxyGeometryFactory::hasPendingWork() const {
    return VlProxyFactory::hasPendingWork() || proxyRuntime.getNumberOfCooks() > 0 ||
           jobQueue.size() > 0;
}

void VlProxyGeometryFactory::clear() {
    results.clear();
    published.clear();
    jobQueue.clear();
    proxyRuntime.clear();
    assigned.clear();
    waiters.clear();
    VlProxyFactory::clear();
}

} // namespace ViewerAPI
