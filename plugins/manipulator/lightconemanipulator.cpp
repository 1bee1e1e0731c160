#include "manipulator/conespread.h"
#include "manipulator/dragmath.h"
#include "manipulator/gizmo.h"
#include "manipulator/liveedits.h"
#include "manipulator/text.h"
#include "scene/lightcone.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace Bundled {

namespace {

using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::StringAttribute;

const std::string kAttribute = "light.coneAngle";
/// In degrees from edge to edge: a cone that can still be seen, and that is not yet a plane.
constexpr double kNarrowest = 1.0;
constexpr double kWidest = 179.0;
constexpr double kStepDegrees = 5.0;

std::vector<LiveEdits::Target> targetsOf(const ViewerPlugin::ManipulatorHost& host) {
    std::vector<LiveEdits::Target> targets;
    const StringAttribute paths = host.getLocationPaths();
    for (const std::string_view path : paths.getNearestSample(0.0f)) {
        const std::string location(path);
        const double angle = lightConeAngle(GroupAttribute(host.getValue(location, "light")));
        targets.push_back({location, kAttribute, DoubleAttribute(angle)});
    }
    return targets;
}

class ConeDrag final : public Drag {
public:
    ConeDrag(const Grasp& grasp, const std::vector<LiveEdits::Target>& lights,
             ViewerPlugin::ManipulatorHost host)
        : targets(lights), edits(host, lights), before(angleOf(lights.front())), angle(before),
          spread(grasp.place.centre, grasp.place.axis(0), grasp.place.length, 0.5 * before,
                 grasp.ray) {}

    bool moveTo(const Ray& ray, double step) override {
        angle = usable(snapped(2.0 * spread.halfAngleAt(ray), step));
        std::vector<VlAttribute::Attribute> values;
        for (const LiveEdits::Target& target : targets) {
            values.push_back(DoubleAttribute(usable(angle + (angleOf(target) - before))));
        }
        return edits.show(values);
    }
    void finish() override { edits.finish(); }
    VlAttribute::Attribute getReadout() const override { return DoubleAttribute(angle); }
    std::string_view unit() const override { return {&kDegreeSign, 1}; }

private:
    static double angleOf(const LiveEdits::Target& target) {
        return DoubleAttribute(target.atRest).getValue();
    }
    static double usable(double degrees) { return std::clamp(degrees, kNarrowest, kWidest); }

    const std::vector<LiveEdits::Target> targets;
    LiveEdits edits;
    /// Of the first light.
    const double before;
    double angle;
    ConeSpread spread;
};

} // namespace

/// "LightConeManipulator": opens and closes the cones of lights, by `light.coneAngle`, all by as
/// many degrees. It shows the cone of the first one, with sides as long as other gizmos' axes. Its
/// readout, which steps make round, is the angle of that cone from edge to edge, in degrees.
class LightConeManipulator final : public Gizmo {
public:
    explicit LightConeManipulator(ViewerPlugin::ManipulatorHost manipulatorHost)
        : Gizmo(manipulatorHost, kParts) {}

    /// Spots, and lights of no kind that have a cone.
    static bool matches(const GroupAttribute& location) {
        const StringAttribute kind(location.getChildByName("light.kind"));
        return StringAttribute(location.getChildByName("type")).getValue("") == "light" &&
               (kind ? kind.getValue("") == "spot" : location.getChildByName(kAttribute).isValid());
    }
    static GroupAttribute getTags() {
        return {{"displayName", StringAttribute("Light Cone")},
                {"group", StringAttribute("Light")}};
    }

protected:
    std::unique_ptr<Drag> beginDrag(const Grasp& grasp) override {
        const auto lights = targetsOf(host);
        return lights.empty() ? nullptr : std::make_unique<ConeDrag>(grasp, lights, host);
    }
    Imath::V3d centre() const override { return firstPose().translation(); }
    /// The first of them is where the light shines, down its own -z.
    Imath::M44d axes() const override {
        const Imath::M44d pose = firstPose();
        Imath::M44d matrix;
        for (int i = 0; i < 3; ++i) {
            matrix[0][i] = -pose[2][i];
            matrix[1][i] = pose[1][i];
            matrix[2][i] = pose[0][i];
        }
        return matrix;
    }
    double usualStep(double /*length*/) const override { return kStepDegrees; }

private:
    static constexpr GizmoPart kParts[] = {{"rim", "ConeHandle", Motion::Picture, -1}};
};

} // namespace Bundled

VL_REGISTER_PLUGIN(Bundled::LightConeManipulator, "LightConeManipulator");
