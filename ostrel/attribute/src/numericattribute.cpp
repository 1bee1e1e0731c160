#include "VlAttribute/NumericAttribute.h"

#include "datanode.h"

#include <cstring>
#include <type_traits>

namespace VlAttribute {

namespace {

template <typename T>
constexpr AttributeType typeOf() {
    if constexpr (std::is_same_v<T, std::int32_t>) {
        return AttributeType::Int;
    } else if constexpr (std::is_same_v<T, float>) {
        return AttributeType::Float;
    } else {
        return AttributeType::Double;
    }
}

template <typename T>
Attribute makeNumeric(std::span<const T> values, std::int64_t tupleSize) {
    DataNode* node = DataNode::make(typeOf<T>(), {}, values.size(), tupleSize, values.size_bytes());
    if (!values.empty()) {
        std::memcpy(node->values<T>(), values.data(), values.size_bytes());
    }
    return Attribute::CreateAndSteal(node);
}

/// `sampleAt(i)` is the i-th given sample, as anything with data() and size().
template <typename T, typename SampleAt>
Attribute makeNumeric(std::span<const float> times, std::size_t sampleCount, SampleAt sampleAt,
                      std::int64_t tupleSize) {
    const SampleOrder order(typeOf<T>(), times, sampleCount);
    const std::size_t valueCount = sampleAt(0).size();
    for (std::size_t i = 1; i < sampleCount; ++i) {
        if (sampleAt(i).size() != valueCount) {
            refuse(typeOf<T>(), "samples differ in length: " + std::to_string(valueCount) +
                                    " values and " + std::to_string(sampleAt(i).size()));
        }
    }
    DataNode* node = DataNode::make(typeOf<T>(), order.times(), valueCount, tupleSize,
                                    sampleCount * valueCount * sizeof(T));
    T* place = node->values<T>();
    for (std::size_t i = 0; i < sampleCount && valueCount != 0; ++i) {
        std::memcpy(place, sampleAt(order.source(i)).data(), valueCount * sizeof(T));
        place += valueCount;
    }
    return Attribute::CreateAndSteal(node);
}

template <typename T>
std::span<const T> sampleOf(const DataNode* node, std::size_t index) noexcept {
    return {node->values<T>() + index * node->valueCount, node->valueCount};
}

} // namespace

template <typename T>
NumericAttribute<T>::NumericAttribute(T value)
    : DataAttribute(makeNumeric(std::span<const T>(&value, 1), 1)) {}

template <typename T>
NumericAttribute<T>::NumericAttribute(std::span<const T> values, std::int64_t tupleSize)
    : DataAttribute(makeNumeric(values, tupleSize)) {}

template <typename T>
NumericAttribute<T>::NumericAttribute(std::span<const float> times,
                                      std::span<const std::span<const T>> samples,
                                      std::int64_t tupleSize)
    : DataAttribute(makeNumeric<T>(
          times, samples.size(), [samples](std::size_t i) { return samples[i]; }, tupleSize)) {}

template <typename T>
NumericAttribute<T>::NumericAttribute(std::span<const float> times,
                                      const std::vector<std::vector<T>>& samples,
                                      std::int64_t tupleSize)
    : DataAttribute(makeNumeric<T>(
          times, samples.size(), [&samples](std::size_t i) { return std::span(samples[i]); },
          tupleSize)) {}

template <typename T>
NumericAttribute<T>::NumericAttribute(Attribute other) noexcept : DataAttribute(std::move(other)) {
    keepOnly(typeOf<T>());
}

template <typename T>
T NumericAttribute<T>::getValue(T defaultValue) const noexcept {
    const std::span<const T> values = getNearestSample(0.0F);
    return values.empty() ? defaultValue : values.front();
}

template <typename T>
std::span<const T> NumericAttribute<T>::getNearestSample(float time) const noexcept {
    const DataNode* node = asDataNode(getHandle());
    return node ? sampleOf<T>(node, node->nearestSample(time)) : std::span<const T>();
}

template <typename T>
std::span<const T> NumericAttribute<T>::getSample(std::int64_t index) const noexcept {
    const DataNode* node = asDataNode(getHandle());
    if (!node || index < 0 || index >= node->sampleCount) {
        return {};
    }
    return sampleOf<T>(node, static_cast<std::size_t>(index));
}

template class NumericAttribute<std::int32_t>;
template class NumericAttribute<float>;
template class NumericAttribute<double>;

} // namespace VlAttribute
