// The tables of the probes and the entry points of their library.

#include "probe.h"

#include "support/attributetext.h"
#include "support/flagstext.h"

#include "viewer_api/ManipulatorHandlePluginSuite.h"
#include "viewer_api/ManipulatorPluginSuite.h"
#include "viewer_api/ViewerDelegateComponentPluginSuite.h"
#include "viewer_api/ViewerDelegatePluginSuite.h"
#include "viewer_api/ViewportCameraPluginSuite.h"
#include "viewer_api/ViewportLayerPluginSuite.h"
#include "viewer_api/ViewportPluginSuite.h"
#include "viewer_api/plugin/PluginLibrary.h"

#include <initializer_list>

namespace probe {
namespace {

using ViewerAPI::test::textOf;
using ViewerAPI::test::textOfFlags;

template <Kind kind>
void* createKind(void* host) {
    return create(kind, host);
}

std::string eventText(const ViewerLocationEvent* event) {
    const std::string flags = textOfFlags(event->flags);
    return event->locationPath + (flags.empty() ? "" : " " + flags);
}

std::string numbers(std::initializer_list<int> values) {
    std::string text;
    for (const int value : values) {
        text += (text.empty() ? "" : " ") + std::to_string(value);
    }
    return text;
}

void locationsSelected(void* instance, const char** paths, std::uint32_t count) {
    std::string text = "[";
    for (std::uint32_t i = 0; i < count; ++i) {
        text += (i == 0 ? "" : " ") + std::string(paths[i]);
    }
    called(instance, "locationsSelected", text + "]");
}
int isProcessing(void* instance) {
    return answered(instance, "isProcessing", "", 0);
}
VlAttributeStruct* getBounds(void* instance, const char* path) {
    return answered(instance, "getBounds", path);
}
VlAttributeStruct* computeExtent(void* instance, const char* path) {
    return answered(instance, "computeExtent", path);
}
void setup(void* instance) {
    called(instance, "setup");
}
void cleanup(void* instance) {
    called(instance, "cleanup");
}
void freeze(void* instance) {
    called(instance, "freeze");
}
void thaw(void* instance) {
    called(instance, "thaw");
}
void draw(void* instance) {
    called(instance, "draw");
}
int event(void* instance, VlAttributeStruct* eventData) {
    return answered(instance, "event", textOf(eventData), 0);
}
// A layer's plug-in owns the event that a viewport's only borrows.
int ownedEvent(void* instance, VlAttributeStruct* eventData) {
    const auto owned = VlAttribute::Attribute::CreateAndSteal(eventData);
    return event(instance, owned.getHandle());
}
void resize(void* instance, int width, int height) {
    called(instance, "resize", numbers({width, height}));
}
void hover(void* instance, int isHovering, int x, int y) {
    called(instance, "hover", numbers({isHovering, x, y}));
}
void pickerDraw(void* instance, int x, int y, int width, int height, VlAttributeStruct* excluded) {
    called(instance, "pickerDraw", numbers({x, y, width, height}) + " " + textOf(excluded));
}
// Of manipulators and handles.
void pickerDrawAs(void* instance, std::uint64_t pickerId) {
    called(instance, "pickerDraw", std::to_string(pickerId));
}
int customPick(void* instance, int x, int y, int width, int height, int deepPicking,
               VlAttributeStruct** picked, float* depth) {
    Answer answer = called(instance, "customPick", numbers({x, y, width, height, deepPicking}));
    if (answer.number.value_or(0) == 0) {
        return 0;
    }
    *picked = answer.attribute.detach();
    if (depth) {
        *depth = 0.5F;
    }
    return *answer.number;
}

const ViewerDelegatePluginSuite kDelegate = {
    .create = createKind<Kind::Delegate>,
    .destroy = destroy,
    .locationEvent =
        [](void* instance, const ViewerLocationEvent* event, int handled) {
            called(instance, "locationEvent",
                   eventText(event) + " handled=" + std::to_string(handled));
        },
    .sourceLocationEvent =
        [](void* instance, const ViewerLocationEvent* event) {
            called(instance, "sourceLocationEvent", eventText(event));
        },
    .locationsSelected = locationsSelected,
    .setOption = setOption,
    .getOption = getOption,
    .freeze = freeze,
    .thaw = thaw,
    .setup = setup,
    .cleanup = cleanup,
    .isProcessing = isProcessing,
    .getBounds = getBounds,
    .computeExtent = computeExtent,
};

const ViewerDelegateComponentPluginSuite kComponent = {
    .create = createKind<Kind::Component>,
    .destroy = destroy,
    .locationEvent =
        [](void* instance, const ViewerLocationEvent* event, int handled) {
            return answered(instance, "locationEvent",
                            eventText(event) + " handled=" + std::to_string(handled), 0);
        },
    .locationsSelected = locationsSelected,
    .setOption = setOption,
    .getOption = getOption,
    .setup = setup,
    .cleanup = cleanup,
    .isProcessing = isProcessing,
    .getBounds = getBounds,
    .computeExtent = computeExtent,
};

const ViewportPluginSuite kViewport = {
    .create = createKind<Kind::Viewport>,
    .destroy = destroy,
    .setup = setup,
    .cleanup = cleanup,
    .event = event,
    .draw = draw,
    .resize = resize,
    .hover = hover,
    .setOption = setOption,
    .getOption = getOption,
    .freeze = freeze,
    .thaw = thaw,
    .pickerDraw = pickerDraw,
    .customPick = customPick,
};

const ViewportLayerPluginSuite kLayer = {
    .create = createKind<Kind::Layer>,
    .destroy = destroy,
    .setup = setup,
    .cleanup = cleanup,
    .event = ownedEvent,
    .draw = draw,
    .resize = resize,
    .hover = hover,
    .freeze = freeze,
    .thaw = thaw,
    .setOption = setOption,
    .getOption = getOption,
    .pickerDraw = pickerDraw,
    .usesPickingCache =
        [](void* instance) { return answered(instance, "usesPickingCache", "", 0); },
    .customPick = customPick,
};

const ViewportCameraPluginSuite kCamera = {
    .create = createKind<Kind::Camera>,
    .destroy = destroy,
    .getCameraTypeID =
        [](void* instance) {
            return answered(instance, "getCameraTypeID", "", kVlViewportCameraTypePerspective);
        },
    .setViewportDimensions =
        [](void* instance, int width, int height) {
            called(instance, "setViewportDimensions", numbers({width, height}));
        },
    .setOption = setOption,
    .getOption = getOption,
    .reserved6 = nullptr,
    .reserved7 = nullptr,
    .setup =
        [](void* instance, VlAttributeStruct* camera) {
            const auto owned = VlAttribute::Attribute::CreateAndSteal(camera);
            called(instance, "setup", textOf(owned));
        },
    .asAttribute = [](void* instance) { return answered(instance, "asAttribute", ""); },
    .reserved10 = nullptr,
    .reserved11 = nullptr,
    .reserved12 = nullptr,
    .reserved13 = nullptr,
    .reserved14 = nullptr,
    .setDirty = [](void* instance,
                   int bits) { called(instance, "setDirty", std::to_string(bits)); },
};

const ManipulatorPluginSuite kManipulator = {
    .create = createKind<Kind::Manipulator>,
    .destroy = destroy,
    .matches =
        [](VlAttributeStruct* location) {
            return calledOnKind(Kind::Manipulator, "matches", textOf(location)).number.value_or(0);
        },
    .getTags = [] { return calledOnKind(Kind::Manipulator, "getTags").attribute.detach(); },
    .setup = setup,
    .event = event,
    .draw = draw,
    .pickerDraw = pickerDrawAs,
    .setOption = setOption,
    .getOption = getOption,
};

const ManipulatorHandlePluginSuite kHandle = {
    .create = createKind<Kind::Handle>,
    .destroy = destroy,
    .event = event,
    .draw = draw,
    .pickerDraw = pickerDrawAs,
    .reserved5 = nullptr,
    .reserved6 = nullptr,
    .notify = [](void* instance) { called(instance, "notify"); },
};

[[maybe_unused]] const bool kIsRegistered = [] {
    auto& records = ViewerPlugin::pluginRecords();
    records.push_back({VL_VIEWER_DELEGATE_PLUGIN_TYPE, nameOf(Kind::Delegate),
                       VL_VIEWER_DELEGATE_PLUGIN_API_VERSION, &kDelegate});
    records.push_back({VL_VIEWER_DELEGATE_COMPONENT_PLUGIN_TYPE, nameOf(Kind::Component),
                       VL_VIEWER_DELEGATE_COMPONENT_PLUGIN_API_VERSION, &kComponent});
    records.push_back({VL_VIEWPORT_PLUGIN_TYPE, nameOf(Kind::Viewport),
                       VL_VIEWPORT_PLUGIN_API_VERSION, &kViewport});
    records.push_back({VL_VIEWPORT_LAYER_PLUGIN_TYPE, nameOf(Kind::Layer),
                       VL_VIEWPORT_LAYER_PLUGIN_API_VERSION, &kLayer});
    records.push_back({VL_VIEWPORT_CAMERA_PLUGIN_TYPE, nameOf(Kind::Camera),
                       VL_VIEWPORT_CAMERA_PLUGIN_API_VERSION, &kCamera});
    records.push_back({VL_MANIPULATOR_PLUGIN_TYPE, nameOf(Kind::Manipulator),
                       VL_MANIPULATOR_PLUGIN_API_VERSION, &kManipulator});
    records.push_back({VL_MANIPULATOR_HANDLE_PLUGIN_TYPE, nameOf(Kind::Handle),
                       VL_MANIPULATOR_HANDLE_PLUGIN_API_VERSION, &kHandle});
    return true;
}();

} // namespace
} // namespace probe
