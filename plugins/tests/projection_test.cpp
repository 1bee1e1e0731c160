#include "camera/projection.h"

#include <Imath/ImathVec.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace {

using namespace Bundled;
using Imath::M44d;
using Imath::V3d;
using Imath::V4d;

/// Doubles, a few operations: far below this, and far above rounding.
constexpr double kTolerance = 1e-9;

V3d project(const V3d& point, const M44d& projection) {
    const V4d clip = V4d(point.x, point.y, point.z, 1.0) * projection;
    return V3d(clip.x, clip.y, clip.z) / clip.w;
}

void expectNear(const V3d& found, const V3d& wanted, double tolerance = kTolerance) {
    EXPECT_NEAR(found.x, wanted.x, tolerance);
    EXPECT_NEAR(found.y, wanted.y, tolerance);
    EXPECT_NEAR(found.z, wanted.z, tolerance);
}

TEST(PerspectiveProjection, fieldOfViewIsTheVerticalAngle) {
    Lens lens;
    lens.fov = 60.0;
    lens.aspect = 16.0 / 9.0;
    const double distance = 7.0;
    const double halfHeight = distance * std::tan(30.0 * std::numbers::pi / 180.0);
    const M44d projection = perspectiveProjection(lens);
    EXPECT_NEAR(project({0, halfHeight, -distance}, projection).y, 1.0, kTolerance);
    EXPECT_NEAR(project({halfHeight * lens.aspect, 0, -distance}, projection).x, 1.0, kTolerance);
}

TEST(PerspectiveProjection, nearIsMinusOneAndFarIsOne) {
    Lens lens;
    lens.nearPlane = 0.5;
    lens.farPlane = 200.0;
    const M44d projection = perspectiveProjection(lens);
    EXPECT_NEAR(project({0, 0, -0.5}, projection).z, -1.0, kTolerance);
    EXPECT_NEAR(project({0, 0, -200.0}, projection).z, 1.0, kTolerance);
}

TEST(PerspectiveProjection, screenWindowIsThePartThatFillsThePicture) {
    Lens whole;
    whole.aspect = 2.0;
    Lens quarter = whole;
    quarter.left = 0.0;
    quarter.bottom = 0.0;
    const V3d point(0.6, 0.3, -3.0);
    const V3d inWhole = project(point, perspectiveProjection(whole));
    const V3d inQuarter = project(point, perspectiveProjection(quarter));
    expectNear(inQuarter, V3d(2 * inWhole.x - 1, 2 * inWhole.y - 1, inWhole.z));
}

TEST(PerspectiveProjection, angleIsKeptInRange) {
    Lens lens;
    for (const double fov : {0.0, -10.0, 180.0, 1000.0, std::numeric_limits<double>::infinity(),
                             std::numeric_limits<double>::quiet_NaN()}) {
        lens.fov = fov;
        const M44d projection = perspectiveProjection(lens);
        EXPECT_TRUE(std::isfinite(projection[1][1])) << fov;
        EXPECT_GT(projection[1][1], 0.0) << fov;
    }
}

TEST(OrthographicProjection, widthFillsThePictureAndHeightFollowsTheAspect) {
    Lens lens;
    lens.orthographicWidth = 8.0;
    lens.aspect = 2.0;
    lens.nearPlane = 1.0;
    lens.farPlane = 11.0;
    const M44d projection = orthographicProjection(lens);
    expectNear(project({4, 2, -1}, projection), {1, 1, -1});
    expectNear(project({-4, -2, -11}, projection), {-1, -1, 1});
}

TEST(OrthographicProjection, screenWindowIsThePartThatFillsThePicture) {
    Lens lens;
    lens.orthographicWidth = 8.0;
    lens.right = 0.0;
    lens.top = 0.0;
    const M44d projection = orthographicProjection(lens);
    const V3d corner = project({-4, -4, -1}, projection);
    EXPECT_NEAR(corner.x, -1.0, kTolerance);
    EXPECT_NEAR(corner.y, -1.0, kTolerance);
    EXPECT_NEAR(project({0, 0, -1}, projection).x, 1.0, kTolerance);
}

TEST(Projection, unusableLensesStillGiveFiniteMatrices) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    Lens lens;
    lens.aspect = 0.0;
    lens.left = lens.right = nan;
    lens.top = lens.bottom = 0.5;
    lens.orthographicWidth = 0.0;
    for (const M44d& projection : {perspectiveProjection(lens), orthographicProjection(lens)}) {
        for (int i = 0; i < 16; ++i) {
            EXPECT_TRUE(std::isfinite(projection.getValue()[i])) << i;
        }
        EXPECT_NE(projection.determinant(), 0.0);
    }
}

} // namespace
