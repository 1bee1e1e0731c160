#include "manipulator/matrices.h"
#include "manipulator/presence.h"
#include "manipulator/shapehandle.h"

namespace Bundled {

/// "PlaneHandle": a square that its x axis stands upright on, for what is done in that plane.
class PlaneHandle final : public ShapeHandle {
public:
    using ShapeHandle::ShapeHandle;

protected:
    const Shape& shape() const override {
        static const Shape seen = squareShape();
        return seen;
    }
    const Shape& graspedShape() const override {
        static const Shape grasped = squareShape(0.03f);
        return grasped;
    }
    float opacity() const override { return 0.6f; }
    double presence(const PictureSpace& picture, const Imath::M44d& shapeToWorld) const override {
        const Imath::V3d normal = direction(shapeToWorld, 1).cross(direction(shapeToWorld, 2));
        return planePresence(picture, shapeToWorld.translation(), normal.normalized());
    }
};

} // namespace Bundled

VL_REGISTER_PLUGIN(Bundled::PlaneHandle, "PlaneHandle");
