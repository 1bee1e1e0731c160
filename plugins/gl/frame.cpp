#include "gl/frame.h"

#include <algorithm>

namespace Bundled {

Imath::M44f Frame::matrix(const double* values) {
    Imath::M44f result;
    std::transform(values, values + 16, result.getValue(),
                   [](double value) { return static_cast<float>(value); });
    return result;
}

} // namespace Bundled
