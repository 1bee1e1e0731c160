#include "scene/wirebuilder.h"

#include "support/geometries.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <vector>

namespace {

using namespace Bundled;
using VlAttribute::GroupAttribute;
using Indices = std::vector<std::uint32_t>;

MeshData build(const GroupAttribute& location) {
    const GroupAttribute geometry{location.getChildByName("geometry")};
    return buildWires(Geometry::fromAttributes(geometry, GeometryKind::Mesh));
}

TEST(WireBuilder, cubeHasTwelveEdgesAndNoDiagonals) {
    const MeshData wires = build(cubeLocation());
    ASSERT_EQ(wires.lines.size(), 2 * 12u);
    for (std::size_t i = 0; i < wires.lines.size(); i += 2) {
        const Imath::V3f along =
            wires.vertices[wires.lines[i + 1]].position - wires.vertices[wires.lines[i]].position;
        EXPECT_FLOAT_EQ(along.length(), 1.0f) << "edge " << i / 2;
    }
    EXPECT_EQ(wires.points.size(), 8u);
    EXPECT_TRUE(wires.triangles.empty());
}

TEST(WireBuilder, edgeThatPolygonsShareIsThereOnceWhateverItsDirection) {
    const std::vector<float> square{0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
    const Indices expected{0, 1, 0, 2, 0, 3, 1, 2, 2, 3};
    EXPECT_EQ(build(meshLocation(square, {{0, 1, 2}, {0, 2, 3}})).lines, expected);
    EXPECT_EQ(build(meshLocation(square, {{0, 1, 2}, {3, 2, 0}})).lines, expected);
    EXPECT_EQ(build(meshLocation(square, {{0, 1, 2}, {0, 2, 3}, {2, 1, 0}})).lines, expected);
}

TEST(WireBuilder, polygonsOfTwoPointsAreAnEdgeAndOfOneNone) {
    const MeshData wires = build(meshLocation({0, 0, 0, 1, 0, 0, 2, 0, 0}, {{0, 1}, {2}, {}}));
    EXPECT_EQ(wires.lines, (Indices{0, 1}));
    EXPECT_EQ(wires.points, (Indices{0, 1, 2}));
}

TEST(WireBuilder, edgeFromAPointToItselfIsNone) {
    EXPECT_EQ(build(meshLocation({0, 0, 0, 1, 0, 0}, {{0, 0, 1}})).lines, (Indices{0, 1}));
}

TEST(WireBuilder, leavesOutEdgesAndPointsThatAreNotFinite) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const MeshData wires = build(meshLocation({0, 0, 0, 1, 0, 0, nan, 1, 0}, {{0, 1, 2}}));
    EXPECT_EQ(wires.lines, (Indices{0, 1}));
    EXPECT_EQ(wires.points, (Indices{0, 1}));
}

TEST(WireBuilder, polygonsThatNamePointsThatDoNotExistGiveNoEdges) {
    const MeshData wires = build(meshLocation({0, 0, 0, 1, 0, 0, 0, 1, 0}, {{0, 1, 3}}));
    EXPECT_TRUE(wires.lines.empty());
    EXPECT_EQ(wires.points.size(), 3u);
}

TEST(WireBuilder, pointsKeepTheirColours) {
    VlAttribute::GroupBuilder builder;
    builder.update(meshLocation({0, 0, 0, 1, 0, 0}, {{0, 1}}));
    builder.set("geometry.point.color", VlAttribute::FloatAttribute({1, 0, 0, 0, 0, 1}, 3));
    EXPECT_EQ(build(builder.build()).vertices[1].color, Imath::V3f(0, 0, 1));
}

} // namespace
