#pragma once

// Documentation of Viewport's methods.

namespace ViewerAPI::docs::viewport {

inline constexpr char getName[] = "getName() -> str\n\n"
                                  "Returns the name that the viewport was added under.";

inline constexpr char setup[] =
    "setup(int winId)\n\n"
    "Called whenever a user interaction event occurs. This will be also propagated through the "
    "ViewerLayers of this Viewport.";

inline constexpr char event[] =
    "event(GroupAttribute eventData) -> bool\n\n"
    "Called whenever a user interaction event occurs. This will call event() on the plugin and "
    "will be also propagated through the ViewerLayers of this Viewport.\n\n"
    "Returns True if the event has been handled, False otherwise.";

inline constexpr char draw[] =
    "draw()\n\n"
    "Called when the scene needs to be drawn in the correct GL context. In a non-GL renderer the "
    "generated image should be drawn in the GL framebuffer in order to be displayed. This will be "
    "also propagated through the ViewerLayers of this Viewport. This will call draw() on the "
    "plugin.";

inline constexpr char resize[] =
    "resize(int pixlWidth, int pixelHeight)\n\n"
    "Called when the Viewport widget is resized. This can be extended by the plugin to accomodate "
    "viewport size changes in the renderer.";

inline constexpr char hover[] =
    "hover(int x, int y)\n\n"
    "Called whenever the mouse pointer hovers or exits the Viewport. This runs with the GL context "
    "made current to allow hovering GL code to run.\n\n"
    "Without arguments: the pointer has left the Viewport.";

inline constexpr char isDirty[] =
    "isDirty() -> bool\n\n"
    "Returns whether the viewport state is dirty, if so it will be re-drawn.";

inline constexpr char setDirty[] =
    "setDirty(bool dirty)\n\n"
    "Specifies whether the viewport is to be re-drawn. Drawing does not change this.";

inline constexpr char getActiveCamera[] =
    "getActiveCamera() -> ViewportCamera\n\n"
    "Returns the camera that the Viewport is looked through, or None if there is none.";

inline constexpr char setActiveCamera[] = "setActiveCamera(ViewportCamera camera)\n\n"
                                          "Makes this the camera that the Viewport is looked "
                                          "through.";

inline constexpr char addCamera[] =
    "addCamera(str pluginName, str name) -> ViewportCamera\n\n"
    "Instantiates a ViewportCamera and adds it to the end of the list of cameras on this Viewport. "
    "If a camera of the same name already exists, it will be deleted. If said camera happened to "
    "be the active camera, the new camera will become the active camera. Returns the newly created "
    "ViewportCamera.";

inline constexpr char getCameraByName[] =
    "getCameraByName(str name) -> ViewportCamera\n\n"
    "Returns the camera with the given name, or None if there is none.";

inline constexpr char getCameraByIndex[] =
    "getCameraByIndex(int index) -> ViewportCamera\n\n"
    "Returns the camera with the given index, or None if there is none.";

inline constexpr char removeCamera[] =
    "removeCamera(str name)\n\n"
    "Removes and deletes the camera with the given name. Raises ValueError for the active camera.";

// Its documentation has always named the other method.
inline constexpr char removeCameraByIndex[] =
    "removeCamera(int index)\n\n"
    "Removes and deletes the camera with the given index. Raises ValueError for the active camera.";

inline constexpr char getNumberOfCameras[] = "getNumberOfCameras()\n\n"
                                             "Returns the number of cameras on this Viewport.";

inline constexpr char getCameraName[] =
    "getCameraName(int index) -> str\n\n"
    "Returns the name of the camera with the given index. Returns the empty string past the last "
    "camera, and None for a negative index.";

inline constexpr char setViewFrozen[] =
    "setViewFrozen(bool isViewFrozen)\n\n"
    "Freezes or releases the view. A change is signalled through the callback "
    "\"__VIEWPORT_VIEW_FROZEN_STATE_CHANGED\"; what it means is up to the plugin and the callback.";

inline constexpr char isViewFrozen[] = "isViewFrozen() -> bool\n\n"
                                       "Returns whether the view is frozen.";

inline constexpr char addLayer[] =
    "addLayer(str pluginName, str name) -> ViewportLayer\n\n"
    "Instantiates a ViewportLayer and adds it to the end of the list of layers on this Viewport. "
    "Names need not be unique. Returns the newly created ViewportLayer.";

inline constexpr char getViewerDelegate[] =
    "getViewerDelegate() -> ViewerDelegate\n\n"
    "Returns the ViewerDelegate that this Viewport belongs to, or None once it has gone.";

inline constexpr char insertLayer[] =
    "insertLayer(str pluginName, str name, int index) -> ViewportLayer\n\n"
    "Instantiates a ViewportLayer and inserts it before the layer with the given index. Returns "
    "the newly created ViewportLayer, or None if the index exceeds the number of layers.";

inline constexpr char getLayer[] =
    "getLayer(str name) -> ViewportLayer\n\n"
    "Returns the first layer with the given name, or None if there is none.";

inline constexpr char getLayerByIndex[] =
    "getLayerByIndex(int index) -> ViewportLayer\n\n"
    "Returns the layer with the given index, or None if there is none.";

inline constexpr char removeLayer[] = "removeLayer(str name)\n\n"
                                      "Removes and deletes the first layer with the given name.";

inline constexpr char removeLayerByIndex[] = "removeLayerByIndex(int index)\n\n"
                                             "Removes and deletes the layer with the given index.";

inline constexpr char getNumberOfLayers[] = "getNumberOfLayers()\n\n"
                                            "Returns the number of layers on this Viewport.";

inline constexpr char getLayerName[] =
    "getLayerName(int index) -> str\n\n"
    "Returns the name of the layer with the given index. Returns the empty string past the last "
    "layer, and None for a negative index.";

inline constexpr char freeze[] =
    "freeze()\n\n"
    "Allows the Viewport to freeze its activities when the Viewer is not visible. This allows the "
    "Viewport to stop any kind of unecessary processing that might happen durging that time.";

inline constexpr char thaw[] = "thaw()\n\n"
                               "Lets the Viewport take up its activities again after freeze().";

// The setters have always named no argument, although they take one.
inline constexpr char setHorizontalOffset[] =
    "setHorizontalOffset()\n\n"
    "Sets by how much the view is panned to the right while pan and zoom are active; a float.";

inline constexpr char getHorizontalOffset[] =
    "getHorizontalOffset()\n\n"
    "Returns by how much the view is panned to the right while pan and zoom are active.";

inline constexpr char setVerticalOffset[] =
    "setVerticalOffset()\n\n"
    "Sets by how much the view is panned upwards while pan and zoom are active; a float.";

inline constexpr char getVerticalOffset[] =
    "getVerticalOffset()\n\n"
    "Returns by how much the view is panned upwards while pan and zoom are active.";

inline constexpr char setZoom[] =
    "setZoom()\n\n"
    "Sets the factor by which the view is enlarged while pan and zoom are active; a float.";

inline constexpr char getZoom[] =
    "getZoom()\n\n"
    "Returns the factor by which the view is enlarged while pan and zoom are active.";

inline constexpr char setPanAndZoomActive[] =
    "setPanAndZoomActive()\n\n"
    "Specifies whether offsets and zoom apply to the view; a bool.";

inline constexpr char isPanAndZoomActive[] = "isPanAndZoomActive()\n\n"
                                             "Returns whether offsets and zoom apply to the view.";

inline constexpr char activateManipulator[] =
    "activateManipulator(str pluginName, list(str) locationPaths, bool signal)\n\n"
    "Activates a Manipulator with the given plugin name for the specified locations. This will "
    "instantiate a Manipulator plugin on this Viewport that manipulates those locations. After "
    "this the manipulator will be ready to be drawn and interacted with, which can either be "
    "implemented directly on the Viewport or in a ViewportLayer dedicated to manipulators. Only "
    "one Manipulator instance of the given type can be active at once. The bool 'signal' argument "
    "specifies if this should trigger the Python callback that signals a change in the list of "
    "active manipulators.";

inline constexpr char deactivateManipulator[] =
    "deactivateManipulator(str pluginName, bool signal)\n\n"
    "Deactivates a Manipulator with the given plugin name that has been previously activated in "
    "this Viewport. The bool 'signal' argument specifies if this should trigger the Python "
    "callback that signals a change in the list of active manipulators.";

inline constexpr char deactivateAllManipulators[] =
    "deactivateAllManipulators(bool signal)\n\n"
    "Deactivates all active Manipulators of this Viewport. The bool 'signal' argument specifies "
    "if this should trigger the Python callback that signals a change in the list of active "
    "manipulators.";

inline constexpr char getNumberOfActiveManipulators[] =
    "getNumberOfActiveManipulators() -> int\n\n"
    "Returns how many Manipulators are active in this Viewport.";

inline constexpr char getActiveManipulatorByIndex[] =
    "getActiveManipulatorByIndex(int index) -> Manipulator\n\n"
    "Returns an active Manipulator, in order of activation, or None if there is none with this "
    "index.";

inline constexpr char getActiveManipulatorTags[] =
    "getActiveManipulatorTags(int) -> GroupAttribute\n\n"
    "Returns the tags of the active Manipulator with this index, or None if there is none.";

inline constexpr char getActiveManipulatorPluginName[] =
    "getActiveManipulatorPluginName(int) -> str\n\n"
    "Returns the plugin name of the active Manipulator with this index, or None if there is none.";

} // namespace ViewerAPI::docs::viewport
