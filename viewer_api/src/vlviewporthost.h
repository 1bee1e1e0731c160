#pragma once

#include "hostobject.h"

#include "VlAttribute/GroupAttribute.h"

#include <ImathMatrix.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

struct ViewportPluginSuite;
struct VlAttributeStruct;

namespace VlAttribute {
class StringAttribute;
} // namespace VlAttribute

namespace ViewerAPI {

class VlViewportPicker;
struct PixelRegion;
struct VlManipulatorHostStruct;
struct VlViewerDelegateHostStruct;
struct VlViewportCameraHostStruct;
struct VlViewportLayerHostStruct;

/// The host side of one Viewport plug-in instance: a drawing surface that belongs to a delegate.
///
/// It binds a window to the context that all viewports of the process share, holds ordered layers
/// and cameras, and carries the pan and zoom of the active camera. It does little by itself: it
/// makes the context current, calls the plug-in and swaps buffers. `draw`, `event` and `hover`
/// never walk the layers; a layer draws only when the plug-in or Python asks it to.
///
/// Names of layers and cameras are compared whole. Indices out of range and unknown names answer
/// null, -1, an empty text or nothing, except where told. Whatever a plug-in throws passes
/// through. What is removed during one of its own calls leaves its list at once and is deleted
/// when the outermost call returns. [ui-thread]
struct VlViewportHostStruct : public HostObject {
    /// Loads the plug-in, whose `create` runs before anything else of the viewport can be used.
    /// Throws std::runtime_error when it can't be had or its `create` answers null. The caller
    /// adds the viewport to the delegate, which then owns it.
    VlViewportHostStruct(const std::string& pluginName, const std::string& name,
                         VlViewerDelegateHostStruct* viewerDelegate);
    /// Ends layers last to first without running their `cleanup`, then the manipulators, releases
    /// the device context, calls the plug-in's `destroy`. The cameras and their plug-in instances
    /// stay alive.
    ~VlViewportHostStruct() override;

    /// Joins the shared context with the window and sets up plug-in and layers, also when that
    /// failed. Does nothing on a viewport that is set up, whatever the window id, or is being set
    /// up. A negative id is an off-screen surface. A viewport that is removed meanwhile is cleaned
    /// up at the end.
    void setup(int32_t windowId);
    /// Does nothing on a viewport that is not set up, or is being cleaned up.
    void cleanup();
    /// Makes the context current, calls the plug-in, swaps buffers; all three also before `setup`.
    void draw();
    /// In pixels. Resizes the picking surface, tells plug-in and layers; cameras are the caller's
    /// affair.
    void resize(int width, int height);
    /// The pointer is at (x, y), in pixels from the top left; `isHovering` false says that it left.
    void hover(bool isHovering, int x, int y);
    /// Whether the plug-in handled the event; false before `setup`, without asking it. The handle
    /// (of an event's group) is lent to the plug-in for the call.
    bool event(VlAttributeStruct* eventData);
    /// For when the viewport is not seen; only the plug-in knows about it.
    void freeze();
    void thaw();

    [[nodiscard]] int getWidth() const { return width; }
    [[nodiscard]] int getHeight() const { return height; }
    void setDirty(bool dirty) { isDirty = dirty; }

    /// State for plug-in and user interface, who are told of a change by the channel
    /// "__VIEWPORT_VIEW_FROZEN_STATE_CHANGED"; nothing to do with `freeze`.
    void setViewFrozen(bool isFrozen);

    /// Pan and zoom act on the projection of the active camera while they are active. The values
    /// are stored as they come. Only the active camera is brought up to date.
    void setHorizontalOffset(float offset);
    [[nodiscard]] float getHorizontalOffset() const { return horizontalOffset; }
    void setVerticalOffset(float offset);
    [[nodiscard]] float getVerticalOffset() const { return verticalOffset; }
    void setZoom(float factor);
    [[nodiscard]] float getZoom() const { return zoom; }
    void setPanAndZoomActive(bool isActive);

    // ---- Layers. Names need not be unique; a name finds the first layer that bears it.

    /// Appends a layer; sets it up at once when the viewport is set up, and then leaves no
    /// context current. Throws when the plug-in can't be loaded.
    VlViewportLayerHostStruct* addLayer(const std::string& pluginName, const std::string& name);
    /// As `addLayer`, before the layer at `index`. Null, and no plug-in loaded, when `index`
    /// exceeds the count.
    VlViewportLayerHostStruct* insertLayer(const std::string& pluginName, const std::string& name,
                                           uint32_t index);
    [[nodiscard]] VlViewportLayerHostStruct* getLayer(const std::string& name) const;
    [[nodiscard]] VlViewportLayerHostStruct* getLayerByIndex(uint32_t index) const;
    /// Runs the layer's `cleanup` and ends it.
    void removeLayer(const std::string& name);
    void removeLayerByIndex(uint32_t index);
    [[nodiscard]] uint32_t getNumberOfLayers() const;
    /// Valid until the list of layers changes.
    [[nodiscard]] const char* getLayerName(uint32_t index) const;
    [[nodiscard]] int getLayerIndex(const std::string& name) const;

    // ---- Cameras. Names are unique.

    /// A camera that already bears the name is removed; if it was the active one, the new camera
    /// is the active one. Throws when the plug-in can't be loaded, and then nothing has changed.
    VlViewportCameraHostStruct* addCamera(const std::string& pluginName, const std::string& name);
    [[nodiscard]] VlViewportCameraHostStruct* getActiveCamera() const { return activeCamera; }
    /// Takes any camera, also one of another viewport; null for none.
    void setActiveCamera(VlViewportCameraHostStruct* camera);
    [[nodiscard]] VlViewportCameraHostStruct* getCameraByName(const std::string& name) const;
    [[nodiscard]] VlViewportCameraHostStruct* getCameraByIndex(uint32_t index) const;
    /// The active camera is not removed, and nothing is said about it.
    void removeCameraByName(const std::string& name);
    /// As above. An index equal to the count throws std::out_of_range, a larger one is ignored.
    void removeCameraByIndex(uint32_t index);
    void removeCamera(const VlViewportCameraHostStruct* camera);
    [[nodiscard]] uint32_t getNumberOfCameras() const;
    /// Valid until the list of cameras changes.
    [[nodiscard]] const char* getCameraName(uint32_t index) const;
    [[nodiscard]] int getCameraIndex(const std::string& name) const;

    /// 16 doubles: the active camera's, or, while there is none, the identity.
    [[nodiscard]] const double* getViewMatrix() const;
    [[nodiscard]] const double* getProjectionMatrix() const;

    // ---- The shared context, by this viewport's window.

    /// Gets a device context for the window and creates or joins the shared context. A failure is
    /// logged, and answers false; what was stored before it stays. A former device context is not
    /// released.
    bool initializeGLContext();
    /// Binds the shared context to the window and resets glViewport to all of it. False, without
    /// a word, when it can't.
    bool makeGLContextCurrent();
    /// Unbinds. True also when there is nothing to unbind.
    bool doneGLContextCurrent();
    /// Whether the shared context is bound to this very window.
    [[nodiscard]] bool isGLContextCurrent() const;
    /// glEnable and glDisable, sparing calls that repeat the last one made through this viewport.
    /// The record knows nothing of changes made otherwise.
    void enableCapability(uint32_t capability);
    void disableCapability(uint32_t capability);

    // ---- Manipulators: at most one of each plug-in. `signal` tells the user interface of the
    // change by the channel "__ACTIVE_MANIPULATORS_CHANGED".

    /// Does nothing when one of this plug-in is active. Throws when the plug-in can't be loaded,
    /// and then nothing has changed. Null for no paths.
    void activateManipulator(const std::string& pluginName,
                             const VlAttribute::StringAttribute& locationPaths, bool signal);
    void deactivateManipulator(const std::string& pluginName, bool signal);
    void deactivateAllManipulators(bool signal);
    [[nodiscard]] uint32_t getNumberOfActiveManipulators() const;
    /// In order of activation.
    [[nodiscard]] VlManipulatorHostStruct* getActiveManipulatorByIndex(uint32_t index) const;
    [[nodiscard]] VlManipulatorHostStruct*
    getActiveManipulator(const std::string& pluginName) const;
    /// For the delegate: a location has these attributes now, or, with null, is gone. Asks for a
    /// picture when a manipulator edits other locations than before.
    void onLocationChanged(const std::string& path, const VlAttribute::GroupAttribute& attributes);

    // ---- Picking. The region is in window coordinates, with the origin at the top left.

    /// Registers what the plug-in is about to draw by the id that this answers: the colour to draw
    /// it in. Ids hold until the pick ends.
    uint64_t addPickableObject(VlAttribute::Attribute object);
    /// What the plug-in picks by itself, or else what it shows in the region: id in decimal to
    /// object, in ascending order of ids; with deep picking then what lies behind. Null when the
    /// plug-in asks for it while it draws the ids of a pick. `depthOut` (may be null) is written
    /// for a region of one pixel alone. Leaves the context current and the window's buffers
    /// cleared, unless the plug-in picked by itself.
    [[nodiscard]] VlAttribute::GroupAttribute getPickedObjects(const PixelRegion& region,
                                                               bool deepPicking, float* depthOut);

    std::string name;
    int width = 0;                              ///< pixels
    int height = 0;                             ///< pixels
    VlViewerDelegateHostStruct* viewerDelegate; ///< borrowed
    VlViewportCameraHostStruct* activeCamera = nullptr;
    bool isInitialized = false; ///< between a `setup` that succeeded and `cleanup`
    bool isDirty = false;       ///< a redraw is wanted; only `setDirty(false)` clears it
    Imath::M44d fallbackViewMatrix;
    Imath::M44d fallbackProjectionMatrix;
    std::vector<VlViewportLayerHostStruct*> layers;           ///< owned
    std::vector<std::string> layerNames;                      ///< parallel to `layers`
    std::vector<VlManipulatorHostStruct*> activeManipulators; ///< owned, in order of activation
    std::map<std::string, uint32_t> cameraIndexByName;
    std::vector<VlViewportCameraHostStruct*> cameras; ///< ended only by their removal
    int32_t windowId = 0;
    void* deviceContext = nullptr; ///< native; released by the destructor
    const ViewportPluginSuite* pluginSuite = nullptr;
    void* pluginHandle = nullptr;
    std::map<uint32_t, bool> glCapabilityStates;    ///< as last asked of this viewport
    const std::unique_ptr<VlViewportPicker> picker; ///< never null
    bool isViewFrozen = false;
    float horizontalOffset = 0.0f;
    float verticalOffset = 0.0f;
    float zoom = 1.0f;
    bool isPanAndZoomActive = false;

private:
    using LayerOperation = std::function<void(VlViewportLayerHostStruct&)>;

    void endLayers();
    void leaveCameras();
    void endManipulators();
    void signalActiveManipulatorsChanged(const std::string& manipulatorName);
    void walkLayers(const LayerOperation& operation);
    VlViewportLayerHostStruct* placeLayer(const std::string& pluginName,
                                          const std::string& layerName, size_t index);
    void storeActiveCamera(VlViewportCameraHostStruct* camera);
    bool recordCapability(uint32_t capability, bool isEnabled);
    void updateActiveCamera();

    bool isInSetupOrCleanup_ = false;
};

} // namespace ViewerAPI
