#include "manipulator/degrees.h"
#include "manipulator/presence.h"
#include "support/cameras.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

// Which handles are there, for the eye and for the hand, by how they are seen.
namespace {

using Bundled::axisPresence;
using Bundled::PictureSpace;
using Bundled::planePresence;
using Bundled::toRadians;
using Imath::M44d;
using Imath::V3d;

class Presences : public testing::TestWithParam<M44d> {
protected:
    /// Of this many degrees to the sight of a place aside from the middle of the picture.
    V3d towards(double degrees) const {
        const V3d sight = picture.sightTo(place);
        const V3d across = sight.cross(V3d(0, 1, 0)).normalized();
        return sight * std::cos(toRadians(degrees)) + across * std::sin(toRadians(degrees));
    }

    const PictureSpace picture{M44d().setTranslation(V3d(0, 0, -10)), GetParam(),
                               TestCameras::kWidth, TestCameras::kHeight};
    const V3d place{3, 2, 0};
};

INSTANTIATE_TEST_SUITE_P(Projections, Presences,
                         testing::Values(TestCameras::perspective(), TestCameras::orthographic()),
                         [](const auto& row) {
                             return row.param[2][3] != 0.0 ? "perspective" : "orthographic";
                         });

TEST_P(Presences, anAxisFadesTowardsTheCameraFromEitherSide) {
    double before = 0.0;
    for (const double degrees : {0.0, 9.0, 14.0, 16.0, 21.0, 90.0}) {
        const double present = axisPresence(picture, place, towards(degrees));
        EXPECT_GE(present, before);
        EXPECT_NEAR(present, axisPresence(picture, place, -towards(degrees)), 1e-12);
        EXPECT_EQ(present >= Bundled::kGraspedPresence, degrees > 15.0) << degrees;
        before = present;
    }
    EXPECT_EQ(axisPresence(picture, place, towards(9.0)), 0.0);
    EXPECT_EQ(axisPresence(picture, place, towards(21.0)), 1.0);
}

TEST_P(Presences, aPlaneFadesTowardsItsEdgeFromEitherSide) {
    double before = 0.0;
    for (const double degrees : {0.0, 5.0, 8.0, 10.0, 13.0, 90.0}) {
        const V3d normal = towards(90.0 - degrees);
        const double present = planePresence(picture, place, normal);
        EXPECT_GE(present, before);
        EXPECT_NEAR(present, planePresence(picture, place, -normal), 1e-12);
        EXPECT_EQ(present >= Bundled::kGraspedPresence, degrees > 9.0) << degrees;
        before = present;
    }
    EXPECT_EQ(planePresence(picture, place, towards(85.0)), 0.0);
    EXPECT_EQ(planePresence(picture, place, towards(77.0)), 1.0);
}

TEST_P(Presences, whatIsNoDirectionIsGone) {
    const V3d none(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(axisPresence(picture, place, none), 0.0);
    EXPECT_EQ(planePresence(picture, place, none), 0.0);
}

} // namespace
