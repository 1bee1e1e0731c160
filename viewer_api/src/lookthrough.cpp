#include "lookthrough.h"

#include "vlviewerdelegatehost.h"
#include "vlviewporthost.h"

#include "VlAttribute/StringAttribute.h"
#include "VlScenelib/Client.h"
#include "VlScenelib/Path.h"

#include <algorithm>
#include <stdexcept>

namespace ViewerAPI {

using VlAttribute::GroupAttribute;
using VlAttribute::StringAttribute;
using VlScenelib::Client;
using VlScenelib::LocationData;

namespace {

constexpr const char* kChanged = "__LOOKTHROUGH_LOCATION_CHANGED";
constexpr const char* kChangeRequested = "__LOOKTHROUGH_LOCATION_CHANGE_REQUESTED";
constexpr const char* kCooked = "__LOOKTHROUGH_LOCATION_COOKED";
constexpr const char* kDoesNotExist = "__LOOKTHROUGH_LOCATION_DOES_NOT_EXIST";

GroupAttribute makePayload(const VlViewportHostStruct& viewport, const std::string& path,
                           const GroupAttribute& attrs) {
    return GroupAttribute{{"viewport", StringAttribute(viewport.name)},
                          {"location", StringAttribute(path)},
                          {"attrs", attrs}};
}

} // namespace

/// What is known of a location.
struct LookThrough::Outcome {
    bool exists = false;
    GroupAttribute attrs;

    Outcome(bool doesExist, GroupAttribute attributes)
        : exists(doesExist), attrs(std::move(attributes)) {}
    explicit Outcome(const LocationData& data)
        : Outcome(data.doesLocationExist(), data.getAttrs()) {}
};

void LookThrough::setLocation(VlViewportHostStruct* viewport, const char* path) {
    if (!delegate_.viewports.contains(viewport)) {
        return;
    }
    const HostCall call(delegate_);
    forgetViewport(viewport);
    const std::string location = path ? path : "";
    const GroupAttribute request = makePayload(*viewport, location, {});
    if (location.empty()) {
        fire(kChanged, request);
        return;
    }
    if (location.front() != '/') {
        throw std::runtime_error("Invalid look-through location (\"" + location + "\")");
    }
    requestedLookThrough[viewport] = location;
    pendingLookThrough[viewport] = location;
    Client& client = *delegate_.scene.lookThroughClient;
    if (!client.isLocationActive(location)) {
        client.setLocationsActive(StringAttribute(location));
    } else if (const auto [data, isFound] = client.getCachedLocation(location); isFound) {
        if (client.isLocationDataCurrent(location, -1)) {
            resolve(*viewport, location, Outcome(data));
            return;
        }
        stale_.insert(viewport);
    }
    fire(kChangeRequested, request);
}

void LookThrough::forgetViewport(const VlViewportHostStruct* viewport) {
    if (requestedLookThrough.erase(viewport) == 0) {
        return;
    }
    pendingLookThrough.erase(viewport);
    stale_.erase(viewport);
    reconcileLookThroughActive();
}

void LookThrough::reconcileLookThroughActive() {
    Client& client = *delegate_.scene.lookThroughClient;
    StringAttribute active;
    client.getActiveLocations(active, "/root");
    for (const auto& path : active.getNearestSample(0.0F)) {
        const auto isRequested = [&](const auto& request) { return request.second == path; };
        if (std::ranges::none_of(requestedLookThrough, isRequested)) {
            client.setLocationsInactive(StringAttribute(path));
        }
    }
}

void LookThrough::onLocationEvent(const std::string& path, const LocationData& data) {
    tell(path, Outcome(data));
}

void LookThrough::onAttributesMerged(const std::string& path, const GroupAttribute& merged) {
    tell(path, Outcome(true, merged));
}

void LookThrough::resolveUnchanged() {
    if (stale_.empty()) {
        return;
    }
    const HostCall call(delegate_);
    const std::vector<VlViewportHostStruct*> viewports = delegate_.viewports.viewports;
    for (const VlViewportHostStruct* const viewport : viewports) {
        const std::string* const unchanged = findUnchanged(viewport);
        if (!unchanged) {
            continue;
        }
        const std::string path = *unchanged;
        stale_.erase(viewport);
        const auto [data, isFound] = delegate_.scene.lookThroughClient->getCachedLocation(path);
        if (isFound) {
            resolve(*viewport, path, Outcome(data));
        }
    }
}

bool LookThrough::hasUnchanged() const {
    return std::ranges::any_of(
        stale_, [this](const VlViewportHostStruct* viewport) { return findUnchanged(viewport); });
}

const std::string* LookThrough::findUnchanged(const VlViewportHostStruct* viewport) const {
    if (!stale_.contains(viewport)) {
        return nullptr;
    }
    const std::string& path = requestedLookThrough.at(viewport);
    return delegate_.scene.lookThroughClient->isLocationDataCurrent(path, -1) ? &path : nullptr;
}

void LookThrough::tell(const std::string& path, const Outcome& outcome) {
    if (requestedLookThrough.empty()) {
        return;
    }
    const HostCall call(delegate_);
    // A listener may change both the list and the requests.
    const std::vector<VlViewportHostStruct*> viewports = delegate_.viewports.viewports;
    for (const VlViewportHostStruct* const viewport : viewports) {
        const auto request = requestedLookThrough.find(viewport);
        if (request == requestedLookThrough.end()) {
            continue;
        }
        if (request->second == path) {
            resolve(*viewport, path, outcome);
            continue;
        }
        // An ancestor's event says nothing of a request that is still open.
        if (!VlScenelib::Path::IsAncestor(path, request->second) ||
            pendingLookThrough.contains(viewport)) {
            continue;
        }
        const std::string location = request->second;
        const auto [data, isFound] = delegate_.scene.lookThroughClient->getCachedLocation(location);
        if (isFound) {
            resolve(*viewport, location, Outcome(data));
        }
    }
}

// The state is brought up to date before a listener hears of it, so that one that asks anew or
// raises finds and leaves the truth.
void LookThrough::resolve(const VlViewportHostStruct& viewport, const std::string& path,
                          const Outcome& outcome) {
    const HostCall call(viewport);
    const GroupAttribute payload = makePayload(viewport, path, outcome.attrs);
    stale_.erase(&viewport);
    if (!outcome.exists) {
        pendingLookThrough[&viewport] = path;
        fire(kDoesNotExist, payload);
        return;
    }
    const bool isPending = pendingLookThrough.contains(&viewport);
    tellCooked(viewport, path, payload);
    // While its attributes were told, the request may have been resolved or replaced. Until they
    // were told it is open: a listener that raises will hear of the next event in full.
    const auto pending = pendingLookThrough.find(&viewport);
    if (!isPending || pending == pendingLookThrough.end() || pending->second != path) {
        return;
    }
    pendingLookThrough.erase(pending);
    fire(kChanged, payload);
}

void LookThrough::tellCooked(const VlViewportHostStruct& viewport, const std::string& path,
                             const GroupAttribute& payload) {
    if (!delegate_.liveValues.isManipulated(path)) {
        fire(kCooked, payload);
        return;
    }
    DeferredEvents& deferred = deferredLookThroughEvents[path];
    const auto found =
        std::ranges::find(deferred, viewport.name, &DeferredEvents::value_type::first);
    if (found == deferred.end()) {
        deferred.emplace_back(viewport.name, payload);
    } else {
        found->second = payload;
    }
}

void LookThrough::releaseDeferred(const std::string& path) {
    const HostCall call(delegate_);
    for (auto found = deferredLookThroughEvents.find(path);
         found != deferredLookThroughEvents.end(); found = deferredLookThroughEvents.find(path)) {
        const DeferredEvents deferred = std::move(found->second);
        deferredLookThroughEvents.erase(found);
        for (const auto& [name, payload] : deferred) {
            fire(kCooked, payload);
        }
    }
}

void LookThrough::fire(const char* channel, const GroupAttribute& payload) {
    delegate_.callPythonCallback(channel, payload);
}

} // namespace ViewerAPI
