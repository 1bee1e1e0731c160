#pragma once

// Documentation of ViewerDelegate's methods.

namespace ViewerAPI::docs::delegate {

inline constexpr char addComponent[] =
    "addComponent(str pluginName, str name) -> ViewerDelegateComponent\n\n"
    "Instantiates a ViewerDelegateComponent and adds it to the end of the list of components. "
    "Names "
    "need not be unique. Returns the newly created ViewerDelegateComponent.";

inline constexpr char insertComponent[] =
    "insertComponent(str pluginName, str name, int index) -> ViewerDelegateComponent\n\n"
    "Instantiates a ViewerDelegateComponent and inserts it before the component with the given "
    "index. Returns the newly created ViewerDelegateComponent, or None if the index exceeds the "
    "number of components.";

inline constexpr char removeComponent[] =
    "removeComponent(str name)\n\n"
    "Removes and deletes the first component with the given name.";

inline constexpr char removeComponentByIndex[] =
    "removeComponentByIndex(int index)\n\n"
    "Removes and deletes the component with the given index.";

inline constexpr char getNumberOfComponents[] = "getNumberOfComponents()\n\n"
                                                "Returns the number of components.";

inline constexpr char getComponent[] =
    "getComponent(str name) -> ViewerDelegateComponent\n\n"
    "Returns the first component with the given name, or None if there is none.";

inline constexpr char getComponentByIndex[] =
    "getComponentByIndex(int index) -> ViewerDelegateComponent\n\n"
    "Returns the component with the given index, or None if there is none.";

inline constexpr char getComponentName[] =
    "getComponentName(int index) -> str\n\n"
    "Returns the name of the component with the given index, or the empty string if there is none.";

inline constexpr char getComponentIndex[] =
    "getComponentIndex(str name) -> int\n\n"
    "Returns the index of the first component with the given name. Raises ValueError if there is "
    "none.";

inline constexpr char addViewport[] =
    "addViewport(str pluginName, str viewportName) -> Viewport\n\n"
    "Instantiates a Viewport and adds it to the end of the list of viewports. Returns the newly "
    "created Viewport.";

inline constexpr char getViewport[] =
    "getViewport(str name) -> Viewport\n\n"
    "Returns the viewport with the given name, or None if there is none.";

inline constexpr char getViewportByIndex[] =
    "getViewportByIndex(int index) -> Viewport\n\n"
    "Returns the viewport with the given index, or None if there is none.";

inline constexpr char removeViewport[] = "removeViewport(str name)\n\n"
                                         "Removes and deletes the viewport with the given name.";

// Its documentation has always named the other method.
inline constexpr char removeViewportByIndex[] =
    "removeViewport(int index)\n\n"
    "Removes and deletes the viewport with the given index.";

inline constexpr char getNumberOfViewports[] = "getNumberOfViewports() -> int\n\n"
                                               "Returns the number of viewports.";

inline constexpr char getViewportName[] =
    "getViewportName(int index) -> str\n\n"
    "Returns the name of the viewport with the given index, or the empty string if there is none.";

inline constexpr char openLocations[] =
    "openLocations(list(str) locationPaths)\n\n"
    "Opens a list of locations, meaning that its potential child locations will be cooked.";

inline constexpr char closeLocations[] =
    "closeLocations(list(str) locationPaths)\n\n"
    "Closes a list of location, meaning that their child locations will cease to be cooked, and a "
    "deleted event (see locationDeleted()) will be issued for these children.";

inline constexpr char pinLocations[] =
    "pinLocations(list(str) locationPaths)\n\n"
    "Pins a list of locations, meaning that they stay cooked and visible whether or not the "
    "locations above them are open.";

inline constexpr char unpinLocations[] =
    "unpinLocations(list(str) locationPaths)\n\n"
    "Releases a list of locations that pinLocations() has pinned.";

inline constexpr char setLookThroughLocation[] =
    "setLookThroughLocation(Viewport viewport, str location)\n\n"
    "Has a viewport look through a location, which is cooked for it, or through none with an empty "
    "string. The outcome is told by the callbacks \"__LOOKTHROUGH_LOCATION_CHANGE_REQUESTED\", "
    "\"__LOOKTHROUGH_LOCATION_COOKED\", \"__LOOKTHROUGH_LOCATION_CHANGED\" and "
    "\"__LOOKTHROUGH_LOCATION_DOES_NOT_EXIST\".";

inline constexpr char setWorkingSetVisibilityEnabled[] =
    "setWorkingSetVisibilityEnabled(bool workingSetVisibilityEnabled)\n\n"
    "Specifies whether the visibility working set decides what is shown, instead of which "
    "locations "
    "are open and pinned.";

inline constexpr char getWorkingSetVisibilityEnabled[] =
    "getWorkingSetVisibilityEnabled() -> bool\n\n"
    "Returns whether the visibility working set decides what is shown.";

inline constexpr char setVisibilityWorkingSet[] =
    "setVisibilityWorkingSet(GroupAttribute workingSetAttribute)\n\n"
    "Sets the working set of the locations that are shown while working set visibility is enabled.";

inline constexpr char setViewOp[] =
    "setViewOp(int opId)\n\n"
    "Informs the Scenelib3 client of the Op ID to view the scene from. This should be a terminal "
    "op "
    "of an op-tree (produced by the Node Graph or created programatically).";

inline constexpr char setManipulationFreezePeriod[] =
    "setManipulationFreezePeriod(int milliseconds)\n\n"
    "Specifies the minimum time period, in milliseconds, for which location event processing is "
    "suspended after a manipulation is finalized.";

inline constexpr char isFrozenDueToManipulation[] =
    "isFrozenDueToManipulation() -> bool\n\n"
    "Queries location event processing status, returning True if processing is suspended due to "
    "manipulator activity.";

inline constexpr char processLocationEvents[] =
    "processLocationEvents()\n\n"
    "Catches up with the scene: takes what has been cooked since the last call and informs the "
    "plugins of what changed. Nothing changes between calls.";

inline constexpr char isProcessing[] =
    "isProcessing() -> bool\n\n"
    "Returns whether there is work under way that coming calls of processLocationEvents() will "
    "bring the outcome of.";

inline constexpr char getAttributes[] =
    "getAttributes(str locationPath, [int sceneView = ViewerAPI.kVlViewerDelegatePrimary]) -> "
    "GroupAttribute\n\n"
    "Gets the cached cooked attributes for the given location from the given scene view. Returns "
    "None if the location does not exist or has not been populated in the scene view.\n\n"
    "During the manipulation of an attribute by a Manipulator, the last value set by it will be "
    "returned instead of the cached cooked attribute. This allows faster interactive "
    "representation of the scene graph during the manipulation, since the cooking might not be "
    "fast enough to provide an interactive speed.";

inline constexpr char getLiveAttributes[] =
    "getLiveAttributes(str location, [int sceneView = ViewerAPI.kVlViewerDelegatePrimary]) -> "
    "GroupAttribute\n\n"
    "Gets the live attributes of a location. The group contains only the attributes that are "
    "currently being manipulated.\n\n"
    "If the location is not being manipulated, it returns an invalid group.";

inline constexpr char getCookedAttributes[] =
    "getCookedAttributes(str location, [int sceneView = ViewerAPI.kVlViewerDelegatePrimary]) -> "
    "GroupAttribute\n\n"
    "Gets the cooked attributes of a location. Unlike getAttributes(), this function does not "
    "apply "
    "the manipulated attributes on top.";

inline constexpr char setSystemArgs[] =
    "setSystemArgs(GroupAttribute opSystemArgs)\n\n"
    "Sets the current system args from the graph state on the delegate. The GroupAttribute "
    "argument "
    "is the system argument that can be passed as arguments to Scenelib Ops.";

inline constexpr char freeze[] =
    "freeze()\n\n"
    "Tells the plugin to freeze its activities while the Viewer is not visible.";

inline constexpr char thaw[] = "thaw()\n\n"
                               "Tells the plugin to take up its activities again after freeze().";

inline constexpr char flushCaches[] =
    "flushCaches()\n\n"
    "Takes the whole scene down: informs the plugins that all locations have been deleted.";

// What it says of ALL locations has never been so: one that matches is enough.
inline constexpr char getCompatibleManipulatorsInfo[] =
    "getCompatibleManipulatorsInfo(list(str) locationPaths) -> GroupAttribute\n\n"
    "Returns the information about the Manipulator plug-ins that are compatible with a given list "
    "of locations. This is done by calling Manipulator.match() for the cooked attributes of each "
    "of these locations. The Manipulators have to match ALL of the given locations. The "
    "information is returned as a GroupAttribute that contains other GroupAttributes with each "
    "manipulator's tags indexed by theManipulator plug-in name:\n\n"
    "{'manipName1': {'tagName1': value, 'tagName2': value},\n"
    " 'manipName2': {'tagName1': value, 'tagName2': value}}";

inline constexpr char getRegisteredManipulatorsInfo[] =
    "getRegisteredManipulatorsInfo() -> GroupAttribute\n\n"
    "Returns the information about all Manipulator plug-ins as a GroupAttribute that contains "
    "other GroupAttributes with each manipulator's tags indexed by the Manipulator plug-in "
    "name:\n\n"
    "{'manipName1': {'tagName1': value, 'tagName2': value},\n"
    " 'manipName2': {'tagName1': value, 'tagName2': value}}";

inline constexpr char registerCallback[] =
    "registerCallback(str name, callable callback) -> callable\n\n"
    "Sets a callback function for callPythonCallback() calls. Returns the previously set callback.";

inline constexpr char unregisterCallback[] =
    "unregisterCallback(str name)\n\n"
    "Removes a callback function previously registered with registerCallback().";

inline constexpr char unregisterAllCallbacks[] = "unregisterAllCallbacks()\n\n"
                                                 "Removes all registered callback functions.";

inline constexpr char setSelectedLocations[] =
    "setSelectedLocations(list(str) locationPaths)\n\n"
    "Called when locations are selected in Ostrel. Receives the list of currently selected "
    "locations";

inline constexpr char setSelectionCallbacks[] =
    "setSelectionCallbacks(callable selectLocationsCallback, callback "
    "getSelectedLocationsCallback)\n\n"
    "Registers the Python callbacks for selectiong a list of locations and getting the list of "
    "currently selected locations. The callbacks must follow the signatures:\n\n"
    "selectLocationsCallback(StringAttribute locations)\n\n"
    "getSelectedLocationsCallback() -> StringAttribute";

inline constexpr char setActiveManipulatorsChangedCallback[] =
    "setActiveManipulatorsChangedCallback(callable)\n\n"
    "Registers the Python callback for when the active manipulator changes in a Viewport. The "
    "callback must follow the signature:\n\n"
    "callback(StringAttribute viewportName)";

inline constexpr char setBoundingBoxesEnabled[] =
    "setBoundingBoxesEnabled(bool enabled)\n\n"
    "Specifies whether locations that show no children get a box that shows their bounds. They do "
    "unless told otherwise.";

inline constexpr char setProxyGeometryEnabled[] =
    "setProxyGeometryEnabled(bool enabled)\n\n"
    "Specifies whether locations that show no children get the substitute geometry that their "
    "proxies attribute tells of. They do unless told otherwise.";

inline constexpr char setup[] = "setup()\n\n"
                                "Sets the plugin up.";

inline constexpr char cleanup[] =
    "cleanup()\n\n"
    "Removes all registered callback functions, all components and all viewports, and informs the "
    "plugin.";

inline constexpr char getBounds[] =
    "getBounds(str location) -> DoubleAttribute\n\n"
    "Gets the bounds of a location in its local space: xmin, xmax, ymin, ymax, zmin, zmax.";

inline constexpr char computeExtent[] =
    "computeExtent(str location) -> DoubleAttribute\n\n"
    "Computes the extent of what a location itself shows, in its local space: xmin, xmax, ymin, "
    "ymax, zmin, zmax. What is below it doesn't count.";

inline constexpr char computeMergedExtent[] =
    "computeMergedExtent(list locations, str excludeLocation) -> DoubleAttribute\n\n"
    "Computes the merged extent of all the given locations. An optional string can be passed to "
    "exclude a certain location (typically the look-through location).";

inline constexpr char hideLocations[] =
    "hideLocations(list(str) locationPaths)\n\n"
    "Hides a list of locations, and with each what is below it.";

inline constexpr char unhideAllLocations[] = "unhideAllLocations()\n\n"
                                             "Shows all locations that hideLocations() has hidden.";

} // namespace ViewerAPI::docs::delegate
