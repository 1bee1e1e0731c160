// What the user says of locations: open, pinned, hidden.

#include "support/locationtreetest.h"

namespace ViewerAPI {
namespace {

using namespace test;

class LocationTreeState : public LocationTreeTest {};

// ---- openness

TEST_F(LocationTreeState, childrenOfAClosedLocationAreNotTold) {
    cook("/root");
    cook("/root/a");
    EXPECT_EQ(collect(), Lines{"/root" + kNewClosed});
    tree.openLocation("/root");
    EXPECT_EQ(collect(), (Lines{"/root leafChanged", "/root/a" + kNewClosed}));
}

TEST_F(LocationTreeState, openingAPathBeforeItExistsTakesEffectWhenItIsCreated) {
    tree.openLocation("/root");
    cook("/root");
    cook("/root/a");
    EXPECT_EQ(collect(), (Lines{"/root" + kNewOpen, "/root/a" + kNewClosed}));
}

TEST_F(LocationTreeState, closingAPathBeforeItExistsTakesTheOpeningBack) {
    tree.openLocation("/root");
    tree.closeLocation("/root");
    cook("/root");
    EXPECT_EQ(collect(), (Lines{"/root" + kNewClosed}));
}

TEST_F(LocationTreeState, aLocationThatComesBackComesBackOpen) {
    showThree();
    tree.deleteLocation("/root/a");
    collect();
    cook("/root/a");
    cook("/root/a/b");
    EXPECT_EQ(collect(), (Lines{"/root/a" + kNewOpen, "/root/a/b" + kNewClosed}));
}

TEST_F(LocationTreeState, closingWhileALocationIsGoneKeepsItClosed) {
    showThree();
    tree.deleteLocation("/root/a");
    collect();
    tree.closeLocation("/root/a");
    cook("/root/a");
    EXPECT_EQ(collect(), (Lines{"/root/a" + kNewClosed}));
}

TEST_F(LocationTreeState, closingAndOpeningBetweenTwoCollectionsIsNoChange) {
    showThree();
    tree.closeLocation("/root");
    tree.openLocation("/root");
    EXPECT_EQ(collect(), Lines{});
}

TEST_F(LocationTreeState, aChildThatComesWhileItsParentIsClosedForAMomentShows) {
    showThree();
    tree.closeLocation("/root");
    cookLeaf("/root/c");
    tree.openLocation("/root");
    EXPECT_EQ(collect(), Lines{"/root/c" + kNewClosed});
    EXPECT_FALSE(tree.find("/root/c")->collapsed);
}

TEST_F(LocationTreeState, aChildThatComesWhileItsParentIsOpenForAMomentDoesNotShow) {
    cook("/root");
    collect();
    tree.openLocation("/root");
    cookLeaf("/root/c");
    tree.closeLocation("/root");
    EXPECT_EQ(collect(), Lines{});
    EXPECT_TRUE(tree.find("/root/c")->collapsed);
}

// ---- pins

TEST_F(LocationTreeState, aPinnedLocationShowsUnderClosedAncestors) {
    cook("/root");
    cook("/root/a");
    cook("/root/a/b");
    cook("/root/a/c");
    collect();
    tree.pinLocation("/root/a/b");
    EXPECT_EQ(collect(),
              (Lines{"/root leafChanged", "/root/a" + kNewOpen, "/root/a/b" + kNewClosed}));
    tree.unpinLocation("/root/a/b");
    EXPECT_EQ(collect(), (Lines{"/root leaf leafChanged", "/root/a removed"}));
}

TEST_F(LocationTreeState, pinningAPathBeforeItExistsMakesItAndItsAncestors) {
    tree.pinLocation("/root/a/b");
    EXPECT_EQ(collect(), Lines{});
    ASSERT_NE(tree.find("/root/a"), nullptr);
    EXPECT_FALSE(tree.find("/root/a")->cooked);
    EXPECT_EQ(tree.find("/root")->pinnedDescendants, 1);
    cook("/root");
    cook("/root/a");
    cook("/root/a/b");
    EXPECT_EQ(collect(),
              (Lines{"/root" + kNewOpen, "/root/a" + kNewOpen, "/root/a/b" + kNewClosed}));
}

TEST_F(LocationTreeState, unpinningAPathThatNeverCameLetsItGoWithItsAncestors) {
    tree.pinLocation("/root/a/b");
    collect();
    tree.unpinLocation("/root/a/b");
    EXPECT_EQ(collect(), Lines{});
    EXPECT_EQ(tree.getNumberOfLocations(), 0U);
}

TEST_F(LocationTreeState, aPinnedLocationThatIsDeletedStaysUncooked) {
    showThree();
    tree.pinLocation("/root/a/b");
    tree.deleteLocation("/root/a/b");
    EXPECT_EQ(collect(), Lines{"/root/a/b removed"});
    ASSERT_NE(tree.find("/root/a/b"), nullptr);
    cookLeaf("/root/a/b");
    EXPECT_EQ(collect(), Lines{"/root/a/b" + kNewClosed});
}

TEST_F(LocationTreeState, pinsAreCountedOnceHoweverOftenAsked) {
    showThree();
    tree.pinLocation("/root/a/b");
    tree.pinLocation("/root/a/b");
    EXPECT_EQ(tree.find("/root")->pinnedDescendants, 1);
    tree.unpinLocation("/root/a/b");
    tree.unpinLocation("/root/a/b");
    EXPECT_EQ(tree.find("/root")->pinnedDescendants, 0);
}

TEST_F(LocationTreeState, aLocationOfAnInnerPinStaysWhenTheOuterPinGoes) {
    cook("/root");
    cook("/root/a");
    cook("/root/a/b");
    tree.pinLocation("/root/a");
    tree.pinLocation("/root/a/b");
    collect();
    tree.unpinLocation("/root/a");
    EXPECT_EQ(collect(), Lines{});
    tree.unpinLocation("/root/a/b");
    EXPECT_EQ(collect(), (Lines{"/root leaf leafChanged", "/root/a removed"}));
}

// ---- hiding

TEST_F(LocationTreeState, hidingIsInheritedAndReportedForEachLocation) {
    showThree();
    hide("/root/a");
    EXPECT_EQ(collect(),
              (Lines{"/root/a hidden hiddenChanged", "/root/a/b hidden leaf hiddenChanged"}));
    hide("/root/a/b");
    unhide("/root/a");
    EXPECT_EQ(collect(), (Lines{"/root/a hiddenChanged"}));
    tree.unhideAllLocations();
    EXPECT_EQ(collect(), (Lines{"/root/a/b leaf hiddenChanged"}));
    EXPECT_EQ(textOf(tree.getHiddenLocations()), "()");
}

TEST_F(LocationTreeState, hidingAndUnhidingBetweenTwoCollectionsIsNoChange) {
    showThree();
    hide("/root");
    unhide("/root");
    EXPECT_EQ(collect(), Lines{});
}

TEST_F(LocationTreeState, aChildThatComesWhileItsParentIsHiddenForAMomentIsNotHidden) {
    showThree();
    hide("/root");
    cookLeaf("/root/c");
    unhide("/root");
    EXPECT_EQ(collect(), Lines{"/root/c" + kNewClosed});
}

TEST_F(LocationTreeState, aChildThatComesUnderAParentHiddenSinceIsHidden) {
    showThree();
    hide("/root/a");
    cookLeaf("/root/a/c");
    EXPECT_EQ(collect(),
              (Lines{"/root/a hidden hiddenChanged", "/root/a/b hidden leaf hiddenChanged",
                     "/root/a/c hidden" + kNewClosed}));
}

TEST_F(LocationTreeState, hidingIsRememberedForALocationThatGoesAndComesBack) {
    showThree();
    hide("/root/a/b");
    tree.deleteLocation("/root/a/b");
    collect();
    EXPECT_EQ(textOf(tree.getHiddenLocations()), "\"/root/a/b\"");
    cookLeaf("/root/a/b");
    EXPECT_EQ(collect(), Lines{"/root/a/b hidden" + kNewClosed});
}

TEST_F(LocationTreeState, unhidingWhileALocationIsGoneIsHeeded) {
    showThree();
    hide("/root/a/b");
    tree.deleteLocation("/root/a/b");
    collect();
    unhide("/root/a/b");
    cookLeaf("/root/a/b");
    EXPECT_EQ(collect(), Lines{"/root/a/b" + kNewClosed});
}

TEST_F(LocationTreeState, aProxyCantBeHiddenAndIsNotRemembered) {
    showThree();
    cookProxy("/root/proxy");
    collect();
    hide("/root/proxy");
    EXPECT_EQ(collect(), Lines{});
    EXPECT_EQ(textOf(tree.getHiddenLocations()), "()");
}

TEST_F(LocationTreeState, hiddenLocationsAreListedInTheOrderOfTheirPaths) {
    for (const char* path : {"/root/c", "/root/a", "/root/b"}) {
        hide(path);
    }
    EXPECT_EQ(textOf(tree.getHiddenLocations()), R"(("/root/a" "/root/b" "/root/c"))");
}

TEST_F(LocationTreeState, isHiddenSeesAncestors) {
    showThree();
    hide("/root");
    collect();
    EXPECT_TRUE(LocationTree::isHidden(*tree.find("/root")));
    EXPECT_TRUE(LocationTree::isHidden(*tree.find("/root/a/b")));
}

} // namespace
} // namespace ViewerAPI
