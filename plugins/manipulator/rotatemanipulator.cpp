#include "manipulator/componentdrag.h"
#include "manipulator/dragmath.h"
#include "manipulator/gizmo.h"
#include "manipulator/ringturn.h"
#include "manipulator/rotations.h"
#include "manipulator/shapes.h"
#include "manipulator/text.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <array>
#include <cmath>
#include <string_view>

namespace Bundled {

namespace {

class RotateDrag final : public ComponentDrag {
public:
    RotateDrag(const Grasp& begun, const RingTurn& begunRing,
               ViewerPlugin::ManipulatorHost manipulator)
        : ComponentDrag(begun, manipulator, XformComponents::Kind::Rotate), ring(begunRing) {}

    bool moveTo(const Ray& ray, double step) override {
        degrees = snapped(ring.turnTo(ray), step);
        const Turn turn{grasp.axis(), degrees};
        return edits.show([&](const ComponentEdits::Each& edit) {
            return turned(edit.components.values,
                          turnWithin(edit.worldToComponents, turn, ring.arm()));
        });
    }

    VlAttribute::Attribute getReadout() const override {
        return VlAttribute::DoubleAttribute(degrees);
    }

    std::string_view unit() const override { return {&kDegreeSign, 1}; }

    /// The sector that has been swept, whole turns left out.
    void draw(HandlePainter& painter, const ViewerPlugin::ViewportHost& viewport) const override {
        const Imath::V3d x = grasp.axis();
        const Imath::V3d& y = ring.arm();
        const Imath::V3d z = x.cross(y);
        Imath::M44d matrix = Imath::M44d().setTranslation(grasp.place.centre);
        for (int i = 0; i < 3; ++i) {
            matrix[0][i] = grasp.place.length * x[i];
            matrix[1][i] = grasp.place.length * y[i];
            matrix[2][i] = grasp.place.length * z[i];
        }
        painter.drawOver(sectorShape(std::fmod(degrees, 360.0)), matrix, viewport, kSectorColor);
    }

private:
    static constexpr std::array<float, 4> kSectorColor = {1.0f, 0.85f, 0.30f, 0.25f};

    RingTurn ring;
    double degrees = 0.0;
};

} // namespace

/// "RotateManipulator": turns locations, each around its own pivot, by their rotations. Its readout
/// is the angle so far, in degrees, counter-clockwise seen from the tip of the ring's axis; of the
/// ring that faces the camera, as it is seen.
///
/// Under parents that size unevenly a location can't be turned as from outside. What it does there
/// keeps the ring's plane, and what is grasped under the pointer; see `turnWithin`.
class RotateManipulator final : public Gizmo {
public:
    explicit RotateManipulator(ViewerPlugin::ManipulatorHost manipulatorHost)
        : Gizmo(manipulatorHost, kParts) {}

    static GroupAttribute getTags() {
        return {{"displayName", VlAttribute::StringAttribute("Rotate")},
                {"group", VlAttribute::StringAttribute("Transform")}};
    }

protected:
    std::unique_ptr<Drag> beginDrag(const Grasp& grasp) override {
        const auto ring = RingTurn::begin(grasp, grasp.place.length);
        return ring ? ComponentDrag::unlessIdle(std::make_unique<RotateDrag>(grasp, *ring, host))
                    : nullptr;
    }
    double usualStep(double /*length*/) const override { return kStepDegrees; }

private:
    static constexpr double kStepDegrees = 15.0;
    static constexpr GizmoPart kParts[] = {{"x", "RingHandle", Motion::Ring, 0},
                                           {"y", "RingHandle", Motion::Ring, 1},
                                           {"z", "RingHandle", Motion::Ring, 2},
                                           {"view", "RingHandle", Motion::Ring, -1}};
};

} // namespace Bundled

VL_REGISTER_PLUGIN(Bundled::RotateManipulator, "RotateManipulator");
