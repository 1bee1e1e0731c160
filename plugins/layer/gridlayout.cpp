#include "layer/gridlayout.h"

#include <algorithm>
#include <cmath>

namespace Bundled {

GridLayout GridLayout::around(const Imath::Box3d& bounds) {
    GridLayout layout;
    if (bounds.isEmpty()) {
        return layout;
    }
    const Imath::V3d size = bounds.size();
    const double extent = std::max({size.x, size.y, size.z, 1e-6});
    layout.spacing = static_cast<float>(std::pow(10.0, std::floor(std::log10(extent)) - 1.0));
    layout.radius = static_cast<float>(extent * 6.0);
    // On the lines, so that it does not shift under a scene that moves a little.
    const auto snapped = [&layout](double value) {
        const double step = 10.0 * static_cast<double>(layout.spacing);
        return static_cast<float>(std::round(value / step) * step);
    };
    const Imath::V3d middle = bounds.center();
    layout.centre = Imath::V3f(snapped(middle.x), 0.0f, snapped(middle.z));
    return layout;
}

} // namespace Bundled
