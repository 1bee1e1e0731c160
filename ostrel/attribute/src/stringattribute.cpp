#include "VlAttribute/StringAttribute.h"

#include "datanode.h"

#include <limits>

namespace VlAttribute {

namespace {

std::string_view viewOf(std::string_view text) {
    return text;
}
std::string_view viewOf(const char* text) {
    return text ? std::string_view(text) : "";
}

/// `textAt(i)` is string i of all samples, in the order in which they are stored.
template <typename TextAt>
Attribute makeStrings(std::span<const float> times, std::size_t sampleCount, std::size_t valueCount,
                      TextAt textAt, std::int64_t tupleSize) {
    const std::size_t count = sampleCount * valueCount;
    std::size_t characterCount = 0;
    for (std::size_t i = 0; i < count; ++i) {
        characterCount += textAt(i).size() + 1;
    }
    if (characterCount > std::numeric_limits<std::uint32_t>::max()) {
        refuse(AttributeType::String,
               "the texts are " + std::to_string(characterCount) + " bytes long together");
    }
    DataNode* node = DataNode::make(AttributeType::String, times, valueCount, tupleSize,
                                    count * sizeof(std::uint32_t) + characterCount);
    std::uint32_t* ends = node->values<std::uint32_t>();
    char* const characters = reinterpret_cast<char*>(ends + count);
    std::size_t end = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::string_view text = textAt(i);
        text.copy(characters + end, text.size());
        end += text.size();
        characters[end] = 0;
        ends[i] = static_cast<std::uint32_t>(end);
        ++end;
    }
    return Attribute::CreateAndSteal(node);
}

template <typename T>
Attribute makeStrings(std::span<const T> values, std::int64_t tupleSize) {
    return makeStrings(
        {}, 1, values.size(), [values](std::size_t i) { return viewOf(values[i]); }, tupleSize);
}

Attribute makeSampled(std::span<const float> times,
                      const std::vector<std::vector<std::string>>& samples,
                      std::int64_t tupleSize) {
    const SampleOrder order(AttributeType::String, times, samples.size());
    const std::size_t valueCount = samples.front().size();
    for (const auto& sample : samples) {
        if (sample.size() != valueCount) {
            refuse(AttributeType::String,
                   "samples differ in length: " + std::to_string(valueCount) + " values and " +
                       std::to_string(sample.size()));
        }
    }
    return makeStrings(
        order.times(), samples.size(), valueCount,
        [&](std::size_t i) {
            return std::string_view(samples[order.source(i / valueCount)][i % valueCount]);
        },
        tupleSize);
}

StringSample sampleOf(const DataNode* node, std::size_t index) noexcept {
    return {node->characters(), node->values<std::uint32_t>(), index * node->valueCount,
            node->valueCount};
}

} // namespace

StringAttribute::StringAttribute(std::string_view value)
    : DataAttribute(makeStrings(std::span<const std::string_view>(&value, 1), 1)) {}

StringAttribute::StringAttribute(const char* value) : StringAttribute(viewOf(value)) {}

StringAttribute::StringAttribute(std::span<const std::string> values, std::int64_t tupleSize)
    : DataAttribute(makeStrings(values, tupleSize)) {}

StringAttribute::StringAttribute(std::span<const std::string_view> values, std::int64_t tupleSize)
    : DataAttribute(makeStrings(values, tupleSize)) {}

StringAttribute::StringAttribute(std::span<const char* const> values, std::int64_t tupleSize)
    : DataAttribute(makeStrings(values, tupleSize)) {}

StringAttribute::StringAttribute(std::span<const float> times,
                                 const std::vector<std::vector<std::string>>& samples,
                                 std::int64_t tupleSize)
    : DataAttribute(makeSampled(times, samples, tupleSize)) {}

StringAttribute::StringAttribute(Attribute other) noexcept : DataAttribute(std::move(other)) {
    keepOnly(AttributeType::String);
}

std::string StringAttribute::getValue(std::string_view defaultValue) const {
    const StringSample values = getNearestSample(0.0F);
    return std::string(values.empty() ? defaultValue : values.front());
}

const char* StringAttribute::getValueCstr() const noexcept {
    const StringSample values = getNearestSample(0.0F);
    return values.empty() ? "" : values.front().c_str();
}

StringSample StringAttribute::getNearestSample(float time) const noexcept {
    const DataNode* node = asDataNode(getHandle());
    return node ? sampleOf(node, node->nearestSample(time)) : StringSample();
}

StringSample StringAttribute::getSample(std::int64_t index) const noexcept {
    const DataNode* node = asDataNode(getHandle());
    if (!node || index < 0 || index >= node->sampleCount) {
        return {};
    }
    return sampleOf(node, static_cast<std::size_t>(index));
}

} // namespace VlAttribute
