#include "manipulator/matrices.h"
#include "manipulator/presence.h"
#include "manipulator/shapehandle.h"

namespace Bundled {

/// "BoxHandle": a cube at the end of a stick along its x axis, or without an axis in the middle,
/// for what is sized.
class BoxHandle final : public ShapeHandle {
public:
    using ShapeHandle::ShapeHandle;

protected:
    const Shape& shape() const override {
        static const Shape onStick = boxShape();
        static const Shape inMiddle = cubeShape(Imath::V3f(0.0f), 0.065f);
        return axis() < 0 ? inMiddle : onStick;
    }
    const Shape& graspedShape() const override {
        static const Shape onStick = boxShape(0.04f);
        static const Shape inMiddle = cubeShape(Imath::V3f(0.0f), 0.1f);
        return axis() < 0 ? inMiddle : onStick;
    }
    double presence(const PictureSpace& picture, const Imath::M44d& shapeToWorld) const override {
        return axis() < 0
                   ? 1.0
                   : axisPresence(picture, shapeToWorld.translation(), direction(shapeToWorld, 0));
    }
};

} // namespace Bundled

VL_REGISTER_PLUGIN(Bundled::BoxHandle, "BoxHandle");
