#pragma once

#include <numbers>

namespace Bundled {

constexpr double toDegrees(double radians) {
    return radians * (180.0 / std::numbers::pi);
}

constexpr double toRadians(double degrees) {
    return degrees * (std::numbers::pi / 180.0);
}

} // namespace Bundled
