#include "locationchange.h"

#include "support/treetext.h"

#include "viewer_api/ViewerLocationEvent.h"

#include <gtest/gtest.h>

#include <sstream>

namespace ViewerAPI {
namespace {

using namespace test;

struct Bit {
    const char* name;
    bool LocationChange::*field;
    std::uint32_t bit;
};

const Bit kBits[] = {
    {"absolute", &LocationChange::absolute, 0x1},
    {"hidden", &LocationChange::hidden, 0x2},
    {"leaf", &LocationChange::leaf, 0x4},
    {"proxy", &LocationChange::proxy, 0x8},
    {"removed", &LocationChange::removed, 0x10000},
    {"attributesChanged", &LocationChange::attributesChanged, 0x20000},
    {"xformChanged", &LocationChange::xformChanged, 0x40000},
    {"hiddenChanged", &LocationChange::hiddenChanged, 0x80000},
    {"leafChanged", &LocationChange::leafChanged, 0x100000},
};

LocationChange changeOf(const char* path) {
    LocationChange change;
    change.path = LocationPath(path);
    return change;
}

TEST(LocationChange, everyFieldIsOneBitOfTheEvent) {
    for (const Bit& row : kBits) {
        LocationChange change = changeOf("/root");
        EXPECT_EQ(change.getFlags(), 0U);
        change.*row.field = true;
        EXPECT_EQ(change.getFlags(), row.bit) << row.name;
    }
}

TEST(LocationChange, isPrintedWithTheNamesOfItsFields) {
    for (const Bit& row : kBits) {
        LocationChange change = changeOf("/root");
        change.*row.field = true;
        std::ostringstream out;
        out << change;
        EXPECT_EQ(out.str(), std::string("/root ") + row.name);
    }
}

TEST(LocationChange, isPrintedWithMatrixAndHash) {
    LocationChange change = changeOf("/root");
    change.attributes = numbered(1);
    change.matrix = VlAttribute::DoubleAttribute({1.0, 2.5});
    std::ostringstream out;
    out << change;
    EXPECT_EQ(out.str(),
              "/root attributes=" + change.attributes.getHash().str() + " matrix=(1 2.5)");
}

TEST(LocationChange, isComparedByContent) {
    LocationChange one = changeOf("/root");
    LocationChange other = changeOf("/root");
    one.attributes = numbered(1);
    other.attributes = numbered(1);
    EXPECT_EQ(one, other);
    other.attributes = numbered(2);
    EXPECT_FALSE(one == other);
    EXPECT_FALSE(changeOf("/root") == changeOf("/root/a"));
    for (const Bit& row : kBits) {
        LocationChange different = one;
        different.*row.field = true;
        EXPECT_FALSE(one == different) << row.name;
    }
}

} // namespace
} // namespace ViewerAPI
