#pragma once

#include "pathmap.h"
#include "proxyjob.h"

#include <cstddef>
#include <cstdint>
#include <list>
#include <map>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

namespace ViewerAPI {

/// Jobs that wait, each for a location, first in, first out. A location stands in it at most once:
/// one that asks again replaces its own wish. And the queue tells which locations wait for a job,
/// so that one finished cook can serve them all. [ui-thread]
class KeyedQueue {
public:
    using Locations = std::set<LocationPath, LocationPathLess>;

    /// A location that waits for the same job already keeps its place; one that waits for another
    /// goes to the back.
    void push(const LocationPath& location, const ProxyJob& job);
    /// The location that waits longest, and its job. Throws a `const char*` when nobody waits.
    [[nodiscard]] std::pair<LocationPath, ProxyJob> pop();
    /// The location must be queued.
    void remove(std::string_view location);
    [[nodiscard]] bool contains(std::string_view location) const;
    void clear();

    [[nodiscard]] std::size_t size() const { return items_.size(); }
    /// In waiting order, the oldest first.
    [[nodiscard]] std::list<LocationPath> locations() const { return order_; }
    /// In the order of their paths.
    [[nodiscard]] std::vector<LocationPath> locationsAtOrBelow(std::string_view path) const;
    /// Those that wait for the job of this key.
    [[nodiscard]] Locations locationsForJob(std::uint64_t key) const;

private:
    struct Item {
        ProxyJob job;
        std::list<LocationPath>::iterator place; ///< in `order_`
    };
    void forgetKey(std::uint64_t key, const LocationPath& location);

    PathMap<Item> items_;
    std::list<LocationPath> order_;
    std::map<std::uint64_t, Locations> byKey_; ///< no set is empty
};

} // namespace ViewerAPI
