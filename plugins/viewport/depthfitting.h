#pragma once

#include "viewer_api/plugin/ViewportHost.h"

#include <Imath/ImathBox.h>

namespace Bundled {

/// Gives the projection of a viewport's active camera the range of depth that suits a scene in
/// these bounds, in world space. What a location that drives the camera says by its `geometry.near`
/// and `geometry.far` holds. Cameras that are neither perspective nor orthographic stay as they
/// are.
void fitDepthRange(const ViewerPlugin::ViewportHost& viewport, const Imath::Box3d& bounds);

} // namespace Bundled
