#include "support/fakehost.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/StringAttribute.h"
#include "camera/projection.h"

#include <gtest/gtest.h>

#include <span>
#include <string>

// The camera plug-ins in a host that keeps a camera's parameters.
namespace {

using namespace Bundled;
using VlAttribute::Attribute;
using VlAttribute::DoubleAttribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::StringAttribute;

class Cameras : public testing::Test {
protected:
    Cameras() : file("Cameras") {
        viewport.width = 200;
        viewport.height = 100;
    }
    ~Cameras() override {
        for (const auto& camera : viewport.cameras) {
            camera->suite->destroy(camera->instance);
        }
    }

    FakeCamera& add(const std::string& name) {
        viewport.cameras.push_back(std::make_unique<FakeCamera>());
        FakeCamera& camera = *viewport.cameras.back();
        camera.viewport = &viewport;
        camera.suite = static_cast<const ViewportCameraPluginSuite*>(
            file.findSuite(VL_VIEWPORT_CAMERA_PLUGIN_TYPE, name));
        camera.instance = camera.suite->create(&camera);
        return camera;
    }

    static GroupAttribute asAttribute(const FakeCamera& camera) {
        return GroupAttribute(
            Attribute::CreateAndSteal(camera.suite->asAttribute(camera.instance)));
    }
    static void setup(const FakeCamera& camera, const GroupAttribute& data) {
        camera.suite->setup(camera.instance, data.getRetainedHandle());
    }

    PluginFile file;
    FakeViewport viewport;
};

TEST_F(Cameras, tellTheirType) {
    const FakeCamera& perspective = add("PerspectiveCamera");
    const FakeCamera& orthographic = add("OrthographicCamera");
    EXPECT_EQ(perspective.suite->getCameraTypeID(perspective.instance),
              kVlViewportCameraTypePerspective);
    EXPECT_EQ(orthographic.suite->getCameraTypeID(orthographic.instance),
              kVlViewportCameraTypeOrthographic);
}

TEST_F(Cameras, haveAProjectionFromTheBeginning) {
    Lens lens;
    lens.aspect = 2.0;
    EXPECT_EQ(add("PerspectiveCamera").projection, perspectiveProjection(lens));
    EXPECT_EQ(add("OrthographicCamera").projection, orthographicProjection(lens));
}

TEST_F(Cameras, followTheirParameters) {
    FakeCamera& camera = add("PerspectiveCamera");
    camera.fov = 70.0;
    camera.nearPlane = 2.0;
    camera.right = 0.5;
    camera.tellPlugin();
    Lens lens;
    lens.aspect = 2.0;
    lens.fov = 70.0;
    lens.nearPlane = 2.0;
    lens.right = 0.5;
    EXPECT_EQ(camera.projection, perspectiveProjection(lens));
}

TEST_F(Cameras, followTheSizeOfThePicture) {
    FakeCamera& camera = add("OrthographicCamera");
    camera.suite->setViewportDimensions(camera.instance, 300, 100);
    Lens lens;
    lens.aspect = 3.0;
    EXPECT_EQ(camera.projection, orthographicProjection(lens));
}

TEST_F(Cameras, cleanBitsChangeNothing) {
    FakeCamera& camera = add("PerspectiveCamera");
    camera.fov = 70.0;
    const int before = camera.projectionsSet;
    camera.suite->setDirty(camera.instance, CameraDirtyBits_Clean);
    EXPECT_EQ(camera.projectionsSet, before);
}

TEST_F(Cameras, goIntoAGroupAndComeBack) {
    for (const char* name : {"PerspectiveCamera", "OrthographicCamera"}) {
        SCOPED_TRACE(name);
        FakeCamera& camera = add(name);
        camera.view.setTranslation(Imath::V3d(1.1, -2.2, 3.3));
        camera.view.rotate(Imath::V3d(0.3, 0.5, 0.7));
        camera.locationPath = "/root/cam";
        camera.fov = 33.3;
        camera.nearPlane = 0.7;
        camera.farPlane = 77.7;
        camera.orthographicWidth = 12.5;
        camera.centerOfInterest = 8.25;
        camera.left = -0.5;
        camera.right = 0.75;
        camera.bottom = -0.25;
        camera.top = 0.9;
        camera.tellPlugin();
        const GroupAttribute data = asAttribute(camera);

        FakeCamera& other = add(name);
        setup(other, data);
        EXPECT_EQ(other.view, camera.view);
        EXPECT_EQ(other.projection, camera.projection);
        EXPECT_EQ(other.locationPath, "/root/cam");
        EXPECT_EQ(other.centerOfInterest, 8.25);
        EXPECT_EQ(other.orthographicWidth, 12.5);
        EXPECT_EQ(asAttribute(other), data);
    }
}

TEST_F(Cameras, setupLeavesAloneWhatTheGroupDoesNotName) {
    FakeCamera& camera = add("PerspectiveCamera");
    camera.farPlane = 500.0;
    camera.view.setTranslation(Imath::V3d(1, 2, 3));
    const Imath::M44d view = camera.view;
    setup(camera, GroupAttribute{{"geometry", GroupAttribute{{"fov", DoubleAttribute(20.0)},
                                                             {"near", FloatAttribute(5.0f)}}}});
    EXPECT_EQ(camera.fov, 20.0);
    EXPECT_EQ(camera.nearPlane, 5.0);
    EXPECT_EQ(camera.farPlane, 500.0);
    EXPECT_EQ(camera.view, view);
}

TEST_F(Cameras, setupTakesNullAndForeignGroups) {
    FakeCamera& camera = add("PerspectiveCamera");
    const GroupAttribute before = asAttribute(camera);
    camera.suite->setup(camera.instance, nullptr);
    setup(camera, GroupAttribute{{"viewMatrix", DoubleAttribute({1.0, 2.0})},
                                 {"geometry", StringAttribute("none")}});
    EXPECT_EQ(asAttribute(camera), before);
}

TEST_F(Cameras, setupSetsOneProjectionForAllParameters) {
    FakeCamera& camera = add("PerspectiveCamera");
    const GroupAttribute data = asAttribute(camera);
    const int before = camera.projectionsSet;
    setup(camera, data);
    EXPECT_EQ(camera.projectionsSet, before + 1);
}

/// Cameras that a location drives.
class CamerasOfLocations : public Cameras {
protected:
    CamerasOfLocations() { viewport.delegate = &delegate; }
    static GroupAttribute at(const std::string& path, const char* group,
                             const GroupAttribute& content) {
        return {{"locationPath", StringAttribute(path)}, {group, content}};
    }

    FakeDelegate delegate;
};

TEST_F(CamerasOfLocations, standWhereTheLocationStandsWithoutItsScale) {
    const double scaled[] = {0, 0, -3, 0, 0, 2, 0, 0, 5, 0, 0, 0, 7, 8, 9, 1};
    delegate.worldXform = DoubleAttribute(scaled, 4);
    FakeCamera& camera = add("PerspectiveCamera");
    setup(camera, at("/root/cam", "geometry", {{"fov", DoubleAttribute(20.0)}}));
    EXPECT_EQ(camera.locationPath, "/root/cam");
    EXPECT_EQ(camera.fov, 20.0);
    const Imath::M44d expected(0, 0, -1, 0, 0, 1, 0, 0, 1, 0, 0, 0, 7, 8, 9, 1);
    EXPECT_TRUE(camera.view.inverse().equalWithAbsError(expected, 1e-12));
}

TEST_F(CamerasOfLocations, stayWhereTheyAreWhileTheLocationHasNoTransform) {
    FakeCamera& camera = add("PerspectiveCamera");
    camera.view.setTranslation(Imath::V3d(1, 2, 3));
    const Imath::M44d before = camera.view;
    setup(camera, {{"locationPath", StringAttribute("/root/cam")}});
    EXPECT_EQ(camera.view, before);
}

TEST_F(CamerasOfLocations, standByTheirOwnMatrixWhereTheGroupHasOne) {
    delegate.worldXform = DoubleAttribute(
        std::span<const double>(Imath::M44d().setTranslation(Imath::V3d(9)).getValue(), 16), 4);
    FakeCamera& camera = add("PerspectiveCamera");
    const GroupAttribute data = asAttribute(camera);
    camera.view.setTranslation(Imath::V3d(1, 2, 3));
    setup(camera, data);
    EXPECT_EQ(camera.view, Imath::M44d());
}

TEST_F(CamerasOfLocations, seeOfALightWhatItsConeLights) {
    FakeCamera& camera = add("PerspectiveCamera");
    setup(camera, at("/root/light", "light", {{"coneAngle", FloatAttribute(33.0f)}}));
    EXPECT_EQ(camera.fov, 33.0);
    setup(camera, at("/root/light", "light", {{"kind", StringAttribute("point")}}));
    EXPECT_EQ(camera.fov, 60.0);
    setup(camera, {{"locationPath", StringAttribute("/root/light")},
                   {"light", GroupAttribute{{"coneAngle", FloatAttribute(33.0f)}}},
                   {"geometry", GroupAttribute{{"fov", DoubleAttribute(12.0)}}}});
    EXPECT_EQ(camera.fov, 12.0);
}

} // namespace
