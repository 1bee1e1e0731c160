#include "gl/miplevels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace Bundled {

namespace {

constexpr double kLinearWhite = 65535.0;
/// Of the sum of four linear values, so many bits choose an encoded one.
constexpr int kDroppedBits = 4;

double toLinear(double encoded) {
    return encoded <= 0.04045 ? encoded / 12.92 : std::pow((encoded + 0.055) / 1.055, 2.4);
}

double toEncoded(double linear) {
    return linear <= 0.0031308 ? linear * 12.92 : 1.055 * std::pow(linear, 1.0 / 2.4) - 0.055;
}

/// Both ways of sRGB, as tables.
struct Encoding {
    std::array<std::uint16_t, 256> linear{};
    std::array<std::uint8_t, (4 * 65535 >> kDroppedBits) + 1> encodedOfSum{};

    Encoding() {
        for (std::size_t i = 0; i < linear.size(); ++i) {
            const double value = toLinear(static_cast<double>(i) / 255.0);
            linear[i] = static_cast<std::uint16_t>(std::lround(value * kLinearWhite));
        }
        for (std::size_t i = 0; i < encodedOfSum.size(); ++i) {
            const double sum = (static_cast<double>(i) + 0.5) * (1 << kDroppedBits);
            const double mean = std::min(1.0, sum / (4.0 * kLinearWhite));
            encodedOfSum[i] = static_cast<std::uint8_t>(std::lround(255.0 * toEncoded(mean)));
        }
    }
};

} // namespace

Picture nextMipLevel(const Picture& picture) {
    static const Encoding encoding;
    Picture half;
    half.width = std::max(1, picture.width / 2);
    half.height = std::max(1, picture.height / 2);
    half.rgba.resize(static_cast<std::size_t>(half.width) * static_cast<std::size_t>(half.height) *
                     4);
    const std::size_t rowSize = static_cast<std::size_t>(picture.width) * 4;
    const std::size_t right = picture.width > 1 ? 4 : 0;
    const std::size_t above = picture.height > 1 ? rowSize : 0;
    std::uint8_t* to = half.rgba.data();
    for (int y = 0; y < half.height; ++y) {
        const std::uint8_t* from = picture.rgba.data() + 2 * static_cast<std::size_t>(y) * rowSize;
        for (int x = 0; x < half.width; ++x, from += 8, to += 4) {
            for (std::size_t channel = 0; channel < 3; ++channel) {
                const std::uint8_t* one = from + channel;
                const unsigned sum = encoding.linear[one[0]] + encoding.linear[one[right]] +
                                     encoding.linear[one[above]] +
                                     encoding.linear[one[above + right]];
                to[channel] = encoding.encodedOfSum[sum >> kDroppedBits];
            }
            const unsigned alpha =
                from[3] + from[right + 3] + from[above + 3] + from[above + right + 3];
            to[3] = static_cast<std::uint8_t>((alpha + 2) / 4);
        }
    }
    return half;
}

} // namespace Bundled
