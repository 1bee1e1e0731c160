#include "support/cameras.h"
#include "support/fakehost.h"
#include "viewer_api/ManipulatorPluginSuite.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <span>
#include <string>

// Which handles a press takes hold of: those that can be seen, as other ones can't be led.
namespace {

using Imath::M44d;
using Imath::V3d;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

class GizmoPress : public testing::Test {
protected:
    GizmoPress() {
        const M44d identity;
        delegate.primaryXform =
            VlAttribute::DoubleAttribute(std::span<const double>(identity.getValue(), 16), 4);
        viewport.delegate = &delegate;
        viewport.width = TestCameras::kWidth;
        viewport.height = TestCameras::kHeight;
        viewport.activeCamera = &camera;
        camera.projection = TestCameras::perspective();
        manipulator.viewport = &viewport;
        manipulator.paths = {"/root/thing"};
    }

    /// Whether the gizmo takes a press a bit left of the middle, with a handle marked and the
    /// camera a bit aside from z, looking down that.
    bool press(const std::string& plugin, std::size_t handle, double distance) {
        camera.view = M44d().setTranslation(V3d(-1, 0, -distance));
        const auto* suite = static_cast<const ManipulatorPluginSuite*>(
            library.findSuite(VL_MANIPULATOR_PLUGIN_TYPE, plugin));
        void* const instance = suite->create(&manipulator);
        manipulator.handles.at(handle)->isMarked = true;
        const VlAttribute::GroupAttribute event{{"type", StringAttribute("mousePress")},
                                                {"x", IntAttribute(TestCameras::kWidth / 2 - 20)},
                                                {"y", IntAttribute(TestCameras::kHeight / 2)},
                                                {"button", StringAttribute("left")}};
        const bool isTaken = suite->event(instance, event.getHandle()) != 0;
        EXPECT_EQ(manipulator.handles.at(handle)->isEngaged, isTaken);
        EXPECT_EQ(manipulator.openGroups.size(), isTaken ? 1U : 0U);
        suite->destroy(instance);
        return isTaken;
    }

    PluginFile library{"Manipulators"};
    FakeDelegate delegate;
    FakeViewport viewport;
    FakeCamera camera;
    FakeManipulator manipulator;
};

TEST_F(GizmoPress, takesAnAxisThatIsSeenFromTheSide) {
    EXPECT_TRUE(press("TranslateManipulator", 0, 10.0));
}

TEST_F(GizmoPress, leavesAnAxisThatPointsAtTheCamera) {
    EXPECT_FALSE(press("TranslateManipulator", 2, 10.0));
}

TEST_F(GizmoPress, takesTheRimOfACone) {
    EXPECT_TRUE(press("LightConeManipulator", 0, 10.0));
}

TEST_F(GizmoPress, leavesWhatIsBehindTheCamera) {
    EXPECT_FALSE(press("LightConeManipulator", 0, -10.0));
}

} // namespace
