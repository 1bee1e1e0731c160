#include "VlScenelib/VlXFormUtil.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"

#include <Imath/ImathMatrix.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace {

using VlAttribute::DoubleAttribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
namespace VlXFormUtil = VlScenelib::VlXFormUtil;

/// A few roundings of values up to ten.
constexpr double kTolerance = 1e-13;

Imath::M44d toMatrix(const DoubleAttribute& attribute, float time = 0) {
    Imath::M44d result;
    const auto values = attribute.getNearestSample(time);
    EXPECT_EQ(values.size(), 16U);
    EXPECT_EQ(attribute.getTupleSize(), 4);
    std::copy(values.begin(), values.end(), &result[0][0]);
    return result;
}

Imath::V3d transformed(const GroupAttribute& xform, const Imath::V3d& point, float time = 0) {
    return point * toMatrix(VlXFormUtil::CalcTransformMatrixAtTime(xform, time).first, time);
}

void expectNear(const Imath::V3d& actual, const Imath::V3d& expected) {
    EXPECT_LT((actual - expected).length(), kTolerance) << actual << " is not " << expected;
}

DoubleAttribute varying(std::vector<float> times, std::vector<std::vector<double>> samples) {
    return DoubleAttribute(times, samples);
}

TEST(VlXFormUtil, nullGroupHasNoMatrixAndIsNotAbsolute) {
    const auto atTime = VlXFormUtil::CalcTransformMatrixAtTime(GroupAttribute(), 0);
    EXPECT_FALSE(atTime.first.isValid());
    EXPECT_FALSE(atTime.second);
    const auto atTimes = VlXFormUtil::CalcTransformMatrixAtExistingTimes(GroupAttribute());
    EXPECT_FALSE(atTimes.first.isValid());
    EXPECT_FALSE(atTimes.second);
}

TEST(VlXFormUtil, emptyGroupIsTheIdentity) {
    const auto [matrix, isAbsolute] =
        VlXFormUtil::CalcTransformMatrixAtTime(GroupAttribute::Empty(), 0);
    EXPECT_EQ(toMatrix(matrix), Imath::M44d());
    EXPECT_FALSE(isAbsolute);
}

TEST(VlXFormUtil, translationStandsInTheLastRow) {
    const GroupAttribute xform{{"translate", DoubleAttribute({1, 2, 3}, 3)}};
    const auto values = VlXFormUtil::CalcTransformMatrixAtTime(xform, 0).first.getNearestSample(0);
    EXPECT_EQ(values[12], 1);
    EXPECT_EQ(values[13], 2);
    EXPECT_EQ(values[14], 3);
}

TEST(VlXFormUtil, positiveRotationIsCounterClockwiseSeenFromTheTip) {
    const GroupAttribute aroundZ{{"rotateZ", DoubleAttribute({90, 0, 0, 1}, 4)}};
    expectNear(transformed(aroundZ, {1, 0, 0}), {0, 1, 0});
    const GroupAttribute aroundX{{"rotateX", DoubleAttribute({90, 5, 0, 0}, 4)}};
    expectNear(transformed(aroundX, {0, 1, 0}), {0, 0, 1});
}

TEST(VlXFormUtil, rotationWithoutAnAxisHasNoEffect) {
    const GroupAttribute xform{{"rotate", DoubleAttribute({90, 0, 0, 0}, 4)}};
    expectNear(transformed(xform, {1, 2, 3}), {1, 2, 3});
}

TEST(VlXFormUtil, firstComponentIsOutermost) {
    const GroupAttribute xform{{"translate", DoubleAttribute({10, 0, 0}, 3)},
                               {"rotateZ", DoubleAttribute({90, 0, 0, 1}, 4)},
                               {"scale", DoubleAttribute({2, 3, 4}, 3)}};
    expectNear(transformed(xform, {1, 0, 0}), {10, 2, 0});
    expectNear(transformed(xform, {0, 1, 0}), {7, 0, 0});
}

TEST(VlXFormUtil, matrixComponentIsTakenAsItStands) {
    const GroupAttribute xform{
        {"matrix", DoubleAttribute({0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 5, 6, 7, 1}, 4)}};
    expectNear(transformed(xform, {1, 0, 0}), {5, 7, 7});
}

TEST(VlXFormUtil, floatsCountAsDoubles) {
    const GroupAttribute xform{{"translate", FloatAttribute({1.5F, 2.5F, 3.5F}, 3)}};
    expectNear(transformed(xform, {0, 0, 0}), {1.5, 2.5, 3.5});
}

TEST(VlXFormUtil, componentsMatchByPrefix) {
    const GroupAttribute xform{{"translatePivot", DoubleAttribute({1, 0, 0}, 3)},
                               {"translate", DoubleAttribute({0, 1, 0}, 3)}};
    expectNear(transformed(xform, {0, 0, 0}), {1, 1, 0});
}

TEST(VlXFormUtil, componentsOfAnotherNameKindOrSizeHaveNoEffect) {
    const GroupAttribute xform{{"pretranslate", DoubleAttribute({1, 0, 0}, 3)},
                               {"translateA", DoubleAttribute({1, 0}, 1)},
                               {"translateB", IntAttribute({1, 0, 0}, 3)},
                               {"shear", DoubleAttribute({1, 1, 1, 1, 1, 1}, 6)}};
    expectNear(transformed(xform, {1, 2, 3}), {1, 2, 3});
}

TEST(VlXFormUtil, groupsAreWalkedInThePlaceOfComponents) {
    const GroupAttribute parent{{"translate", DoubleAttribute({10, 0, 0}, 3)}};
    const GroupAttribute child{
        {"interactive", GroupAttribute{{"rotateZ", DoubleAttribute({90, 0, 0, 1}, 4)}}}};
    const GroupAttribute chain{{"i0", parent}, {"i1", child}};
    expectNear(transformed(chain, {1, 0, 0}), {10, 1, 0});
}

TEST(VlXFormUtil, worldIsLocalTimesParent) {
    const GroupAttribute parent{{"rotate", DoubleAttribute({30, 1, 2, 3}, 4)},
                                {"scale", DoubleAttribute({1, 2, 3}, 3)}};
    const GroupAttribute local{{"translate", DoubleAttribute({1, 2, 3}, 3)},
                               {"rotate", DoubleAttribute({50, 0, 1, 1}, 4)}};
    const Imath::M44d world = toMatrix(
        VlXFormUtil::CalcTransformMatrixAtExistingTimes({{"i0", parent}, {"i1", local}}).first);
    const Imath::M44d product = toMatrix(VlXFormUtil::CalcTransformMatrixAtTime(local, 0).first) *
                                toMatrix(VlXFormUtil::CalcTransformMatrixAtTime(parent, 0).first);
    EXPECT_TRUE(world.equalWithAbsError(product, kTolerance)) << world << product;
}

TEST(VlXFormUtil, resetDiscardsWhatStandsBeforeItAndMakesAbsolute) {
    const GroupAttribute local{{"translateA", DoubleAttribute({5, 0, 0}, 3)},
                               {"resetParent", IntAttribute(1)},
                               {"translateB", DoubleAttribute({0, 1, 0}, 3)}};
    const GroupAttribute chain{
        {"i0", GroupAttribute{{"translate", DoubleAttribute({100, 0, 0}, 3)}}}, {"i1", local}};
    expectNear(transformed(chain, {0, 0, 0}), {0, 1, 0});
    EXPECT_TRUE(VlXFormUtil::CalcTransformMatrixAtTime(chain, 0).second);
    EXPECT_TRUE(VlXFormUtil::CalcTransformMatrixAtExistingTimes(chain).second);
}

TEST(VlXFormUtil, nearestSampleCountsAndTheEarlierOnATie) {
    const GroupAttribute xform{{"translate", varying({0, 1}, {{10, 0, 0}, {20, 0, 0}})}};
    EXPECT_EQ(transformed(xform, {0, 0, 0}, 0.4F).x, 10);
    EXPECT_EQ(transformed(xform, {0, 0, 0}, 0.5F).x, 10);
    EXPECT_EQ(transformed(xform, {0, 0, 0}, 0.6F).x, 20);
}

TEST(VlXFormUtil, existingTimesAreThoseOfAllVaryingComponents) {
    const GroupAttribute xform{{"translateA", varying({0, 2}, {{1, 0, 0}, {2, 0, 0}})},
                               {"translateB", varying({1, 2}, {{10, 0, 0}, {20, 0, 0}})},
                               {"translateC", DoubleAttribute({100, 0, 0}, 3)}};
    const DoubleAttribute matrix = VlXFormUtil::CalcTransformMatrixAtExistingTimes(xform).first;
    ASSERT_EQ(matrix.getNumberOfTimeSamples(), 3);
    EXPECT_EQ(matrix.getSampleTime(0), 0);
    EXPECT_EQ(matrix.getSampleTime(1), 1);
    EXPECT_EQ(matrix.getSampleTime(2), 2);
    EXPECT_EQ(matrix.getNearestSample(0)[12], 111);
    EXPECT_EQ(matrix.getNearestSample(1)[12], 111);
    EXPECT_EQ(matrix.getNearestSample(2)[12], 122);
}

TEST(VlXFormUtil, theSameGroupSharesOneMatrix) {
    const GroupAttribute xform{{"translate", DoubleAttribute({1, 2, 3}, 3)}};
    const DoubleAttribute first = VlXFormUtil::CalcTransformMatrixAtTime(xform, 0).first;
    const DoubleAttribute second = VlXFormUtil::CalcTransformMatrixAtTime(xform, 0).first;
    EXPECT_EQ(first.getHandle(), second.getHandle());
}

TEST(VlXFormUtil, cachedMatricesAreTheRightOnesAcrossManyGroups) {
    for (int i = 0; i < 5000; ++i) {
        const GroupAttribute xform{
            {"translate", DoubleAttribute({static_cast<double>(i), 0, 0}, 3)}};
        ASSERT_EQ(transformed(xform, {0, 0, 0}).x, i);
    }
}

// ---- bounds

using Box = std::array<double, 6>;

Box toBox(const DoubleAttribute& attribute, float time = 0) {
    Box box{};
    EXPECT_EQ(attribute.getNumberOfValues(), 6);
    const auto values = attribute.getNearestSample(time);
    std::copy(values.begin(), values.end(), box.begin());
    return box;
}

DoubleAttribute fromBox(const Box& box) {
    return DoubleAttribute(std::span<const double>(box));
}

TEST(VlXFormUtil, transformedBoundsEnclosesExactlyTheEightCorners) {
    constexpr unsigned kSeed = 20240517;
    std::mt19937 random(kSeed);
    std::uniform_real_distribution<double> value(-5, 5);
    for (int round = 0; round < 200; ++round) {
        const GroupAttribute xform{
            {"translate", DoubleAttribute({value(random), value(random), value(random)}, 3)},
            {"rotate", DoubleAttribute({value(random) * 36, value(random), value(random), 1}, 4)},
            {"scale", DoubleAttribute({value(random), value(random), value(random)}, 3)}};
        Box box;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const double low = value(random);
            box[axis * 2] = low;
            box[axis * 2 + 1] = low + std::abs(value(random));
        }
        const DoubleAttribute matrix = VlXFormUtil::CalcTransformMatrixAtTime(xform, 0).first;
        Box expected{1e9, -1e9, 1e9, -1e9, 1e9, -1e9};
        for (unsigned corner = 0; corner < 8; ++corner) {
            const Imath::V3d moved = Imath::V3d(box[corner & 1U], box[2 + ((corner >> 1U) & 1U)],
                                                box[4 + ((corner >> 2U) & 1U)]) *
                                     toMatrix(matrix);
            for (std::size_t axis = 0; axis < 3; ++axis) {
                const double at = moved[static_cast<int>(axis)];
                expected[axis * 2] = std::min(expected[axis * 2], at);
                expected[axis * 2 + 1] = std::max(expected[axis * 2 + 1], at);
            }
        }
        const Box actual =
            toBox(VlXFormUtil::CalcTransformedBoundsAtExistingTimes(matrix, fromBox(box)));
        for (std::size_t i = 0; i < 6; ++i) {
            // Sums of a few products of values below 100.
            ASSERT_NEAR(actual[i], expected[i], 1e-12) << "seed " << kSeed << " round " << round;
        }
    }
}

TEST(VlXFormUtil, perspectiveDividesTheCorners) {
    const DoubleAttribute matrix({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 2}, 4);
    EXPECT_EQ(toBox(VlXFormUtil::CalcTransformedBoundsAtExistingTimes(
                  matrix, fromBox({-2, 2, -4, 4, 0, 6}))),
              (Box{-1, 1, -2, 2, 0, 3}));
}

TEST(VlXFormUtil, withoutAMatrixTheBoundsStay) {
    const DoubleAttribute bounds = fromBox({0, 1, 0, 1, 0, 1});
    EXPECT_EQ(VlXFormUtil::CalcTransformedBoundsAtExistingTimes(DoubleAttribute(), bounds), bounds);
}

TEST(VlXFormUtil, invalidBoundsGiveNone) {
    const DoubleAttribute matrix =
        VlXFormUtil::CalcTransformMatrixAtTime(GroupAttribute::Empty(), 0).first;
    EXPECT_FALSE(
        VlXFormUtil::CalcTransformedBoundsAtExistingTimes(matrix, DoubleAttribute()).isValid());
    EXPECT_FALSE(VlXFormUtil::CalcTransformedBoundsAtExistingTimes(matrix, DoubleAttribute({1, 2}))
                     .isValid());
}

TEST(VlXFormUtil, invertedBoundsStayAsTheyAre) {
    constexpr double kMax = std::numeric_limits<double>::max();
    const GroupAttribute xform{{"rotate", DoubleAttribute({45, 1, 2, 3}, 4)},
                               {"scale", DoubleAttribute({100, 100, 100}, 3)}};
    const DoubleAttribute matrix = VlXFormUtil::CalcTransformMatrixAtTime(xform, 0).first;
    for (const DoubleAttribute& nothing :
         {DoubleAttribute({1, -1, 1, -1, 1, -1}), DoubleAttribute({0, 1, 0, 1, 1, 0}),
          DoubleAttribute({kMax, 0, kMax, 0, kMax, 0})}) {
        EXPECT_EQ(VlXFormUtil::CalcTransformedBoundsAtExistingTimes(matrix, nothing), nothing);
    }
}

TEST(VlXFormUtil, transformedBoundsHasTheTimesOfBoth) {
    const DoubleAttribute bounds = varying({0, 2}, {{0, 1, 0, 1, 0, 1}, {0, 2, 0, 1, 0, 1}});
    const GroupAttribute xform{{"translate", varying({1, 2}, {{10, 0, 0}, {20, 0, 0}})}};
    const DoubleAttribute result = VlXFormUtil::CalcTransformedBoundsAtExistingTimes(
        VlXFormUtil::CalcTransformMatrixAtExistingTimes(xform).first, bounds);
    ASSERT_EQ(result.getNumberOfTimeSamples(), 3);
    EXPECT_EQ(toBox(result, 0), (Box{10, 11, 0, 1, 0, 1}));
    EXPECT_EQ(toBox(result, 2), (Box{20, 22, 0, 1, 0, 1}));
}

TEST(VlXFormUtil, mergedBoundsEnclosesBoth) {
    EXPECT_EQ(toBox(VlXFormUtil::MergeBounds(fromBox({0, 1, 0, 1, 0, 1}),
                                             fromBox({-1, 0.5, 0.5, 3, 0, 1}))),
              (Box{-1, 1, 0, 3, 0, 1}));
}

TEST(VlXFormUtil, mergingWithInvalidBoundsGivesTheOther) {
    const DoubleAttribute box = fromBox({0, 1, 0, 1, 0, 1});
    EXPECT_EQ(VlXFormUtil::MergeBounds(box, DoubleAttribute()), box);
    EXPECT_EQ(VlXFormUtil::MergeBounds(DoubleAttribute({1, 2, 3}), box), box);
    EXPECT_FALSE(VlXFormUtil::MergeBounds(DoubleAttribute(), DoubleAttribute({1})).isValid());
}

TEST(VlXFormUtil, mergedBoundsHasTheTimesOfBoth) {
    const DoubleAttribute result =
        VlXFormUtil::MergeBounds(varying({0, 2}, {{0, 1, 0, 1, 0, 1}, {0, 2, 0, 1, 0, 1}}),
                                 varying({1, 2}, {{5, 6, 0, 1, 0, 1}, {7, 8, 0, 1, 0, 1}}));
    ASSERT_EQ(result.getNumberOfTimeSamples(), 3);
    EXPECT_EQ(toBox(result, 0), (Box{0, 6, 0, 1, 0, 1}));
    EXPECT_EQ(toBox(result, 2), (Box{0, 8, 0, 1, 0, 1}));
}

} // namespace
