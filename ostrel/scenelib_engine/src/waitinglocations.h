#pragma once

#include "VlScenelibEngine/Awaited.h"

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace VlScenelibEngine {

/// Locations whose cooks wait for something (`CookContext::await`), by path, with what they wait
/// for. Belongs to the coordinator.
class WaitingLocations {
public:
    void add(const std::string& path, std::shared_ptr<Awaited> awaited) {
        waiting[path] = std::move(awaited);
    }
    [[nodiscard]] bool isEmpty() const noexcept { return waiting.empty(); }

    /// Takes those that wait no longer, or all, to be cooked. What they have waited for is kept
    /// until letGo().
    [[nodiscard]] std::set<std::string> resume(bool isForAll) {
        std::set<std::string> paths;
        std::erase_if(waiting, [&](const auto& entry) {
            const auto& [path, awaited] = entry;
            if (!isForAll && !awaited->isThere()) {
                return false;
            }
            paths.insert(path);
            resumed.push_back(awaited);
            return true;
        });
        return paths;
    }
    /// To be called when all those taken have been cooked.
    void letGo() noexcept { resumed.clear(); }

    /// Forgets those that nobody wants any more, and with them what only they have waited for.
    /// Whether there were any.
    bool dropIf(const std::function<bool(const std::string& path)>& isUnwanted) {
        return std::erase_if(waiting, [&](const auto& entry) { return isUnwanted(entry.first); }) >
               0;
    }

private:
    std::map<std::string, std::shared_ptr<Awaited>> waiting;
    std::vector<std::shared_ptr<Awaited>> resumed;
};

} // namespace VlScenelibEngine
