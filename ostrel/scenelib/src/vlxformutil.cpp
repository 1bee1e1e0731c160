#include "VlScenelib/VlXFormUtil.h"

#include "matrixcache.h"
#include "sampletimes.h"
#include "xformcomponents.h"

#include <Imath/ImathVec.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <span>
#include <vector>

namespace VlScenelib::VlXFormUtil {

namespace {

using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;

constexpr std::size_t kMatrixValues = 16;
constexpr std::int64_t kMatrixTuple = 4;
constexpr std::size_t kBoundsValues = 6;
using Bounds = std::array<double, kBoundsValues>;

std::span<const double, kMatrixValues> valuesOf(const Imath::M44d& matrix) {
    return std::span<const double, kMatrixValues>(matrix[0], kMatrixValues);
}

bool isValidBounds(const DoubleAttribute& bounds) {
    return bounds.getNumberOfTimeSamples() > 0 &&
           bounds.getNumberOfValues() == static_cast<std::int64_t>(kBoundsValues);
}

Bounds boundsAt(const DoubleAttribute& bounds, float time) {
    Bounds result;
    std::copy_n(bounds.getNearestSample(time).begin(), kBoundsValues, result.begin());
    return result;
}

Imath::M44d matrixAt(const DoubleAttribute& matrix, float time) {
    Imath::M44d result;
    const std::span<const double> values = matrix.getNearestSample(time);
    if (values.size() == kMatrixValues) {
        std::copy(values.begin(), values.end(), &result[0][0]);
    }
    return result;
}

bool isInverted(const Bounds& bounds) {
    return bounds[0] > bounds[1] || bounds[2] > bounds[3] || bounds[4] > bounds[5];
}

bool isAffine(const Imath::M44d& matrix) {
    return matrix[0][3] == 0 && matrix[1][3] == 0 && matrix[2][3] == 0 && matrix[3][3] == 1;
}

/// By centre and half extent: each result axis takes the half extents weighted by the matrix's
/// absolute values, which is what its eight corners would give.
Bounds transformAffine(const Imath::M44d& matrix, const Bounds& bounds) {
    Bounds result;
    for (int axis = 0; axis < 3; ++axis) {
        double centre = matrix[3][axis];
        double half = 0;
        for (int from = 0; from < 3; ++from) {
            const double low = bounds[static_cast<std::size_t>(from) * 2];
            const double high = bounds[static_cast<std::size_t>(from) * 2 + 1];
            // Halved first, so that the largest numbers don't overflow.
            centre += (low * 0.5 + high * 0.5) * matrix[from][axis];
            half += (high * 0.5 - low * 0.5) * std::abs(matrix[from][axis]);
        }
        result[static_cast<std::size_t>(axis) * 2] = centre - half;
        result[static_cast<std::size_t>(axis) * 2 + 1] = centre + half;
    }
    return result;
}

/// With perspective in the matrix, the box of the corners after division.
Bounds transformProjective(const Imath::M44d& matrix, const Bounds& bounds) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    Bounds result{kInfinity, -kInfinity, kInfinity, -kInfinity, kInfinity, -kInfinity};
    for (unsigned corner = 0; corner < 8; ++corner) {
        const Imath::V3d point(bounds[corner & 1U], bounds[2 + ((corner >> 1U) & 1U)],
                               bounds[4 + ((corner >> 2U) & 1U)]);
        const Imath::V3d moved = point * matrix;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const double value = moved[static_cast<int>(axis)];
            result[axis * 2] = std::min(result[axis * 2], value);
            result[axis * 2 + 1] = std::max(result[axis * 2 + 1], value);
        }
    }
    return result;
}

Bounds transformBounds(const Imath::M44d& matrix, const Bounds& bounds) {
    if (isInverted(bounds)) {
        // The box of no points has the largest numbers in it, which any scale makes infinite and
        // then no numbers at all.
        return bounds;
    }
    return isAffine(matrix) ? transformAffine(matrix, bounds) : transformProjective(matrix, bounds);
}

template <typename At>
DoubleAttribute sampled(const std::vector<float>& times, std::int64_t tupleSize, At&& at) {
    if (times.empty()) {
        const auto values = at(0.0F);
        return DoubleAttribute(std::span<const double>(values), tupleSize);
    }
    std::vector<std::vector<double>> samples;
    samples.reserve(times.size());
    for (const float time : times) {
        const auto values = at(time);
        samples.emplace_back(values.begin(), values.end());
    }
    return DoubleAttribute(times, samples, tupleSize);
}

} // namespace

std::pair<DoubleAttribute, bool> CalcTransformMatrixAtTime(const GroupAttribute& xform,
                                                           float time) {
    if (!xform.isValid()) {
        return {};
    }
    thread_local MatrixCache cache;
    MatrixCache::Entry& entry = cache.slot(xform, time);
    if (!MatrixCache::holds(entry, xform, time)) {
        const TransformAtTime transform = evaluateTransform(xform, time);
        entry = {xform, DoubleAttribute(valuesOf(transform.matrix), kMatrixTuple), time,
                 transform.isAbsolute};
    }
    return {entry.matrix, entry.isAbsolute};
}

std::pair<DoubleAttribute, bool> CalcTransformMatrixAtExistingTimes(const GroupAttribute& xforms) {
    if (!xforms.isValid()) {
        return {};
    }
    SampleTimes times;
    addComponentTimes(xforms, times);
    bool isAbsolute = false;
    const DoubleAttribute matrix = sampled(times.finish(), kMatrixTuple, [&](float time) {
        const TransformAtTime transform = evaluateTransform(xforms, time);
        isAbsolute = transform.isAbsolute;
        std::array<double, kMatrixValues> values;
        std::copy_n(&transform.matrix[0][0], kMatrixValues, values.begin());
        return values;
    });
    return {matrix, isAbsolute};
}

DoubleAttribute CalcTransformedBoundsAtExistingTimes(const DoubleAttribute& matrix,
                                                     const DoubleAttribute& bounds) {
    if (!isValidBounds(bounds)) {
        return {};
    }
    if (!matrix.isValid()) {
        return bounds;
    }
    SampleTimes times;
    times.add(matrix);
    times.add(bounds);
    return sampled(times.finish(), 1, [&](float time) {
        return transformBounds(matrixAt(matrix, time), boundsAt(bounds, time));
    });
}

std::array<double, 6> TransformBounds(std::span<const double, 16> matrix,
                                      std::span<const double, 6> bounds) {
    Imath::M44d transform(Imath::UNINITIALIZED);
    std::copy(matrix.begin(), matrix.end(), &transform[0][0]);
    Bounds box;
    std::copy(bounds.begin(), bounds.end(), box.begin());
    return transformBounds(transform, box);
}

DoubleAttribute MergeBounds(const DoubleAttribute& first, const DoubleAttribute& second) {
    if (!isValidBounds(first)) {
        return isValidBounds(second) ? second : DoubleAttribute();
    }
    if (!isValidBounds(second)) {
        return first;
    }
    SampleTimes times;
    times.add(first);
    times.add(second);
    return sampled(times.finish(), 1, [&](float time) {
        const Bounds left = boundsAt(first, time);
        const Bounds right = boundsAt(second, time);
        Bounds result;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            result[axis * 2] = std::min(left[axis * 2], right[axis * 2]);
            result[axis * 2 + 1] = std::max(left[axis * 2 + 1], right[axis * 2 + 1]);
        }
        return result;
    });
}

} // namespace VlScenelib::VlXFormUtil
