#include "support/fakehost.h"

#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/IntAttribute.h"
#include "viewer_api/plugin/ManipulatorHandlePlugin.h"
#include "viewer_api/plugin/ManipulatorPlugin.h"
#include "viewer_api/plugin/ViewerDelegateComponentPlugin.h"
#include "viewer_api/plugin/ViewerDelegatePlugin.h"
#include "viewer_api/plugin/ViewportCameraPlugin.h"
#include "viewer_api/plugin/ViewportLayerPlugin.h"
#include "viewer_api/plugin/ViewportPlugin.h"

#include <gtest/gtest.h>

#include <type_traits>

// Every method of the C++ layer is optional: a plug-in that overrides none takes every call, and
// answers that it has nothing.
namespace {

using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using namespace ViewerPlugin;

template <class Plugin>
class Bare : public Plugin {
public:
    using Plugin::Plugin;
};

class BareManipulator : public ManipulatorPlugin {
public:
    using ManipulatorPlugin::ManipulatorPlugin;
    static bool matches(const GroupAttribute& /*attributes*/) { return false; }
    static GroupAttribute getTags() { return {}; }
};

const GroupAttribute kGroup = GroupAttribute::Empty();
constexpr ViewerLocationEvent kEvent{"/a", nullptr, nullptr, 0};

class PluginDefaults : public testing::Test {
protected:
    PluginDefaults() { pluginHost() = fakePluginHost(); }
};

/// Options are taken and forgotten.
template <class Suite>
void expectNoOptions(const Suite& suite, void* instance) {
    suite.setOption(instance, 1, IntAttribute(2).getRetainedHandle());
    EXPECT_EQ(suite.getOption(instance, 1), nullptr);
}

template <class Suite>
void expectNothingOfTheScene(const Suite& suite, void* instance) {
    suite.setup(instance);
    suite.locationsSelected(instance, nullptr, 0);
    EXPECT_EQ(suite.isProcessing(instance), 0);
    EXPECT_EQ(suite.getBounds(instance, "/a"), nullptr);
    EXPECT_EQ(suite.computeExtent(instance, "/a"), nullptr);
    expectNoOptions(suite, instance);
    suite.cleanup(instance);
}

TEST_F(PluginDefaults, delegate) {
    FakeDelegate host;
    const auto& suite = ViewerDelegatePlugin::table<Bare<ViewerDelegatePlugin>>;
    void* instance = suite.create(&host);
    suite.locationEvent(instance, &kEvent, 0);
    suite.sourceLocationEvent(instance, &kEvent);
    suite.freeze(instance);
    suite.thaw(instance);
    expectNothingOfTheScene(suite, instance);
    suite.destroy(instance);
}

TEST_F(PluginDefaults, component) {
    const auto& suite = ViewerDelegateComponentPlugin::table<Bare<ViewerDelegateComponentPlugin>>;
    void* instance = suite.create(nullptr);
    EXPECT_EQ(suite.locationEvent(instance, &kEvent, 1), 0);
    expectNothingOfTheScene(suite, instance);
    suite.destroy(instance);
}

template <class Suite>
void expectNothingDrawn(const Suite& suite, void* instance) {
    constexpr bool ownsEvent = std::is_same_v<Suite, ViewportLayerPluginSuite>;
    suite.setup(instance);
    EXPECT_EQ(suite.event(instance, ownsEvent ? kGroup.getRetainedHandle() : kGroup.getHandle()),
              0);
    suite.draw(instance);
    suite.resize(instance, 1, 2);
    suite.hover(instance, 1, 2, 3);
    suite.freeze(instance);
    suite.thaw(instance);
    suite.pickerDraw(instance, 0, 0, 1, 1, kGroup.getHandle());
    VlAttributeStruct* picked = nullptr;
    EXPECT_EQ(suite.customPick(instance, 0, 0, 1, 1, 0, &picked, nullptr), 0) << "the host picks";
    EXPECT_EQ(picked, nullptr);
    expectNoOptions(suite, instance);
    suite.cleanup(instance);
}

TEST_F(PluginDefaults, viewport) {
    FakeViewport host;
    const auto& suite = ViewportPlugin::table<Bare<ViewportPlugin>>;
    void* instance = suite.create(&host);
    expectNothingDrawn(suite, instance);
    suite.destroy(instance);
}

TEST_F(PluginDefaults, layer) {
    FakeLayer host;
    const auto& suite = ViewportLayerPlugin::table<Bare<ViewportLayerPlugin>>;
    void* instance = suite.create(&host);
    EXPECT_EQ(suite.usesPickingCache(instance), 0);
    expectNothingDrawn(suite, instance);
    suite.destroy(instance);
}

TEST_F(PluginDefaults, camera) {
    FakeCamera host;
    const auto& suite = ViewportCameraPlugin::table<Bare<ViewportCameraPlugin>>;
    void* instance = suite.create(&host);
    EXPECT_EQ(suite.getCameraTypeID(instance), kVlViewportCameraTypeUnknown);
    suite.setViewportDimensions(instance, 1, 2);
    suite.setup(instance, kGroup.getRetainedHandle());
    EXPECT_EQ(suite.asAttribute(instance), nullptr);
    suite.setDirty(instance, CameraDirtyBits_AllDirty);
    expectNoOptions(suite, instance);
    suite.destroy(instance);
}

TEST_F(PluginDefaults, manipulator) {
    int host = 0;
    const auto& suite = ManipulatorPlugin::table<BareManipulator>;
    void* instance = suite.create(&host);
    EXPECT_EQ(suite.getTags(), nullptr);
    suite.setup(instance);
    EXPECT_EQ(suite.event(instance, kGroup.getHandle()), 0);
    suite.draw(instance);
    suite.pickerDraw(instance, 1);
    expectNoOptions(suite, instance);
    suite.destroy(instance);
}

TEST_F(PluginDefaults, handle) {
    int host = 0;
    const auto& suite = ManipulatorHandlePlugin::table<Bare<ManipulatorHandlePlugin>>;
    void* instance = suite.create(&host);
    EXPECT_EQ(suite.event(instance, kGroup.getHandle()), 0);
    suite.draw(instance);
    suite.pickerDraw(instance, 1);
    suite.notify(instance);
    suite.destroy(instance);
}

} // namespace
