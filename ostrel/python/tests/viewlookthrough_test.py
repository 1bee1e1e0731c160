"""Views that look through cameras and lights of a real scene."""
import unittest

import ostrel
from ostrel import events
from PyVlAttribute import DoubleAttribute, FloatAttribute, GroupAttribute, StringAttribute


def location(locationType, position, *attributes):
    return GroupAttribute(("type", StringAttribute(locationType)),
                          ("xform.placed.translate", DoubleAttribute(position, 3)), *attributes)


SCENE = GroupAttribute(
    ("c.stand.a", location("group", [100, 0, 0])),
    ("c.stand.c.wide.a", location("camera", [0, 2, 10],
                                  ("geometry.fov", DoubleAttribute(70.0)),
                                  ("geometry.near", DoubleAttribute(0.5)),
                                  ("geometry.far", DoubleAttribute(50.0)))),
    ("c.stand.c.flat.a", location("camera", [0, 0, 5],
                                  ("geometry.projection", StringAttribute("orthographic")),
                                  ("geometry.orthographicWidth", DoubleAttribute(12.0)))),
    ("c.stand.c.spot.a", location("light", [1, 1, 1], ("light.kind", StringAttribute("spot")),
                                  ("light.coneAngle", FloatAttribute(25.0)))),
    ("c.stand.c.bulb.a", location("light", [1, 1, 1], ("light.kind", StringAttribute("point")))),
    ("c.stand.c.sun.a", location("light", [0, 9, 0],
                                 ("light.kind", StringAttribute("directional")))))
WIDE, FLAT = "/root/stand/wide", "/root/stand/flat"


class ViewLookThroughTest(unittest.TestCase):
    def setUp(self):
        self.session = ostrel.Session()
        self.addCleanup(self.session.close)
        self.session.createOp("Scene.Literal", GroupAttribute(("staticScene", SCENE)))
        self.view = self.session.addOffscreenView(64, 48)
        self.pump()
        self.view.frame()

    def pump(self):
        self.assertTrue(self.session.pump(timeout=60))

    def look(self, path):
        self.view.lookThrough(path)
        self.pump()
        return self.view.viewport.getActiveCamera()

    def assertAt(self, camera, *origin):
        for value, expected in zip(camera.getOrigin(), origin):
            self.assertAlmostEqual(value, expected)
        for value, expected in zip(camera.getDirection(), (0, 0, -1)):
            self.assertAlmostEqual(value, expected)

    def testCameraIsSeenThroughAsItStands(self):
        camera = self.look(WIDE)
        self.assertEqual(self.view.getLookThrough(), WIDE)
        self.assertEqual(camera.getLocationPath(), WIDE)
        self.assertAt(camera, 100, 2, 10)
        self.assertEqual(camera.getFOV(), 70.0)
        self.assertEqual(camera.getNearFar(), (0.5, 50.0))

    def testProjectionOfTheLocationChoosesTheCamera(self):
        camera = self.look(FLAT)
        self.assertEqual(camera.getCameraTypeID(), 2)
        self.assertEqual(camera.getOrthographicWidth(), 12.0)
        self.assertEqual(self.look(WIDE).getCameraTypeID(), 1)

    def testLightsAreSeenThroughByTheirCones(self):
        for name, fov in (("spot", 25.0), ("bulb", 60.0)):
            camera = self.look("/root/stand/" + name)
            self.assertEqual((camera.getCameraTypeID(), camera.getFOV()), (1, fov), name)
            self.assertAt(camera, 101, 1, 1)
        self.assertEqual(self.look("/root/stand/sun").getCameraTypeID(), 2)

    def testChangesOfTheLocationAndOfThoseAboveItAreFollowed(self):
        self.look(WIDE)
        self.session.setAttribute(WIDE, "geometry.fov", DoubleAttribute(20.0))
        self.pump()
        self.assertEqual(self.view.viewport.getActiveCamera().getFOV(), 20.0)
        self.view.viewport.setDirty(False)
        self.session.setAttribute("/root/stand", "xform.placed.translate",
                                  DoubleAttribute([7, 0, 0], 3))
        self.pump()
        self.assertAt(self.view.viewport.getActiveCamera(), 7, 2, 10)
        self.assertTrue(self.view.viewport.isDirty())

    def testProjectionMayChangeMeanwhile(self):
        self.look(WIDE)
        self.session.setAttribute(WIDE, "geometry.projection", StringAttribute("orthographic"))
        self.pump()
        self.assertEqual(self.view.viewport.getActiveCamera().getCameraTypeID(), 2)

    def testUserCanNotMoveACameraOfTheScene(self):
        camera = self.look(WIDE)
        self.assertTrue(camera.isInteractionDisabled())
        matrix = camera.getViewMatrix()
        self.view.viewport.event(events.wheel(10, 10, 2.0))
        self.view.viewport.event(events.keyPress("f"))
        self.assertEqual(camera.getViewMatrix(), matrix)

    def testEndingItLeavesTheViewsOwnCameraWhereItWas(self):
        matrix = self.view.camera.getViewMatrix()
        self.look(WIDE)
        camera = self.look(None)
        self.assertEqual(self.view.getLookThrough(), None)
        self.assertEqual(camera.getViewMatrix(), matrix)
        self.assertEqual(camera.getLocationPath(), None)
        self.assertEqual(self.view.viewport.getNumberOfCameras(), 1)
        self.assertFalse(camera.isInteractionDisabled())

    def testWhatNobodyOpenedCanBeSeenThrough(self):
        self.session.delegate.closeLocations(["/root"])
        self.pump()
        self.assertAt(self.look(WIDE), 100, 2, 10)

    def testMissingLocationShowsFreelyUntilItIsThere(self):
        self.look("/root/late")
        self.assertEqual(self.view.getLookThrough(), None)
        op = self.session.createOp("Scene.Literal", GroupAttribute(
            ("staticScene.c.late.a", location("camera", [3, 0, 0]))))
        self.pump()
        self.assertEqual(self.view.getLookThrough(), "/root/late")
        self.assertAt(self.view.viewport.getActiveCamera(), 3, 0, 0)
        self.session.removeOp(op)
        self.pump()
        self.assertEqual(self.view.getLookThrough(), None)

    def testPathWithoutASlashRaisesAndEndsWhatWas(self):
        self.look(WIDE)
        self.assertRaises(RuntimeError, self.view.lookThrough, "root/stand/wide")
        self.pump()
        self.assertEqual(self.view.getLookThrough(), None)

    def testEachViewLooksThroughItsOwn(self):
        other = self.session.addOffscreenView(64, 48, "other")
        other.lookThrough(FLAT)
        self.look(WIDE)
        self.assertEqual((self.view.getLookThrough(), other.getLookThrough()), (WIDE, FLAT))

    def testViewThatIsGoneIsToldNothing(self):
        view = self.session.addOffscreenView(64, 48, "gone")
        view.lookThrough(WIDE)
        del view
        self.pump()

    def testPictureThroughALocationIsAnother(self):
        before = self.view.readPixels()
        self.look(WIDE)
        self.assertNotEqual(self.view.readPixels(), before)
        self.look(None)
        self.assertEqual(self.view.readPixels(), before)


if __name__ == "__main__":
    unittest.main()
