#pragma once

#include "sampletimes.h"

#include "VlAttribute/GroupAttribute.h"

#include <Imath/ImathMatrix.h>

namespace VlScenelib {

struct TransformAtTime {
    Imath::M44d matrix;
    bool isAbsolute = false;
};

/// The product of a transform group's components, nested groups included, each taken from the
/// sample nearest to `time`.
[[nodiscard]] TransformAtTime evaluateTransform(const VlAttribute::GroupAttribute& xform,
                                                float time);

/// Adds the times of every component that evaluateTransform() would heed.
void addComponentTimes(const VlAttribute::GroupAttribute& xform, SampleTimes& times);

} // namespace VlScenelib
