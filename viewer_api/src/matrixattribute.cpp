#include "matrixattribute.h"

#include <algorithm>
#include <span>

namespace ViewerAPI {

Imath::M44d toMatrix(const VlAttribute::DoubleAttribute& attribute, float time) {
    Imath::M44d matrix;
    const auto values = attribute.getNearestSample(time);
    std::copy_n(values.begin(), std::min<std::size_t>(values.size(), 16), matrix.getValue());
    return matrix;
}

VlAttribute::DoubleAttribute toMatrixAttribute(const Imath::M44d& matrix) {
    return VlAttribute::DoubleAttribute(std::span<const double>(matrix.getValue(), 16), 4);
}

} // namespace ViewerAPI
