#pragma once

#include "VlScenelibEngine/Awaited.h"

#include <cstddef>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace VlScenelibEngine {

/// Locations whose cooks wait for something (`CookContext::await`), by path, with what they wait
/// for. Belongs to the coordinator.
class WaitingLocations {
public:
    void add(std::string path, std::shared_ptr<Awaited> awaited) {
        waiting[std::move(path)] = std::move(awaited);
    }
    [[nodiscard]] bool isEmpty() const noexcept { return waiting.empty(); }
    [[nodiscard]] bool contains(const std::string& path) const { return waiting.contains(path); }
    [[nodiscard]] std::size_t size() const noexcept { return waiting.size(); }

    /// Each takes some, to be cooked. What they have waited for is kept until letGo().
    [[nodiscard]] std::set<std::string> takeArrived() {
        return take([](const Awaited& awaited) { return awaited.isThere(); });
    }
    [[nodiscard]] std::set<std::string> takeAll() {
        return take([](const Awaited&) { return true; });
    }
    [[nodiscard]] std::set<std::string> takeAtOrBelow(const std::string& top) {
        std::set<std::string> paths;
        if (const auto place = waiting.find(top); place != waiting.end()) {
            takeAt(place, paths);
        }
        const std::string prefix = top + '/';
        for (auto place = waiting.lower_bound(prefix);
             place != waiting.end() && place->first.starts_with(prefix);) {
            place = takeAt(place, paths);
        }
        return paths;
    }
    /// To be called when all those taken have been cooked.
    void letGo() noexcept { taken.clear(); }

    /// Forgets those that nobody wants any more, and with them what only they have waited for.
    /// Whether there were any.
    bool dropIf(const std::function<bool(const std::string& path)>& isUnwanted) {
        return std::erase_if(waiting, [&](const auto& entry) { return isUnwanted(entry.first); }) >
               0;
    }

private:
    using Waiting = std::map<std::string, std::shared_ptr<Awaited>>;

    template <typename Which>
    std::set<std::string> take(Which&& which) {
        std::set<std::string> paths;
        for (auto place = waiting.begin(); place != waiting.end();) {
            place = which(*place->second) ? takeAt(place, paths) : std::next(place);
        }
        return paths;
    }
    /// Returns the place behind.
    Waiting::iterator takeAt(Waiting::iterator place, std::set<std::string>& paths) {
        const auto behind = std::next(place);
        auto node = waiting.extract(place);
        taken.push_back(std::move(node.mapped()));
        paths.insert(std::move(node.key()));
        return behind;
    }

    Waiting waiting;
    std::vector<std::shared_ptr<Awaited>> taken;
};

} // namespace VlScenelibEngine
