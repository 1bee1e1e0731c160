#include "manipulator/shapehandle.h"

namespace Bundled {

/// "CentreHandle": a ball in the middle, for what is done in no direction in particular.
class CentreHandle final : public ShapeHandle {
public:
    using ShapeHandle::ShapeHandle;

protected:
    const Shape& shape() const override {
        static const Shape seen = ballShape(0.07f);
        return seen;
    }
    const Shape& graspedShape() const override {
        static const Shape grasped = ballShape(0.11f);
        return grasped;
    }
};

} // namespace Bundled

VL_REGISTER_PLUGIN(Bundled::CentreHandle, "CentreHandle");
