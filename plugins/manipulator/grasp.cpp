#include "manipulator/grasp.h"

#include "manipulator/dragmath.h"

namespace Bundled {

using Imath::V3d;

V3d Grasp::axis() const {
    return part.axis < 0 ? -space.sightTo(place.centre) : place.axis(part.axis);
}

std::optional<V3d> Grasp::pointUnder(const Ray& pointing) const {
    switch (part.motion) {
    case Motion::Axis:
        if (const auto distance = alongAxis(pointing, place.centre, axis())) {
            return place.centre + axis() * *distance;
        }
        return std::nullopt;
    case Motion::Plane:
        return onPlane(pointing, place.centre, place.normal(part.axis));
    case Motion::Ring:
        return onPlane(pointing, place.centre, axis());
    case Motion::Picture:
        return onPlane(pointing, place.centre, space.forward());
    }
    return std::nullopt;
}

} // namespace Bundled
