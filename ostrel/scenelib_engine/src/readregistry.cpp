#include "readregistry.h"

namespace VlScenelibEngine {

void ReadRegistry::add(std::string path, CookNode& reader) {
    const std::lock_guard lock(mutex);
    readers.emplace(std::move(path), &reader);
}

void ReadRegistry::remove(const std::vector<std::string>& paths, const CookNode& reader) {
    const std::lock_guard lock(mutex);
    for (const std::string& path : paths) {
        const auto [first, last] = readers.equal_range(path);
        for (auto entry = first; entry != last;) {
            entry = entry->second == &reader ? readers.erase(entry) : std::next(entry);
        }
    }
}

template <typename Visit>
void ReadRegistry::visitRange(const std::string& path, bool below, Visit&& visit) const {
    const auto [first, last] = readers.equal_range(path);
    for (auto entry = first; entry != last; ++entry) {
        visit(*entry->second);
    }
    if (!below) {
        return;
    }
    const std::string prefix = path + "/";
    for (auto entry = readers.lower_bound(prefix);
         entry != readers.end() && entry->first.starts_with(prefix); ++entry) {
        visit(*entry->second);
    }
}

void ReadRegistry::forEach(const std::string& path, bool below,
                           const std::function<void(CookNode&)>& visit) const {
    const std::lock_guard lock(mutex);
    visitRange(path, below, visit);
}

bool ReadRegistry::isRead(const std::string& path) const {
    const std::lock_guard lock(mutex);
    bool isRead = false;
    visitRange(path, true, [&](const CookNode&) { isRead = true; });
    return isRead;
}

bool ReadRegistry::isEmpty() const {
    const std::lock_guard lock(mutex);
    return readers.empty();
}

} // namespace VlScenelibEngine
