#include "manipulator/shapehandle.h"
#include "scene/lightcone.h"

#include "VlAttribute/GroupAttribute.h"

namespace Bundled {

/// "ConeHandle": the cone of the manipulator's first light in wires, with its tip in the middle and
/// along its x axis. It is grasped by the rim.
class ConeHandle final : public ShapeHandle {
public:
    using ShapeHandle::ShapeHandle;

protected:
    const Shape& shape() const override {
        seen = coneShape(halfAngle(), 0.008f);
        return seen;
    }
    const Shape& graspedShape() const override {
        grasped = coneRimShape(halfAngle(), 0.06f);
        return grasped;
    }

private:
    double halfAngle() const {
        const ViewerPlugin::ManipulatorHost owner = manipulator();
        const std::string path = owner.getLocationPaths().getValue("");
        return 0.5 * lightConeAngle(VlAttribute::GroupAttribute(owner.getValue(path, "light")));
    }

    mutable Shape seen;
    mutable Shape grasped;
};

} // namespace Bundled

VL_REGISTER_PLUGIN(Bundled::ConeHandle, "ConeHandle");
