#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>

namespace ViewerAPI::test {

/// The rules by which proxies come and go, without the tables that make them cheap: every question
/// is a search through all locations. What the factory publishes is compared with it.
///
/// A job is a text that says all that its result depends on. Jobs that begin with "!" can't be
/// made into ops.
class PlainProxies {
public:
    // What the view tells.
    void show(const std::string& path, const std::string& proxies);
    void disqualify(const std::string& path);
    void remove(const std::string& path);

    void setEnabled(bool isEnabled);
    void setTime(int newTime);
    void clear();

    /// The job of a location with these proxies: "static..." doesn't depend on the time.
    [[nodiscard]] std::string jobOf(const std::string& proxies) const;

    /// What a collection settles, when these cooks are found to be finished.
    void collect(const std::set<std::string>& finished);

    std::set<std::string> cooking;
    /// By location, the job whose result stands below it.
    std::map<std::string, std::string> visible;

private:
    struct Location {
        bool isKnown = false;
        std::string proxies;
        std::optional<std::string> queued;
        std::uint64_t queuedSince = 0;
        std::optional<std::string> waiting;
        std::optional<std::string> ready;
        bool isReadyListed = false;
        bool hasShown = false;
        bool isRemovalWanted = false;
    };

    void requestProduce(Location& location);
    void requestRemove(Location& location);
    void settle(const std::string& job);
    void makeReady(Location& location, const std::string& job);
    void submitQueued();

    std::map<std::string, Location> locations;
    std::set<std::string> cached;
    std::uint64_t pushes = 0;
    int time = 1;
    bool enabled = true;
};

} // namespace ViewerAPI::test
