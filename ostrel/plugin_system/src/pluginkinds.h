#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/// The version in which the viewer asks for plug-ins of a kind; nothing for a kind that isn't one
/// of the viewer's own.
[[nodiscard]] std::optional<std::uint32_t> spokenVersion(std::string_view typeName) noexcept;
