#pragma once

#include "VlAttribute/Attribute.h"
#include "VlAttribute/DoubleAttribute.h"
#include "viewer_api/ViewerDelegateComponentPluginSuite.h"
#include "viewer_api/plugin/PluginLibrary.h"
#include "viewer_api/plugin/ViewerDelegateComponentHost.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace ViewerPlugin {

/// Base class of a ViewerDelegateComponent plug-in. Each method is the entry of its name in
/// `ViewerDelegateComponentPluginSuite`, which says when it is called; those not overridden do
/// nothing. Exceptions pass through to the caller of the host. Register with `VL_REGISTER_PLUGIN`.
class ViewerDelegateComponentPlugin {
public:
    using Kind = ViewerDelegateComponentPlugin;
    using Attribute = VlAttribute::Attribute;
    using DoubleAttribute = VlAttribute::DoubleAttribute;
    static constexpr const char* typeName = VL_VIEWER_DELEGATE_COMPONENT_PLUGIN_TYPE;
    static constexpr std::uint32_t apiVersion = VL_VIEWER_DELEGATE_COMPONENT_PLUGIN_API_VERSION;

    explicit ViewerDelegateComponentPlugin(ViewerDelegateComponentHost componentHost)
        : host(componentHost) {}
    ViewerDelegateComponentPlugin(const ViewerDelegateComponentPlugin&) = delete;
    ViewerDelegateComponentPlugin& operator=(const ViewerDelegateComponentPlugin&) = delete;
    virtual ~ViewerDelegateComponentPlugin() = default;

    /// True when this component took care of the location. The event is borrowed for the call.
    virtual bool locationEvent(const ViewerLocationEvent& /*event*/, bool /*handled*/) {
        return false;
    }
    /// The paths are borrowed for the call.
    virtual void locationsSelected(std::span<const char* const> /*paths*/) {}
    virtual void setOption(std::uint64_t /*optionId*/, const Attribute& /*value*/) {}
    virtual Attribute getOption(std::uint64_t /*optionId*/) { return {}; }
    virtual void setup() {}
    virtual void cleanup() {}
    virtual bool isProcessing() { return false; }
    virtual DoubleAttribute getBounds(std::string_view /*locationPath*/) { return {}; }
    virtual DoubleAttribute computeExtent(std::string_view /*locationPath*/) { return {}; }

protected:
    const ViewerDelegateComponentHost host;

private:
    static Kind& self(void* instance) { return *static_cast<Kind*>(instance); }

    template <typename Plugin>
    static void* createEntry(VlViewerDelegateComponentHandle handle) {
        return static_cast<Kind*>(new Plugin(ViewerDelegateComponentHost(handle)));
    }
    static void destroyEntry(void* instance) { delete &self(instance); }
    static int locationEventEntry(void* instance, const ViewerLocationEvent* event, int handled) {
        return self(instance).locationEvent(*event, handled != 0);
    }
    static void locationsSelectedEntry(void* instance, const char** paths, std::uint32_t count) {
        self(instance).locationsSelected({paths, count});
    }
    static void setOptionEntry(void* instance, std::uint64_t id, VlAttributeStruct* value) {
        self(instance).setOption(id, Attribute::CreateAndSteal(value));
    }
    static VlAttributeStruct* getOptionEntry(void* instance, std::uint64_t id) {
        return self(instance).getOption(id).detach();
    }
    static void setupEntry(void* instance) { self(instance).setup(); }
    static void cleanupEntry(void* instance) { self(instance).cleanup(); }
    static int isProcessingEntry(void* instance) { return self(instance).isProcessing(); }
    static VlAttributeStruct* getBoundsEntry(void* instance, const char* path) {
        return self(instance).getBounds(path).detach();
    }
    static VlAttributeStruct* computeExtentEntry(void* instance, const char* path) {
        return self(instance).computeExtent(path).detach();
    }

public:
    /// The table of a derived class.
    // clang-format off
    template <typename Plugin>
    static constexpr ViewerDelegateComponentPluginSuite table = {
        .create = createEntry<Plugin>,
        .destroy = destroyEntry,
        .locationEvent = locationEventEntry,
        .locationsSelected = locationsSelectedEntry,
        .setOption = setOptionEntry,
        .getOption = getOptionEntry,
        .setup = setupEntry,
        .cleanup = cleanupEntry,
        .isProcessing = isProcessingEntry,
        .getBounds = getBoundsEntry,
        .computeExtent = computeExtentEntry,
    };
    // clang-format on
};

} // namespace ViewerPlugin
