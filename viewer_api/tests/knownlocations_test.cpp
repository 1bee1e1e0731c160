#include "knownlocations.h"

#include "VlAttribute/IntAttribute.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

namespace ViewerAPI::test {
namespace {

using VlAttribute::Attribute;
using VlAttribute::IntAttribute;

TEST(KnownLocations, insertKeepsWhatIsThereAndAssignReplacesIt) {
    KnownLocations locations;
    const LocationPath path("/root/a");
    EXPECT_TRUE(locations.insert(path, IntAttribute(1)));
    EXPECT_FALSE(locations.insert(path, IntAttribute(2)));
    EXPECT_EQ(*locations.find("/root/a"), IntAttribute(1));
    EXPECT_FALSE(locations.assign(path, IntAttribute(1)));
    EXPECT_TRUE(locations.assign(path, IntAttribute(2)));
    EXPECT_EQ(*locations.find("/root/a"), IntAttribute(2));
    EXPECT_EQ(locations.find("/root"), nullptr);
}

/// Compares with a map that knows no shortcuts.
TEST(KnownLocations, equalsAPlainMapOverRandomSequences) {
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto upTo = [&random](int count) {
        return std::uniform_int_distribution<int>(0, count - 1)(random);
    };
    // Names that sort around "/", at three depths.
    std::vector<std::string> paths;
    for (const char* top : {"/a", "/a-", "/a.b", "/ab", "/b"}) {
        paths.emplace_back(top);
        for (const char* middle : {"/a", "/a!", "/c"}) {
            paths.push_back(std::string(top) + middle);
            paths.push_back(std::string(top) + middle + "/x");
        }
    }
    KnownLocations locations;
    std::map<std::string, int> plain;
    for (int step = 0; step < 20000; ++step) {
        const std::string& path = paths[static_cast<std::size_t>(upTo(int(paths.size())))];
        const int value = upTo(3);
        switch (upTo(12)) {
        case 0:
            locations.eraseAtOrBelow(path);
            std::erase_if(plain, [&path](const auto& entry) {
                return entry.first == path || entry.first.rfind(path + "/", 0) == 0;
            });
            break;
        case 1:
        case 2:
            locations.erase(path);
            plain.erase(path);
            break;
        case 3:
        case 4:
        case 5:
            EXPECT_EQ(locations.insert(LocationPath(path), IntAttribute(value)),
                      plain.emplace(path, value).second);
            break;
        case 6:
        case 7:
        case 8: {
            const auto found = plain.find(path);
            const bool isNews = found == plain.end() || found->second != value;
            EXPECT_EQ(locations.assign(LocationPath(path), IntAttribute(value)), isNews);
            plain[path] = value;
            break;
        }
        case 9:
            if (upTo(200) == 0) {
                locations.clear();
                plain.clear();
            }
            break;
        default:
            EXPECT_EQ(locations.contains(path), plain.contains(path));
            break;
        }
        std::map<std::string, int> content;
        for (const auto& [known, kept] : locations) {
            content[known.str()] = IntAttribute(kept).getValue();
        }
        ASSERT_EQ(content, plain) << "step " << step;
    }
}

} // namespace
} // namespace ViewerAPI::test
