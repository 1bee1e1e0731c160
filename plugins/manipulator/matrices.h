#pragma once

#include "VlAttribute/DoubleAttribute.h"

#include <Imath/ImathMatrix.h>

#include <algorithm>
#include <span>

namespace Bundled {

/// A matrix attribute's first 16 values; the identity for one that has fewer, or is null.
inline Imath::M44d toMatrix(const VlAttribute::DoubleAttribute& attribute) {
    Imath::M44d matrix;
    const auto values = attribute.getNearestSample(0.0f);
    if (values.size() >= 16) {
        std::copy_n(values.begin(), 16, matrix.getValue());
    }
    return matrix;
}

inline VlAttribute::DoubleAttribute toAttribute(const Imath::M44d& matrix) {
    return VlAttribute::DoubleAttribute(std::span<const double>(matrix.getValue(), 16), 4);
}

/// A row as a direction, of length 1; of length 0 where there is none.
inline Imath::V3d direction(const Imath::M44d& matrix, int row) {
    return Imath::V3d(matrix[row][0], matrix[row][1], matrix[row][2]).normalized();
}

} // namespace Bundled
