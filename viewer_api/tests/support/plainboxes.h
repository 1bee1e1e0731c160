#pragma once

#include "support/plainxform.h"

#include "VlAttribute/DoubleAttribute.h"

#include <array>
#include <map>
#include <string>

/// Boxes evaluated the plain way: by their eight corners, and with all samples at hand.
namespace ViewerAPI::test {

struct PlainBox {
    std::array<double, 6> values{}; ///< xmin, xmax, ymin, ymax, zmin, zmax
    std::array<double, 6> sizes{};  ///< as those of a PlainMatrix

    [[nodiscard]] bool isInverted() const {
        return values[0] > values[1] || values[2] > values[3] || values[4] > values[5];
    }
};

/// By time; empty where there is no box. All boxes that vary have the same times.
using PlainBoxes = std::map<float, PlainBox>;

[[nodiscard]] PlainBox boxOf(const std::array<double, 6>& values);
[[nodiscard]] PlainBoxes transformed(const PlainBoxes& boxes, const PlainMatrix& matrix);
/// Each time of either has the box around what both show then.
void mergeInto(PlainBoxes& merged, const PlainBoxes& added);

/// Empty when the attribute has these boxes, as near as arithmetic can be.
[[nodiscard]] std::string complaint(const PlainBoxes& expected,
                                    const VlAttribute::DoubleAttribute& actual);

} // namespace ViewerAPI::test
