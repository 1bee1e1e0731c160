#pragma once

#include "camera/scenecamera.h"

namespace Bundled {

/// "OrthographicCamera": nothing grows smaller with distance; the orthographic width decides.
class OrthographicCamera final : public SceneCamera {
public:
    explicit OrthographicCamera(ViewerPlugin::ViewportCameraHost cameraHost)
        : SceneCamera(cameraHost, kVlViewportCameraTypeOrthographic) {}
};

} // namespace Bundled
