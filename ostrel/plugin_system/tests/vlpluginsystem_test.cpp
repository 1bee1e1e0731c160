#include "VlPluginSystem/VlPluginSystem.h"

#include "VlLogging/LogSink.h"
#include "VlPluginSystem/PluginManager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

namespace fs = std::filesystem;

// Every test is run in a process of its own by CTest, but all of them in one by hand: libraries
// stay, so the tests that load good ones share what they leave.
class VlPluginSystemTest : public testing::Test {
protected:
    VlPluginSystemTest() {
        setLogSink([this](const LogRecord& record) {
            EXPECT_EQ(record.channel, "VlPluginSystem");
            EXPECT_EQ(record.level, LogLevel::Error);
            lines.push_back(record.text);
        });
    }
    ~VlPluginSystemTest() override {
        setLogSink({});
        fs::remove_all(directory);
    }

    static std::string library(const std::string& name) {
        return TEST_LIBRARIES "/" + name + ".so";
    }

    fs::path makeDirectory() {
        directory = fs::temp_directory_path() / ("plugins" + std::to_string(getpid()));
        fs::create_directories(directory);
        return directory;
    }

    static std::vector<std::string> names(const char* typeName, std::uint32_t version) {
        std::vector<std::string> result = {"left over"};
        PluginManager::getPluginNames(typeName, result, version);
        return result;
    }

    std::vector<std::string> lines;
    fs::path directory = "/nonexistent";
};

TEST_F(VlPluginSystemTest, aLibrarysPluginsAreFoundByKindNameAndVersion) {
    EXPECT_EQ(VlPluginSystem::loadLibrary(library("good")), 2);
    const VlPluginRecord* const plugin = PluginManager::getPlugin("ViewportPlugin", "Good", 2);
    ASSERT_NE(plugin, nullptr);
    EXPECT_STREQ(plugin->typeName, "ViewportPlugin");
    EXPECT_STREQ(plugin->name, "Good");
    EXPECT_EQ(plugin->apiVersion, 2u);
    const void* const suite = PluginManager::getPluginSuite(plugin);
    ASSERT_NE(suite, nullptr);
    EXPECT_EQ(*static_cast<const int*>(suite), 1);
    EXPECT_EQ(PluginManager::getPlugin("ViewportPlugin", "Good", 2), plugin);

    EXPECT_EQ(PluginManager::getPlugin("ViewportPlugin", "Good", 3), nullptr);
    EXPECT_EQ(PluginManager::getPlugin("ViewportPlugin", "Bad", 2), nullptr);
    EXPECT_EQ(PluginManager::getPlugin("ViewportLayerPlugin", "Good", 2), nullptr);
    EXPECT_THAT(lines, IsEmpty());
}

TEST_F(VlPluginSystemTest, aKindThatTheViewerDoesNotKnowIsKeptInAnyVersion) {
    EXPECT_EQ(VlPluginSystem::loadLibrary(library("good")), 2);
    EXPECT_NE(PluginManager::getPlugin("ExamplePlugin", "GoodExample", 7), nullptr);
}

TEST_F(VlPluginSystemTest, loadingALibraryAgainAnswersTheSameAndAsksItNothing) {
    EXPECT_EQ(VlPluginSystem::loadLibrary(library("good")), 2);
    int hostCalls = 0;
    VlPluginSystem::addHostSuite(&hostCalls, "TestProbe", 1);
    EXPECT_EQ(VlPluginSystem::loadLibrary(library("good")), 2);
    EXPECT_EQ(VlPluginSystem::loadLibrary(std::string(TEST_LIBRARIES) + "/./good.so"), 2);
    VlPluginSystem::addHostSuite(nullptr, "TestProbe", 1);
    EXPECT_EQ(hostCalls, 0);
    EXPECT_THAT(lines, IsEmpty());
}

TEST_F(VlPluginSystemTest, ofTwoPluginsOfOneNameTheFirstStaysAndTheOtherIsTold) {
    EXPECT_EQ(VlPluginSystem::loadLibrary(library("good")), 2);
    EXPECT_EQ(VlPluginSystem::loadLibrary(library("duplicate")), 1);
    const void* const suite =
        PluginManager::getPluginSuite(PluginManager::getPlugin("ViewportPlugin", "Good", 2));
    EXPECT_EQ(*static_cast<const int*>(suite), 1);
    EXPECT_THAT(lines,
                ElementsAre("Passed over plug-ins of library '" + library("duplicate") +
                            "': record 0 is ViewportPlugin 'Good', which is there already."));
    const std::vector<std::string> viewports = names("ViewportPlugin", 2);
    EXPECT_LT(std::find(viewports.begin(), viewports.end(), "Good"),
              std::find(viewports.begin(), viewports.end(), "Late"));
}

TEST_F(VlPluginSystemTest, aLibraryThatIsSkippedIsToldInOneLineThatSaysWhy) {
    struct Row {
        const char* name;
        const char* reason;
    };
    const Row rows[] = {
        {"missing", "': no such file."},
        {"nohostentry", "': it lacks the entry vlSetPluginHost."},
        {"nocountentry", "': it lacks the entry vlGetNumberOfPlugins."},
        {"norecordentry", "': it lacks the entry vlGetPlugin."},
        {"noentries", "': it lacks the entry vlSetPluginHost."},
        {"otherversion", "': it refuses this host, which speaks version 1 (vlSetPluginHost "
                         "answered 1)."},
        {"onlyotherversions", "': record 0 is ViewerDelegatePlugin 'OldDelegate' in version 2, and "
                              "only version 3 is spoken here."},
        {"negativecount", "': it claims -1 plug-ins."},
        {"throwing", "': vlSetPluginHost threw 'no mood'."},
        {"unresolved", "': undefined symbol: vlNobodyDefinesThis."},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        lines.clear();
        EXPECT_EQ(VlPluginSystem::loadLibrary(library(row.name)), 0);
        EXPECT_THAT(lines,
                    ElementsAre("Skipped plug-in library '" + library(row.name) + row.reason));
    }
    EXPECT_EQ(PluginManager::getPlugin("ViewportPlugin", "NextVersion", 2), nullptr);
    EXPECT_EQ(PluginManager::getPlugin("ViewerDelegatePlugin", "OldDelegate", 2), nullptr);
}

TEST_F(VlPluginSystemTest, aSkippedLibraryIsTriedAgain) {
    EXPECT_EQ(VlPluginSystem::loadLibrary(library("throwing")), 0);
    const int suite = 0;
    VlPluginSystem::addHostSuite(&suite, "TestSecondTry", 1);
    lines.clear();
    EXPECT_EQ(VlPluginSystem::loadLibrary(library("throwing")), 0);
    VlPluginSystem::addHostSuite(nullptr, "TestSecondTry", 1);
    EXPECT_THAT(lines, ElementsAre("Skipped plug-in library '" + library("throwing") +
                                   "': vlGetPlugin threw an exception."));
}

TEST_F(VlPluginSystemTest, badRecordsArePassedOverAndTheGoodOneStays) {
    EXPECT_EQ(VlPluginSystem::loadLibrary(library("badrecords")), 1);
    EXPECT_THAT(lines,
                ElementsAre("Passed over plug-ins of library '" + library("badrecords") +
                            "': record 0 has no type name; record 1 has no name; record 2 has no "
                            "name; record 3 is ViewportPlugin 'WrongVersion' in version 99, and "
                            "only version 2 is spoken here; record 5 is null."));
    EXPECT_EQ(PluginManager::getPlugin("ViewportPlugin", "WrongVersion", 99), nullptr);
}

TEST_F(VlPluginSystemTest, aPluginWithoutSuiteIsFoundAndHasNone) {
    EXPECT_EQ(VlPluginSystem::loadLibrary(library("badrecords")), 1);
    const VlPluginRecord* const plugin =
        PluginManager::getPlugin("ViewportPlugin", "WithoutSuite", 2);
    ASSERT_NE(plugin, nullptr);
    EXPECT_EQ(PluginManager::getPluginSuite(plugin), nullptr);
}

TEST_F(VlPluginSystemTest, manyComplaintsStayOneLine) {
    EXPECT_EQ(VlPluginSystem::loadLibrary(library("manynulls")), 0);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_THAT(lines[0], HasSubstr("record 7 is null; and 92 more."));
}

TEST_F(VlPluginSystemTest, filesThatAreNoLibrariesAreTold) {
    const fs::path folder = makeDirectory();
    std::ofstream(folder / "text.so") << std::string(4096, 'x');
    std::ofstream(folder / "empty.so");
    fs::create_directory(folder / "folder.so");
    ASSERT_EQ(mkfifo((folder / "pipe.so").c_str(), 0600), 0);
    struct Row {
        const char* name;
        const char* reason;
    };
    const Row rows[] = {{"text.so", "': invalid ELF header."},
                        {"empty.so", "': file too short."},
                        {"folder.so", "': it is a directory."},
                        {"pipe.so", "': it is no regular file."}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        lines.clear();
        const std::string path = (folder / row.name).string();
        EXPECT_EQ(VlPluginSystem::loadLibrary(path), 0);
        EXPECT_THAT(lines, ElementsAre("Skipped plug-in library '" + path + row.reason));
    }
}

TEST_F(VlPluginSystemTest, anEmptyPathIsNoFile) {
    EXPECT_EQ(VlPluginSystem::loadLibrary(""), 0);
    EXPECT_THAT(lines, ElementsAre("Skipped plug-in library '': no such file."));
}

TEST_F(VlPluginSystemTest, aPathWithoutSlashIsAFileOfTheWorkingDirectory) {
    const fs::path before = fs::current_path();
    fs::current_path(TEST_LIBRARIES);
    EXPECT_EQ(VlPluginSystem::loadLibrary("good.so"), 2);
    fs::current_path(before);
    // The loader's own folders have this one.
    EXPECT_EQ(VlPluginSystem::loadLibrary("libc.so.6"), 0);
    EXPECT_THAT(lines, ElementsAre("Skipped plug-in library 'libc.so.6': no such file."));
}

TEST_F(VlPluginSystemTest, aDirectoryLoadsItsLibrariesInTheOrderOfTheirNames) {
    const fs::path folder = makeDirectory();
    fs::copy_file(library("duplicate"), folder / "2.so");
    fs::copy_file(library("good"), folder / "1.so");
    fs::copy_file(library("good"), folder / "3.so.disabled");
    std::ofstream(folder / "4.so") << "garbage";
    std::ofstream(folder / "readme.txt") << "Nothing to load here.\n";
    fs::create_directory(folder / "5.so");
    fs::create_directory(folder / "sub");
    fs::copy_file(library("good"), folder / "sub" / "6.so");
    VlPluginSystem::unregisterPlugin("ViewportPlugin", "Good", 2);
    VlPluginSystem::unregisterPlugin("ViewportPlugin", "Late", 2);
    VlPluginSystem::unregisterPlugin("ExamplePlugin", "GoodExample", 7);
    EXPECT_EQ(VlPluginSystem::loadDirectory(folder.string()), 3);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_THAT(lines[0], HasSubstr("2.so': record 0 is ViewportPlugin 'Good'"));
    EXPECT_THAT(lines[1], HasSubstr("4.so': "));
    const auto* const plugin = PluginManager::getPlugin("ViewportPlugin", "Good", 2);
    EXPECT_EQ(*static_cast<const int*>(PluginManager::getPluginSuite(plugin)), 1);
}

TEST_F(VlPluginSystemTest, aDirectoryThatCannotBeReadIsTold) {
    EXPECT_EQ(VlPluginSystem::loadDirectory("/no/such/folder"), 0);
    EXPECT_EQ(VlPluginSystem::loadDirectory(library("good")), 0);
    EXPECT_THAT(
        lines,
        ElementsAre("Skipped plug-in directory '/no/such/folder': No such file or directory.",
                    "Skipped plug-in directory '" + library("good") + "': Not a directory."));
}

TEST_F(VlPluginSystemTest, namesComeInTheOrderOfRegistration) {
    const int suite = 0;
    for (const char* name : {"zebra", "ant", "moth"}) {
        EXPECT_TRUE(VlPluginSystem::registerPlugin({"OrderPlugin", name, 1, &suite}));
    }
    EXPECT_TRUE(VlPluginSystem::registerPlugin({"OrderPlugin", "later", 2, &suite}));
    EXPECT_THAT(names("OrderPlugin", 1), ElementsAre("zebra", "ant", "moth"));
    EXPECT_THAT(names("OrderPlugin", 2), ElementsAre("later"));
    EXPECT_THAT(names("OrderPlugin", 3), IsEmpty());
    EXPECT_TRUE(VlPluginSystem::unregisterPlugin("OrderPlugin", "ant", 1));
    EXPECT_FALSE(VlPluginSystem::unregisterPlugin("OrderPlugin", "ant", 1));
    EXPECT_THAT(names("OrderPlugin", 1), ElementsAre("zebra", "moth"));
    for (const char* name : {"zebra", "moth"}) {
        EXPECT_TRUE(VlPluginSystem::unregisterPlugin("OrderPlugin", name, 1));
    }
    EXPECT_TRUE(VlPluginSystem::unregisterPlugin("OrderPlugin", "later", 2));
}

TEST_F(VlPluginSystemTest, aRegisteredRecordIsCopied) {
    std::string name = "volatile";
    const int suite = 0;
    EXPECT_TRUE(VlPluginSystem::registerPlugin({"CopyPlugin", name.c_str(), 1, &suite}));
    const auto* const plugin = PluginManager::getPlugin("CopyPlugin", "volatile", 1);
    name.assign(name.size(), 'x');
    EXPECT_STREQ(plugin->name, "volatile");
    EXPECT_TRUE(VlPluginSystem::unregisterPlugin("CopyPlugin", "volatile", 1));
}

TEST_F(VlPluginSystemTest, aRegistrationThatFailsIsTold) {
    const int suite = 0;
    EXPECT_TRUE(VlPluginSystem::registerPlugin({"TwicePlugin", "same", 1, &suite}));
    EXPECT_FALSE(VlPluginSystem::registerPlugin({"TwicePlugin", "same", 1, &suite}));
    EXPECT_FALSE(VlPluginSystem::registerPlugin({nullptr, "same", 1, &suite}));
    EXPECT_FALSE(VlPluginSystem::registerPlugin({"TwicePlugin", nullptr, 1, &suite}));
    EXPECT_THAT(lines, ElementsAre("Passed over TwicePlugin 'same': it is there already.",
                                   "Passed over a plug-in without a type name or a name.",
                                   "Passed over a plug-in without a type name or a name."));
    EXPECT_TRUE(VlPluginSystem::unregisterPlugin("TwicePlugin", "same", 1));
}

TEST(PluginManager, hostSuitesAreFoundByNameAndVersionSideBySide) {
    const int two = 2;
    const int three = 3;
    VlPluginSystem::addHostSuite(&two, "SideBySideHost", 2);
    VlPluginSystem::addHostSuite(&three, "SideBySideHost", 3);
    EXPECT_EQ(PluginManager::getHostSuite("SideBySideHost", 2), &two);
    EXPECT_EQ(PluginManager::getHostSuite("SideBySideHost", 3), &three);
    EXPECT_EQ(PluginManager::getHostSuite("SideBySideHost", 4), nullptr);
    EXPECT_EQ(PluginManager::getHostSuite("sidebysidehost", 2), nullptr);
    const VlPluginHost* const host = PluginManager::getHost();
    EXPECT_EQ(host->getSuite("SideBySideHost", 3), &three);

    VlPluginSystem::addHostSuite(&three, "SideBySideHost", 2);
    EXPECT_EQ(host->getSuite("SideBySideHost", 2), &three);
    VlPluginSystem::addHostSuite(nullptr, "SideBySideHost", 2);
    EXPECT_EQ(host->getSuite("SideBySideHost", 2), nullptr);
    VlPluginSystem::addHostSuite(nullptr, "SideBySideHost", 3);
}

TEST(PluginManager, theHostOffersItselfInItsOwnVersionOnly) {
    const VlPluginHost* const host = PluginManager::getHost();
    EXPECT_EQ(host->getSuite(VL_PLUGIN_HOST_SUITE, VL_PLUGIN_API_VERSION), host);
    EXPECT_EQ(host->getSuite(VL_PLUGIN_HOST_SUITE, VL_PLUGIN_API_VERSION + 1), nullptr);
    EXPECT_EQ(host->getSuite(nullptr, 1), nullptr);
}

TEST(PluginManager, aNullRecordHasNoSuite) {
    EXPECT_EQ(PluginManager::getPluginSuite(nullptr), nullptr);
}

} // namespace
