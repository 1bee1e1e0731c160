#pragma once

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>

#include <span>
#include <vector>

namespace Bundled {

/// A turn around an axis of length 1 by degrees, counter-clockwise seen from its tip.
struct Turn {
    Imath::V3d axis;
    double degrees = 0.0;
};

/// The turn within a space that the world shows most nearly as the given one. `arm` is a direction
/// upright to the axis, of length 1, that the turn is to take along.
///
/// Between spaces that are sized alike in all directions it is the same turn. Of an uneven one no
/// turn within looks like a turn from outside; this one keeps two things that do: what lies in the
/// plane of the turn stays in it, and the arm goes as far as it should. That plane's other
/// directions hurry or lag, as on an ellipse.
[[nodiscard]] Turn turnWithin(const Imath::M44d& worldToSpace, const Turn& turn,
                              const Imath::V3d& arm);

/// Whether the rotations, of 4 values each, an angle in degrees and an axis, are three with axes
/// upright to each other.
[[nodiscard]] bool areThreeUpright(std::span<const double> rotations);

/// The values of rotation components, outermost first, once all that they have turned is turned
/// again, in the space that they stand in: of three with upright axes, the angles, each nearest to
/// what it comes from as the turn goes on; of a single one, the angle, and where it must be the
/// axis. A turn by what is not finite turns nothing.
[[nodiscard]] std::vector<double> turned(std::vector<double> rotations, const Turn& turn);

} // namespace Bundled
