#include "scenebounds.h"

#include "support/delegatetest.h"
#include "support/plainscene.h"

#include "VlAttribute/FloatAttribute.h"

#include <ImathBox.h>
#include <ImathBoxAlgo.h>

#include <algorithm>
#include <cfloat>
#include <iterator>
#include <random>
#include <set>
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
            for (const char* gone : {"/root/a", "/root/b"})
                delegate->locationTree.deleteLocation(gone);
            delegate->flushLocationChanges(true);
            EXPECT_NE(delegate->locationTree.find("/root/a"), nullptr);
        }
    };
    log.take();
    static_cast<void>(merged({"/root/a", "/root/b"}));
    EXPECT_EQ(delegate->locationTree.find("/root/a"), nullptr);
    EXPECT_EQ(log.take("locationEvent").size(), 2U);
}

TEST_F(SceneBoundsTest, aPluginThatThrowsEndsTheWalkAndLaterFlushesWork) {
    populate({{"/root/a", named("a")}});
    plugin.onCall = [this](std::string_view entry, std::string_view) {
        if (entry == "getBounds") {
            delegate->locationTree.deleteLocation("/root/a");
            delegate->flushLocationChanges(true);
            throw std::runtime_error("getBounds");
        }
    };
    EXPECT_THROW(static_cast<void>(merged({"/root/a"})), std::runtime_error);
    log.take();
    delegate->flushLocationChanges(true);
    EXPECT_EQ(log.take("locationEvent").size(), 1U);
}

// ---- Against a plain evaluation

struct PlainLocation {
    std::string path;
    PlainXform xform;
    bool hasBound = false;
    bool hasPoints = false;
    bool isHidden = false;
    std::vector<PlainLocation> children;
};

void grow(PlainLocation& location, std::mt19937& random, int depth) {
    const auto chance = [&](double probability) {
        return std::bernoulli_distribution(probability)(random);
    };
    location.xform = randomXform(random, true);
    location.hasBound = depth > 1 && chance(0.25);
    location.hasPoints = chance(0.4);
    location.isHidden = depth > 0 && chance(0.15);
    const int count = depth < 4 ? std::uniform_int_distribution<int>(0, 3)(random) : 0;
    for (int child = 0; child < count; ++child) {
        location.children.push_back(
            {location.path + "/n" + std::to_string(child), {}, {}, {}, {}, {}});
        grow(location.children.back(), random, depth + 1);
    }
}

const Imath::Box3d kBound({-1, -2, -3}, {1, 2, 3});
const Imath::Box3d kPoints({0, 0, 0}, {2, 1, 1});

struct PlainExtent {
    std::set<std::string> starts;
    std::string excluded;
    Imath::Box3d box;

    void add(const PlainLocation& location, const Imath::M44d& parent, bool isInside) {
        const PlainMatrix local = evaluate(location.xform);
        const Imath::M44d world = local.isAbsolute ? local.matrix : local.matrix * parent;
        if (location.isHidden)
            return;
        isInside = (isInside || starts.contains(location.path)) && location.path != excluded;
        if (isInside && location.hasBound)
            box.extendBy(Imath::transform(kBound, world));
        else if (isInside && location.hasPoints)
            box.extendBy(Imath::transform(kPoints, world));
        for (const PlainLocation& child : location.children)
            add(child, world, isInside && !location.hasBound);
    }
};

TEST_F(SceneBoundsTest, theMergedExtentEqualsAPlainEvaluationOfRandomScenes) {
    int extents = 0;
    for (unsigned seed = 1; seed <= 150; ++seed) {
        std::mt19937 random(seed);
        PlainLocation root{"/root", {}, {}, {}, {}, {}};
        grow(root, random, 0);
        start();
        std::vector<std::string> paths;
        std::vector<const char*> hidden;
        const std::function<void(const PlainLocation&)> report =
            [&](const PlainLocation& location) {
                GroupBuilder attributes;
                attributes.set("xform", toAttribute(location.xform));
                if (location.hasBound)
                    attributes.set("bound", DoubleAttribute({-1, 1, -2, 2, -3, 3}));
                if (location.hasPoints)
                    attributes.set("geometry.point.P", FloatAttribute({0, 0, 0, 2, 1, 1}, 3));
                client(kPrimaryClient).report(location.path, attributes.build(), {"x"});
                paths.push_back(location.path);
                if (location.isHidden)
                    hidden.push_back(location.path.c_str());
                for (const PlainLocation& child : location.children)
                    report(child);
            };
        report(root);
        std::vector<const char*> open;
        for (const std::string& path : paths)
            open.push_back(path.c_str());
        delegate->openLocations(open.data(), static_cast<std::uint32_t>(open.size()));
        delegate->hideLocations(hidden.data(), static_cast<std::uint32_t>(hidden.size()));
        delegate->processLocationEvents();

        const auto pick = [&] {
            return paths[std::uniform_int_distribution<std::size_t>(0, paths.size() - 1)(random)];
        };
        std::vector<std::string> starts{"/root"};
        if (seed % 3 != 0)
            std::generate_n(starts.begin(), 1, pick);
        if (seed % 3 == 2)
            std::generate_n(std::back_inserter(starts), 4, pick);
        PlainExtent expected{{starts.begin(), starts.end()}, seed % 2 == 0 ? pick() : "", {}};
        expected.add(root, Imath::M44d(), false);
        std::vector<const char*> from;
        for (const std::string& path : starts)
            from.push_back(path.c_str());
        const DoubleAttribute actual = merged(from, expected.excluded.c_str());
        SCOPED_TRACE("seed " + std::to_string(seed) + " from " + testing::PrintToString(starts) +
                     " without " + expected.excluded);
        ASSERT_EQ(actual.isValid(), !expected.box.isEmpty());
        if (!actual.isValid())
            continue;
        ++extents;
        const auto values = actual.getNearestSample(0.0F);
        for (unsigned axis = 0; axis < 3; ++axis) {
            // A product of some ten matrices; values stay below some thousands.
            EXPECT_NEAR(values[axis * 2], expected.box.min[axis], 1e-8);
            EXPECT_NEAR(values[axis * 2 + 1], expected.box.max[axis], 1e-8);
        }
    }
    EXPECT_GT(extents, 75);
}

} // namespace
} // namespace ViewerAPI::test
