#include "locationtree.h"

#include "support/attributetext.h"
#include "support/treetext.h"

#include <gtest/gtest.h>

#include <array>

namespace ViewerAPI {
namespace {

using namespace test;
using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;

constexpr WorkingSetState kNoData{};
constexpr WorkingSetState kIncluded{true, true, false};
constexpr WorkingSetState kIncludedLeaf{true, true, true};
constexpr WorkingSetState kExcluded{true, false, false};

/// What the first record of a location names, if it has children to show or not.
const std::string kNewOpen = " attributesChanged hiddenChanged leafChanged";
const std::string kNewClosed = " leaf attributesChanged hiddenChanged leafChanged";
const std::string kGone = " removed";

class LocationTreeTest : public testing::Test {
protected:
    void cook(const char* path, GroupAttribute attributes = GroupAttribute::Empty()) {
        tree.cook(path, std::move(attributes), kNoData, false, false);
    }
    void cookLeaf(const char* path) {
        tree.cook(path, GroupAttribute::Empty(), kNoData, false, true);
    }
    void cookWith(const char* path, const WorkingSetState& state) {
        tree.cook(path, GroupAttribute::Empty(), state, false, false);
    }
    void cookProxy(const char* path, GroupAttribute attributes = GroupAttribute::Empty()) {
        tree.cook(path, std::move(attributes), kNoData, true, false);
    }
    void hide(const char* path) { tree.hideLocations(std::array{path}); }
    void unhide(const char* path) { tree.unhideLocations(std::array{path}); }
    Lines collect() { return collectLines(tree); }

    /// "/root", open, with "/root/a" and "/root/a/b", all known to the plug-ins.
    void showThree() {
        tree.openLocation("/root");
        tree.openLocation("/root/a");
        cook("/root");
        cook("/root/a");
        cookLeaf("/root/a/b");
        ASSERT_EQ(collect(),
                  (Lines{"/root" + kNewOpen, "/root/a" + kNewOpen, "/root/a/b" + kNewClosed}));
    }
    /// The same three in working-set mode.
    void showThreeOfWorkingSet() {
        tree.setMode(true);
        cookWith("/root", kIncluded);
        cookWith("/root/a", kIncluded);
        cookWith("/root/a/b", kIncluded);
        ASSERT_EQ(collect(),
                  (Lines{"/root" + kNewOpen, "/root/a" + kNewOpen, "/root/a/b" + kNewOpen}));
    }

    LocationTree tree;
};

// ---- what the description of the trees promises at its edges

TEST_F(LocationTreeTest, anEmptyDirtySetAndAnUnchangedModeGiveAnEmptyList) {
    EXPECT_EQ(collect(), Lines{});
    showThree();
    EXPECT_EQ(collect(), Lines{});
}

TEST_F(LocationTreeTest, collectReplacesWhatTheListHeld) {
    cook("/root");
    std::vector<LocationChange> changes(3);
    tree.collect(changes);
    EXPECT_EQ(changes.size(), 1U);
    tree.collect(changes);
    EXPECT_TRUE(changes.empty());
}

TEST_F(LocationTreeTest, aLocationWhoseParentIsUnknownIsPassedOver) {
    cook("/root/a");
    cookProxy("/root/proxy");
    EXPECT_EQ(collect(), Lines{});
    EXPECT_EQ(tree.getNumberOfLocations(), 0U);
}

TEST_F(LocationTreeTest, closingGivesOneRemovalForEachTopmostChildBeforeAnyDeletedEvent) {
    showThree();
    cookLeaf("/root/c");
    collect();
    tree.closeLocation("/root");
    EXPECT_EQ(collect(), (Lines{"/root leaf leafChanged", "/root/a removed", "/root/c removed"}));
}

TEST_F(LocationTreeTest, deletedEventsAfterClosingFindNodesForgottenAndLetThemGo) {
    showThree();
    tree.closeLocation("/root");
    collect();
    EXPECT_EQ(tree.getNumberOfLocations(), 3U);
    tree.deleteLocation("/root/a/b");
    tree.deleteLocation("/root/a");
    EXPECT_EQ(collect(), Lines{});
    EXPECT_EQ(tree.getNumberOfLocations(), 1U);
}

TEST_F(LocationTreeTest, hidingAPathBeforeItExistsTakesEffectWhenItIsCreated) {
    tree.openLocation("/root");
    hide("/root/a");
    cook("/root");
    cook("/root/a");
    EXPECT_EQ(collect(), (Lines{"/root" + kNewOpen, "/root/a hidden" + kNewClosed}));
    EXPECT_EQ(textOf(tree.getHiddenLocations()), "\"/root/a\"");
}

// ---- cooking and deleting

TEST_F(LocationTreeTest, aCookOfTheSameAttributesIsNoChange) {
    showThree();
    cook("/root/a");
    EXPECT_EQ(collect(), Lines{});
}

TEST_F(LocationTreeTest, changedAttributesThatChangeBackBeforeTheCollectionAreNoChange) {
    showThree();
    cook("/root/a", numbered(1));
    cook("/root/a");
    EXPECT_EQ(collect(), Lines{});
}

TEST_F(LocationTreeTest, aChangeOfAttributesAloneLeavesTheOtherBitsUnset) {
    showThree();
    cook("/root/a", numbered(1));
    EXPECT_EQ(collect(), Lines{"/root/a attributesChanged"});
}

TEST_F(LocationTreeTest, theXformIsReportedOnlyWhenItsMatrixDiffers) {
    showThree();
    cook("/root/a", moved(1.0));
    EXPECT_EQ(collect(), Lines{"/root/a attributesChanged xformChanged"});
    VlAttribute::GroupBuilder builder;
    builder.update(moved(1.0)).set("number", VlAttribute::IntAttribute(1));
    cook("/root/a", builder.build());
    EXPECT_EQ(collect(), Lines{"/root/a attributesChanged"});
    cook("/root/a", moved(1.0, true));
    EXPECT_EQ(collect(), Lines{"/root/a absolute attributesChanged xformChanged"});
}

TEST_F(LocationTreeTest, losingTheXformIsReportedWithoutAMatrix) {
    showThree();
    cook("/root/a", moved(1.0));
    collect();
    cook("/root/a");
    std::vector<LocationChange> changes;
    tree.collect(changes);
    ASSERT_EQ(changes.size(), 1U);
    EXPECT_TRUE(changes[0].xformChanged);
    EXPECT_FALSE(changes[0].matrix.isValid());
}

TEST_F(LocationTreeTest, aRecordCarriesAttributesAndLocalMatrix) {
    cook("/root", moved(2.0));
    std::vector<LocationChange> changes;
    tree.collect(changes);
    ASSERT_EQ(changes.size(), 1U);
    EXPECT_EQ(changes[0].attributes, moved(2.0));
    EXPECT_EQ(textOf(changes[0].matrix), "(1 0 0 0 0 1 0 0 0 0 1 0 2 0 0 1)");
}

TEST_F(LocationTreeTest, aRemovalCarriesNothingButPathAndProxy) {
    tree.openLocation("/root");
    cook("/root");
    cookProxy("/root/proxy", moved(1.0));
    collect();
    tree.deleteLocation("/root/proxy");
    std::vector<LocationChange> changes;
    tree.collect(changes);
    LocationChange expected;
    expected.path = LocationPath("/root/proxy");
    expected.proxy = expected.removed = true;
    EXPECT_EQ(changes, std::vector{expected});
}

TEST_F(LocationTreeTest, aRecordKeepsItsPathWhenTheLocationIsGone) {
    showThree();
    tree.deleteLocation("/root");
    std::vector<LocationChange> changes;
    tree.collect(changes);
    ASSERT_EQ(tree.getNumberOfLocations(), 0U);
    ASSERT_EQ(changes.size(), 1U);
    EXPECT_STREQ(changes[0].path.c_str(), "/root");
}

TEST_F(LocationTreeTest, deletingAParentRemovesItAloneAndDropsWhatIsBelow) {
    showThree();
    tree.deleteLocation("/root/a");
    EXPECT_EQ(collect(), (Lines{"/root/a removed"}));
    EXPECT_EQ(tree.find("/root/a"), nullptr);
    EXPECT_EQ(tree.find("/root/a/b"), nullptr);
}

TEST_F(LocationTreeTest, aLocationThatComesAndGoesBetweenTwoCollectionsIsNeverTold) {
    showThree();
    cook("/root/c");
    tree.deleteLocation("/root/c");
    EXPECT_EQ(collect(), Lines{});
    EXPECT_EQ(tree.find("/root/c"), nullptr);
}

TEST_F(LocationTreeTest, whatIsCookedBelowALocationThatComesAndGoesIsNeverTold) {
    showThree();
    tree.openLocation("/root/c");
    tree.openLocation("/root/c/d");
    cook("/root/c");
    cook("/root/c/d");
    cook("/root/c/d/e");
    tree.deleteLocation("/root/c");
    EXPECT_EQ(collect(), Lines{});
    EXPECT_EQ(tree.find("/root/c/d/e"), nullptr);
}

TEST_F(LocationTreeTest, newLocationsBelowADeletedParentAreNeverTold) {
    showThree();
    tree.openLocation("/root/a/b");
    tree.openLocation("/root/a/b/c");
    cook("/root/a/b/c");
    cook("/root/a/b/c/d");
    tree.deleteLocation("/root/a");
    EXPECT_EQ(collect(), Lines{"/root/a removed"});
    EXPECT_EQ(tree.getNumberOfLocations(), 1U);
}

TEST_F(LocationTreeTest, aLocationThatGoesAndComesBetweenTwoCollectionsIsNoChange) {
    showThree();
    tree.deleteLocation("/root/a/b");
    cookLeaf("/root/a/b");
    EXPECT_EQ(collect(), Lines{});
}

TEST_F(LocationTreeTest, theLeafBitFollowsThePotentialChildren) {
    showThree();
    tree.openLocation("/root/a/b");
    collect();
    cook("/root/a/b");
    EXPECT_EQ(collect(), Lines{"/root/a/b leafChanged"});
    cookLeaf("/root/a/b");
    EXPECT_EQ(collect(), Lines{"/root/a/b leaf leafChanged"});
}

TEST_F(LocationTreeTest, manySiblingsMayGoInAnyOrder) {
    tree.openLocation("/root");
    cook("/root");
    for (int i = 0; i < 100; ++i) {
        cook(("/root/" + std::to_string(i)).c_str());
    }
    collect();
    for (int i = 0; i < 100; i += 3) {
        tree.deleteLocation("/root/" + std::to_string(i));
    }
    EXPECT_EQ(collect().size(), 34U);
    const LocationNode* root = tree.find("/root");
    ASSERT_EQ(root->children.size(), 66U);
    for (const LocationNode* child : root->children) {
        EXPECT_EQ(tree.find(child->path), child);
        EXPECT_EQ(root->children[child->childIndex], child);
    }
}

// ---- openness

TEST_F(LocationTreeTest, childrenOfAClosedLocationAreNotTold) {
    cook("/root");
    cook("/root/a");
    EXPECT_EQ(collect(), Lines{"/root" + kNewClosed});
    tree.openLocation("/root");
    EXPECT_EQ(collect(), (Lines{"/root leafChanged", "/root/a" + kNewClosed}));
}

TEST_F(LocationTreeTest, openingAPathBeforeItExistsTakesEffectWhenItIsCreated) {
    tree.openLocation("/root");
    cook("/root");
    cook("/root/a");
    EXPECT_EQ(collect(), (Lines{"/root" + kNewOpen, "/root/a" + kNewClosed}));
}

TEST_F(LocationTreeTest, closingAPathBeforeItExistsTakesTheOpeningBack) {
    tree.openLocation("/root");
    tree.closeLocation("/root");
    cook("/root");
    EXPECT_EQ(collect(), (Lines{"/root" + kNewClosed}));
}

TEST_F(LocationTreeTest, aLocationThatComesBackComesBackOpen) {
    showThree();
    tree.deleteLocation("/root/a");
    collect();
    cook("/root/a");
    cook("/root/a/b");
    EXPECT_EQ(collect(), (Lines{"/root/a" + kNewOpen, "/root/a/b" + kNewClosed}));
}

TEST_F(LocationTreeTest, closingWhileALocationIsGoneKeepsItClosed) {
    showThree();
    tree.deleteLocation("/root/a");
    collect();
    tree.closeLocation("/root/a");
    cook("/root/a");
    EXPECT_EQ(collect(), (Lines{"/root/a" + kNewClosed}));
}

TEST_F(LocationTreeTest, closingAndOpeningBetweenTwoCollectionsIsNoChange) {
    showThree();
    tree.closeLocation("/root");
    tree.openLocation("/root");
    EXPECT_EQ(collect(), Lines{});
}

TEST_F(LocationTreeTest, aChildThatComesWhileItsParentIsClosedForAMomentShows) {
    showThree();
    tree.closeLocation("/root");
    cookLeaf("/root/c");
    tree.openLocation("/root");
    EXPECT_EQ(collect(), Lines{"/root/c" + kNewClosed});
    EXPECT_FALSE(tree.find("/root/c")->collapsed);
}

TEST_F(LocationTreeTest, aChildThatComesWhileItsParentIsOpenForAMomentDoesNotShow) {
    cook("/root");
    collect();
    tree.openLocation("/root");
    cookLeaf("/root/c");
    tree.closeLocation("/root");
    EXPECT_EQ(collect(), Lines{});
    EXPECT_TRUE(tree.find("/root/c")->collapsed);
}

// ---- pins

TEST_F(LocationTreeTest, aPinnedLocationShowsUnderClosedAncestors) {
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

TEST_F(LocationTreeTest, pinningAPathBeforeItExistsMakesItAndItsAncestors) {
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

TEST_F(LocationTreeTest, unpinningAPathThatNeverCameLetsItGoWithItsAncestors) {
    tree.pinLocation("/root/a/b");
    collect();
    tree.unpinLocation("/root/a/b");
    EXPECT_EQ(collect(), Lines{});
    EXPECT_EQ(tree.getNumberOfLocations(), 0U);
}

TEST_F(LocationTreeTest, aPinnedLocationThatIsDeletedStaysUncooked) {
    showThree();
    tree.pinLocation("/root/a/b");
    tree.deleteLocation("/root/a/b");
    EXPECT_EQ(collect(), Lines{"/root/a/b removed"});
    ASSERT_NE(tree.find("/root/a/b"), nullptr);
    cookLeaf("/root/a/b");
    EXPECT_EQ(collect(), Lines{"/root/a/b" + kNewClosed});
}

TEST_F(LocationTreeTest, pinsAreCountedOnceHoweverOftenAsked) {
    showThree();
    tree.pinLocation("/root/a/b");
    tree.pinLocation("/root/a/b");
    EXPECT_EQ(tree.find("/root")->pinnedDescendants, 1);
    tree.unpinLocation("/root/a/b");
    tree.unpinLocation("/root/a/b");
    EXPECT_EQ(tree.find("/root")->pinnedDescendants, 0);
}

TEST_F(LocationTreeTest, aLocationOfAnInnerPinStaysWhenTheOuterPinGoes) {
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

TEST_F(LocationTreeTest, hidingIsInheritedAndReportedForEachLocation) {
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

TEST_F(LocationTreeTest, hidingAndUnhidingBetweenTwoCollectionsIsNoChange) {
    showThree();
    hide("/root");
    unhide("/root");
    EXPECT_EQ(collect(), Lines{});
}

TEST_F(LocationTreeTest, aChildThatComesWhileItsParentIsHiddenForAMomentIsNotHidden) {
    showThree();
    hide("/root");
    cookLeaf("/root/c");
    unhide("/root");
    EXPECT_EQ(collect(), Lines{"/root/c" + kNewClosed});
}

TEST_F(LocationTreeTest, aChildThatComesUnderAParentHiddenSinceIsHidden) {
    showThree();
    hide("/root/a");
    cookLeaf("/root/a/c");
    EXPECT_EQ(collect(),
              (Lines{"/root/a hidden hiddenChanged", "/root/a/b hidden leaf hiddenChanged",
                     "/root/a/c hidden" + kNewClosed}));
}

TEST_F(LocationTreeTest, hidingIsRememberedForALocationThatGoesAndComesBack) {
    showThree();
    hide("/root/a/b");
    tree.deleteLocation("/root/a/b");
    collect();
    EXPECT_EQ(textOf(tree.getHiddenLocations()), "\"/root/a/b\"");
    cookLeaf("/root/a/b");
    EXPECT_EQ(collect(), Lines{"/root/a/b hidden" + kNewClosed});
}

TEST_F(LocationTreeTest, unhidingWhileALocationIsGoneIsHeeded) {
    showThree();
    hide("/root/a/b");
    tree.deleteLocation("/root/a/b");
    collect();
    unhide("/root/a/b");
    cookLeaf("/root/a/b");
    EXPECT_EQ(collect(), Lines{"/root/a/b" + kNewClosed});
}

TEST_F(LocationTreeTest, aProxyCantBeHiddenAndIsNotRemembered) {
    showThree();
    cookProxy("/root/proxy");
    collect();
    hide("/root/proxy");
    EXPECT_EQ(collect(), Lines{});
    EXPECT_EQ(textOf(tree.getHiddenLocations()), "()");
}

TEST_F(LocationTreeTest, hiddenLocationsAreListedInTheOrderOfTheirPaths) {
    for (const char* path : {"/root/c", "/root/a", "/root/b"}) {
        hide(path);
    }
    EXPECT_EQ(textOf(tree.getHiddenLocations()), R"(("/root/a" "/root/b" "/root/c"))");
}

TEST_F(LocationTreeTest, isHiddenSeesAncestors) {
    showThree();
    hide("/root");
    collect();
    EXPECT_TRUE(LocationTree::isHidden(*tree.find("/root")));
    EXPECT_TRUE(LocationTree::isHidden(*tree.find("/root/a/b")));
}

// ---- proxies

TEST_F(LocationTreeTest, aProxyOfAClosedLocationShows) {
    cook("/root");
    collect();
    cookProxy("/root/proxy");
    EXPECT_EQ(collect(), Lines{"/root/proxy proxy attributesChanged hiddenChanged leafChanged"});
}

TEST_F(LocationTreeTest, proxiesStandApartFromChildrenAndBelowProxiesAmongThem) {
    cook("/root");
    cookProxy("/root/proxy");
    cookProxy("/root/proxy/part");
    const LocationNode* root = tree.find("/root");
    EXPECT_TRUE(root->children.empty());
    ASSERT_EQ(root->proxyChildren.size(), 1U);
    EXPECT_EQ(root->proxyChildren[0]->children.size(), 1U);
    EXPECT_TRUE(root->proxyChildren[0]->proxyChildren.empty());
}

TEST_F(LocationTreeTest, proxiesGoWhenTheirLocationLeavesTheView) {
    showThree();
    cookProxy("/root/a/proxy");
    cookProxy("/root/a/proxy/part");
    collect();
    tree.closeLocation("/root");
    EXPECT_EQ(collect(), (Lines{"/root leaf leafChanged", "/root/a removed"}));
    EXPECT_EQ(tree.find("/root/a/proxy"), nullptr);
    tree.openLocation("/root");
    EXPECT_EQ(collect(),
              (Lines{"/root leafChanged", "/root/a" + kNewOpen, "/root/a/b" + kNewClosed}));
}

TEST_F(LocationTreeTest, closingALocationLeavesItsProxies) {
    showThree();
    cookProxy("/root/a/proxy");
    collect();
    tree.closeLocation("/root/a");
    EXPECT_EQ(collect(), (Lines{"/root/a leaf leafChanged", "/root/a/b removed"}));
}

TEST_F(LocationTreeTest, aProxyIsPinnedWithItsLocation) {
    cook("/root");
    cook("/root/a");
    tree.pinLocation("/root/a");
    collect();
    cookProxy("/root/a/proxy");
    EXPECT_TRUE(tree.find("/root/a/proxy")->pinned);
    collect();
    tree.unpinLocation("/root/a");
    EXPECT_EQ(collect(), (Lines{"/root leaf leafChanged", "/root/a removed"}));
    EXPECT_EQ(tree.find("/root/a/proxy"), nullptr);
}

TEST_F(LocationTreeTest, unpinningAProxyThatOnlySharesAPinLeavesTheCounts) {
    cook("/root");
    cook("/root/a");
    tree.pinLocation("/root/a");
    collect();
    cookProxy("/root/a/proxy");
    collect();
    tree.unpinLocation("/root/a/proxy");
    EXPECT_EQ(tree.find("/root/a")->pinnedDescendants, 0);
    EXPECT_EQ(tree.find("/root")->pinnedDescendants, 1);
    EXPECT_TRUE(tree.find("/root/a/proxy")->pinned);
}

TEST_F(LocationTreeTest, aProxyPinnedItselfStaysPinnedWithoutItsLocation) {
    cook("/root");
    cook("/root/a");
    tree.pinLocation("/root/a");
    cookProxy("/root/a/proxy");
    tree.pinLocation("/root/a/proxy");
    collect();
    tree.unpinLocation("/root/a");
    EXPECT_EQ(collect(), Lines{});
    tree.unpinLocation("/root/a/proxy");
    EXPECT_EQ(collect(), (Lines{"/root leaf leafChanged", "/root/a removed"}));
    EXPECT_EQ(tree.find("/root")->pinnedDescendants, 0);
}

TEST_F(LocationTreeTest, hidingAnAncestorReachesProxiesAndHidingTheirLocationDoesNot) {
    showThree();
    cookProxy("/root/a/proxy");
    collect();
    hide("/root/a");
    EXPECT_EQ(collect(),
              (Lines{"/root/a hidden hiddenChanged", "/root/a/b hidden leaf hiddenChanged"}));
    unhide("/root/a");
    collect();
    hide("/root");
    EXPECT_EQ(collect(), (Lines{"/root hidden hiddenChanged", "/root/a hidden hiddenChanged",
                                "/root/a/b hidden leaf hiddenChanged",
                                "/root/a/proxy hidden proxy hiddenChanged"}));
}

// ---- the working set

TEST_F(LocationTreeTest, theModeTakesEffectAtTheNextCollection) {
    cook("/root");
    cookWith("/root/a", kIncluded);
    EXPECT_EQ(collect(), Lines{"/root" + kNewClosed});
    tree.setMode(true);
    EXPECT_EQ(collect(), Lines{"/root/a" + kNewOpen});
    tree.setMode(false);
    EXPECT_EQ(collect(), (Lines{"/root/a removed"}));
}

TEST_F(LocationTreeTest, switchingTheModeForthAndBackIsNoChange) {
    showThree();
    tree.setMode(true);
    tree.setMode(false);
    EXPECT_EQ(collect(), Lines{});
}

TEST_F(LocationTreeTest, aLocationThatIsNotIncludedIsShownHidden) {
    showThreeOfWorkingSet();
    cookWith("/root/a", kExcluded);
    EXPECT_EQ(collect(), Lines{"/root/a hidden hiddenChanged"});
}

TEST_F(LocationTreeTest, aLeafOfTheWorkingSetShowsNoChildren) {
    showThreeOfWorkingSet();
    cookWith("/root/a", kIncludedLeaf);
    EXPECT_EQ(collect(), Lines{"/root/a leaf leafChanged"});
}

TEST_F(LocationTreeTest, theRootAlwaysCountsAsHavingWorkingSetData) {
    tree.setMode(true);
    cook("/root");
    EXPECT_EQ(collect(), Lines{"/root hidden" + kNewOpen});
    EXPECT_TRUE(tree.find("/root")->hasWorkingSetData);
}

TEST_F(LocationTreeTest, inWorkingSetModeALocationWithoutDataStaysAsPlugInsKnowIt) {
    showThree();
    tree.setMode(true);
    EXPECT_EQ(collect(), Lines{});
    cook("/root/a/new");
    tree.closeLocation("/root/a");
    EXPECT_EQ(collect(), Lines{});
    cookWith("/root/a", kExcluded);
    EXPECT_EQ(collect(), Lines{"/root/a hidden hiddenChanged"});
    cook("/root/a");
    EXPECT_EQ(collect(), Lines{});
}

TEST_F(LocationTreeTest, theWorkingSetReachesProxies) {
    showThreeOfWorkingSet();
    cookProxy("/root/a/proxy");
    EXPECT_EQ(collect(), Lines{"/root/a/proxy proxy attributesChanged hiddenChanged leafChanged"});
    cookWith("/root/a", kExcluded);
    EXPECT_EQ(collect(),
              (Lines{"/root/a hidden hiddenChanged", "/root/a/proxy hidden proxy hiddenChanged"}));
}

TEST_F(LocationTreeTest, aProxyOfAPinnedLocationThatCameBackShowsInTheWorkingSet) {
    showThreeOfWorkingSet();
    tree.pinLocation("/root/a/b");
    cookProxy("/root/a/b/proxy");
    collect();
    tree.deleteLocation("/root/a/b");
    EXPECT_EQ(collect(), Lines{"/root/a/b removed"});
    cookWith("/root/a/b", kIncluded);
    cookProxy("/root/a/b/proxy");
    EXPECT_EQ(collect(),
              (Lines{"/root/a/b" + kNewOpen,
                     "/root/a/b/proxy proxy attributesChanged hiddenChanged leafChanged"}));
}

TEST_F(LocationTreeTest, whatWasClosedInWorkingSetModeIsClosedAfterIt) {
    showThree();
    tree.setMode(true);
    collect();
    tree.closeLocation("/root/a");
    EXPECT_EQ(collect(), Lines{});
    tree.setMode(false);
    EXPECT_EQ(collect(), (Lines{"/root/a leaf leafChanged", "/root/a/b removed"}));
}

// ---- live values

TEST_F(LocationTreeTest, aLiveValueReplacesTheAttributesUntilTheNextCook) {
    showThree();
    tree.setAttributes("/root/a", moved(1.0));
    EXPECT_EQ(collect(), Lines{"/root/a attributesChanged xformChanged"});
    EXPECT_EQ(tree.getAttributes("/root/a", true), moved(1.0));
    cook("/root/a");
    EXPECT_EQ(collect(), Lines{"/root/a attributesChanged xformChanged"});
}

TEST_F(LocationTreeTest, aLiveValueOfAnUnknownLocationIsIgnored) {
    tree.setAttributes("/root", numbered(1));
    EXPECT_EQ(tree.find("/root"), nullptr);
}

// ---- order

TEST_F(LocationTreeTest, oneWalkIsDepthFirstWithProxiesAfterChildren) {
    cook("/root");
    cook("/root/a");
    cook("/root/b");
    tree.openLocation("/root/a");
    cookLeaf("/root/a/1");
    cookLeaf("/root/a/2");
    collect();
    cookProxy("/root/a/proxy");
    tree.openLocation("/root");
    EXPECT_EQ(collect(), (Lines{"/root leafChanged", "/root/a" + kNewOpen, "/root/a/1" + kNewClosed,
                                "/root/a/2" + kNewClosed,
                                "/root/a/proxy proxy attributesChanged hiddenChanged leafChanged",
                                "/root/b" + kNewClosed}));
}

TEST_F(LocationTreeTest, parentsComeBeforeChildrenWhateverTheOrderOfChanges) {
    showThree();
    tree.setAttributes("/root/a/b", numbered(1));
    cook("/root/a", numbered(1));
    cook("/root", numbered(1));
    EXPECT_EQ(collect(), (Lines{"/root attributesChanged", "/root/a attributesChanged",
                                "/root/a/b leaf attributesChanged"}));
}

// ---- reading

TEST_F(LocationTreeTest, whatPlugInsDontKnowReadsAsAbsentWhenSentIsRequired) {
    cook("/root", moved(1.0));
    cook("/root/a", moved(2.0));
    collect();
    bool isAbsolute = true;
    EXPECT_FALSE(tree.getAttributes("/root/a", true).isValid());
    EXPECT_FALSE(tree.getXformGroup("/root/a", true).isValid());
    EXPECT_FALSE(tree.getLocalXform("/root/a", isAbsolute, true).isValid());
    EXPECT_FALSE(isAbsolute);
    EXPECT_FALSE(tree.getWorldXform("/root/a", true).isValid());
    EXPECT_FALSE(tree.getParentXform("/root/a", true).isValid());
    EXPECT_EQ(tree.getAttributes("/root/a", false), moved(2.0));
    EXPECT_EQ(textOf(tree.getWorldXform("/root/a", false)), "(1 0 0 0 0 1 0 0 0 0 1 0 3 0 0 1)");
}

TEST_F(LocationTreeTest, theWorldXformMultipliesFromTheLocationUp) {
    showThree();
    cook("/root/a",
         GroupAttribute{
             {"xform", GroupAttribute{{"g", GroupAttribute{{"scale", VlAttribute::DoubleAttribute(
                                                                         {2.0, 2.0, 2.0}, 3)}}}}}});
    cook("/root/a/b", moved(3.0));
    EXPECT_EQ(textOf(tree.getWorldXform("/root/a/b", true)), "(2 0 0 0 0 2 0 0 0 0 2 0 6 0 0 1)");
    EXPECT_EQ(textOf(tree.getParentXform("/root/a/b", true)), "(2 0 0 0 0 2 0 0 0 0 2 0 0 0 0 1)");
}

TEST_F(LocationTreeTest, theWorldXformStopsAfterAnAbsoluteOne) {
    showThree();
    cook("/root", moved(100.0));
    cook("/root/a", moved(10.0, true));
    cook("/root/a/b", moved(1.0));
    EXPECT_EQ(textOf(tree.getWorldXform("/root/a/b", true)), "(1 0 0 0 0 1 0 0 0 0 1 0 11 0 0 1)");
    bool isAbsolute = false;
    EXPECT_EQ(textOf(tree.getLocalXform("/root/a", isAbsolute, true)),
              "(1 0 0 0 0 1 0 0 0 0 1 0 10 0 0 1)");
    EXPECT_TRUE(isAbsolute);
}

TEST_F(LocationTreeTest, withoutTransformsTheWorldXformIsTheIdentityAndTheLocalOneNull) {
    showThree();
    bool isAbsolute = true;
    EXPECT_EQ(textOf(tree.getWorldXform("/root/a/b", true)), "(1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1)");
    EXPECT_EQ(textOf(tree.getParentXform("/root", true)), "(1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1)");
    EXPECT_FALSE(tree.getLocalXform("/root", isAbsolute, true).isValid());
    EXPECT_FALSE(isAbsolute);
}

TEST_F(LocationTreeTest, descendantsAreListedNearestFirstWithProxiesAfterChildren) {
    showThree();
    cookProxy("/root/proxy");
    cookLeaf("/root/c");
    collect();
    EXPECT_EQ(textOf(tree.getDescendantLocations("/root")),
              R"(("/root/a" "/root/c" "/root/proxy" "/root/a/b"))");
}

TEST_F(LocationTreeTest, descendantsThatPlugInsDontKnowAreLeftOut) {
    showThree();
    cookLeaf("/root/c");
    EXPECT_EQ(textOf(tree.getDescendantLocations("/root")), R"(("/root/a" "/root/a/b"))");
    EXPECT_EQ(textOf(tree.getDescendantLocations("/root/a/b")), "()");
    EXPECT_FALSE(tree.getDescendantLocations("/root/c").isValid());
    EXPECT_FALSE(tree.getDescendantLocations("/nowhere").isValid());
}

TEST_F(LocationTreeTest, findingIsIndependentOfWhatWasFoundBefore) {
    tree.openLocation("/root");
    cook("/root");
    std::vector<std::string> paths;
    for (int i = 0; i < 10; ++i) {
        paths.push_back("/root/" + std::to_string(i));
        cook(paths.back().c_str(), numbered(i));
    }
    cookProxy("/root/proxy");
    collect();
    for (int round = 0; round < 3; ++round) {
        for (const std::string& first : paths) {
            for (const std::string& second : paths) {
                EXPECT_EQ(tree.find(first)->path, first);
                EXPECT_EQ(tree.find(second)->path, second);
            }
            EXPECT_EQ(tree.find("/root/proxy")->path, "/root/proxy");
            EXPECT_EQ(tree.find("/root/none"), nullptr);
        }
        // The one found last goes, and another takes its place among the siblings.
        EXPECT_EQ(tree.find(paths[3])->path, paths[3]);
        tree.deleteLocation(paths[3]);
        collect();
        EXPECT_EQ(tree.find(paths[3]), nullptr);
        paths.erase(paths.begin() + 3);
    }
}

TEST_F(LocationTreeTest, aChainOfThousandsOfLevelsIsToldAndForgotten) {
    constexpr int kLevels = 3000;
    std::string path = "/root";
    for (int i = 0; i < kLevels; ++i) {
        tree.openLocation(path);
        cook(path.c_str());
        path += "/n";
    }
    EXPECT_EQ(collect().size(), std::size_t{kLevels});
    hide("/root");
    EXPECT_EQ(collect().size(), std::size_t{kLevels});
    tree.deleteLocation("/root");
    EXPECT_EQ(collect(), Lines{"/root removed"});
    EXPECT_EQ(tree.getNumberOfLocations(), 0U);
}

// ---- paths that name no proper location

TEST_F(LocationTreeTest, textsThatAreNoPathsDoNoHarm) {
    for (const char* path : {"", "/", "//", "a", "a/b", "/root/"}) {
        tree.pinLocation(path);
        tree.openLocation(path);
        hide(path);
    }
    EXPECT_EQ(collect(), Lines{});
    for (const char* path : {"", "/", "//", "a", "a/b", "/root/"}) {
        tree.unpinLocation(path);
    }
    EXPECT_EQ(collect(), Lines{});
    EXPECT_EQ(tree.getNumberOfLocations(), 0U);
}

} // namespace
} // namespace ViewerAPI
