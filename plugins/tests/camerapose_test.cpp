#include "camera/camerapose.h"
#include "camera/projection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <random>
#include <string>
#include <utility>
#include <vector>

// How a camera moves under the user's hands: what shall stay in place in the picture does.
namespace {

using namespace Bundled;
using Imath::Box3d;
using Imath::M44d;
using Imath::V2d;
using Imath::V3d;

struct Row {
    const char* name;
    bool isPerspective;
    Lens lens;
};

Lens lens(double aspect, double left = -1.0, double right = 1.0) {
    Lens result;
    result.aspect = aspect;
    result.left = left;
    result.right = right;
    return result;
}

const Row kRows[] = {
    {"perspective", true, lens(1.0)},
    {"wide perspective", true, lens(2.5)},
    {"perspective with a window off the middle", true, lens(1.5, -0.25, 1.0)},
    {"orthographic", false, lens(1.0)},
    {"wide orthographic", false, lens(2.5)},
    {"orthographic with a window off the middle", false, lens(1.5, -0.25, 1.0)},
};

M44d projectionOf(const Row& row, double orthographicWidth) {
    Lens lens = row.lens;
    lens.orthographicWidth = orthographicWidth;
    return row.isPerspective ? perspectiveProjection(lens) : orthographicProjection(lens);
}

/// Looks at the origin from a direction that is not special.
CameraPose poseOf(const Row& row, double distance = 10.0) {
    CameraPose pose;
    pose.distance = distance;
    pose.projection = projectionOf(row, pose.orthographicWidth);
    pose.cameraToWorld.setTranslation(V3d(0.0, 0.0, distance));
    pose.orbit(35.0, 22.0);
    return pose;
}

V3d inCamera(const CameraPose& pose, const V3d& point) {
    return point * pose.cameraToWorld.inverse();
}

V2d placeOf(const CameraPose& pose, const V3d& point) {
    const V3d clip = inCamera(pose, point) * pose.projection;
    return {clip.x, clip.y};
}

class CameraPoseTest : public testing::TestWithParam<Row> {
protected:
    CameraPose pose = poseOf(GetParam());
    /// As the camera plug-in does when its width changes.
    void updateProjection() { pose.projection = projectionOf(GetParam(), pose.orthographicWidth); }
};

/// Framing is for the whole picture.
class CameraPoseFramingTest : public CameraPoseTest {};

std::vector<Row> wholePictures() {
    std::vector<Row> rows;
    std::copy_if(std::begin(kRows), std::end(kRows), std::back_inserter(rows),
                 [](const Row& row) { return row.lens.left == -1.0; });
    return rows;
}

std::string nameOf(const testing::TestParamInfo<Row>& info) {
    std::string name = info.param.name;
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Projections, CameraPoseTest, testing::ValuesIn(kRows), nameOf);
INSTANTIATE_TEST_SUITE_P(Projections, CameraPoseFramingTest, testing::ValuesIn(wholePictures()),
                         nameOf);

void expectNear(const V3d& a, const V3d& b, double tolerance) {
    EXPECT_LT((a - b).length(), tolerance) << a << " and " << b;
}

void expectNear(const V2d& a, const V2d& b, double tolerance) {
    EXPECT_LT((a - b).length(), tolerance) << a << " and " << b;
}

TEST_P(CameraPoseTest, pointAtIsWhatIsSeenThere) {
    for (const V2d& place : {V2d(0, 0), V2d(1, 1), V2d(-0.3, 0.7)}) {
        const V3d point = pose.pointAt(place);
        expectNear(placeOf(pose, point), place, 1e-12);
        EXPECT_NEAR(inCamera(pose, point).z, -pose.distance, 1e-12);
    }
}

TEST_P(CameraPoseTest, orbitKeepsTheCentreOfInterestWhereItIsInThePicture) {
    const V3d center = pose.centerOfInterest();
    const V2d before = placeOf(pose, center);
    for (int i = 0; i < 50; ++i) {
        pose.orbit(17.0, 3.0 - i * 0.4);
        expectNear(placeOf(pose, center), before, 1e-11);
        EXPECT_NEAR(inCamera(pose, center).z, -10.0, 1e-10);
    }
}

TEST_P(CameraPoseTest, orbitTurnsByTheAnglesAndKeepsTheHorizonLevel) {
    pose.cameraToWorld = M44d().setTranslation(V3d(0, 0, 10));
    pose.orbit(90.0, 0.0);
    expectNear(pose.cameraToWorld.translation(), V3d(10, 0, 0), 1e-12);
    pose.orbit(0.0, 30.0);
    expectNear(pose.cameraToWorld.translation(), V3d(10 * std::cos(M_PI / 6), 5, 0), 1e-12);
    EXPECT_NEAR(pose.cameraToWorld[0][1], 0.0, 1e-12);
    EXPECT_GT(pose.cameraToWorld[1][1], 0.0);
}

TEST_P(CameraPoseTest, orbitStopsBelowThePolesAndComesBackFromThem) {
    const double highest = 10.0 * std::sin(CameraPose::kSteepestDegrees * M_PI / 180.0);
    pose.orbit(0.0, 1000.0);
    EXPECT_NEAR(pose.cameraToWorld[3][1], highest, 1e-9);
    pose.orbit(0.0, -1000.0);
    EXPECT_NEAR(pose.cameraToWorld[3][1], -highest, 1e-9);
    // A script may have put it at the very pole.
    pose.cameraToWorld =
        M44d().setAxisAngle(V3d(1, 0, 0), -M_PI / 2) * M44d().setTranslation(V3d(0, 10, 0));
    pose.orbit(20.0, -10.0);
    EXPECT_NEAR(pose.cameraToWorld[3][1], 10.0 * std::sin(80.0 * M_PI / 180.0), 1e-9);
}

TEST_P(CameraPoseTest, manySmallMovesLeaveTheAxesUprightToEachOther) {
    for (int i = 0; i < 10000; ++i) {
        pose.orbit(0.37, i % 2 == 0 ? 0.2 : -0.19);
    }
    const M44d product = pose.cameraToWorld * pose.cameraToWorld.inverse();
    EXPECT_TRUE(product.equalWithAbsError(M44d(), 1e-12));
    for (int row = 0; row < 3; ++row) {
        const V3d axis(pose.cameraToWorld[row][0], pose.cameraToWorld[row][1],
                       pose.cameraToWorld[row][2]);
        EXPECT_NEAR(axis.length(), 1.0, 1e-14);
    }
}

TEST_P(CameraPoseTest, panBringsWhatIsAtOnePlaceToTheOther) {
    const unsigned seed = 20261121;
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> anywhere(-1.0, 1.0);
    for (int i = 0; i < 100; ++i) {
        const V2d from(anywhere(random), anywhere(random));
        const V2d to(anywhere(random), anywhere(random));
        const V3d held = pose.pointAt(from);
        pose.pan(from, to);
        expectNear(placeOf(pose, held), to, 1e-10);
        EXPECT_NEAR(inCamera(pose, held).z, -pose.distance, 1e-10);
    }
}

TEST_P(CameraPoseTest, dollyKeepsWhatIsUnderTheCursorAtAnyDepth) {
    for (const V2d& place : {V2d(0, 0), V2d(0.8, -0.6), V2d(-1, 1)}) {
        for (const double factor : {1.15, 4.0, 1 / 1.15, 0.1}) {
            CameraPose moved = pose;
            const V3d atCenter = pose.pointAt(place);
            CameraPose nearer = pose;
            nearer.distance *= 1.5;
            const V3d behind = nearer.pointAt(place);
            moved.dolly(place, factor);
            moved.projection = projectionOf(GetParam(), moved.orthographicWidth);
            expectNear(placeOf(moved, atCenter), place, 1e-9);
            expectNear(placeOf(moved, behind), place, 1e-9);
        }
    }
}

TEST_P(CameraPoseTest, dollyMakesThingsLargerByItsFactor) {
    const V3d aside = pose.pointAt({0.1, 0.0});
    const V2d middle = placeOf(pose, pose.centerOfInterest());
    pose.dolly(middle, 3.0);
    updateProjection();
    EXPECT_NEAR(placeOf(pose, aside).x - middle.x, 3.0 * (0.1 - middle.x), 1e-9);
}

TEST_P(CameraPoseTest, dollyAndItsReverseCancel) {
    const CameraPose before = pose;
    pose.dolly({0.5, 0.25}, 5.0);
    updateProjection();
    pose.dolly({0.5, 0.25}, 0.2);
    EXPECT_TRUE(pose.cameraToWorld.equalWithAbsError(before.cameraToWorld, 1e-9));
    EXPECT_NEAR(pose.distance, before.distance, 1e-9);
    EXPECT_NEAR(pose.orthographicWidth, before.orthographicWidth, 1e-9);
}

TEST_P(CameraPoseTest, dollyNeverReachesWhatItGoesTo) {
    for (int i = 0; i < 300; ++i) {
        pose.dolly({0.2, 0.2}, 10.0);
        updateProjection();
        ASSERT_GT(pose.distance, 0.0);
        ASSERT_GT(pose.orthographicWidth, 0.0);
    }
    for (int i = 0; i < 300; ++i) {
        pose.dolly({0.2, 0.2}, 0.1);
        updateProjection();
        ASSERT_LE(std::max(pose.distance, pose.orthographicWidth), 1e12);
    }
}

TEST_P(CameraPoseTest, dollyStaysFiniteHoweverFarTheCameraStrayed) {
    pose.cameraToWorld = pose.cameraToWorld * M44d().setTranslation(V3d(1e20, 0.0, 0.0));
    pose.dolly({0.2, 0.2}, 2.0);
    EXPECT_LE(std::max(pose.distance, pose.orthographicWidth), 1e12);
    EXPECT_TRUE(std::isfinite(pose.cameraToWorld.translation().x));
}

TEST_P(CameraPoseFramingTest, frameContainsAllCornersAndWastesNothing) {
    const struct {
        const char* name;
        Box3d box;
    } boxes[] = {
        {"cube", {V3d(-1), V3d(1)}},
        {"far away", {V3d(1000, 2000, -500), V3d(1001, 2003, -490)}},
        {"flat", {V3d(-5, 0, -2), V3d(5, 0, 2)}},
        {"needle", {V3d(0, -100, 0), V3d(0, 100, 0)}},
        {"tiny", {V3d(1e-6, 0, 0), V3d(2e-6, 1e-6, 1e-6)}},
        {"huge", {V3d(-1e9, 0, -1e9), V3d(1e9, 1e8, 1e9)}},
    };
    for (const auto& [name, box] : boxes) {
        for (const auto& [yaw, pitch] : {std::pair(0, 0), std::pair(85, -80), std::pair(200, 60)}) {
            SCOPED_TRACE(std::string(name) + " from " + std::to_string(yaw) + ", " +
                         std::to_string(pitch));
            CameraPose framed = pose;
            framed.orbit(yaw, pitch);
            framed.frame(box);
            framed.projection = projectionOf(GetParam(), framed.orthographicWidth);
            double reach = 0.0;
            double nearest = 1e300;
            for (int corner = 0; corner < 8; ++corner) {
                const V3d point(corner & 1 ? box.max.x : box.min.x,
                                corner & 2 ? box.max.y : box.min.y,
                                corner & 4 ? box.max.z : box.min.z);
                const V2d place = placeOf(framed, point);
                reach = std::max({reach, std::abs(place.x), std::abs(place.y)});
                nearest = std::min(nearest, -inCamera(framed, point).z);
            }
            EXPECT_GT(nearest, 0.0);
            EXPECT_LE(reach, CameraPose::kFill + 1e-6);
            const double radius = box.size().length() / 2.0;
            if (!GetParam().isPerspective || nearest > CameraPose::kClearance * radius * 1.001) {
                EXPECT_NEAR(reach, CameraPose::kFill, 1e-6);
            }
        }
    }
}

TEST_P(CameraPoseTest, frameKeepsTheDirection) {
    const M44d before = pose.cameraToWorld;
    pose.frame({V3d(3, 4, 5), V3d(6, 6, 6)});
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            EXPECT_NEAR(pose.cameraToWorld[row][column], before[row][column], 1e-12);
        }
    }
}

TEST_P(CameraPoseTest, frameOfALineSeenEndOnHasASize) {
    pose.cameraToWorld = M44d();
    pose.frame({V3d(0, 0, -5), V3d(0, 0, 5)});
    EXPECT_GT(pose.orthographicWidth, 1e-4);
    EXPECT_GT(pose.distance, 5.0);
}

TEST_P(CameraPoseTest, frameOfAPointStepsBackALittle) {
    pose.frame({V3d(5), V3d(5)});
    EXPECT_LT((pose.cameraToWorld.translation() - V3d(5)).length(), 1.0);
    EXPECT_GT(pose.distance, 0.0);
}

TEST(CameraPose, rigidLeavesScaleAndShearOut) {
    M44d rotation;
    rotation.setEulerAngles(V3d(0.3, 0.5, 0.7));
    const M44d place = M44d().setTranslation(V3d(1, 2, 3));
    const M44d expected = rotation * place;
    for (const V3d& scale : {V3d(1), V3d(2, 3, 4), V3d(1e-6), V3d(1, 0, 1)}) {
        const M44d scaled = M44d().setScale(scale) * expected;
        EXPECT_TRUE(CameraPose::rigid(scaled).equalWithAbsError(expected, 1e-12)) << scale;
    }
}

TEST(CameraPose, rigidOfAFlatTransformKeepsThePlaceAlone) {
    const M44d place = M44d().setTranslation(V3d(1, 2, 3));
    EXPECT_EQ(CameraPose::rigid(M44d().setScale(0.0) * place), place);
}

} // namespace
