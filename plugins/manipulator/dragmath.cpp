#include "manipulator/dragmath.h"

#include "manipulator/degrees.h"

#include <cmath>

namespace Bundled {

using Imath::V3d;

namespace {

/// The sine of an angle between ray and axis, or ray and plane, below which nothing is grasped.
constexpr double kGrazing = 0.02;

} // namespace

std::optional<double> alongAxis(const Ray& ray, const V3d& origin, const V3d& axis) {
    const V3d toOrigin = origin - ray.origin;
    const double cosine = ray.direction.dot(axis);
    const double squaredSine = 1.0 - cosine * cosine;
    if (squaredSine < kGrazing * kGrazing) {
        return std::nullopt;
    }
    const double along = toOrigin.dot(axis);
    const double ahead = toOrigin.dot(ray.direction);
    if (!ray.isWhole && ahead - along * cosine <= 0.0) {
        return std::nullopt;
    }
    return (ahead * cosine - along) / squaredSine;
}

std::optional<V3d> onPlane(const Ray& ray, const V3d& origin, const V3d& normal) {
    const double sine = ray.direction.dot(normal);
    if (std::abs(sine) < kGrazing) {
        return std::nullopt;
    }
    const double distance = (origin - ray.origin).dot(normal) / sine;
    if (!ray.isWhole && distance <= 0.0) {
        return std::nullopt;
    }
    return ray.origin + ray.direction * distance;
}

double angleAround(const V3d& axis, const V3d& from, const V3d& to) {
    const V3d flatFrom = from - axis * from.dot(axis);
    const V3d flatTo = to - axis * to.dot(axis);
    return toDegrees(std::atan2(flatFrom.cross(flatTo).dot(axis), flatFrom.dot(flatTo)));
}

double snapped(double value, double step) {
    const double multiple = std::round(value / step) * step;
    return step > 0.0 && std::isfinite(multiple) ? multiple : value;
}

double roundStep(double length) {
    const double power = std::pow(10.0, std::floor(std::log10(length)));
    // A hair of slack: 0.2 / 0.1 may come out below 2.
    const double digits = length / power * (1.0 + 1e-12);
    return power * (digits >= 5.0 ? 5.0 : digits >= 2.0 ? 2.0 : 1.0);
}

} // namespace Bundled
