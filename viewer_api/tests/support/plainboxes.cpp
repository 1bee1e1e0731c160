#include "support/plainboxes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>

namespace ViewerAPI::test {

using VlAttribute::DoubleAttribute;

PlainBox boxOf(const std::array<double, 6>& values) {
    PlainBox box{values, values};
    for (double& size : box.sizes) {
        size = std::abs(size);
    }
    return box;
}

namespace {

PlainBox transformed(const PlainBox& box, const PlainMatrix& matrix) {
    if (box.isInverted()) { // nothing has no place
        return box;
    }
    PlainBox result;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        double low = std::numeric_limits<double>::infinity();
        double high = -low;
        double size = 0;
        for (std::size_t corner = 0; corner < 8; ++corner) {
            double value = matrix.values[12 + axis];
            double cornerSize = matrix.sizes[12 + axis];
            for (std::size_t from = 0; from < 3; ++from) {
                const std::size_t side = from * 2 + (corner >> from & 1U);
                value += box.values[side] * matrix.values[from * 4 + axis];
                cornerSize += box.sizes[side] * matrix.sizes[from * 4 + axis];
            }
            low = std::min(low, value);
            high = std::max(high, value);
            size = std::max(size, cornerSize);
        }
        result.values[axis * 2] = low;
        result.values[axis * 2 + 1] = high;
        result.sizes[axis * 2] = result.sizes[axis * 2 + 1] = size;
    }
    return result;
}

} // namespace

PlainBoxes transformed(const PlainBoxes& boxes, const PlainMatrix& matrix) {
    PlainBoxes result;
    for (const auto& [time, box] : boxes) {
        result[time] = transformed(box, matrix);
    }
    return result;
}

void mergeInto(PlainBoxes& merged, const PlainBoxes& added) {
    if (merged.empty() || added.empty()) {
        merged.insert(added.begin(), added.end());
        return;
    }
    PlainBoxes result;
    for (const float time : timesOf(merged, added)) {
        const PlainBox& left = nearest(merged, time);
        const PlainBox& right = nearest(added, time);
        for (std::size_t side = 0; side < 6; ++side) {
            result[time].values[side] = side % 2 == 0
                                            ? std::min(left.values[side], right.values[side])
                                            : std::max(left.values[side], right.values[side]);
            // What comes out may be that of either.
            result[time].sizes[side] = std::max(left.isInverted() ? 0 : left.sizes[side],
                                                right.isInverted() ? 0 : right.sizes[side]);
        }
    }
    merged = result;
}

std::string complaint(const PlainBoxes& expected, const DoubleAttribute& actual) {
    if (actual.getNumberOfTimeSamples() != static_cast<std::int64_t>(expected.size())) {
        return std::to_string(actual.getNumberOfTimeSamples()) + " samples instead of " +
               std::to_string(expected.size());
    }
    std::ostringstream out;
    std::int64_t sample = 0;
    for (const auto& [time, box] : expected) {
        const auto values = actual.getSample(sample++);
        if (values.size() != 6) {
            return std::to_string(values.size()) + " values";
        }
        for (std::size_t side = 0; side < 6; ++side) {
            const double difference = std::abs(values[side] - box.values[side]);
            if (!(difference <= kPlainTolerance * box.sizes[side])) {
                out << "at " << time << " value " << side << " is " << values[side]
                    << " instead of " << box.values[side] << "\n";
            }
        }
    }
    return out.str();
}

} // namespace ViewerAPI::test
