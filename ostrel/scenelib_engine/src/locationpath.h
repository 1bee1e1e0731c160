#pragma once

#include "cooknode.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace VlScenelibEngine {

/// The names of "/a/b": {"a", "b"}, as views into the path. None when the path does not begin with
/// "/", ends with "/", or has an empty name.
[[nodiscard]] std::optional<LocationNames> splitPath(std::string_view path);

/// "/" before each of the first `count` names.
[[nodiscard]] std::string joinPath(const LocationNames& names,
                                   std::size_t count = static_cast<std::size_t>(-1));

} // namespace VlScenelibEngine
