#include "VlWindowSystem/Image.h"

#include <png.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <stdexcept>

namespace {

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
    throw std::runtime_error("Can't write '" + path + "': " + reason);
}

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

} // namespace

void writePng(const std::string& path, const Image& image) {
    if (image.width < 1 || image.height < 1) {
        fail(path, "the image is empty");
    }
    if (image.rgba.size() !=
        static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height) * 4) {
        fail(path, "the image isn't as long as its size says");
    }
    // The whole file is made in memory first: what can't be encoded leaves no file behind.
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(image.width);
    png.height = static_cast<png_uint_32>(image.height);
    png.format = PNG_FORMAT_RGBA;
    png.flags = PNG_IMAGE_FLAG_FAST;
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(png);
    std::vector<unsigned char> bytes(size);
    if (!png_image_write_to_memory(&png, bytes.data(), &size, 0, image.rgba.data(), 0, nullptr)) {
        fail(path, png.message);
    }

    const std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "wb"));
    if (!file) {
        fail(path, std::strerror(errno));
    }
    if (std::fwrite(bytes.data(), 1, size, file.get()) != size || std::fflush(file.get()) != 0) {
        const std::string reason = std::strerror(errno);
        // A device or a pipe is not ours to take away.
        std::error_code ignored;
        if (std::filesystem::is_regular_file(path, ignored)) {
            std::filesystem::remove(path, ignored);
        }
        fail(path, reason);
    }
}
