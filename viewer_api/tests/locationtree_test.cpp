#include "support/locationtreetest.h"

namespace ViewerAPI {
namespace {

using namespace test;
using VlAttribute::GroupAttribute;

// ---- the edges

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
