#include "manipulator/componentdrag.h"
#include "manipulator/gizmo.h"
#include "manipulator/matrices.h"
#include "manipulator/scaling.h"
#include "manipulator/text.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Bundled {

namespace {

constexpr XformComponents::Kind kKind = XformComponents::Kind::Scale;

class ScaleDrag final : public ComponentDrag {
public:
    ScaleDrag(const Grasp& begun, const Scaling& begunScaling,
              ViewerPlugin::ManipulatorHost manipulator)
        : ComponentDrag(begun, manipulator, kKind), scaling(begunScaling) {}

    bool moveTo(const Ray& ray, double step) override {
        factors = scaling.scaleTo(ray, step);
        return edits.show([this](const ComponentEdits::Each& edit) {
            std::vector<double> values = edit.components.values;
            for (int i = 0; i < 3; ++i) {
                values[static_cast<std::size_t>(i)] *= factors[i];
            }
            return values;
        });
    }

    VlAttribute::Attribute getReadout() const override {
        return VlAttribute::DoubleAttribute({factors.x, factors.y, factors.z}, 3);
    }

    std::string_view unit() const override { return {&kTimesSign, 1}; }

private:
    Scaling scaling;
    Imath::V3d factors{1.0};
};

} // namespace

/// "ScaleManipulator": sizes locations, each around its own pivot, by their `scale`. Its readout is
/// the factors so far.
///
/// A scale sizes along the axes of the space that it stands in, and no others: along the world's a
/// turned location would have to be sheared. So the handles stand along those of the first
/// location's scale, whatever the option "axes" says, also where a parent shears them.
class ScaleManipulator final : public Gizmo {
public:
    explicit ScaleManipulator(ViewerPlugin::ManipulatorHost manipulatorHost)
        : Gizmo(manipulatorHost, kParts) {}

    static GroupAttribute getTags() {
        return {{"displayName", VlAttribute::StringAttribute("Scale")},
                {"group", VlAttribute::StringAttribute("Transform")}};
    }

protected:
    std::unique_ptr<Drag> beginDrag(const Grasp& grasp) override {
        const auto scaling = Scaling::begin(grasp);
        return scaling
                   ? ComponentDrag::unlessIdle(std::make_unique<ScaleDrag>(grasp, *scaling, host))
                   : nullptr;
    }

    Imath::M44d axes() const override {
        const std::string path = firstLocation();
        const auto scale =
            XformComponents::find(GroupAttribute(host.getValue(path, "xform")), kKind);
        const auto toWorld = ComponentEdits::componentsToWorld(host, path, scale);
        Imath::M44d matrix;
        for (int i = 0; toWorld && i < 3; ++i) {
            const Imath::V3d axis = direction(*toWorld, i);
            if (axis.length2() == 0.0) {
                return Imath::M44d(); // a flat space has no such axis
            }
            std::copy_n(axis.getValue(), 3, matrix[i]);
        }
        return matrix;
    }

    double usualStep(double /*length*/) const override { return kStep; }

private:
    static constexpr double kStep = 0.1;
    // Planes last: one sees through them.
    static constexpr GizmoPart kParts[] = {
        {"x", "BoxHandle", Motion::Axis, 0},     {"y", "BoxHandle", Motion::Axis, 1},
        {"z", "BoxHandle", Motion::Axis, 2},     {"centre", "BoxHandle", Motion::Picture, -1},
        {"yz", "PlaneHandle", Motion::Plane, 0}, {"zx", "PlaneHandle", Motion::Plane, 1},
        {"xy", "PlaneHandle", Motion::Plane, 2}};
};

} // namespace Bundled

VL_REGISTER_PLUGIN(Bundled::ScaleManipulator, "ScaleManipulator");
