#include "manipulator/shapes.h"

#include <Imath/ImathBox.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

// The shapes of handles, in lengths of a gizmo.
namespace {

using Bundled::arrowShape;
using Bundled::ballShape;
using Bundled::boxShape;
using Bundled::coneRimShape;
using Bundled::coneShape;
using Bundled::cubeShape;
using Bundled::ringShape;
using Bundled::sectorShape;
using Bundled::Shape;
using Bundled::ShapeVertex;
using Bundled::squareShape;
using Imath::V3f;

Imath::Box3f boxOf(const Shape& shape) {
    Imath::Box3f box;
    for (const ShapeVertex& vertex : shape) {
        box.extendBy(vertex.position);
    }
    return box;
}

TEST(Shapes, areTrianglesWithNormalsOfLengthOne) {
    const struct {
        const char* name;
        Shape shape;
    } rows[] = {{"arrow", arrowShape()},   {"thick arrow", arrowShape(0.05f)},
                {"box", boxShape()},       {"ring", ringShape(1.0f, 0.1f)},
                {"square", squareShape()}, {"ball", ballShape(0.5f)}};
    for (const auto& row : rows) {
        ASSERT_FALSE(row.shape.empty()) << row.name;
        EXPECT_EQ(row.shape.size() % 3, 0u) << row.name;
        for (const ShapeVertex& vertex : row.shape) {
            EXPECT_NEAR(vertex.normal.length(), 1.0f, 1e-5f) << row.name;
        }
    }
}

TEST(Shapes, ballIsRoundAndItsNormalsPointOutwards) {
    for (const ShapeVertex& vertex : ballShape(0.5f)) {
        EXPECT_NEAR(vertex.position.length(), 0.5f, 1e-5f);
        EXPECT_GT(vertex.position.dot(vertex.normal), 0.45f);
    }
}

TEST(Shapes, arrowLiesAlongXUpToOneAndOffTheMiddle) {
    const Imath::Box3f box = boxOf(arrowShape());
    EXPECT_NEAR(box.max.x, 1.0f, 1e-6f);
    EXPECT_GT(box.min.x, 0.1f) << "where the ball is";
    EXPECT_NEAR(box.max.y, -box.min.y, 1e-5f);
    EXPECT_LT(box.max.y, 0.1f);
}

TEST(Shapes, squareStandsUprightOnXInThePositiveQuarter) {
    const Imath::Box3f box = boxOf(squareShape());
    EXPECT_EQ(box.min.x, 0.0f);
    EXPECT_EQ(box.max.x, 0.0f);
    EXPECT_GT(box.min.y, 0.0f);
    EXPECT_GT(box.min.z, 0.0f);
}

TEST(Shapes, ringLiesAroundXAndItsNormalsPointOutwards) {
    for (const ShapeVertex& vertex : ringShape(1.0f, 0.1f)) {
        const V3f& at = vertex.position;
        const V3f core = V3f(0.0f, at.y, at.z).normalized();
        EXPECT_NEAR((at - core).length(), 0.1f, 1e-5f);
        EXPECT_GT((at - core).dot(vertex.normal), 0.08f);
    }
}

TEST(Shapes, sectorSweepsFromYTowardsZ) {
    const struct {
        double degrees, area;
    } rows[] = {{0, 0}, {90, M_PI / 4}, {-90, -M_PI / 4}, {200, M_PI * 200 / 360}, {360, M_PI}};
    for (const auto& row : rows) {
        const Shape shape = sectorShape(row.degrees);
        double area = 0.0;
        for (std::size_t i = 0; i < shape.size(); i += 3) {
            const V3f a = shape[i + 1].position - shape[i].position;
            const V3f b = shape[i + 2].position - shape[i].position;
            area += 0.5 * a.cross(b).x;
        }
        EXPECT_NEAR(area, row.area, 0.01) << row.degrees;
    }
    const Shape quarter = sectorShape(90);
    EXPECT_NEAR((quarter[1].position - V3f(0, 1, 0)).length(), 0.0f, 1e-6f);
    EXPECT_NEAR((quarter.back().position - V3f(0, 0, 1)).length(), 0.0f, 1e-6f);
}

TEST(Shapes, cubesNormalsPointOutwards) {
    const V3f centre(1.0f, 2.0f, 3.0f);
    for (const ShapeVertex& vertex : cubeShape(centre, 0.5f)) {
        EXPECT_NEAR((vertex.position - centre).dot(vertex.normal), 0.5f, 1e-6f);
    }
}

TEST(Shapes, boxStandsAtTheEndOfItsStick) {
    const Imath::Box3f box = boxOf(boxShape());
    EXPECT_NEAR(box.max.x, 1.0f, 1e-6f);
    EXPECT_GT(box.min.x, 0.1f) << "where the cube in the middle is";
    EXPECT_NEAR(box.max.y, -box.min.y, 1e-5f);
}

TEST(Shapes, whatIsGraspedReachesBeyondWhatIsSeenOnAllSides) {
    const Imath::Box3f arrow = boxOf(arrowShape());
    const Imath::Box3f graspedArrow = boxOf(arrowShape(0.05f));
    EXPECT_GT(graspedArrow.max.x, arrow.max.x);
    EXPECT_GT(graspedArrow.max.y, arrow.max.y);
    EXPECT_LT(graspedArrow.min.z, arrow.min.z);
    const Imath::Box3f square = boxOf(squareShape());
    const Imath::Box3f graspedSquare = boxOf(squareShape(0.03f));
    EXPECT_GT(graspedSquare.max.y, square.max.y);
    EXPECT_LT(graspedSquare.min.z, square.min.z);
}

TEST(Shapes, conesHaveSidesOfLengthOneWhateverTheirAngle) {
    constexpr float kTube = 0.01f;
    for (const double halfAngle : {0.0, 10.0, 45.0, 90.0, 120.0}) {
        const double radians = halfAngle * M_PI / 180.0;
        const V3f rim(static_cast<float>(std::cos(radians)), static_cast<float>(std::sin(radians)),
                      0.0f);
        for (const ShapeVertex& vertex : coneRimShape(halfAngle, kTube)) {
            const V3f flat(vertex.position.x, std::hypot(vertex.position.y, vertex.position.z),
                           0.0f);
            EXPECT_NEAR((flat - rim).length(), kTube, 1e-5f) << halfAngle;
        }
        const Imath::Box3f cone = boxOf(coneShape(halfAngle, kTube));
        EXPECT_NEAR(cone.max.x, std::max(rim.x, 0.0f), 2 * kTube) << halfAngle;
        EXPECT_NEAR(cone.min.x, std::min(rim.x, 0.0f), 2 * kTube) << halfAngle;
        EXPECT_NEAR(cone.max.y, rim.y, 2 * kTube) << halfAngle;
    }
}

} // namespace
