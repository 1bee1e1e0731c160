#pragma once

#include "hostobject.h"

#include <string>

struct ViewportLayerPluginSuite;
struct VlAttributeStruct;

namespace ViewerAPI {

struct VlViewportHostStruct;

/// The host side of one ViewportLayer plug-in instance: a unit of drawing and interaction in a
/// viewport. The viewport runs a layer's `setup`, `cleanup` and `resize`; whether and in which
/// order layers draw and get events is the choice of the viewport's plug-in or of Python, which
/// call `draw`, `event` and `hover` here. Owned by its viewport. [ui-thread]
struct VlViewportLayerHostStruct : public HostObject {
    /// Loads the plug-in. Throws std::runtime_error when it can't be had or its `create` answers
    /// null; what the plug-in throws passes through.
    VlViewportLayerHostStruct(const std::string& pluginName, VlViewportHostStruct* viewport);
    /// Calls the plug-in's `destroy`; does not run `cleanup`.
    ~VlViewportLayerHostStruct() override;

    /// Does nothing on a layer that is set up, or is being set up. A layer that is removed
    /// meanwhile is cleaned up at the end. [gl-current]: the caller sees to the context.
    void setup();
    /// Does nothing on a layer that is not set up, or is being cleaned up. [gl-current]
    void cleanup();
    /// In pixels. Reaches the plug-in also before `setup`. [gl-current]
    void resize(int width, int height);
    /// Whether the plug-in handled the event. The handle (of an event's group) comes with one
    /// reference, which passes to the plug-in. Reaches the plug-in also before `setup`.
    bool event(VlAttributeStruct* eventData);
    /// [gl-current]
    void draw();
    /// The pointer is at (x, y) in the viewport, in pixels from its top left; `isHovering` false
    /// says that it left. [gl-current]
    void hover(bool isHovering, int x, int y);

    bool isInitialized = false;
    VlViewportHostStruct* viewport; ///< borrowed; outlives the layer
    const ViewportLayerPluginSuite* pluginSuite = nullptr;
    void* pluginHandle = nullptr;

private:
    bool isInSetupOrCleanup_ = false;
};

} // namespace ViewerAPI
