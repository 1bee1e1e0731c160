#include "VlAttribute/VlAttributeC.h"

#include "VlAttribute/VlAttribute.h"
#include "datanode.h"
#include "groupnode.h"

#include <exception>
#include <vector>

using namespace VlAttribute;

static_assert(kVlAttributeNone == static_cast<int>(AttributeType::None));
static_assert(kVlAttributeInt == static_cast<int>(AttributeType::Int));
static_assert(kVlAttributeFloat == static_cast<int>(AttributeType::Float));
static_assert(kVlAttributeDouble == static_cast<int>(AttributeType::Double));
static_assert(kVlAttributeString == static_cast<int>(AttributeType::String));
static_assert(kVlAttributeGroup == static_cast<int>(AttributeType::Group));

namespace {

/// What C gets of a function that makes an attribute: null instead of an exception.
template <typename Make>
VlAttributeStruct* made(Make make) noexcept {
    try {
        return make().detach();
    } catch (const std::exception&) {
        return nullptr;
    }
}

template <typename T>
const T* nearestSample(const VlAttributeStruct* attribute, AttributeType type, float time,
                       std::uint32_t* count) noexcept {
    const DataNode* node = attribute && attribute->type == type ? asDataNode(attribute) : nullptr;
    if (count) {
        *count = node ? node->valueCount : 0;
    }
    return node ? node->values<T>() + node->nearestSample(time) * node->valueCount : nullptr;
}

template <typename Kind, typename T>
VlAttributeStruct* createSampled(const float* times, std::uint32_t sampleCount, const T* values,
                                 std::uint32_t count, std::uint32_t tupleSize) noexcept {
    return made([&] {
        std::vector<std::span<const T>> samples;
        samples.reserve(sampleCount);
        for (std::size_t i = 0; i < sampleCount; ++i) {
            samples.emplace_back(count == 0 ? values : values + i * count, count);
        }
        return Kind(std::span(times, sampleCount), std::span<const std::span<const T>>(samples),
                    tupleSize);
    });
}

} // namespace

VlAttributeStruct* vlAttributeRetain(VlAttributeStruct* attribute) {
    detail::retainNode(attribute);
    return attribute;
}

void vlAttributeRelease(VlAttributeStruct* attribute) {
    detail::releaseNode(attribute);
}

int vlAttributeGetType(const VlAttributeStruct* attribute) {
    return attribute ? static_cast<int>(attribute->type) : kVlAttributeNone;
}

void vlAttributeGetHash(VlAttributeStruct* attribute, uint64_t* first, uint64_t* second) {
    const Hash hash = Attribute::CreateAndRetain(attribute).getHash();
    *first = hash.first;
    *second = hash.second;
}

int vlAttributeEquals(VlAttributeStruct* left, VlAttributeStruct* right) {
    return Attribute::CreateAndRetain(left) == Attribute::CreateAndRetain(right) ? 1 : 0;
}

uint32_t vlAttributeGetNumberOfValues(const VlAttributeStruct* attribute) {
    const DataNode* node = asDataNode(attribute);
    return node ? node->valueCount : 0;
}

uint32_t vlAttributeGetTupleSize(const VlAttributeStruct* attribute) {
    const DataNode* node = asDataNode(attribute);
    return node ? node->tupleSize : 0;
}

uint32_t vlAttributeGetNumberOfTimeSamples(const VlAttributeStruct* attribute) {
    const DataNode* node = asDataNode(attribute);
    return node ? node->sampleCount : 0;
}

float vlAttributeGetSampleTime(const VlAttributeStruct* attribute, uint32_t index) {
    const DataNode* node = asDataNode(attribute);
    return node && index < node->sampleCount ? node->times()[index] : 0.0F;
}

const int32_t* vlIntAttributeGetNearestSample(const VlAttributeStruct* attribute, float time,
                                              uint32_t* count) {
    return nearestSample<int32_t>(attribute, AttributeType::Int, time, count);
}

const float* vlFloatAttributeGetNearestSample(const VlAttributeStruct* attribute, float time,
                                              uint32_t* count) {
    return nearestSample<float>(attribute, AttributeType::Float, time, count);
}

const double* vlDoubleAttributeGetNearestSample(const VlAttributeStruct* attribute, float time,
                                                uint32_t* count) {
    return nearestSample<double>(attribute, AttributeType::Double, time, count);
}

const char* vlStringAttributeGetNearestValue(const VlAttributeStruct* attribute, float time,
                                             uint32_t index) {
    const bool isString = attribute && attribute->type == AttributeType::String;
    const DataNode* node = isString ? asDataNode(attribute) : nullptr;
    if (!node || index >= node->valueCount) {
        return nullptr;
    }
    const StringSample sample(node->characters(), node->values<uint32_t>(),
                              node->nearestSample(time) * node->valueCount, node->valueCount);
    return sample[index].c_str();
}

VlAttributeStruct* vlIntAttributeCreate(const int32_t* values, uint32_t count, uint32_t tupleSize) {
    return made([=] { return IntAttribute(std::span(values, count), tupleSize); });
}

VlAttributeStruct* vlFloatAttributeCreate(const float* values, uint32_t count, uint32_t tupleSize) {
    return made([=] { return FloatAttribute(std::span(values, count), tupleSize); });
}

VlAttributeStruct* vlDoubleAttributeCreate(const double* values, uint32_t count,
                                           uint32_t tupleSize) {
    return made([=] { return DoubleAttribute(std::span(values, count), tupleSize); });
}

VlAttributeStruct* vlStringAttributeCreate(const char* const* values, uint32_t count,
                                           uint32_t tupleSize) {
    return made([=] { return StringAttribute(std::span(values, count), tupleSize); });
}

VlAttributeStruct* vlIntAttributeCreateSampled(const float* times, uint32_t sampleCount,
                                               const int32_t* values, uint32_t count,
                                               uint32_t tupleSize) {
    return createSampled<IntAttribute>(times, sampleCount, values, count, tupleSize);
}

VlAttributeStruct* vlFloatAttributeCreateSampled(const float* times, uint32_t sampleCount,
                                                 const float* values, uint32_t count,
                                                 uint32_t tupleSize) {
    return createSampled<FloatAttribute>(times, sampleCount, values, count, tupleSize);
}

VlAttributeStruct* vlDoubleAttributeCreateSampled(const float* times, uint32_t sampleCount,
                                                  const double* values, uint32_t count,
                                                  uint32_t tupleSize) {
    return createSampled<DoubleAttribute>(times, sampleCount, values, count, tupleSize);
}

uint32_t vlGroupAttributeGetNumberOfChildren(const VlAttributeStruct* group) {
    const GroupNode* node = asGroupNode(group);
    return node ? node->childCount : 0;
}

VlAttributeStruct* vlGroupAttributeGetChildByName(const VlAttributeStruct* group,
                                                  const char* dottedName) {
    if (!asGroupNode(group) || !dottedName) {
        return nullptr;
    }
    // Looking up changes no value, and the reference that the wrapper takes is a count.
    const GroupAttribute wrapped(Attribute::CreateAndRetain(const_cast<VlAttributeStruct*>(group)));
    return wrapped.borrowChildByName(dottedName).getRetainedHandle();
}

VlAttributeStruct* vlGroupAttributeGetChildByIndex(const VlAttributeStruct* group, uint32_t index) {
    const GroupNode* node = asGroupNode(group);
    return node && index < node->childCount ? node->children()[index].value.getRetainedHandle()
                                            : nullptr;
}

const char* vlGroupAttributeGetChildName(const VlAttributeStruct* group, uint32_t index) {
    const GroupNode* node = asGroupNode(group);
    return node && index < node->childCount ? node->children()[index].name()->text().data()
                                            : nullptr;
}

VlAttributeStruct* vlGroupAttributeCreate(VlAttributeStruct* base, const char* const* dottedNames,
                                          VlAttributeStruct* const* children, uint32_t count) {
    if (base && base->type != AttributeType::Group) {
        return nullptr;
    }
    return made([=] {
        GroupBuilder builder;
        builder.update(GroupAttribute(Attribute::CreateAndRetain(base)));
        for (uint32_t i = 0; i < count; ++i) {
            builder.set(dottedNames[i] ? dottedNames[i] : "",
                        Attribute::CreateAndRetain(children[i]));
        }
        return builder.build();
    });
}
