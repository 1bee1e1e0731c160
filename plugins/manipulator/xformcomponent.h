#pragma once

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupAttribute.h"

#include <string>
#include <vector>

namespace Bundled {

/// A component of a location's `xform` that a manipulator edits: one that is there, or, where there
/// is none, one of a group that is made for it, inside of all that is there.
///
/// It takes the component of this very name that is innermost. A group that it makes holds all that
/// the bundled manipulators edit, at rest, so that what they do later comes in a good order: sizes
/// stay innermost, and are never sheared by turns.
class XformComponent {
public:
    /// The component's name: "translate", "rotateX", "rotateY", "rotateZ" or "scale". `xform` may
    /// be null.
    static XformComponent find(const VlAttribute::GroupAttribute& xform, const std::string& name);

    /// False for one that is yet to be made.
    [[nodiscard]] bool exists() const noexcept { return !made.isValid(); }

    /// The group that it stands in.
    std::string group;
    std::string name;
    /// Now: 3 values, or of a rotation 4, the angle in degrees and the axis.
    std::vector<double> values;

    /// The attribute of the location that is to be set, and what to, for new values.
    [[nodiscard]] std::string attributeName() const;
    [[nodiscard]] VlAttribute::Attribute attribute(const std::vector<double>& newValues) const;

private:
    /// The whole group at rest, of one that is yet to be made.
    VlAttribute::GroupAttribute made;
};

} // namespace Bundled
