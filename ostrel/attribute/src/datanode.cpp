#include "datanode.h"

#include "hashstream.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>
#include <numeric>
#include <stdexcept>
#include <string>

namespace VlAttribute {

namespace {

constexpr std::size_t kMaxCount = std::numeric_limits<std::uint32_t>::max();

template <typename T>
bool equalNumbers(const DataNode& left, const DataNode& right, std::size_t count) noexcept {
    const T* a = left.values<T>();
    const T* b = right.values<T>();
    if (count == 0 || std::memcmp(a, b, count * sizeof(T)) == 0) {
        return true;
    }
    if constexpr (std::is_floating_point_v<T>) {
        return std::equal(a, a + count, b,
                          [](T x, T y) { return x == y || (std::isnan(x) && std::isnan(y)); });
    }
    return false;
}

template <typename T>
void hashNumbers(HashStream& stream, const DataNode& node) noexcept {
    stream.appendNumbers(std::span<const T>(node.values<T>(), node.totalValueCount()));
}

std::string timeText(float time) {
    std::string text = std::to_string(time + 0.0F); // without the sign of -0
    if (text.find('.') != std::string::npos) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.') {
            text.pop_back();
        }
    }
    return text;
}

} // namespace

void refuse(AttributeType type, const std::string& text) {
    throw std::runtime_error(std::string(getTypeName(type)) + " attribute: " + text);
}

DataNode* DataNode::make(AttributeType type, std::span<const float> times, std::size_t valueCount,
                         std::int64_t tupleSize, std::size_t valueBytes) {
    if (tupleSize < 1 || static_cast<std::uint64_t>(tupleSize) > kMaxCount) {
        refuse(type,
               "the tuple size must be a positive 32-bit number, not " + std::to_string(tupleSize));
    }
    if (valueCount > kMaxCount || times.size() > kMaxCount) {
        refuse(type, "too many values or samples");
    }
    if (valueCount % static_cast<std::size_t>(tupleSize) != 0) {
        refuse(type, "the tuple size " + std::to_string(tupleSize) + " does not divide " +
                         std::to_string(valueCount) + " values");
    }
    DataNode shape(type);
    shape.tupleSize = static_cast<std::uint32_t>(tupleSize);
    shape.sampleCount = times.empty() ? 1 : static_cast<std::uint32_t>(times.size());
    shape.valueCount = static_cast<std::uint32_t>(valueCount);
    shape.flags = times.empty() ? std::uint16_t{0} : kHasTimes;
    const std::size_t alignment =
        type == AttributeType::Double ? alignof(double) : alignof(std::uint32_t);
    const std::size_t size = std::max(sizeof(DataNode), shape.valuesOffset(alignment) + valueBytes);

    auto* node = new (::operator new(size)) DataNode(type);
    node->tupleSize = shape.tupleSize;
    node->sampleCount = shape.sampleCount;
    node->valueCount = shape.valueCount;
    node->flags = shape.flags;
    if (!times.empty()) {
        std::memcpy(node->bytes() + kPayloadOffset, times.data(), times.size_bytes());
    }
    return node;
}

std::size_t DataNode::nearestSample(float time) const noexcept {
    if (sampleCount == 1) {
        return 0;
    }
    const std::span<const float> all = times();
    const float wanted = std::isnan(time) ? 0.0F : time;
    const auto later = std::lower_bound(all.begin(), all.end(), wanted);
    const auto index = static_cast<std::size_t>(later - all.begin());
    if (index == 0 || index == all.size()) {
        return index == 0 ? 0 : index - 1;
    }
    // In double the two differences are exact, so that a tie is seen as one.
    const double before = static_cast<double>(wanted) - static_cast<double>(all[index - 1]);
    const double after = static_cast<double>(all[index]) - static_cast<double>(wanted);
    return before <= after ? index - 1 : index;
}

Hash DataNode::contentHash() const noexcept {
    HashStream stream;
    stream.appendValue(static_cast<std::uint32_t>(type));
    stream.appendValue(tupleSize);
    stream.appendValue(sampleCount);
    stream.appendValue(valueCount);
    stream.appendNumbers(times());
    switch (type) {
    case AttributeType::Int:
        hashNumbers<std::int32_t>(stream, *this);
        break;
    case AttributeType::Float:
        hashNumbers<float>(stream, *this);
        break;
    case AttributeType::Double:
        hashNumbers<double>(stream, *this);
        break;
    default:
        hashNumbers<std::uint32_t>(stream, *this);
        stream.append(characters(), characterCount());
        break;
    }
    return stream.finish();
}

bool DataNode::hasEqualShape(const DataNode& other) const noexcept {
    return tupleSize == other.tupleSize && sampleCount == other.sampleCount &&
           valueCount == other.valueCount;
}

bool DataNode::hasEqualContent(const DataNode& other) const noexcept {
    if (!hasEqualShape(other) || !std::ranges::equal(times(), other.times())) {
        return false;
    }
    const std::size_t count = totalValueCount();
    switch (type) {
    case AttributeType::Int:
        return equalNumbers<std::int32_t>(*this, other, count);
    case AttributeType::Float:
        return equalNumbers<float>(*this, other, count);
    case AttributeType::Double:
        return equalNumbers<double>(*this, other, count);
    default:
        return equalNumbers<std::uint32_t>(*this, other, count) &&
               std::memcmp(characters(), other.characters(), characterCount()) == 0;
    }
}

SampleOrder::SampleOrder(AttributeType type, std::span<const float> times, std::size_t sampleCount)
    : order(times.size()) {
    if (times.size() != sampleCount) {
        refuse(type, std::to_string(times.size()) + " sample times for " +
                         std::to_string(sampleCount) + " samples");
    }
    if (times.empty()) {
        refuse(type, "at least one time sample is needed");
    }
    for (const float time : times) {
        if (!std::isfinite(time)) {
            refuse(type, "the sample time " + timeText(time) + " is not a finite number");
        }
    }
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::sort(order, {}, [times](std::size_t index) { return times[index]; });
    sortedTimes.reserve(times.size());
    for (const std::size_t index : order) {
        if (!sortedTimes.empty() && sortedTimes.back() == times[index]) {
            refuse(type, "the sample time " + timeText(times[index]) + " stands twice");
        }
        sortedTimes.push_back(times[index] + 0.0F); // -0.0 is stored as 0.0
    }
    if (sortedTimes.size() == 1 && sortedTimes.front() == 0.0F) {
        sortedTimes.clear();
    }
}

} // namespace VlAttribute
