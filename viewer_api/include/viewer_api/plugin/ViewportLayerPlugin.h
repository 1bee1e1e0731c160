#pragma once

#include "VlAttribute/Attribute.h"
#include "VlAttribute/GroupAttribute.h"
#include "viewer_api/ViewportLayerPluginSuite.h"
#include "viewer_api/plugin/PluginLibrary.h"
#include "viewer_api/plugin/ViewportHost.h"
#include "viewer_api/plugin/ViewportLayerHost.h"

#include <cstdint>
#include <optional>

namespace ViewerPlugin {

/// Base class of a ViewportLayer plug-in. Each method is the entry of its name in
/// `ViewportLayerPluginSuite`, which says when it is called and with which context; those not
/// overridden do nothing. Exceptions pass through to the caller of the host. Register with
/// `VL_REGISTER_PLUGIN`.
class ViewportLayerPlugin {
public:
    using Kind = ViewportLayerPlugin;
    using Attribute = VlAttribute::Attribute;
    using GroupAttribute = VlAttribute::GroupAttribute;
    static constexpr const char* typeName = VL_VIEWPORT_LAYER_PLUGIN_TYPE;
    static constexpr std::uint32_t apiVersion = VL_VIEWPORT_LAYER_PLUGIN_API_VERSION;

    explicit ViewportLayerPlugin(ViewportLayerHost layerHost) : host(layerHost) {}
    ViewportLayerPlugin(const ViewportLayerPlugin&) = delete;
    ViewportLayerPlugin& operator=(const ViewportLayerPlugin&) = delete;
    virtual ~ViewportLayerPlugin() = default;

    virtual void setup() {}
    virtual void cleanup() {}
    /// True when handled.
    virtual bool event(const GroupAttribute& /*event*/) { return false; }
    virtual void draw() {}
    virtual void resize(int /*width*/, int /*height*/) {}
    virtual void hover(bool /*isHovering*/, int /*x*/, int /*y*/) {}
    virtual void freeze() {}
    virtual void thaw() {}
    virtual void setOption(std::uint64_t /*optionId*/, const Attribute& /*value*/) {}
    virtual Attribute getOption(std::uint64_t /*optionId*/) { return {}; }
    virtual void pickerDraw(const PickRegion& /*region*/, const GroupAttribute& /*excluded*/) {}
    /// Asked once, right after construction.
    virtual bool usesPickingCache() { return false; }
    /// Nothing: the host picks by colour.
    virtual std::optional<PickResult> customPick(const PickRegion& /*region*/,
                                                 bool /*deepPicking*/) {
        return std::nullopt;
    }

protected:
    /// The viewport that the layer stands in.
    [[nodiscard]] ViewportHost viewport() const { return ViewportHost(host.getViewport().host); }

    const ViewportLayerHost host;

private:
    static Kind& self(void* instance) { return *static_cast<Kind*>(instance); }

    template <typename Plugin>
    static void* createEntry(VlViewportLayerHandle handle) {
        return static_cast<Kind*>(new Plugin(ViewportLayerHost(handle)));
    }
    static void destroyEntry(void* instance) { delete &self(instance); }
    static void setupEntry(void* instance) { self(instance).setup(); }
    static void cleanupEntry(void* instance) { self(instance).cleanup(); }
    static int eventEntry(void* instance, VlAttributeStruct* event) {
        return self(instance).event(GroupAttribute(Attribute::CreateAndSteal(event)));
    }
    static void drawEntry(void* instance) { self(instance).draw(); }
    static void resizeEntry(void* instance, int width, int height) {
        self(instance).resize(width, height);
    }
    static void hoverEntry(void* instance, int isHovering, int x, int y) {
        self(instance).hover(isHovering != 0, x, y);
    }
    static void freezeEntry(void* instance) { self(instance).freeze(); }
    static void thawEntry(void* instance) { self(instance).thaw(); }
    static void setOptionEntry(void* instance, std::uint64_t id, VlAttributeStruct* value) {
        self(instance).setOption(id, Attribute::CreateAndSteal(value));
    }
    static VlAttributeStruct* getOptionEntry(void* instance, std::uint64_t id) {
        return self(instance).getOption(id).detach();
    }
    static void pickerDrawEntry(void* instance, int x, int y, int width, int height,
                                VlAttributeStruct* excluded) {
        self(instance).pickerDraw({x, y, width, height},
                                  GroupAttribute(Attribute::CreateAndRetain(excluded)));
    }
    static int usesPickingCacheEntry(void* instance) { return self(instance).usesPickingCache(); }
    static int customPickEntry(void* instance, int x, int y, int width, int height, int deepPicking,
                               VlAttributeStruct** picked, float* depth) {
        auto result = self(instance).customPick({x, y, width, height}, deepPicking != 0);
        return writePickResult(std::move(result), picked, depth);
    }

public:
    /// The table of a derived class.
    // clang-format off
    template <typename Plugin>
    static constexpr ViewportLayerPluginSuite table = {
        .create = createEntry<Plugin>,
        .destroy = destroyEntry,
        .setup = setupEntry,
        .cleanup = cleanupEntry,
        .event = eventEntry,
        .draw = drawEntry,
        .resize = resizeEntry,
        .hover = hoverEntry,
        .freeze = freezeEntry,
        .thaw = thawEntry,
        .setOption = setOptionEntry,
        .getOption = getOptionEntry,
        .pickerDraw = pickerDrawEntry,
        .usesPickingCache = usesPickingCacheEntry,
        .customPick = customPickEntry,
    };
    // clang-format on
};

} // namespace ViewerPlugin
