#include "gl/miplevels.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Bundled {
namespace {

Picture plain(int width, int height, const std::array<std::uint8_t, 4>& rgba) {
    Picture picture;
    picture.width = width;
    picture.height = height;
    picture.rgba.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    for (std::size_t i = 0; i < picture.rgba.size(); ++i) {
        picture.rgba[i] = rgba[i % 4];
    }
    return picture;
}

TEST(MipLevels, everyPlainColourStaysWhatItIs) {
    for (int value = 0; value < 256; ++value) {
        const auto byte = static_cast<std::uint8_t>(value);
        const Picture half = nextMipLevel(plain(4, 2, {byte, byte, byte, byte}));
        EXPECT_EQ(half.width, 2);
        EXPECT_EQ(half.height, 1);
        EXPECT_EQ(half.rgba, std::vector<std::uint8_t>(8, byte));
    }
}

TEST(MipLevels, lightIsAveragedAndNotItsEncoding) {
    Picture board = plain(2, 2, {0, 0, 0, 0});
    for (const std::size_t white : {0U, 3U}) {
        for (std::size_t channel = 0; channel < 4; ++channel) {
            board.rgba[4 * white + channel] = 255;
        }
    }
    // Half of the light is 188 in sRGB; alpha has no encoding.
    EXPECT_EQ(nextMipLevel(board).rgba, (std::vector<std::uint8_t>{188, 188, 188, 128}));
}

TEST(MipLevels, aRowOrColumnOfOnePixelIsHalvedAlongItself) {
    Picture row = plain(2, 1, {10, 20, 30, 255});
    row.rgba[4] = 10;
    EXPECT_EQ(nextMipLevel(row).rgba, (std::vector<std::uint8_t>{10, 20, 30, 255}));
    const Picture column = nextMipLevel(plain(1, 4, {10, 20, 30, 255}));
    EXPECT_EQ(column.width, 1);
    EXPECT_EQ(column.height, 2);
}

TEST(MipLevels, theLastColumnOfAnOddWidthIsLeftOut) {
    Picture odd = plain(3, 2, {200, 0, 0, 255});
    odd.rgba[8] = odd.rgba[20] = 0;
    const Picture half = nextMipLevel(odd);
    EXPECT_EQ(half.width, 1);
    EXPECT_EQ(half.height, 1);
    EXPECT_EQ(half.rgba, (std::vector<std::uint8_t>{200, 0, 0, 255}));
}

} // namespace
} // namespace Bundled
