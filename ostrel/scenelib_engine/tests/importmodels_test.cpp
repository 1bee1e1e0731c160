// Models of every format, sound and damaged, through the import program.

#include "ops/import/importprocess.h"
#include "ops/import/model.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/IntAttribute.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

namespace {

namespace fs = std::filesystem;
using namespace VlScenelibEngine;
using VlAttribute::DoubleAttribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

// Where the distribution's package puts its models.
const fs::path kModels = "/usr/share/assimp/models";

std::string errorOf(const std::string& path) {
    try {
        const Model model(ImportProcess(path).read());
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return {};
}

bool areFinite(const auto& values) {
    return std::ranges::all_of(values, [](auto value) { return std::isfinite(value); });
}

// What holds of every location, whatever the file: nothing refers to what isn't there, all numbers
// are numbers, and a bound encloses its points.
void checkLocation(const GroupAttribute& attrs) {
    const std::string type = StringAttribute(attrs.getChildByName("type")).getValue();
    EXPECT_THAT(type, testing::AnyOf("group", "polymesh", "points", "camera", "light", "locator"));
    const GroupAttribute xform(attrs.getChildByName("xform"));
    for (std::int64_t i = 0; i < xform.getNumberOfChildren(); ++i) {
        const DoubleAttribute matrix(
            GroupAttribute(xform.getChildByIndex(i)).getChildByName("matrix"));
        ASSERT_EQ(matrix.getNumberOfValues(), 16);
        EXPECT_TRUE(areFinite(matrix.getSample(0)));
    }
    const FloatAttribute points(attrs.getChildByName("geometry.point.P"));
    const auto positions = points.getSample(0);
    const std::size_t count = positions.size() / 3;
    EXPECT_TRUE(areFinite(positions));
    const auto box = DoubleAttribute(attrs.getChildByName("bound")).getSample(0);
    EXPECT_TRUE(areFinite(box));
    for (std::size_t i = 0; i < positions.size(); ++i) {
        ASSERT_EQ(box.size(), 6u);
        const std::size_t axis = i % 3 * 2;
        ASSERT_TRUE(positions[i] >= box[axis] && positions[i] <= box[axis + 1]);
    }
    const auto normals = FloatAttribute(attrs.getChildByName("geometry.point.N")).getSample(0);
    EXPECT_TRUE(normals.empty() || normals.size() == positions.size());
    const auto st = FloatAttribute(attrs.getChildByName("geometry.point.st")).getSample(0);
    EXPECT_TRUE(st.empty() || st.size() == count * 2);
    const auto starts = IntAttribute(attrs.getChildByName("geometry.poly.startIndex")).getSample(0);
    const auto corners =
        IntAttribute(attrs.getChildByName("geometry.poly.vertexList")).getSample(0);
    EXPECT_TRUE(std::ranges::is_sorted(starts));
    if (type == "polymesh") {
        ASSERT_GE(starts.size(), 2u);
        EXPECT_EQ(starts.front(), 0);
        EXPECT_EQ(static_cast<std::size_t>(starts.back()), corners.size());
    }
    EXPECT_TRUE(std::ranges::all_of(corners, [count](std::int32_t corner) {
        return corner >= 0 && static_cast<std::size_t>(corner) < count;
    }));
}

std::size_t checkModel(const Model& model, std::size_t location = 0) {
    for (const Model::Moment& moment : {Model::Moment{-1, 0}, {0, 0}, {0, 0.7}}) {
        checkLocation(model.getAttrs(location, moment));
        if (!model.isAnimated(location)) {
            break;
        }
    }
    std::size_t count = 1;
    const StringAttribute& names = model.getChildNames(location);
    std::vector<std::string> sorted;
    for (std::int64_t i = 0; i < names.getNumberOfValues(); ++i) {
        const std::string name(names.getSample(0)[static_cast<std::size_t>(i)]);
        EXPECT_EQ(name.find_first_of("/."), std::string::npos) << name;
        EXPECT_NE(name, "");
        sorted.push_back(name);
        count += checkModel(model, model.getChild(location, static_cast<std::size_t>(i)));
    }
    std::ranges::sort(sorted);
    EXPECT_EQ(std::ranges::adjacent_find(sorted), sorted.end());
    return count;
}

// An error that a user can read: one line that names the file.
void checkError(const std::string& error, const std::string& path) {
    EXPECT_TRUE(error.starts_with("Can't import '" + path + "': ")) << error;
    EXPECT_TRUE(error.ends_with(".")) << error;
    EXPECT_EQ(error.find_first_of("\r\n"), std::string::npos) << error;
}

template <class Action>
void inParallel(std::size_t count, Action&& action) {
    std::atomic<std::size_t> next{0};
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < std::max(2u, std::thread::hardware_concurrency()); ++t) {
        threads.emplace_back([&] {
            for (std::size_t i; (i = next++) < count;) {
                action(i);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST(ImportModels, everyFileOfTheCollectionIsShownOrAnError) {
    if (!fs::exists(kModels)) {
        GTEST_SKIP() << "the collection of models isn't installed";
    }
    std::vector<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(kModels)) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path().string());
        }
    }
    std::atomic<int> shown{0};
    std::atomic<int> refused{0};
    inParallel(files.size(), [&](std::size_t i) {
        SCOPED_TRACE(files[i]);
        try {
            const Model model(ImportProcess(files[i]).read());
            checkModel(model);
            ++shown;
        } catch (const std::runtime_error& error) {
            checkError(error.what(), files[i]);
            ++refused;
        }
    });
    // The collection has textures and notes too, and models that no one can read.
    EXPECT_GT(shown, 250);
    EXPECT_GT(refused, 50);
}

class BadModelTest : public testing::Test {
protected:
    BadModelTest() : folder(fs::temp_directory_path() / ("bad_models" + std::to_string(getpid()))) {
        fs::create_directories(folder);
    }
    ~BadModelTest() override { fs::remove_all(folder); }

    std::string write(const std::string& name, const std::string& content) {
        const fs::path path = folder / name;
        std::ofstream(path, std::ios::binary) << content;
        return path.string();
    }
    // The beginning of a model.
    std::string truncate(const fs::path& model, double part) {
        std::ifstream file(kModels / model, std::ios::binary);
        std::string content((std::istreambuf_iterator<char>(file)), {});
        content.resize(static_cast<std::size_t>(static_cast<double>(content.size()) * part));
        return write(model.filename().string(), content);
    }
    static std::string expected(const std::string& path, const std::string& reason) {
        return "Can't import '" + path + "': " + reason + ".";
    }

    fs::path folder;
};

TEST_F(BadModelTest, aMissingFileIsNamed) {
    const std::string path = (folder / "missing.obj").string();
    EXPECT_EQ(errorOf(path), expected(path, "there is no such file"));
    EXPECT_EQ(errorOf("/dev/null/a.obj"), expected("/dev/null/a.obj", "Not a directory"));
}

TEST_F(BadModelTest, aDirectoryIsNamed) {
    EXPECT_EQ(errorOf(folder.string()), expected(folder.string(), "it is a directory"));
}

TEST_F(BadModelTest, aPipeIsNotWaitedFor) {
    const std::string path = (folder / "pipe.obj").string();
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(errorOf(path), expected(path, "it is no regular file"));
}

TEST_F(BadModelTest, anEmptyFileIsNamed) {
    const std::string path = write("empty.obj", "");
    EXPECT_EQ(errorOf(path), expected(path, "it is empty"));
}

TEST_F(BadModelTest, anUnknownFormatIsNamed) {
    for (const char* name : {"notes.txt", "picture.jpg", "noextension", "odd.xyz"}) {
        const std::string path = write(name, "Some text, and not a model at all.\n");
        EXPECT_EQ(errorOf(path), expected(path, "its format is unknown"));
    }
}

TEST_F(BadModelTest, aFileWithoutPermissionIsNamed) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "root may read everything";
    }
    const std::string path = write("secret.obj", "v 0 0 0\n");
    fs::permissions(path, fs::perms::none);
    EXPECT_EQ(errorOf(path), expected(path, "Permission denied"));
}

TEST_F(BadModelTest, garbageUnderTheNameOfAnyFormatIsAnError) {
    std::string garbage;
    std::uint32_t state = 12345;
    for (int i = 0; i < 3000; ++i) {
        state = state * 1664525u + 1013904223u;
        garbage += static_cast<char>(state >> 24);
    }
    const std::vector<std::string> extensions = {
        "3ds", "3mf", "ac",   "ase", "b3d", "blend", "bvh", "cob", "csm",     "dae", "dxf",
        "fbx", "glb", "gltf", "ifc", "lwo", "lws",   "md2", "md3", "md5mesh", "mdl", "ms3d",
        "obj", "off", "ogex", "ply", "q3o", "smd",   "stl", "x",   "x3d",     "xgl"};
    inParallel(extensions.size(), [&](std::size_t i) {
        const std::string path = write("garbage." + extensions[i], garbage);
        const std::string error = errorOf(path);
        SCOPED_TRACE(extensions[i]);
        // Some formats are so free that anything is a model of sorts.
        if (!error.empty()) {
            checkError(error, path);
        } else {
            checkModel(Model(ImportProcess(path).read()));
        }
    });
}

TEST_F(BadModelTest, aModelWithNothingInItIsAnError) {
    const std::string path = write("nothing.gltf", R"({"asset": {"version": "2.0"}})");
    checkError(errorOf(path), path);
}

TEST_F(BadModelTest, theTextOfAnErrorIsOneLine) {
    const std::string path = write("odd\nname.obj", "");
    EXPECT_EQ(errorOf(path).find('\n'), std::string::npos);
}

TEST_F(BadModelTest, truncatedModelsAreShownInPartOrAnError) {
    if (!fs::exists(kModels)) {
        GTEST_SKIP() << "the collection of models isn't installed";
    }
    const std::vector<std::string> models = {
        "Collada/duck.dae",       "OBJ/spider.obj",
        "FBX/spider.fbx",         "STL/Spider_binary.stl",
        "3DS/fels.3ds",           "glTF2/BoxTextured-glTF-Binary/BoxTextured.glb",
        "COB/molecule.cob",       "MDL/MDL (HL1)/alpha_test.mdl",
        "MD5/SimpleCube.md5mesh", "LWS/move_x.lws",
        "X/Testwuson.X",          "BLEND/BlenderDefault_276.blend"};
    std::atomic<int> refused{0};
    inParallel(models.size() * 3, [&](std::size_t i) {
        const double part = 0.1 + 0.4 * static_cast<double>(i % 3);
        std::ifstream file(kModels / models[i / 3], std::ios::binary);
        std::string content((std::istreambuf_iterator<char>(file)), {});
        content.resize(static_cast<std::size_t>(static_cast<double>(content.size()) * part));
        const std::string path =
            write(std::to_string(i) + fs::path(models[i / 3]).filename().string(), content);
        const std::string error = errorOf(path);
        SCOPED_TRACE(path);
        if (!error.empty()) {
            checkError(error, path);
            ++refused;
        }
    });
    EXPECT_GT(refused, 10);
}

TEST_F(BadModelTest, aFileOnWhichTheImportLibraryCrashesIsAnError) {
    if (!fs::exists(kModels)) {
        GTEST_SKIP() << "the collection of models isn't installed";
    }
    const std::string path = truncate("COB/molecule.cob", 0.5);
    EXPECT_EQ(errorOf(path), expected(path, "the import library fails on it; it may be damaged"));
}

TEST_F(BadModelTest, aFileThatKeepsTheImportLibraryBusyIsGivenUp) {
    if (!fs::exists(kModels)) {
        GTEST_SKIP() << "the collection of models isn't installed";
    }
    const std::string path = truncate("PLY/cube.ply", 0.1);
    EXPECT_EQ(errorOf(path), expected(path, "reading it takes too long; it may be damaged"));
}

} // namespace
