#pragma once

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupAttribute.h"

#include <array>
#include <span>
#include <utility>

/// Transforms and bounds of the scene.
///
/// A transform is a group of components, walked in order, the outermost first. A child that is
/// itself a group is walked in its place, to any depth, so a group of the `xform` groups of a
/// location's ancestors and itself, from the root down, gives its world transform. Components match
/// by how their names begin:
///
/// | begins with | values | |
/// |---|---|---|
/// | `translate` | 3 | |
/// | `rotate` | 4 | angle in degrees, axis of any length; counter-clockwise seen from its tip |
/// | `scale` | 3 | |
/// | `matrix` | 16 | |
/// | `shear` | 6 | reserved: has no effect |
/// | `reset` | any | discards all that stands before it, and makes the transform absolute |
///
/// Values are doubles or floats; a component of another name, kind or size has no effect.
///
/// A matrix is a `DoubleAttribute` of 16 values with tuple size 4 for row vectors: in the product a
/// later component stands on the left, and the translation is values 12 to 14. Bounds are 6 values:
/// xmin, xmax, ymin, ymax, zmin, zmax. They count as valid with exactly 6 values a sample.
///
/// [any-thread]
namespace VlScenelib::VlXFormUtil {

/// The matrix at a time, each component taken from its sample nearest to it, and whether the
/// transform is absolute. A null group gives a null matrix and false; one without components the
/// identity. The matrix of a group that was asked for shortly before on the same thread comes from
/// a small cache, so that equal transforms share one matrix.
[[nodiscard]] std::pair<VlAttribute::DoubleAttribute, bool>
CalcTransformMatrixAtTime(const VlAttribute::GroupAttribute& xform, float time);

/// The same with a sample for every time at which a component has one; components that do not vary
/// add none.
[[nodiscard]] std::pair<VlAttribute::DoubleAttribute, bool>
CalcTransformMatrixAtExistingTimes(const VlAttribute::GroupAttribute& xforms);

/// The axis-aligned box around the transformed box, with a sample for every time at which matrix or
/// bounds have one. A null matrix counts as the identity; invalid bounds give null. An inverted box
/// (a minimum above its maximum: nothing) stays as it is.
[[nodiscard]] VlAttribute::DoubleAttribute
CalcTransformedBoundsAtExistingTimes(const VlAttribute::DoubleAttribute& matrix,
                                     const VlAttribute::DoubleAttribute& bounds);

/// The same at one time, of plain numbers.
[[nodiscard]] std::array<double, 6> TransformBounds(std::span<const double, 16> matrix,
                                                    std::span<const double, 6> bounds);

/// The box around both, with a sample for every time at which either has one. An invalid one adds
/// nothing; null when both are.
[[nodiscard]] VlAttribute::DoubleAttribute MergeBounds(const VlAttribute::DoubleAttribute& first,
                                                       const VlAttribute::DoubleAttribute& second);

} // namespace VlScenelib::VlXFormUtil
