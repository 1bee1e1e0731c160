#include "vlboundingboxfactory.h"

#include "support/factorytest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

class VlBoundingBoxFactoryTest : public testing::Test {
protected:
    /// Stores the location and, if that calls for a box, asks for it.
    bool tell(const char* path, const GroupAttribute& attributes) {
        const LocationPath location(path);
        const bool isWanted = factory.storeLocation(location, attributes);
        if (isWanted) {
            factory.requestProduce(location);
        }
        return isWanted;
    }

    GroupAttribute boxOf(const DoubleAttribute& bound) {
        tell("/root/a", {{"bound", bound}});
        return collect(factory).at(0).attrs;
    }

    VlBoundingBoxFactory factory{"__VlOst_bbox"};
};

// ---- What qualifies

struct Bound {
    const char* name;
    VlAttribute::Attribute bound;
    bool isEnough;
};

const Bound kBounds[] = {
    {"sixDoubles", DoubleAttribute({0, 1, 0, 1, 0, 1}), true},
    {"sixDoublesInTuplesOfTwo", DoubleAttribute({0, 1, 0, 1, 0, 1}, 2), true},
    {"sixDoublesASample",
     DoubleAttribute(std::vector<float>{0.0F, 1.0F},
                     std::vector<std::vector<double>>{{0, 1, 0, 1, 0, 1}, {0, 2, 0, 2, 0, 2}}),
     true},
    {"sixFloats", FloatAttribute({0, 1, 0, 1, 0, 1}), false},
    {"sixIntegers", IntAttribute({0, 1, 0, 1, 0, 1}), false},
    {"fiveDoubles", DoubleAttribute({0, 1, 0, 1, 0}), false},
    {"sevenDoubles", DoubleAttribute({0, 1, 0, 1, 0, 1, 0}), false},
    {"noDoubles", DoubleAttribute(std::span<const double>()), false},
    {"aGroup", bounded(1), false},
    {"none", {}, false},
};

class VlBoundingBoxFactoryBound : public testing::TestWithParam<Bound> {};

TEST_P(VlBoundingBoxFactoryBound, mustBeSixDoublesASample) {
    const VlBoundingBoxFactory factory("box");
    const GroupAttribute attributes = GroupBuilder().set("bound", GetParam().bound).build();
    EXPECT_EQ(factory.hasRequiredAttributes(attributes), GetParam().isEnough);
}

INSTANTIATE_TEST_SUITE_P(Rows, VlBoundingBoxFactoryBound, testing::ValuesIn(kBounds),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(VlBoundingBoxFactoryTest, aLocationWithPointsHasNoBoxEvenWithAGoodBound) {
    const GroupAttribute attributes = GroupBuilder()
                                          .update(bounded(1))
                                          .set("geometry.point.P", FloatAttribute({1, 2, 3}, 3))
                                          .build();
    EXPECT_FALSE(factory.isEligible(leafChange("/root/a", attributes)));
    EXPECT_TRUE(factory.isEligible(leafChange("/root/a", bounded(1))));
}

// ---- The box

TEST_F(VlBoundingBoxFactoryTest, buildsALocatorWithEightCornersAndSixFaces) {
    EXPECT_EQ(textOf(boxOf(DoubleAttribute({-1, 1, -2, 2, -3, 3}))),
              "{type=\"locator\" geometry={point={P=("
              "-1 -2 3 1 -2 3 -1 2 3 1 2 3 -1 2 -3 1 2 -3 -1 -2 -3 1 -2 -3)} "
              "poly={vertexList=(2 3 1 0 4 5 3 2 6 7 5 4 0 1 7 6 3 5 7 1 4 2 0 6) "
              "startIndex=(0 4 8 12 16 20 24)}} "
              "viewer={default={drawOptions={fill=\"wireframe\" smoothing=\"off\"}}}}");
}

TEST_F(VlBoundingBoxFactoryTest, givesAttributesTheirTypesTupleSizesAndInheritance) {
    const GroupAttribute box = boxOf(DoubleAttribute({-1, 1, -2, 2, -3, 3}));
    const FloatAttribute points(box.getChildByName("geometry.point.P"));
    EXPECT_EQ(points.getNumberOfValues(), 24);
    EXPECT_EQ(points.getTupleSize(), 3);
    const IntAttribute vertices(box.getChildByName("geometry.poly.vertexList"));
    EXPECT_EQ(vertices.getNumberOfValues(), 24);
    EXPECT_EQ(vertices.getTupleSize(), 1);
    const IntAttribute starts(box.getChildByName("geometry.poly.startIndex"));
    EXPECT_EQ(starts.getNumberOfValues(), 7);
    EXPECT_EQ(starts.getTupleSize(), 1);
    for (std::int64_t index = 0; index < box.getNumberOfChildren(); ++index) {
        EXPECT_TRUE(box.isGroupInherit(index)) << box.getChildName(index);
    }
}

TEST_F(VlBoundingBoxFactoryTest, takesAMinimumAboveItsMaximumAsItStands) {
    const GroupAttribute box = boxOf(DoubleAttribute({1, -1, 2, -2, 3, -3}));
    EXPECT_EQ(textOf(box.getChildByName("geometry.point.P")),
              "(1 2 -3 -1 2 -3 1 -2 -3 -1 -2 -3 1 -2 3 -1 -2 3 1 2 3 -1 2 3)");
}

TEST_F(VlBoundingBoxFactoryTest, showsAMovingBoundAtTheSampleNearestToTimeZero) {
    const DoubleAttribute bound(std::vector<float>{-3.0F, 1.0F, 5.0F},
                                std::vector<std::vector<double>>{
                                    {0, 1, 0, 1, 0, 1}, {0, 7, 0, 7, 0, 7}, {0, 9, 0, 9, 0, 9}});
    const FloatAttribute points(boxOf(bound).getChildByName("geometry.point.P"));
    EXPECT_EQ(points.getNumberOfTimeSamples(), 1);
    EXPECT_EQ(points.getNearestSample(0.0F)[3], 7.0F);
}

// ---- Requests and products

TEST_F(VlBoundingBoxFactoryTest, deliversInTheCollectionAfterTheRequest) {
    tell("/root/b", bounded(1));
    tell("/root/a", bounded(2));
    EXPECT_THAT(linesOf(collect(factory)),
                ElementsAre("produced /root/b/__VlOst_bbox", "produced /root/a/__VlOst_bbox"));
    EXPECT_FALSE(factory.hasPendingWork());
}

TEST_F(VlBoundingBoxFactoryTest, deliversRemovalsAheadOfNewBoxes) {
    tell("/root/a", bounded(1));
    factory.requestRemove(LocationPath("/root/b"));
    EXPECT_THAT(linesOf(collect(factory)),
                ElementsAre("removed /root/b/__VlOst_bbox", "produced /root/a/__VlOst_bbox"));
}

TEST_F(VlBoundingBoxFactoryTest, anUnchangedBoundOnAChangedLocationGivesNoProduct) {
    tell("/root/a", bounded(1));
    collect(factory);
    // Built anew, with equal values.
    EXPECT_FALSE(tell("/root/a", GroupBuilder()
                                     .set("bound", DoubleAttribute({0, 1, 0, 1, 0, 1}))
                                     .set("name", StringAttribute("changed"))
                                     .build()));
    EXPECT_THAT(collect(factory), IsEmpty());
}

TEST_F(VlBoundingBoxFactoryTest, aChangedBoundGivesOneProductUnderTheSamePathAndNoRemoval) {
    tell("/root/a", bounded(1));
    collect(factory);
    EXPECT_TRUE(tell("/root/a", bounded(2)));
    EXPECT_THAT(linesOf(collect(factory)), ElementsAre("produced /root/a/__VlOst_bbox"));
}

TEST_F(VlBoundingBoxFactoryTest, aPathRequestedTwiceInOnePassGivesTwoEqualProducts) {
    tell("/root/a", bounded(1));
    tell("/root/a", bounded(2));
    const std::vector<FactoryProduct> products = collect(factory);
    ASSERT_EQ(products.size(), 2U);
    EXPECT_EQ(products[0], products[1]);
}

TEST_F(VlBoundingBoxFactoryTest, aPathForgottenAfterItsRequestGivesNoProductAndStaysForgotten) {
    tell("/root/a", bounded(1));
    factory.forgetLocation("/root/a");
    EXPECT_THAT(collect(factory), IsEmpty());
    EXPECT_FALSE(factory.hasLocation("/root/a"));
    EXPECT_FALSE(factory.hasPendingWork());
}

TEST_F(VlBoundingBoxFactoryTest, aRequestFromBeforeItWasDisabledComesToNothing) {
    tell("/root/a", bounded(1));
    factory.setEnabled(false);
    EXPECT_THAT(linesOf(collect(factory)), ElementsAre("removed /root/a/__VlOst_bbox"));
    factory.setEnabled(true);
    EXPECT_THAT(linesOf(collect(factory)), ElementsAre("produced /root/a/__VlOst_bbox"));
}

TEST_F(VlBoundingBoxFactoryTest, clearTakesTheBoundsAlong) {
    tell("/root/a", bounded(1));
    collect(factory);
    factory.clear();
    EXPECT_TRUE(tell("/root/a", bounded(1)));
}

} // namespace
} // namespace ViewerAPI::test
