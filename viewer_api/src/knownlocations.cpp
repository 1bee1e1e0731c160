#include "knownlocations.h"

#include <iterator>

namespace ViewerAPI {

using VlAttribute::Attribute;

const Attribute* KnownLocations::find(std::string_view path) const {
    const auto place = lowerBound(path);
    return place != map_.end() && place->first == path ? &place->second : nullptr;
}

bool KnownLocations::insert(const LocationPath& path, const Attribute& kept) {
    const auto place = lowerBound(path);
    if (place != map_.end() && place->first == path) {
        return false;
    }
    last_ = map_.emplace_hint(place, path, kept);
    return true;
}

bool KnownLocations::assign(const LocationPath& path, const Attribute& kept) {
    if (insert(path, kept)) {
        return true;
    }
    Attribute& known = lowerBound(path)->second;
    if (known == kept) {
        return false;
    }
    known = kept;
    return true;
}

void KnownLocations::erase(std::string_view path) {
    const auto place = lowerBound(path);
    if (place == map_.end() || place->first != path) {
        return;
    }
    last_ = map_.end();
    map_.erase(place);
}

void KnownLocations::eraseAtOrBelow(std::string_view path) {
    last_ = map_.end();
    for (const LocationPath& key : keysAtOrBelow(map_, path)) {
        map_.erase(key);
    }
}

void KnownLocations::clear() {
    map_.clear();
    last_ = map_.end();
}

KnownLocations::Map::iterator KnownLocations::lowerBound(std::string_view path) const {
    if (last_ != map_.end()) {
        const int order = last_->first.view().compare(path);
        if (order == 0) {
            return last_;
        }
        const auto next = std::next(last_);
        if (order < 0 && (next == map_.end() || next->first.view() >= path)) {
            return next;
        }
    }
    const auto place = map_.lower_bound(path);
    // What is asked for next mostly stands behind this path, known or not.
    const bool isFirst = place == map_.begin();
    const bool isPath = place != map_.end() && place->first == path;
    last_ = isPath ? place : isFirst ? map_.end() : std::prev(place);
    return place;
}

} // namespace ViewerAPI
