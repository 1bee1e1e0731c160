#include "VlWindowSystem/Image.h"

#include <gtest/gtest.h>
#include <png.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

class WritePngTest : public testing::Test {
protected:
    WritePngTest() : folder(fs::temp_directory_path() / ("image_test" + std::to_string(getpid()))) {
        fs::create_directories(folder);
    }
    ~WritePngTest() override { fs::remove_all(folder); }

    static Image read(const fs::path& path) {
        png_image png{};
        png.version = PNG_IMAGE_VERSION;
        EXPECT_NE(png_image_begin_read_from_file(&png, path.c_str()), 0) << png.message;
        png.format = PNG_FORMAT_RGBA;
        Image image{static_cast<int>(png.width), static_cast<int>(png.height), {}};
        image.rgba.resize(PNG_IMAGE_SIZE(png));
        EXPECT_NE(png_image_finish_read(&png, nullptr, image.rgba.data(), 0, nullptr), 0);
        return image;
    }

    std::string errorOf(const fs::path& path, const Image& image) {
        try {
            writePng(path.string(), image);
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "no error";
    }

    fs::path folder;
    const Image small{2, 2, {255, 0, 0, 255, 0, 255, 0, 128, 0, 0, 255, 0, 9, 8, 7, 6}};
};

TEST_F(WritePngTest, whatIsWrittenIsReadBackBitByBit) {
    writePng((folder / "small.png").string(), small);
    EXPECT_EQ(read(folder / "small.png"), small);
    Image large{301, 97, {}};
    for (int i = 0; i < 301 * 97 * 4; ++i) {
        large.rgba.push_back(static_cast<std::uint8_t>(i * 37 + i / 301));
    }
    writePng((folder / "large.png").string(), large);
    EXPECT_EQ(read(folder / "large.png"), large);
}

TEST_F(WritePngTest, whatIsPackedInPartsIsReadBackBitByBit) {
    // The upper rows can't be made smaller, the lower ones can.
    Image image{1021, 701, std::vector<std::uint8_t>(1021u * 701u * 4u, 200)};
    std::mt19937 noise(1);
    std::generate_n(image.rgba.begin(), image.rgba.size() / 2,
                    [&noise] { return static_cast<std::uint8_t>(noise()); });
    const fs::path path = folder / "parts.png";
    writePng(path.string(), image);
    EXPECT_EQ(read(path), image);
    EXPECT_LT(fs::file_size(path), image.rgba.size() * 6 / 10);
    for (std::size_t i = 3; i < image.rgba.size(); i += 4) {
        image.rgba[i] = 255;
    }
    writePng(path.string(), image);
    EXPECT_EQ(read(path), image);
}

TEST_F(WritePngTest, anImageWithoutHolesHasNoAlphaInTheFile) {
    const Image opaque{2, 1, {255, 0, 0, 255, 0, 255, 0, 255}};
    const fs::path path = folder / "opaque.png";
    writePng(path.string(), opaque);
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    ASSERT_NE(png_image_begin_read_from_file(&png, path.c_str()), 0) << png.message;
    EXPECT_EQ(png.format, static_cast<png_uint_32>(PNG_FORMAT_RGB));
    png_image_free(&png);
    EXPECT_EQ(read(path), opaque);
}

TEST_F(WritePngTest, aFileThatIsThereIsReplaced) {
    const fs::path path = folder / "same.png";
    writePng(path.string(), Image{1, 1, {1, 2, 3, 4}});
    writePng(path.string(), small);
    EXPECT_EQ(read(path), small);
}

TEST_F(WritePngTest, failuresNameTheFileAndTheReason) {
    EXPECT_EQ(errorOf("/no/such/folder/a.png", small),
              "Can't write '/no/such/folder/a.png': No such file or directory");
    EXPECT_EQ(errorOf(folder, small), "Can't write '" + folder.string() + "': Is a directory");
    EXPECT_EQ(errorOf("/dev/full", small), "Can't write '/dev/full': No space left on device");
    EXPECT_TRUE(fs::exists("/dev/full"));
    EXPECT_EQ(errorOf("a.png", Image{}), "Can't write 'a.png': the image is empty");
    EXPECT_EQ(errorOf("a.png", Image{2, 2, {1, 2, 3}}),
              "Can't write 'a.png': the image isn't as long as its size says");
    EXPECT_FALSE(fs::exists("a.png"));
}

} // namespace
