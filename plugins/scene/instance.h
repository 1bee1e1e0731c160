#pragma once

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>

#include <array>
#include <cstddef>

namespace Bundled {

/// One drawn copy of a geometry, in the layout of the instance buffer.
struct Instance {
    /// The rows of the local-to-world matrix, without the constant fourth column.
    std::array<std::array<float, 3>, 4> rows{};
    /// 1 when the location or one above it is selected, else 0.
    float selected = 0.0f;

    Instance() = default;
    Instance(const Imath::M44d& world, bool isSelected) : selected(isSelected ? 1.0f : 0.0f) {
        for (int row = 0; row < 4; ++row) {
            for (int column = 0; column < 3; ++column) {
                rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)] =
                    static_cast<float>(world[row][column]);
            }
        }
    }

    /// Whether it turns the geometry inside out.
    [[nodiscard]] bool isMirrored() const {
        const Imath::V3d x(rows[0][0], rows[0][1], rows[0][2]);
        const Imath::V3d y(rows[1][0], rows[1][1], rows[1][2]);
        const Imath::V3d z(rows[2][0], rows[2][1], rows[2][2]);
        return x.cross(y).dot(z) < 0.0;
    }

    friend bool operator==(const Instance&, const Instance&) = default;
};
static_assert(sizeof(Instance) == 13 * sizeof(float));

} // namespace Bundled
