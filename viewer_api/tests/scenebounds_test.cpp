#include "scenebounds.h"

#include "extentcache.h"
#include "support/delegatetest.h"

#include "VlAttribute/FloatAttribute.h"

#include <cfloat>
#include <stdexcept>

namespace ViewerAPI::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VlAttribute::DoubleAttribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

DoubleAttribute box(double low, double high) {
    return DoubleAttribute({low, high, low, high, low, high});
}

class SceneBoundsTest : public DelegateTest {
protected:
    static GroupAttribute withBound(const DoubleAttribute& bound) {
        return GroupAttribute{{"bound", bound}};
    }

    static GroupAttribute placed(double x, const DoubleAttribute& bound) {
        return GroupBuilder()
            .set("xform.interactive.translate", DoubleAttribute({x, 0, 0}))
            .set("bound", bound)
            .build();
    }

    DoubleAttribute merged(const std::vector<const char*>& paths, const char* exclude = "") {
        return delegate->computeMergedExtent(paths.data(), static_cast<std::uint32_t>(paths.size()),
                                             exclude);
    }

    /// Components "A", "B" and "C" under lower-case names.
    void addComponents() {
        delegate->addComponent("A", "a");
        delegate->addComponent("B", "b");
        delegate->addComponent("C", "c");
        log.take();
    }
};

// ---- getBounds

TEST_F(SceneBoundsTest, theAttributeWinsOverThePlugin) {
    populate({{"/root/a", withBound(box(0, 1))}});
    plugin.bounds["/root/a"] = box(0, 2);
    EXPECT_EQ(delegate->getBounds("/root/a"), box(0, 1));
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(SceneBoundsTest, thePluginWinsOverComponents) {
    populate({{"/root/a", named("a")}});
    addComponents();
    plugin.bounds["/root/a"] = box(0, 2);
    componentC.bounds["/root/a"] = box(0, 3);
    EXPECT_EQ(delegate->getBounds("/root/a"), box(0, 2));
    EXPECT_THAT(log.take(), ElementsAre("D getBounds /root/a"));
}

TEST_F(SceneBoundsTest, componentsAreAskedFromLastToFirstUntilOneAnswers) {
    populate({{"/root/a", named("a")}});
    addComponents();
    componentB.bounds["/root/a"] = box(0, 3);
    componentA.bounds["/root/a"] = box(0, 4);
    EXPECT_EQ(delegate->getBounds("/root/a"), box(0, 3));
    EXPECT_THAT(log.take(),
                ElementsAre("D getBounds /root/a", "C getBounds /root/a", "B getBounds /root/a"));
}

TEST_F(SceneBoundsTest, nobodysAnswerIsNone) {
    populate({{"/root/a", named("a")}});
    addComponents();
    EXPECT_FALSE(delegate->getBounds("/root/a").isValid());
    EXPECT_FALSE(delegate->getBounds("/root/unknown").isValid());
}

TEST_F(SceneBoundsTest, onlySixDoublesCount) {
    const std::vector<VlAttribute::Attribute> invalid{
        DoubleAttribute({0, 1, 0, 1, 0}),
        DoubleAttribute({0, 1, 0, 1, 0, 1, 0}),
        FloatAttribute({0, 1, 0, 1, 0, 1}),
        StringAttribute("0 1 0 1 0 1"),
    };
    for (const VlAttribute::Attribute& bound : invalid) {
        start();
        populate({{"/root/a", GroupAttribute{{"bound", bound}}}});
        addComponents();
        plugin.bounds["/root/a"] = bound;
        componentC.bounds["/root/a"] = bound;
        componentB.bounds["/root/a"] = box(0, 3);
        EXPECT_EQ(delegate->getBounds("/root/a"), box(0, 3)) << textOf(bound);
    }
}

TEST_F(SceneBoundsTest, aBoundWithSeveralSamplesCounts) {
    const std::vector<float> times{0.0F, 1.0F};
    const DoubleAttribute moving(times, {{0, 1, 0, 1, 0, 1}, {0, 2, 0, 2, 0, 2}}, 1);
    EXPECT_TRUE(isBounds(moving));
    EXPECT_FALSE(isBounds({}));
}

// ---- pointExtent

GroupAttribute points(const char* name, const std::vector<float>& values, std::int64_t tupleSize) {
    return GroupBuilder()
        .set(std::string("geometry.point.") + name, FloatAttribute(values, tupleSize))
        .build();
}

TEST(PointExtent, isTheBoxAroundThePoints) {
    EXPECT_EQ(pointExtent(points("P", {1, 2, 3, 4, -5, 6, 0.5F, 7, 1}, 3)),
              DoubleAttribute({0.5, 4, -5, 7, 1, 6}));
}

TEST(PointExtent, multipliesByWAndDoesNotDivide) {
    EXPECT_EQ(pointExtent(points("Pw", {1, 2, 3, 2, 4, 4, 4, 0.5F}, 4)),
              DoubleAttribute({2, 2, 2, 4, 2, 6}));
}

TEST(PointExtent, ofACloudBelowZeroReachesTheSmallestPositiveDouble) {
    EXPECT_EQ(pointExtent(points("P", {-1, 1, -3, -2, 2, -4}, 3)),
              DoubleAttribute({-2, DBL_MIN, 1, 2, -4, DBL_MIN}));
}

TEST(PointExtent, ofNoValuesIsTheInvertedBox) {
    EXPECT_EQ(pointExtent(points("P", {}, 3)),
              DoubleAttribute({DBL_MAX, 2.2250738585072014e-308, DBL_MAX, 2.2250738585072014e-308,
                               DBL_MAX, 2.2250738585072014e-308}));
}

TEST(PointExtent, needsWholePoints) {
    EXPECT_FALSE(pointExtent(points("P", {1, 2, 3, 4}, 1)).isValid());
    EXPECT_FALSE(pointExtent(points("Pw", {1, 2, 3}, 1)).isValid());
}

TEST(PointExtent, isOfPwWherePGivesNone) {
    const auto both = [](const VlAttribute::Attribute& p) {
        return GroupBuilder()
            .set("geometry.point.P", p)
            .set("geometry.point.Pw", FloatAttribute({1, 1, 1, 2}, 4))
            .build();
    };
    const DoubleAttribute ofPw({2, 2, 2, 2, 2, 2});
    EXPECT_EQ(pointExtent(both(FloatAttribute({1, 2}, 1))), ofPw);
    EXPECT_EQ(pointExtent(both(IntAttribute({1, 2, 3}, 3))), ofPw);
    EXPECT_EQ(pointExtent(both(FloatAttribute({5, 5, 5}, 3))), DoubleAttribute({5, 5, 5, 5, 5, 5}));
}

TEST(PointExtent, ofAnEmptyPIsTheInvertedBoxAndNotThatOfPw) {
    const GroupAttribute both = GroupBuilder()
                                    .set("geometry.point.P", FloatAttribute({}, 3))
                                    .set("geometry.point.Pw", FloatAttribute({1, 1, 1, 2}, 4))
                                    .build();
    EXPECT_EQ(pointExtent(both),
              DoubleAttribute({DBL_MAX, DBL_MIN, DBL_MAX, DBL_MIN, DBL_MAX, DBL_MIN}));
}

TEST(PointExtent, readsTheSampleNearestToTimeZero) {
    const std::vector<float> times{-3.0F, 1.0F};
    const GroupAttribute moving =
        GroupBuilder()
            .set("geometry.point.P", FloatAttribute(times, {{9, 9, 9}, {1, 2, 3}}, 3))
            .build();
    EXPECT_EQ(pointExtent(moving), DoubleAttribute({1, 1, 2, 2, 3, 3}));
}

TEST(PointExtent, withoutPointsIsNone) {
    EXPECT_FALSE(pointExtent({}).isValid());
    EXPECT_FALSE(pointExtent(GroupAttribute::Empty()).isValid());
    EXPECT_FALSE(
        pointExtent(GroupBuilder().set("geometry.point.N", IntAttribute(1)).build()).isValid());
}

// ---- computeExtent

TEST_F(SceneBoundsTest, anExtentMergesPointsPluginAndComponentsFromLastToFirst) {
    populate({{"/root/a", points("P", {0, 0, 0, 1, 1, 1}, 3)}});
    addComponents();
    plugin.extents["/root/a"] = DoubleAttribute({-2, 0, 0, 0, 0, 0});
    componentC.extents["/root/a"] = DoubleAttribute({0, 0, 0, 5, 0, 0});
    componentA.extents["/root/a"] = DoubleAttribute({0, 0, 0, 0, -7, 0});
    EXPECT_EQ(delegate->computeExtent("/root/a"), DoubleAttribute({-2, 1, 0, 5, -7, 1}));
    EXPECT_THAT(log.take(), ElementsAre("D computeExtent /root/a", "C computeExtent /root/a",
                                        "B computeExtent /root/a", "A computeExtent /root/a"));
}

TEST_F(SceneBoundsTest, anExtentPassesOverWhatIsNoBox) {
    populate({{"/root/a", named("a")}});
    addComponents();
    plugin.extents["/root/a"] = FloatAttribute({0, 1, 0, 1, 0, 1});
    componentB.extents["/root/a"] = box(3, 4);
    EXPECT_EQ(delegate->computeExtent("/root/a"), box(3, 4));
    EXPECT_FALSE(delegate->computeExtent("/root/unknown").isValid());
}

// ---- computeMergedExtent

TEST_F(SceneBoundsTest, theMergedExtentOfNothingIsNone) {
    populate({{"/root/a", withBound(box(0, 1))}});
    EXPECT_FALSE(delegate->computeMergedExtent(nullptr, 0, "").isValid());
    EXPECT_FALSE(merged({"/root/unknown"}).isValid());
    EXPECT_FALSE(merged({nullptr}).isValid());
}

TEST_F(SceneBoundsTest, boundsAreTakenToWorldSpaceAndMerged) {
    populate({{"/root/a", placed(10, box(0, 1))}, {"/root/b", placed(-10, box(0, 1))}});
    EXPECT_EQ(merged({"/root/a"}), DoubleAttribute({10, 11, 0, 1, 0, 1}));
    EXPECT_EQ(merged({"/root/a", "/root/b"}), DoubleAttribute({-10, 11, 0, 1, 0, 1}));
    EXPECT_EQ(merged({"/root"}), DoubleAttribute({-10, 11, 0, 1, 0, 1}));
}

TEST_F(SceneBoundsTest, aLocationWithBoundsStandsForWhatIsBelow) {
    populate({{"/root/a", placed(1, box(0, 1))}, {"/root/a/b", placed(100, box(0, 1))}});
    log.take();
    EXPECT_EQ(merged({"/root"}), DoubleAttribute({1, 2, 0, 1, 0, 1}));
    EXPECT_THAT(log.take("getBounds"), ElementsAre("D getBounds /root"));
}

TEST_F(SceneBoundsTest, aLocationWithAnExtentIsWalkedOn) {
    populate(
        {{"/root/a", points("P", {0, 0, 0, 1, 1, 1}, 3)}, {"/root/a/b", placed(5, box(0, 1))}});
    EXPECT_EQ(merged({"/root/a"}), DoubleAttribute({0, 6, 0, 1, 0, 1}));
}

TEST_F(SceneBoundsTest, anAbsoluteTransformEndsTheChain) {
    populate(
        {{"/root/a", GroupBuilder().set("xform.g.translate", DoubleAttribute({1, 0, 0})).build()},
         {"/root/a/b", GroupBuilder()
                           .set("xform.g.reset", DoubleAttribute(1))
                           .set("xform.g.translate", DoubleAttribute({7, 0, 0}))
                           .set("bound", box(0, 1))
                           .build()},
         {"/root/a/b/c", placed(2, box(0, 1))}});
    EXPECT_EQ(merged({"/root/a"}), DoubleAttribute({7, 8, 0, 1, 0, 1}));
    EXPECT_EQ(merged({"/root/a/b/c"}), DoubleAttribute({9, 10, 0, 1, 0, 1}));
}

TEST_F(SceneBoundsTest, emptyPointsAddNoBoxWhateverTheirTransform) {
    const GroupAttribute empty = GroupBuilder()
                                     .set("xform.g.rotate", DoubleAttribute({30, 1, 2, 3}))
                                     .set("xform.g.scale", DoubleAttribute({100, 100, 100}))
                                     .set("geometry.point.P", FloatAttribute({}, 3))
                                     .build();
    populate({{"/root/a", empty}, {"/root/b", placed(3, box(1, 2))}, {"/root/c", empty}});
    EXPECT_EQ(merged({"/root"}), DoubleAttribute({4, 5, 1, 2, 1, 2}));
    EXPECT_EQ(merged({"/root/a"}),
              DoubleAttribute({DBL_MAX, DBL_MIN, DBL_MAX, DBL_MIN, DBL_MAX, DBL_MIN}));
}

TEST_F(SceneBoundsTest, theExcludedLocationIsLeftOutWithAllBelow) {
    populate({{"/root/a", named("a")},
              {"/root/a/x", placed(50, box(0, 1))},
              {"/root/b", placed(1, box(0, 1))}});
    EXPECT_EQ(merged({"/root"}, "/root/a"), DoubleAttribute({1, 2, 0, 1, 0, 1}));
    EXPECT_FALSE(merged({"/root/a"}, "/root/a").isValid());
    EXPECT_EQ(merged({"/root/a/x"}, "/root/a"), DoubleAttribute({50, 51, 0, 1, 0, 1}));
}

TEST_F(SceneBoundsTest, hiddenLocationsAreLeftOut) {
    populate({{"/root/a", named("a")},
              {"/root/a/x", placed(50, box(0, 1))},
              {"/root/b", placed(1, box(0, 1))}});
    const char* path = "/root/a";
    delegate->hideLocations(&path, 1);
    delegate->flushLocationChanges(true);
    EXPECT_EQ(merged({"/root"}), DoubleAttribute({1, 2, 0, 1, 0, 1}));
    EXPECT_FALSE(merged({"/root/a"}).isValid());
    EXPECT_FALSE(merged({"/root/a/x"}).isValid());
}

TEST_F(SceneBoundsTest, locationsThatPluginsWereNotToldOfAreLeftOut) {
    populate({{"/root/a", placed(1, box(0, 1))}});
    delegate->locationTree.cook("/root/b", placed(50, box(0, 1)), {}, false, true);
    EXPECT_EQ(merged({"/root", "/root/b"}), DoubleAttribute({1, 2, 0, 1, 0, 1}));
    delegate->flushLocationChanges(true);
    EXPECT_EQ(merged({"/root"}), DoubleAttribute({1, 51, 0, 1, 0, 1}));
}

TEST_F(SceneBoundsTest, everyLocationIsAskedOnce) {
    populate({{"/root/a", named("a")}, {"/root/a/b", named("b")}});
    static_cast<void>(merged({"/root/a", "/root", "/root/a/b", "/root/a"}));
    const Lines asked = log.take("getBounds");
    EXPECT_EQ(asked.size(), 3U) << testing::PrintToString(asked);
}

TEST_F(SceneBoundsTest, theWalkGoesFromTheLastLocationToTheFirst) {
    populate({{"/root/a", named("a")},
              {"/root/a/x", named("x")},
              {"/root/a/y", named("y")},
              {"/root/b", named("b")}});
    static_cast<void>(merged({"/root/a", "/root/b"}));
    EXPECT_THAT(log.take("getBounds"),
                ElementsAre("D getBounds /root/b", "D getBounds /root/a", "D getBounds /root/a/y",
                            "D getBounds /root/a/x"));
}

TEST_F(SceneBoundsTest, aLocationAskedForBelowOneWithBoundsTakesPart) {
    populate({{"/root/a", placed(1, box(0, 1))}, {"/root/a/b", placed(100, box(0, 1))}});
    const DoubleAttribute both({1, 102, 0, 1, 0, 1});
    EXPECT_EQ(merged({"/root/a", "/root/a/b"}), both);
    EXPECT_EQ(merged({"/root/a/b", "/root/a"}), both);
}

TEST_F(SceneBoundsTest, withoutATransformTheBoxStaysAsItIs) {
    // Neither survives a transform by the identity unrounded.
    const DoubleAttribute bound({0.1, 0.7, 1e-20, 1, 0.1, 0.3});
    populate({{"/root/a", withBound(bound)}});
    EXPECT_EQ(merged({"/root"}), bound);
}

TEST_F(SceneBoundsTest, aMovingBoundMakesAMovingExtent) {
    const std::vector<float> times{0.0F, 1.0F};
    const DoubleAttribute moving(times, {{0, 1, 0, 1, 0, 1}, {0, 2, 0, 2, 0, 2}}, 1);
    populate({{"/root/a", placed(10, moving)}, {"/root/b", placed(5, box(0, 1))}});
    EXPECT_EQ(merged({"/root"}),
              DoubleAttribute(times, {{5, 11, 0, 1, 0, 1}, {5, 12, 0, 2, 0, 2}}, 1));
}

TEST_F(SceneBoundsTest, generatedLocationsTakePart) {
    populate({{"/root/a", named("a")}});
    delegate->locationTree.cook("/root/a/proxy", placed(3, box(0, 1)), {}, true, false);
    delegate->flushLocationChanges(true);
    EXPECT_EQ(merged({"/root"}), DoubleAttribute({3, 4, 0, 1, 0, 1}));
}

TEST_F(SceneBoundsTest, aFlushFromAPluginWaitsUntilTheWalkIsOver) {
    populate({{"/root/a", named("a")}, {"/root/b", placed(1, box(0, 1))}});
    plugin.onCall = [this](std::string_view entry, std::string_view path) {
        if (entry == "getBounds" && path == "/root/a") {
            for (const char* gone : {"/root/a", "/root/b"}) {
                delegate->locationTree.deleteLocation(gone);
            }
            delegate->flushLocationChanges(true);
            EXPECT_NE(delegate->locationTree.find("/root/a"), nullptr);
        }
    };
    log.take();
    static_cast<void>(merged({"/root/a", "/root/b"}));
    EXPECT_EQ(delegate->locationTree.find("/root/a"), nullptr);
    EXPECT_EQ(log.take("locationEvent").size(), 2U);
}

TEST_F(SceneBoundsTest, aFlushThatWaitsIsDoneAlsoWhenAPluginThrows) {
    populate({{"/root/a", named("a")}});
    plugin.onCall = [this](std::string_view entry, std::string_view) {
        if (entry == "getBounds") {
            delegate->locationTree.deleteLocation("/root/a");
            delegate->flushLocationChanges(true);
            throw std::runtime_error("getBounds");
        }
    };
    log.take();
    EXPECT_THROW(static_cast<void>(merged({"/root/a"})), std::runtime_error);
    EXPECT_EQ(log.take("locationEvent").size(), 1U);
}

// ---- What is kept for the next question

class KeptExtents : public SceneBoundsTest {
protected:
    static constexpr int kLeaves = 10;

    /// "/root/a" and "/root/b", each with ten leaves that have bounds.
    KeptExtents() {
        std::vector<std::pair<std::string, GroupAttribute>> locations;
        for (const std::string group : {"/root/a", "/root/b"}) {
            locations.emplace_back(group, GroupAttribute::Empty());
            for (int leaf = 0; leaf < kLeaves; ++leaf) {
                locations.emplace_back(group + "/" + std::to_string(leaf), placed(leaf, box(0, 1)));
            }
        }
        populate(locations);
    }

    /// The locations beside which something is kept.
    Lines kept() {
        Lines paths;
        for (const std::string group : {"/root", "/root/a", "/root/b"}) {
            if (delegate->locationTree.find(group)->extents) {
                paths.push_back(group);
            }
            for (int leaf = 0; leaf < kLeaves; ++leaf) {
                const LocationNode* const node =
                    delegate->locationTree.find(group + "/" + std::to_string(leaf));
                if (node && node->extents) {
                    paths.push_back(node->path.str());
                }
            }
        }
        return paths;
    }

    void cook(const char* path, const GroupAttribute& attributes) {
        client(kPrimaryClient).report(path, attributes, {"x"});
        delegate->processLocationEvents();
    }
};

TEST_F(KeptExtents, nothingIsKeptBeforeTheFirstQuestion) {
    EXPECT_THAT(kept(), IsEmpty());
    EXPECT_EQ(merged({"/root/a"}), DoubleAttribute({0, 10, 0, 1, 0, 1}));
    EXPECT_THAT(kept(), ElementsAre("/root/a"));
    EXPECT_EQ(merged({"/root"}), DoubleAttribute({0, 10, 0, 1, 0, 1}));
    EXPECT_THAT(kept(), ElementsAre("/root/a", "/root/b"));
}

TEST_F(KeptExtents, anEditDropsWhatDependsOnItAndNothingElse) {
    static_cast<void>(merged({"/root"}));
    cook("/root/a/3", placed(50, box(0, 1)));
    EXPECT_THAT(kept(), ElementsAre("/root/b"));
    EXPECT_EQ(merged({"/root"}), DoubleAttribute({0, 51, 0, 1, 0, 1}));
    EXPECT_THAT(kept(), ElementsAre("/root/a", "/root/b"));
}

TEST_F(KeptExtents, aMatrixAboveIsHeeded) {
    static_cast<void>(merged({"/root"}));
    const GroupAttribute moved =
        GroupBuilder().set("xform.g.translate", DoubleAttribute({100, 0, 0})).build();
    cook("/root", moved);
    EXPECT_EQ(merged({"/root"}), DoubleAttribute({100, 110, 0, 1, 0, 1}));
    EXPECT_EQ(merged({"/root/b"}), DoubleAttribute({100, 110, 0, 1, 0, 1}));
}

TEST_F(KeptExtents, whatIsHiddenOrGoesIsHeededAtOnce) {
    static_cast<void>(merged({"/root"}));
    const char* const last = "/root/a/9";
    delegate->hideLocations(&last, 1);
    EXPECT_EQ(merged({"/root/a"}), DoubleAttribute({0, 9, 0, 1, 0, 1}));
    client(kPrimaryClient).reportGone("/root/a/8");
    delegate->processLocationEvents();
    EXPECT_EQ(merged({"/root/a"}), DoubleAttribute({0, 8, 0, 1, 0, 1}));
    delegate->unhideAllLocations();
    EXPECT_EQ(merged({"/root/a"}), DoubleAttribute({0, 10, 0, 1, 0, 1}));
}

TEST_F(KeptExtents, whatIsShownAgainIsHeededWhenItIsFlushed) {
    const char* const group = "/root/a";
    delegate->hideLocations(&group, 1);
    delegate->processLocationEvents();
    EXPECT_FALSE(merged({"/root/a"}).isValid());
    delegate->unhideAllLocations();
    // Only the location itself is shown by now.
    EXPECT_FALSE(merged({"/root/a"}).isValid());
    delegate->processLocationEvents();
    EXPECT_EQ(merged({"/root/a"}), DoubleAttribute({0, 10, 0, 1, 0, 1}));
}

TEST_F(KeptExtents, anExcludedLocationIsLeftOutOfNoLaterAnswer) {
    const DoubleAttribute whole({0, 10, 0, 1, 0, 1});
    EXPECT_EQ(merged({"/root"}), whole);
    EXPECT_EQ(merged({"/root/a"}, "/root/a/9"), DoubleAttribute({0, 9, 0, 1, 0, 1}));
    EXPECT_EQ(merged({"/root/a"}), whole);
}

TEST_F(KeptExtents, plugInsAreAskedEachTimeOfLocationsWithoutABound) {
    const auto question = [this] {
        log.take();
        static_cast<void>(merged({"/root"}));
        return log.take();
    };
    const Lines first = question();
    EXPECT_EQ(first.size(), 6U) << testing::PrintToString(first);
    EXPECT_EQ(question(), first);
    plugin.extents["/root/b"] = box(-3, 0);
    EXPECT_EQ(merged({"/root"}), DoubleAttribute({-3, 10, -3, 1, -3, 1}));
}

TEST_F(KeptExtents, theExtentOfManyPointsIsKeptUntilTheyChange) {
    std::vector<float> values(600, 2.0F);
    cook("/root/a", points("P", values, 3));
    EXPECT_EQ(merged({"/root/a"}), DoubleAttribute({0, 10, 0, 2, 0, 2}));
    EXPECT_EQ(delegate->locationTree.find("/root/a")->extents->pointExtent,
              DoubleAttribute({2, 2, 2, 2, 2, 2}));
    values.assign(600, -2.0F);
    cook("/root/a", points("P", values, 3));
    EXPECT_EQ(merged({"/root/a"}), DoubleAttribute({-2, 10, -2, 1, -2, 1}));
}

} // namespace
} // namespace ViewerAPI::test
