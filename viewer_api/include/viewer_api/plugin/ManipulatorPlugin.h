#pragma once

#include "VlAttribute/Attribute.h"
#include "VlAttribute/GroupAttribute.h"
#include "viewer_api/ManipulatorPluginSuite.h"
#include "viewer_api/plugin/ManipulatorHost.h"
#include "viewer_api/plugin/PluginLibrary.h"
#include "viewer_api/plugin/ViewportHost.h"

#include <cstdint>

namespace ViewerPlugin {

/// Base class of a Manipulator plug-in. Each method is the entry of its name in
/// `ManipulatorPluginSuite`, which says when it is called and with which context; those not
/// overridden do nothing. Exceptions pass through to the caller of the host. Register with
/// `VL_REGISTER_PLUGIN`.
///
/// What belongs to the kind and not to an instance a derived class has as static functions:
///
///     static bool matches(const GroupAttribute& locationAttributes);
///     static GroupAttribute getTags();
class ManipulatorPlugin {
public:
    using Kind = ManipulatorPlugin;
    using Attribute = VlAttribute::Attribute;
    using GroupAttribute = VlAttribute::GroupAttribute;
    static constexpr const char* typeName = VL_MANIPULATOR_PLUGIN_TYPE;
    static constexpr std::uint32_t apiVersion = VL_MANIPULATOR_PLUGIN_API_VERSION;

    explicit ManipulatorPlugin(ManipulatorHost manipulatorHost) : host(manipulatorHost) {}
    ManipulatorPlugin(const ManipulatorPlugin&) = delete;
    ManipulatorPlugin& operator=(const ManipulatorPlugin&) = delete;
    virtual ~ManipulatorPlugin() = default;

    virtual void setup() {}
    /// True when handled.
    virtual bool event(const GroupAttribute& /*event*/) { return false; }
    virtual void draw() {}
    virtual void pickerDraw(std::uint64_t /*pickerId*/) {}
    virtual void setOption(std::uint64_t /*optionId*/, const Attribute& /*value*/) {}
    virtual Attribute getOption(std::uint64_t /*optionId*/) { return {}; }

protected:
    /// The viewport that the manipulator is active on.
    [[nodiscard]] ViewportHost viewport() const { return ViewportHost(host.getViewport().host); }

    const ManipulatorHost host;

private:
    static Kind& self(void* instance) { return *static_cast<Kind*>(instance); }

    template <typename Plugin>
    static void* createEntry(VlManipulatorHandle handle) {
        return static_cast<Kind*>(new Plugin(ManipulatorHost(handle)));
    }
    static void destroyEntry(void* instance) { delete &self(instance); }
    template <typename Plugin>
    static int matchesEntry(VlAttributeStruct* locationAttributes) {
        return Plugin::matches(GroupAttribute(Attribute::CreateAndRetain(locationAttributes)));
    }
    template <typename Plugin>
    static VlAttributeStruct* getTagsEntry() {
        return Plugin::getTags().detach();
    }
    static void setupEntry(void* instance) { self(instance).setup(); }
    static int eventEntry(void* instance, VlAttributeStruct* event) {
        return self(instance).event(GroupAttribute(Attribute::CreateAndRetain(event)));
    }
    static void drawEntry(void* instance) { self(instance).draw(); }
    static void pickerDrawEntry(void* instance, std::uint64_t pickerId) {
        self(instance).pickerDraw(pickerId);
    }
    static void setOptionEntry(void* instance, std::uint64_t id, VlAttributeStruct* value) {
        self(instance).setOption(id, Attribute::CreateAndSteal(value));
    }
    static VlAttributeStruct* getOptionEntry(void* instance, std::uint64_t id) {
        return self(instance).getOption(id).detach();
    }

public:
    /// The table of a derived class.
    // clang-format off
    template <typename Plugin>
    static constexpr ManipulatorPluginSuite table = {
        .create = createEntry<Plugin>,
        .destroy = destroyEntry,
        .matches = matchesEntry<Plugin>,
        .getTags = getTagsEntry<Plugin>,
        .setup = setupEntry,
        .event = eventEntry,
        .draw = drawEntry,
        .pickerDraw = pickerDrawEntry,
        .setOption = setOptionEntry,
        .getOption = getOptionEntry,
    };
    // clang-format on
};

} // namespace ViewerPlugin
