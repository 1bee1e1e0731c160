#pragma once

#include "VlAttribute/Hash.h"

#include <cstdint>
#include <string_view>

namespace VlAttribute {

/// A child's name, stored once per process: two interned names are equal exactly when their
/// addresses are. The text stands behind the object, with a zero byte at its end.
class alignas(8) InternedName {
public:
    InternedName(const Hash& nameHash, std::uint32_t nameLength) noexcept
        : hash(nameHash), length(nameLength) {}

    [[nodiscard]] std::string_view text() const noexcept {
        return {reinterpret_cast<const char*>(this + 1), length};
    }

    const Hash hash;
    const std::uint32_t length;
};

[[nodiscard]] Hash hashName(std::string_view name) noexcept;

/// The one object for a name, made at first use. Names are never freed: a scene has few distinct
/// ones beside its values, and counting references to "xform" from every location on every thread
/// would cost more than all of them. Throws std::runtime_error for a name of 2^32 bytes or more.
/// [any-thread]
const InternedName* internName(std::string_view name);

} // namespace VlAttribute
