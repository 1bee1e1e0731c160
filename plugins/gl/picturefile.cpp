#include "gl/picturefile.h"

#include <stb_image.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <memory>

namespace Bundled {

bool Picture::hasAlpha() const noexcept {
    for (std::size_t i = 3; i < rgba.size(); i += 4) {
        if (rgba[i] != 255) {
            return true;
        }
    }
    return false;
}

namespace {

/// What the library read: null when it failed.
using Pixels = std::unique_ptr<stbi_uc, decltype(&stbi_image_free)>;

/// `load(width, height, channels)` gives the pixels, 4 bytes each.
template <typename Load>
Picture read(const std::string& file, Load&& load) {
    Picture picture;
    int channels = 0;
    stbi_set_flip_vertically_on_load_thread(1);
    const Pixels pixels(load(&picture.width, &picture.height, &channels), stbi_image_free);
    if (!pixels) {
        const char* reason = stbi_failure_reason();
        picture.error = "Can't read the picture \"" + file + "\": " + (reason ? reason : "unknown");
        return picture;
    }
    const std::size_t size =
        static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height) * 4;
    picture.rgba.assign(pixels.get(), pixels.get() + size);
    return picture;
}

} // namespace

Picture readPicture(const std::string& file) {
    return read(file, [&file](int* width, int* height, int* channels) {
        return stbi_load(file.c_str(), width, height, channels, 4);
    });
}

Picture readPictureContent(std::string_view content, const std::string& name) {
    const auto* const bytes = reinterpret_cast<const stbi_uc*>(content.data());
    const auto size = static_cast<int>(std::min<std::size_t>(content.size(), INT_MAX));
    return read(name, [=](int* width, int* height, int* channels) {
        return stbi_load_from_memory(bytes, size, width, height, channels, 4);
    });
}

} // namespace Bundled
