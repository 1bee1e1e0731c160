#pragma once

#include "VlAttribute/DataAttribute.h"
#include "VlAttribute/StringSample.h"

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace VlAttribute {

/// Values of text. An attribute of no strings is valid. All texts of one attribute together are
/// at most 2^32 - 1 bytes long.
class StringAttribute final : public DataAttribute {
public:
    StringAttribute() noexcept = default;
    explicit StringAttribute(std::string_view value);
    /// A null pointer counts as "".
    explicit StringAttribute(const char* value);
    explicit StringAttribute(const std::string& value) : StringAttribute(std::string_view(value)) {}
    explicit StringAttribute(std::span<const std::string> values, std::int64_t tupleSize = 1);
    explicit StringAttribute(std::span<const std::string_view> values, std::int64_t tupleSize = 1);
    /// A null pointer among the values counts as "".
    explicit StringAttribute(std::span<const char* const> values, std::int64_t tupleSize = 1);
    explicit StringAttribute(const std::vector<std::string>& values, std::int64_t tupleSize = 1)
        : StringAttribute(std::span<const std::string>(values), tupleSize) {}
    explicit StringAttribute(std::initializer_list<std::string_view> values,
                             std::int64_t tupleSize = 1)
        : StringAttribute(std::span<const std::string_view>(values.begin(), values.size()),
                          tupleSize) {}
    /// As for numeric attributes.
    StringAttribute(std::span<const float> times,
                    const std::vector<std::vector<std::string>>& samples,
                    std::int64_t tupleSize = 1);
    /// Null when `other` holds another kind.
    explicit StringAttribute(Attribute other) noexcept;

    /// The first value of the sample nearest to time 0; the default when null or empty.
    [[nodiscard]] std::string getValue(std::string_view defaultValue = {}) const;
    /// The same without a copy: valid while the value lives; "" when null or empty.
    [[nodiscard]] const char* getValueCstr() const noexcept;
    /// Empty when null.
    [[nodiscard]] StringSample getNearestSample(float time) const noexcept;
    /// Empty when out of range.
    [[nodiscard]] StringSample getSample(std::int64_t index) const noexcept;
};

} // namespace VlAttribute
