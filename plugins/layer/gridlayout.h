#pragma once

#include <Imath/ImathBox.h>
#include <Imath/ImathVec.h>

namespace Bundled {

/// Where a ground grid lies and how fine it is.
struct GridLayout {
    Imath::V3f centre{0.0f};
    /// Where it has faded out.
    float radius = 100.0f;
    /// Between neighbouring lines: a power of ten.
    float spacing = 1.0f;

    /// For a scene in these bounds (world space; empty: a grid around the origin). The grid lies at
    /// height 0, under the scene, and reaches well beyond it.
    static GridLayout around(const Imath::Box3d& bounds);
    friend bool operator==(const GridLayout&, const GridLayout&) = default;
};

} // namespace Bundled
