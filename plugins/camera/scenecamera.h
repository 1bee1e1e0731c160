#pragma once

#include "camera/projection.h"
#include "viewer_api/plugin/ViewportCameraPlugin.h"

namespace Bundled {

/// What both cameras share: the projection follows the host's parameters and the picture's size,
/// and a camera goes into a group and comes back from it.
///
/// The group: `viewMatrix` (16 doubles, world to camera), `locationPath`, and under `geometry`, as
/// in a camera location: `projection` ("perspective" or "orthographic"), `fov`, `near`, `far`,
/// `orthographicWidth`, `centerOfInterest`, and `left`, `right`, `bottom`, `top` of the screen
/// window. Numbers are doubles; floats and ints are read as well.
///
/// A group with a `locationPath` and no `viewMatrix` puts the camera where that location stands in
/// the delegate's look-through view: so the attributes of a camera location and its path make a
/// camera of it. Likewise those of a light, which shines down -z: a `light` group in place of a
/// `geometry.fov` gives the field of view, its `coneAngle`, or 60 degrees.
class SceneCamera : public ViewerPlugin::ViewportCameraPlugin {
public:
    void setViewportDimensions(int width, int height) override;
    void setup(const GroupAttribute& camera) override;
    GroupAttribute asAttribute() override;
    void setDirty(int dirtyBits) override;

protected:
    SceneCamera(ViewerPlugin::ViewportCameraHost cameraHost, VlViewportCameraType cameraType);

    VlViewportCameraType getCameraTypeID() final { return type; }

private:
    [[nodiscard]] Lens getLens() const;
    void updateProjection();
    void goToLocation();

    const VlViewportCameraType type;
    int width = 0;
    int height = 0;
    /// Counts the parameters that are being set together: one projection is enough for all.
    int settling = 0;
};

} // namespace Bundled
