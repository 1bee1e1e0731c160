#include "manipulator/conespread.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using Bundled::ConeSpread;
using Bundled::Ray;
using Imath::V3d;

constexpr double kTolerance = 1e-9;
const V3d kTip(1, 2, 3);
constexpr double kLength = 2.0;
const V3d kEye(1, 2, 13);

double radians(double degrees) {
    return degrees * M_PI / 180.0;
}

/// From the camera at a point of the rim: its angle from the axis, in the plane of axis and
/// `across`.
Ray atRim(const V3d& axis, const V3d& across, double degrees) {
    const V3d point =
        kTip + kLength * (axis * std::cos(radians(degrees)) + across * std::sin(radians(degrees)));
    return {kEye, (point - kEye).normalized()};
}

TEST(ConeSpread, followsTheRimWhereverItIsGrasped) {
    const V3d down(0, -1, 0);
    for (const V3d& across : {V3d(1, 0, 0), V3d(-1, 0, 0), V3d(0.6, 0, 0.8), V3d(0.6, 0, -0.8)}) {
        ConeSpread spread(kTip, down, kLength, 30.0, atRim(down, across, 30.0));
        for (const double degrees : {30.0, 10.0, 45.0, 70.0, 150.0}) {
            EXPECT_NEAR(spread.halfAngleAt(atRim(down, across, degrees)), degrees, kTolerance)
                << across << ", " << degrees;
        }
    }
}

TEST(ConeSpread, followsARimThatFacesTheCameraOrTurnsItsBack) {
    for (const V3d& axis : {V3d(0, 0, 1), V3d(0, 0, -1)}) {
        const V3d across(0, 1, 0);
        ConeSpread spread(kTip, axis, kLength, 20.0, atRim(axis, across, 20.0));
        for (const double degrees : {5.0, 20.0, 60.0}) {
            EXPECT_NEAR(spread.halfAngleAt(atRim(axis, across, degrees)), degrees, kTolerance)
                << axis;
        }
    }
}

TEST(ConeSpread, whatIsGraspedBesideTheRimBeginsWhereTheConeIs) {
    const V3d axis(0, -1, 0);
    const Ray beside = atRim(axis, {1, 0, 0}, 33.0);
    ConeSpread spread(kTip, axis, kLength, 30.0, beside);
    EXPECT_NEAR(spread.halfAngleAt(beside), 30.0, kTolerance);
    EXPECT_NEAR(spread.halfAngleAt(atRim(axis, {1, 0, 0}, 43.0)), 40.0, kTolerance);
}

TEST(ConeSpread, theSideFollowsThePointerAtAnyDistanceFromTheTip) {
    const V3d axis(0, -1, 0);
    ConeSpread spread(kTip, axis, kLength, 90.0, {{3, 2, 13}, {0, 0, -1}});
    for (const double distance : {0.5, 2.5, 50.0}) {
        EXPECT_NEAR(spread.halfAngleAt({{1 + distance, 2 - distance, 13}, {0, 0, -1}}), 45.0,
                    kTolerance);
    }
}

TEST(ConeSpread, overTheBallTheNearestPlaceCountsBeyondItsOutline) {
    // The nearest place of a rim around an axis that goes to the right.
    ConeSpread spread(kTip, {1, 0, 0}, kLength, 60.0, atRim({1, 0, 0}, {0, 0, 1}, 60.0));
    EXPECT_NEAR(spread.halfAngleAt(atRim({1, 0, 0}, {0, 0, 1}, 20.0)), 20.0, kTolerance);
    EXPECT_NEAR(spread.halfAngleAt({{9, 2, 13}, {0, 0, -1}}), 0.0, kTolerance);
    EXPECT_NEAR(spread.halfAngleAt({{1, 9, 13}, {0, 0, -1}}), 90.0, kTolerance);
}

TEST(ConeSpread, staysAsItIsForARayThatPointsNowhere) {
    ConeSpread spread(kTip, {0, -1, 0}, kLength, 30.0, atRim({0, -1, 0}, {1, 0, 0}, 30.0));
    spread.halfAngleAt(atRim({0, -1, 0}, {1, 0, 0}, 50.0));
    EXPECT_NEAR(spread.halfAngleAt({kEye, {0, 0, 1}}), 50.0, kTolerance) << "away from the cone";
}

TEST(ConeSpread, aRayAtTheTipItselfHasAnAnswer) {
    ConeSpread spread(kTip, {0, 0, -1}, kLength, 0.0, {kEye, {0, 0, -1}});
    EXPECT_NEAR(spread.halfAngleAt({kEye, {0, 0, -1}}), 0.0, kTolerance);
}

} // namespace
