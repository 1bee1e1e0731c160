#pragma once

#include "camera/scenecamera.h"

namespace Bundled {

/// "PerspectiveCamera": farther things are smaller; the field of view decides.
class PerspectiveCamera final : public SceneCamera {
public:
    explicit PerspectiveCamera(ViewerPlugin::ViewportCameraHost cameraHost)
        : SceneCamera(cameraHost, kVlViewportCameraTypePerspective) {}
};

} // namespace Bundled
