#include "VlAttribute/DataAttribute.h"

#include "datanode.h"

namespace VlAttribute {

DataAttribute::DataAttribute(Attribute other) noexcept : Attribute(std::move(other)) {
    if (!asDataNode(getHandle())) {
        keepOnly(AttributeType::None);
    }
}

std::int64_t DataAttribute::getNumberOfValues() const noexcept {
    const DataNode* node = asDataNode(getHandle());
    return node ? node->valueCount : 0;
}

std::int64_t DataAttribute::getTupleSize() const noexcept {
    const DataNode* node = asDataNode(getHandle());
    return node ? node->tupleSize : 0;
}

std::int64_t DataAttribute::getNumberOfTimeSamples() const noexcept {
    const DataNode* node = asDataNode(getHandle());
    return node ? node->sampleCount : 0;
}

float DataAttribute::getSampleTime(std::int64_t index) const noexcept {
    const DataNode* node = asDataNode(getHandle());
    if (!node || index < 0 || index >= node->sampleCount) {
        return 0.0F;
    }
    return node->times()[static_cast<std::size_t>(index)];
}

std::int64_t DataAttribute::getNearestSampleIndex(float time) const noexcept {
    const DataNode* node = asDataNode(getHandle());
    return node ? static_cast<std::int64_t>(node->nearestSample(time)) : 0;
}

} // namespace VlAttribute
