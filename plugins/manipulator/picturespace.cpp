#include "manipulator/picturespace.h"

#include <algorithm>

namespace Bundled {

using Imath::V3d;

PictureSpace::PictureSpace(const Imath::M44d& view, const Imath::M44d& projection, int widthPx,
                           int heightPx)
    : worldToView(view), viewToWorld(view.inverse()), viewToClip(projection),
      clipToView(projection.inverse()), width(std::max(1, widthPx)), height(std::max(1, heightPx)) {
}

Ray PictureSpace::rayAt(const Imath::V2i& pixel) const {
    const V3d place(2.0 * (pixel.x + 0.5) / width - 1.0, 1.0 - 2.0 * (pixel.y + 0.5) / height,
                    -1.0);
    const V3d nearest = place * clipToView;
    V3d origin(0.0);
    V3d direction(0.0, 0.0, -1.0);
    if (isPerspective()) {
        direction = nearest;
    } else {
        origin = {nearest.x, nearest.y, 0.0};
    }
    return {origin * viewToWorld, inWorld(direction), !isPerspective()};
}

double PictureSpace::pixelLengthAt(const V3d& point) const {
    const V3d seen = point * worldToView;
    const double w = seen.x * viewToClip[0][3] + seen.y * viewToClip[1][3] +
                     seen.z * viewToClip[2][3] + viewToClip[3][3];
    return w > 0.0 ? 2.0 * w / (viewToClip[1][1] * height) : 0.0;
}

V3d PictureSpace::inWorld(const V3d& viewDirection) const {
    V3d direction;
    viewToWorld.multDirMatrix(viewDirection, direction);
    return direction.normalized();
}

V3d PictureSpace::sightTo(const V3d& point) const {
    return isPerspective() ? (point - viewToWorld.translation()).normalized() : forward();
}

} // namespace Bundled
