#pragma once

#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <utility>

namespace VlScenelib {

/// The cooked content of one location at one moment. An immutable value; a default-made one says
/// that the location does not exist.
class LocationData {
public:
    LocationData() noexcept = default;
    LocationData(bool exists, VlAttribute::GroupAttribute attrs,
                 VlAttribute::StringAttribute potentialChildren) noexcept
        : attributes(std::move(attrs)), children(std::move(potentialChildren)), existing(exists) {}

    [[nodiscard]] bool doesLocationExist() const noexcept { return existing; }
    /// Null when the location does not exist.
    [[nodiscard]] const VlAttribute::GroupAttribute& getAttrs() const& noexcept {
        return attributes;
    }
    /// Handed over by data that is not needed any more.
    [[nodiscard]] VlAttribute::GroupAttribute getAttrs() && noexcept {
        return std::move(attributes);
    }
    /// The names of the children in order. Null or without values when there are none.
    [[nodiscard]] const VlAttribute::StringAttribute& getPotentialChildren() const noexcept {
        return children;
    }

private:
    VlAttribute::GroupAttribute attributes;
    VlAttribute::StringAttribute children;
    bool existing = false;
};

} // namespace VlScenelib
