#include "gl/frame.h"

#include <algorithm>
#include <cmath>

namespace Bundled {

Imath::M44f Frame::matrix(const double* values) {
    Imath::M44f result;
    std::transform(values, values + 16, result.getValue(),
                   [](double value) { return static_cast<float>(value); });
    return result;
}

double Frame::nearReach() const {
    const Imath::M44d clip(viewToClip);
    const double distance = clip[3][2] / (clip[2][2] - 1.0);
    return distance * Imath::V3d((1.0 + std::abs(clip[2][0])) / clip[0][0],
                                 (1.0 + std::abs(clip[2][1])) / clip[1][1], 1.0)
                          .length();
}

} // namespace Bundled
