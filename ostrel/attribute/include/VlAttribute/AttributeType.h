#pragma once

#include <cstdint>

namespace VlAttribute {

/// What an attribute holds. None is the type of a null attribute. The numbers are part of every
/// content hash and of the C interface: they never change.
enum class AttributeType : std::uint8_t {
    None = 0,
    Int = 1,    ///< 32 signed bits
    Float = 2,  ///< IEEE single precision
    Double = 3, ///< IEEE double precision
    String = 4, ///< text in UTF-8; embedded zero bytes are kept
    Group = 5,  ///< an ordered list of named attributes
};

/// "int", "float", "double", "string", "group", "none". [any-thread]
const char* getTypeName(AttributeType type) noexcept;

} // namespace VlAttribute
