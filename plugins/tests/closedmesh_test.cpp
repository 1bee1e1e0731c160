#include "scene/closedmesh.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <utility>

namespace {

using namespace Bundled;

/// A tetrahedron around (1, 1, 1) * `at`, front sides outwards, each side with corners of its own.
MeshData tetrahedron(float at = 0.0f) {
    const Imath::V3f corners[] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    const int sides[4][3] = {{0, 2, 1}, {0, 1, 3}, {0, 3, 2}, {1, 2, 3}};
    MeshData mesh;
    for (const auto& side : sides) {
        for (const int corner : side) {
            mesh.triangles.push_back(static_cast<std::uint32_t>(mesh.vertices.size()));
            mesh.vertices.emplace_back();
            mesh.vertices.back().position = corners[corner] + Imath::V3f(at);
        }
    }
    return mesh;
}

MeshData together(MeshData first, const MeshData& second) {
    const auto shift = static_cast<std::uint32_t>(first.vertices.size());
    first.vertices.insert(first.vertices.end(), second.vertices.begin(), second.vertices.end());
    for (const std::uint32_t index : second.triangles) {
        first.triangles.push_back(index + shift);
    }
    return first;
}

MeshData insideOut(MeshData mesh) {
    for (std::size_t i = 0; i < mesh.triangles.size(); i += 3) {
        std::swap(mesh.triangles[i], mesh.triangles[i + 1]);
    }
    return mesh;
}

TEST(ClosedMesh, solidWithItsFrontSidesOutwardsIsClosed) {
    EXPECT_TRUE(isClosedOutwards(tetrahedron()));
    EXPECT_TRUE(isClosedOutwards(tetrahedron(1000.0f))) << "wherever it is";
}

TEST(ClosedMesh, withoutTrianglesIsNot) {
    EXPECT_FALSE(isClosedOutwards(MeshData()));
}

TEST(ClosedMesh, aMissingSideIsSeen) {
    MeshData mesh = tetrahedron();
    mesh.triangles.resize(9);
    EXPECT_FALSE(isClosedOutwards(mesh));
}

TEST(ClosedMesh, aSideTurnedRoundIsSeen) {
    MeshData mesh = tetrahedron();
    std::swap(mesh.triangles[0], mesh.triangles[1]);
    EXPECT_FALSE(isClosedOutwards(mesh));
}

TEST(ClosedMesh, insideOutIsNotOutwards) {
    EXPECT_FALSE(isClosedOutwards(insideOut(tetrahedron())));
}

TEST(ClosedMesh, everyPartCounts) {
    EXPECT_TRUE(isClosedOutwards(together(tetrahedron(), tetrahedron(3.0f))));
    EXPECT_FALSE(isClosedOutwards(together(tetrahedron(), insideOut(tetrahedron(3.0f)))));
    // The big one's volume does not make up for the small one's.
    MeshData big = tetrahedron(3.0f);
    for (MeshData::Vertex& vertex : big.vertices) {
        vertex.position *= 10.0f;
    }
    EXPECT_FALSE(isClosedOutwards(together(big, insideOut(tetrahedron()))));
}

TEST(ClosedMesh, bothZerosAreOnePlace) {
    MeshData mesh = tetrahedron();
    for (std::size_t i = 0; i < mesh.vertices.size(); i += 2) {
        for (int axis = 0; axis < 3; ++axis) {
            if (mesh.vertices[i].position[axis] == 0.0f) {
                mesh.vertices[i].position[axis] = -0.0f;
            }
        }
    }
    EXPECT_TRUE(isClosedOutwards(mesh));
}

} // namespace
