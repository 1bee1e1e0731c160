#include "manipulator/ringturn.h"
#include "manipulator/scaling.h"
#include "support/cameras.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

// What rings are turned by and boxes sized by, with rays at points that are known.
namespace {

using Bundled::GizmoPart;
using Bundled::GizmoPlace;
using Bundled::Grasp;
using Bundled::Motion;
using Bundled::PictureSpace;
using Bundled::Ray;
using Bundled::RingTurn;
using Bundled::Scaling;
using Imath::M44d;
using Imath::V3d;

constexpr double kTolerance = 1e-9;
constexpr GizmoPart kRingZ{"z", "RingHandle", Motion::Ring, 2};
constexpr GizmoPart kRingX{"x", "RingHandle", Motion::Ring, 0};
constexpr GizmoPart kRingView{"view", "RingHandle", Motion::Ring, -1};
constexpr GizmoPart kBoxX{"x", "BoxHandle", Motion::Axis, 0};
constexpr GizmoPart kPlaneXY{"xy", "PlaneHandle", Motion::Plane, 2};
constexpr GizmoPart kCentre{"centre", "BoxHandle", Motion::Picture, -1};

/// A gizmo of length 2 around (1, 2, 3), and a camera that looks at it down -z from 10 before it.
struct Setting {
    explicit Setting(const M44d& projection)
        : space(M44d().setTranslation(V3d(1, 2, 13)).inverse(), projection, TestCameras::kWidth,
                TestCameras::kHeight) {}

    /// The ray at a point, told from the middle of the gizmo.
    Ray at(double x, double y, double z = 0.0) const {
        const V3d point = centre + V3d(x, y, z);
        return space.isPerspective() ? Ray{eye, (point - eye).normalized()}
                                     : Ray{{point.x, point.y, eye.z}, {0, 0, -1}};
    }
    Grasp grasp(const GizmoPart& part, const Ray& ray) const {
        return {part, {centre, axes, 2.0}, ray, space};
    }

    V3d centre{1, 2, 3};
    V3d eye{1, 2, 13};
    M44d axes;
    PictureSpace space;
};

class HandleDrags : public testing::TestWithParam<M44d> {
protected:
    Setting setting{GetParam()};

    Ray around(double degrees, double radius = 2.0) const {
        return setting.at(radius * std::cos(degrees * M_PI / 180.0),
                          radius * std::sin(degrees * M_PI / 180.0));
    }
};

INSTANTIATE_TEST_SUITE_P(Projections, HandleDrags,
                         testing::Values(TestCameras::perspective(), TestCameras::orthographic()),
                         [](const auto& row) {
                             return row.param[2][3] != 0.0 ? "perspective" : "orthographic";
                         });

TEST_P(HandleDrags, ringTurnsAsFarAsThePointerGoesAroundItsMiddle) {
    for (const GizmoPart& part : {kRingZ, kRingView}) {
        auto turn = RingTurn::begin(setting.grasp(part, around(20)), 2.0).value();
        EXPECT_NEAR(turn.arm().dot(V3d(0, 0, 1)), 0.0, kTolerance) << part.name;
        EXPECT_NEAR(turn.turnTo(around(20)), 0.0, kTolerance) << part.name;
        EXPECT_NEAR(turn.turnTo(around(75)), 55.0, kTolerance) << part.name;
        EXPECT_NEAR(turn.turnTo(around(75, 5.0)), 55.0, kTolerance) << "however far away";
        EXPECT_NEAR(turn.turnTo(around(-10)), -30.0, kTolerance) << part.name;
    }
}

TEST_P(HandleDrags, ringCountsTurnsBothWaysAndBackAgain) {
    auto turn = RingTurn::begin(setting.grasp(kRingZ, around(0)), 2.0).value();
    for (int degrees = 0; degrees <= 900; degrees += 90) {
        EXPECT_NEAR(turn.turnTo(around(degrees)), degrees, kTolerance);
    }
    for (int degrees = 900; degrees >= -450; degrees -= 170) {
        EXPECT_NEAR(turn.turnTo(around(degrees)), degrees, kTolerance);
    }
}

TEST_P(HandleDrags, ringSeenFromBelowTurnsTheOtherWay) {
    setting.axes = M44d(1, 0, 0, 0, 0, -1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1);
    auto turn = RingTurn::begin(setting.grasp(kRingZ, around(20)), 2.0).value();
    EXPECT_NEAR(turn.turnTo(around(50)), -30.0, kTolerance);
}

TEST_P(HandleDrags, ringSeenFromItsEdgeTurnsByItsRim) {
    // Its edge is seen along y; what is nearest to the camera goes up when z turns to -y ...
    auto turn = RingTurn::begin(setting.grasp(kRingX, setting.at(0, 0.5)), 2.0).value();
    EXPECT_NEAR((turn.arm() - V3d(0, 0, 1)).length(), 0.0, kTolerance);
    EXPECT_NEAR(turn.turnTo(setting.at(0, 1.5)), -0.5 * 180.0 / M_PI, kTolerance);
    // ... as far as wanted.
    EXPECT_NEAR(turn.turnTo(setting.at(0, 20.5)), -10.0 * 180.0 / M_PI, kTolerance);
    EXPECT_NEAR(turn.turnTo(setting.at(0, 0.5)), 0.0, kTolerance);
}

TEST_P(HandleDrags, ringNearlySeenFromItsEdgeMovesWithoutLeaps) {
    for (const double tilt : {0.0, 3.0, 8.0, 11.0, 13.0, 20.0}) {
        setting.axes = M44d().setAxisAngle(V3d(0, 1, 0), tilt * M_PI / 180.0);
        auto turn = RingTurn::begin(setting.grasp(kRingX, setting.at(0, 0.1)), 2.0).value();
        double before = 0.0;
        for (double y = 0.1; y < 1.5; y += 0.01) {
            const double degrees = turn.turnTo(setting.at(0, y));
            EXPECT_LT(std::abs(degrees - before), 15.0) << tilt << " degrees, at " << y;
            before = degrees;
        }
    }
}

TEST_P(HandleDrags, rayThatPointsNowhereLeavesTheRingAsItIs) {
    auto turn = RingTurn::begin(setting.grasp(kRingZ, around(0)), 2.0).value();
    turn.turnTo(around(40));
    EXPECT_NEAR(turn.turnTo({setting.eye, {0, 0, 1}}), 40.0, kTolerance) << "behind the camera";
    EXPECT_NEAR(turn.turnTo({setting.eye, {1, 0, 0}}), 40.0, kTolerance) << "beside the ring";
    EXPECT_NEAR(turn.turnTo(setting.at(0, 0)), 40.0, kTolerance) << "in the very middle";
}

TEST_P(HandleDrags, ringBehindTheCameraIsNotGrasped) {
    EXPECT_FALSE(RingTurn::begin(setting.grasp(kRingZ, {setting.eye, {0, 0, 1}}), 2.0));
    EXPECT_FALSE(RingTurn::begin(setting.grasp(kRingX, {setting.eye, {0, 0, 1}}), 2.0));
}

void expectFactors(const V3d& found, const V3d& expected, const std::string& name) {
    EXPECT_NEAR((found - expected).length(), 0.0, kTolerance) << name << ": " << found;
}

TEST_P(HandleDrags, boxStaysUnderThePointer) {
    auto scaling = Scaling::begin(setting.grasp(kBoxX, setting.at(1.9, 0))).value();
    expectFactors(scaling.scaleTo(setting.at(1.9, 0), 0), {1, 1, 1}, "not moved");
    expectFactors(scaling.scaleTo(setting.at(3.8, 0), 0), {2, 1, 1}, "twice as far");
    expectFactors(scaling.scaleTo(setting.at(0.475, 0), 0), {0.25, 1, 1}, "a quarter");
}

TEST_P(HandleDrags, cornerOfAPlaneStaysUnderThePointer) {
    auto scaling = Scaling::begin(setting.grasp(kPlaneXY, setting.at(0.8, 0.8))).value();
    expectFactors(scaling.scaleTo(setting.at(1.2, 1.2), 0), {1.5, 1.5, 1}, "outwards");
    expectFactors(scaling.scaleTo(setting.at(1.4, 1.0), 0), {1.5, 1.5, 1}, "and aside");
}

TEST_P(HandleDrags, planeOfSkewAxesIsTheirs) {
    setting.axes[1][0] = 0.6;
    setting.axes[1][1] = 0.8;
    auto scaling = Scaling::begin(setting.grasp(kPlaneXY, setting.at(0.8, 0.4))).value();
    expectFactors(scaling.scaleTo(setting.at(1.6, 0.8), 0), {2, 2, 1}, "outwards");
}

TEST_P(HandleDrags, middleDoublesByALengthToTheRightOrUp) {
    auto scaling = Scaling::begin(setting.grasp(kCentre, setting.at(0, 0))).value();
    const struct {
        const char* name;
        double x, y, factor;
    } rows[] = {{"right", 2, 0, 2},
                {"up", 0, 2, 2},
                {"left", -2, 0, 0.5},
                {"far down", 0, -8, 1.0 / 16},
                {"right and down", 2, -2, 1}};
    for (const auto& row : rows) {
        expectFactors(scaling.scaleTo(setting.at(row.x, row.y), 0), V3d(row.factor), row.name);
    }
}

TEST_P(HandleDrags, factorsNeverComeToNothingOrTurnInsideOut) {
    auto scaling = Scaling::begin(setting.grasp(kBoxX, setting.at(1.9, 0))).value();
    expectFactors(scaling.scaleTo(setting.at(0, 0), 0), {Scaling::kSmallest, 1, 1}, "the middle");
    expectFactors(scaling.scaleTo(setting.at(-5, 0), 0), {Scaling::kSmallest, 1, 1}, "beyond");
    expectFactors(scaling.scaleTo(setting.at(1.9, 0), 0), {1, 1, 1}, "and back again");
}

TEST_P(HandleDrags, factorsStayBoundedHoweverFarThePointerIs) {
    auto scaling = Scaling::begin(setting.grasp(kCentre, setting.at(0, 0))).value();
    for (const double step : {0.0, 0.1, 1e300}) {
        expectFactors(scaling.scaleTo(setting.at(100, 100), step), V3d(Scaling::kLargest), "far");
    }
}

TEST_P(HandleDrags, ringTurnsABoundedNumberOfTimesHoweverFarThePointerIs) {
    auto turn = RingTurn::begin(setting.grasp(kRingX, setting.at(0, 0.5)), 1e-6).value();
    EXPECT_EQ(turn.turnTo(setting.at(0, 100)), -36000.0);
}

TEST_P(HandleDrags, withAStepFactorsAreItsMultiplesAndAtLeastOne) {
    auto scaling = Scaling::begin(setting.grasp(kBoxX, setting.at(1.0, 0))).value();
    expectFactors(scaling.scaleTo(setting.at(1.234, 0), 0.1), {1.2, 1, 1}, "to the nearest");
    expectFactors(scaling.scaleTo(setting.at(1.234, 0), 0.5), {1.0, 1, 1}, "to the nearest");
    expectFactors(scaling.scaleTo(setting.at(0.04, 0), 0.1), {0.1, 1, 1}, "no less than one");
    expectFactors(scaling.scaleTo(setting.at(-3, 0), 0.1), {0.1, 1, 1}, "beyond the middle");
}

TEST_P(HandleDrags, nothingIsSizedByAnArmOfNoLength) {
    EXPECT_FALSE(Scaling::begin(setting.grasp(kBoxX, setting.at(0.0, 0))));
    EXPECT_FALSE(Scaling::begin(setting.grasp(kPlaneXY, setting.at(0.0, 0))));
    EXPECT_FALSE(Scaling::begin(setting.grasp(kBoxX, {setting.eye, {0, 0, 1}}))) << "behind";
}

} // namespace
