#pragma once

#include "VlAttribute/NumericAttribute.h"

namespace VlAttribute {

/// Values of single precision.
class FloatAttribute final : public NumericAttribute<float> {
public:
    using NumericAttribute<float>::NumericAttribute;
    FloatAttribute() noexcept = default;
};

} // namespace VlAttribute
