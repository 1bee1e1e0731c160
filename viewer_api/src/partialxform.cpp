#include "partialxform.h"

#include "matrixattribute.h"

#include "VlAttribute/GroupBuilder.h"
#include "VlScenelib/VlXFormUtil.h"

#include <ImathMatrix.h>

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

namespace ViewerAPI {
namespace {

using VlAttribute::Attribute;
using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;

constexpr std::size_t kMatrixValues = 16;
constexpr std::int64_t kMatrixTuple = 4;

/// A single sample holds for all times, and asks for none.
void addSampleTimes(const DoubleAttribute& attribute, std::vector<float>& times) {
    if (attribute.getNumberOfTimeSamples() == 1) {
        return;
    }
    for (std::int64_t index = 0; index < attribute.getNumberOfTimeSamples(); ++index) {
        times.push_back(attribute.getSampleTime(index));
    }
}

/// The other groups of the transform, by their own names in front of the part that is wanted.
void copyOtherGroups(const GroupAttribute& xform, const PartialXformQuery& query,
                     GroupBuilder& builder) {
    bool isBehind = false;
    for (std::int64_t index = 0; index < xform.getNumberOfChildren(); ++index) {
        const std::string_view name = xform.getChildName(index);
        if (name == query.groupName) {
            isBehind = true;
        } else if (isBehind ? query.includeGroupsAfter : query.includeGroupsBefore) {
            builder.set(name, xform.getChildByIndex(index));
        }
    }
}

/// Copies components up to the matching ones, those included if wanted; false without a match.
bool copyComponents(const GroupAttribute& group, const PartialXformQuery& query,
                    GroupBuilder& builder) {
    std::string_view pattern = query.componentName;
    if (!pattern.empty() && pattern.back() == '?') {
        pattern.remove_suffix(1);
    }
    const std::string prefix = "xform." + std::string(query.groupName) + ".";
    bool isFound = false;
    for (std::int64_t index = 0; index < group.getNumberOfChildren(); ++index) {
        const std::string_view name = group.getChildName(index);
        if (name.substr(0, pattern.size()) == pattern) {
            isFound = true;
            if (!query.includeComponent) {
                break;
            }
        } else if (isFound) {
            break;
        }
        builder.set(prefix + std::string(name), group.getChildByIndex(index));
    }
    return isFound;
}

} // namespace

DoubleAttribute calcPartialXform(const GroupAttribute& xform, const PartialXformQuery& query,
                                 bool& isAbsolute) {
    isAbsolute = false;
    const GroupAttribute group(xform.getChildByName(query.groupName));
    if (!group) {
        return {};
    }
    GroupBuilder builder;
    copyOtherGroups(xform, query, builder);
    if (!copyComponents(group, query, builder)) {
        return {};
    }
    auto [matrix, absolute] =
        VlScenelib::VlXFormUtil::CalcTransformMatrixAtExistingTimes(builder.build());
    isAbsolute = absolute;
    return matrix;
}

DoubleAttribute multiplyMatrices(const DoubleAttribute& left, const DoubleAttribute& right) {
    if (!left) {
        return right;
    }
    if (!right) {
        return left;
    }
    std::vector<float> times;
    addSampleTimes(left, times);
    addSampleTimes(right, times);
    if (times.empty()) {
        const Imath::M44d product = toMatrix(left, 0.0F) * toMatrix(right, 0.0F);
        return DoubleAttribute(std::span(product.getValue(), kMatrixValues), kMatrixTuple);
    }
    std::sort(times.begin(), times.end());
    times.erase(std::unique(times.begin(), times.end()), times.end());
    std::vector<std::vector<double>> samples;
    samples.reserve(times.size());
    for (const float time : times) {
        const Imath::M44d product = toMatrix(left, time) * toMatrix(right, time);
        const double* const values = product.getValue();
        samples.emplace_back(values, values + kMatrixValues);
    }
    return DoubleAttribute(times, samples, kMatrixTuple);
}

} // namespace ViewerAPI
