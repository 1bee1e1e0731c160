#include "support/plainproxies.h"

namespace ViewerAPI::test {

std::string PlainProxies::jobOf(const std::string& proxies) const {
    return proxies + "@" + std::to_string(proxies.find("static") == std::string::npos ? time : 1);
}

void PlainProxies::show(const std::string& path, const std::string& proxies) {
    Location& location = locations[path];
    const bool isNews = !location.isKnown || location.proxies != proxies;
    location.isKnown = true;
    location.proxies = proxies;
    if (isNews && enabled) {
        requestProduce(location);
    }
}

void PlainProxies::disqualify(const std::string& path) {
    Location& location = locations[path];
    if (!location.isKnown) {
        return;
    }
    location.isKnown = false;
    if (enabled) {
        requestRemove(location);
    }
}

void PlainProxies::remove(const std::string& path) {
    for (auto& [each, location] : locations) {
        if (each != path && each.rfind(path + "/", 0) != 0) {
            continue;
        }
        location.isKnown = false;
        location.queued.reset();
        visible.erase(each);
        if (!location.waiting) {
            continue;
        }
        const std::string job = *location.waiting;
        location.waiting.reset();
        bool isWantedByOthers = false;
        for (const auto& other : locations) {
            isWantedByOthers = isWantedByOthers || other.second.waiting == job;
        }
        if (!isWantedByOthers) {
            cooking.erase(job);
        }
    }
}

void PlainProxies::setEnabled(bool isEnabled) {
    if (isEnabled == enabled) {
        return;
    }
    enabled = isEnabled;
    for (auto& [path, location] : locations) {
        if (location.isKnown && enabled) {
            requestProduce(location);
        } else if (location.isKnown) {
            requestRemove(location);
        }
    }
}

void PlainProxies::setTime(int newTime) {
    if (newTime == time) {
        return;
    }
    time = newTime;
    for (auto& [path, location] : locations) {
        if (location.isKnown && enabled) {
            requestProduce(location);
        }
    }
}

void PlainProxies::clear() {
    cooking.clear();
    cached.clear();
    visible.clear();
    for (auto& [path, location] : locations) {
        const bool isRemovalWanted = location.isRemovalWanted;
        const bool isReadyListed = location.isReadyListed;
        location = Location();
        location.isRemovalWanted = isRemovalWanted;
        location.isReadyListed = isReadyListed;
    }
}

void PlainProxies::requestProduce(Location& location) {
    const std::string job = jobOf(location.proxies);
    const bool isCached = cached.contains(job);
    if (isCached) {
        makeReady(location, job);
    }
    if (location.waiting == job) {
        return;
    }
    const bool wasWaiting = location.waiting.has_value();
    if (wasWaiting) {
        cooking.erase(*location.waiting);
        location.waiting.reset();
    }
    if (isCached || location.queued == job) {
        return;
    }
    location.queued = job;
    location.queuedSince = ++pushes;
}

void PlainProxies::requestRemove(Location& location) {
    location.ready.reset();
    if (location.waiting) {
        cooking.erase(*location.waiting);
        location.waiting.reset();
        location.isRemovalWanted |= location.hasShown;
    } else if (location.queued) {
        location.queued.reset();
        location.isRemovalWanted |= location.hasShown;
    } else {
        location.isRemovalWanted = true;
    }
}

void PlainProxies::makeReady(Location& location, const std::string& job) {
    location.ready = job;
    location.isReadyListed = true;
}

void PlainProxies::settle(const std::string& job) {
    cached.insert(job);
    for (auto& [path, location] : locations) {
        if (location.waiting == job) {
            location.waiting.reset();
            makeReady(location, job);
        }
        if (location.queued == job) {
            location.queued.reset();
            makeReady(location, job);
        }
    }
}

void PlainProxies::submitQueued() {
    for (;;) {
        Location* oldest = nullptr;
        for (auto& [path, location] : locations) {
            if (location.queued && (!oldest || location.queuedSince < oldest->queuedSince)) {
                oldest = &location;
            }
        }
        if (!oldest) {
            return;
        }
        const std::string job = *oldest->queued;
        oldest->queued.reset();
        if (job.front() == '!') {
            makeReady(*oldest, job);
            settle(job);
        } else {
            oldest->waiting = job;
            cooking.insert(job);
        }
    }
}

void PlainProxies::collect(const std::set<std::string>& finished) {
    for (const std::string& job : finished) {
        cooking.erase(job);
        settle(job);
    }
    submitQueued();
    for (auto& [path, location] : locations) {
        if (location.isRemovalWanted) {
            location.isRemovalWanted = false;
            location.hasShown = false;
            visible.erase(path);
        }
        if (!location.isReadyListed || !enabled) {
            location.isReadyListed = false;
            continue;
        }
        location.isReadyListed = false;
        if (location.ready && location.isKnown) {
            visible[path] = *location.ready;
            location.hasShown = true;
        }
        location.ready.reset();
    }
}

} // namespace ViewerAPI::test
