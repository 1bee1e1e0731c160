#pragma once

#include "VlAttribute/GroupAttribute.h"

#include <cstdint>
#include <iosfwd>
#include <string>

namespace ViewerAPI {

enum FactoryProductKind : std::uint32_t {
    kFactoryProductProduced = 0, ///< the generated location is there, with these attributes
    kFactoryProductRemoved = 1,  ///< it has gone, and what was generated below it
};

/// What a factory did to one generated location.
struct FactoryProduct {
    FactoryProductKind kind = kFactoryProductProduced;
    std::string path; ///< of the generated location
    /// The empty group in a removal.
    VlAttribute::GroupAttribute attrs;

    /// Attributes by content.
    friend bool operator==(const FactoryProduct&, const FactoryProduct&) = default;
};

/// One line: what happened, the path, the hash of the attributes.
std::ostream& operator<<(std::ostream& out, const FactoryProduct& product);

} // namespace ViewerAPI
