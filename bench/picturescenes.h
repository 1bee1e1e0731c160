#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <vector>

/// What W5 and W6 show: the same for this project and for the libraries that it is compared with.
namespace bench {

constexpr int kPictureWidth = 1280;
constexpr int kPictureHeight = 720;
/// From the lower edge of a picture to the upper one.
constexpr double kFieldOfViewDegrees = 45.0;

using Vector = std::array<double, 3>;

/// Where a camera stands and what it looks at.
struct Viewpoint {
    Vector eye;
    Vector target;
    Vector up;
    double near = 0.1;
    double far = 100.0;

    /// From the same place to the other side.
    [[nodiscard]] Viewpoint turnedAway() const {
        Viewpoint turned = *this;
        for (std::size_t i = 0; i < 3; ++i) {
            turned.target[i] = 2 * eye[i] - target[i];
        }
        return turned;
    }
};

/// Polygons of `corners` corners each, counter-clockwise, with a normal a point.
struct Mesh {
    std::vector<float> points;          ///< three numbers each
    std::vector<float> normals;         ///< of the points, three numbers each
    std::vector<std::int32_t> vertices; ///< the polygons' points, one polygon after another
    int corners = 3;
};

/// A cube of edge 1 around the origin: 24 points, so that faces are flat.
inline Mesh makeCube() {
    Mesh cube;
    cube.corners = 4;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        for (const float side : {-0.5F, 0.5F}) {
            constexpr float kCorners[4][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
            for (int corner = 0; corner < 4; ++corner) {
                // The other way round on the far side.
                const float* place = kCorners[side > 0 ? corner : 3 - corner];
                float point[3] = {};
                point[axis] = side;
                point[(axis + 1) % 3] = 0.5F * place[0];
                point[(axis + 2) % 3] = 0.5F * place[1];
                float normal[3] = {};
                normal[axis] = 2 * side;
                cube.points.insert(cube.points.end(), point, point + 3);
                cube.normals.insert(cube.normals.end(), normal, normal + 3);
                cube.vertices.push_back(static_cast<std::int32_t>(cube.vertices.size()));
            }
        }
    }
    return cube;
}

/// 100 x 100 cubes on the ground, each an object of its own.
struct CubesScene {
    static constexpr int kInRow = 100;
    static constexpr int kCubes = kInRow * kInRow;
    static constexpr double kDistance = 1.5;
    static constexpr Viewpoint kViewpoint = {
        {74.25, 80, 244.25}, {74.25, 0, 74.25}, {0, 1, 0}, 1, 400};
    /// In the middle: the one that is moved, upwards.
    static constexpr int kMoved = kCubes / 2 + kInRow / 2;

    static Vector place(int cube, double height = 0.0) {
        return {kDistance * (cube / kInRow), height, kDistance * (cube % kInRow)};
    }

    /// Tiles of 10 x 10, into which programs divide the cubes whose library looks into a group only
    /// if it has to.
    static constexpr int kTilesInRow = 10;
    static constexpr int kTiles = kTilesInRow * kTilesInRow;
    static std::size_t tile(int cube) {
        constexpr int kRows = kInRow / kTilesInRow;
        return static_cast<std::size_t>(cube / kInRow / kRows * kTilesInRow +
                                        cube % kInRow / kRows);
    }
};

/// A torus of a million triangles.
struct TorusScene {
    static constexpr int kTriangles = 1000000;
    static constexpr Viewpoint kViewpoint = {{0, -2.6, 2.0}, {0, 0, 0}, {0, 0, 1}, 0.1, 20};

    static Mesh makeMesh() {
        constexpr int kAround = 1000;
        constexpr int kAcross = kTriangles / 2 / kAround;
        Mesh torus;
        for (int i = 0; i < kAround; ++i) {
            for (int j = 0; j < kAcross; ++j) {
                const double a = 2 * std::numbers::pi * i / kAround;
                const double b = 2 * std::numbers::pi * j / kAcross;
                const Vector normal = {std::cos(b) * std::cos(a), std::cos(b) * std::sin(a),
                                       std::sin(b)};
                const Vector centre = {std::cos(a), std::sin(a), 0.0};
                for (std::size_t axis = 0; axis < 3; ++axis) {
                    torus.points.push_back(static_cast<float>(centre[axis] + 0.4 * normal[axis]));
                    torus.normals.push_back(static_cast<float>(normal[axis]));
                }
                const int nextI = (i + 1) % kAround;
                const int nextJ = (j + 1) % kAcross;
                const int corners[4] = {i * kAcross + j, nextI * kAcross + j,
                                        nextI * kAcross + nextJ, i * kAcross + nextJ};
                for (const int corner : {0, 1, 2, 0, 2, 3}) {
                    torus.vertices.push_back(corners[corner]);
                }
            }
        }
        return torus;
    }
};

} // namespace bench
