#include "support/cameras.h"
#include "support/fakehost.h"
#include "viewer_api/ManipulatorPluginSuite.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <span>

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
        instance = suite->create(&manipulator);
    }
    ~GizmoPress() override { suite->destroy(instance); }

    /// Beside the middle of the picture, with a handle marked and the camera down z from there.
    bool press(std::size_t handle, double distance) {
        camera.view = M44d().setTranslation(V3d(0, 0, -distance));
        manipulator.handles.at(handle)->isMarked = true;
        const VlAttribute::GroupAttribute event{{"type", StringAttribute("mousePress")},
                                                {"x", IntAttribute(TestCameras::kWidth / 2 + 20)},
                                                {"y", IntAttribute(TestCameras::kHeight / 2)},
                                                {"button", StringAttribute("left")}};
        return suite->event(instance, event.getHandle()) != 0;
    }

    PluginFile library{"Manipulators"};
    const ManipulatorPluginSuite* suite = static_cast<const ManipulatorPluginSuite*>(
        library.findSuite(VL_MANIPULATOR_PLUGIN_TYPE, "TranslateManipulator"));
    FakeDelegate delegate;
    FakeViewport viewport;
    FakeCamera camera;
    FakeManipulator manipulator;
    void* instance = nullptr;
};

constexpr std::size_t kX = 0;
constexpr std::size_t kZ = 2;

TEST_F(GizmoPress, takesAnAxisThatIsSeenFromTheSide) {
    EXPECT_TRUE(press(kX, 10.0));
    EXPECT_TRUE(manipulator.handles[kX]->isEngaged);
    EXPECT_EQ(manipulator.openGroups.size(), 1U);
}

TEST_F(GizmoPress, leavesAnAxisThatPointsAtTheCamera) {
    EXPECT_FALSE(press(kZ, 10.0));
    EXPECT_FALSE(manipulator.handles[kZ]->isEngaged);
}

TEST_F(GizmoPress, leavesWhatIsBehindTheCamera) {
    EXPECT_FALSE(press(kX, -10.0));
    EXPECT_FALSE(manipulator.handles[kX]->isEngaged);
}

} // namespace
