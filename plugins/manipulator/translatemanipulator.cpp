#include "manipulator/componentedits.h"
#include "manipulator/dragmath.h"
#include "manipulator/gizmo.h"
#include "manipulator/matrices.h"

#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <optional>
#include <vector>

namespace Bundled {

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
    bool beginDrag(const Grasp& grasp) override;
    bool drag(const Ray& ray, double step) override;
    void endDrag(bool isKept) override;
    Attribute getReadout() const override;

private:
    struct Drag {
        Drag(const Grasp& begun, const Imath::V3d& graspedPoint,
             ViewerPlugin::ManipulatorHost manipulator)
            : grasp(begun), grasped(graspedPoint), edits(manipulator, "translate") {}

        const Grasp grasp;
        /// In world space.
        const Imath::V3d grasped;
        ComponentEdits edits;
        /// Along the gizmo's axes.
        Imath::V3d way{0.0};
    };

    static std::optional<Imath::V3d> pointUnder(const Grasp& grasp, const Ray& ray);

    // Planes last: one sees through them.
    static constexpr Part kParts[] = {
        {"x", "AxisHandle", Motion::Axis, 0},    {"y", "AxisHandle", Motion::Axis, 1},
        {"z", "AxisHandle", Motion::Axis, 2},    {"centre", "CentreHandle", Motion::Picture, 0},
        {"yz", "PlaneHandle", Motion::Plane, 0}, {"zx", "PlaneHandle", Motion::Plane, 1},
        {"xy", "PlaneHandle", Motion::Plane, 2}};

    std::optional<Drag> current;
};

std::optional<Imath::V3d> TranslateManipulator::pointUnder(const Grasp& grasp, const Ray& ray) {
    const Imath::V3d axis = grasp.place.axis(grasp.part.axis);
    switch (grasp.part.motion) {
    case Motion::Axis:
        if (const auto distance = alongAxis(ray, grasp.place.centre, axis)) {
            return grasp.place.centre + axis * *distance;
        }
        return std::nullopt;
    case Motion::Plane:
        return onPlane(ray, grasp.place.centre, axis);
    case Motion::Picture:
        return onPlane(ray, grasp.place.centre, grasp.space.forward());
    }
    return std::nullopt;
}

bool TranslateManipulator::beginDrag(const Grasp& grasp) {
    if (const auto grasped = pointUnder(grasp, grasp.ray)) {
        current.emplace(grasp, *grasped, host);
        if (current->edits.get().empty()) {
            current.reset();
        }
    }
    return current.has_value();
}

bool TranslateManipulator::drag(const Ray& ray, double step) {
    const auto point = pointUnder(current->grasp, ray);
    if (!point) {
        return true;
    }
    const Imath::M44d& axes = current->grasp.place.axes;
    axes.transposed().multDirMatrix(*point - current->grasped, current->way);
    for (int i = 0; i < 3; ++i) {
        current->way[i] = snapped(current->way[i], step);
    }
    Imath::V3d way;
    axes.multDirMatrix(current->way, way);
    return current->edits.show([&way](const ComponentEdits::Each& edit) {
        Imath::V3d change;
        edit.worldToComponent.multDirMatrix(way, change);
        std::vector<double> values = edit.component.values;
        for (int i = 0; i < 3; ++i) {
            values[static_cast<std::size_t>(i)] += change[i];
        }
        return values;
    });
}

void TranslateManipulator::endDrag(bool isKept) {
    if (isKept) {
        current->edits.finish();
    }
    current.reset();
}

VlAttribute::Attribute TranslateManipulator::getReadout() const {
    const Imath::V3d& way = current->way;
    return VlAttribute::DoubleAttribute({way.x, way.y, way.z}, 3);
}

} // namespace Bundled

VL_REGISTER_PLUGIN(Bundled::TranslateManipulator, "TranslateManipulator");
