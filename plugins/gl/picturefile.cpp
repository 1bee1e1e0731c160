#include "gl/picturefile.h"

#include <stb_image.h>

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

Picture readPicture(const std::string& file) {
    Picture picture;
    int channels = 0;
    stbi_set_flip_vertically_on_load_thread(1);
    const std::unique_ptr<stbi_uc, decltype(&stbi_image_free)> pixels(
        stbi_load(file.c_str(), &picture.width, &picture.height, &channels, 4), stbi_image_free);
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

} // namespace Bundled
