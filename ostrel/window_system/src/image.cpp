#include "VlWindowSystem/Image.h"

#include <png.h>

#include <cerrno>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <new>
#include <stdexcept>

namespace {

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
    throw std::runtime_error("Can't write '" + path + "': " + reason);
}

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

bool isOpaque(const Image& image) {
    for (std::size_t i = 3; i < image.rgba.size(); i += 4) {
        if (image.rgba[i] != 255) {
            return false;
        }
    }
    return true;
}

// What the library calls, and what it leaves by when it fails: exceptions can't cross it.
struct Encoder {
    std::vector<unsigned char> bytes;
    std::string error;

    static void write(png_structp png, png_bytep data, png_size_t size) {
        if (!static_cast<Encoder*>(png_get_io_ptr(png))->append(data, size)) {
            png_error(png, "out of memory");
        }
    }
    bool append(png_bytep data, png_size_t size) noexcept {
        try {
            bytes.insert(bytes.end(), data, data + size);
            return true;
        } catch (const std::bad_alloc&) {
            return false;
        }
    }
    static void flush(png_structp) {}
    [[noreturn]] static void leave(png_structp png, png_const_charp message) {
        static_cast<Encoder*>(png_get_error_ptr(png))->error = message;
        png_longjmp(png, 1);
    }
    static void ignore(png_structp, png_const_charp) {}

    // Quick rather than small: neighbours' differences, deflated at the lowest level. Only
    // trivial objects may live here, as errors jump out.
    bool encode(const Image& image, bool hasAlpha) {
        png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, this, leave, ignore);
        png_infop info = png ? png_create_info_struct(png) : nullptr;
        if (!info || setjmp(png_jmpbuf(png))) {
            png_destroy_write_struct(&png, &info);
            return false;
        }
        png_set_write_fn(png, this, write, flush);
        png_set_IHDR(png, info, static_cast<png_uint_32>(image.width),
                     static_cast<png_uint_32>(image.height), 8,
                     hasAlpha ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                     PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_SUB);
        png_set_compression_level(png, 1);
        png_write_info(png, info);
        if (!hasAlpha) {
            png_set_filler(png, 0, PNG_FILLER_AFTER);
        }
        const std::size_t rowSize = static_cast<std::size_t>(image.width) * 4;
        for (std::size_t at = 0; at < image.rgba.size(); at += rowSize) {
            png_write_row(png, image.rgba.data() + at);
        }
        png_write_end(png, info);
        png_destroy_write_struct(&png, &info);
        return true;
    }
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
    Encoder encoder;
    encoder.bytes.reserve(image.rgba.size() / 2);
    if (!encoder.encode(image, !isOpaque(image))) {
        fail(path, encoder.error);
    }

    const std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "wb"));
    if (!file) {
        fail(path, std::strerror(errno));
    }
    if (std::fwrite(encoder.bytes.data(), 1, encoder.bytes.size(), file.get()) !=
            encoder.bytes.size() ||
        std::fflush(file.get()) != 0) {
        const std::string reason = std::strerror(errno);
        // A device or a pipe is not ours to take away.
        std::error_code ignored;
        if (std::filesystem::is_regular_file(path, ignored)) {
            std::filesystem::remove(path, ignored);
        }
        fail(path, reason);
    }
}
