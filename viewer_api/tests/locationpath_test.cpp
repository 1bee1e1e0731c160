#include "locationpath.h"

#include <gtest/gtest.h>

#include <optional>
#include <sstream>

namespace ViewerAPI {
namespace {

TEST(LocationPath, anEmptyPathHasAText) {
    const LocationPath path;
    EXPECT_TRUE(path.empty());
    EXPECT_STREQ(path.c_str(), "");
    EXPECT_EQ(path, LocationPath(""));
}

TEST(LocationPath, copiesShareTheTextAndOutliveTheOriginal) {
    std::optional<LocationPath> original("/root/a");
    const LocationPath copy = *original;
    EXPECT_EQ(copy.c_str(), original->c_str());
    original.reset();
    EXPECT_STREQ(copy.c_str(), "/root/a");
}

TEST(LocationPath, assigningReleasesWhatWasHeld) {
    LocationPath path("/root/a");
    const LocationPath other("/root/b");
    path = other;
    EXPECT_EQ(path, "/root/b");
    LocationPath& itself = path;
    path = itself;
    EXPECT_EQ(path, "/root/b");
    const LocationPath moved = std::move(path);
    EXPECT_EQ(moved, other);
}

TEST(LocationPath, equalsAnyTextOfTheSameCharacters) {
    const LocationPath path("/root");
    EXPECT_EQ(path, LocationPath(std::string("/root")));
    EXPECT_EQ(path, std::string_view("/root"));
    EXPECT_FALSE(path == "/root/a");
    EXPECT_FALSE(path == LocationPath());
}

TEST(LocationPath, isPrintedAsItsText) {
    std::ostringstream out;
    out << LocationPath("/root/a");
    EXPECT_EQ(out.str(), "/root/a");
}

TEST(LocationPath, theParentIsWhatStandsBeforeTheLastSlash) {
    const std::pair<const char*, const char*> kRows[] = {
        {"/root/a/b", "/root/a"}, {"/root", ""}, {"", ""}, {"a", ""}, {"a/b", "a"},
        {"/root/", "/root"},
    };
    for (const auto& [path, parent] : kRows) {
        EXPECT_EQ(LocationPath::parentOf(path), parent) << path;
    }
}

} // namespace
} // namespace ViewerAPI
