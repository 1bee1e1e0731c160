#pragma once

#include "VlAttribute/GroupAttribute.h"

namespace Bundled {

/// The angle of a light's cone from edge to edge, in degrees, by its `light` group: 60 without one.
double lightConeAngle(const VlAttribute::GroupAttribute& light);

} // namespace Bundled
