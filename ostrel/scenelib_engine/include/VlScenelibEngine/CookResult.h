#pragma once

#include "VlScenelibEngine/ChildList.h"

#include "VlAttribute/GroupAttribute.h"

#include <cstddef>
#include <utility>

namespace VlScenelibEngine {

/// What a cook makes of its location.
class CookResult {
public:
    enum class Kind : unsigned char { Location, Nothing, SameAsInput };

    /// A location with these attributes (null counts as empty) and children.
    CookResult(VlAttribute::GroupAttribute attributes, ChildList::Ptr childList = nullptr)
        : attrs(std::move(attributes)), children(std::move(childList)) {}

    /// The location does not exist. Only the root can say so: any other location exists because its
    /// parent lists it.
    [[nodiscard]] static CookResult nothing() { return CookResult(Kind::Nothing, 0); }

    /// The location and everything below it is what the input has there. No cook of this op runs
    /// below, nothing is stored twice, and changes pass through. An input that has nothing there,
    /// or that is not connected, makes it `nothing()`.
    [[nodiscard]] static CookResult sameAsInput(std::size_t inputIndex) {
        return CookResult(Kind::SameAsInput, inputIndex);
    }

    Kind kind = Kind::Location;
    /// For SameAsInput.
    std::size_t input = 0;
    /// For Location.
    VlAttribute::GroupAttribute attrs;
    ChildList::Ptr children;

private:
    CookResult(Kind resultKind, std::size_t inputIndex) : kind(resultKind), input(inputIndex) {}
};

} // namespace VlScenelibEngine
