#include "manipulator/text.h"

#include <Imath/ImathVec.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <iterator>

namespace Bundled {

using Imath::V2f;

namespace {

constexpr float kHalfStroke = 0.065f;
constexpr float kGap = 0.26f;
/// Strokes are told in sixths of a digit's height.
constexpr float kUnit = 1.0f / 6.0f;

/// A glyph's lines, with a space between two: two digits a point, x and y.
struct Glyph {
    char letter;
    int width;
    std::string_view lines;
};

constexpr Glyph kGlyphs[] = {
    {'0', 4, "103041453616050110"},
    {'1', 2, "042620"},
    {'2', 4, "05163645440040"},
    {'3', 4, "05163645443313 334241301001"},
    {'4', 4, "30360242"},
    {'5', 4, "460603334241301001"},
    {'6', 4, "36160501103041423303"},
    {'7', 4, "064610"},
    {'8', 4, "13020110304142331304051636454433"},
    {'9', 4, "10304145361605041343"},
    {'.', 1, "0010110100"},
    {'-', 3, "0333"},
    {kDegreeSign, 2, "0516251405"},
    {kTimesSign, 3, "0134 0431"},
};

const Glyph& glyphOf(char letter) {
    const auto* const found =
        std::find_if(std::begin(kGlyphs), std::end(kGlyphs),
                     [letter](const Glyph& glyph) { return glyph.letter == letter; });
    static constexpr Glyph kBlank = {' ', 2, ""};
    return found == std::end(kGlyphs) ? kBlank : *found;
}

/// A line as thick as a stroke, longer by half of that at both ends.
void addStroke(Shape& shape, const V2f& from, const V2f& to, float half) {
    const V2f way = to - from;
    const V2f ahead = (way.length() > 0.0f ? way.normalized() : V2f(1.0f, 0.0f)) * half;
    const V2f aside(-ahead.y, ahead.x);
    const V2f corners[] = {from - ahead - aside, to + ahead - aside, to + ahead + aside,
                           from - ahead + aside};
    for (const int corner : {0, 1, 2, 0, 2, 3}) {
        shape.push_back({{corners[corner].x, corners[corner].y, 0.0f}, {0.0f, 0.0f, 1.0f}});
    }
}

} // namespace

std::string readoutText(std::span<const double> numbers, std::string_view unit) {
    double largest = 0.0;
    for (const double number : numbers) {
        largest = std::max(largest, std::abs(number));
    }
    const double whole = largest > 0.0 ? std::floor(std::log10(largest)) + 1.0 : 1.0;
    const int decimals = static_cast<int>(std::clamp(4.0 - whole, 0.0, 3.0));
    const double half = 0.5 * std::pow(10.0, -decimals);
    std::string text;
    for (const double number : numbers) {
        std::array<char, 400> digits{};
        // What is rounded to nothing has no sign.
        std::snprintf(digits.data(), digits.size(), "%.*f", decimals,
                      std::abs(number) < half ? 0.0 : number);
        text += (text.empty() ? "" : " ") + std::string(digits.data()) + std::string(unit);
    }
    return text;
}

Shape textShape(std::string_view text, float thicken) {
    Shape shape;
    float left = 0.0f;
    for (const char letter : text) {
        const Glyph& glyph = glyphOf(letter);
        const auto point = [&](std::size_t index) {
            return V2f(left + kUnit * static_cast<float>(glyph.lines[index] - '0'),
                       kUnit * static_cast<float>(glyph.lines[index + 1] - '0'));
        };
        for (std::size_t i = 0; i + 4 <= glyph.lines.size(); i += 2) {
            if (glyph.lines[i + 2] == ' ') {
                ++i;
                continue;
            }
            addStroke(shape, point(i), point(i + 2), kHalfStroke + thicken);
        }
        left += kUnit * static_cast<float>(glyph.width) + kGap;
    }
    return shape;
}

float textWidth(std::string_view text) {
    float width = 0.0f;
    for (const char letter : text) {
        width += kUnit * static_cast<float>(glyphOf(letter).width) + kGap;
    }
    return std::max(0.0f, width - kGap);
}

} // namespace Bundled
