#include "scene/meshbuilder.h"

#include "support/geometries.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/StringAttribute.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace Bundled;
using namespace VlAttribute;
using Imath::V2f;
using Imath::V3f;

MeshData build(const GroupAttribute& location) {
    const auto kind = Geometry::kindOf(location);
    EXPECT_TRUE(kind.has_value());
    const GroupAttribute geometry{location.getChildByName("geometry")};
    return buildMesh(Geometry::fromAttributes(geometry, kind.value_or(GeometryKind::Mesh)));
}

GroupAttribute with(const GroupAttribute& location, const char* name, const Attribute& value) {
    GroupBuilder builder;
    builder.update(location);
    builder.set(name, value);
    return builder.build();
}

TEST(MeshBuilder, cubeWithoutNormalsHasThreeVerticesACorner) {
    const MeshData mesh = build(cubeLocation());
    EXPECT_EQ(mesh.vertices.size(), 24u);
    EXPECT_EQ(mesh.triangles.size(), 36u);
}

TEST(MeshBuilder, flatMeshWithoutNormalsSharesItsVertices) {
    const MeshData mesh =
        build(meshLocation({0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0}, {{0, 1, 2}, {0, 2, 3}}));
    EXPECT_EQ(mesh.vertices.size(), 4u);
}

TEST(MeshBuilder, keepsNormalsAndTextureCoordinatesThatAreThere) {
    GroupAttribute location = meshLocation({0, 0, 0, 1, 0, 0, 0, 1, 0}, {{0, 1, 2}});
    location = with(location, "geometry.point.N", FloatAttribute({1, 0, 0, 0, 1, 0, 0, 0, 1}, 3));
    location = with(location, "geometry.point.st", FloatAttribute({0, 0, 1, 0, 0, 1}, 2));
    const MeshData mesh = build(location);
    ASSERT_EQ(mesh.vertices.size(), 3u);
    EXPECT_EQ(mesh.vertices[1].normal, V3f(0, 1, 0));
    EXPECT_EQ(mesh.vertices[2].st, V2f(0, 1));
    EXPECT_EQ(mesh.vertices[0].color, V3f(1, 1, 1));
}

TEST(MeshBuilder, normalsOfTheWrongLengthCountAsMissing) {
    GroupAttribute location = meshLocation({0, 0, 0, 1, 0, 0, 0, 1, 0}, {{0, 1, 2}});
    location = with(location, "geometry.point.N", FloatAttribute({1, 0, 0}, 3));
    EXPECT_EQ(build(location).vertices[0].normal, V3f(0, 0, 1));
}

TEST(MeshBuilder, polygonsOfTwoPointsAreLinesAndOfOneAreDots) {
    const MeshData mesh =
        build(meshLocation({0, 0, 0, 1, 0, 0, 0, 1, 0}, {{0, 1}, {2}, {0, 1, 2}, {}}));
    EXPECT_EQ(mesh.lines.size(), 2u);
    EXPECT_EQ(mesh.points.size(), 1u);
    EXPECT_EQ(mesh.triangles.size(), 3u);
}

TEST(MeshBuilder, pointsLocationIsDots) {
    const GroupAttribute location{
        {"type", StringAttribute("points")},
        {"geometry",
         GroupAttribute{{"point", GroupAttribute{{"P", FloatAttribute({1, 2, 3, 4, 5, 6}, 3)}}}}}};
    const MeshData mesh = build(location);
    EXPECT_EQ(mesh.points.size(), 2u);
    EXPECT_EQ(mesh.vertices[1].position, V3f(4, 5, 6));
}

TEST(MeshBuilder, weightedPointsAreMultipliedByTheirWeight) {
    const GroupAttribute location{
        {"type", StringAttribute("points")},
        {"geometry",
         GroupAttribute{{"point", GroupAttribute{{"Pw", FloatAttribute({1, 2, 3, 2}, 4)}}}}}};
    EXPECT_EQ(build(location).vertices[0].position, V3f(2, 4, 6));
}

TEST(MeshBuilder, polygonsThatNamePointsThatDoNotExistGiveNothing) {
    const MeshData mesh = build(meshLocation({0, 0, 0, 1, 0, 0, 0, 1, 0}, {{0, 1, 3}}));
    EXPECT_TRUE(mesh.triangles.empty());
}

TEST(MeshBuilder, leavesOutPolygonsWithPointsThatAreNotFinite) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const MeshData mesh =
        build(meshLocation({0, 0, 0, 1, 0, 0, 0, 1, 0, nan, 0, 0}, {{0, 1, 2}, {1, 2, 3}}));
    EXPECT_EQ(mesh.triangles.size(), 3u);
}

TEST(Geometry, boundsLeaveOutPointsThatAreNotFinite) {
    const float infinity = std::numeric_limits<float>::infinity();
    const GroupAttribute location = meshLocation({0, 0, 0, 1, 2, 3, infinity, 0, 0}, {{0, 1, 2}});
    const Geometry geometry = Geometry::fromAttributes(
        GroupAttribute(location.getChildByName("geometry")), GeometryKind::Mesh);
    EXPECT_EQ(geometry.bounds, Imath::Box3d({0, 0, 0}, {1, 2, 3}));
}

TEST(Geometry, samePointsAsMeshAndAsDotsDiffer) {
    const GroupAttribute geometry{cubeLocation().getChildByName("geometry")};
    EXPECT_NE(Geometry::contentOf(geometry, GeometryKind::Mesh),
              Geometry::contentOf(geometry, GeometryKind::Points));
}

TEST(Geometry, locationWithoutPointsHasNothingToDraw) {
    EXPECT_FALSE(Geometry::kindOf(GroupAttribute::Empty()).has_value());
    EXPECT_FALSE(Geometry::kindOf(GroupAttribute()).has_value());
    const GroupAttribute camera{{"type", StringAttribute("camera")},
                                {"geometry", GroupAttribute{{"fov", DoubleAttribute(40.0)}}}};
    EXPECT_FALSE(Geometry::kindOf(camera).has_value());
}

} // namespace
