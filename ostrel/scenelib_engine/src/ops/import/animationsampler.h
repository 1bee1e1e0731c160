#pragma once

#include "modeldata.h"

#include <Imath/ImathMatrix.h>

#include <vector>

namespace VlScenelibEngine {

/// The matrix of a channel's node at a time. Between keys positions and scales move straight and
/// rotations by the shorter arc; before the first and after the last key they stand still. `rest`
/// gives what the channel has no keys for.
[[nodiscard]] Imath::M44d sampleMatrix(const ModelData::Channel& channel, double seconds,
                                       const Imath::M44d& rest);

/// The weights of the morphs at a time, in the same manner; empty without keys.
[[nodiscard]] std::vector<float> sampleWeights(const ModelData::MorphChannel& channel,
                                               double seconds);

} // namespace VlScenelibEngine
