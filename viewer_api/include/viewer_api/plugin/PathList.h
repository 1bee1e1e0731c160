#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace ViewerPlugin {

/// Paths in the form in which they cross a table; borrows the strings.
class PathList {
public:
    explicit PathList(std::span<const std::string> paths) {
        pointers.reserve(paths.size());
        for (const std::string& path : paths) {
            pointers.push_back(path.c_str());
        }
    }
    [[nodiscard]] const char** data() noexcept { return pointers.data(); }
    [[nodiscard]] std::uint32_t size() const noexcept {
        return static_cast<std::uint32_t>(pointers.size());
    }

private:
    std::vector<const char*> pointers;
};

} // namespace ViewerPlugin
