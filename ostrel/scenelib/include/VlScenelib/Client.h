#pragma once

#include "VlScenelib/LocationData.h"
#include "VlScenelib/LocationEvent.h"
#include "VlScenelib/ScenelibRuntimeSuite.h"

#include "VlAttribute/StringAttribute.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace VlScenelib {

/// A view of one op's scene: says which locations to cook and is told what becomes of them. Made by
/// `Transaction::createClient`; its end stops its cooking.
///
/// A client cooks the locations made active and their ancestors; then, at or below an active
/// location, the children of every cooked location that is open (or all of them, with all open).
/// Parents are reported before their children and disappearances child before parent. No call
/// waits for cooking.
class Client {
public:
    /// Takes over the handle, which must not be null.
    Client(ScenelibClientHandle stolen, const ScenelibRuntimeSuite* runtimeSuite) noexcept;
    ~Client();
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    /// Whether the data of fetched events is kept for `getCachedLocation`. Off at first.
    void setEventCachingEnabled(bool enabled);
    /// Whether every location counts as open, or only those that were opened.
    void setAllOpen(bool allOpen);
    /// A location that becomes active is reported once, also when it is known already or does not
    /// exist.
    void setLocationsActive(const VlAttribute::StringAttribute& paths);
    void setLocationsInactive(const VlAttribute::StringAttribute& paths);
    /// Remembered for paths that do not exist.
    void setLocationsOpen(const VlAttribute::StringAttribute& paths);
    void setLocationsClosed(const VlAttribute::StringAttribute& paths);

    /// What was made active at or below `root` ("": all), without its context. Never null.
    void getActiveLocations(VlAttribute::StringAttribute& result, const std::string& root) const;
    /// Whether the path itself was made active.
    [[nodiscard]] bool isLocationActive(const std::string& path) const;
    /// Whether the data fetched for the path reflects that commit (-1: the newest). False for what
    /// this client does not cook.
    [[nodiscard]] bool isLocationDataCurrent(const std::string& path, std::int64_t commitId) const;
    /// The data last fetched for a path that this client cooks, and whether there is any. Needs
    /// event caching.
    [[nodiscard]] std::pair<LocationData, bool> getCachedLocation(const std::string& path) const;

    /// Replaces the content of `events` with what is ready, at most `limit` of it (-1 or 0: all).
    void getLocationEvents(std::vector<LocationEvent>& events, int limit);
    [[nodiscard]] bool hasLocationEvents() const;

    /// Borrowed.
    [[nodiscard]] ScenelibClientHandle getHandle() const noexcept { return handle; }

private:
    ScenelibClientHandle handle;
    const ScenelibRuntimeSuite* suite;
};

} // namespace VlScenelib
