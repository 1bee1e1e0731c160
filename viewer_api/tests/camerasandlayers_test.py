"""The types ViewportCamera, ViewportLayer and ViewerDelegateComponent."""

import unittest

from scripted import CAMERA, LAYER, ScriptedTest, ViewerAPI, errorOf
from PyVlAttribute import GroupAttribute, IntAttribute

MATRIX = tuple(float(value) for value in range(16))


class CameraTest(ScriptedTest):
    def setUp(self):
        ScriptedTest.setUp(self)
        self.viewport = self.createViewport()
        self.camera = self.viewport.addCamera(CAMERA, "c")
        self.plugins.take()

    def tearDown(self):
        self.viewport = self.camera = None
        ScriptedTest.tearDown(self)

    def testMatricesComeBackAsTheyWereSet(self):
        for name in ("ViewMatrix", "ProjectionMatrix"):
            get = getattr(self.camera, "get" + name)
            self.assertEqual(tuple(float(i % 5 == 0) for i in range(16)), get())
            for matrix in (MATRIX, list(MATRIX), range(16)):
                self.assertIsNone(getattr(self.camera, "set" + name)(matrix))
                self.assertEqual(MATRIX, get())
                self.assertEqual({float}, set(type(value) for value in get()))

    def testAMatrixIsOneSequenceOf16Numbers(self):
        for name in ("setViewMatrix", "setProjectionMatrix"):
            for arguments in (MATRIX, (MATRIX[:15],), (MATRIX + (1.0,),), ((),), (1.0,), (),
                              (["x"] * 16,), (MATRIX, MATRIX)):
                self.assertRaises(TypeError, getattr(self.camera, name), *arguments)

    def testAProjectionThatIsSetUnderPanAndZoomIsReadBack(self):
        self.viewport.setActiveCamera(self.camera)
        self.viewport.setZoom(2.0)
        self.viewport.setPanAndZoomActive(True)
        self.camera.setProjectionMatrix(MATRIX)
        self.assertEqual(MATRIX, self.camera.getProjectionMatrix())
        self.viewport.setPanAndZoomActive(False)
        self.assertEqual(tuple(value / 2.0 if index % 4 < 2 else value
                               for index, value in enumerate(MATRIX)),
                         self.camera.getProjectionMatrix())

    def testNumbersComeBackAndAreDirty(self):
        for name, initial, values in (
                ("CenterOfInterest", 20.0, (3.5,)), ("FOV", 45.0, (60.0,)),
                ("OrthographicWidth", 30.0, (7.0,)), ("NearFar", (0.1, 100000.0), (1.0, 5.0)),
                ("ScreenWindow", (-1.0, 1.0, -1.0, 1.0), (-2.0, 3.0, -4.0, 5.0))):
            get = getattr(self.camera, "get" + name)
            self.assertEqual(initial, get())
            self.assertIsNone(getattr(self.camera, "set" + name)(*values))
            self.assertEqual(values if len(values) > 1 else values[0], get(), name)
            self.assertEqual([(CAMERA, "setDirty", 1)], self.plugins.take(), name)
            self.assertRaises(TypeError, getattr(self.camera, "set" + name), *(values + (1.0,)))
            self.assertRaises(TypeError, getattr(self.camera, "set" + name),
                              *(("1",) * len(values)))

    def testAnOrthographicWidthOfZeroIsIgnored(self):
        self.camera.setOrthographicWidth(0)
        self.assertEqual((30.0, []), (self.camera.getOrthographicWidth(), self.plugins.take()))

    def testNearAndFarAreCorrected(self):
        for values, corrected in (((0.0, 0.0), (0.001, 0.002)), ((10.0, 5.0), (10.0, 10.001))):
            self.camera.setNearFar(*values)
            self.assertEqual(corrected, self.camera.getNearFar())

    def testALocationPathIsNoneUntilItIsSet(self):
        self.assertIs(False, self.camera.hasLocationPath())
        self.assertIsNone(self.camera.getLocationPath())
        self.assertIsNone(self.camera.setLocationPath("/root/cam"))
        self.assertEqual((True, "/root/cam"),
                         (self.camera.hasLocationPath(), self.camera.getLocationPath()))
        self.camera.setLocationPath("")
        self.assertIsNone(self.camera.getLocationPath())
        self.assertRaises(TypeError, self.camera.setLocationPath, None)

    def testInteractionIsDisabledWhenTold(self):
        self.assertIs(False, self.camera.isInteractionDisabled())
        self.assertIsNone(self.camera.disableInteraction(3))
        self.assertIs(True, self.camera.isInteractionDisabled())

    def testVectorsAreTuplesOfThree(self):
        self.camera.setViewMatrix((1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, -1, -2, -3, 1))
        self.assertEqual((1.0, 2.0, 3.0), self.camera.getOrigin())
        self.assertEqual((0.0, 0.0, -1.0), self.camera.getDirection())
        self.assertEqual((0.0, 1.0, 0.0), self.camera.getUp())
        self.assertEqual((-1.0, 0.0, 0.0), self.camera.getLeft())

    def testSetDirtyPassesItsBits(self):
        for bits in (ViewerAPI.CameraDirtyBits_Clean, ViewerAPI.CameraDirtyBits_AllDirty, 77):
            self.assertIsNone(self.camera.setDirty(bits))
            self.assertEqual([(CAMERA, "setDirty", bits)], self.plugins.take())

    def testTypeDimensionsAndAttributesAreThePlugins(self):
        group = GroupAttribute(("fov", IntAttribute(3)))
        self.plugins.answers[CAMERA, "getCameraTypeID"] = 2
        self.plugins.answers[CAMERA, "asAttribute"] = group
        self.assertEqual(ViewerAPI.kVlViewportCameraTypeOrthographic,
                         self.camera.getCameraTypeID())
        self.assertIsNone(self.camera.setViewportDimensions(640, 480))
        self.assertEqual(group, self.camera.asAttribute())
        self.assertEqual([(CAMERA, "getCameraTypeID"),
                          (CAMERA, "setViewportDimensions", 640, 480), (CAMERA, "asAttribute")],
                         self.plugins.take())

    def testSetupPassesWhatItGetsAndNullForTheRest(self):
        group = GroupAttribute(("fov", IntAttribute(3)))
        for value, passed in ((group, group), (IntAttribute(1), IntAttribute(1)), (None, None),
                              (5, None)):
            self.assertIsNone(self.camera.setup(value))
            self.assertEqual([(CAMERA, "setup", passed)], self.plugins.take())


class LayerTest(ScriptedTest):
    def setUp(self):
        ScriptedTest.setUp(self)
        self.layer = self.createViewport().addLayer(LAYER, "l")
        self.plugins.take()

    def tearDown(self):
        self.layer = None
        ScriptedTest.tearDown(self)

    def testAnEventReachesThePluginAlsoBeforeSetup(self):
        event = GroupAttribute(("type", IntAttribute(1)))
        self.assertIs(False, self.layer.event(event))
        self.plugins.answers[LAYER, "event"] = 5
        self.assertIs(True, self.layer.event(event))
        self.assertIs(True, self.layer.event(IntAttribute(1)))
        self.assertEqual([(LAYER, "event", event)] * 2 + [(LAYER, "event", IntAttribute(1))],
                         self.plugins.take())

    def testWhatIsNoAttributeIsFalseWithoutAnError(self):
        for value in (None, 1, "x"):
            self.assertIsNone(errorOf(self.layer.event, value))
            self.assertIs(False, self.layer.event(value))
        self.assertEqual([], self.plugins.take())

    def testWrongArgumentsRaise(self):
        self.assertRaises(TypeError, self.layer.event)
        self.assertRaises(TypeError, self.layer.event, None, None)

    def testSetupOnceDrawFreezeAndThawReachThePlugin(self):
        for method in ("setup", "setup", "draw", "freeze", "thaw"):
            self.assertIsNone(getattr(self.layer, method)())
        self.assertEqual([(LAYER, "setup"), (LAYER, "draw"), (LAYER, "freeze"), (LAYER, "thaw")],
                         self.plugins.take())


if __name__ == "__main__":
    unittest.main()
