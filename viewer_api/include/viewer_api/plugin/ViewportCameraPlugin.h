#pragma once

#include "VlAttribute/Attribute.h"
#include "VlAttribute/GroupAttribute.h"
#include "viewer_api/ViewportCameraPluginSuite.h"
#include "viewer_api/plugin/PluginLibrary.h"
#include "viewer_api/plugin/ViewportCameraHost.h"

#include <cstdint>

namespace ViewerPlugin {

/// Base class of a ViewportCamera plug-in. Each method is the entry of its name in
/// `ViewportCameraPluginSuite`, which says when it is called; those not overridden do nothing.
/// Exceptions pass through to the caller of the host. Register with `VL_REGISTER_PLUGIN`.
class ViewportCameraPlugin {
public:
    using Kind = ViewportCameraPlugin;
    using Attribute = VlAttribute::Attribute;
    using GroupAttribute = VlAttribute::GroupAttribute;
    static constexpr const char* typeName = VL_VIEWPORT_CAMERA_PLUGIN_TYPE;
    static constexpr std::uint32_t apiVersion = VL_VIEWPORT_CAMERA_PLUGIN_API_VERSION;

    explicit ViewportCameraPlugin(ViewportCameraHost cameraHost) : host(cameraHost) {}
    ViewportCameraPlugin(const ViewportCameraPlugin&) = delete;
    ViewportCameraPlugin& operator=(const ViewportCameraPlugin&) = delete;
    virtual ~ViewportCameraPlugin() = default;

    virtual VlViewportCameraType getCameraTypeID() { return kVlViewportCameraTypeUnknown; }
    virtual void setViewportDimensions(int /*width*/, int /*height*/) {}
    virtual void setOption(std::uint64_t /*optionId*/, const Attribute& /*value*/) {}
    virtual Attribute getOption(std::uint64_t /*optionId*/) { return {}; }
    virtual void setup(const GroupAttribute& /*camera*/) {}
    virtual GroupAttribute asAttribute() { return {}; }
    /// `dirtyBits` are VlCameraDirtyBits.
    virtual void setDirty(int /*dirtyBits*/) {}

protected:
    const ViewportCameraHost host;

private:
    static Kind& self(void* instance) { return *static_cast<Kind*>(instance); }

    template <typename Plugin>
    static void* createEntry(VlViewportCameraHandle handle) {
        return static_cast<Kind*>(new Plugin(ViewportCameraHost(handle)));
    }
    static void destroyEntry(void* instance) { delete &self(instance); }
    static int getCameraTypeIDEntry(void* instance) { return self(instance).getCameraTypeID(); }
    static void setViewportDimensionsEntry(void* instance, int width, int height) {
        self(instance).setViewportDimensions(width, height);
    }
    static void setOptionEntry(void* instance, std::uint64_t id, VlAttributeStruct* value) {
        self(instance).setOption(id, Attribute::CreateAndSteal(value));
    }
    static VlAttributeStruct* getOptionEntry(void* instance, std::uint64_t id) {
        return self(instance).getOption(id).detach();
    }
    static void setupEntry(void* instance, VlAttributeStruct* camera) {
        self(instance).setup(GroupAttribute(Attribute::CreateAndSteal(camera)));
    }
    static VlAttributeStruct* asAttributeEntry(void* instance) {
        return self(instance).asAttribute().detach();
    }
    static void setDirtyEntry(void* instance, int dirtyBits) { self(instance).setDirty(dirtyBits); }

public:
    /// The table of a derived class.
    // clang-format off
    template <typename Plugin>
    static constexpr ViewportCameraPluginSuite table = {
        .create = createEntry<Plugin>,
        .destroy = destroyEntry,
        .getCameraTypeID = getCameraTypeIDEntry,
        .setViewportDimensions = setViewportDimensionsEntry,
        .setOption = setOptionEntry,
        .getOption = getOptionEntry,
        .reserved6 = nullptr,
        .reserved7 = nullptr,
        .setup = setupEntry,
        .asAttribute = asAttributeEntry,
        .reserved10 = nullptr,
        .reserved11 = nullptr,
        .reserved12 = nullptr,
        .reserved13 = nullptr,
        .reserved14 = nullptr,
        .setDirty = setDirtyEntry,
    };
    // clang-format on
};

} // namespace ViewerPlugin
