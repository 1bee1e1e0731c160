"""The type Viewport: what its methods pass on, and what they answer."""

import unittest

import PyWindowSystem
from scripted import CAMERA, IS_PYTHON_3, LAYER, ScriptedTest, VIEWPORT, ViewerAPI, errorOf
from PyVlAttribute import GroupAttribute, IntAttribute, StringAttribute

CANNOT_REMOVE = "Cannot remove the active camera from the viewport."


class ViewportTest(ScriptedTest):
    def setUp(self):
        ScriptedTest.setUp(self)
        self.viewport = self.createViewport()

    def tearDown(self):
        self.viewport = None
        ScriptedTest.tearDown(self)


class EventTest(ViewportTest):
    def testAnEventIsLentToThePluginOnceThereIsAWindow(self):
        window = PyWindowSystem.createOffscreen(16, 16)
        self.addCleanup(PyWindowSystem.destroyOffscreen, window)
        self.viewport.setup(window)
        self.plugins.take()
        event = GroupAttribute(("type", StringAttribute("key")))
        for answer, handled in ((None, False), (0, False), (1, True), (-3, True)):
            self.plugins.answers[VIEWPORT, "event"] = answer
            self.assertIs(handled, self.viewport.event(event))
        # Any attribute will do.
        self.assertIs(True, self.viewport.event(IntAttribute(1)))
        self.assertEqual([(VIEWPORT, "event", event)] * 4 +
                         [(VIEWPORT, "event", IntAttribute(1))], self.plugins.take())
        self.delegate.cleanup()

    def testAnEventBeforeSetupDoesNotReachThePlugin(self):
        self.assertIs(False, self.viewport.event(GroupAttribute()))
        self.assertEqual([], self.plugins.take())

    def testWhatIsNoAttributeIsFalseWithoutAnError(self):
        for value in (None, 1, "text", {}, object()):
            self.assertIsNone(errorOf(self.viewport.event, value))
            self.assertIs(False, self.viewport.event(value))

    def testWrongArgumentsLeaveATypeErrorPending(self):
        for arguments in ((), (1, 2)):
            self.assertIs(TypeError, type(errorOf(self.viewport.event, *arguments)))

    @unittest.skipIf(IS_PYTHON_3, "Python 3 refuses an answer beside an error")
    def testWrongArgumentsAnswerFalseAllTheSame(self):
        answers = []

        def call():
            answers.append(self.viewport.event())

        self.assertIs(TypeError, type(errorOf(call)))
        self.assertEqual([False], answers)

    def testHoverNeedsBothCoordinatesOrSaysThatThePointerLeft(self):
        for arguments, told in (((), (0, 0, 0)), ((1,), (0, 0, 0)), ((3, 4), (1, 3, 4)),
                                ((-3, True), (1, -3, 1)),
                                ((2 ** 32 + 5, 2 ** 31), (1, 5, -2 ** 31))):
            self.assertIsNone(self.viewport.hover(*arguments))
            self.assertEqual([(VIEWPORT, "hover") + told], self.plugins.take(), arguments)

    def testHoverTakesTrueIntsOnly(self):
        for arguments in ((1, 2.0), (1.0, 2), ("1",), (None, None), (1, 2, 3)):
            self.assertRaises(TypeError, self.viewport.hover, *arguments)
        self.assertEqual([], self.plugins.take())

    @unittest.skipIf(IS_PYTHON_3, "Python 3 has no long")
    def testHoverTakesNoLong(self):
        self.assertRaises(TypeError, self.viewport.hover, eval("1L"), eval("2L"))


class StateTest(ViewportTest):
    def testDirtyIsAFlag(self):
        self.assertIs(False, self.viewport.isDirty())
        for value, isDirty in ((True, True), (0, False), (7, True)):
            self.assertIsNone(self.viewport.setDirty(value))
            self.assertIs(isDirty, self.viewport.isDirty())

    def testDrawingDoesNotClean(self):
        self.viewport.setDirty(True)
        self.viewport.draw()
        self.assertIs(True, self.viewport.isDirty())

    def testPanAndZoomAreFloats(self):
        for name, initial in (("HorizontalOffset", 0.0), ("VerticalOffset", 0.0), ("Zoom", 1.0)):
            get = getattr(self.viewport, "get" + name)
            self.assertEqual(initial, get())
            self.assertIsNone(getattr(self.viewport, "set" + name)(2.5))
            self.assertEqual(2.5, get())
            self.assertIs(float, type(get()))
            getattr(self.viewport, "set" + name)(0)
            self.assertEqual(0.0, get("ignored", 1))
            self.assertRaises(TypeError, getattr(self.viewport, "set" + name), "1")
            self.assertRaises(TypeError, getattr(self.viewport, "set" + name))

    def testValuesAreNarrowedToSinglePrecision(self):
        self.viewport.setZoom(0.1)
        self.assertNotEqual(0.1, self.viewport.getZoom())
        self.assertAlmostEqual(0.1, self.viewport.getZoom(), 7)

    def testPanAndZoomIsActiveWhenTold(self):
        self.assertIs(False, self.viewport.isPanAndZoomActive())
        self.viewport.setPanAndZoomActive(2)
        self.assertIs(True, self.viewport.isPanAndZoomActive(1, 2, 3))

    def testTheViewIsFrozenWhenTold(self):
        self.assertIs(False, self.viewport.isViewFrozen())
        self.assertIsNone(self.viewport.setViewFrozen(5))
        self.assertIs(True, self.viewport.isViewFrozen())

    def testDrawResizeFreezeAndThawReachThePlugin(self):
        self.assertIsNone(self.viewport.draw())
        self.assertIsNone(self.viewport.resize(640, 480))
        self.assertIsNone(self.viewport.freeze())
        self.assertIsNone(self.viewport.thaw())
        self.assertEqual([(VIEWPORT, "draw"), (VIEWPORT, "resize", 640, 480),
                          (VIEWPORT, "freeze"), (VIEWPORT, "thaw")], self.plugins.take())

    def testSetupReachesPluginAndLayers(self):
        self.viewport.addLayer(LAYER, "l")
        self.plugins.take()
        self.assertIsNone(self.viewport.setup(-12345))
        self.assertEqual([(VIEWPORT, "setup"), (LAYER, "setup")], self.plugins.take())
        self.assertRaises(TypeError, self.viewport.setup)
        self.assertRaises(TypeError, self.viewport.setup, "window")


class LayerListTest(ViewportTest):
    def names(self):
        return [self.viewport.getLayerName(index)
                for index in range(self.viewport.getNumberOfLayers())]

    def testAddAndInsert(self):
        for name in ("a", "b"):
            self.assertIs(ViewerAPI.ViewportLayer, type(self.viewport.addLayer(LAYER, name)))
        self.assertIs(ViewerAPI.ViewportLayer, type(self.viewport.insertLayer(LAYER, "c", 1)))
        self.viewport.insertLayer(LAYER, "d", 3)
        self.assertEqual(["a", "c", "b", "d"], self.names())

    def testInsertBeyondTheEndLoadsNothing(self):
        for index in (1, 100, -1):
            self.assertIsNone(self.viewport.insertLayer("Nobody", "a", index))
        self.assertEqual([], self.names())

    def testLookUps(self):
        self.viewport.addLayer(LAYER, "a")
        self.assertIs(ViewerAPI.ViewportLayer, type(self.viewport.getLayer("a")))
        self.assertIs(ViewerAPI.ViewportLayer, type(self.viewport.getLayerByIndex(0)))
        self.assertIsNone(self.viewport.getLayer("nope"))
        self.assertIsNone(self.viewport.getLayerByIndex(1))
        self.assertEqual("", self.viewport.getLayerName(1))
        self.assertIsNone(self.viewport.getLayerName(-1))

    def testRemovalTakesTheFirstOfAName(self):
        for name in ("a", "b", "a"):
            self.viewport.addLayer(LAYER, name)
        self.assertIsNone(self.viewport.removeLayer("a"))
        self.assertEqual(["b", "a"], self.names())
        self.viewport.removeLayerByIndex(1)
        self.viewport.removeLayerByIndex(9)
        self.viewport.removeLayer("nope")
        self.assertEqual(["b"], self.names())


class CameraListTest(ViewportTest):
    def activate(self, name="active"):
        camera = self.viewport.addCamera(CAMERA, name)
        self.viewport.setActiveCamera(camera)
        return camera

    def testLookUps(self):
        self.assertIsNone(self.viewport.getActiveCamera())
        self.assertIs(ViewerAPI.ViewportCamera, type(self.viewport.addCamera(CAMERA, "c")))
        self.assertIs(ViewerAPI.ViewportCamera, type(self.viewport.getCameraByName("c")))
        self.assertIs(ViewerAPI.ViewportCamera, type(self.viewport.getCameraByIndex(0)))
        self.assertIsNone(self.viewport.getCameraByName("nope"))
        self.assertEqual(1, self.viewport.getNumberOfCameras())
        self.assertEqual(("c", ""), (self.viewport.getCameraName(0),
                                     self.viewport.getCameraName(1)))

    def testTheActiveCameraIsTheOneThatWasSet(self):
        self.activate().setFOV(33.0)
        self.assertEqual(33.0, self.viewport.getActiveCamera().getFOV())
        self.assertEqual(33.0, self.viewport.getActiveCamera("ignored", 1).getFOV())

    def testACameraThatIsNotActiveIsRemoved(self):
        self.activate()
        self.viewport.addCamera(CAMERA, "other")
        self.viewport.addCamera(CAMERA, "third")
        self.assertIsNone(self.viewport.removeCamera("other"))
        self.assertIsNone(self.viewport.removeCameraByIndex(1))
        self.assertEqual((1, "active"), (self.viewport.getNumberOfCameras(),
                                         self.viewport.getCameraName(0)))

    def testTheActiveCameraIsNotRemoved(self):
        self.activate()
        self.plugins.take()
        self.assertError(ValueError, CANNOT_REMOVE, self.viewport.removeCamera, "active")
        self.assertError(ValueError, CANNOT_REMOVE, self.viewport.removeCameraByIndex, 0)
        self.assertEqual((1, []), (self.viewport.getNumberOfCameras(), self.plugins.take()))

    def testAnUnknownCameraCountsAsActiveWhileNoneIs(self):
        self.viewport.addCamera(CAMERA, "c")
        self.assertError(ValueError, CANNOT_REMOVE, self.viewport.removeCamera, "nope")
        self.assertError(ValueError, CANNOT_REMOVE, self.viewport.removeCameraByIndex, 9)
        self.viewport.removeCamera("c")
        self.assertEqual(0, self.viewport.getNumberOfCameras())

    def testAnUnknownCameraIsIgnoredWhileOneIsActive(self):
        self.activate()
        self.assertIsNone(self.viewport.removeCamera("nope"))
        self.assertIsNone(self.viewport.removeCameraByIndex(2))

    def testTheIndexJustPastTheEndIsAnError(self):
        self.activate()
        self.assertError(RuntimeError, "invalid vector<T> subscript",
                         self.viewport.removeCameraByIndex, 1)

    def testANewCameraTakesTheActiveRoleOfItsNamesake(self):
        self.activate("c")
        self.plugins.take()
        self.viewport.addCamera(CAMERA, "c").setFOV(12.0)
        self.assertEqual(12.0, self.viewport.getActiveCamera().getFOV())
        self.assertEqual(1, self.viewport.getNumberOfCameras())
        self.assertEqual([(CAMERA, "create"), (CAMERA, "destroy"), (CAMERA, "setDirty", 1)],
                         self.plugins.take())

    def testACameraOfAnotherViewportMayBeActive(self):
        other = self.delegate.addViewport(VIEWPORT, "other")
        camera = other.addCamera(CAMERA, "c")
        self.viewport.setActiveCamera(camera)
        camera.setFOV(21.0)
        self.assertEqual(21.0, self.viewport.getActiveCamera().getFOV())


if __name__ == "__main__":
    unittest.main()
