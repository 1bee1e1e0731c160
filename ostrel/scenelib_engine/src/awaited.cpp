#include "VlScenelibEngine/Awaited.h"

#include <utility>

namespace VlScenelibEngine {

bool Awaited::isThere() const {
    const std::lock_guard lock(mutex);
    return isMade;
}

bool Awaited::notifyWhenThere(std::function<void()> notify) {
    const std::lock_guard lock(mutex);
    if (!isMade) {
        waiting.push_back(std::move(notify));
    }
    return !isMade;
}

void Awaited::setThere() {
    std::vector<std::function<void()>> notified;
    {
        const std::lock_guard lock(mutex);
        isMade = true;
        notified.swap(waiting);
    }
    for (const std::function<void()>& notify : notified) {
        notify();
    }
}

} // namespace VlScenelibEngine
