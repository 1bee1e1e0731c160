#pragma once

#include "VlAttribute/GroupAttribute.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace Bundled {

/// What a manipulator edits of a location's `xform`: a component that is there, or a few that stand
/// side by side and are edited as one; where there are none, those of a group that is made for
/// them, inside of all that is there.
///
/// It takes the innermost. A group that it makes holds all that the bundled manipulators edit, at
/// rest, so that what they do later comes in a good order: sizes stay innermost, and are never
/// sheared by turns.
class XformComponents {
public:
    enum class Kind {
        Translate, ///< "translate"
        Rotate,    ///< neighbours whose names begin with "rotate": the innermost three, if their
                   ///< axes are upright to each other, or else the innermost one
        Scale,     ///< "scale"
    };

    /// `xform` may be null.
    static XformComponents find(const VlAttribute::GroupAttribute& xform, Kind kind);

    /// False for what is yet to be made.
    [[nodiscard]] bool exists() const noexcept { return !made.isValid(); }

    /// The group that they stand in.
    std::string group;
    /// Outermost first.
    std::vector<std::string> names;
    /// Now, those of one after those of the other: 3, or of a rotation 4, the angle in degrees and
    /// the axis.
    std::vector<double> values;

    using Setting = std::pair<std::string, VlAttribute::Attribute>;
    /// The attributes of the location that are to be set, and what to, for new values.
    [[nodiscard]] std::vector<Setting> settings(const std::vector<double>& newValues) const;

private:
    /// Takes the components of these names, if they are there and can be edited as one.
    bool take(const VlAttribute::GroupAttribute& from, const std::vector<std::string>& wanted);

    std::size_t width = 3;
    /// The whole group at rest, of what is yet to be made.
    VlAttribute::GroupAttribute made;
};

} // namespace Bundled
