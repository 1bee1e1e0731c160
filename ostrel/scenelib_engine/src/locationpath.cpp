#include "locationpath.h"

#include <algorithm>

namespace VlScenelibEngine {

std::optional<LocationNames> splitPath(std::string_view path) {
    LocationNames names;
    if (path.empty() || path.front() != '/') {
        return std::nullopt;
    }
    while (!path.empty()) {
        path.remove_prefix(1);
        const std::size_t slash = std::min(path.find('/'), path.size());
        if (slash == 0) {
            return std::nullopt;
        }
        names.push_back(path.substr(0, slash));
        path.remove_prefix(slash);
    }
    return names;
}

std::string joinPath(const LocationNames& names, std::size_t count) {
    std::string path;
    for (std::size_t i = 0; i < std::min(count, names.size()); ++i) {
        path += '/';
        path += names[i];
    }
    return path;
}

} // namespace VlScenelibEngine
