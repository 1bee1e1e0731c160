#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// A picture: 4 bytes per pixel, red, green, blue, alpha, 8 bits each; rows from the top, no
/// padding. `rgba` has width * height * 4 bytes.
struct Image {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgba;

    friend bool operator==(const Image&, const Image&) = default;
};

/// Writes a PNG file: 8 bits, RGBA, or RGB when every pixel is opaque. Throws std::runtime_error,
/// "Can't write 'PATH': REASON", when the file can't be written or the image is empty or isn't as
/// long as its size says; no half-written file stays behind then. [any-thread]
void writePng(const std::string& path, const Image& image);
