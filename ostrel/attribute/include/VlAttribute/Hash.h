#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace VlAttribute {

/// A 128-bit content hash. Equal attributes have equal hashes, in every process and every run, so
/// hashes and numbers derived from them may be stored. The null attribute's hash is all zero.
struct Hash {
    std::uint64_t first = 0;
    std::uint64_t second = 0;

    /// 32 lower-case hexadecimal digits, `first` before `second`.
    [[nodiscard]] std::string str() const;

    friend bool operator==(const Hash&, const Hash&) = default;
    friend std::strong_ordering operator<=>(const Hash&, const Hash&) = default;
};

} // namespace VlAttribute

template <>
struct std::hash<VlAttribute::Hash> {
    std::size_t operator()(const VlAttribute::Hash& value) const noexcept {
        return static_cast<std::size_t>(value.first);
    }
};
