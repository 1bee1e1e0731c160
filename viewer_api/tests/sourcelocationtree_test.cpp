#include "sourcelocationtree.h"

#include "support/attributetext.h"
#include "support/treetext.h"

#include <gtest/gtest.h>

namespace ViewerAPI {
namespace {

using namespace test;

class SourceLocationTreeTest : public testing::Test {
protected:
    void cook(const char* path, int number = 0) { tree.cook(path, numbered(number)); }
    void cookThree() {
        cook("/root");
        cook("/root/a");
        cook("/root/a/b");
    }
    Lines collect() { return collectLines(tree); }

    SourceLocationTree tree;
};

TEST_F(SourceLocationTreeTest, nothingShowsWithoutAPin) {
    cookThree();
    EXPECT_EQ(collect(), Lines{});
    EXPECT_EQ(tree.getNumberOfLocations(), 3U);
}

TEST_F(SourceLocationTreeTest, anEmptyDirtySetGivesAnEmptyList) {
    EXPECT_EQ(collect(), Lines{});
}

TEST_F(SourceLocationTreeTest, aPinShowsAncestorsAndDescendants) {
    cookThree();
    cook("/root/c");
    tree.pinLocation("/root/a");
    EXPECT_EQ(collect(), (Lines{"/root attributesChanged", "/root/a attributesChanged",
                                "/root/a/b attributesChanged"}));
    tree.unpinLocation("/root/a");
    EXPECT_EQ(collect(), Lines{"/root removed"});
}

TEST_F(SourceLocationTreeTest, pinningAPathBeforeItExistsMakesItAndItsAncestors) {
    tree.pinLocation("/root/a/b");
    EXPECT_EQ(collect(), Lines{});
    EXPECT_EQ(tree.find("/root")->pinnedDescendants, 1);
    cookThree();
    EXPECT_EQ(collect(), (Lines{"/root attributesChanged", "/root/a attributesChanged",
                                "/root/a/b attributesChanged"}));
}

TEST_F(SourceLocationTreeTest, unpinningAPathThatNeverCameLetsItGoWithItsAncestors) {
    tree.pinLocation("/root/a/b");
    collect();
    tree.unpinLocation("/root/a/b");
    EXPECT_EQ(collect(), Lines{});
    EXPECT_EQ(tree.getNumberOfLocations(), 0U);
}

TEST_F(SourceLocationTreeTest, pinningAndUnpinningBetweenTwoCollectionsIsNoChange) {
    cookThree();
    tree.pinLocation("/root/a");
    collect();
    tree.unpinLocation("/root/a");
    tree.pinLocation("/root/a");
    EXPECT_EQ(collect(), Lines{});
}

TEST_F(SourceLocationTreeTest, aChildThatComesWhileItsParentIsPinnedForAMomentDoesNotShow) {
    cookThree();
    tree.pinLocation("/root/a/b");
    collect();
    tree.pinLocation("/root/a");
    cook("/root/a/c");
    tree.unpinLocation("/root/a");
    EXPECT_EQ(collect(), Lines{});
    EXPECT_FALSE(tree.find("/root/a/c")->inheritedPinned);
}

TEST_F(SourceLocationTreeTest, aChildThatComesWhileItsParentIsUnpinnedForAMomentShows) {
    cookThree();
    tree.pinLocation("/root/a");
    collect();
    tree.unpinLocation("/root/a");
    cook("/root/a/c");
    tree.pinLocation("/root/a");
    EXPECT_EQ(collect(), Lines{"/root/a/c attributesChanged"});
}

TEST_F(SourceLocationTreeTest, anInnerPinKeepsItsLocationWhenTheOuterPinGoes) {
    cookThree();
    cook("/root/a/c");
    tree.pinLocation("/root/a");
    tree.pinLocation("/root/a/b");
    collect();
    tree.unpinLocation("/root/a");
    EXPECT_EQ(collect(), Lines{"/root/a/c removed"});
}

TEST_F(SourceLocationTreeTest, deletingGivesOneRemovalForTheTopmost) {
    cookThree();
    tree.pinLocation("/root");
    collect();
    tree.deleteLocation("/root/a/b");
    tree.deleteLocation("/root/a");
    EXPECT_EQ(collect(), Lines{"/root/a removed"});
    EXPECT_EQ(tree.getNumberOfLocations(), 1U);
}

TEST_F(SourceLocationTreeTest, whatIsCookedBelowALocationThatComesAndGoesIsNeverTold) {
    tree.pinLocation("/root");
    cookThree();
    tree.deleteLocation("/root/a");
    EXPECT_EQ(collect(), Lines{"/root attributesChanged"});
    EXPECT_EQ(tree.find("/root/a/b"), nullptr);
}

TEST_F(SourceLocationTreeTest, attributesThatDidNotChangeAreNotTold) {
    tree.pinLocation("/root");
    cook("/root");
    collect();
    cook("/root", 1);
    cook("/root", 0);
    EXPECT_EQ(collect(), Lines{});
    cook("/root", 1);
    EXPECT_EQ(collect(), Lines{"/root attributesChanged"});
}

TEST_F(SourceLocationTreeTest, theXformIsReadWhenTheLocationIsTold) {
    tree.cook("/root", moved(1.0));
    EXPECT_FALSE(tree.find("/root")->matrix.isValid());
    tree.pinLocation("/root");
    EXPECT_EQ(collect(), Lines{"/root attributesChanged xformChanged"});
    EXPECT_EQ(textOf(tree.getWorldXform("/root", true)), "(1 0 0 0 0 1 0 0 0 0 1 0 1 0 0 1)");
    tree.cook("/root", moved(1.0, true));
    EXPECT_EQ(collect(), Lines{"/root absolute attributesChanged xformChanged"});
}

TEST_F(SourceLocationTreeTest, aLocationWhoseParentIsUnknownIsPassedOver) {
    cook("/root/a");
    EXPECT_EQ(tree.getNumberOfLocations(), 0U);
}

} // namespace
} // namespace ViewerAPI
