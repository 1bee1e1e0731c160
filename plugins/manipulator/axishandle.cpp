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
};

} // namespace Bundled

VL_REGISTER_PLUGIN(Bundled::AxisHandle, "AxisHandle");
