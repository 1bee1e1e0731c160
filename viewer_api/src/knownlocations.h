#pragma once

#include "pathmap.h"

#include "VlAttribute/Attribute.h"

#include <string_view>

namespace ViewerAPI {

/// Locations, in the order of their paths, and what is kept of the attributes of each.
///
/// Made for being told of a scene as a walk through it comes: a place next to the one used last is
/// found without a search. [ui-thread]
class KnownLocations {
public:
    KnownLocations() = default;
    KnownLocations(const KnownLocations&) = delete;
    KnownLocations& operator=(const KnownLocations&) = delete;

    [[nodiscard]] bool contains(std::string_view path) const { return find(path); }
    /// Null when the location is not known; valid until it is changed.
    [[nodiscard]] const VlAttribute::Attribute* find(std::string_view path) const;
    /// Whether the location was not known. If it was, what is kept of it stays.
    bool insert(const LocationPath& path, const VlAttribute::Attribute& kept);
    /// Whether the location was not known, or other content was kept of it.
    bool assign(const LocationPath& path, const VlAttribute::Attribute& kept);
    void erase(std::string_view path);
    void eraseAtOrBelow(std::string_view path);
    void clear();

    [[nodiscard]] auto begin() const { return map_.begin(); }
    [[nodiscard]] auto end() const { return map_.end(); }

private:
    using Map = PathMap<VlAttribute::Attribute>;
    /// The first place that is not before the path.
    Map::iterator lowerBound(std::string_view path) const;

    mutable Map map_;
    mutable Map::iterator last_ = map_.end(); ///< used last
};

} // namespace ViewerAPI
