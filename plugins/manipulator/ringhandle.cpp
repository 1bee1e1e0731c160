#include "manipulator/pictureof.h"
#include "manipulator/shapehandle.h"

namespace Bundled {

/// "RingHandle": a ring around its x axis, for what is turned around that. Its farther half is
/// faint, and not to be grasped. Without an axis it faces the camera, and is somewhat larger.
class RingHandle final : public ShapeHandle {
public:
    using ShapeHandle::ShapeHandle;

protected:
    const Shape& shape() const override {
        static const Shape aroundAxis = ringShape(1.0f, kTube);
        static const Shape facing = ringShape(kFacingRadius, kTube);
        return axis() < 0 ? facing : aroundAxis;
    }
    const Shape& graspedShape() const override {
        static const Shape aroundAxis = ringShape(1.0f, kGraspedTube);
        static const Shape facing = ringShape(kFacingRadius, kGraspedTube);
        return axis() < 0 ? facing : aroundAxis;
    }
    float opacityBehind() const override { return 0.22f; }

    Imath::M44d shapeToWorld() const override {
        Imath::M44d matrix = ShapeHandle::shapeToWorld();
        if (axis() < 0) {
            const Imath::V3d centre = matrix.translation();
            const PictureSpace picture =
                pictureOf(ViewerPlugin::ViewportHost(manipulator().getViewport().host));
            const double length = Imath::V3d(matrix[0][0], matrix[0][1], matrix[0][2]).length();
            const Imath::V3d x = -picture.sightTo(centre);
            const Imath::V3d y = x.cross(picture.right()).normalized();
            const Imath::V3d z = x.cross(y);
            for (int i = 0; i < 3; ++i) {
                matrix[0][i] = length * x[i];
                matrix[1][i] = length * y[i];
                matrix[2][i] = length * z[i];
            }
        }
        return matrix;
    }

private:
    static constexpr float kTube = 0.012f;
    static constexpr float kGraspedTube = 0.055f;
    static constexpr float kFacingRadius = 1.16f;
};

} // namespace Bundled

VL_REGISTER_PLUGIN(Bundled::RingHandle, "RingHandle");
