#pragma once

#include <Imath/ImathBox.h>
#include <Imath/ImathMatrix.h>

#include <array>

namespace Bundled {

/// What a camera, or a part of its picture, can see: six planes.
class Frustum {
public:
    enum class Side { Outside, Across, Inside };

    /// From world space (or any other) to clip space, for row vectors.
    explicit Frustum(const Imath::M44d& toClip);

    /// The same for the part of the picture between these places, which run from -1 to 1 from left
    /// to right and from bottom to top.
    Frustum(const Imath::M44d& toClip, double left, double right, double bottom, double top);

    /// Where the box is. Outside is certain; a box near an edge may count as across although
    /// nothing of it is seen. An empty box is outside.
    [[nodiscard]] Side sideOf(const Imath::Box3d& box) const;

private:
    struct Plane {
        Imath::V3d normal;
        double offset = 0.0;
    };
    std::array<Plane, 6> planes;
};

} // namespace Bundled
