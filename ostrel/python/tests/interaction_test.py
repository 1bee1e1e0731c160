"""What users do in a view of a real scene: the selection, the camera, scenes of all sizes."""
import unittest

import ostrel
from ostrel import events
from PyVlAttribute import (DoubleAttribute, FloatAttribute, GroupAttribute, IntAttribute,
                           StringAttribute)

WIDTH, HEIGHT = 160, 120


def square(x, colour):
    """A polymesh of edge 2 around (x, 0, 0) that faces +z."""
    return GroupAttribute(
        ("type", StringAttribute("polymesh")),
        ("bound", DoubleAttribute([-1, 1, -1, 1, 0, 0])),
        ("xform.placed.translate", DoubleAttribute([x, 0, 0], 3)),
        ("geometry.point.P", FloatAttribute([-1, -1, 0, 1, -1, 0, 1, 1, 0, -1, 1, 0], 3)),
        ("geometry.poly.vertexList", IntAttribute([0, 1, 2, 3])),
        ("geometry.poly.startIndex", IntAttribute([0, 4])),
        ("material.baseColor", FloatAttribute(colour, 3)))


class SceneTest(unittest.TestCase):
    """Two squares side by side, the left one red, the right one green, seen from the front."""

    def setUp(self):
        self.session = ostrel.Session()
        self.addCleanup(self.session.close)
        self.session.createOp("Scene.Literal", GroupAttribute(("staticScene", GroupAttribute(
            ("c.squares.a.type", StringAttribute("group")),
            ("c.squares.c.left.a", square(-1.5, [0.8, 0.0, 0.0])),
            ("c.squares.c.right.a", square(1.5, [0.0, 0.8, 0.0]))))))
        self.view = self.session.addOffscreenView(WIDTH, HEIGHT)
        self.pump()
        self.view.orbit.yaw = self.view.orbit.pitch = 0
        self.view.frame()

    def pump(self):
        self.assertTrue(self.session.pump(timeout=60))

    def send(self, event):
        return self.view.viewport.event(event)

    def click(self, x, y, *modifiers):
        self.assertTrue(self.send(events.mousePress(x, y, "left", modifiers=modifiers)))
        self.assertTrue(self.send(events.mouseRelease(x, y, "left", modifiers=modifiers)))

    def drag(self, button, start, end, *modifiers):
        self.send(events.mousePress(start[0], start[1], button, modifiers=modifiers))
        self.send(events.mouseMove(end[0], end[1], [button], modifiers))
        self.send(events.mouseRelease(end[0], end[1], button, modifiers=modifiers))

    def pixel(self, x, y):
        width, _, pixels = self.view.readPixels()
        return tuple(bytearray(pixels[4 * (y * width + x):][:3]))

    def assertRed(self, x, y):
        red, green, _ = self.pixel(x, y)
        self.assertTrue(red > 2 * green, (red, green))


class SelectionTest(SceneTest):
    LEFT, RIGHT = (WIDTH // 4, HEIGHT // 2), (3 * WIDTH // 4, HEIGHT // 2)

    def selection(self):
        return [path.split("/")[-1] for path in self.session.getSelection()]

    def testClicksSelect(self):
        self.click(*self.LEFT)
        self.assertEqual(self.session.getSelection(), ["/root/squares/left"])
        self.click(*self.RIGHT)
        self.assertEqual(self.selection(), ["right"])
        self.click(*(self.LEFT + ("shift",)))
        self.assertEqual(self.selection(), ["right", "left"])
        self.click(*(self.RIGHT + ("control",)))
        self.assertEqual(self.selection(), ["left"])
        self.click(WIDTH // 2, 2)
        self.assertEqual(self.selection(), [])

    def testRectangleSelectsWhatIsInIt(self):
        self.drag("left", (2, 2), (WIDTH - 2, HEIGHT - 2), "control")
        self.assertEqual(sorted(self.selection()), ["left", "right"])

    def testSelectionIsSeen(self):
        before = self.view.readPixels()
        self.session.select(["/root/squares/left"])
        self.assertTrue(self.view.viewport.isDirty())
        self.assertNotEqual(self.view.readPixels(), before)
        self.session.select([])
        self.assertEqual(self.view.readPixels(), before)

    def testScriptsSelectWhatNeedNotExist(self):
        self.session.select(("/root/squares", "/root/missing"))
        self.assertEqual(self.session.getSelection(), ["/root/squares", "/root/missing"])
        self.session.getSelection().append("/root")
        self.assertEqual(len(self.session.getSelection()), 2)

    def testWhatIsNoListOfPathsIsRefusedAndChangesNothing(self):
        self.session.select(["/root/squares"])
        for bad in ([5], [None], 5):
            self.assertRaises(TypeError, self.session.select, bad)
        self.assertEqual(self.session.getSelection(), ["/root/squares"])


class CameraTest(SceneTest):
    def testWheelOverASquareBringsItNearerUnderTheCursor(self):
        self.assertRed(WIDTH // 4, HEIGHT // 2)
        for _ in range(30):
            self.send(events.wheel(WIDTH // 4, HEIGHT // 2, 1.0))
        for x, y in ((2, 2), (WIDTH - 3, HEIGHT - 3), (WIDTH // 4, HEIGHT // 2)):
            self.assertRed(x, y)

    def testFrameAfterOrbitingKeepsTheUsersDirection(self):
        self.assertFalse(self.view.isMovedByUser())
        self.drag("left", (80, 60), (100, 50))
        self.assertTrue(self.view.isMovedByUser())
        direction = self.view.camera.getDirection()
        self.assertNotAlmostEqual(direction[0], 0.0, 2)
        self.view.frame()
        for value, expected in zip(self.view.camera.getDirection(), direction):
            self.assertAlmostEqual(value, expected)
        self.assertFalse(self.view.isMovedByUser())

    def testFramingByKeyAgreesWithFramingByScript(self):
        # Both plug-ins: what a script framed first, the user finds again.
        for plugin in ("PerspectiveCamera", "OrthographicCamera"):
            view = self.session.addOffscreenView(WIDTH, HEIGHT, plugin, plugin)
            view.frame()
            wanted = view.camera.getOrthographicWidth(), view.camera.getCenterOfInterest()
            place = view.camera.getViewMatrix()
            view.viewport.event(events.wheel(10, 10, 3.0))
            self.assertTrue(view.isMovedByUser())
            view.viewport.event(events.keyPress("f"))
            if plugin == "PerspectiveCamera":
                self.assertAlmostEqual(view.camera.getCenterOfInterest(), wanted[1])
                for value, expected in zip(view.camera.getViewMatrix(), place):
                    self.assertAlmostEqual(value, expected)
            # The user's fits a flat picture more tightly than a script's, which leaves the room
            # that a perspective would need.
            self.assertTrue(view.camera.getOrthographicWidth() <= wanted[0] * 1.0001)

    def testKeyFramesTheSelection(self):
        self.session.select(["/root/squares/left"])
        self.assertTrue(self.send(events.keyPress("f")))
        self.assertRed(WIDTH // 2, HEIGHT // 2)

    def testSizeOfTheWindowLeavesTheUsersCameraAlone(self):
        self.drag("left", (80, 60), (100, 50))
        matrix = self.view.camera.getViewMatrix()
        self.view.resize(WIDTH * 2, HEIGHT)
        self.assertEqual(self.view.camera.getViewMatrix(), matrix)

    def testDisabledCameraStaysWhereItIs(self):
        self.view.camera.disableInteraction(True)
        matrix = self.view.camera.getViewMatrix()
        self.drag("left", (80, 60), (100, 50))
        self.send(events.wheel(10, 10, 3.0))
        self.send(events.keyPress("f"))
        self.assertEqual(self.view.camera.getViewMatrix(), matrix)

    def testGroupsThatAreNoEventsAreNotTaken(self):
        for group in (GroupAttribute(), GroupAttribute(("type", StringAttribute("gesture"))),
                      GroupAttribute(("type", IntAttribute(1))),
                      GroupAttribute(("type", StringAttribute("wheel")))):
            self.assertFalse(self.send(group))

    def testScenesOfAllSizesGiveOnePicture(self):
        wanted = None
        for scale in (1.0, 1e-4, 1e-2, 1e2, 1e4, 1e7):
            self.session.setAttribute("/root/squares", "xform.sized.scale",
                                      DoubleAttribute([scale] * 3, 3))
            self.pump()
            self.view.orbit.yaw, self.view.orbit.pitch = 35, 22
            self.view.frame()
            pixels = bytearray(self.view.readPixels()[2])
            wanted = wanted or pixels
            different = sum(1 for a, b in zip(pixels, wanted) if abs(a - b) > 24)
            self.assertTrue(different < len(pixels) // 1000, "%d at %g" % (different, scale))


if __name__ == "__main__":
    unittest.main()
