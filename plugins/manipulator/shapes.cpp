#include "manipulator/shapes.h"

#include "manipulator/degrees.h"

#include <Imath/ImathMatrix.h>

#include <cmath>

namespace Bundled {

using Imath::V3f;

namespace {

constexpr int kSegments = 24;

V3f turned(float x, float radius, int segment, int segments) {
    const double angle = 2.0 * M_PI * segment / segments;
    return {x, radius * static_cast<float>(std::cos(angle)),
            radius * static_cast<float>(std::sin(angle))};
}

} // namespace

Shape lathe(const std::vector<ProfilePoint>& profile, int segments) {
    Shape shape;
    for (std::size_t i = 0; i + 1 < profile.size(); ++i) {
        const ProfilePoint& a = profile[i];
        const ProfilePoint& b = profile[i + 1];
        if (a.x == b.x && a.radius == b.radius) {
            continue;
        }
        const Imath::V2f normal = Imath::V2f(a.radius - b.radius, b.x - a.x).normalized();
        for (int segment = 0; segment < segments; ++segment) {
            const auto vertex = [&](const ProfilePoint& point, int at) {
                shape.push_back({turned(point.x, point.radius, at, segments),
                                 turned(normal.x, normal.y, at, segments)});
            };
            vertex(a, segment);
            vertex(b, segment);
            vertex(b, segment + 1);
            vertex(a, segment);
            vertex(b, segment + 1);
            vertex(a, segment + 1);
        }
    }
    return shape;
}

Shape arrowShape(float thicken) {
    const float shaft = 0.012f + thicken;
    const float head = 0.05f + thicken;
    return lathe({{0.16f, 0.0f},
                  {0.16f, shaft},
                  {0.78f, shaft},
                  {0.78f, head},
                  {1.0f + thicken, 0.2f * thicken},
                  {1.0f + thicken, 0.0f}},
                 kSegments);
}

Shape squareShape(float grow) {
    const float low = 0.30f - grow;
    const float high = 0.50f + grow;
    const V3f normal(1.0f, 0.0f, 0.0f);
    const ShapeVertex corners[] = {{{0.0f, low, low}, normal},
                                   {{0.0f, high, low}, normal},
                                   {{0.0f, high, high}, normal},
                                   {{0.0f, low, high}, normal}};
    return {corners[0], corners[1], corners[2], corners[0], corners[2], corners[3]};
}

Shape ringShape(float radius, float tube, float x) {
    constexpr int kSteps = 8;
    constexpr int kRingSegments = 96;
    std::vector<ProfilePoint> profile;
    for (int i = 0; i <= kSteps; ++i) {
        const double angle = -2.0 * M_PI * i / kSteps;
        profile.push_back({x + tube * static_cast<float>(std::cos(angle)),
                           radius + tube * static_cast<float>(std::sin(angle))});
    }
    return lathe(profile, kRingSegments);
}

Shape coneRimShape(double halfAngle, float tube) {
    const double radians = toRadians(halfAngle);
    return ringShape(static_cast<float>(std::sin(radians)), tube,
                     static_cast<float>(std::cos(radians)));
}

Shape coneShape(double halfAngle, float tube) {
    constexpr int kSides = 8;
    constexpr int kSideSegments = 6;
    Shape shape = coneRimShape(halfAngle, tube);
    const Shape side = lathe({{0.0f, tube}, {1.0f, tube}}, kSideSegments);
    for (int i = 0; i < kSides; ++i) {
        Imath::M44f matrix;
        matrix.rotate(V3f(static_cast<float>(2.0 * M_PI * i / kSides), 0.0f, 0.0f));
        matrix.rotate(V3f(0.0f, 0.0f, static_cast<float>(toRadians(halfAngle))));
        for (const ShapeVertex& vertex : side) {
            V3f normal;
            matrix.multDirMatrix(vertex.normal, normal);
            shape.push_back({vertex.position * matrix, normal});
        }
    }
    return shape;
}

Shape sectorShape(double degrees) {
    constexpr double kStepDegrees = 3.0;
    const V3f normal(1.0f, 0.0f, 0.0f);
    const int steps = static_cast<int>(std::ceil(std::abs(degrees) / kStepDegrees));
    const auto rim = [&](int step) {
        const double angle = toRadians(degrees * step / steps);
        return V3f(0.0f, static_cast<float>(std::cos(angle)), static_cast<float>(std::sin(angle)));
    };
    Shape shape;
    for (int step = 0; step < steps; ++step) {
        shape.push_back({V3f(0.0f), normal});
        shape.push_back({rim(step), normal});
        shape.push_back({rim(step + 1), normal});
    }
    return shape;
}

Shape cubeShape(const V3f& centre, float half) {
    Shape shape;
    for (int axis = 0; axis < 3; ++axis) {
        for (const float side : {-1.0f, 1.0f}) {
            V3f normal(0.0f);
            V3f across(0.0f);
            V3f along(0.0f);
            normal[axis] = side;
            across[(axis + 1) % 3] = half;
            along[(axis + 2) % 3] = half;
            const V3f middle = centre + normal * half;
            const ShapeVertex corners[] = {{middle - across - along, normal},
                                           {middle + across - along, normal},
                                           {middle + across + along, normal},
                                           {middle - across + along, normal}};
            for (const int corner : {0, 1, 2, 0, 2, 3}) {
                shape.push_back(corners[corner]);
            }
        }
    }
    return shape;
}

Shape boxShape(float thicken) {
    const float half = 0.05f + thicken;
    const float stick = 0.012f + thicken;
    Shape shape = lathe({{0.16f, 0.0f}, {0.16f, stick}, {0.9f, stick}}, kSegments);
    const Shape cube = cubeShape({0.95f, 0.0f, 0.0f}, half);
    shape.insert(shape.end(), cube.begin(), cube.end());
    return shape;
}

Shape ballShape(float radius) {
    constexpr int kSteps = 12;
    std::vector<ProfilePoint> profile;
    for (int i = 0; i <= kSteps; ++i) {
        const double angle = M_PI * i / kSteps;
        profile.push_back({-radius * static_cast<float>(std::cos(angle)),
                           radius * static_cast<float>(std::sin(angle))});
    }
    return lathe(profile, kSegments);
}

} // namespace Bundled
