// Generated locations, and the working set.

#include "support/locationtreetest.h"

namespace ViewerAPI {
namespace {

using namespace test;

class LocationTreeProxies : public LocationTreeTest {};

// ---- proxies

TEST_F(LocationTreeProxies, aProxyOfAClosedLocationShows) {
    cook("/root");
    collect();
    cookProxy("/root/proxy");
    EXPECT_EQ(collect(), Lines{"/root/proxy proxy attributesChanged hiddenChanged leafChanged"});
}

TEST_F(LocationTreeProxies, proxiesStandApartFromChildrenAndBelowProxiesAmongThem) {
    cook("/root");
    cookProxy("/root/proxy");
    cookProxy("/root/proxy/part");
    const LocationNode* root = tree.find("/root");
    EXPECT_TRUE(root->children.empty());
    ASSERT_EQ(root->proxyChildren.size(), 1U);
    EXPECT_EQ(root->proxyChildren[0]->children.size(), 1U);
    EXPECT_TRUE(root->proxyChildren[0]->proxyChildren.empty());
}

TEST_F(LocationTreeProxies, proxiesGoWhenTheirLocationLeavesTheView) {
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

TEST_F(LocationTreeProxies, closingALocationLeavesItsProxies) {
    showThree();
    cookProxy("/root/a/proxy");
    collect();
    tree.closeLocation("/root/a");
    EXPECT_EQ(collect(), (Lines{"/root/a leaf leafChanged", "/root/a/b removed"}));
}

TEST_F(LocationTreeProxies, aProxyIsPinnedWithItsLocation) {
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

TEST_F(LocationTreeProxies, unpinningAProxyThatOnlySharesAPinLeavesTheCounts) {
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

TEST_F(LocationTreeProxies, whatAPinAloneKeepsHasNoProxies) {
    cook("/root");
    cook("/root/a");
    tree.pinLocation("/root/a");
    tree.pinLocation("/root/b");
    cookProxy("/root/a/proxy");
    collect();
    tree.deleteLocation("/root/a");
    EXPECT_EQ(collect(), Lines{"/root/a removed"});
    cookProxy("/root/a/proxy");
    cookProxy("/root/a/proxy/part");
    cookProxy("/root/b/proxy");
    EXPECT_EQ(collect(), Lines{});
    EXPECT_EQ(tree.find("/root/b/proxy"), nullptr);
}

TEST_F(LocationTreeProxies, aProxyPinnedItselfStaysPinnedWithoutItsLocation) {
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

TEST_F(LocationTreeProxies, hidingAnAncestorReachesProxiesAndHidingTheirLocationDoesNot) {
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

TEST_F(LocationTreeProxies, theModeTakesEffectAtTheNextCollection) {
    cook("/root");
    cookWith("/root/a", kIncluded);
    EXPECT_EQ(collect(), Lines{"/root" + kNewClosed});
    tree.setMode(true);
    EXPECT_EQ(collect(), Lines{"/root/a" + kNewOpen});
    tree.setMode(false);
    EXPECT_EQ(collect(), (Lines{"/root/a removed"}));
}

TEST_F(LocationTreeProxies, switchingTheModeForthAndBackIsNoChange) {
    showThree();
    tree.setMode(true);
    tree.setMode(false);
    EXPECT_EQ(collect(), Lines{});
}

TEST_F(LocationTreeProxies, aLocationThatIsNotIncludedIsShownHidden) {
    showThreeOfWorkingSet();
    cookWith("/root/a", kExcluded);
    EXPECT_EQ(collect(), Lines{"/root/a hidden hiddenChanged"});
}

TEST_F(LocationTreeProxies, aLeafOfTheWorkingSetShowsNoChildren) {
    showThreeOfWorkingSet();
    cookWith("/root/a", kIncludedLeaf);
    EXPECT_EQ(collect(), Lines{"/root/a leaf leafChanged"});
}

TEST_F(LocationTreeProxies, theRootAlwaysCountsAsHavingWorkingSetData) {
    tree.setMode(true);
    cook("/root");
    EXPECT_EQ(collect(), Lines{"/root hidden" + kNewOpen});
    EXPECT_TRUE(tree.find("/root")->hasWorkingSetData);
}

TEST_F(LocationTreeProxies, inWorkingSetModeALocationWithoutDataStaysAsPlugInsKnowIt) {
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

TEST_F(LocationTreeProxies, theWorkingSetReachesProxies) {
    showThreeOfWorkingSet();
    cookProxy("/root/a/proxy");
    EXPECT_EQ(collect(), Lines{"/root/a/proxy proxy attributesChanged hiddenChanged leafChanged"});
    cookWith("/root/a", kExcluded);
    EXPECT_EQ(collect(),
              (Lines{"/root/a hidden hiddenChanged", "/root/a/proxy hidden proxy hiddenChanged"}));
}

TEST_F(LocationTreeProxies, aProxyOfAPinnedLocationThatCameBackShowsInTheWorkingSet) {
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

TEST_F(LocationTreeProxies, whatWasClosedInWorkingSetModeIsClosedAfterIt) {
    showThree();
    tree.setMode(true);
    collect();
    tree.closeLocation("/root/a");
    EXPECT_EQ(collect(), Lines{});
    tree.setMode(false);
    EXPECT_EQ(collect(), (Lines{"/root/a leaf leafChanged", "/root/a/b removed"}));
}

} // namespace
} // namespace ViewerAPI
