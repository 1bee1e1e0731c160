#include "vlproxyfactorylist.h"

#include "support/delegatetest.h"
#include "support/factorytest.h"
#include "support/scriptedruntime.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

/// What changes of the view become, seen at the boxes; and the two factories side by side.
class VlProxyFactoryListTest : public testing::Test {
protected:
    VlProxyFactoryListTest() {
        list.createFactories();
        list.initialise();
    }

    void apply(const LocationChange& change) { list.applyChanges({&change, 1}); }
    std::vector<std::string> collected() { return linesOf(collect(list)); }

    ScriptedRuntime runtime;
    VlProxyFactoryList list;
};

TEST_F(VlProxyFactoryListTest, isEmptyUntilFactoriesAreMade) {
    VlProxyFactoryList empty;
    const LocationChange change = leafChange("/root/a", bounded(1));
    empty.applyChanges({&change, 1});
    empty.setBoundingBoxesEnabled(false);
    empty.setProxyGeometryEnabled(false);
    empty.setSystemArgs({});
    empty.clear();
    EXPECT_FALSE(empty.hasPendingWork());
    EXPECT_THAT(collect(empty), IsEmpty());
}

TEST_F(VlProxyFactoryListTest, makesABoxForALeafWithABound) {
    apply(leafChange("/root/a", bounded(1)));
    EXPECT_TRUE(list.hasPendingWork());
    EXPECT_THAT(collected(), ElementsAre("produced /root/a/__VlOst_bbox"));
    EXPECT_FALSE(list.hasPendingWork());
}

TEST_F(VlProxyFactoryListTest, passesOverGeneratedLocationsAlsoWhenTheyAreRemoved) {
    apply(leafChange("/root/a", bounded(1)));
    collected();
    LocationChange generated = leafChange("/root/a/__VlOst_bbox", bounded(1));
    generated.proxy = true;
    apply(generated);
    EXPECT_THAT(collected(), IsEmpty());
    // Were it heeded, the location would be forgotten and asked for again.
    LocationChange removal = removalOf("/root/a");
    removal.proxy = true;
    apply(removal);
    apply(leafChange("/root/a", bounded(1)));
    EXPECT_THAT(collected(), IsEmpty());
}

TEST_F(VlProxyFactoryListTest, aRemovedLocationAsksForNoRemovalProduct) {
    apply(leafChange("/root/a", bounded(1)));
    apply(leafChange("/root/a/b", bounded(1)));
    collected();
    apply(removalOf("/root/a"));
    EXPECT_FALSE(list.hasPendingWork());
    EXPECT_THAT(collected(), IsEmpty());
    apply(leafChange("/root/a/b", bounded(1)));
    EXPECT_THAT(collected(), ElementsAre("produced /root/a/b/__VlOst_bbox"));
}

TEST_F(VlProxyFactoryListTest, removesASubtreeThroughItsInterface) {
    apply(leafChange("/root/a/b", bounded(1)));
    collected();
    list.removeSubtree("/root/a");
    apply(leafChange("/root/a/b", bounded(1)));
    EXPECT_THAT(collected(), ElementsAre("produced /root/a/b/__VlOst_bbox"));
}

TEST_F(VlProxyFactoryListTest, anEligibleKnownUnchangedLocationIsLeftAlone) {
    apply(leafChange("/root/a", bounded(1)));
    collected();
    LocationChange change = leafChange("/root/a", bounded(2));
    change.attributesChanged = false;
    apply(change);
    EXPECT_THAT(collected(), IsEmpty());
}

TEST_F(VlProxyFactoryListTest, aLocationThatIsNotKnownIsTakenUpWithoutAChangeOfAttributes) {
    LocationChange change = leafChange("/root/a", bounded(1));
    change.attributesChanged = false;
    apply(change);
    EXPECT_THAT(collected(), ElementsAre("produced /root/a/__VlOst_bbox"));
}

TEST_F(VlProxyFactoryListTest, theDrawOptionHideTakesTheBoxAway) {
    apply(leafChange("/root/a", bounded(1)));
    collected();
    const GroupAttribute hidden = GroupBuilder()
                                      .update(bounded(1))
                                      .set("viewer.default.drawOptions.hide", IntAttribute(1))
                                      .build();
    apply(leafChange("/root/a", hidden));
    EXPECT_THAT(collected(), ElementsAre("removed /root/a/__VlOst_bbox"));
    apply(leafChange("/root/a", bounded(1)));
    EXPECT_THAT(collected(), ElementsAre("produced /root/a/__VlOst_bbox"));
}

TEST_F(VlProxyFactoryListTest, anExpandedLocationLosesItsBoxAndACollapsedOneGetsItAgain) {
    LocationChange change = leafChange("/root/a", bounded(1));
    apply(change);
    collected();
    change.attributesChanged = false;
    change.leaf = false;
    apply(change);
    EXPECT_THAT(collected(), ElementsAre("removed /root/a/__VlOst_bbox"));
    change.leaf = true;
    apply(change);
    EXPECT_THAT(collected(), ElementsAre("produced /root/a/__VlOst_bbox"));
}

TEST_F(VlProxyFactoryListTest, aHiddenLocationLosesItsBox) {
    LocationChange change = leafChange("/root/a", bounded(1));
    apply(change);
    collected();
    change.hidden = true;
    apply(change);
    EXPECT_THAT(collected(), ElementsAre("removed /root/a/__VlOst_bbox"));
    apply(change);
    EXPECT_THAT(collected(), IsEmpty());
}

TEST_F(VlProxyFactoryListTest, whatIsSwitchedOffAsksForNothing) {
    apply(leafChange("/root/a", bounded(1)));
    collected();
    list.setBoundingBoxesEnabled(false);
    EXPECT_THAT(collected(), ElementsAre("removed /root/a/__VlOst_bbox"));
    apply(leafChange("/root/a", bounded(2)));
    apply(leafChange("/root/b", bounded(1)));
    apply(leafChange("/root/a", GroupAttribute::Empty()));
    EXPECT_FALSE(list.hasPendingWork());
    EXPECT_THAT(collected(), IsEmpty());
}

/// A list with an owner whose tree it learns from.
class SwitchedFactories : public DelegateTest {
protected:
    SwitchedFactories() {
        list.createFactories();
        list.initialise();
        list.setOwner(delegate.get());
        cook("/root", GroupAttribute::Empty());
        delegate->locationTree.openLocation("/root");
        tellList();
    }

    void cook(const char* path, const GroupAttribute& attributes) {
        delegate->locationTree.cook(path, attributes, {}, false, std::string(path) != "/root");
    }
    void tellList() {
        std::vector<LocationChange> changes;
        delegate->locationTree.collect(changes);
        list.applyChanges(changes);
    }
    std::vector<std::string> collected() { return linesOf(collect(list)); }

    VlProxyFactoryList list;
};

TEST_F(SwitchedFactories, learnWhatQualifiesWhenTheyAreSwitchedOn) {
    list.setBoundingBoxesEnabled(false);
    cook("/root/c", bounded(1));
    cook("/root/a", bounded(1));
    cook("/root/b", GroupAttribute::Empty());
    tellList();
    EXPECT_FALSE(list.hasPendingWork());
    list.setBoundingBoxesEnabled(true);
    EXPECT_TRUE(list.hasPendingWork());
    EXPECT_THAT(collected(),
                ElementsAre("produced /root/a/__VlOst_bbox", "produced /root/c/__VlOst_bbox"));
}

TEST_F(SwitchedFactories, learnWhatPluginsWereToldOfAndNotWhatIsToCome) {
    cook("/root/a", bounded(1));
    tellList();
    collected();
    list.setBoundingBoxesEnabled(false);
    collected();
    cook("/root/a", GroupAttribute::Empty());
    cook("/root/b", bounded(1));
    list.setBoundingBoxesEnabled(true);
    EXPECT_THAT(collected(), ElementsAre("produced /root/a/__VlOst_bbox"));
    tellList();
    EXPECT_THAT(collected(),
                ElementsAre("removed /root/a/__VlOst_bbox", "produced /root/b/__VlOst_bbox"));
}

TEST_F(SwitchedFactories, forgetQuietlyWhatStopsQualifyingWhileTheyAreOff) {
    cook("/root/a", bounded(1));
    tellList();
    collected();
    list.setBoundingBoxesEnabled(false);
    collected();
    cook("/root/a", GroupAttribute::Empty());
    tellList();
    list.setBoundingBoxesEnabled(true);
    EXPECT_FALSE(list.hasPendingWork());
}

TEST_F(SwitchedFactories, takeAwayAtASecondSwitchOffWhatNeverHadAProduct) {
    list.setBoundingBoxesEnabled(false);
    cook("/root/a", bounded(1));
    tellList();
    list.setBoundingBoxesEnabled(true);
    list.setBoundingBoxesEnabled(false);
    EXPECT_THAT(collected(), ElementsAre("removed /root/a/__VlOst_bbox"));
    EXPECT_THAT(collected(), IsEmpty());
}

TEST_F(SwitchedFactories, areToldOfNoGeneratedLocation) {
    cook("/root/a", bounded(1));
    delegate->locationTree.cook("/root/a/__VlOst_bbox", bounded(1), {}, true, false);
    list.setBoundingBoxesEnabled(false);
    tellList();
    list.setBoundingBoxesEnabled(true);
    EXPECT_THAT(collected(), ElementsAre("produced /root/a/__VlOst_bbox"));
}

TEST_F(SwitchedFactories, heedNeitherHiddenNorExpandedLocations) {
    list.setBoundingBoxesEnabled(false);
    cook("/root/a", bounded(1));
    cook("/root/b", bounded(1));
    delegate->locationTree.cook("/root/c", bounded(1), {}, false, false);
    const char* const hidden[] = {"/root/a"};
    delegate->locationTree.hideLocations(hidden);
    delegate->locationTree.openLocation("/root/c");
    tellList();
    list.setBoundingBoxesEnabled(true);
    EXPECT_THAT(collected(), ElementsAre("produced /root/b/__VlOst_bbox"));
}

TEST_F(VlProxyFactoryListTest, appliesChangesInOrder) {
    const LocationChange changes[] = {
        leafChange("/root/a", bounded(1)), removalOf("/root/a"), leafChange("/root/b", bounded(1)),
        leafChange("/root/a", bounded(2)), leafChange("/root/b", GroupAttribute::Empty())};
    list.applyChanges(changes);
    // "/root/a" was asked for twice, "/root/b" does not qualify any more.
    EXPECT_THAT(collected(),
                ElementsAre("removed /root/b/__VlOst_bbox", "produced /root/a/__VlOst_bbox",
                            "produced /root/a/__VlOst_bbox"));
}

} // namespace
} // namespace ViewerAPI::test
