#pragma once

#include "VlAttribute/Attribute.h"
#include "VlAttribute/GroupAttribute.h"
#include "viewer_api/ManipulatorHandlePluginSuite.h"
#include "viewer_api/plugin/ManipulatorHandleHost.h"
#include "viewer_api/plugin/ManipulatorHost.h"
#include "viewer_api/plugin/PluginLibrary.h"

#include <cstdint>

namespace ViewerPlugin {

/// Base class of a ManipulatorHandle plug-in. Each method is the entry of its name in
/// `ManipulatorHandlePluginSuite`, which says when it is called and with which context; those not
/// overridden do nothing. Exceptions pass through to the caller of the host. Register with
/// `VL_REGISTER_PLUGIN`.
class ManipulatorHandlePlugin {
public:
    using Kind = ManipulatorHandlePlugin;
    using Attribute = VlAttribute::Attribute;
    using GroupAttribute = VlAttribute::GroupAttribute;
    static constexpr const char* typeName = VL_MANIPULATOR_HANDLE_PLUGIN_TYPE;
    static constexpr std::uint32_t apiVersion = VL_MANIPULATOR_HANDLE_PLUGIN_API_VERSION;

    explicit ManipulatorHandlePlugin(ManipulatorHandleHost handleHost) : host(handleHost) {}
    ManipulatorHandlePlugin(const ManipulatorHandlePlugin&) = delete;
    ManipulatorHandlePlugin& operator=(const ManipulatorHandlePlugin&) = delete;
    virtual ~ManipulatorHandlePlugin() = default;

    /// True when handled.
    virtual bool event(const GroupAttribute& /*event*/) { return false; }
    virtual void draw() {}
    virtual void pickerDraw(std::uint64_t /*pickerId*/) {}
    virtual void notify() {}

protected:
    /// The manipulator that the handle is a part of.
    [[nodiscard]] ManipulatorHost manipulator() const {
        return ManipulatorHost(host.getManipulator().host);
    }

    const ManipulatorHandleHost host;

private:
    static Kind& self(void* instance) { return *static_cast<Kind*>(instance); }

    template <typename Plugin>
    static void* createEntry(VlManipulatorHandleHandle handle) {
        return static_cast<Kind*>(new Plugin(ManipulatorHandleHost(handle)));
    }
    static void destroyEntry(void* instance) { delete &self(instance); }
    static int eventEntry(void* instance, VlAttributeStruct* event) {
        return self(instance).event(GroupAttribute(Attribute::CreateAndRetain(event)));
    }
    static void drawEntry(void* instance) { self(instance).draw(); }
    static void pickerDrawEntry(void* instance, std::uint64_t pickerId) {
        self(instance).pickerDraw(pickerId);
    }
    static void notifyEntry(void* instance) { self(instance).notify(); }

public:
    /// The table of a derived class.
    // clang-format off
    template <typename Plugin>
    static constexpr ManipulatorHandlePluginSuite table = {
        .create = createEntry<Plugin>,
        .destroy = destroyEntry,
        .event = eventEntry,
        .draw = drawEntry,
        .pickerDraw = pickerDrawEntry,
        .reserved5 = nullptr,
        .reserved6 = nullptr,
        .notify = notifyEntry,
    };
    // clang-format on
};

} // namespace ViewerPlugin
