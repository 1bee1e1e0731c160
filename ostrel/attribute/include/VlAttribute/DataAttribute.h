#pragma once

#include "VlAttribute/Attribute.h"

#include <cstdint>

namespace VlAttribute {

/// What the numeric and string kinds share: an array of values per time sample, read in tuples.
///
/// Every attribute has at least one sample; each sample has the same number of values, which may
/// be 0. Sample times are finite, in frames, strictly increasing; an attribute made without times
/// has its one sample at time 0. The tuple size divides the number of values. At most 2^32 - 1
/// values a sample, samples, and values a tuple.
///
/// Constructors throw std::runtime_error with the offending value in the text. Queries of a null
/// attribute answer 0. [any-thread]
class DataAttribute : public Attribute {
public:
    DataAttribute() noexcept = default;
    /// Null when `other` is null or a group.
    explicit DataAttribute(Attribute other) noexcept;

    /// Values (not tuples) in each sample.
    [[nodiscard]] std::int64_t getNumberOfValues() const noexcept;
    [[nodiscard]] std::int64_t getTupleSize() const noexcept;
    [[nodiscard]] std::int64_t getNumberOfTimeSamples() const noexcept;
    /// 0 when `index` is out of range.
    [[nodiscard]] float getSampleTime(std::int64_t index) const noexcept;
    /// The index of the sample with the smallest distance to `time`, the earlier one on a tie; a
    /// time that is not a number counts as 0.
    [[nodiscard]] std::int64_t getNearestSampleIndex(float time) const noexcept;
};

} // namespace VlAttribute
