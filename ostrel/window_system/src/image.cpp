#include "VlWindowSystem/Image.h"

#include <libdeflate.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <new>
#include <span>
#include <stdexcept>
#include <string_view>

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

std::array<unsigned char, 4> bigEndian(std::size_t value) {
    return {static_cast<unsigned char>(value >> 24), static_cast<unsigned char>(value >> 16),
            static_cast<unsigned char>(value >> 8), static_cast<unsigned char>(value)};
}

// The pixels of a file, unpacked: each row behind a byte that names its filter, 1 for differences
// to the neighbour on the left.
std::vector<unsigned char> filtered(const Image& image, std::size_t channels) {
    const auto width = static_cast<std::size_t>(image.width);
    const auto height = static_cast<std::size_t>(image.height);
    std::vector<unsigned char> rows(height * (1 + width * channels));
    unsigned char* to = rows.data();
    for (std::size_t y = 0; y < height; ++y) {
        const std::uint8_t* from = image.rgba.data() + y * width * 4;
        *to++ = 1;
        to = std::copy_n(from, channels, to);
        for (std::size_t x = 1; x < width; ++x, from += 4) {
            for (std::size_t channel = 0; channel < channels; ++channel) {
                *to++ = static_cast<unsigned char>(from[channel + 4] - from[channel]);
            }
        }
    }
    return rows;
}

class PngFile {
public:
    // Made in memory first: what can't be encoded leaves no file behind.
    PngFile(const Image& image, bool hasAlpha) {
        append({0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'});
        const std::size_t header = beginChunk("IHDR");
        append(bigEndian(static_cast<std::size_t>(image.width)));
        append(bigEndian(static_cast<std::size_t>(image.height)));
        constexpr unsigned char kRgb = 2;
        constexpr unsigned char kRgba = 6;
        append({8, hasAlpha ? kRgba : kRgb, 0, 0, 0});
        endChunk(header);
        const std::size_t data = beginChunk("IDAT");
        appendCompressed(filtered(image, hasAlpha ? 4 : 3));
        endChunk(data);
        endChunk(beginChunk("IEND"));
    }

    const std::vector<unsigned char>& get() const { return bytes; }

private:
    void append(std::span<const unsigned char> more) {
        bytes.insert(bytes.end(), more.begin(), more.end());
    }
    void append(std::initializer_list<unsigned char> more) { bytes.insert(bytes.end(), more); }
    std::size_t beginChunk(std::string_view type) {
        const std::size_t start = bytes.size();
        append(bigEndian(0));
        bytes.insert(bytes.end(), type.begin(), type.end());
        return start;
    }
    void endChunk(std::size_t start) {
        std::ranges::copy(bigEndian(bytes.size() - start - 8), bytes.data() + start);
        append(bigEndian(libdeflate_crc32(0, &bytes[start + 4], bytes.size() - start - 4)));
    }
    void appendCompressed(const std::vector<unsigned char>& content) {
        // Quick rather than small.
        const std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)>
            compressor(libdeflate_alloc_compressor(1), libdeflate_free_compressor);
        if (!compressor) {
            throw std::bad_alloc();
        }
        const std::size_t most = libdeflate_zlib_compress_bound(compressor.get(), content.size());
        const std::unique_ptr<unsigned char[]> compressed(new unsigned char[most]);
        append(
            {compressed.get(), libdeflate_zlib_compress(compressor.get(), content.data(),
                                                        content.size(), compressed.get(), most)});
    }

    std::vector<unsigned char> bytes;
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
    const PngFile png(image, !isOpaque(image));
    const std::vector<unsigned char>& bytes = png.get();

    const std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "wb"));
    if (!file) {
        fail(path, std::strerror(errno));
    }
    if (std::fwrite(bytes.data(), 1, bytes.size(), file.get()) != bytes.size() ||
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
