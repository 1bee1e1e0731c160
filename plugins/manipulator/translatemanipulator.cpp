#include "manipulator/componentdrag.h"
#include "manipulator/dragmath.h"
#include "manipulator/gizmo.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <vector>

namespace Bundled {

namespace {

class TranslateDrag final : public ComponentDrag {
public:
    TranslateDrag(const Grasp& begun, const Imath::V3d& graspedPoint,
                  ViewerPlugin::ManipulatorHost manipulator)
        : ComponentDrag(begun, manipulator, XformComponents::Kind::Translate),
          grasped(graspedPoint) {}

    bool moveTo(const Ray& ray, double step) override {
        const auto point = grasp.pointUnder(ray);
        if (!point) {
            return true;
        }
        const Imath::M44d& axes = grasp.place.axes;
        axes.transposed().multDirMatrix(*point - grasped, way);
        for (int i = 0; i < 3; ++i) {
            way[i] = snapped(way[i], step);
        }
        Imath::V3d worldWay;
        axes.multDirMatrix(way, worldWay);
        return edits.show([&worldWay](const ComponentEdits::Each& edit) {
            Imath::V3d change;
            edit.worldToComponents.multDirMatrix(worldWay, change);
            std::vector<double> values = edit.components.values;
            for (int i = 0; i < 3; ++i) {
                values[static_cast<std::size_t>(i)] += change[i];
            }
            return values;
        });
    }

    VlAttribute::Attribute getReadout() const override {
        return VlAttribute::DoubleAttribute({way.x, way.y, way.z}, 3);
    }

private:
    /// In world space.
    const Imath::V3d grasped;
    /// Along the gizmo's axes.
    Imath::V3d way{0.0};
};

} // namespace

/// "TranslateManipulator": moves locations in world space, whatever their parents are, by their
/// `translate`. What is grasped stays under the pointer. Its readout is the way so far along the
/// gizmo's axes.
class TranslateManipulator final : public Gizmo {
public:
    explicit TranslateManipulator(ViewerPlugin::ManipulatorHost manipulatorHost)
        : Gizmo(manipulatorHost, kParts) {}

    static GroupAttribute getTags() {
        return {{"displayName", VlAttribute::StringAttribute("Translate")},
                {"group", VlAttribute::StringAttribute("Transform")}};
    }

protected:
    std::unique_ptr<Drag> beginDrag(const Grasp& grasp) override {
        const auto grasped = grasp.pointUnder(grasp.ray);
        return grasped ? ComponentDrag::unlessIdle(
                             std::make_unique<TranslateDrag>(grasp, *grasped, host))
                       : nullptr;
    }

private:
    // Planes last: one sees through them.
    static constexpr GizmoPart kParts[] = {
        {"x", "AxisHandle", Motion::Axis, 0},    {"y", "AxisHandle", Motion::Axis, 1},
        {"z", "AxisHandle", Motion::Axis, 2},    {"centre", "CentreHandle", Motion::Picture, -1},
        {"yz", "PlaneHandle", Motion::Plane, 0}, {"zx", "PlaneHandle", Motion::Plane, 1},
        {"xy", "PlaneHandle", Motion::Plane, 2}};
};

} // namespace Bundled

VL_REGISTER_PLUGIN(Bundled::TranslateManipulator, "TranslateManipulator");
