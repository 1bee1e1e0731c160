#pragma once

#include "VlScenelib/LocationData.h"

#include <string>
#include <utility>

namespace VlScenelib {

/// News of one location: its path and what it now is.
class LocationEvent {
public:
    LocationEvent() = default;
    LocationEvent(std::string locationPath, LocationData locationData) noexcept
        : path(std::move(locationPath)), data(std::move(locationData)) {}

    [[nodiscard]] const std::string& getLocationPath() const noexcept { return path; }
    /// Hands the path over without a copy. The event's own is unspecified afterwards.
    [[nodiscard]] std::string takeLocationPath() noexcept { return std::move(path); }
    [[nodiscard]] const LocationData& getLocationData() const noexcept { return data; }
    /// Hands the data over. The event's own says then that the location does not exist.
    [[nodiscard]] LocationData takeLocationData() noexcept { return std::exchange(data, {}); }

private:
    std::string path;
    LocationData data;
};

} // namespace VlScenelib
