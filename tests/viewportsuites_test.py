"""Every entry of the host suites of viewports, layers and cameras, through a real plug-in library:
the probes call the tables as they are told."""
import unittest

import PyVlLogging
import PyWindowSystem
from PyVlAttribute import StringAttribute
from probes import IDENTITY, RANGE_ERROR, ProbeTest, Raises

import ViewerAPI

WIDTH, HEIGHT = 16, 12
# Of a camera that looks from (1, 2, 3) along the negative z axis.
MATRIX = "1 0 0 0 0 1 0 0 0 0 1 0 -1 -2 -3 1"
NO_LAYER = "Couldn't load ViewportLayer plugin type '%s'."
NO_MANIPULATOR = "Couldn't load Manipulator plugin type '%s'."
NO_CAMERA = ("Couldn't load ViewportCamera plugin type '%s'. The API version of the plugin might "
             "not match the one currently supported: v2. In that case the plugin needs to be "
             "recompiled and linked against this version of Ostrel.")


# By entry: calls and their results, in order, on fresh objects. The viewport "v" has a window, the
# cameras "a" and "b", of which none is active, and the layers "l" and "m", all of them probes. No
# manipulator is active.
# "-1" as an index is the largest there is.

VIEWPORT_CALLS = {
    "getName": (("getName", "v"),),
    "getViewerDelegate": (("getViewerDelegate", "found"),),
    "getActiveCamera": (("getActiveCamera", "null"), ("setActiveCamera a", "done"),
                        ("getActiveCamera", "found")),
    "addCamera": (("addCamera ProbeCamera c", "found"), ("getCameraName 2", "c"),
                  ("addCamera ProbeCamera a", "found"), ("getNumberOfCameras", "3"),
                  ("getCameraIndex a", "2"), ("addCamera Nobody d", Raises(NO_CAMERA % "Nobody")),
                  ("addCamera (null) (null)", Raises(NO_CAMERA % "")),
                  ("addCamera ProbeLayer d", Raises(NO_CAMERA % "ProbeLayer")),
                  ("getNumberOfCameras", "3"), ("addCamera ProbeCamera (null)", "found"),
                  ("getCameraName 3", "")),
    "removeCamera": (("removeCamera a", "done"), ("removeCamera unknown", "done"),
                     ("getNumberOfCameras", "1"), ("setActiveCamera b", "done"),
                     ("removeCamera b", "done"), ("getNumberOfCameras", "1")),
    "setActiveCamera": (("setActiveCamera b", "done"), ("getActiveCamera", "found"),
                        ("setActiveCamera unknown", "done"), ("getActiveCamera", "null")),
    "getCameraByName": (("getCameraByName b", "found"), ("getCameraByName c", "null"),
                        ("getCameraByName (null)", "null")),
    "getCameraByIndex": (("getCameraByIndex 1", "found"), ("getCameraByIndex 2", "null"),
                         ("getCameraByIndex 3", "null"), ("getCameraByIndex -1", "null")),
    "removeCameraByName": (("removeCameraByName a", "done"), ("removeCameraByName a", "done"),
                           ("removeCameraByName (null)", "done"), ("getNumberOfCameras", "1"),
                           ("getCameraIndex b", "0")),
    "removeCameraByIndex": (("removeCameraByIndex 0", "done"), ("removeCameraByIndex 2", "done"),
                            ("removeCameraByIndex -1", "done"),
                            ("removeCameraByIndex 1", Raises(RANGE_ERROR)),
                            ("getNumberOfCameras", "1"), ("setActiveCamera b", "done"),
                            ("removeCameraByIndex 0", "done"), ("getNumberOfCameras", "1")),
    "getNumberOfCameras": (("getNumberOfCameras", "2"),),
    "getCameraName": (("getCameraName 1", "b"), ("getCameraName 2", ""), ("getCameraName 3", ""),
                      ("getCameraName -1", "")),
    "getCameraIndex": (("getCameraIndex b", "1"), ("getCameraIndex c", "-1"),
                       ("getCameraIndex (null)", "-1")),
    "event": (("event int:7", "0"), ("event null", "0")),
    "draw": (("draw", "done"),),
    "resize": (("resize 5 4", "done"), ("getWidth", "5"), ("getHeight", "4"),
               ("resize 0 0", "done"), ("getWidth", "0"), ("getHeight", "0")),
    "getWidth": (("getWidth", str(WIDTH)),),
    "getHeight": (("getHeight", str(HEIGHT)),),
    "isDirty": (("isDirty", "0"),),
    "setDirty": (("setDirty -5", "done"), ("isDirty", "1"), ("setDirty 0", "done"),
                 ("isDirty", "0")),
    "addLayer": (("addLayer ProbeLayer l", "found"), ("getNumberOfLayers", "3"),
                 ("getLayerName 2", "l"), ("addLayer Nobody n", Raises(NO_LAYER % "Nobody")),
                 ("addLayer (null) (null)", Raises(NO_LAYER % "")), ("getNumberOfLayers", "3")),
    "insertLayer": (("insertLayer ProbeLayer n 0", "found"), ("getLayerIndex n", "0"),
                    ("insertLayer ProbeLayer o 3", "found"), ("getLayerIndex o", "3"),
                    ("insertLayer ProbeLayer p 5", "null"), ("insertLayer Nobody p -1", "null"),
                    ("insertLayer Nobody p 4", Raises(NO_LAYER % "Nobody")),
                    ("getNumberOfLayers", "4")),
    "getLayer": (("getLayer m", "found"), ("getLayer n", "null"), ("getLayer (null)", "null")),
    "getLayerByIndex": (("getLayerByIndex 1", "found"), ("getLayerByIndex 2", "null"),
                        ("getLayerByIndex -1", "null")),
    "removeLayer": (("removeLayer l", "done"), ("removeLayer l", "done"),
                    ("removeLayer (null)", "done"), ("getNumberOfLayers", "1")),
    "removeLayerByIndex": (("removeLayerByIndex 0", "done"), ("removeLayerByIndex 1", "done"),
                           ("removeLayerByIndex -1", "done"), ("getLayerName 0", "m")),
    "getNumberOfLayers": (("getNumberOfLayers", "2"),),
    "getLayerName": (("getLayerName 1", "m"), ("getLayerName 2", ""), ("getLayerName -1", "")),
    "getLayerIndex": (("getLayerIndex m", "1"), ("getLayerIndex n", "-1"),
                      ("getLayerIndex (null)", "-1")),
    "getViewMatrix": (("getViewMatrix", IDENTITY),),
    "getProjectionMatrix": (("getProjectionMatrix", IDENTITY),),
    "activateManipulator": (
        ("activateManipulator ProbeManipulator string:/root", "done"),
        ("activateManipulator ProbeManipulator null", "done"),
        ("getNumberOfActiveManipulators", "1"),
        ("activateManipulator Nobody string:/root", Raises(NO_MANIPULATOR % "Nobody")),
        ("activateManipulator (null) null", Raises(NO_MANIPULATOR % "")),
        ("activateManipulator ProbeLayer null", Raises(NO_MANIPULATOR % "ProbeLayer")),
        ("getNumberOfActiveManipulators", "1")),
    "deactivateManipulator": (("activateManipulator ProbeManipulator int:1", "done"),
                              ("deactivateManipulator Nobody", "done"),
                              ("deactivateManipulator (null)", "done"),
                              ("getNumberOfActiveManipulators", "1"),
                              ("deactivateManipulator ProbeManipulator", "done"),
                              ("deactivateManipulator ProbeManipulator", "done"),
                              ("getNumberOfActiveManipulators", "0")),
    "deactivateAllManipulators": (("deactivateAllManipulators", "done"),
                                  ("activateManipulator ProbeManipulator null", "done"),
                                  ("deactivateAllManipulators", "done"),
                                  ("getNumberOfActiveManipulators", "0")),
    "getNumberOfActiveManipulators": (("getNumberOfActiveManipulators", "0"),),
    "getActiveManipulatorByIndex": (("getActiveManipulatorByIndex 0", "null"),
                                    ("activateManipulator ProbeManipulator null", "done"),
                                    ("getActiveManipulatorByIndex 0", "found"),
                                    ("getActiveManipulatorByIndex 1", "null"),
                                    ("getActiveManipulatorByIndex -1", "null")),
    "getActiveManipulator": (("getActiveManipulator ProbeManipulator", "null"),
                             ("activateManipulator ProbeManipulator null", "done"),
                             ("getActiveManipulator ProbeManipulator", "found"),
                             ("getActiveManipulator Probe", "null"),
                             ("getActiveManipulator (null)", "null")),
    "getReserved": (("getReserved", "0"),),
    "makeGLContextCurrent": (("makeGLContextCurrent", "1"), ("isGLContextCurrent", "1")),
    "doneGLContextCurrent": (("makeGLContextCurrent", "1"), ("doneGLContextCurrent", "1"),
                             ("isGLContextCurrent", "0"), ("doneGLContextCurrent", "1")),
    "isGLContextCurrent": (("makeGLContextCurrent", "1"), ("isGLContextCurrent", "1")),
    "enableCapability": (("makeGLContextCurrent", "1"), ("enableCapability 3042", "done")),
    "disableCapability": (("makeGLContextCurrent", "1"), ("disableCapability 3042", "done")),
    "addPickableObject": (("addPickableObject int:5", "0"), ("addPickableObject int:5", "1"),
                          ("addPickableObject null", "2")),
    "getPickedObjects": (("getPickedObjects 0 0 1 1 0", "{} at depth 1.000000"),
                         ("getPickedObjects 0 0 2 1 0", "{}"),
                         ("getPickedObjects 0 0 1 1 0 without", "{}"),
                         ("getPickedObjects 0 0 0 0 1", "{}"),
                         ("getPickedObjects -9 -9 3 3 -1", "{}"),
                         ("getPickedObjects 0 0 -1 5 0", "{}")),
    "setViewFrozen": (("setViewFrozen 9", "done"), ("isViewFrozen", "1"),
                      ("setViewFrozen 0", "done"), ("isViewFrozen", "0")),
    "isViewFrozen": (("isViewFrozen", "0"),),
    "setPanAndZoomActive": (("setPanAndZoomActive -1", "done"), ("isPanAndZoomActive", "1"),
                            ("setPanAndZoomActive 0", "done"), ("isPanAndZoomActive", "0")),
    "isPanAndZoomActive": (("isPanAndZoomActive", "0"),),
    "initializeGLContext": (("initializeGLContext", "1"), ("makeGLContextCurrent", "1")),
}

LAYER_CALLS = {
    "getViewport": (("getViewport", "found"),),
    "event": (("event int:7", "0"), ("event null", "0")),
    "draw": (("draw", "done"),),
    "hover": (("hover 5 3 -4", "done"),),
    "addPickableObject": VIEWPORT_CALLS["addPickableObject"],
    "getPickedObjects": VIEWPORT_CALLS["getPickedObjects"],
}

CAMERA_CALLS = {
    "getViewMatrix": (("getViewMatrix", IDENTITY),),
    "setViewMatrix": (("setViewMatrix " + MATRIX, "done"), ("getViewMatrix", "(%s)" % MATRIX)),
    "getProjectionMatrix": (("getProjectionMatrix", IDENTITY),),
    "setProjectionMatrix": (("setProjectionMatrix " + MATRIX, "done"),
                            ("getProjectionMatrix", "(%s)" % MATRIX)),
    "getCenterOfInterest": (("getCenterOfInterest", "20.000000"),),
    "setCenterOfInterest": (("setCenterOfInterest 2.5", "done"),
                            ("getCenterOfInterest", "2.500000")),
    "getFOV": (("getFOV", "45.000000"),),
    "setFOV": (("setFOV -1", "done"), ("getFOV", "-1.000000")),
    "getOrthographicWidth": (("getOrthographicWidth", "30.000000"),),
    "setOrthographicWidth": (("setOrthographicWidth 0", "done"),
                             ("getOrthographicWidth", "30.000000"),
                             ("setOrthographicWidth -2", "done"),
                             ("getOrthographicWidth", "-2.000000")),
    "getNearFar": (("getNearFar", "0.100000 100000.000000"),),
    "setNearFar": (("setNearFar 0 0", "done"), ("getNearFar", "0.001000 0.002000"),
                   ("setNearFar 10 5", "done"), ("getNearFar", "10.000000 10.001000")),
    "getScreenWindow": (("getScreenWindow", "-1.000000 1.000000 -1.000000 1.000000"),),
    "setScreenWindow": (("setScreenWindow 1 2 3 4", "done"),
                        ("getScreenWindow", "1.000000 2.000000 3.000000 4.000000")),
    "getOrigin": (("setViewMatrix " + MATRIX, "done"),
                  ("getOrigin", "1.000000 2.000000 3.000000")),
    "getDirection": (("getDirection", "-0.000000 -0.000000 -1.000000"),),
    "getUp": (("getUp", "0.000000 1.000000 0.000000"),),
    "getLeft": (("getLeft", "-1.000000 0.000000 0.000000"),),
    "getViewport": (("getViewport", "found"),),
    "hasLocationPath": (("hasLocationPath", "0"),),
    "getLocationPath": (("getLocationPath", "null pointer"),),
    "setLocationPath": (("setLocationPath /root/cam", "done"), ("hasLocationPath", "1"),
                        ("getLocationPath", "/root/cam"), ("setLocationPath (null)", "done"),
                        ("hasLocationPath", "0"), ("getLocationPath", "null pointer")),
    "isInteractionDisabled": (("isInteractionDisabled", "0"),),
    "disableInteraction": (("disableInteraction 8", "done"), ("isInteractionDisabled", "1"),
                           ("disableInteraction 0", "done"), ("isInteractionDisabled", "0")),
}


class ViewportSuitesTest(ProbeTest):

    def setUp(self):
        self.log = []
        PyVlLogging.setSink(lambda *line: self.log.append(line))
        self.window = PyWindowSystem.createOffscreen(WIDTH, HEIGHT)
        self.prepare()

    def tearDown(self):
        self.viewport.setOptionByName("command", StringAttribute("clear"))
        self.endDelegate()
        PyWindowSystem.destroyOffscreen(self.window)
        PyVlLogging.setSink(None)

    def prepare(self):
        self.delegate = ViewerAPI.CreateViewerDelegate("ProbeDelegate")
        self.viewport = self.delegate.addViewport("ProbeViewport", "v")
        self.cameras = [self.viewport.addCamera("ProbeCamera", name) for name in ("a", "b")]
        self.layers = [self.viewport.addLayer("ProbeLayer", name) for name in ("l", "m")]
        self.viewport.resize(WIDTH, HEIGHT)
        self.viewport.setup(self.window)
        if self.log:
            self.skipTest("no context: %r" % (self.log[0],))

    def endDelegate(self):
        self.viewport = self.cameras = self.layers = None
        self.delegate.cleanup()
        self.delegate = None

    def renew(self):
        self.endDelegate()
        self.prepare()

    def probeOf(self, kind):
        return {"viewport": self.viewport, "layer": self.layers[0],
                "camera": self.cameras[0]}[kind]

    @property
    def probe(self):
        return self.viewport

    def testEveryEntryHasCalls(self):
        self.checkEntries("ViewportHostSuite", VIEWPORT_CALLS)
        self.checkEntries("ViewportLayerHostSuite", LAYER_CALLS)
        self.checkEntries("ViewportCameraHostSuite", CAMERA_CALLS)

    def testEveryEntryOfTheViewportsSuite(self):
        self.checkCalls("viewport", VIEWPORT_CALLS)

    def testEveryEntryOfTheLayersSuite(self):
        self.checkCalls("layer", LAYER_CALLS)

    def testEveryEntryOfTheCamerasSuite(self):
        self.checkCalls("camera", CAMERA_CALLS)

    def testCallsReachThePlugins(self):
        layer = self.layers[0]
        self.clearLog()
        self.command("return:3@event")
        self.assertEqual("1", self.call(self.viewport, "viewport.event int:7"))
        self.assertEqual("1", self.call(layer, "layer.event int:8"))
        self.call(self.viewport, "viewport.draw")
        self.call(self.viewport, "viewport.resize 5 4")
        self.call(layer, "layer.hover 5 3 -4")
        self.assertEqual(["event 7", "-> viewport.event: 1", "draw", "-> viewport.draw: done",
                          "resize 5 4", "-> viewport.resize: done"], self.logOf(self.viewport))
        self.assertEqual(["event 8", "-> layer.event: 1", "resize 5 4", "hover 1 3 -4",
                          "-> layer.hover: done"], self.logOf(layer))

    def testCameraSettersTellThePlugin(self):
        camera = self.cameras[0]
        for call, told in (("setCenterOfInterest 1", 1), ("setFOV 1", 1), ("setNearFar 1 2", 1),
                           ("setOrthographicWidth 1", 1), ("setOrthographicWidth 0", 0),
                           ("setScreenWindow 1 2 3 4", 1), ("setViewMatrix " + MATRIX, 0),
                           ("setLocationPath /root", 0), ("disableInteraction 1", 0)):
            self.clearLog()
            self.call(camera, "camera." + call)
            self.assertEqual(["setDirty 1"] * told, self.logOf(camera)[:-1], call)

    def testManipulatorsAreCreatedAndDestroyedWithTheCall(self):
        self.clearLog()
        heard = []
        self.delegate.setActiveManipulatorsChangedCallback(heard.append)
        self.call(self.viewport, "viewport.activateManipulator ProbeManipulator null")
        self.call(self.viewport, "viewport.deactivateAllManipulators")
        self.assertEqual(["ProbeManipulator create",
                          "ProbeViewport -> viewport.activateManipulator: done",
                          "ProbeManipulator destroy",
                          "ProbeViewport -> viewport.deactivateAllManipulators: done"],
                         self.libraryLog())
        self.assertEqual(2, len(heard), "the entries always signal")

    def testActiveCameraGivesTheViewportsMatrices(self):
        self.call(self.cameras[0], "camera.setViewMatrix " + MATRIX)
        self.call(self.viewport, "viewport.setActiveCamera a")
        self.assertEqual("(%s)" % MATRIX, self.call(self.viewport, "viewport.getViewMatrix"))
        self.viewport.setZoom(2.0)
        self.call(self.viewport, "viewport.setPanAndZoomActive 1")
        self.assertEqual("(2 0 0 0 0 2 0 0 0 0 1 0 0 0 0 1)",
                         self.call(self.viewport, "viewport.getProjectionMatrix"))

    def testCustomPickGoesBeforeTheHosts(self):
        for kind, probe in (("viewport", self.viewport), ("layer", self.layers[0])):
            self.clearLog()
            self.command("return:1@customPick#2")
            self.command("returnAttribute:int:5@customPick#1")
            for _ in range(2):
                self.assertEqual("null at depth 0.500000",
                                 self.call(probe, kind + ".getPickedObjects 1 2 1 1 1"))
            self.assertEqual(["customPick 1 2 1 1 1"] * 2,
                             [line for line in self.logOf(probe) if "Pick " in line])

    def testIdsAreDrawnOnceAndTheContextIsBound(self):
        for kind, probe in (("viewport", self.viewport), ("layer", self.layers[0])):
            self.call(self.viewport, "viewport.doneGLContextCurrent")
            self.clearLog()
            self.call(probe, kind + ".getPickedObjects 1 2 3 4 0")
            self.assertEqual(["customPick 1 2 3 4 0", "pickerDraw 1 2 3 4 {}"],
                             self.logOf(probe)[:2])
            self.assertEqual("1", self.call(self.viewport, "viewport.isGLContextCurrent"))

    def testPickWithinAPickIsNull(self):
        for kind, probe in (("viewport", self.viewport), ("layer", self.layers[0])):
            self.command("call:%s.getPickedObjects 0 0 1 1 1@pickerDraw#1" % kind)
            self.assertEqual("{} at depth 1.000000",
                             self.call(probe, kind + ".getPickedObjects 0 0 1 1 0"))
            self.assertIn("-> %s.getPickedObjects: null" % kind, self.logOf(probe))

    def testLayerMayRemoveItselfWhileItIsPicked(self):
        for entry in ("customPick", "pickerDraw", "draw"):
            self.command("call:viewport.removeLayerByIndex 0@ProbeLayer.%s#1" % entry)
            target = self.viewport.getLayerByIndex(0) or self.viewport.addLayer("ProbeLayer", "n")
            try:
                self.command("call:layer.%s" % ("draw" if entry == "draw" else
                                                "getPickedObjects 0 0 1 1 0"), target)
            except RuntimeError as error:
                self.fail("%s: %s" % (entry, error))
            with self.assertRaises(RuntimeError) as raised:
                target.draw()
            self.assertEqual("Underlying C++ layer has been destroyed", str(raised.exception))

    def testViewportMayBeRemovedWhileItIsPicked(self):
        self.command("call:delegate.removeViewport v@ProbeViewport.pickerDraw#1")
        self.command("call:viewport.getPickedObjects 0 0 1 1 1")
        self.assertEqual(0, self.delegate.getNumberOfViewports())
        with self.assertRaises(RuntimeError) as raised:
            self.viewport.draw()
        self.assertEqual("Underlying C++ viewport has been destroyed", str(raised.exception))
        self.viewport = self.delegate.addViewport("ProbeViewport", "v")

    def testWhatAPluginThrowsFromAPickGoesThroughTheTable(self):
        for kind, probe in (("viewport", self.viewport), ("layer", self.layers[0])):
            for entry in ("customPick", "pickerDraw"):
                self.command("throwStd:no good@%s#1" % entry)
                with self.assertRaises(RuntimeError) as raised:
                    self.call(probe, kind + ".getPickedObjects 0 0 1 1 0")
                self.assertEqual("no good", str(raised.exception))
                self.command("throwOther@%s#1" % entry)
                with self.assertRaises(RuntimeError) as raised:
                    self.call(probe, kind + ".getPickedObjects 0 0 1 1 0")
                self.assertEqual("Unknown C++ exception", str(raised.exception))
            self.assertEqual("{} at depth 1.000000",
                             self.call(probe, kind + ".getPickedObjects 0 0 1 1 0"))

    def testCachedLayerDrawsItsIdsWithItsPicture(self):
        self.command("return:1@usesPickingCache")
        cached = self.viewport.addLayer("ProbeLayer", "cached")
        self.clearLog()
        self.call(cached, "layer.draw")
        self.assertEqual(["draw", "pickerDraw 0 0 %d %d {}" % (WIDTH, HEIGHT)],
                         self.logOf(cached)[:2])
        self.clearLog()
        self.call(cached, "layer.getPickedObjects 0 0 2 2 0")
        self.assertEqual(["customPick 0 0 2 2 0", "-> layer.getPickedObjects: {}"],
                         self.logOf(cached))

    def testContextEntriesWithoutAWindow(self):
        viewport = self.delegate.addViewport("ProbeViewport", "early")
        for call, expected in (("makeGLContextCurrent", "0"), ("doneGLContextCurrent", "1"),
                               ("isGLContextCurrent", "0"), ("initializeGLContext", "0"),
                               ("getPickedObjects 0 0 1 1 1", "{}")):
            self.assertEqual(expected, self.call(viewport, "viewport." + call), call)
        self.assertEqual([("error", "VlViewportHost", "Invalid display device.",
                           "viewer_api/src/vlviewporthost", 801)], self.log)
        del self.log[:]


if __name__ == "__main__":
    unittest.main()
