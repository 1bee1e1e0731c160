#pragma once

#include "VlAttribute/NumericAttribute.h"

namespace VlAttribute {

/// Values of 32 signed bits.
class IntAttribute final : public NumericAttribute<std::int32_t> {
public:
    using NumericAttribute<std::int32_t>::NumericAttribute;
    IntAttribute() noexcept = default;
};

} // namespace VlAttribute
