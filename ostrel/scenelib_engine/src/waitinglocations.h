#pragma once

#include "VlScenelibEngine/Awaited.h"

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
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
        return take([](const std::string&, const Awaited& awaited) { return awaited.isThere(); });
    }
    [[nodiscard]] std::set<std::string> takeAll() {
        return take([](const std::string&, const Awaited&) { return true; });
    }
    [[nodiscard]] std::set<std::string> takeAtOrBelow(std::string_view top) {
        return take([top](const std::string& path, const Awaited&) {
            return path.starts_with(top) && (path.size() == top.size() || path[top.size()] == '/');
        });
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
    template <typename Which>
    std::set<std::string> take(Which&& which) {
        std::set<std::string> paths;
        std::erase_if(waiting, [&](const auto& entry) {
            const auto& [path, awaited] = entry;
            if (!which(path, *awaited)) {
                return false;
            }
            paths.insert(path);
            taken.push_back(awaited);
            return true;
        });
        return paths;
    }

    std::map<std::string, std::shared_ptr<Awaited>> waiting;
    std::vector<std::shared_ptr<Awaited>> taken;
};

} // namespace VlScenelibEngine
