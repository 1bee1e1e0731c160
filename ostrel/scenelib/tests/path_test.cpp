#include "VlScenelib/Path.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Path, parentIsWhatStandsBeforeTheLastSlash) {
    EXPECT_EQ(VlScenelib::Path::GetLocationParent("/root/a/b"), "/root/a");
    EXPECT_EQ(VlScenelib::Path::GetLocationParent("/root/a"), "/root");
}

TEST(Path, rootHasNoParent) {
    EXPECT_EQ(VlScenelib::Path::GetLocationParent("/root"), "");
    EXPECT_EQ(VlScenelib::Path::GetLocationParent(""), "");
    EXPECT_EQ(VlScenelib::Path::GetLocationParent("root"), "");
}

TEST(Path, stackLeadsFromTheRootToTheLocation) {
    EXPECT_THAT(VlScenelib::Path::GetLocationStack("/root/a/b"),
                ElementsAre("/root", "/root/a", "/root/a/b"));
    EXPECT_THAT(VlScenelib::Path::GetLocationStack("/root"), ElementsAre("/root"));
    EXPECT_THAT(VlScenelib::Path::GetLocationStack(""), IsEmpty());
    EXPECT_THAT(VlScenelib::Path::GetLocationStack("root/a"), IsEmpty());
}

struct AncestorRow {
    const char* name;
    const char* ancestor;
    const char* path;
    bool expected;
};

class PathIsAncestor : public testing::TestWithParam<AncestorRow> {};

TEST_P(PathIsAncestor, holdsOnlyForWholeNamesAbove) {
    const AncestorRow& row = GetParam();
    EXPECT_EQ(VlScenelib::Path::IsAncestor(row.ancestor, row.path), row.expected);
}

INSTANTIATE_TEST_SUITE_P(Rows, PathIsAncestor,
                         testing::Values(AncestorRow{"parent", "/root", "/root/a", true},
                                         AncestorRow{"grandparent", "/root", "/root/a/b", true},
                                         AncestorRow{"itself", "/root/a", "/root/a", false},
                                         AncestorRow{"below", "/root/a", "/root", false},
                                         AncestorRow{"prefixOfAName", "/root/a", "/root/ab", false},
                                         AncestorRow{"sibling", "/root/a", "/root/b", false},
                                         AncestorRow{"empty", "", "/root", false}),
                         [](const testing::TestParamInfo<AncestorRow>& row) {
                             return std::string(row.param.name);
                         });

} // namespace
