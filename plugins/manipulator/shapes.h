#pragma once

#include <Imath/ImathVec.h>

#include <vector>

namespace Bundled {

struct ShapeVertex {
    Imath::V3f position;
    Imath::V3f normal;
};
/// Three vertices a triangle.
using Shape = std::vector<ShapeVertex>;

/// A place of a profile: x along the axis, and the distance from it.
struct ProfilePoint {
    float x;
    float radius;
};

/// A profile turned around the x axis. Normals point to the left of the profile's direction, with
/// the radius upwards.
[[nodiscard]] Shape lathe(const std::vector<ProfilePoint>& profile, int segments);

/// An arrow of length 1 along x that begins off the origin. `thicken` widens its shaft and head, in
/// its own units.
[[nodiscard]] Shape arrowShape(float thicken = 0.0f);

/// A square in the positive quarter of the plane x = 0. `grow` moves its edges outwards.
[[nodiscard]] Shape squareShape(float grow = 0.0f);

/// A ring around the x axis, at that place of it. `tube` is the radius of what it is made of.
[[nodiscard]] Shape ringShape(float radius, float tube, float x = 0.0f);

/// A sector of the disc around the x axis, of radius 1: from y on towards z, by less than a turn or
/// a whole one. Degrees may be negative.
[[nodiscard]] Shape sectorShape(double degrees);

/// A cube, with edges along the axes.
[[nodiscard]] Shape cubeShape(const Imath::V3f& centre, float half);

/// A cube around the end of a stick of length 1 along x that begins off the origin. `thicken`
/// widens both, in their own units.
[[nodiscard]] Shape boxShape(float thicken = 0.0f);

/// A ball around the origin.
[[nodiscard]] Shape ballShape(float radius);

/// The rim of a cone whose tip is the origin, around the x axis, with sides of length 1. `tube` is
/// the radius of what it is made of; angles are those from the axis to the sides, in degrees.
[[nodiscard]] Shape coneRimShape(double halfAngle, float tube);

/// The same cone in wires: the rim, and lines from it to the tip.
[[nodiscard]] Shape coneShape(double halfAngle, float tube);

} // namespace Bundled
