#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Location paths: "/" before each name, "/root" the root.
namespace VlScenelib::Path {

/// What stands before the last "/": "/root/a" for "/root/a/b". "" for the root.
[[nodiscard]] std::string GetLocationParent(std::string_view path);

/// The path's chain from the root: {"/root", "/root/a", "/root/a/b"} for "/root/a/b". Empty for a
/// path that does not begin with "/".
[[nodiscard]] std::vector<std::string> GetLocationStack(std::string_view path);

/// Whether `path` lies below `ancestor`. False when the two are equal.
[[nodiscard]] bool IsAncestor(std::string_view ancestor, std::string_view path) noexcept;

} // namespace VlScenelib::Path
