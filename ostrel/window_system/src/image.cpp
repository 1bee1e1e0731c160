#include "VlWindowSystem/Image.h"

#include <isa-l.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <future>
#include <memory>
#include <span>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <utility>

namespace {

using Bytes = std::vector<unsigned char>;

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

// A part of a file, with its length, its type of four letters, and a check sum.
class Chunk {
public:
    explicit Chunk(std::string_view type) : bytes(8) { std::ranges::copy(type, &bytes[4]); }

    void append(std::span<const unsigned char> more) {
        bytes.insert(bytes.end(), more.begin(), more.end());
    }

    // As a piece of a deflate stream; the pieces before the last end at a byte, and refer to
    // nothing before them.
    void appendPacked(std::span<unsigned char> content, bool isLast) {
        const std::size_t start = bytes.size();
        // What can't be made smaller is stored, in blocks of less than 64 kB.
        bytes.resize(start + content.size() + content.size() / 1000 + 1000);
        // Quick rather than small.
        std::array<unsigned char, ISAL_DEF_LVL1_DEFAULT> memory;
        isal_zstream stream;
        isal_deflate_stateless_init(&stream);
        stream.level = 1;
        stream.level_buf = memory.data();
        stream.level_buf_size = memory.size();
        stream.flush = FULL_FLUSH;
        stream.end_of_stream = isLast ? 1 : 0;
        stream.next_in = content.data();
        stream.avail_in = static_cast<std::uint32_t>(content.size());
        stream.next_out = bytes.data() + start;
        stream.avail_out = static_cast<std::uint32_t>(bytes.size() - start);
        if (isal_deflate_stateless(&stream) != COMP_OK) {
            throw std::logic_error("a band of a picture is larger packed than it may be");
        }
        bytes.resize(start + stream.total_out);
    }

    // Puts the chunk behind what is there.
    void endIn(Bytes& file) {
        std::ranges::copy(bigEndian(bytes.size() - 8), bytes.begin());
        append(bigEndian(crc32_gzip_refl(0, &bytes[4], bytes.size() - 4)));
        if (file.empty()) {
            file = std::move(bytes);
        } else {
            file.insert(file.end(), bytes.begin(), bytes.end());
        }
    }

private:
    Bytes bytes;
};

// Adler-32 over several parts, each with its own sum.
class CheckSum {
public:
    void append(std::uint32_t sum, std::size_t size) {
        const std::uint64_t first = sum & 0xFFFF;
        const std::uint64_t second = sum >> 16;
        high = (high + second + size % kModulus * (low + kModulus - 1)) % kModulus;
        low = (low + first + kModulus - 1) % kModulus;
    }
    std::size_t get() const { return high << 16 | low; }

private:
    static constexpr std::uint64_t kModulus = 65521;
    std::uint64_t low = 1;
    std::uint64_t high = 0;
};

// Bands of rows are packed apart from each other, by several threads, and stand one behind the
// other in the file.
class PngPacker {
public:
    PngPacker(const Image& packed, bool hasAlpha)
        : image(packed), channels(hasAlpha ? 4 : 3),
          rowSize(1 + static_cast<std::size_t>(image.width) * channels),
          rowsOfBand(std::max<std::size_t>(1, kBandSize / rowSize)),
          bands((static_cast<std::size_t>(image.height) + rowsOfBand - 1) / rowsOfBand) {}

    // The whole file. Made in memory first: what can't be encoded leaves no file behind.
    Bytes pack() {
        packBands();
        Bytes file = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
        Chunk header("IHDR");
        header.append(bigEndian(static_cast<std::size_t>(image.width)));
        header.append(bigEndian(static_cast<std::size_t>(image.height)));
        constexpr unsigned char kRgb = 2;
        constexpr unsigned char kRgba = 6;
        header.append({{8, channels == 4 ? kRgba : kRgb, 0, 0, 0}});
        header.endIn(file);
        // A zlib stream has two bytes before what is packed, and the check sum behind it.
        Chunk start("IDAT");
        start.append({{0x78, 0x01}});
        start.endIn(file);
        CheckSum sum;
        for (Band& band : bands) {
            file.insert(file.end(), band.chunk.begin(), band.chunk.end());
            band.chunk = {};
            sum.append(band.sum, band.size);
        }
        Chunk end("IDAT");
        end.append(bigEndian(sum.get()));
        end.endIn(file);
        Chunk("IEND").endIn(file);
        return file;
    }

private:
    static constexpr std::size_t kBandSize = 1 << 18;

    struct Band {
        Bytes chunk;
        std::size_t size = 0; // unpacked
        std::uint32_t sum = 0;
    };

    void packBands() {
        std::atomic<std::size_t> next = 0;
        const auto work = [&] {
            Bytes rows(rowsOfBand * rowSize);
            for (std::size_t i = next++; i < bands.size(); i = next++) {
                packBand(i, rows);
            }
        };
        const std::size_t most = std::max(1u, std::thread::hardware_concurrency());
        std::vector<std::future<void>> others(std::min(most, bands.size()) - 1);
        std::ranges::generate(others, [&] { return std::async(std::launch::async, work); });
        work();
        std::ranges::for_each(others, &std::future<void>::get);
    }

    // In numbers that the compiler knows, as pixels are many. Each row stands behind a byte that
    // names its filter, 1 for differences to the neighbour on the left.
    template <std::size_t kChannels>
    std::span<unsigned char> filter(std::size_t firstRow, Bytes& rows) const {
        const auto width = static_cast<std::size_t>(image.width);
        const std::size_t end =
            std::min(firstRow + rowsOfBand, static_cast<std::size_t>(image.height));
        unsigned char* to = rows.data();
        for (std::size_t y = firstRow; y < end; ++y) {
            const std::uint8_t* from = image.rgba.data() + y * width * 4;
            *to++ = 1;
            to = std::copy_n(from, kChannels, to);
            for (std::size_t x = 1; x < width; ++x, from += 4) {
                for (std::size_t channel = 0; channel < kChannels; ++channel) {
                    *to++ = static_cast<unsigned char>(from[channel + 4] - from[channel]);
                }
            }
        }
        return {rows.data(), to};
    }

    void packBand(std::size_t index, Bytes& rows) {
        const std::size_t firstRow = index * rowsOfBand;
        const auto filtered = channels == 4 ? filter<4>(firstRow, rows) : filter<3>(firstRow, rows);
        Band& band = bands[index];
        band.size = filtered.size();
        band.sum = isal_adler32(1, filtered.data(), filtered.size());
        Chunk chunk("IDAT");
        chunk.appendPacked(filtered, index + 1 == bands.size());
        chunk.endIn(band.chunk);
    }

    const Image& image;
    const std::size_t channels;
    const std::size_t rowSize;
    const std::size_t rowsOfBand;
    std::vector<Band> bands;
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
    const Bytes bytes = PngPacker(image, !isOpaque(image)).pack();

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
