#include "VlScenelib/Path.h"

namespace VlScenelib::Path {

std::string GetLocationParent(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? std::string() : std::string(path.substr(0, slash));
}

std::vector<std::string> GetLocationStack(std::string_view path) {
    std::vector<std::string> stack;
    if (path.empty() || path.front() != '/') {
        return stack;
    }
    for (std::size_t slash = path.find('/', 1); slash != std::string_view::npos;
         slash = path.find('/', slash + 1)) {
        stack.emplace_back(path.substr(0, slash));
    }
    stack.emplace_back(path);
    return stack;
}

bool IsAncestor(std::string_view ancestor, std::string_view path) noexcept {
    return !ancestor.empty() && path.size() > ancestor.size() && path.starts_with(ancestor) &&
           path[ancestor.size()] == '/';
}

} // namespace VlScenelib::Path
