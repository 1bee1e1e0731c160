#include "scene/normals.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

namespace {

using namespace Bundled;
using Imath::V3f;

struct Mesh {
    std::vector<V3f> points;
    std::vector<std::int32_t> vertices;
    std::vector<std::int32_t> starts{0};

    void add(std::initializer_list<std::int32_t> polygon) {
        vertices.insert(vertices.end(), polygon);
        starts.push_back(static_cast<std::int32_t>(vertices.size()));
    }
    [[nodiscard]] std::vector<V3f> normals(float crease) const {
        return computeCornerNormals({vertices, starts}, points, crease);
    }
};

Mesh cube() {
    Mesh mesh;
    for (int i = 0; i < 8; ++i) {
        mesh.points.emplace_back(i & 1, i >> 1 & 1, i >> 2 & 1);
    }
    mesh.add({0, 4, 6, 2});
    mesh.add({1, 3, 7, 5});
    mesh.add({0, 1, 5, 4});
    mesh.add({2, 6, 7, 3});
    mesh.add({0, 2, 3, 1});
    mesh.add({4, 5, 7, 6});
    return mesh;
}

Mesh sphere(int rings, int slices) {
    Mesh mesh;
    const float pi = std::numbers::pi_v<float>;
    for (int ring = 1; ring < rings; ++ring) {
        for (int slice = 0; slice < slices; ++slice) {
            const float polar = pi * static_cast<float>(ring) / static_cast<float>(rings);
            const float around = 2 * pi * static_cast<float>(slice) / static_cast<float>(slices);
            mesh.points.emplace_back(std::sin(polar) * std::cos(around), std::cos(polar),
                                     -std::sin(polar) * std::sin(around));
        }
    }
    for (int ring = 0; ring + 2 < rings; ++ring) {
        for (int slice = 0; slice < slices; ++slice) {
            const int next = (slice + 1) % slices;
            mesh.add({ring * slices + slice, (ring + 1) * slices + slice,
                      (ring + 1) * slices + next, ring * slices + next});
        }
    }
    return mesh;
}

TEST(Normals, cubeIsFlatAtACreaseOf45Degrees) {
    const Mesh mesh = cube();
    const auto normals = mesh.normals(45.0f);
    const V3f faces[] = {{-1, 0, 0}, {1, 0, 0}, {0, -1, 0}, {0, 1, 0}, {0, 0, -1}, {0, 0, 1}};
    for (std::size_t corner = 0; corner < normals.size(); ++corner) {
        EXPECT_EQ(normals[corner], faces[corner / 4]);
    }
}

TEST(Normals, cubeIsSmoothAtACreaseOf180Degrees) {
    const Mesh mesh = cube();
    const auto normals = mesh.normals(180.0f);
    for (std::size_t corner = 0; corner < normals.size(); ++corner) {
        const V3f point = mesh.points[static_cast<std::size_t>(mesh.vertices[corner])];
        const V3f outwards = (point - V3f(0.5f)).normalized();
        EXPECT_NEAR(normals[corner].dot(outwards), 1.0f, 1e-5f);
    }
}

TEST(Normals, sphereIsSmoothAtACreaseOf45Degrees) {
    const Mesh mesh = sphere(16, 24);
    const auto normals = mesh.normals(45.0f);
    for (std::size_t corner = 0; corner < normals.size(); ++corner) {
        const V3f point = mesh.points[static_cast<std::size_t>(mesh.vertices[corner])];
        // Within half a ring of the true normal, at the open rims too.
        EXPECT_GT(normals[corner].dot(point), std::cos(0.2f));
    }
}

TEST(Normals, aFlatMeshOfOneSideKeepsItsNormalAtEveryCrease) {
    Mesh mesh;
    mesh.points = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
    mesh.add({0, 1, 2});
    mesh.add({0, 2, 3});
    for (const float crease : {0.0f, 45.0f, 180.0f}) {
        for (const V3f& normal : mesh.normals(crease)) {
            EXPECT_EQ(normal, V3f(0, 0, 1)) << crease;
        }
    }
}

TEST(Normals, polygonsWithoutAreaHaveNone) {
    Mesh mesh;
    mesh.points = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}};
    mesh.add({0, 1, 2});
    mesh.add({0, 1});
    mesh.add({});
    for (const V3f& normal : mesh.normals(45.0f)) {
        EXPECT_EQ(normal, V3f(0.0f));
    }
}

TEST(Normals, oppositePolygonsKeepTheirOwnWhereTheyCancelOut) {
    Mesh mesh;
    mesh.points = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    mesh.add({0, 1, 2});
    mesh.add({2, 1, 0});
    const auto normals = mesh.normals(180.0f);
    EXPECT_EQ(normals[0], V3f(0, 0, 1));
    EXPECT_EQ(normals[3], V3f(0, 0, -1));
}

TEST(Normals, manyPolygonsAtOnePointAreAveragedToo) {
    // A flat fan of 200 triangles around one point, one of them folded up by a right angle.
    Mesh mesh;
    mesh.points.emplace_back(0.0f, 0.0f, 0.0f);
    const int count = 200;
    for (int i = 0; i <= count; ++i) {
        const float angle = std::numbers::pi_v<float> * static_cast<float>(i) / count;
        mesh.points.emplace_back(std::cos(angle), std::sin(angle), 0.0f);
    }
    for (int i = 0; i < count; ++i) {
        mesh.add({0, i + 1, i + 2});
    }
    mesh.points.emplace_back(1.0f, 0.0f, 1.0f);
    mesh.add({0, 1, count + 2});
    const auto normals = mesh.normals(45.0f);
    EXPECT_GT(normals[3 * 100].z, 0.999f);
    EXPECT_LT(std::abs(normals[3 * static_cast<std::size_t>(count)].z), 0.001f);
}

} // namespace
