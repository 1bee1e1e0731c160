"""What help() says of the types: every method's signature, and the texts that carry meaning."""

import sys
import unittest

import ViewerAPI_cmodule as ViewerAPI

VIEWER_DELEGATE = (
    ("addComponent", "addComponent(str pluginName, str name) -> ViewerDelegateComponent"),
    ("insertComponent",
     "insertComponent(str pluginName, str name, int index) -> "
     "ViewerDelegateComponent"),
    ("removeComponent", "removeComponent(str name)"),
    ("removeComponentByIndex", "removeComponentByIndex(int index)"),
    ("getNumberOfComponents", "getNumberOfComponents()"),
    ("getComponent", "getComponent(str name) -> ViewerDelegateComponent"),
    ("getComponentByIndex", "getComponentByIndex(int index) -> ViewerDelegateComponent"),
    ("getComponentName", "getComponentName(int index) -> str"),
    ("getComponentIndex", "getComponentIndex(str name) -> int"),
    ("addViewport", "addViewport(str pluginName, str viewportName) -> Viewport"),
    ("getViewport", "getViewport(str name) -> Viewport"),
    ("getViewportByIndex", "getViewportByIndex(int index) -> Viewport"),
    ("removeViewport", "removeViewport(str name)"),
    ("removeViewportByIndex", "removeViewport(int index)"),
    ("getNumberOfViewports", "getNumberOfViewports() -> int"),
    ("getViewportName", "getViewportName(int index) -> str"),
    ("openLocations", "openLocations(list(str) locationPaths)"),
    ("closeLocations", "closeLocations(list(str) locationPaths)"),
    ("pinLocations", "pinLocations(list(str) locationPaths)"),
    ("unpinLocations", "unpinLocations(list(str) locationPaths)"),
    ("setLookThroughLocation", "setLookThroughLocation(Viewport viewport, str location)"),
    ("setWorkingSetVisibilityEnabled",
     "setWorkingSetVisibilityEnabled(bool "
     "workingSetVisibilityEnabled)"),
    ("getWorkingSetVisibilityEnabled", "getWorkingSetVisibilityEnabled() -> bool"),
    ("setVisibilityWorkingSet", "setVisibilityWorkingSet(GroupAttribute workingSetAttribute)"),
    ("setViewOp", "setViewOp(int opId)"),
    ("setManipulationFreezePeriod", "setManipulationFreezePeriod(int milliseconds)"),
    ("isFrozenDueToManipulation", "isFrozenDueToManipulation() -> bool"),
    ("processLocationEvents", "processLocationEvents()"),
    ("isProcessing", "isProcessing() -> bool"),
    ("getAttributes",
     "getAttributes(str locationPath, [int sceneView = "
     "ViewerAPI.kVlViewerDelegatePrimary]) -> GroupAttribute"),
    ("getLiveAttributes",
     "getLiveAttributes(str location, [int sceneView = "
     "ViewerAPI.kVlViewerDelegatePrimary]) -> GroupAttribute"),
    ("getCookedAttributes",
     "getCookedAttributes(str location, [int sceneView = "
     "ViewerAPI.kVlViewerDelegatePrimary]) -> GroupAttribute"),
    ("setSystemArgs", "setSystemArgs(GroupAttribute opSystemArgs)"),
    ("setOption", "setOption(long optionId, Attribute value)"),
    ("setOptionByName", "setOptionByName(str name, Attribute value)"),
    ("getOption", "getOption(long optionId) -> Attribute"),
    ("getOptionByName", "getOption(str name) -> Attribute"),
    ("freeze", "freeze()"),
    ("thaw", "thaw()"),
    ("flushCaches", "flushCaches()"),
    ("getCompatibleManipulatorsInfo",
     "getCompatibleManipulatorsInfo(list(str) locationPaths) -> GroupAttribute"),
    ("getRegisteredManipulatorsInfo", "getRegisteredManipulatorsInfo() -> GroupAttribute"),
    ("registerCallback", "registerCallback(str name, callable callback) -> callable"),
    ("unregisterCallback", "unregisterCallback(str name)"),
    ("unregisterAllCallbacks", "unregisterAllCallbacks()"),
    ("setSelectedLocations", "setSelectedLocations(list(str) locationPaths)"),
    ("setSelectionCallbacks",
     "setSelectionCallbacks(callable selectLocationsCallback, callback "
     "getSelectedLocationsCallback)"),
    ("setActiveManipulatorsChangedCallback", "setActiveManipulatorsChangedCallback(callable)"),
    ("setBoundingBoxesEnabled", "setBoundingBoxesEnabled(bool enabled)"),
    ("setProxyGeometryEnabled", "setProxyGeometryEnabled(bool enabled)"),
    ("setup", "setup()"),
    ("cleanup", "cleanup()"),
    ("getBounds", "getBounds(str location) -> DoubleAttribute"),
    ("computeExtent", "computeExtent(str location) -> DoubleAttribute"),
    ("computeMergedExtent",
     "computeMergedExtent(list locations, str excludeLocation) -> "
     "DoubleAttribute"),
    ("hideLocations", "hideLocations(list(str) locationPaths)"),
    ("unhideAllLocations", "unhideAllLocations()"),
)

VIEWER_DELEGATE_COMPONENT = (
    ("setOption", "setOption(long optionId, Attribute value)"),
    ("setOptionByName", "setOptionByName(str name, Attribute value)"),
    ("getOption", "getOption(long optionId) -> Attribute"),
    ("getOptionByName", "getOption(str name) -> Attribute"),
)

MANIPULATOR = (
    ("getPluginName", "getPluginName() -> str"),
    ("getTags", "getTags() -> GroupAttribute"),
    ("getLocationPaths", "getLocationPaths() -> StringAttribute"),
    ("setOption", "setOption(long optionId, Attribute value)"),
    ("setOptionByName", "setOptionByName(str name, Attribute value)"),
    ("getOption", "getOption(long optionId) -> Attribute"),
    ("getOptionByName", "getOptionByName(str name) -> Attribute"),
)

VIEWPORT = (
    ("getName", "getName() -> str"),
    ("setup", "setup(int winId)"),
    ("event", "event(GroupAttribute eventData) -> bool"),
    ("draw", "draw()"),
    ("resize", "resize(int pixlWidth, int pixelHeight)"),
    ("hover", "hover(int x, int y)"),
    ("isDirty", "isDirty() -> bool"),
    ("setDirty", "setDirty(bool dirty)"),
    ("setOption", "setOption(long optionId, Attribute value)"),
    ("setOptionByName", "setOptionByName(str name, Attribute value)"),
    ("getOption", "getOption(long optionId) -> Attribute"),
    ("getOptionByName", "getOptionByName(str name) -> Attribute"),
    ("getActiveCamera", "getActiveCamera() -> ViewportCamera"),
    ("setActiveCamera", "setActiveCamera(ViewportCamera camera)"),
    ("addCamera", "addCamera(str pluginName, str name) -> ViewportCamera"),
    ("getCameraByName", "getCameraByName(str name) -> ViewportCamera"),
    ("getCameraByIndex", "getCameraByIndex(int index) -> ViewportCamera"),
    ("removeCamera", "removeCamera(str name)"),
    ("removeCameraByIndex", "removeCamera(int index)"),
    ("getNumberOfCameras", "getNumberOfCameras()"),
    ("getCameraName", "getCameraName(int index) -> str"),
    ("setViewFrozen", "setViewFrozen(bool isViewFrozen)"),
    ("isViewFrozen", "isViewFrozen() -> bool"),
    ("addLayer", "addLayer(str pluginName, str name) -> ViewportLayer"),
    ("getViewerDelegate", "getViewerDelegate() -> ViewerDelegate"),
    ("insertLayer", "insertLayer(str pluginName, str name, int index) -> ViewportLayer"),
    ("getLayer", "getLayer(str name) -> ViewportLayer"),
    ("getLayerByIndex", "getLayerByIndex(int index) -> ViewportLayer"),
    ("removeLayer", "removeLayer(str name)"),
    ("removeLayerByIndex", "removeLayerByIndex(int index)"),
    ("getNumberOfLayers", "getNumberOfLayers()"),
    ("getLayerName", "getLayerName(int index) -> str"),
    ("activateManipulator",
     "activateManipulator(str pluginName, list(str) locationPaths, bool signal)"),
    ("deactivateManipulator", "deactivateManipulator(str pluginName, bool signal)"),
    ("deactivateAllManipulators", "deactivateAllManipulators(bool signal)"),
    ("getNumberOfActiveManipulators", "getNumberOfActiveManipulators() -> int"),
    ("getActiveManipulatorByIndex", "getActiveManipulatorByIndex(int index) -> Manipulator"),
    ("getActiveManipulatorTags", "getActiveManipulatorTags(int) -> GroupAttribute"),
    ("getActiveManipulatorPluginName", "getActiveManipulatorPluginName(int) -> str"),
    ("freeze", "freeze()"),
    ("thaw", "thaw()"),
    ("setHorizontalOffset", "setHorizontalOffset()"),
    ("getHorizontalOffset", "getHorizontalOffset()"),
    ("setVerticalOffset", "setVerticalOffset()"),
    ("getVerticalOffset", "getVerticalOffset()"),
    ("setZoom", "setZoom()"),
    ("getZoom", "getZoom()"),
    ("setPanAndZoomActive", "setPanAndZoomActive()"),
    ("isPanAndZoomActive", "isPanAndZoomActive()"),
)

VIEWPORT_LAYER = (
    ("setup", "setup()"),
    ("event", "event(GroupAttribute eventData)"),
    ("draw", "draw()"),
    ("freeze", "freeze()"),
    ("thaw", "thaw()"),
    ("setOption", "setOption(long optionId, Attribute value)"),
    ("setOptionByName", "setOptionByName(str name, Attribute value)"),
    ("getOption", "getOption(long optionId) -> Attribute"),
    ("getOptionByName", "getOptionByName(str name) -> Attribute"),
)

VIEWPORT_CAMERA = (
    ("setup", "setup(GroupAttribute cameraData)"),
    ("asAttribute", "asAttribute() -> Attribute"),
    ("setOption", "setOption(long optionId, Attribute value)"),
    ("setOptionByName", "setOptionByName(str name, Attribute value)"),
    ("getOption", "getOption(long optionId) -> Attribute"),
    ("getOptionByName", "getOptionByName(str name) -> Attribute"),
    ("getCameraTypeID", "getCameraTypeID() -> int"),
    ("setViewportDimensions", "setViewportDimensions(int pixelWidth, int pixelHeight)"),
    ("getViewMatrix", "getViewMatrix() -> (double)"),
    ("setViewMatrix", "setViewMatrix(matrix)"),
    ("getProjectionMatrix", "getProjectionMatrix() -> (matrix)"),
    ("setProjectionMatrix", "setProjectionMatrix(matrix)"),
    ("getCenterOfInterest", "getCenterOfInterest() -> double"),
    ("setCenterOfInterest", "setCenterOfInterest(double coi)"),
    ("getFOV", "getFOV() -> double"),
    ("setFOV", "setFOV(double fov)"),
    ("getOrthographicWidth", "getOrthographicWidth() -> double"),
    ("setOrthographicWidth", "setOrthographicWidth(double width)"),
    ("getNearFar", "getNearFar() -> (double near, double far)"),
    ("setNearFar", "setNearFar(double near, double far)"),
    ("getScreenWindow",
     "getScreenWindow() -> (double left, double right, double bottom, "
     "double top)"),
    ("setScreenWindow",
     "setScreenWindow(double left, double right, double bottom, double "
     "top)"),
    ("isInteractionDisabled", "isInteractionDisable() -> bool"),
    ("disableInteraction", "disableInteraction(bool)"),
    ("hasLocationPath", "hasLocationPath() -> bool"),
    ("getLocationPath", "getLocationPath() -> str"),
    ("setLocationPath", "setLocationPath(str)"),
    ("getOrigin", "getOrigin() -> (double X, double Y, double Z)"),
    ("getDirection", "getDirection() -> (double X, double Y, double Z)"),
    ("getUp", "getUp() -> (double X, double Y, double Z)"),
    ("getLeft", "getLeft() -> (double X, double Y, double Z)"),
    ("setDirty", "setDirty(CameraDirtyBits dirty)"),
)
BY_NAME_TEXT = (
    "This is the equivalent of calling getOption(ViewerAPI.GenerateOptionId(name)) causing the "
    "option hash to be re-generated with every call. For frequently used options it is "
    "recommended to cache the option hash.")

MANIPULATORS_INFO = (
    "{'manipName1': {'tagName1': value, 'tagName2': value},\n"
    " 'manipName2': {'tagName1': value, 'tagName2': value}}")

# Method to the paragraphs after the signature.
TEXTS = {
    "ViewerDelegate": {
        "openLocations": [
            "Opens a list of locations, meaning that its potential child locations will be "
            "cooked."],
        "closeLocations": [
            "Closes a list of location, meaning that their child locations will cease to be "
            "cooked, and a deleted event (see locationDeleted()) will be issued for these "
            "children."],
        "setViewOp": [
            "Informs the Scenelib3 client of the Op ID to view the scene from. This should be a "
            "terminal op of an op-tree (produced by the Node Graph or created programatically)."],
        "setManipulationFreezePeriod": [
            "Specifies the minimum time period, in milliseconds, for which location event "
            "processing is suspended after a manipulation is finalized."],
        "isFrozenDueToManipulation": [
            "Queries location event processing status, returning True if processing is suspended "
            "due to manipulator activity."],
        "getAttributes": [
            "Gets the cached cooked attributes for the given location from the given scene view. "
            "Returns None if the location does not exist or has not been populated in the scene "
            "view.",
            "During the manipulation of an attribute by a Manipulator, the last value set by it "
            "will be returned instead of the cached cooked attribute. This allows faster "
            "interactive representation of the scene graph during the manipulation, since the "
            "cooking might not be fast enough to provide an interactive speed."],
        "getLiveAttributes": [
            "Gets the live attributes of a location. The group contains only the attributes that "
            "are currently being manipulated.",
            "If the location is not being manipulated, it returns an invalid group."],
        "getCookedAttributes": [
            "Gets the cooked attributes of a location. Unlike getAttributes(), this function does "
            "not apply the manipulated attributes on top."],
        "setSystemArgs": [
            "Sets the current system args from the graph state on the delegate. The GroupAttribute "
            "argument is the system argument that can be passed as arguments to Scenelib Ops."],
        "getOptionByName": [BY_NAME_TEXT],
        "getCompatibleManipulatorsInfo": [
            "Returns the information about the Manipulator plug-ins that are compatible with a "
            "given list of locations. This is done by calling Manipulator.match() for the cooked "
            "attributes of each of these locations. The Manipulators have to match ALL of the "
            "given locations. The information is returned as a GroupAttribute that contains other "
            "GroupAttributes with each manipulator's tags indexed by theManipulator plug-in name:",
            MANIPULATORS_INFO],
        "setSelectedLocations": [
            "Called when locations are selected in Ostrel. Receives the list of currently "
            "selected locations"],
        "setSelectionCallbacks": [
            "Registers the Python callbacks for selectiong a list of locations and getting the "
            "list of currently selected locations. The callbacks must follow the signatures:",
            "selectLocationsCallback(StringAttribute locations)",
            "getSelectedLocationsCallback() -> StringAttribute"],
        "setActiveManipulatorsChangedCallback": [
            "Registers the Python callback for when the active manipulator changes in a Viewport. "
            "The callback must follow the signature:",
            "callback(StringAttribute viewportName)"],
        "computeMergedExtent": [
            "Computes the merged extent of all the given locations. An optional string can be "
            "passed to exclude a certain location (typically the look-through location)."],
        "registerCallback": [
            "Sets a callback function for callPythonCallback() calls. Returns the previously set "
            "callback."],
        "unregisterCallback": [
            "Removes a callback function previously registered with registerCallback()."],
        "unregisterAllCallbacks": ["Removes all registered callback functions."],
    },
    "ViewerDelegateComponent": {"getOptionByName": [BY_NAME_TEXT]},
    "Manipulator": {
        "getPluginName": ["Gets the manipulator's plug-in name."],
        "getTags": ["Gets the tags GroupAttribute of the manipulator."],
        "getLocationPaths": [
            "Gets the location paths being manipulated by this manipulator."],
    },
    "Viewport": {
        "setup": [
            "Called whenever a user interaction event occurs. This will be also propagated "
            "through the ViewerLayers of this Viewport."],
        "event": [
            "Called whenever a user interaction event occurs. This will call event() on the "
            "plugin and will be also propagated through the ViewerLayers of this Viewport.",
            "Returns True if the event has been handled, False otherwise."],
        "draw": [
            "Called when the scene needs to be drawn in the correct GL context. In a non-GL "
            "renderer the generated image should be drawn in the GL framebuffer in order to be "
            "displayed. This will be also propagated through the ViewerLayers of this Viewport. "
            "This will call draw() on the plugin."],
        "resize": [
            "Called when the Viewport widget is resized. This can be extended by the plugin to "
            "accomodate viewport size changes in the renderer."],
        "isDirty": ["Returns whether the viewport state is dirty, if so it will be re-drawn."],
        "addCamera": [
            "Instantiates a ViewportCamera and adds it to the end of the list of cameras on this "
            "Viewport. If a camera of the same name already exists, it will be deleted. If said "
            "camera happened to be the active camera, the new camera will become the active "
            "camera. Returns the newly created ViewportCamera."],
        "activateManipulator": [
            "Activates a Manipulator with the given plugin name for the specified locations. This "
            "will instantiate a Manipulator plugin on this Viewport that manipulates those "
            "locations. After this the manipulator will be ready to be drawn and interacted with, "
            "which can either be implemented directly on the Viewport or in a ViewportLayer "
            "dedicated to manipulators. Only one Manipulator instance of the given type can be "
            "active at once. The bool 'signal' argument specifies if this should trigger the "
            "Python callback that signals a change in the list of active manipulators."],
        "deactivateManipulator": [
            "Deactivates a Manipulator with the given plugin name that has been previously "
            "activated in this Viewport. The bool 'signal' argument specifies if this should "
            "trigger the Python callback that signals a change in the list of active "
            "manipulators."],
        "freeze": [
            "Allows the Viewport to freeze its activities when the Viewer is not visible. This "
            "allows the Viewport to stop any kind of unecessary processing that might happen "
            "durging that time."],
    },
    "ViewportLayer": {"getOptionByName": [BY_NAME_TEXT]},
    "ViewportCamera": {
        "setup": ["Initializes a the camera properties from a GroupAttribute."],
        "asAttribute": [
            "This function returns a GroupAttribute that fully represents the current camera "
            "settings in a format that can be passed into the setup() function (as a way of "
            "duplicating the camera) or into a scene graph location in order to populate a camera "
            "location."],
        "getLocationPath": [
            "Returns a location path if the camera is driven by a location, or None otherwise."],
        "getProjectionMatrix": ["Gets the view matrix."],
        "setProjectionMatrix": ["Sets the view matrix."],
    },
}

METHODS = (
    ("Manipulator", MANIPULATOR),
    ("ViewerDelegate", VIEWER_DELEGATE),
    ("ViewerDelegateComponent", VIEWER_DELEGATE_COMPONENT),
    ("Viewport", VIEWPORT),
    ("ViewportLayer", VIEWPORT_LAYER),
    ("ViewportCamera", VIEWPORT_CAMERA),
)


def documentation(typeName, method):
    return getattr(getattr(ViewerAPI, typeName), method).__doc__


class DocumentationTest(unittest.TestCase):
    maxDiff = None

    def testEveryMethodBeginsWithItsSignature(self):
        for typeName, methods in METHODS:
            for method, signature in methods:
                lines = documentation(typeName, method).split("\n")
                self.assertEqual(signature, lines[0], "%s.%s" % (typeName, method))

    def testEveryMethodSaysWhatItDoes(self):
        for typeName, methods in METHODS:
            for method, _ in methods:
                paragraphs = documentation(typeName, method).split("\n\n")
                self.assertGreater(len(paragraphs), 1, "%s.%s" % (typeName, method))
                self.assertTrue(paragraphs[1], "%s.%s" % (typeName, method))

    def testTextsThatCarryMeaning(self):
        for typeName, texts in TEXTS.items():
            for method, paragraphs in texts.items():
                self.assertEqual(paragraphs, documentation(typeName, method).split("\n\n")[1:],
                                 "%s.%s" % (typeName, method))

    def testTheRegisteredManipulatorsInfoHasTheFormOfTheCompatibleOnes(self):
        self.assertTrue(documentation("ViewerDelegate", "getRegisteredManipulatorsInfo")
                        .endswith("\n\n" + MANIPULATORS_INFO))

    def testHoverTellsOfTheContext(self):
        self.assertIn("Called whenever the mouse pointer hovers or exits the Viewport. This runs "
                      "with the GL context made current to allow hovering GL code to run.",
                      documentation("Viewport", "hover"))

    def testTypesOfferTheseMethodsAndNoOthers(self):
        for typeName, methods in METHODS:
            offered = [name for name in vars(getattr(ViewerAPI, typeName))
                       if not name.startswith("__")]
            self.assertEqual(sorted(name for name, _ in methods), sorted(offered), typeName)

    @unittest.skipUnless(sys.version_info[0] >= 3, "Python 2's dicts have no order")
    def testMethodsStandInTheirOrder(self):
        for typeName, methods in METHODS:
            offered = [name for name in vars(getattr(ViewerAPI, typeName))
                       if not name.startswith("__")]
            self.assertEqual([name for name, _ in methods], offered, typeName)

    def testTypesAndModuleHaveTheirTexts(self):
        for typeName, _ in METHODS:
            self.assertEqual(typeName + " plugin", getattr(ViewerAPI, typeName).__doc__)
        self.assertEqual(
            "Viewer API module. Contains the classes ViewerDelegate, Viewport, ViewportLayer and "
            "ViewportCamera.", ViewerAPI.__doc__)


if __name__ == "__main__":
    unittest.main()
