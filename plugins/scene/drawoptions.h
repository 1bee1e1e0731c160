#pragma once

#include "VlAttribute/GroupAttribute.h"

#include <compare>
#include <cstdint>
#include <optional>
#include <string_view>

namespace Bundled {

/// What of a mesh is drawn. Points locations are dots in every mode.
enum class DisplayMode : std::uint8_t {
    Shaded,            ///< surfaces
    Wireframe,         ///< the edges of polygons, also those behind
    WireframeOnShaded, ///< surfaces, and the edges on them
    Points             ///< the points, also those behind
};

/// "shaded", "wireframe", "wireframeOnShaded" or "points"; nothing for any other text.
[[nodiscard]] std::optional<DisplayMode> displayModeFromName(std::string_view name);
[[nodiscard]] const char* nameOf(DisplayMode mode);

/// What a location says about how it is drawn: its group `viewer.default.drawOptions`. It speaks
/// for the location alone, and not for what is below.
struct DrawOptions {
    /// `fill`: a name of a display mode. Nothing: as whoever draws it says.
    std::optional<DisplayMode> fill;
    /// `smoothing`: false for "off", that is, lines without smooth edges.
    bool smooth = true;
    /// `hide`: true for an integer other than 0, that is, not drawn at all.
    bool hide = false;

    static DrawOptions fromAttributes(const VlAttribute::GroupAttribute& location);

    friend auto operator<=>(const DrawOptions&, const DrawOptions&) = default;
};

} // namespace Bundled
