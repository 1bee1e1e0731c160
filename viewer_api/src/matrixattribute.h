#pragma once

#include "VlAttribute/DoubleAttribute.h"

#include <ImathMatrix.h>

namespace ViewerAPI {

/// The sample nearest to a time, for row vectors; the identity in place of values that are missing.
[[nodiscard]] Imath::M44d toMatrix(const VlAttribute::DoubleAttribute& attribute,
                                   float time = 0.0F);

/// 16 values, tuple size 4.
[[nodiscard]] VlAttribute::DoubleAttribute toMatrixAttribute(const Imath::M44d& matrix);

} // namespace ViewerAPI
