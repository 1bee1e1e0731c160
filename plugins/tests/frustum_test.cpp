#include "scene/frustum.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

using namespace Bundled;
using Side = Frustum::Side;

Imath::Box3d box(double x, double y, double z, double half) {
    return {Imath::V3d(x - half, y - half, z - half), Imath::V3d(x + half, y + half, z + half)};
}

/// Looks down -z from the origin, 90 degrees both ways, from 1 to 100.
Imath::M44d perspective() {
    const double near = 1.0;
    const double far = 100.0;
    return {1,
            0,
            0,
            0,
            0,
            1,
            0,
            0,
            0,
            0,
            (far + near) / (near - far),
            -1,
            0,
            0,
            2 * far * near / (near - far),
            0};
}

TEST(Frustum, tellsWhereBoxesAre) {
    const Frustum frustum(perspective());
    EXPECT_EQ(frustum.sideOf(box(0, 0, -50, 1)), Side::Inside);
    EXPECT_EQ(frustum.sideOf(box(0, 0, 50, 1)), Side::Outside);
    EXPECT_EQ(frustum.sideOf(box(50, 0, -50, 1)), Side::Across);
    EXPECT_EQ(frustum.sideOf(box(60, 0, -50, 1)), Side::Outside);
    EXPECT_EQ(frustum.sideOf(box(0, -60, -50, 1)), Side::Outside);
    EXPECT_EQ(frustum.sideOf(box(0, 0, -0.5, 0.1)), Side::Outside) << "before the near plane";
    EXPECT_EQ(frustum.sideOf(box(0, 0, -101.5, 1)), Side::Outside) << "behind the far plane";
    EXPECT_EQ(frustum.sideOf(box(0, 0, 0, 1000)), Side::Across) << "around the camera";
}

TEST(Frustum, emptyBoxIsOutside) {
    EXPECT_EQ(Frustum(perspective()).sideOf(Imath::Box3d()), Side::Outside);
}

TEST(Frustum, ofAPartOfThePictureSeesThatPartAlone) {
    const Frustum right(perspective(), 0.5, 1.0, -1.0, 1.0);
    EXPECT_EQ(right.sideOf(box(0, 0, -50, 1)), Side::Outside);
    EXPECT_EQ(right.sideOf(box(37, 0, -50, 1)), Side::Inside);
    EXPECT_EQ(right.sideOf(box(25, 0, -50, 1)), Side::Across);
    const Frustum low(perspective(), -1.0, 1.0, -1.0, -0.5);
    EXPECT_EQ(low.sideOf(box(0, 37, -50, 1)), Side::Outside);
    EXPECT_EQ(low.sideOf(box(0, -37, -50, 1)), Side::Inside);
}

TEST(Frustum, neverMissesAPointThatIsSeen) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> place(-120.0, 120.0);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    int seen = 0;
    for (int round = 0; round < 20000; ++round) {
        const double a = unit(random);
        const double b = unit(random);
        const Frustum part(perspective(), std::min(a, b), std::max(a, b), -0.3, 0.6);
        const Imath::Box3d around = box(place(random), place(random), place(random), 30.0);
        const Imath::V3d point(around.center() +
                               Imath::V3d(unit(random), unit(random), unit(random)) * 30.0);
        const double w = -point.z;
        const bool isSeen = w >= 1.0 && w <= 100.0 && point.x >= std::min(a, b) * w &&
                            point.x <= std::max(a, b) * w && point.y >= -0.3 * w &&
                            point.y <= 0.6 * w;
        const Side side = part.sideOf(around);
        EXPECT_FALSE(isSeen && side == Side::Outside) << round;
        EXPECT_FALSE(!isSeen && side == Side::Inside) << round;
        seen += isSeen ? 1 : 0;
    }
    EXPECT_GT(seen, 100);
}

} // namespace
