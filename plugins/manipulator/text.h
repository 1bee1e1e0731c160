#pragma once

#include "manipulator/shapes.h"

#include <span>
#include <string>
#include <string_view>

namespace Bundled {

// What a drag writes beside the pointer: numbers. There is a glyph for each digit, ".", "-", " ",
// the degree sign and the times sign, in Latin-1; others are left blank.

constexpr char kDegreeSign = '\xB0';
constexpr char kTimesSign = '\xD7';

/// Numbers, each followed by the unit: with three decimals, and fewer where the largest has more
/// than one digit before them.
[[nodiscard]] std::string readoutText(std::span<const double> numbers, std::string_view unit);

/// The text in the plane of x, to the right, and y, upwards, with digits of height 1 on y = 0 from
/// x = 0 on. `thicken` is added to the half width of its strokes.
[[nodiscard]] Shape textShape(std::string_view text, float thicken = 0.0f);

/// How far a text reaches to the right.
[[nodiscard]] float textWidth(std::string_view text);

} // namespace Bundled
