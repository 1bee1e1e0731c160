"""Every method of the types Viewport, ViewportLayer, ViewportCamera and Manipulator with good
arguments, and with every bad one."""

import unittest

from argumentkinds import (ANYTHING, FOREIGN_TEXT, NO_ATTRIBUTE, NO_FLOAT, NO_INT,
                           NO_LIST_OF_TEXT, NO_MATRIX, NO_OPTION_ID, NO_TEXT, NO_TRUE_INT, Of)
from scripted import (CAMERA, IS_PYTHON_3, LAYER, MANIPULATORS, ScriptedTest, VIEWPORT, ViewerAPI,
                      errorOf)
import ScriptedPlugins
from PyVlAttribute import GroupAttribute, IntAttribute, StringAttribute

MOVE, AIM = MANIPULATORS

IDENTITY = tuple(float(index % 5 == 0) for index in range(16))
MATRIX = tuple(float(value) for value in range(16))
GROUP = GroupAttribute(("type", IntAttribute(1)))

# As an argument: the camera "other" of the viewport.
THE_CAMERA = object()
# As an expected result: the viewport's delegate.
THE_DELEGATE = object()

# ---- The methods: their parameters, good arguments and what these give.

OPTION_ROWS = (
    ("setOption", (NO_OPTION_ID, NO_ATTRIBUTE), (7, IntAttribute(1)), None),
    ("setOptionByName", (NO_TEXT, NO_ATTRIBUTE), ("o", IntAttribute(1)), None),
    ("getOption", (NO_OPTION_ID,), (7,), IntAttribute(5)),
    ("getOptionByName", (NO_TEXT,), ("o",), IntAttribute(5)),
)

# The viewport has the cameras "active", which is active, and "other", a layer "l", and an active
# ScriptedMove.
VIEWPORT_ROWS = OPTION_ROWS + (
    ("getName", (), (), "v"),
    ("setup", (NO_INT,), (1,), None),
    ("event", (ANYTHING,), (GROUP,), False),
    ("draw", (), (), None),
    ("resize", (NO_INT, NO_INT), (4, 3), None),
    ("hover", (NO_TRUE_INT, NO_TRUE_INT), (1, 2), None),
    ("isDirty", (), (), False),
    ("setDirty", (NO_INT,), (1,), None),
    ("getActiveCamera", (), (), Of(ViewerAPI.ViewportCamera)),
    # What is no camera is not refused here: the caller sees to that.
    ("setActiveCamera", (ANYTHING,), (THE_CAMERA,), None),
    ("addCamera", (NO_TEXT, NO_TEXT), (CAMERA, "n"), Of(ViewerAPI.ViewportCamera)),
    ("getCameraByName", (NO_TEXT,), ("other",), Of(ViewerAPI.ViewportCamera)),
    ("getCameraByIndex", (NO_INT,), (1,), Of(ViewerAPI.ViewportCamera)),
    ("removeCamera", (NO_TEXT,), ("other",), None),
    ("removeCameraByIndex", (NO_INT,), (1,), None),
    ("getNumberOfCameras", (), (), 2),
    ("getCameraName", (NO_INT,), (1,), "other"),
    ("setViewFrozen", (NO_INT,), (1,), None),
    ("isViewFrozen", (), (), False),
    ("addLayer", (NO_TEXT, NO_TEXT), (LAYER, "n"), Of(ViewerAPI.ViewportLayer)),
    ("getViewerDelegate", (), (), THE_DELEGATE),
    ("insertLayer", (NO_TEXT, NO_TEXT, NO_INT), (LAYER, "n", 0), Of(ViewerAPI.ViewportLayer)),
    ("getLayer", (NO_TEXT,), ("l",), Of(ViewerAPI.ViewportLayer)),
    ("getLayerByIndex", (NO_INT,), (0,), Of(ViewerAPI.ViewportLayer)),
    ("removeLayer", (NO_TEXT,), ("l",), None),
    ("removeLayerByIndex", (NO_INT,), (0,), None),
    ("getNumberOfLayers", (), (), 1),
    ("getLayerName", (NO_INT,), (0,), "l"),
    ("freeze", (), (), None),
    ("thaw", (), (), None),
    ("setHorizontalOffset", (NO_FLOAT,), (0.5,), None),
    ("getHorizontalOffset", (), (), 0.0),
    ("setVerticalOffset", (NO_FLOAT,), (0.5,), None),
    ("getVerticalOffset", (), (), 0.0),
    ("setZoom", (NO_FLOAT,), (0.5,), None),
    ("getZoom", (), (), 1.0),
    ("setPanAndZoomActive", (NO_INT,), (1,), None),
    ("isPanAndZoomActive", (), (), False),
    ("activateManipulator", (NO_TEXT, NO_LIST_OF_TEXT, NO_INT), (AIM, ["/root"], 1), None),
    ("deactivateManipulator", (NO_TEXT, NO_INT), (MOVE, 1), None),
    ("deactivateAllManipulators", (NO_INT,), (1,), None),
    ("getNumberOfActiveManipulators", (), (), 1),
    ("getActiveManipulatorByIndex", (NO_INT,), (0,), Of(ViewerAPI.Manipulator)),
    ("getActiveManipulatorTags", (NO_INT,), (0,), GROUP),
    ("getActiveManipulatorPluginName", (NO_INT,), (0,), MOVE),
)

MANIPULATOR_ROWS = OPTION_ROWS + (
    ("getPluginName", (), (), MOVE),
    ("getTags", (), (), GROUP),
    ("getLocationPaths", (), (), StringAttribute([])),
)

LAYER_ROWS = OPTION_ROWS + (
    ("setup", (), (), None),
    ("event", (ANYTHING,), (GROUP,), False),
    ("draw", (), (), None),
    ("freeze", (), (), None),
    ("thaw", (), (), None),
)

CAMERA_ROWS = OPTION_ROWS + (
    ("setup", (ANYTHING,), (GROUP,), None),
    ("asAttribute", (), (), GROUP),
    ("getCameraTypeID", (), (), 2),
    ("setViewportDimensions", (NO_INT, NO_INT), (4, 3), None),
    ("getViewMatrix", (), (), IDENTITY),
    ("setViewMatrix", (NO_MATRIX,), (MATRIX,), None),
    ("getProjectionMatrix", (), (), IDENTITY),
    ("setProjectionMatrix", (NO_MATRIX,), (MATRIX,), None),
    ("getCenterOfInterest", (), (), 20.0),
    ("setCenterOfInterest", (NO_FLOAT,), (1.5,), None),
    ("getFOV", (), (), 45.0),
    ("setFOV", (NO_FLOAT,), (1.5,), None),
    ("getOrthographicWidth", (), (), 30.0),
    ("setOrthographicWidth", (NO_FLOAT,), (1.5,), None),
    ("getNearFar", (), (), (0.1, 100000.0)),
    ("setNearFar", (NO_FLOAT, NO_FLOAT), (1.5, 2.5), None),
    ("getScreenWindow", (), (), (-1.0, 1.0, -1.0, 1.0)),
    ("setScreenWindow", (NO_FLOAT,) * 4, (1.5, 2.5, 3.5, 4.5), None),
    ("isInteractionDisabled", (), (), False),
    ("disableInteraction", (NO_INT,), (1,), None),
    ("hasLocationPath", (), (), False),
    ("getLocationPath", (), (), None),
    ("setLocationPath", (NO_TEXT,), ("/root/cam",), None),
    ("getOrigin", (), (), (0.0, 0.0, 0.0)),
    ("getDirection", (), (), (0.0, 0.0, -1.0)),
    ("getUp", (), (), (0.0, 1.0, 0.0)),
    ("getLeft", (), (), (-1.0, 0.0, 0.0)),
    ("setDirty", (NO_INT,), (1,), None),
)


class EveryMethod(object):
    """The tests of one type, over its rows."""

    rows = ()
    optional = {}  # how many of the last parameters may be left out
    parseNothing = ()  # these take whatever they get
    plugin = None

    def setUp(self):
        ScriptedTest.setUp(self)
        self.prepare()

    def tearDown(self):
        self.viewport = self.target = None
        ScriptedTest.tearDown(self)

    def prepare(self):
        self.viewport = self.target = None
        self.createDelegate()
        self.viewport = self.createViewport()
        self.viewport.setActiveCamera(self.viewport.addCamera(CAMERA, "active"))
        camera = self.viewport.addCamera(CAMERA, "other")
        layer = self.viewport.addLayer(LAYER, "l")
        self.viewport.activateManipulator(MOVE, [], False)
        self.target = {VIEWPORT: self.viewport, CAMERA: camera, LAYER: layer,
                       MOVE: self.viewport.getActiveManipulatorByIndex(0)}[self.plugin]
        self.plugins.answers.update({(self.plugin, "getOption"): IntAttribute(5),
                                     (CAMERA, "asAttribute"): GROUP, (MOVE, "getTags"): GROUP,
                                     (CAMERA, "getCameraTypeID"): 2})
        self.plugins.take()

    def call(self, method, arguments):
        return getattr(self.target, method)(*[
            self.viewport.getCameraByName("other") if argument is THE_CAMERA else argument
            for argument in arguments])

    def state(self):
        """What a call could have changed."""
        viewport, camera = self.viewport, self.viewport.getCameraByName("other")
        return (viewport.isDirty(), viewport.isViewFrozen(), viewport.isPanAndZoomActive(),
                viewport.getHorizontalOffset(), viewport.getVerticalOffset(), viewport.getZoom(),
                [viewport.getCameraName(i) for i in range(viewport.getNumberOfCameras())],
                [viewport.getLayerName(i) for i in range(viewport.getNumberOfLayers())],
                [viewport.getActiveManipulatorPluginName(i)
                 for i in range(viewport.getNumberOfActiveManipulators())],
                camera.getViewMatrix(), camera.getProjectionMatrix(),
                camera.getCenterOfInterest(), camera.getFOV(), camera.getOrthographicWidth(),
                camera.getNearFar(), camera.getScreenWindow(), camera.isInteractionDisabled(),
                camera.getLocationPath())

    def assertRefused(self, method, arguments, expected=TypeError):
        """The call raises this kind, or a TypeError of this text, and does nothing."""
        before = self.state()
        error = errorOf(self.call, method, arguments)
        call = "%s%r: %r" % (method, arguments, error)
        if isinstance(expected, str):
            self.assertEqual((TypeError, expected), (type(error), str(error)), call)
        else:
            self.assertIs(expected, type(error), call)
        self.assertEqual(([], before), (self.plugins.take(), self.state()), call)

    def testEveryMethodHasARow(self):
        offered = [name for name in vars(type(self.target))
                   if not name.startswith("__")]
        self.assertEqual(sorted(offered), sorted(row[0] for row in self.rows))

    def testGoodArguments(self):
        for method, _, arguments, expected in self.rows:
            self.prepare()
            result = self.call(method, arguments)
            if isinstance(expected, Of):
                self.assertIs(expected.kind, type(result), method)
            elif expected is THE_DELEGATE:
                self.assertIs(self.delegate, result, method)
            else:
                self.assertEqual((type(expected), expected), (type(result), result), method)

    def testEveryBadValueOfEveryParameter(self):
        for method, parameters, arguments, _ in self.rows:
            for place, refused in enumerate(parameters):
                for value, expected in refused:
                    bad = arguments[:place] + (value,) + arguments[place + 1:]
                    self.assertRefused(method, bad, expected)

    def testTooFewArguments(self):
        for method, parameters, arguments, _ in self.rows:
            for count in range(len(parameters) - self.optional.get(method, 0)):
                self.assertRefused(method, arguments[:count])

    def testTooManyArguments(self):
        for method, _, arguments, _ in self.rows:
            if method not in self.parseNothing:
                self.assertRefused(method, arguments + (None,))

    def testMethodsThatParseNothingTakeAnything(self):
        for method in self.parseNothing:
            function = getattr(self.target, method)
            self.assertEqual(type(function()), type(function(1, None, "x")), method)

    def testNoMethodTakesKeywords(self):
        before = self.state()
        for row in self.rows:
            self.assertRaises(TypeError, getattr(self.target, row[0]), name=1)
        self.assertEqual(([], before), (self.plugins.take(), self.state()))

    def testTheLimitsOf32BitsAreIntegers(self):
        for method, parameters, arguments, _ in self.rows:
            for place, refused in enumerate(parameters):
                for value in (2 ** 31 - 1, -2 ** 31) if refused is NO_INT else ():
                    self.prepare()
                    self.assertIsNone(errorOf(self.call, method, arguments[:place] + (value,) +
                                              arguments[place + 1:]), method)


class ViewportArgumentsTest(EveryMethod, ScriptedTest):
    rows = VIEWPORT_ROWS
    optional = {"hover": 2}
    parseNothing = ("getActiveCamera", "getHorizontalOffset", "getVerticalOffset", "getZoom",
                    "isPanAndZoomActive")
    plugin = VIEWPORT

    def testNegativeIndicesGiveNoneAndChangeNothing(self):
        before = self.state()
        for method in ("getCameraByIndex", "getCameraName", "getLayerByIndex", "getLayerName",
                       "removeCameraByIndex", "removeLayerByIndex", "getActiveManipulatorByIndex",
                       "getActiveManipulatorTags", "getActiveManipulatorPluginName"):
            for index in (-1, -2, -2 ** 31):
                self.assertIsNone(getattr(self.target, method)(index), method)
        for index in (-1, -2 ** 31):
            self.assertIsNone(self.target.insertLayer(LAYER, "n", index))
        self.assertEqual(([], before), (self.plugins.take(), self.state()))

    def testIndicesPastTheEnd(self):
        for index in (2, 3, 2 ** 31 - 1):
            self.assertIsNone(self.target.getCameraByIndex(index))
            self.assertIsNone(self.target.getLayerByIndex(index))
            for what in ("ByIndex", "Tags", "PluginName"):
                self.assertIsNone(getattr(self.target, "getActiveManipulator" + what)(index))
            self.assertEqual(("", ""), (self.target.getCameraName(index),
                                        self.target.getLayerName(index)))
            self.assertIsNone(self.target.removeLayerByIndex(index))
        self.assertEqual([], self.plugins.take())

    def testPluginsThatCannotBeLoadedRaiseTheirTexts(self):
        before = self.state()
        for method, name, text in (
                ("addLayer", "Nobody", "Couldn't load ViewportLayer plugin type 'Nobody'."),
                ("addLayer", "WithoutSuite",
                 "Error getting ViewportLayer plugin suite for 'WithoutSuite'."),
                ("addCamera", "Nobody",
                 "Couldn't load ViewportCamera plugin type 'Nobody'. The API version of the plugin "
                 "might not match the one currently supported: v2. In that case the plugin needs "
                 "to be recompiled and linked against this version of Ostrel."),
                ("addCamera", "WithoutSuite",
                 "Error getting ViewportCamera plugin suite for 'WithoutSuite'.")):
            self.assertError(RuntimeError, text, getattr(self.target, method), name, "n")
        for name, text in (
                ("Nobody", "Couldn't load Manipulator plugin type 'Nobody'."),
                (LAYER, "Couldn't load Manipulator plugin type 'ScriptedLayer'."),
                ("WithoutSuite", "Error getting Manipulator plugin suite for 'WithoutSuite'.")):
            self.assertError(RuntimeError, text, self.target.activateManipulator, name, [], 1)
        self.assertError(RuntimeError, "Couldn't load ViewportLayer plugin type 'Nobody'.",
                         self.target.insertLayer, "Nobody", "n", 0)
        self.assertEqual(before, self.state())

    def testCreateThatAnswersNullRaisesItsText(self):
        self.plugins.answers[LAYER, "create"] = self.plugins.answers[CAMERA, "create"] = False
        self.assertError(RuntimeError,
                         "Failed to create ViewportLayer plugin instance for 'ScriptedLayer'.",
                         self.target.addLayer, LAYER, "n")
        self.assertError(RuntimeError,
                         "Failed to create ViewportCamera plugin instance for 'ScriptedCamera'.",
                         self.target.addCamera, CAMERA, "n")
        self.plugins.answers[AIM, "create"] = False
        self.assertError(RuntimeError,
                         "Failed to create Manipulator plugin instance for 'ScriptedAim'.",
                         self.target.activateManipulator, AIM, [], True)
        self.assertEqual(1, self.target.getNumberOfActiveManipulators())

    def testPathsOfAManipulatorThatAreNoTextRaiseTheirOwnText(self):
        for item in (1, None, FOREIGN_TEXT, ["/root"], bytearray(b"/root")):
            for items in ([item], ["/root", item], [item, "/root"]):
                self.assertRefused("activateManipulator", (AIM, items, 1),
                                   "Second argument must be a sequence of strings.")
        # The parser's own words for what is no list.
        error = errorOf(self.target.activateManipulator, AIM, ("/root",), 1)
        self.assertNotEqual("Second argument must be a sequence of strings.", str(error))

    def testNumbersBeyondSinglePrecisionAreInfinite(self):
        for name in ("HorizontalOffset", "VerticalOffset", "Zoom"):
            for value in (1e300, float("inf")):
                getattr(self.target, "set" + name)(value)
                self.assertEqual(float("inf"), getattr(self.target, "get" + name)())
            getattr(self.target, "set" + name)(float("nan"))
            value = getattr(self.target, "get" + name)()
            self.assertNotEqual(value, value)

    def testNamesOfOtherScriptsAndBytes(self):
        for name in (("\u30d3\u30e5\u30fc", "caf\udce9") if IS_PYTHON_3
                     else (u"\u30d3\u30e5\u30fc".encode("utf-8"), "caf\xe9")):
            self.target.addLayer(LAYER, name)
            self.target.addCamera(CAMERA, name)
            self.assertIsNotNone(self.target.getLayer(name))
            self.assertIsNotNone(self.target.getCameraByName(name))
            self.assertEqual((name, name), (self.target.getLayerName(1),
                                            self.target.getCameraName(2)))
            self.target.removeLayer(name)
            self.target.removeCamera(name)
        self.assertEqual((1, 2), (self.target.getNumberOfLayers(),
                                  self.target.getNumberOfCameras()))

    def testARemovedCameraIsNoActiveCamera(self):
        camera = self.target.addCamera(CAMERA, "gone")
        self.target.removeCamera("gone")
        self.assertError(RuntimeError, "Underlying C++ camera has been destroyed",
                         self.target.setActiveCamera, camera)

    def testWhatThePluginThrowsIsARuntimeError(self):
        self.plugins.answers[VIEWPORT, "draw"] = ValueError("no shader")
        self.assertError(RuntimeError, "no shader", self.target.draw)
        self.plugins.answers[VIEWPORT, "draw"] = ScriptedPlugins.OtherError()
        self.assertError(RuntimeError, "Unknown C++ exception", self.target.draw)


class LayerArgumentsTest(EveryMethod, ScriptedTest):
    rows = LAYER_ROWS
    plugin = LAYER


class ManipulatorArgumentsTest(EveryMethod, ScriptedTest):
    rows = MANIPULATOR_ROWS
    plugin = MOVE

    def testADeadManipulatorRaisesThatBeforeArgumentErrors(self):
        self.viewport.deactivateManipulator(MOVE, True)
        self.plugins.take()
        for method, parameters, arguments, _ in self.rows:
            for bad in (arguments, (), (None,) * 5):
                self.assertError(RuntimeError,
                                 "Underlying C++ manipulator handle has been destroyed",
                                 getattr(self.target, method), *(bad if parameters else ()))
        self.assertEqual([], self.plugins.take())


class CameraArgumentsTest(EveryMethod, ScriptedTest):
    rows = CAMERA_ROWS
    plugin = CAMERA

    def testAMatrixIsAnySequenceOf16Numbers(self):
        class Number(object):
            def __float__(self):
                return 2.5

        class Sequence(object):
            def __len__(self):
                return 16

            def __getitem__(self, index):
                if index >= 16:
                    raise IndexError(index)
                return index

        for value, expected in ((list(MATRIX), MATRIX), (Sequence(), MATRIX),
                                ([Number()] * 16, (2.5,) * 16), ([True] * 16, (1.0,) * 16)):
            for name in ("ViewMatrix", "ProjectionMatrix"):
                getattr(self.target, "set" + name)(value)
                self.assertEqual(expected, getattr(self.target, "get" + name)())

    def testAMatrixMayHoldWhatIsNoNumber(self):
        values = (float("inf"), float("-inf"), 1e308) * 5 + (-0.0,)
        self.target.setViewMatrix(values)
        self.assertEqual(values, self.target.getViewMatrix())
        for vector in (self.target.getOrigin(), self.target.getDirection(), self.target.getUp(),
                       self.target.getLeft()):
            self.assertEqual(3, len(vector))

    def testSixteenArgumentsAreNoMatrix(self):
        self.assertRaises(TypeError, self.target.setViewMatrix, *MATRIX)
        self.assertRaises(TypeError, self.target.setProjectionMatrix, *MATRIX)

    def testDirtyBitsOfAllKindsAreOne(self):
        self.assertEqual(ViewerAPI.CameraDirtyBits_AllDirty, ViewerAPI.CameraDirtyBits_DirtyParams)
        self.assertEqual((0, 1), (ViewerAPI.CameraDirtyBits_Clean,
                                  ViewerAPI.CameraDirtyBits_AllDirty))

    def testAWidthThatIsNoNumberIsStored(self):
        self.target.setOrthographicWidth(float("nan"))
        width = self.target.getOrthographicWidth()
        self.assertNotEqual(width, width)
        self.assertEqual([(CAMERA, "setDirty", 1)], self.plugins.take())


if __name__ == "__main__":
    unittest.main()
