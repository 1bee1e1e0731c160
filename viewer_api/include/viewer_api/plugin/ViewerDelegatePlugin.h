#pragma once

#include "VlAttribute/Attribute.h"
#include "VlAttribute/DoubleAttribute.h"
#include "viewer_api/ViewerDelegatePluginSuite.h"
#include "viewer_api/plugin/PluginLibrary.h"
#include "viewer_api/plugin/ViewerDelegateHost.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace ViewerPlugin {

/// Base class of a ViewerDelegate plug-in. Each method is the entry of its name in
/// `ViewerDelegatePluginSuite`, which says when it is called; those not overridden do nothing.
/// Exceptions pass through to the caller of the host. Register with `VL_REGISTER_PLUGIN`.
///
/// The constructor of a derived class takes the host (`using
/// ViewerDelegatePlugin::ViewerDelegatePlugin`) and must not ask it for the scene yet.
class ViewerDelegatePlugin {
public:
    using Kind = ViewerDelegatePlugin;
    using Attribute = VlAttribute::Attribute;
    using DoubleAttribute = VlAttribute::DoubleAttribute;
    static constexpr const char* typeName = VL_VIEWER_DELEGATE_PLUGIN_TYPE;
    static constexpr std::uint32_t apiVersion = VL_VIEWER_DELEGATE_PLUGIN_API_VERSION;

    explicit ViewerDelegatePlugin(ViewerDelegateHost delegateHost) : host(delegateHost) {}
    ViewerDelegatePlugin(const ViewerDelegatePlugin&) = delete;
    ViewerDelegatePlugin& operator=(const ViewerDelegatePlugin&) = delete;
    virtual ~ViewerDelegatePlugin() = default;

    /// The event is borrowed for the call.
    virtual void locationEvent(const ViewerLocationEvent& /*event*/, bool /*handledByComponent*/) {}
    virtual void sourceLocationEvent(const ViewerLocationEvent& /*event*/) {}
    /// The paths are borrowed for the call.
    virtual void locationsSelected(std::span<const char* const> /*paths*/) {}
    virtual void setOption(std::uint64_t /*optionId*/, const Attribute& /*value*/) {}
    virtual Attribute getOption(std::uint64_t /*optionId*/) { return {}; }
    virtual void freeze() {}
    virtual void thaw() {}
    virtual void setup() {}
    virtual void cleanup() {}
    virtual bool isProcessing() { return false; }
    virtual DoubleAttribute getBounds(std::string_view /*locationPath*/) { return {}; }
    virtual DoubleAttribute computeExtent(std::string_view /*locationPath*/) { return {}; }

protected:
    const ViewerDelegateHost host;

private:
    static Kind& self(void* instance) { return *static_cast<Kind*>(instance); }

    template <typename Plugin>
    static void* createEntry(VlViewerDelegateHandle handle) {
        return static_cast<Kind*>(new Plugin(ViewerDelegateHost(handle)));
    }
    static void destroyEntry(void* instance) { delete &self(instance); }
    static void locationEventEntry(void* instance, const ViewerLocationEvent* event, int handled) {
        self(instance).locationEvent(*event, handled != 0);
    }
    static void sourceLocationEventEntry(void* instance, const ViewerLocationEvent* event) {
        self(instance).sourceLocationEvent(*event);
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
    static void freezeEntry(void* instance) { self(instance).freeze(); }
    static void thawEntry(void* instance) { self(instance).thaw(); }
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
    static constexpr ViewerDelegatePluginSuite table = {
        .create = createEntry<Plugin>,
        .destroy = destroyEntry,
        .locationEvent = locationEventEntry,
        .sourceLocationEvent = sourceLocationEventEntry,
        .locationsSelected = locationsSelectedEntry,
        .setOption = setOptionEntry,
        .getOption = getOptionEntry,
        .freeze = freezeEntry,
        .thaw = thawEntry,
        .setup = setupEntry,
        .cleanup = cleanupEntry,
        .isProcessing = isProcessingEntry,
        .getBounds = getBoundsEntry,
        .computeExtent = computeExtentEntry,
    };
    // clang-format on
};

} // namespace ViewerPlugin
