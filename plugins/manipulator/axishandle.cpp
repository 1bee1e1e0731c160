#include "manipulator/matrices.h"
#include "manipulator/presence.h"
#include "manipulator/shapehandle.h"

namespace Bundled {

/// "AxisHandle": an arrow along its x axis, for what is done along that.
class AxisHandle final : public ShapeHandle {
public:
    using ShapeHandle::ShapeHandle;

protected:
    const Shape& shape() const override {
        static const Shape seen = arrowShape();
        return seen;
    }
    const Shape& graspedShape() const override {
        static const Shape grasped = arrowShape(0.05f);
        return grasped;
    }
    double presence(const PictureSpace& picture, const Imath::M44d& shapeToWorld) const override {
        return axisPresence(picture, shapeToWorld.translation(), direction(shapeToWorld, 0));
    }
};

} // namespace Bundled

VL_REGISTER_PLUGIN(Bundled::AxisHandle, "AxisHandle");
