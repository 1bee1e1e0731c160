#pragma once

#include "VlAttribute/DataAttribute.h"

#include <cstdint>
#include <initializer_list>
#include <span>
#include <vector>

namespace VlAttribute {

/// The members of `IntAttribute`, `FloatAttribute` and `DoubleAttribute`.
///
/// Spans that it returns point into the value: they live as long as any handle on it.
template <typename T>
class NumericAttribute : public DataAttribute {
public:
    NumericAttribute() noexcept = default;
    explicit NumericAttribute(T value);
    explicit NumericAttribute(std::span<const T> values, std::int64_t tupleSize = 1);
    explicit NumericAttribute(std::initializer_list<T> values, std::int64_t tupleSize = 1)
        : NumericAttribute(std::span<const T>(values.begin(), values.size()), tupleSize) {}
    /// One sample per time. The times may come in any order and are sorted with their samples;
    /// throws when a time is not finite or stands twice, when the counts differ, when there is
    /// none, or when the samples differ in length.
    NumericAttribute(std::span<const float> times, std::span<const std::span<const T>> samples,
                     std::int64_t tupleSize = 1);
    NumericAttribute(std::span<const float> times, const std::vector<std::vector<T>>& samples,
                     std::int64_t tupleSize = 1);
    /// Null when `other` holds another kind.
    explicit NumericAttribute(Attribute other) noexcept;

    /// The first value of the sample nearest to time 0; the default when null or empty.
    [[nodiscard]] T getValue(T defaultValue = T{}) const noexcept;
    /// Empty when null.
    [[nodiscard]] std::span<const T> getNearestSample(float time) const noexcept;
    /// Empty when out of range.
    [[nodiscard]] std::span<const T> getSample(std::int64_t index) const noexcept;
};

extern template class NumericAttribute<std::int32_t>;
extern template class NumericAttribute<float>;
extern template class NumericAttribute<double>;

} // namespace VlAttribute
