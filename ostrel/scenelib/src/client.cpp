#include "VlScenelib/Client.h"

#include <algorithm>
#include <array>
#include <span>

namespace VlScenelib {

namespace {

/// Records fetched by one call through the table: enough to make the call's cost disappear, few
/// enough to stay in the cache.
constexpr std::uint32_t kBatchSize = 256;

LocationData takeData(const ScenelibLocationRecord& record) noexcept {
    return {record.exists != 0,
            VlAttribute::GroupAttribute(VlAttribute::Attribute::CreateAndSteal(record.attrs)),
            VlAttribute::StringAttribute(
                VlAttribute::Attribute::CreateAndSteal(record.potentialChildren))};
}

void append(std::vector<LocationEvent>& events, std::span<const ScenelibLocationRecord> records) {
    if (records.empty()) {
        return;
    }
    const boost::intrusive_ptr<LocationEvent::Paths> paths(new LocationEvent::Paths);
    std::size_t length = 0;
    for (const ScenelibLocationRecord& record : records) {
        length += record.pathLength;
    }
    paths->text.reserve(length);
    for (const ScenelibLocationRecord& record : records) {
        const std::size_t begin = paths->text.size();
        paths->text.append(record.path, record.pathLength);
        events.emplace_back(paths, begin, record.pathLength, takeData(record));
    }
}

} // namespace

Client::Client(ScenelibClientHandle stolen, const ScenelibRuntimeSuite* runtimeSuite) noexcept
    : handle(stolen), suite(runtimeSuite) {}

Client::~Client() {
    suite->releaseClient(handle);
}

void Client::setEventCachingEnabled(bool enabled) {
    suite->setEventCachingEnabled(handle, enabled ? 1 : 0);
}

void Client::setAllOpen(bool allOpen) {
    suite->setAllOpen(handle, allOpen ? 1 : 0);
}

void Client::setLocationsActive(const VlAttribute::StringAttribute& paths) {
    suite->setLocationsActive(handle, paths.getHandle());
}

void Client::setLocationsInactive(const VlAttribute::StringAttribute& paths) {
    suite->setLocationsInactive(handle, paths.getHandle());
}

void Client::setLocationsOpen(const VlAttribute::StringAttribute& paths) {
    suite->setLocationsOpen(handle, paths.getHandle());
}

void Client::setLocationsClosed(const VlAttribute::StringAttribute& paths) {
    suite->setLocationsClosed(handle, paths.getHandle());
}

void Client::getActiveLocations(VlAttribute::StringAttribute& result,
                                const std::string& root) const {
    result = VlAttribute::StringAttribute(
        VlAttribute::Attribute::CreateAndSteal(suite->getActiveLocations(handle, root.c_str())));
}

bool Client::isLocationActive(const std::string& path) const {
    return suite->isLocationActive(handle, path.c_str()) != 0;
}

bool Client::isLocationDataCurrent(const std::string& path, std::int64_t commitId) const {
    return suite->isLocationDataCurrent(handle, path.c_str(), commitId) != 0;
}

std::pair<LocationData, bool> Client::getCachedLocation(const std::string& path) const {
    ScenelibLocationRecord record{};
    if (suite->getCachedLocation(handle, path.c_str(), &record) == 0) {
        return {LocationData(), false};
    }
    return {takeData(record), true};
}

void Client::getLocationEvents(std::vector<LocationEvent>& events, int limit) {
    events.clear();
    std::array<ScenelibLocationRecord, kBatchSize> records;
    bool isContinuation = false;
    for (;;) {
        std::uint32_t capacity = kBatchSize;
        if (limit > 0) {
            capacity = std::min(capacity, static_cast<std::uint32_t>(limit) -
                                              static_cast<std::uint32_t>(events.size()));
        }
        std::size_t left = 0;
        const std::uint32_t count = capacity == 0
                                        ? 0
                                        : suite->getLocationEvents(handle, records.data(), capacity,
                                                                   isContinuation ? 1 : 0, &left);
        if (!isContinuation) {
            events.reserve(limit > 0 ? count : count + left);
        }
        append(events, std::span(records.data(), count));
        if (count < kBatchSize) {
            return;
        }
        isContinuation = true;
    }
}

bool Client::hasLocationEvents() const {
    return suite->hasLocationEvents(handle) != 0;
}

} // namespace VlScenelib
