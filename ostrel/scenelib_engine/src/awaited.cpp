#include "VlScenelibEngine/Awaited.h"

#include <algorithm>

namespace VlScenelibEngine {

bool Awaited::isThere() const {
    const std::lock_guard lock(mutex);
    return isMade;
}

bool Awaited::notifyWhenThere(const std::shared_ptr<const Notice>& notice) {
    const std::lock_guard lock(mutex);
    if (!isMade && std::ranges::find(waiting, notice) == waiting.end()) {
        waiting.push_back(notice);
    }
    return !isMade;
}

void Awaited::setThere() {
    std::vector<std::shared_ptr<const Notice>> notified;
    {
        const std::lock_guard lock(mutex);
        isMade = true;
        notified.swap(waiting);
    }
    for (const std::shared_ptr<const Notice>& notice : notified) {
        (*notice)();
    }
}

std::size_t Awaited::getNumberOfNotices() const {
    const std::lock_guard lock(mutex);
    return waiting.size();
}

} // namespace VlScenelibEngine
