#pragma once

#include "VlAttribute/DataAttribute.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace VlAttribute {

/// A data attribute's value, in one allocation: this head, the sample times (left out for the one
/// sample at time 0), then the values of all samples. Numbers stand as they are; for strings the
/// values are the ends of the texts (see `StringSample`), and the texts follow.
struct DataNode : VlAttributeStruct {
    static constexpr std::uint16_t kHasTimes = 1;

    std::uint32_t tupleSize = 1;
    std::uint32_t sampleCount = 1;
    std::uint32_t valueCount = 0; ///< in each sample

    /// A value with its times and room for `valueBytes` behind them. The caller fills the rest.
    /// Throws std::runtime_error for what `DataAttribute` excludes. `times` must be as
    /// `SampleOrder` leaves them; empty means one sample at time 0.
    static DataNode* make(AttributeType type, std::span<const float> times, std::size_t valueCount,
                          std::int64_t tupleSize, std::size_t valueBytes);

    [[nodiscard]] std::span<const float> times() const noexcept {
        static constexpr float kZero = 0.0F;
        if ((flags & kHasTimes) == 0) {
            return {&kZero, 1};
        }
        return {reinterpret_cast<const float*>(bytes() + kPayloadOffset), sampleCount};
    }
    template <typename T>
    [[nodiscard]] T* values() noexcept {
        return reinterpret_cast<T*>(bytes() + valuesOffset(alignof(T)));
    }
    template <typename T>
    [[nodiscard]] const T* values() const noexcept {
        return reinterpret_cast<const T*>(bytes() + valuesOffset(alignof(T)));
    }
    /// Values of all samples together.
    [[nodiscard]] std::size_t totalValueCount() const noexcept {
        return std::size_t{sampleCount} * valueCount;
    }
    [[nodiscard]] std::size_t nearestSample(float time) const noexcept;

    /// Strings only: the texts, and how many bytes they are with their zero bytes.
    [[nodiscard]] const char* characters() const noexcept {
        return reinterpret_cast<const char*>(values<std::uint32_t>() + totalValueCount());
    }
    [[nodiscard]] std::size_t characterCount() const noexcept {
        return totalValueCount() == 0
                   ? 0
                   : std::size_t{values<std::uint32_t>()[totalValueCount() - 1]} + 1;
    }

    [[nodiscard]] Hash contentHash() const noexcept;
    /// Of two nodes of one type.
    [[nodiscard]] bool hasEqualShape(const DataNode& other) const noexcept;
    [[nodiscard]] bool hasEqualContent(const DataNode& other) const noexcept;

private:
    // The object is padded to 40 bytes; the payload begins where its members end.
    static constexpr std::size_t kPayloadOffset =
        sizeof(VlAttributeStruct) + 3 * sizeof(std::uint32_t);

    explicit DataNode(AttributeType nodeType) noexcept : VlAttributeStruct(nodeType) {}

    [[nodiscard]] std::byte* bytes() noexcept { return reinterpret_cast<std::byte*>(this); }
    [[nodiscard]] const std::byte* bytes() const noexcept {
        return reinterpret_cast<const std::byte*>(this);
    }
    [[nodiscard]] std::size_t valuesOffset(std::size_t alignment) const noexcept {
        const std::size_t timesSize =
            (flags & kHasTimes) != 0 ? sampleCount * sizeof(float) : std::size_t{0};
        return (kPayloadOffset + timesSize + alignment - 1) / alignment * alignment;
    }
};

inline const DataNode* asDataNode(const VlAttributeStruct* node) noexcept {
    const bool isData =
        node && node->type != AttributeType::Group && node->type != AttributeType::None;
    return isData ? static_cast<const DataNode*>(node) : nullptr;
}

/// Sample times as they were given, checked and brought into order.
class SampleOrder {
public:
    /// Throws std::runtime_error when a time is not finite or stands twice, or when there are not
    /// as many as samples, or none.
    SampleOrder(AttributeType type, std::span<const float> times, std::size_t sampleCount);

    /// Increasing; empty when the one time is 0.
    [[nodiscard]] std::span<const float> times() const noexcept { return sortedTimes; }
    /// The given place of the sample that comes at `position`.
    [[nodiscard]] std::size_t source(std::size_t position) const noexcept {
        return order[position];
    }
    [[nodiscard]] std::size_t size() const noexcept { return order.size(); }

private:
    std::vector<std::size_t> order;
    std::vector<float> sortedTimes;
};

/// Throws std::runtime_error "KIND attribute: TEXT".
[[noreturn]] void refuse(AttributeType type, const std::string& text);

} // namespace VlAttribute
