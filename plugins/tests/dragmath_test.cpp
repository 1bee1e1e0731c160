#include "manipulator/dragmath.h"
#include "manipulator/picturespace.h"
#include "support/cameras.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

// What a drag grasps, against plain geometry.
namespace {

using Bundled::alongAxis;
using Bundled::angleAround;
using Bundled::onPlane;
using Bundled::PictureSpace;
using Bundled::Ray;
using Bundled::roundStep;
using Bundled::snapped;
using Imath::M44d;
using Imath::V2i;
using Imath::V3d;
using TestCameras::kHeight;
using TestCameras::kWidth;
using TestCameras::orthographic;
using TestCameras::perspective;
using TestCameras::seenAt;

/// A camera that stands somewhere and is turned.
M44d someView() {
    return (M44d().setEulerAngles(V3d(0.3, -0.8, 0.1)) * M44d().setTranslation(V3d(4, 5, 6)))
        .inverse();
}

double distanceTo(const Ray& ray, const V3d& point) {
    return (point - ray.origin).cross(ray.direction).length();
}

class PictureSpaces : public testing::TestWithParam<M44d> {};

INSTANTIATE_TEST_SUITE_P(Projections, PictureSpaces, testing::Values(perspective(), orthographic()),
                         [](const auto& row) {
                             return row.param[2][3] != 0.0 ? "perspective" : "orthographic";
                         });

TEST_P(PictureSpaces, rayOfAPixelPassesThroughWhatIsSeenThere) {
    const M44d view = someView();
    const PictureSpace space(view, GetParam(), kWidth, kHeight);
    std::mt19937 random(7);
    std::uniform_int_distribution<int> across(-50, kWidth + 50);
    std::uniform_int_distribution<int> down(-50, kHeight + 50);
    std::uniform_real_distribution<double> depth(1.0, 100.0);
    for (int i = 0; i < 200; ++i) {
        const V2i pixel(across(random), down(random));
        const Ray ray = space.rayAt(pixel);
        EXPECT_NEAR(ray.direction.length(), 1.0, 1e-12);
        const Imath::V2d seen =
            seenAt(view, GetParam(), ray.origin + ray.direction * depth(random));
        EXPECT_NEAR(seen.x, pixel.x + 0.5, 1e-8);
        EXPECT_NEAR(seen.y, pixel.y + 0.5, 1e-8);
    }
}

TEST_P(PictureSpaces, pixelLengthIsThatOfTwoPointsAPixelApart) {
    const M44d view = someView();
    const PictureSpace space(view, GetParam(), kWidth, kHeight);
    const V3d point = V3d(2.0, -1.0, -12.0) * view.inverse();
    V3d up;
    view.inverse().multDirMatrix(V3d(0, 1, 0), up);
    const Imath::V2d from = seenAt(view, GetParam(), point);
    const Imath::V2d to =
        seenAt(view, GetParam(), point + up.normalized() * space.pixelLengthAt(point));
    EXPECT_NEAR(from.y - to.y, 1.0, 1e-9);
    EXPECT_NEAR(from.x, to.x, 1e-9);
}

TEST(PictureSpace, pointBehindThePerspectiveCameraHasNoPixelLength) {
    const PictureSpace space(M44d(), perspective(), kWidth, kHeight);
    EXPECT_GT(space.pixelLengthAt({0, 0, -1}), 0.0);
    EXPECT_EQ(space.pixelLengthAt({0, 0, 0}), 0.0);
    EXPECT_EQ(space.pixelLengthAt({0, 0, 1}), 0.0);
}

TEST_P(PictureSpaces, directionsAreThoseOfThePicture) {
    const M44d view = someView();
    const PictureSpace space(view, GetParam(), kWidth, kHeight);
    const V3d point = V3d(2.0, -1.0, -12.0) * view.inverse();
    const Imath::V2d from = seenAt(view, GetParam(), point);
    const Imath::V2d right = seenAt(view, GetParam(), point + space.right()) - from;
    const Imath::V2d up = seenAt(view, GetParam(), point + space.up()) - from;
    EXPECT_GT(right.x, 1.0);
    EXPECT_NEAR(right.y, 0.0, 1e-9);
    EXPECT_LT(up.y, -1.0);
    EXPECT_NEAR(up.x, 0.0, 1e-9);
    EXPECT_NEAR((space.up().cross(space.right()) - space.forward()).length(), 0.0, 1e-12);
}

TEST(PictureSpace, sightIsFromThePlaceOfAPerspectiveCameraAndAlongAnOrthographicOne) {
    const V3d point(3, 0, -3);
    const V3d across = PictureSpace(M44d(), perspective(), kWidth, kHeight).sightTo(point);
    EXPECT_NEAR(across.x, std::sqrt(0.5), 1e-12);
    EXPECT_EQ(PictureSpace(M44d(), orthographic(), kWidth, kHeight).sightTo(point), V3d(0, 0, -1));
}

TEST(DragMath, alongAxisIsThePointOfTheAxisThatIsNearestToTheRay) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> any(-5.0, 5.0);
    const auto point = [&] { return V3d(any(random), any(random), any(random)); };
    int found = 0;
    for (int i = 0; i < 500; ++i) {
        const Ray ray{point(), point().normalized()};
        const V3d origin = point();
        const V3d axis = point().normalized();
        const auto distance = alongAxis(ray, origin, axis);
        if (!distance) {
            continue;
        }
        ++found;
        const double nearest = distanceTo(ray, origin + axis * *distance);
        for (const double off : {-1e-3, 1e-3}) {
            EXPECT_GE(distanceTo(ray, origin + axis * (*distance + off)), nearest);
        }
    }
    EXPECT_GT(found, 150) << "half of them lie behind";
}

TEST(DragMath, nothingIsGraspedWhereTheAxisPointsAtTheCameraOrLiesBehindIt) {
    const Ray ray{{0, 0, 10}, {0, 0, -1}};
    EXPECT_EQ(alongAxis(ray, {0, 0, 0}, {0, 0, 1}), std::nullopt);
    EXPECT_EQ(alongAxis(ray, {0, 0, 0}, V3d(0.01, 0, 1).normalized()), std::nullopt);
    EXPECT_EQ(alongAxis(ray, {2, 0, 11}, {1, 0, 0}), std::nullopt);
    EXPECT_NEAR(alongAxis(ray, {2, 0, 9}, {1, 0, 0}).value(), -2.0, 1e-12);
}

TEST(DragMath, onPlaneIsWhereTheRayMeetsIt) {
    const Ray ray{{1, 2, 10}, V3d(0, 3, -4) / 5.0};
    const V3d met = onPlane(ray, {7, 7, 2}, {0, 0, 1}).value();
    EXPECT_NEAR((met - V3d(1, 8, 2)).length(), 0.0, 1e-12);
}

TEST(DragMath, nothingIsGraspedOfAPlaneThatIsSeenFromItsEdgeOrLiesBehind) {
    const Ray ray{{0, 0, 10}, {0, 0, -1}};
    EXPECT_EQ(onPlane(ray, {0, 0, 0}, {1, 0, 0}), std::nullopt);
    EXPECT_EQ(onPlane(ray, {0, 0, 0}, V3d(1, 0, 0.01).normalized()), std::nullopt);
    EXPECT_EQ(onPlane(ray, {0, 0, 11}, {0, 0, 1}), std::nullopt);
}

TEST(DragMath, anglesCountCounterClockwiseSeenFromTheAxissTip) {
    const struct {
        const char* name;
        V3d axis, from, to;
        double degrees;
    } rows[] = {
        {"x to y around z", {0, 0, 1}, {1, 0, 0}, {0, 1, 0}, 90},
        {"x to y around -z", {0, 0, -1}, {1, 0, 0}, {0, 1, 0}, -90},
        {"z to x around y", {0, 1, 0}, {0, 0, 1}, {1, 0, 0}, 90},
        {"heights do not count", {0, 0, 1}, {2, 0, 9}, {0, 3, -4}, 90},
        {"half a turn", {0, 0, 1}, {1, 0, 0}, {-1, 0, 0}, 180},
        {"nothing but height", {0, 0, 1}, {0, 0, 1}, {1, 0, 0}, 0},
    };
    for (const auto& row : rows) {
        EXPECT_NEAR(angleAround(row.axis, row.from, row.to), row.degrees, 1e-12) << row.name;
    }
}

TEST(DragMath, stepsAreRoundNumbers) {
    const struct {
        double length, step;
    } rows[] = {{1.0, 1.0}, {1.9, 1.0}, {2.0, 2.0}, {4.99, 2.0},  {5.0, 5.0},
                {9.9, 5.0}, {0.3, 0.2}, {0.2, 0.2}, {0.06, 0.05}, {7e6, 5e6}};
    for (const auto& row : rows) {
        EXPECT_NEAR(roundStep(row.length) / row.step, 1.0, 1e-9) << row.length;
    }
    EXPECT_EQ(snapped(1.3, 0.5), 1.5);
    EXPECT_EQ(snapped(-1.3, 0.5), -1.5);
    EXPECT_EQ(snapped(1.3, 0.0), 1.3);
}

TEST(DragMath, whatIsNoStepLeavesValuesAsTheyAre) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const double step : {-0.5, kInfinity, -kInfinity, std::nan(""), 1e-320}) {
        EXPECT_EQ(snapped(1.3, step), 1.3) << step;
    }
}

TEST(DragMath, lineOfAnOrthographicCameraMeetsWhatIsBehindItsPlane) {
    const PictureSpace space(M44d(), orthographic(), kWidth, kHeight);
    const Ray line = space.rayAt({kWidth / 2, kHeight / 2});
    const V3d behind(0, 0, 50);
    EXPECT_NEAR(onPlane(line, behind, {0, 0, 1}).value().z, 50.0, 1e-9);
    EXPECT_NEAR(alongAxis(line, behind, {1, 0, 0}).value(), line.origin.x, 1e-9);
    const Ray ray = PictureSpace(M44d(), perspective(), kWidth, kHeight).rayAt({0, 0});
    EXPECT_FALSE(onPlane(ray, behind, {0, 0, 1}));
    EXPECT_FALSE(alongAxis(ray, behind, {1, 0, 0}));
}

} // namespace
