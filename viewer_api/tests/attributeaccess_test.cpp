#include "support/delegatetest.h"

namespace ViewerAPI::test {
namespace {

using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

constexpr int kViews[] = {kVlViewerDelegatePrimary, kVlViewerDelegateSources,
                          kVlViewerDelegateLookThrough};

/// Reading attributes in the three views.
class AttributeAccess : public DelegateTest {
protected:
    AttributeAccess() {
        populate({{"/root/a", named("primary")}});
        const char* path = "/root/a";
        delegate->activateSourceLocations(&path, 1);
        client(kSourcesClient).report("/root");
        client(kSourcesClient).report("/root/a", named("sources"));
        client(kLookThroughClient).report("/root/a", named("lookThrough"));
        delegate->processLocationEvents();
    }

    void setLive(LiveAttributes& live) {
        live["/root/a"].base = named("base");
        live["/root/a"].overrides["z.nested"] = IntAttribute(1);
        live["/root/a"].overrides["name"] = StringAttribute("live");
    }
};

TEST_F(AttributeAccess, readsEachViewFromItsOwnSource) {
    EXPECT_EQ(textOf(delegate->getAttributes("/root/a", 0)), "{name=\"primary\"}");
    EXPECT_EQ(textOf(delegate->getAttributes("/root/a", 1)), "{name=\"sources\"}");
    EXPECT_EQ(textOf(delegate->getAttributes("/root/a", 2)), "{name=\"lookThrough\"}");
}

TEST_F(AttributeAccess, anUnknownViewOrLocationIsAbsent) {
    for (const int view : {-1, 3, 99}) {
        EXPECT_FALSE(delegate->getAttributes("/root/a", view).isValid()) << view;
        EXPECT_FALSE(delegate->getCookedAttributes("/root/a", view).isValid()) << view;
        EXPECT_FALSE(delegate->getLiveAttributes("/root/a", view).isValid()) << view;
    }
    for (const int view : kViews) {
        EXPECT_FALSE(delegate->getAttributes("/root/unknown", view).isValid()) << view;
    }
}

TEST_F(AttributeAccess, aLocationThatPluginsWereNotToldOfIsAbsent) {
    delegate->locationTree.cook("/root/b", named("b"), {}, false, true);
    EXPECT_FALSE(delegate->getAttributes("/root/b", 0).isValid());
    delegate->flushLocationChanges(true);
    EXPECT_TRUE(delegate->getAttributes("/root/b", 0).isValid());
    delegate->sourceLocationTree.pinLocation("/root/b");
    delegate->sourceLocationTree.cook("/root/b", named("b"));
    EXPECT_FALSE(delegate->getAttributes("/root/b", 1).isValid());
}

TEST_F(AttributeAccess, aLookThroughLocationKnownNotToExistIsAbsent) {
    client(kLookThroughClient).reportGone("/root/a");
    delegate->processLocationEvents();
    EXPECT_FALSE(delegate->getAttributes("/root/a", 2).isValid());
}

TEST_F(AttributeAccess, cookedAttributesAreTheBaseOfALiveEntryElseWhatIsThere) {
    EXPECT_EQ(textOf(delegate->getCookedAttributes("/root/a", 0)), "{name=\"primary\"}");
    EXPECT_EQ(textOf(delegate->getCookedAttributes("/root/a", 2)), "{name=\"lookThrough\"}");
    setLive(delegate->liveValues.liveAttributes);
    EXPECT_EQ(textOf(delegate->getCookedAttributes("/root/a", 0)), "{name=\"base\"}");
    EXPECT_EQ(textOf(delegate->getCookedAttributes("/root/a", 1)), "{name=\"sources\"}");
    EXPECT_EQ(textOf(delegate->getCookedAttributes("/root/a", 2)), "{name=\"lookThrough\"}");
    setLive(delegate->liveValues.lookThroughLiveAttributes);
    EXPECT_EQ(textOf(delegate->getCookedAttributes("/root/a", 2)), "{name=\"base\"}");
}

TEST_F(AttributeAccess, liveAttributesAreTheOverridesByName) {
    for (const int view : kViews) {
        EXPECT_FALSE(delegate->getLiveAttributes("/root/a", view).isValid()) << view;
    }
    setLive(delegate->liveValues.liveAttributes);
    EXPECT_EQ(textOf(delegate->getLiveAttributes("/root/a", 0)), "{name=\"live\" z={nested=1}}");
    EXPECT_FALSE(delegate->getLiveAttributes("/root/a", 2).isValid());
    setLive(delegate->liveValues.lookThroughLiveAttributes);
    EXPECT_TRUE(delegate->getLiveAttributes("/root/a", 2).isValid());
}

TEST_F(AttributeAccess, theSourcesViewNeverHasLiveAttributes) {
    setLive(delegate->liveValues.liveAttributes);
    setLive(delegate->liveValues.lookThroughLiveAttributes);
    EXPECT_FALSE(delegate->getLiveAttributes("/root/a", kVlViewerDelegateSources).isValid());
}

TEST_F(AttributeAccess, descendantsComeInBreadthFirstOrder) {
    populate({{"/root/a/b", named("b")}, {"/root/c", named("c")}});
    EXPECT_EQ(textOf(delegate->getDescendantLocations("/root")),
              "(\"/root/a\" \"/root/c\" \"/root/a/b\")");
    EXPECT_FALSE(delegate->getDescendantLocations("/root/unknown").isValid());
}

} // namespace
} // namespace ViewerAPI::test
