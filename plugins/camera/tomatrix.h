#pragma once

#include <Imath/ImathMatrix.h>

#include <algorithm>
#include <span>

namespace Bundled {

/// From the 16 doubles that a host gives.
inline Imath::M44d toMatrix(std::span<const double, 16> values) {
    Imath::M44d result;
    std::copy(values.begin(), values.end(), result.getValue());
    return result;
}

} // namespace Bundled
