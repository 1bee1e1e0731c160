#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Bundled {

/// A picture in memory, bottom row first, as textures want it.
struct Picture {
    int width = 0;
    int height = 0;
    /// Four bytes a pixel; empty when reading failed.
    std::vector<std::uint8_t> rgba;
    /// Why reading failed, naming the file.
    std::string error;

    [[nodiscard]] bool hasAlpha() const noexcept;
};

/// Reads PNG, JPEG, TGA, BMP, GIF (the first picture), PSD, PIC and PNM files. [any-thread]
Picture readPicture(const std::string& file);

/// Reads the content of such a file. `name` stands for it in the error. [any-thread]
Picture readPictureContent(std::string_view content, const std::string& name);

} // namespace Bundled
