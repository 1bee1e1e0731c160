#pragma once

#include "VlScenelib/LocationData.h"

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace VlScenelib {

/// News of one location: its path and what it now is.
class LocationEvent {
public:
    /// The text of many events' paths, which they share: so a scene's events take no memory each
    /// for their paths.
    struct Paths : boost::intrusive_ref_counter<Paths> {
        std::string text;
    };

    LocationEvent() = default;
    LocationEvent(std::string_view locationPath, LocationData locationData)
        : LocationEvent(makePaths(locationPath), 0, locationPath.size(), std::move(locationData)) {}
    /// Its path is `length` characters of `sharedPaths`, from `begin` on.
    LocationEvent(boost::intrusive_ptr<const Paths> sharedPaths, std::size_t begin,
                  std::size_t length, LocationData locationData) noexcept
        : paths(std::move(sharedPaths)), path(paths->text.data() + begin, length),
          data(std::move(locationData)) {}

    /// Valid as long as the event or a copy of it.
    [[nodiscard]] std::string_view getLocationPath() const noexcept { return path; }
    [[nodiscard]] const LocationData& getLocationData() const noexcept { return data; }
    /// Hands the data over. The event's own says then that the location does not exist.
    [[nodiscard]] LocationData takeLocationData() noexcept { return std::exchange(data, {}); }

private:
    static boost::intrusive_ptr<const Paths> makePaths(std::string_view locationPath) {
        const boost::intrusive_ptr<Paths> made(new Paths);
        made->text = locationPath;
        return made;
    }

    boost::intrusive_ptr<const Paths> paths;
    std::string_view path;
    LocationData data;
};

} // namespace VlScenelib
