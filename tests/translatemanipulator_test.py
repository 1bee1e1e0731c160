"""The "TranslateManipulator" under the mouse: events go in at a viewport, and what they did is read
back from the scene that was cooked again."""
from __future__ import division

import unittest

import ostrel
from gizmos import (PARENTS, PATH, TOLERANCE, GestureTest, ManipulatorTest, add, alongLine, onPlane,
                    subtract, transform, worldAxis)
from ostrel import events
from PyVlAttribute import FloatAttribute, StringAttribute


class TranslateGestureTest(GestureTest):
    """What is grasped stays under the pointer: the thing goes as far as the place goes that the
    mouse points at, on the handle's axis or plane through the thing."""

    tool = "TranslateManipulator"

    def checkGesture(self, message, grasped, pointAt):
        """Drags what is seen at a point; `pointAt(pixel)` is where the mouse points then."""
        before = self.position()
        begin = self.pixelAt(grasped)
        end = begin[0] + 14, begin[1] - 11
        expected = add(before, subtract(pointAt(end), pointAt(begin)))
        self.watchedDrag(message, begin, end)
        self.assertAlmost(self.position(), expected, message)
        self.assertTrue(max(abs(x) for x in subtract(expected, before)) > 0.01, message)

    def testAxes(self):
        for situation in self.eachSituation():
            for axis in range(3):
                self.view.draw()
                origin, direction = self.position(), worldAxis(axis)
                self.checkGesture(
                    "%s, axis %d" % (situation, axis),
                    add(origin, direction, 0.5 * self.gizmoLength(origin)),
                    lambda pixel: add(origin, direction,
                                      alongLine(self.rayAt(pixel), origin, direction)))

    def testPlanes(self):
        for situation in self.eachSituation():
            for axis in range(3):
                self.view.draw()
                origin, normal = self.position(), worldAxis(axis)
                corner = [0.4 * self.gizmoLength(origin) * (1 - value) for value in normal]
                self.checkGesture("%s, plane upright to axis %d" % (situation, axis),
                                  add(origin, corner),
                                  lambda pixel: onPlane(self.rayAt(pixel), origin, normal))

    def testCentre(self):
        for situation in self.eachSituation():
            origin = self.position()
            self.checkGesture(situation, origin,
                              lambda pixel: onPlane(self.rayAt(pixel), origin, self.cameraAxis(2)))


class TranslateTest(ManipulatorTest):
    def dragAxis(self, axis, by, **more):
        x, y = self.placeOn(axis)
        middle, end = (x + by[0] // 2, y + by[1] // 2), (x + by[0], y + by[1])
        self.drag((x, y), middle, end, **more)
        return (x, y), end

    def testTheComponentThatIsThereIsTheOneThatIsSet(self):
        self.show()
        self.activate()
        before = self.position()
        self.dragAxis(0, (20, 0))
        self.settle()
        value = self.component("placed.translate")
        self.assertAlmost(value, self.position(), "translate")
        self.assertTrue(value[0] > before[0] + 0.05)
        attributes = self.session.delegate.getAttributes(PATH)
        self.assertEqual(len(attributes.getChildByName("xform")), 1)

    def testALocationWithoutATranslateGetsOneWithinAllThatIsThere(self):
        parent = dict(PARENTS)["turned, then unevenly scaled"]
        self.show(parent, thing=(("local.scale", [2.0, 1.0, 1.0]),))
        self.activate()
        before = self.position()
        begin, end = self.dragAxis(1, (0, -20))
        self.settle()
        way = [alongLine(self.rayAt(pixel), before, worldAxis(1)) for pixel in (begin, end)]
        self.assertAlmost(self.position(), add(before, worldAxis(1), way[1] - way[0]), "moved")
        names = [name for name, _ in
                 self.session.delegate.getAttributes(PATH).getChildByName("xform")]
        self.assertEqual(names, ["local", "interactive"])

    def testValuesShowWhileTheDragGoesOnAndOneStepTakesItBack(self):
        self.show()
        self.activate()
        before = self.position()
        x, y = self.placeOn(0)
        self.press(x, y)
        places = []
        for by in (5, 10, 15):
            self.move(x + by, y)
            self.session.delegate.processLocationEvents()
            places.append(self.position()[0])
            self.assertFalse(self.session.canUndo())
        self.assertEqual(places, sorted(places))
        self.assertTrue(before[0] < places[0])
        self.release(x + 15, y)
        self.settle()
        self.assertAlmost(self.position(), [places[-1], before[1], before[2]], "released")
        self.assertTrue(self.session.undo())
        self.assertFalse(self.session.canUndo())
        self.settle()
        self.assertAlmost(self.position(), before, "undone")

    def testEscapeBringsBackWhatWas(self):
        self.show()
        self.activate()
        before = self.position()
        x, y = self.placeOn(0)
        self.press(x, y)
        self.move(x + 30, y)
        self.assertTrue(self.viewport.event(events.keyPress("Escape")))
        self.settle()
        self.assertAlmost(self.position(), before, "cancelled")
        self.assertFalse(self.session.delegate.isFrozenDueToManipulation())
        # The button is still held, and means nothing any more.
        self.assertTrue(self.move(x + 60, y))
        self.assertTrue(self.release(x + 60, y))
        self.settle()
        self.assertAlmost(self.position(), before, "released")
        self.assertFalse(self.session.canUndo(), "nothing happened")

    def testEscapeLeavesNoGroupThatTheDragMade(self):
        self.show(thing=(("local.scale", [2.0, 1.0, 1.0]),))
        self.activate()
        before = self.session.delegate.getAttributes(PATH)
        x, y = self.placeOn(0)
        self.press(x, y)
        self.move(x + 30, y)
        self.assertNotEqual(self.session.delegate.getAttributes(PATH), before)
        self.viewport.event(events.keyPress("Escape"))
        self.settle()
        self.assertEqual(self.session.delegate.getAttributes(PATH), before)
        self.assertFalse(self.session.canUndo(), "nothing happened")

    def testAPressWithoutAMoveChangesNothing(self):
        for component in ("translate", "scale"):
            self.show(thing=(("local." + component, [2.0, 1.0, 1.0]),))
            self.activate()
            before = self.session.delegate.getAttributes(PATH)
            x, y = self.placeOn(0)
            self.assertTrue(self.press(x, y))
            self.assertTrue(self.release(x, y))
            self.settle()
            self.assertEqual(self.session.delegate.getAttributes(PATH), before)
            self.assertFalse(self.session.canUndo())
            self.session.close()

    def testAManipulatorThatEndsDuringItsDragBringsBackWhatWas(self):
        self.show()
        self.activate()
        before = self.position()
        x, y = self.placeOn(0)
        self.press(x, y)
        self.move(x + 30, y)
        self.viewport.deactivateAllManipulators(True)
        self.settle()
        self.assertAlmost(self.position(), before, "ended")
        self.assertFalse(self.session.delegate.isFrozenDueToManipulation())
        self.assertTrue(self.release(x + 30, y), "the mouse was the layer's until then")

    def testWithControlItGoesInSteps(self):
        self.show()
        self.activate().setOptionByName("snapStep", FloatAttribute(0.25))
        before = self.position()
        self.dragAxis(0, (33, 0), modifiers=["control"])
        self.settle()
        steps = (self.position()[0] - before[0]) / 0.25
        self.assertTrue(round(steps) >= 1)
        self.assertTrue(abs(steps - round(steps)) < 1e-6, steps)

    def testWhatIsNoStepLeavesTheUsualOne(self):
        for step in (float("inf"), float("nan"), -1.0):
            self.show()
            self.activate().setOptionByName("snapStep", FloatAttribute(step))
            self.assertEqual(0.0, self.manipulator.getOptionByName("snapStep").getValue())
            before = self.position()
            self.dragAxis(0, (60, 0), modifiers=["control"])
            self.settle()
            steps = (self.position()[0] - before[0]) / 0.1
            self.assertTrue(round(steps) >= 1, steps)
            self.assertTrue(abs(steps - round(steps)) < 1e-6, steps)
            self.session.close()

    def testAValueThatIsNotFiniteIsNotShown(self):
        # A unit of the world is 1e306 of the parent's.
        self.show((("a.scale", [1e-306, 1.0, 1.0]),), (("placed.translate", [0.0, 0.5, 0.0]),),
                  "OrthographicCamera")
        self.activate()
        x, y = self.placeOn(0)
        self.assertTrue(self.press(x, y))
        self.move(x + 10, y)
        shown = self.component("placed.translate")
        self.assertTrue(shown[0] > 1e304, shown)
        self.move(x - 100000, y)
        self.assertEqual(shown, self.component("placed.translate"))
        self.assertTrue(self.release(x - 100000, y))
        self.settle()
        self.assertEqual(shown, self.component("placed.translate"))

    def testWhatIsBehindAnOrthographicCamerasPlaneIsGrasped(self):
        self.show(camera="OrthographicCamera")
        matrix = list(self.view.camera.getViewMatrix())
        matrix[14] += 100.0
        self.view.camera.setViewMatrix(matrix)
        self.activate()
        self.assertTrue(transform(self.position(), list(self.view.camera.getViewMatrix()))[2] > 50)
        before = self.position()
        begin, end = self.dragAxis(0, (20, 0))
        self.settle()
        way = [alongLine(self.rayAt(pixel), before, worldAxis(0)) for pixel in (begin, end)]
        self.assertAlmost(self.position(), add(before, worldAxis(0), way[1] - way[0]), "moved")

    def testTheAxesStayWhileADragGoesOn(self):
        self.show(thing=(("placed.translate", [0.0, 0.0, 0.0]),
                         ("placed.rotateZ", [30.0, 0.0, 0.0, 1.0])))
        self.activate()
        x, y = self.placeOn(0)
        self.assertTrue(self.press(x, y))
        self.move(x + 20, y)
        before = self.view.readPixels()
        self.manipulator.setOptionByName("axes", StringAttribute("local"))
        self.assertTrue(before == self.view.readPixels(), "the gizmo turns")
        self.release(x + 20, y)
        self.viewport.hover()
        self.settle()
        released = self.view.readPixels()
        self.manipulator.setOptionByName("axes", StringAttribute("world"))
        self.assertTrue(released != self.view.readPixels(), "turned when the drag was over")

    def testTheReadoutIsTheWaySoFar(self):
        self.show()
        self.activate()
        self.assertTrue(self.readout() is None)
        before = self.position()
        x, y = self.placeOn(1)
        self.press(x, y)
        self.move(x, y - 20)
        readout = self.readout()
        self.session.delegate.processLocationEvents()
        self.assertAlmost(readout, [b - a for a, b in zip(before, self.position())], "readout")
        self.assertTrue(readout[1] > 0.05)
        self.release(x, y - 20)
        self.assertTrue(self.readout() is None)

    def testLocalAxesAreTheLocationsOwn(self):
        turned = (("placed.translate", [0.0, 0.0, 0.0]), ("placed.rotateZ", [90.0, 0.0, 0.0, 1.0]))
        self.show(thing=turned)
        self.activate().setOptionByName("axes", StringAttribute("local"))
        self.view.draw()
        before = self.position()
        # Its x axis points up.
        x, y = self.placeOn(1)
        self.press(x, y)
        self.move(x, y - 25)
        readout = self.readout()
        self.release(x, y - 25)
        self.settle()
        self.assertTrue(self.position()[1] > before[1] + 0.1)
        self.assertAlmost(readout, [self.position()[1] - before[1], 0, 0], "readout")

    def testALocationBelowAnotherGoesAlongOnce(self):
        self.show()
        self.activate(["/root/parent", PATH])
        before = self.position(), self.position("/root/parent")
        middle = [(a + b) / 2 for a, b in zip(*before)]
        middle[1] += 0.5 * self.gizmoLength(middle)
        x, y = [int(value) for value in self.pixelOf(middle)]
        self.assertTrue(self.press(x, y))
        self.release(x, y - 20)
        self.settle()
        ways = [after[1] - then[1] for then, after in zip(
            before, (self.position(), self.position("/root/parent")))]
        self.assertTrue(ways[0] > 0.05)
        self.assertTrue(abs(ways[0] - ways[1]) < TOLERANCE, ways)

    def testAPressBesideTheHandlesIsTheViewports(self):
        self.show()
        self.activate()
        view = self.view.camera.getViewMatrix()
        before = self.position()
        self.press(5, 5)
        self.move(60, 30)
        self.release(60, 30)
        self.settle()
        self.assertNotEqual(self.view.camera.getViewMatrix(), view)
        self.assertAlmost(self.position(), before, "orbited")

    def testWhatIsNotEditableIsShownAndNotDragged(self):
        self.show()
        self.session.lockedNodes.add(ostrel.Session.NODE)
        self.activate()
        before = self.position()
        x, y = self.placeOn(0)
        self.press(x, y)
        self.move(x + 30, y)
        self.release(x + 30, y)
        self.settle()
        self.assertAlmost(self.position(), before, "locked")
        self.assertFalse(self.session.canUndo())



if __name__ == "__main__":
    unittest.main()
