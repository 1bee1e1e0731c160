#include "manipulator/rotations.h"

#include "manipulator/degrees.h"
#include "manipulator/dragmath.h"

#include <Imath/ImathMatrixAlgo.h>
#include <Imath/ImathQuat.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace Bundled {

using Imath::M44d;
using Imath::V3d;

namespace {

/// How far a turn goes at most before angles are chosen anew: far less than the half turn by which
/// the choices differ.
constexpr double kStepDegrees = 10.0;
constexpr double kParallel = 1.0 - 1e-12;

V3d axisOf(std::span<const double> rotations, std::size_t index) {
    const auto values = rotations.subspan(4 * index, 4);
    return V3d(values[1], values[2], values[3]).normalized();
}

M44d matrixOf(const V3d& axis, double degrees) {
    return M44d().setAxisAngle(axis, toRadians(degrees));
}

V3d directionOf(const V3d& direction, const M44d& matrix) {
    V3d result;
    matrix.multDirMatrix(direction, result);
    return result;
}

/// The same angle, less than a turn off, as near to another one as it can be.
double nearestTo(double wanted, double degrees) {
    return wanted + std::remainder(degrees - wanted, 360.0);
}

/// Sets the angles of three rotations with upright axes to those of a matrix, nearest to what they
/// were.
void setAngles(std::vector<double>& rotations, const M44d& matrix) {
    const V3d first = axisOf(rotations, 0);
    const V3d second = axisOf(rotations, 1);
    const V3d third = axisOf(rotations, 2);
    // Of the third axis only the first and second turn are seen, and along the others only by the
    // first.
    const V3d seen = directionOf(third, matrix);
    const double across = seen.dot(first.cross(third));
    const double ahead = seen.dot(third);
    // Where the second turn lays the third axis upon the first, any first one will do.
    const double angle =
        std::hypot(across, ahead) > 1e-9 ? toDegrees(std::atan2(across, ahead)) : rotations[0];
    std::vector<double> nearest;
    double nearestDistance = 0.0;
    for (const double firstAngle : {angle, angle + 180.0}) {
        std::vector<double> values = rotations;
        double distance = 0.0;
        const auto take = [&](std::size_t index, double degrees) {
            values[4 * index] = nearestTo(rotations[4 * index], degrees);
            distance += std::abs(values[4 * index] - rotations[4 * index]);
        };
        take(0, firstAngle);
        const M44d withoutFirst = matrix * matrixOf(first, -firstAngle);
        const double secondAngle = angleAround(second, third, directionOf(third, withoutFirst));
        take(1, secondAngle);
        const M44d withoutSecond = withoutFirst * matrixOf(second, -secondAngle);
        take(2, angleAround(third, first, directionOf(first, withoutSecond)));
        if (nearest.empty() || distance < nearestDistance) {
            nearest = std::move(values);
            nearestDistance = distance;
        }
    }
    rotations = std::move(nearest);
}

std::vector<double> turnedSingle(const std::vector<double>& rotation, const Turn& turn) {
    const V3d axis = axisOf(rotation, 0);
    const double cosine = axis.dot(turn.axis);
    if (std::abs(cosine) > kParallel) {
        return {rotation[0] + std::copysign(turn.degrees, cosine * turn.degrees), rotation[1],
                rotation[2], rotation[3]};
    }
    const auto whole =
        Imath::extractQuat(matrixOf(axis, rotation[0]) * matrixOf(turn.axis, turn.degrees));
    const V3d newAxis = whole.axis();
    const double sign = newAxis.dot(axis) < 0.0 ? -1.0 : 1.0;
    return {nearestTo(rotation[0], sign * toDegrees(whole.angle())), sign * newAxis.x,
            sign * newAxis.y, sign * newAxis.z};
}

} // namespace

Turn turnWithin(const M44d& worldToSpace, const Turn& turn, const V3d& arm) {
    const V3d from = directionOf(arm, worldToSpace);
    const V3d across = directionOf(turn.axis.cross(arm), worldToSpace);
    const V3d axis = from.cross(across).normalized();
    // In any space half a turn is half a turn.
    const double halves = std::floor(turn.degrees / 180.0) * 180.0;
    const double rest = toRadians(turn.degrees - halves);
    const V3d to = from * std::cos(rest) + across * std::sin(rest);
    return {axis, halves + std::abs(angleAround(axis, from, to))};
}

bool areThreeUpright(std::span<const double> rotations) {
    if (rotations.size() != 12) {
        return false;
    }
    const V3d product = axisOf(rotations, 0).cross(axisOf(rotations, 1));
    return std::abs(product.dot(axisOf(rotations, 2))) > kParallel;
}

std::vector<double> turned(std::vector<double> rotations, const Turn& turn) {
    if (!std::isfinite(turn.degrees)) {
        return rotations;
    }
    if (!areThreeUpright(rotations)) {
        return turnedSingle(rotations, turn);
    }
    M44d before;
    for (std::size_t i = 0; i < 3; ++i) {
        before = matrixOf(axisOf(rotations, i), rotations[4 * i]) * before;
    }
    // The steps do not depend on where they end, so that the angles go along with the turn.
    const double whole = std::abs(turn.degrees);
    for (double gone = 0.0; gone < whole;) {
        gone = std::min(whole, gone + kStepDegrees);
        setAngles(rotations, before * matrixOf(turn.axis, std::copysign(gone, turn.degrees)));
    }
    return rotations;
}

} // namespace Bundled
