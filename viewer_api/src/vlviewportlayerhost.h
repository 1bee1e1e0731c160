#pragma once

#include "hostobject.h"

#include "VlAttribute/GroupAttribute.h"

#include <memory>
#include <string>

struct ViewportLayerPluginSuite;
struct VlAttributeStruct;

namespace ViewerAPI {

class VlViewportPicker;
struct PixelRegion;
struct VlViewportHostStruct;

/// The host side of one ViewportLayer plug-in instance: a unit of drawing and interaction in a
/// viewport. The viewport runs a layer's `setup`, `cleanup` and `resize`; whether and in which
/// order layers draw and get events is the choice of the viewport's plug-in or of Python, which
/// call `draw`, `event` and `hover` here. Owned by its viewport. [ui-thread]
struct VlViewportLayerHostStruct : public HostObject {
    /// Loads the plug-in and asks it whether it wants a picking surface of its own. Throws
    /// std::runtime_error when it can't be had or its `create` answers null; what the plug-in
    /// throws passes through.
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
    /// Then redraws the ids of a layer with a picker of its own, which later picks read.
    /// [gl-current]
    void draw();
    /// The pointer is at (x, y) in the viewport, in pixels from its top left; `isHovering` false
    /// says that it left. [gl-current]
    void hover(bool isHovering, int x, int y);

    /// Registers what the plug-in is about to draw by the id that this answers: with the layer's
    /// own picker or else the viewport's; with the one in use during a pick.
    uint64_t addPickableObject(VlAttribute::Attribute object);
    /// As the viewport's, of this layer alone. A layer with a picker of its own reads the picture
    /// of its last draw, unless it picks deeply. Makes the viewport's context current.
    [[nodiscard]] VlAttribute::GroupAttribute getPickedObjects(const PixelRegion& region,
                                                               bool deepPicking, float* depthOut);

    bool isInitialized = false;
    std::unique_ptr<VlViewportPicker> picker; ///< null unless the plug-in uses the picking cache
    VlViewportHostStruct* viewport;           ///< borrowed; outlives the layer
    const ViewportLayerPluginSuite* pluginSuite = nullptr;
    void* pluginHandle = nullptr;

private:
    bool isInSetupOrCleanup_ = false;
    VlViewportPicker* pickerInUse_ = nullptr; // while the plug-in draws ids
};

} // namespace ViewerAPI
