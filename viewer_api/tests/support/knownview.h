#pragma once

#include "locationchange.h"

#include <map>
#include <string>
#include <vector>

namespace ViewerAPI::test {

/// What a plug-in knows that does nothing but to apply the records it gets, each field only when
/// the record says that it changed.
class KnownView {
public:
    struct Location {
        VlAttribute::GroupAttribute attributes;
        VlAttribute::DoubleAttribute matrix;
        bool absolute = false;
        bool hidden = false;
        bool leaf = false;
        bool proxy = false;
        friend bool operator==(const Location&, const Location&) = default;
    };

    /// Whether records of the sources view are applied: they don't tell of hidden and leaf.
    explicit KnownView(bool isSources) : isSources_(isSources) {}

    /// Complains with one line for each thing that a record must not say: a removal of what isn't
    /// known, a first record that leaves something out, a change to what is known already, a
    /// record without a change.
    std::vector<std::string> apply(const std::vector<LocationChange>& changes);

    /// By path.
    [[nodiscard]] const std::map<std::string, Location>& locations() const { return locations_; }
    [[nodiscard]] const Location* find(const std::string& path) const;

    /// When set, the record of a location whose parent isn't known is complained of.
    bool parentsComeFirst = true;

private:
    std::string applyOne(const LocationChange& change);

    const bool isSources_;
    std::map<std::string, Location> locations_;
};

} // namespace ViewerAPI::test
