#pragma once

#include "meshreader.h"
#include "modeldata.h"

struct aiAnimation;

/// Makes an animation of an imported one, with times in seconds. What moves no node of the model is
/// left out.
[[nodiscard]] ModelData::Animation readAnimation(const aiAnimation& animation,
                                                 const NodeIndices& nodes);
