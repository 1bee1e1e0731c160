#include "scene/polygons.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace Bundled;
using Imath::V3f;

std::vector<std::int32_t> allOf(const std::vector<V3f>& points) {
    std::vector<std::int32_t> polygon(points.size());
    std::iota(polygon.begin(), polygon.end(), 0);
    return polygon;
}

std::vector<std::uint32_t> cut(const std::vector<V3f>& points) {
    std::vector<std::uint32_t> corners;
    triangulate(allOf(points), points, corners);
    return corners;
}

/// The triangles' areas along the polygon's normal: a triangle outside or turned round makes the
/// sum of absolute values larger than the polygon's area.
float sumOfAreas(const std::vector<V3f>& points, const std::vector<std::uint32_t>& corners) {
    float sum = 0.0f;
    for (std::size_t i = 0; i + 2 < corners.size(); i += 3) {
        const V3f a = points[corners[i + 1]] - points[corners[i]];
        const V3f b = points[corners[i + 2]] - points[corners[i]];
        sum += a.cross(b).length();
    }
    return sum;
}

TEST(Polygons, newellNormalPointsToWhereThePolygonRunsCounterClockwise) {
    const std::vector<V3f> square{{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}};
    EXPECT_EQ(areaNormal(allOf(square), square), V3f(0, 0, 8));
    EXPECT_EQ(areaNormal({}, square), V3f(0.0f));
}

TEST(Polygons, fewerThanThreeCornersGiveNoTriangle) {
    const std::vector<V3f> points{{0, 0, 0}, {1, 0, 0}};
    EXPECT_TRUE(cut(points).empty());
    EXPECT_TRUE(cut({}).empty());
}

struct Shape {
    const char* name;
    std::vector<V3f> points;
};

class PolygonShapes : public testing::TestWithParam<Shape> {};

TEST_P(PolygonShapes, trianglesCoverThePolygonExactly) {
    const auto& points = GetParam().points;
    const auto corners = cut(points);
    EXPECT_EQ(corners.size(), 3 * (points.size() - 2));
    const float area = areaNormal(allOf(points), points).length();
    EXPECT_NEAR(sumOfAreas(points, corners), area, area * 1e-4f);
}

TEST_P(PolygonShapes, trianglesAreWoundAsThePolygon) {
    const auto& points = GetParam().points;
    const auto corners = cut(points);
    const V3f normal = areaNormal(allOf(points), points);
    for (std::size_t i = 0; i < corners.size(); i += 3) {
        const std::vector<std::int32_t> triangle{static_cast<std::int32_t>(corners[i]),
                                                 static_cast<std::int32_t>(corners[i + 1]),
                                                 static_cast<std::int32_t>(corners[i + 2])};
        EXPECT_GE(areaNormal(triangle, points).dot(normal), 0.0f);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Polygons, PolygonShapes,
    testing::Values(Shape{"triangle", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}},
                    Shape{"quad", {{0, 0, 5}, {1, 0, 5}, {1, 1, 5}, {0, 1, 5}}},
                    Shape{"quadSeenFromBelow", {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}, {1, 0, 0}}},
                    Shape{"arrowhead", {{0, 0, 0}, {4, 2, 0}, {0, 4, 0}, {1, 2, 0}}},
                    Shape{"arrowheadFromItsNotch", {{1, 2, 0}, {0, 0, 0}, {4, 2, 0}, {0, 4, 0}}},
                    Shape{"comb",
                          {{0, 0, 0},
                           {0, 0, 6},
                           {0, 3, 6},
                           {0, 1, 5},
                           {0, 3, 4},
                           {0, 1, 3},
                           {0, 3, 2},
                           {0, 1, 1},
                           {0, 3, 0}}},
                    Shape{"uInTheGround",
                          {{0, 0, 0},
                           {0, 0, 3},
                           {1, 0, 3},
                           {1, 0, 1},
                           {2, 0, 1},
                           {2, 0, 3},
                           {3, 0, 3},
                           {3, 0, 0}}},
                    Shape{"collinearRun",
                          {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}, {3, 3, 0}, {0, 3, 0}}}),
    [](const auto& entry) { return std::string(entry.param.name); });

TEST(Polygons, randomStarsAreCoveredExactly) {
    for (unsigned seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        std::uniform_real_distribution<float> radius(0.3f, 3.0f);
        const int count = 4 + static_cast<int>(random() % 30);
        std::vector<V3f> star;
        for (int i = 0; i < count; ++i) {
            const float angle = 2.0f * std::numbers::pi_v<float> * static_cast<float>(i) /
                                static_cast<float>(count);
            const float r = radius(random);
            star.emplace_back(r * std::cos(angle), 0.5f * r * std::cos(angle), r * std::sin(angle));
        }
        const auto corners = cut(star);
        ASSERT_EQ(corners.size(), 3 * (star.size() - 2));
        const float area = areaNormal(allOf(star), star).length();
        EXPECT_NEAR(sumOfAreas(star, corners), area, area * 1e-3f);
    }
}

TEST(Polygons, outlineThatCrossesItselfStillGivesItsTriangles) {
    const std::vector<V3f> bow{{0, 0, 0}, {2, 2, 0}, {2, 0, 0}, {0, 2, 0}, {-1, 1, 0}};
    EXPECT_EQ(cut(bow).size(), 9u);
}

struct Validity {
    const char* name;
    std::vector<std::int32_t> vertices;
    std::vector<std::int32_t> starts;
    bool isValid;
};

TEST(Polygons, validWhenEveryIndexIsInRange) {
    const Validity rows[] = {
        {"one triangle", {0, 1, 2}, {0, 3}, true},
        {"nothing", {}, {}, true},
        {"no polygons", {}, {0}, true},
        {"empty polygon", {0, 1, 2}, {0, 0, 3}, true},
        {"no starts", {0, 1, 2}, {}, false},
        {"index too large", {0, 1, 4}, {0, 3}, false},
        {"negative index", {0, -1, 2}, {0, 3}, false},
        {"end missing", {0, 1, 2}, {0}, false},
        {"end too large", {0, 1, 2}, {0, 4}, false},
        {"falling starts", {0, 1, 2}, {0, 3, 2, 3}, false},
        {"late start", {0, 1, 2}, {1, 3}, false},
        {"negative start", {0, 1, 2}, {0, -1, 3}, false},
    };
    for (const Validity& row : rows) {
        EXPECT_EQ((Polygons{row.vertices, row.starts}.isValid(4)), row.isValid) << row.name;
    }
}

} // namespace
