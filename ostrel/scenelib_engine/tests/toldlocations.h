#pragma once

#include "VlScenelib/LocationEvent.h"

#include <map>
#include <set>
#include <string>
#include <vector>

/// What one client has been told, by replaying its events. Every rule of their order is checked on
/// the way; a broken one is a line in `complaints`.
class ToldLocations {
public:
    void replay(const std::vector<VlScenelib::LocationEvent>& events);

    /// Known and not gone.
    std::map<std::string, VlScenelib::LocationData> known;
    /// Paths told of in the last replay(), whatever it was.
    std::set<std::string> touched;
    /// Paths told as not existing in the last replay() that had not been known.
    std::multiset<std::string> missing;
    /// Paths told as gone in the last replay() that had been known.
    std::vector<std::string> gone;
    std::vector<std::string> complaints;
};
