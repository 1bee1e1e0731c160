#include "keyedqueue.h"

#include <cassert>

namespace ViewerAPI {

void KeyedQueue::push(const LocationPath& location, const ProxyJob& job) {
    const auto [found, isNew] = items_.try_emplace(location);
    Item& item = found->second;
    if (!isNew) {
        if (item.job.key == job.key) {
            return;
        }
        order_.erase(item.place);
        forgetKey(item.job.key, location);
    }
    item.job = job;
    item.place = order_.insert(order_.end(), location);
    byKey_[job.key].insert(location);
}

std::pair<LocationPath, ProxyJob> KeyedQueue::pop() {
    if (items_.empty()) {
        throw "KeyedQueue Error: Popping from empty queue";
    }
    LocationPath location = order_.front();
    ProxyJob job = items_.find(location)->second.job;
    remove(location);
    return {std::move(location), std::move(job)};
}

void KeyedQueue::remove(std::string_view location) {
    const auto found = items_.find(location);
    assert(found != items_.end());
    order_.erase(found->second.place);
    forgetKey(found->second.job.key, found->first);
    items_.erase(found);
}

bool KeyedQueue::contains(std::string_view location) const {
    return items_.contains(location);
}

void KeyedQueue::clear() {
    items_.clear();
    order_.clear();
    byKey_.clear();
}

std::vector<LocationPath> KeyedQueue::locationsAtOrBelow(std::string_view path) const {
    return keysAtOrBelow(items_, path);
}

KeyedQueue::Locations KeyedQueue::locationsForJob(std::uint64_t key) const {
    const auto found = byKey_.find(key);
    return found == byKey_.end() ? Locations() : found->second;
}

void KeyedQueue::forgetKey(std::uint64_t key, const LocationPath& location) {
    const auto found = byKey_.find(key);
    found->second.erase(location);
    if (found->second.empty()) {
        byKey_.erase(found);
    }
}

} // namespace ViewerAPI
