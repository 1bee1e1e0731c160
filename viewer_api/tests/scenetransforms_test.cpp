#include "scenetransforms.h"

#include "support/delegatetest.h"
#include "support/plainxform.h"

namespace ViewerAPI::test {
namespace {

using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;

class SceneTransformsTest : public DelegateTest {
protected:
    /// Brings one chain of locations to all three views.
    void populateViews(const std::vector<std::pair<std::string, GroupAttribute>>& chain) {
        const char* root = "/root";
        delegate->activateSourceLocations(&root, 1);
        std::vector<const char*> open;
        for (const auto& [path, attributes] : chain) {
            open.push_back(path.c_str());
            for (const int number : {kPrimaryClient, kSourcesClient, kLookThroughClient}) {
                client(number).report(path, attributes, {"x"});
            }
        }
        delegate->openLocations(open.data(), static_cast<std::uint32_t>(open.size()));
        delegate->processLocationEvents();
    }

    static GroupAttribute withXform(const PlainXform& xform) {
        return GroupBuilder().set("xform", toAttribute(xform)).build();
    }

    static GroupAttribute translated(double x, double y, double z) {
        return withXform({{"interactive", {{"translate", {x, y, z}}}}});
    }

    DoubleAttribute local(const std::string& path, int view, bool* isAbsolute = nullptr) {
        bool absolute = true;
        DoubleAttribute matrix = delegate->getLocalXform(path, absolute, view);
        if (isAbsolute) {
            *isAbsolute = absolute;
        }
        return matrix;
    }
};

constexpr int kViews[] = {kVlViewerDelegatePrimary, kVlViewerDelegateSources,
                          kVlViewerDelegateLookThrough};
const char* const kIdentity = "(1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1)";

TEST_F(SceneTransformsTest, worldIsLocalTimesParent) {
    populateViews({{"/root", translated(1, 0, 0)}, {"/root/a", translated(0, 2, 0)}});
    for (const int view : kViews) {
        EXPECT_EQ(textOf(local("/root/a", view)), "(1 0 0 0 0 1 0 0 0 0 1 0 0 2 0 1)") << view;
        EXPECT_EQ(textOf(delegate->getWorldXform("/root/a", view)),
                  "(1 0 0 0 0 1 0 0 0 0 1 0 1 2 0 1)")
            << view;
        EXPECT_EQ(textOf(delegate->getParentXform("/root/a", view)),
                  "(1 0 0 0 0 1 0 0 0 0 1 0 1 0 0 1)")
            << view;
    }
}

TEST_F(SceneTransformsTest, theRootsParentTransformIsTheIdentity) {
    populateViews({{"/root", translated(1, 0, 0)}});
    for (const int view : kViews) {
        EXPECT_EQ(textOf(delegate->getParentXform("/root", view)), kIdentity) << view;
    }
}

TEST_F(SceneTransformsTest, anUnknownViewYieldsNothing) {
    populateViews({{"/root", translated(1, 0, 0)}});
    for (const int view : {-1, 3}) {
        bool isAbsolute = true;
        EXPECT_FALSE(local("/root", view, &isAbsolute).isValid());
        EXPECT_FALSE(isAbsolute);
        EXPECT_FALSE(delegate->getWorldXform("/root", view).isValid());
        EXPECT_FALSE(delegate->getParentXform("/root", view).isValid());
        EXPECT_FALSE(
            delegate
                ->getPartialXform("/root", "interactive", "translate", true, view, true, true, true)
                .isValid());
    }
}

TEST_F(SceneTransformsTest, anUnknownLocationYieldsNothingInTheTrees) {
    populateViews({{"/root", translated(1, 0, 0)}});
    for (const int view : {kVlViewerDelegatePrimary, kVlViewerDelegateSources}) {
        bool isAbsolute = true;
        EXPECT_FALSE(local("/root/unknown", view, &isAbsolute).isValid());
        EXPECT_FALSE(isAbsolute);
        EXPECT_FALSE(delegate->getWorldXform("/root/unknown", view).isValid());
        EXPECT_FALSE(delegate->getParentXform("/root/unknown", view).isValid());
    }
}

TEST_F(SceneTransformsTest, theLookThroughViewHasTheIdentityWhereNothingIsKnown) {
    client(kLookThroughClient).report("/root/a", named("a"));
    delegate->processLocationEvents();
    for (const char* path : {"/root/a", "/root/unknown"}) {
        EXPECT_EQ(textOf(local(path, kVlViewerDelegateLookThrough)), kIdentity) << path;
        EXPECT_EQ(textOf(delegate->getWorldXform(path, kVlViewerDelegateLookThrough)), kIdentity)
            << path;
    }
}

TEST_F(SceneTransformsTest, anAbsoluteTransformDoesNotInherit) {
    populateViews(
        {{"/root", translated(1, 0, 0)},
         {"/root/a", withXform({{"a", {{"translate", {0, 0, 9}}}},
                                {"b", {{"resetXform", {1}}, {"translate", {0, 2, 0}}}}})}});
    for (const int view : kViews) {
        bool isAbsolute = false;
        EXPECT_EQ(textOf(local("/root/a", view, &isAbsolute)), "(1 0 0 0 0 1 0 0 0 0 1 0 0 2 0 1)");
        // The look-through view tells the matrix alone.
        EXPECT_EQ(isAbsolute, view != kVlViewerDelegateLookThrough) << view;
        EXPECT_EQ(textOf(delegate->getWorldXform("/root/a", view)),
                  "(1 0 0 0 0 1 0 0 0 0 1 0 0 2 0 1)")
            << view;
    }
}

TEST_F(SceneTransformsTest, theLookThroughViewPassesOverLocationsWithoutAttributesOrXform) {
    client(kLookThroughClient).report("/root", translated(1, 0, 0));
    client(kLookThroughClient).report("/root/b", named("b"));
    client(kLookThroughClient).report("/root/b/c/d", translated(0, 0, 3));
    delegate->processLocationEvents();
    EXPECT_EQ(textOf(delegate->getWorldXform("/root/b/c/d", kVlViewerDelegateLookThrough)),
              "(1 0 0 0 0 1 0 0 0 0 1 0 1 0 3 1)");
}

TEST_F(SceneTransformsTest, theLookThroughViewKeepsTheOrderOfMoreThanTenAncestors) {
    std::string path;
    PlainXform chain;
    for (int depth = 0; depth < 13; ++depth) {
        path += depth == 0 ? "/root" : "/n" + std::to_string(depth);
        const double scale = depth % 2 == 0 ? 2 : 3;
        chain.push_back({"g", {{"translate", {1, 0, 0}}, {"scale", {scale, 1, 1}}}});
        client(kLookThroughClient).report(path, withXform({chain.back()}));
    }
    delegate->processLocationEvents();
    EXPECT_EQ(complaint(evaluateAtExistingTimes(chain),
                        delegate->getWorldXform(path, kVlViewerDelegateLookThrough)),
              "");
}

// ---- Parts of a transform

/// Every component is a translation along x of another decimal place, so that the sum tells which
/// took part.
const PlainXform kPlaces{{"before", {{"translate", {1, 0, 0}}}},
                         {"group",
                          {{"translateA", {10, 0, 0}},
                           {"translateB1", {100, 0, 0}},
                           {"translateB2", {1000, 0, 0}},
                           {"translateC", {10000, 0, 0}},
                           {"translateB3", {100000, 0, 0}}}},
                         {"after", {{"translate", {1000000, 0, 0}}}},
                         {"empty", {}}};

struct PartRow {
    const char* name;
    const char* groupName;
    const char* componentName;
    bool includeComponent;
    bool includeParent;
    bool includeBefore;
    bool includeAfter;
    double expected; ///< -1: none
};

std::ostream& operator<<(std::ostream& out, const PartRow& row) {
    return out << row.name;
}

class PartialTransforms : public SceneTransformsTest,
                          public testing::WithParamInterface<PartRow> {};

TEST_P(PartialTransforms, takeInWhatTheyAreToldTo) {
    populateViews({{"/root", translated(0.5, 0, 0)}, {"/root/a", withXform(kPlaces)}});
    const PartRow& row = GetParam();
    for (const int view : kViews) {
        const DoubleAttribute matrix = delegate->getPartialXform(
            "/root/a", row.groupName, row.componentName, row.includeComponent, view,
            row.includeParent, row.includeBefore, row.includeAfter);
        ASSERT_EQ(matrix.isValid(), row.expected >= 0) << view;
        if (matrix.isValid()) {
            EXPECT_EQ(matrix.getNearestSample(0.0F)[12], row.expected) << view;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, PartialTransforms,
    testing::Values(
        PartRow{"withComponent", "group", "translateB1", true, false, false, false, 110},
        PartRow{"withoutComponent", "group", "translateB1", false, false, false, false, 10},
        PartRow{"aQuestionMarkMatchesARunOfNeighbours", "group", "translateB?", true, false, false,
                false, 1110},
        PartRow{"aNameAloneIsAPrefixToo", "group", "translateB", true, false, false, false, 1110},
        PartRow{"aRunLeftOut", "group", "translateB?", false, false, false, false, 10},
        PartRow{"theFirstLeftOutLeavesNothing", "group", "translateA", false, false, false, false,
                0},
        PartRow{"theWholeGroupByPrefix", "group", "translate?", true, false, false, false, 111110},
        PartRow{"aLoneQuestionMarkMatchesAll", "group", "?", true, false, false, false, 111110},
        PartRow{"anEmptyNameMatchesAll", "group", "", true, false, false, false, 111110},
        PartRow{"groupsBefore", "group", "translateA", true, false, true, false, 11},
        PartRow{"groupsAfter", "group", "translateA", true, false, false, true, 1000010},
        PartRow{"groupsOnBothSides", "group", "translateA", true, false, true, true, 1000011},
        PartRow{"withTheParent", "group", "translateA", true, true, false, false, 10.5},
        PartRow{"firstGroup", "before", "translate", true, false, true, false, 1},
        PartRow{"unknownComponent", "group", "scale", true, false, true, true, -1},
        PartRow{"longerThanAnyComponent", "group", "translateB12", true, false, true, true, -1},
        PartRow{"unknownGroup", "other", "translate", true, false, true, true, -1},
        PartRow{"groupWithoutComponents", "empty", "", true, false, true, true, -1}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(SceneTransformsTest, anAbsolutePartIgnoresTheParent) {
    populateViews(
        {{"/root", translated(5, 0, 0)},
         {"/root/a", withXform({{"group", {{"reset", {1}}, {"translate", {2, 0, 0}}}}})}});
    for (const int view : kViews) {
        const DoubleAttribute matrix = delegate->getPartialXform("/root/a", "group", "translate",
                                                                 true, view, true, true, true);
        EXPECT_EQ(textOf(matrix), "(1 0 0 0 0 1 0 0 0 0 1 0 2 0 0 1)") << view;
    }
}

TEST_F(SceneTransformsTest, groupsBehindThePartStandInFrontOfItInTheProduct) {
    // The part is put together behind all the others: here "after" scales the part.
    populateViews({{"/root", named("root")},
                   {"/root/a", withXform({{"before", {{"translate", {1, 0, 0}}}},
                                          {"group", {{"translate", {10, 0, 0}}}},
                                          {"after", {{"scale", {2, 1, 1}}}}})}});
    for (const int view : kViews) {
        const DoubleAttribute matrix = delegate->getPartialXform("/root/a", "group", "translate",
                                                                 true, view, false, true, true);
        EXPECT_EQ(textOf(matrix), "(2 0 0 0 0 1 0 0 0 0 1 0 21 0 0 1)") << view;
    }
}

TEST_F(SceneTransformsTest, aGroupNamedXformTakesThePartIn) {
    // The part is put together under "xform", which here comes before the group "after".
    populateViews({{"/root", named("root")},
                   {"/root/a", withXform({{"group", {{"translate", {10, 0, 0}}}},
                                          {"xform", {{"translate", {1, 0, 0}}}},
                                          {"after", {{"scale", {2, 1, 1}}}}})}});
    for (const int view : kViews) {
        const DoubleAttribute matrix = delegate->getPartialXform("/root/a", "group", "translate",
                                                                 true, view, false, true, true);
        EXPECT_EQ(textOf(matrix), "(2 0 0 0 0 1 0 0 0 0 1 0 11 0 0 1)") << view;
    }
}

TEST_F(SceneTransformsTest, aLocationWithoutTransformHasNoParts) {
    populateViews({{"/root", named("root")}});
    for (const int view : kViews) {
        EXPECT_FALSE(
            delegate->getPartialXform("/root", "g", "t", true, view, true, true, true).isValid());
    }
}

// ---- Products

TEST(MultiplyMatrices, takesANullForTheIdentity) {
    const DoubleAttribute matrix({2, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}, 4);
    EXPECT_EQ(multiplyMatrices(matrix, {}), matrix);
    EXPECT_EQ(multiplyMatrices({}, matrix), matrix);
    EXPECT_FALSE(multiplyMatrices({}, {}).isValid());
}

TEST(MultiplyMatrices, hasASampleForEveryTimeOfEither) {
    const auto scale = [](double x) {
        return std::vector<double>{x, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    };
    const std::vector<float> leftTimes{0.0F, 1.0F};
    const std::vector<float> rightTimes{0.0F, 0.4F};
    const DoubleAttribute product =
        multiplyMatrices(DoubleAttribute(leftTimes, {scale(2), scale(3)}, 4),
                         DoubleAttribute(rightTimes, {scale(5), scale(7)}, 4));
    ASSERT_EQ(product.getNumberOfTimeSamples(), 3);
    EXPECT_EQ(product.getTupleSize(), 4);
    EXPECT_EQ(product.getNearestSample(0.0F)[0], 10);
    EXPECT_EQ(product.getNearestSample(0.4F)[0], 14);
    EXPECT_EQ(product.getNearestSample(1.0F)[0], 21);
}

TEST(MultiplyMatrices, takesASingleSampleForAllTimes) {
    const std::vector<double> doubled{2, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    const std::vector<double> tripled{3, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    const DoubleAttribute moving(std::vector<float>{-0.5F, 0.5F}, {doubled, tripled}, 4);
    const DoubleAttribute still(doubled, 4);
    for (const DoubleAttribute& product :
         {multiplyMatrices(moving, still), multiplyMatrices(still, moving)}) {
        ASSERT_EQ(product.getNumberOfTimeSamples(), 2);
        EXPECT_EQ(product.getNearestSample(-0.5F)[0], 4);
        EXPECT_EQ(product.getNearestSample(0.5F)[0], 6);
    }
}

} // namespace
} // namespace ViewerAPI::test
