#include "readregistry.h"

namespace VlScenelibEngine {

void ReadRegistry::add(std::string path, CookNode& reader, bool withAllBelow) {
    const std::lock_guard lock(mutex);
    reads.emplace(std::move(path), Read{&reader, withAllBelow});
}

void ReadRegistry::remove(const std::vector<std::string>& paths, const CookNode& reader) {
    const std::lock_guard lock(mutex);
    for (const std::string& path : paths) {
        const auto [first, last] = reads.equal_range(path);
        for (auto entry = first; entry != last;) {
            entry = entry->second.reader == &reader ? reads.erase(entry) : std::next(entry);
        }
    }
}

template <typename Visit>
void ReadRegistry::visitReads(const std::string& path, bool below, Visit&& visit) const {
    for (std::size_t end = path.find('/', 1); end != std::string::npos;
         end = path.find('/', end + 1)) {
        const auto [first, last] = reads.equal_range(std::string_view(path).substr(0, end));
        for (auto entry = first; entry != last; ++entry) {
            if (entry->second.withAllBelow) {
                visit(*entry->second.reader);
            }
        }
    }
    const auto [first, last] = reads.equal_range(path);
    for (auto entry = first; entry != last; ++entry) {
        visit(*entry->second.reader);
    }
    if (!below) {
        return;
    }
    const std::string prefix = path + "/";
    for (auto entry = reads.lower_bound(prefix);
         entry != reads.end() && entry->first.starts_with(prefix); ++entry) {
        visit(*entry->second.reader);
    }
}

void ReadRegistry::forEach(const std::string& path, bool below,
                           const std::function<void(CookNode&)>& visit) const {
    const std::lock_guard lock(mutex);
    visitReads(path, below, visit);
}

bool ReadRegistry::isRead(const std::string& path) const {
    const std::lock_guard lock(mutex);
    bool isRead = false;
    visitReads(path, true, [&](const CookNode&) { isRead = true; });
    return isRead;
}

bool ReadRegistry::isEmpty() const {
    const std::lock_guard lock(mutex);
    return reads.empty();
}

} // namespace VlScenelibEngine
