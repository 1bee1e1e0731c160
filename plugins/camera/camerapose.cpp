#include "camera/camerapose.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace Bundled {

namespace {

constexpr double kRadians = std::numbers::pi / 180.0;
/// Nearer than this, by the camera's own place, single precision shows nothing any more.
constexpr double kNearest = 1e-6;
constexpr double kFarthest = 1e12;

/// Half the size of a box along a direction.
double reachAlong(const Imath::V3d& half, const Imath::V3d& direction) {
    return half.x * std::abs(direction.x) + half.y * std::abs(direction.y) +
           half.z * std::abs(direction.z);
}

Imath::V3d turned(const Imath::V3d& vector, const Imath::M44d& rotation) {
    Imath::V3d result;
    rotation.multDirMatrix(vector, result);
    return result;
}

} // namespace

Imath::M44d CameraPose::rigid(const Imath::M44d& xform) {
    const Imath::V3d x(xform[0][0], xform[0][1], xform[0][2]);
    const Imath::V3d z(xform[2][0], xform[2][1], xform[2][2]);
    CameraPose pose;
    if (x.cross(z).length() > 0.0) {
        pose.stand(x, z, xform.translation());
    } else {
        pose.cameraToWorld.setTranslation(xform.translation());
    }
    return pose.cameraToWorld;
}

void CameraPose::stand(const Imath::V3d& right, const Imath::V3d& back, const Imath::V3d& origin) {
    const Imath::V3d z = back.normalized();
    // Small errors of many moves must not add up.
    const Imath::V3d x = (right - z * right.dot(z)).normalized();
    const Imath::V3d y = z.cross(x);
    cameraToWorld = Imath::M44d(x.x, x.y, x.z, 0.0, y.x, y.y, y.z, 0.0, z.x, z.y, z.z, 0.0, //
                                origin.x, origin.y, origin.z, 1.0);
}

Imath::V3d CameraPose::centerOfInterest() const {
    return origin() - axis(2) * distance;
}

Imath::V3d CameraPose::pointAt(const Imath::V2d& place) const {
    const double depth = isPerspective() ? distance : 1.0;
    const int offset = isPerspective() ? 2 : 3;
    const double sign = isPerspective() ? 1.0 : -1.0;
    const Imath::V3d inCamera(depth * (place.x + sign * projection[offset][0]) / projection[0][0],
                              depth * (place.y + sign * projection[offset][1]) / projection[1][1],
                              -distance);
    return inCamera * cameraToWorld;
}

void CameraPose::orbit(double yawDegrees, double pitchDegrees) {
    const Imath::V3d pivot = centerOfInterest();
    const Imath::V3d worldUp(0.0, 1.0, 0.0);
    const Imath::V3d back = axis(2);
    const double elevation = std::asin(std::clamp(back.y, -1.0, 1.0));
    const double steepest = kSteepestDegrees * kRadians;
    const double wanted = std::clamp(elevation + pitchDegrees * kRadians, -steepest, steepest);
    // A camera that is rolled still pitches over the horizon; one that looks straight down has no
    // horizon but its own.
    Imath::V3d level = worldUp.cross(back);
    level = level.length() > 1e-9 ? level.normalized() : axis(0);
    Imath::M44d pitch;
    pitch.setAxisAngle(level, elevation - wanted);
    Imath::M44d yaw;
    yaw.setAxisAngle(worldUp, yawDegrees * kRadians);
    const Imath::M44d rotation = pitch * yaw;
    const Imath::V3d newBack = turned(back, rotation);
    stand(turned(axis(0), rotation), newBack, pivot + newBack * distance);
}

void CameraPose::pan(const Imath::V2d& from, const Imath::V2d& to) {
    cameraToWorld = cameraToWorld * Imath::M44d().setTranslation(pointAt(from) - pointAt(to));
}

void CameraPose::dolly(const Imath::V2d& place, double factor) {
    const Imath::V3d held = pointAt(place);
    double& length = isPerspective() ? distance : orthographicWidth;
    const double nearest = std::min(kNearest * std::max(held.length(), 1e-6), kFarthest);
    const double sign = length < 0.0 ? -1.0 : 1.0; // a negative width mirrors
    const double size = std::clamp(std::abs(length) / factor, nearest, kFarthest);
    const double share = 1.0 - size / std::abs(length);
    length = sign * size;
    // Along the ray of the place, or across to it.
    const Imath::V3d goal = isPerspective() ? held : held + axis(2) * distance;
    cameraToWorld = cameraToWorld * Imath::M44d().setTranslation((goal - origin()) * share);
}

void CameraPose::frame(const Imath::Box3d& box) {
    Imath::V3d half = box.size() * 0.5;
    Imath::V3d center = box.center();
    double radius = half.length();
    if (!(radius > 0.0)) {
        radius = std::max({1e-3, 1e-3 * std::abs(center.x), 1e-3 * std::abs(center.y),
                           1e-3 * std::abs(center.z)});
        half = Imath::V3d(radius);
    }
    const Imath::V3d right = axis(0);
    const Imath::V3d up = axis(1);
    const Imath::V3d back = axis(2);
    distance = reachAlong(half, back) + kClearance * radius;
    const double perWidth = std::abs(projection[0][0]) / kFill;
    const double perHeight = std::abs(projection[1][1]) / kFill;
    if (!isPerspective()) {
        // A line that is seen end on has no width; what it has in depth must do.
        orthographicWidth *= std::max({reachAlong(half, right) * perWidth,
                                       reachAlong(half, up) * perHeight, 1e-3 * radius * perWidth});
        stand(right, back, center + back * distance);
        return;
    }
    // Each side of the picture is a plane through the camera that no corner may cross. Opposite
    // sides together give the smallest distance, and where between them the camera stands.
    for (const auto& [across, perSize] : {std::pair(right, perWidth), std::pair(up, perHeight)}) {
        const double steepness = 1.0 / perSize;
        const double first = reachAlong(half, across + back * steepness);
        const double second = reachAlong(half, across * -1.0 + back * steepness);
        distance = std::max(distance, (first + second) / (2.0 * steepness));
        center += across * ((first - second) / 2.0);
    }
    stand(right, back, center + back * distance);
}

} // namespace Bundled
