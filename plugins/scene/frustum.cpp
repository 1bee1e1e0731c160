#include "scene/frustum.h"

#include <cmath>

namespace Bundled {

Frustum::Frustum(const Imath::M44d& toClip) : Frustum(toClip, -1.0, 1.0, -1.0, 1.0) {}

Frustum::Frustum(const Imath::M44d& m, double left, double right, double bottom, double top) {
    // A clip coordinate is the point's product with a column; a side is where one column outweighs
    // a share of the fourth.
    const auto plane = [&m](int column, double sign, double share) {
        const auto value = [&](int row) { return sign * (m[row][column] - share * m[row][3]); };
        return Plane{{value(0), value(1), value(2)}, value(3)};
    };
    planes = {plane(0, 1.0, left), plane(0, -1.0, right), plane(1, 1.0, bottom),
              plane(1, -1.0, top), plane(2, 1.0, -1.0),   plane(2, -1.0, 1.0)};
}

Frustum::Side Frustum::sideOf(const Imath::Box3d& box) const {
    if (box.isEmpty()) {
        return Side::Outside;
    }
    const Imath::V3d center = box.center();
    const Imath::V3d half = box.size() * 0.5;
    Side side = Side::Inside;
    for (const Plane& plane : planes) {
        const double reach = std::abs(plane.normal.x) * half.x + std::abs(plane.normal.y) * half.y +
                             std::abs(plane.normal.z) * half.z;
        const double distance = plane.normal.dot(center) + plane.offset;
        if (distance < -reach) {
            return Side::Outside;
        }
        if (!(distance >= reach)) {
            side = Side::Across;
        }
    }
    return side;
}

} // namespace Bundled
