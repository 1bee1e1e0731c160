#pragma once

#include "camera/tomatrix.h"
#include "manipulator/picturespace.h"
#include "viewer_api/plugin/ViewportHost.h"

namespace Bundled {

/// What a viewport shows now.
inline PictureSpace pictureOf(const ViewerPlugin::ViewportHost& viewport) {
    return {toMatrix(viewport.getViewMatrix()), toMatrix(viewport.getProjectionMatrix()),
            viewport.getWidth(), viewport.getHeight()};
}

} // namespace Bundled
