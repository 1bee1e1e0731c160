#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

namespace VlScenelibEngine {

/// A location's name made of any text: without what separates names ("/" and "."), without control
/// characters, not longer than 255 bytes; `fallback` for what is then empty.
[[nodiscard]] std::string safeName(std::string_view text, std::string_view fallback);

/// Names that must differ from each other.
class SiblingNames {
public:
    /// The name itself, or with the first number that makes it new: "Wheel", "Wheel_2", "Wheel_3".
    [[nodiscard]] std::string unique(const std::string& name);

private:
    std::unordered_map<std::string, std::size_t> nextNumbers; // of every name that is taken
};

} // namespace VlScenelibEngine
