#include "support/fakehost.h"

#include "VlAttribute/DoubleAttribute.h"
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

#include <sstream>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

/// A suite that no host has.
struct UnknownSuite {};

template <>
struct ViewerPlugin::SuiteKey<UnknownSuite> {
    static constexpr const char* name = "UnknownHost";
    static constexpr std::uint32_t version = 7;
};

// The C++ layer: every entry of a table reaches the method of its name, with its arguments.
namespace {

using VlAttribute::Attribute;
using VlAttribute::DoubleAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using namespace ViewerPlugin;

/// What the plug-ins below were called with, in order.
std::vector<std::string> calls;

template <typename... Parts>
void note(const Parts&... parts) {
    std::ostringstream text;
    ((text << parts << ' '), ...);
    calls.push_back(text.str());
}

std::string takeCall() {
    EXPECT_EQ(calls.size(), 1u);
    const std::string call = calls.empty() ? "" : calls.front();
    calls.clear();
    return call;
}

int valueOf(const Attribute& attribute) {
    return IntAttribute(attribute).getValue(-1);
}

int valueOf(VlAttributeStruct* stolen) {
    return valueOf(Attribute::CreateAndSteal(stolen));
}

class Delegate : public ViewerDelegatePlugin {
public:
    using ViewerDelegatePlugin::ViewerDelegatePlugin;
    ~Delegate() override { note("destroy"); }
    void locationEvent(const ViewerLocationEvent& event, bool handled) override {
        note("locationEvent", event.locationPath, handled);
    }
    void sourceLocationEvent(const ViewerLocationEvent& event) override {
        note("sourceLocationEvent", event.locationPath);
    }
    void locationsSelected(std::span<const char* const> paths) override {
        note("locationsSelected", paths.size(), paths.empty() ? "" : paths.back());
    }
    void setOption(std::uint64_t id, const Attribute& value) override {
        note("setOption", id, valueOf(value));
    }
    Attribute getOption(std::uint64_t id) override {
        return IntAttribute(static_cast<std::int32_t>(id));
    }
    void freeze() override { note("freeze"); }
    void thaw() override { note("thaw"); }
    void setup() override { note("setup"); }
    void cleanup() override { note("cleanup"); }
    bool isProcessing() override { return true; }
    DoubleAttribute getBounds(std::string_view path) override {
        note("getBounds", path);
        return DoubleAttribute({0, 1, 0, 1, 0, 1});
    }
    DoubleAttribute computeExtent(std::string_view path) override {
        note("computeExtent", path);
        return {};
    }
};

TEST(ViewerDelegatePlugin, entriesReachTheirMethods) {
    pluginHost() = fakePluginHost();
    const ViewerDelegatePluginSuite& suite = ViewerDelegatePlugin::table<Delegate>;
    FakeDelegate host;
    void* instance = suite.create(&host);
    const ViewerLocationEvent event{"/a", nullptr, nullptr, 0};
    suite.locationEvent(instance, &event, 7);
    EXPECT_EQ(takeCall(), "locationEvent /a 1 ");
    suite.sourceLocationEvent(instance, &event);
    EXPECT_EQ(takeCall(), "sourceLocationEvent /a ");
    const char* paths[] = {"/a", "/b"};
    suite.locationsSelected(instance, paths, 2);
    EXPECT_EQ(takeCall(), "locationsSelected 2 /b ");
    suite.locationsSelected(instance, nullptr, 0);
    EXPECT_EQ(takeCall(), "locationsSelected 0  ");
    suite.setOption(instance, 3, IntAttribute(4).getRetainedHandle());
    EXPECT_EQ(takeCall(), "setOption 3 4 ");
    EXPECT_EQ(valueOf(suite.getOption(instance, 5)), 5);
    suite.freeze(instance);
    EXPECT_EQ(takeCall(), "freeze ");
    suite.thaw(instance);
    EXPECT_EQ(takeCall(), "thaw ");
    suite.setup(instance);
    EXPECT_EQ(takeCall(), "setup ");
    suite.cleanup(instance);
    EXPECT_EQ(takeCall(), "cleanup ");
    EXPECT_EQ(suite.isProcessing(instance), 1);
    const Attribute bounds = Attribute::CreateAndSteal(suite.getBounds(instance, "/b"));
    EXPECT_EQ(DoubleAttribute(bounds).getNumberOfValues(), 6);
    EXPECT_EQ(takeCall(), "getBounds /b ");
    EXPECT_EQ(suite.computeExtent(instance, "/c"), nullptr);
    EXPECT_EQ(takeCall(), "computeExtent /c ");
    suite.destroy(instance);
    EXPECT_EQ(takeCall(), "destroy ");
}

/// What viewports and layers have in common.
template <class Plugin>
class Drawing : public Plugin {
public:
    using Plugin::Plugin;
    void setup() override { note("setup"); }
    void cleanup() override { note("cleanup"); }
    bool event(const GroupAttribute& event) override {
        note("event", event.getNumberOfChildren());
        return true;
    }
    void draw() override { note("draw"); }
    void resize(int width, int height) override { note("resize", width, height); }
    void hover(bool isHovering, int x, int y) override { note("hover", isHovering, x, y); }
    void setOption(std::uint64_t id, const Attribute& value) override {
        note("setOption", id, valueOf(value));
    }
    Attribute getOption(std::uint64_t id) override {
        return IntAttribute(static_cast<std::int32_t>(id));
    }
    void freeze() override { note("freeze"); }
    void thaw() override { note("thaw"); }
    void pickerDraw(const PickRegion& r, const GroupAttribute& excluded) override {
        note("pickerDraw", r.x, r.y, r.width, r.height, excluded.getNumberOfChildren());
    }
    std::optional<PickResult> customPick(const PickRegion& r, bool deep) override {
        note("customPick", r.x, r.y, r.width, r.height, deep);
        return r.width == 1 ? std::optional(PickResult{GroupAttribute::Empty(), 0.25f})
                            : std::nullopt;
    }
};

using Viewport = Drawing<ViewportPlugin>;

/// The entries that the tables of viewports and of layers share.
template <typename Suite>
void expectSharedEntriesReachTheirMethods(const Suite& suite, void* instance) {
    const GroupAttribute group{{"a", IntAttribute(1)}};
    suite.setup(instance);
    EXPECT_EQ(takeCall(), "setup ");
    suite.cleanup(instance);
    EXPECT_EQ(takeCall(), "cleanup ");
    // A layer owns the event that a viewport only borrows.
    constexpr bool ownsEvent = std::is_same_v<Suite, ViewportLayerPluginSuite>;
    EXPECT_EQ(suite.event(instance, ownsEvent ? group.getRetainedHandle() : group.getHandle()), 1);
    EXPECT_EQ(takeCall(), "event 1 ");
    suite.draw(instance);
    EXPECT_EQ(takeCall(), "draw ");
    suite.resize(instance, 3, 4);
    EXPECT_EQ(takeCall(), "resize 3 4 ");
    suite.hover(instance, 5, 6, 7);
    EXPECT_EQ(takeCall(), "hover 1 6 7 ");
    suite.setOption(instance, 8, IntAttribute(9).getRetainedHandle());
    EXPECT_EQ(takeCall(), "setOption 8 9 ");
    EXPECT_EQ(valueOf(suite.getOption(instance, 10)), 10);
    suite.freeze(instance);
    EXPECT_EQ(takeCall(), "freeze ");
    suite.thaw(instance);
    EXPECT_EQ(takeCall(), "thaw ");
    suite.pickerDraw(instance, 1, 2, 3, 4, group.getHandle());
    EXPECT_EQ(takeCall(), "pickerDraw 1 2 3 4 1 ");

    VlAttributeStruct* picked = nullptr;
    float depth = 9.0f;
    EXPECT_EQ(suite.customPick(instance, 1, 2, 1, 1, 1, &picked, &depth), 1);
    EXPECT_EQ(takeCall(), "customPick 1 2 1 1 1 ");
    EXPECT_EQ(depth, 0.25f);
    EXPECT_TRUE(Attribute::CreateAndSteal(picked).isValid());
    picked = nullptr;
    depth = 9.0f;
    EXPECT_EQ(suite.customPick(instance, 1, 2, 5, 5, 0, &picked, &depth), 0);
    EXPECT_EQ(takeCall(), "customPick 1 2 5 5 0 ");
    EXPECT_EQ(picked, nullptr);
    EXPECT_EQ(depth, 9.0f) << "nothing is written when the host picks";
    EXPECT_EQ(suite.customPick(instance, 1, 2, 1, 1, 0, &picked, nullptr), 1);
    Attribute::CreateAndSteal(picked);
    calls.clear();
}

TEST(ViewportPlugin, entriesReachTheirMethods) {
    pluginHost() = fakePluginHost();
    const ViewportPluginSuite& suite = ViewportPlugin::table<Viewport>;
    FakeViewport host;
    void* instance = suite.create(&host);
    expectSharedEntriesReachTheirMethods(suite, instance);
    suite.destroy(instance);
}

class Layer : public Drawing<ViewportLayerPlugin> {
public:
    using Drawing::Drawing;
    bool usesPickingCache() override { return true; }
};

TEST(ViewportLayerPlugin, entriesReachTheirMethods) {
    pluginHost() = fakePluginHost();
    const ViewportLayerPluginSuite& suite = ViewportLayerPlugin::table<Layer>;
    FakeLayer host;
    void* instance = suite.create(&host);
    expectSharedEntriesReachTheirMethods(suite, instance);
    EXPECT_EQ(suite.usesPickingCache(instance), 1);
    suite.destroy(instance);
}

class Camera : public ViewportCameraPlugin {
public:
    using ViewportCameraPlugin::ViewportCameraPlugin;
    VlViewportCameraType getCameraTypeID() override { return kVlViewportCameraTypeSpherical; }
    void setViewportDimensions(int width, int height) override {
        note("setViewportDimensions", width, height);
    }
    void setup(const GroupAttribute& camera) override {
        note("setup", camera.getNumberOfChildren());
    }
    GroupAttribute asAttribute() override { return GroupAttribute{{"a", IntAttribute(1)}}; }
    void setDirty(int bits) override { note("setDirty", bits); }
};

TEST(ViewportCameraPlugin, entriesReachTheirMethodsAndReservedOnesAreNull) {
    pluginHost() = fakePluginHost();
    const ViewportCameraPluginSuite& suite = ViewportCameraPlugin::table<Camera>;
    FakeCamera host;
    void* instance = suite.create(&host);
    EXPECT_EQ(suite.getCameraTypeID(instance), 3);
    suite.setViewportDimensions(instance, 3, 4);
    EXPECT_EQ(takeCall(), "setViewportDimensions 3 4 ");
    suite.setup(instance, GroupAttribute::Empty().getRetainedHandle());
    EXPECT_EQ(takeCall(), "setup 0 ");
    EXPECT_TRUE(Attribute::CreateAndSteal(suite.asAttribute(instance)).isValid());
    suite.setDirty(instance, 1);
    EXPECT_EQ(takeCall(), "setDirty 1 ");
    suite.setOption(instance, 1, IntAttribute(1).getRetainedHandle());
    EXPECT_EQ(suite.getOption(instance, 1), nullptr);
    for (const VlReservedEntry entry :
         {suite.reserved6, suite.reserved7, suite.reserved10, suite.reserved11, suite.reserved12,
          suite.reserved13, suite.reserved14}) {
        EXPECT_EQ(entry, nullptr);
    }
    suite.destroy(instance);
}

class Manipulator : public ManipulatorPlugin {
public:
    using ManipulatorPlugin::ManipulatorPlugin;
    ~Manipulator() override { note("destroy"); }
    static bool matches(const GroupAttribute& attributes) {
        return attributes.getChildByName("xform").isValid();
    }
    static GroupAttribute getTags() { return {{"size", IntAttribute(3)}}; }
    void setup() override { note("setup"); }
    bool event(const GroupAttribute& event) override {
        note("event", event.getNumberOfChildren());
        return true;
    }
    void draw() override { note("draw"); }
    void pickerDraw(std::uint64_t pickerId) override { note("pickerDraw", pickerId); }
    void setOption(std::uint64_t id, const Attribute& value) override {
        note("setOption", id, valueOf(value));
    }
    Attribute getOption(std::uint64_t id) override {
        return IntAttribute(static_cast<std::int32_t>(id));
    }
};

TEST(ManipulatorPlugin, entriesReachTheirMethods) {
    pluginHost() = fakePluginHost();
    const ManipulatorPluginSuite& suite = ManipulatorPlugin::table<Manipulator>;
    int host = 0;
    void* instance = suite.create(&host);
    suite.setup(instance);
    EXPECT_EQ(takeCall(), "setup ");
    const GroupAttribute group{{"a", IntAttribute(1)}};
    EXPECT_EQ(suite.event(instance, group.getHandle()), 1);
    EXPECT_EQ(takeCall(), "event 1 ");
    suite.draw(instance);
    EXPECT_EQ(takeCall(), "draw ");
    suite.pickerDraw(instance, 0x100000002);
    EXPECT_EQ(takeCall(), "pickerDraw 4294967298 ");
    suite.setOption(instance, 3, IntAttribute(4).getRetainedHandle());
    EXPECT_EQ(takeCall(), "setOption 3 4 ");
    EXPECT_EQ(valueOf(suite.getOption(instance, 5)), 5);
    suite.destroy(instance);
    EXPECT_EQ(takeCall(), "destroy ");
}

TEST(ManipulatorPlugin, whatBelongsToTheKindNeedsNoInstance) {
    const ManipulatorPluginSuite& suite = ManipulatorPlugin::table<Manipulator>;
    const GroupAttribute match{{"xform", GroupAttribute::Empty()}};
    EXPECT_EQ(suite.matches(match.getHandle()), 1);
    EXPECT_EQ(suite.matches(GroupAttribute::Empty().getHandle()), 0);
    const GroupAttribute tags(Attribute::CreateAndSteal(suite.getTags()));
    EXPECT_EQ(valueOf(tags.getChildByName("size")), 3);
    EXPECT_TRUE(calls.empty());
}

class Handle : public ManipulatorHandlePlugin {
public:
    using ManipulatorHandlePlugin::ManipulatorHandlePlugin;
    ~Handle() override { note("destroy"); }
    bool event(const GroupAttribute& event) override {
        note("event", event.getNumberOfChildren());
        return true;
    }
    void draw() override { note("draw"); }
    void pickerDraw(std::uint64_t pickerId) override { note("pickerDraw", pickerId); }
    void notify() override { note("notify"); }
};

TEST(ManipulatorHandlePlugin, entriesReachTheirMethodsAndReservedOnesAreNull) {
    pluginHost() = fakePluginHost();
    const ManipulatorHandlePluginSuite& suite = ManipulatorHandlePlugin::table<Handle>;
    int host = 0;
    void* instance = suite.create(&host);
    const GroupAttribute group{{"a", IntAttribute(1)}};
    EXPECT_EQ(suite.event(instance, group.getHandle()), 1);
    EXPECT_EQ(takeCall(), "event 1 ");
    suite.draw(instance);
    EXPECT_EQ(takeCall(), "draw ");
    suite.pickerDraw(instance, 0x100000002);
    EXPECT_EQ(takeCall(), "pickerDraw 4294967298 ");
    suite.notify(instance);
    EXPECT_EQ(takeCall(), "notify ");
    EXPECT_EQ(suite.reserved5, nullptr);
    EXPECT_EQ(suite.reserved6, nullptr);
    suite.destroy(instance);
    EXPECT_EQ(takeCall(), "destroy ");
}

class ThrowingManipulator : public ManipulatorPlugin {
public:
    using ManipulatorPlugin::ManipulatorPlugin;
    static bool matches(const GroupAttribute& /*attributes*/) {
        throw std::runtime_error("from matches");
    }
    static GroupAttribute getTags() { return {}; }
    bool event(const GroupAttribute& /*event*/) override { throw std::runtime_error("from event"); }
};

TEST(ManipulatorPlugin, exceptionsPassThroughTheTable) {
    pluginHost() = fakePluginHost();
    const ManipulatorPluginSuite& suite = ManipulatorPlugin::table<ThrowingManipulator>;
    int host = 0;
    void* instance = suite.create(&host);
    EXPECT_THROW(suite.event(instance, GroupAttribute::Empty().getHandle()), std::runtime_error);
    EXPECT_THROW(suite.matches(GroupAttribute::Empty().getHandle()), std::runtime_error);
    EXPECT_EQ(suite.getTags(), nullptr);
    suite.destroy(instance);
}

class Component : public ViewerDelegateComponentPlugin {
public:
    using ViewerDelegateComponentPlugin::ViewerDelegateComponentPlugin;
    bool locationEvent(const ViewerLocationEvent& event, bool handled) override {
        note("locationEvent", event.locationPath, handled);
        return true;
    }
    void locationsSelected(std::span<const char* const> paths) override {
        note("locationsSelected", paths.size());
    }
    void setOption(std::uint64_t id, const Attribute& value) override {
        note("setOption", id, valueOf(value));
    }
    Attribute getOption(std::uint64_t id) override {
        return IntAttribute(static_cast<std::int32_t>(id));
    }
    void setup() override { note("setup"); }
    void cleanup() override { note("cleanup"); }
    bool isProcessing() override { return true; }
    DoubleAttribute getBounds(std::string_view path) override {
        note("getBounds", path);
        return {};
    }
    DoubleAttribute computeExtent(std::string_view path) override {
        note("computeExtent", path);
        return {};
    }
};

class NeedsMore : public ViewportPlugin {
public:
    explicit NeedsMore(ViewportHost viewportHost) : ViewportPlugin(viewportHost) {
        requireHostSuite<UnknownSuite>();
    }
};

TEST(PluginLayer, missingMandatorySuiteIsAnErrorWithItsName) {
    pluginHost() = fakePluginHost();
    EXPECT_EQ(findHostSuite<UnknownSuite>(), nullptr);
    FakeViewport host;
    for (int attempt = 0; attempt < 2; ++attempt) {
        try {
            ViewportPlugin::table<NeedsMore>.create(&host);
            FAIL() << "created without its suite";
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), "The host offers no suite \"UnknownHost\" version 7.");
        }
    }
}

TEST(ViewerDelegateComponentPlugin, entriesReachTheirMethods) {
    pluginHost() = fakePluginHost();
    const ViewerDelegateComponentPluginSuite& suite =
        ViewerDelegateComponentPlugin::table<Component>;
    void* instance = suite.create(nullptr);
    const ViewerLocationEvent event{"/a", nullptr, nullptr, 0};
    EXPECT_EQ(suite.locationEvent(instance, &event, 1), 1);
    EXPECT_EQ(takeCall(), "locationEvent /a 1 ");
    const char* paths[] = {"/a", "/b"};
    suite.locationsSelected(instance, paths, 2);
    EXPECT_EQ(takeCall(), "locationsSelected 2 ");
    suite.setOption(instance, 3, IntAttribute(4).getRetainedHandle());
    EXPECT_EQ(takeCall(), "setOption 3 4 ");
    EXPECT_EQ(valueOf(suite.getOption(instance, 5)), 5);
    suite.setup(instance);
    EXPECT_EQ(takeCall(), "setup ");
    suite.cleanup(instance);
    EXPECT_EQ(takeCall(), "cleanup ");
    EXPECT_EQ(suite.isProcessing(instance), 1);
    EXPECT_EQ(suite.getBounds(instance, "/b"), nullptr);
    EXPECT_EQ(takeCall(), "getBounds /b ");
    EXPECT_EQ(suite.computeExtent(instance, "/c"), nullptr);
    EXPECT_EQ(takeCall(), "computeExtent /c ");
    suite.destroy(instance);
}

TEST(PluginLayer, libraryWithoutAHostFindsNoSuite) {
    pluginHost() = nullptr;
    EXPECT_EQ(findHostSuite<ViewportHostSuite>(), nullptr);
    pluginHost() = fakePluginHost();
    EXPECT_NE(findHostSuite<ViewportHostSuite>(), nullptr);
}

class ThrowingViewport : public ViewportPlugin {
public:
    using ViewportPlugin::ViewportPlugin;
    void draw() override { throw std::runtime_error("from draw"); }
};

TEST(PluginLayer, exceptionsPassThroughTheTable) {
    pluginHost() = fakePluginHost();
    const ViewportPluginSuite& suite = ViewportPlugin::table<ThrowingViewport>;
    FakeViewport host;
    void* instance = suite.create(&host);
    EXPECT_THROW(suite.draw(instance), std::runtime_error);
    suite.destroy(instance);
}

TEST(PluginLayer, castFindsAnObjectOfItsOwnClassOnly) {
    pluginHost() = fakePluginHost();
    FakeViewport host;
    void* instance = ViewportPlugin::table<Viewport>.create(&host);
    const Triple triple{&host, instance, &ViewportPlugin::table<Viewport>};
    EXPECT_NE(pluginCast<Viewport>(triple), nullptr);
    EXPECT_EQ(pluginCast<ThrowingViewport>(triple), nullptr);
    EXPECT_EQ(pluginCast<Viewport>(Triple{}), nullptr);
    ViewportPlugin::table<Viewport>.destroy(instance);
}

TEST(PluginLayer, libraryRefusesAHostOfAnotherVersion) {
    const VlPluginHost other{[](const char*, std::uint32_t) -> const void* { return nullptr; }};
    EXPECT_NE(vlSetPluginHost(&other), 0);
    EXPECT_EQ(vlSetPluginHost(fakePluginHost()), 0);
}

} // namespace

VL_REGISTER_PLUGIN(Viewport, "First");
VL_REGISTER_PLUGIN(Layer, "Second");

namespace {

TEST(PluginLayer, registeredClassesAreTheLibrarysRecords) {
    ASSERT_EQ(vlGetNumberOfPlugins(), 2);
    const VlPluginRecord& first = *vlGetPlugin(0);
    EXPECT_STREQ(first.typeName, "ViewportPlugin");
    EXPECT_STREQ(first.name, "First");
    EXPECT_EQ(first.apiVersion, 2u);
    EXPECT_EQ(first.suite, &ViewportPlugin::table<Viewport>);
    EXPECT_STREQ(vlGetPlugin(1)->name, "Second");
    EXPECT_EQ(vlGetPlugin(2), nullptr);
    EXPECT_EQ(vlGetPlugin(-1), nullptr);
}

} // namespace
