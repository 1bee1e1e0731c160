#pragma once

#include "VlAttribute/NumericAttribute.h"

namespace VlAttribute {

/// Values of double precision. A matrix is 16 values with tuple size 4; bounds are 6 values.
class DoubleAttribute final : public NumericAttribute<double> {
public:
    using NumericAttribute<double>::NumericAttribute;
    DoubleAttribute() noexcept = default;
};

} // namespace VlAttribute
