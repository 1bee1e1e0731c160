"""The "ScaleManipulator" under the mouse: events go in at a viewport, and what they did is read
back from the scene that was cooked again."""
from __future__ import division

import unittest

from gizmos import (PATH, GestureTest, ManipulatorTest, add, alongLine, cross, direct, dot,
                    location, onPlane, subtract, unit, worldAxis)
from ostrel import events
from PyVlAttribute import DoubleAttribute, FloatAttribute, GroupAttribute, StringAttribute

TURNED = (("placed.translate", [1.0, 0.5, 0.0]),
          ("placed.rotateZ", [20.0, 0.0, 0.0, 1.0]),
          ("placed.rotateY", [-10.0, 0.0, 1.0, 0.0]),
          ("placed.scale", [1.2, 0.7, 1.0]))


class BoxTest(object):
    """What tests of boxes share."""

    def axes(self):
        """The directions in the world that the thing's scale sizes along: its own, where nothing
        stands within the scale."""
        return [unit(direct(worldAxis(i), self.worldMatrix())) for i in range(3)]

    def boxPoint(self, axis, fraction=0.95):
        origin = self.position()
        return add(origin, self.axes()[axis], fraction * self.gizmoLength(origin))

    def alongAxis(self, axis, begin, pixels):
        """The pixel that is so far from another, along an axis as it is seen, and a bit aside."""
        way = subtract(self.pixelOf(self.boxPoint(axis)), self.pixelOf(self.position()))
        end = add(begin, unit(way), pixels)
        return int(end[0]) + 2, int(end[1]) - 1

    def factorsAlong(self, axis, *pixels):
        origin, direction = self.position(), self.axes()[axis]
        begin, end = [alongLine(self.rayAt(pixel), origin, direction) for pixel in pixels]
        return [end / begin if i == axis else 1.0 for i in range(3)]


class ScaleGestureTest(BoxTest, GestureTest):
    """What is grasped stays under the pointer: the thing grows as its distance from the middle."""

    tool = "ScaleManipulator"
    thing = TURNED

    def checkGesture(self, message, begin, end, factors):
        before, origin = self.component("placed.scale"), self.position()
        others = [self.component("placed." + name) for name in ("translate", "rotateZ", "rotateY")]
        self.watchedDrag(message, begin, end)
        self.assertAlmost(self.component("placed.scale"),
                          [a * b for a, b in zip(before, factors)], message)
        self.assertEqual(others, [self.component("placed." + name)
                                  for name in ("translate", "rotateZ", "rotateY")], message)
        self.assertAlmost(self.position(), origin, message)
        self.assertTrue(max(abs(factor - 1) for factor in factors) > 0.05, message)

    def testAxes(self):
        for situation in self.eachSituation():
            for axis in range(3):
                self.view.draw()
                begin = self.pixelAt(self.boxPoint(axis))
                end = self.alongAxis(axis, begin, 20)
                self.checkGesture("%s, axis %d" % (situation, axis), begin, end,
                                  self.factorsAlong(axis, begin, end))

    def testPlanes(self):
        for situation in self.eachSituation():
            tried = 0
            for axis in range(3):
                self.view.draw()
                origin, axes = self.position(), self.axes()
                first, second = axes[(axis + 1) % 3], axes[(axis + 2) % 3]
                normal = unit(cross(first, second))
                if abs(dot(normal, self.towardsCamera(origin))) < 0.2:
                    continue  # seen from its edge
                tried += 1
                corner = add(origin, add(first, second), 0.4 * self.gizmoLength(origin))
                begin = self.pixelAt(corner)
                end = tuple(int(value) for value in add(
                    begin, unit(subtract(self.pixelOf(corner), self.pixelOf(origin))), 15))
                arms = [subtract(onPlane(self.rayAt(pixel), origin, normal), origin)
                        for pixel in (begin, end)]
                factor = dot(arms[1], arms[0]) / dot(arms[0], arms[0])
                self.checkGesture("%s, plane upright to axis %d" % (situation, axis), begin, end,
                                  [1.0 if i == axis else factor for i in range(3)])
            self.assertTrue(tried >= 2, situation)

    def testCentre(self):
        # It doubles by 100 pixels, the gizmo's length, to the right or up.
        for situation in self.eachSituation():
            for x, y in ((30, 0), (0, -40), (-25, 5)):
                self.view.draw()
                begin = self.pixelAt(self.position())
                self.checkGesture("%s, by %d, %d" % (situation, x, y), begin,
                                  (begin[0] + x, begin[1] + y), [2.0 ** ((x - y) / 100)] * 3)


class ScaleTest(BoxTest, ManipulatorTest):
    def showScale(self, **what):
        self.show(**what)
        self.activate(name="ScaleManipulator")

    def dragAxis(self, axis, pixels=20, **more):
        """Drags a box; answers the factors of that."""
        begin = self.pixelAt(self.boxPoint(axis))
        end = self.alongAxis(axis, begin, pixels)
        factors = self.factorsAlong(axis, begin, end)
        self.drag(begin, end, **more)
        self.settle()
        return factors

    def testALocationWithoutAScaleGetsOneWithinAllThatIsThere(self):
        things = (("moved", TURNED[:1]), ("turned", TURNED[:3]), ("without a transform", ()))
        for name, thing in things:
            self.showScale(thing=thing)
            factors = self.dragAxis(0)
            self.assertAlmost(self.component("interactive.scale"), factors, name)
            self.assertEqual(self.component("interactive.translate"), [0.0, 0.0, 0.0], name)
            self.session.close()

    def testAScaleBeforeTheRotationsSizesAlongItsOwnAxes(self):
        self.show(thing=(("placed.translate", [1.0, 0.5, 0.0]), ("placed.scale", [1.0, 1.0, 1.0]),
                         ("placed.rotateZ", [50.0, 0.0, 0.0, 1.0])))
        self.activate(name="ScaleManipulator")
        origin = self.position()
        begin = self.placeOn(1, 0.95)
        end = begin[0], begin[1] - 25
        ways = [alongLine(self.rayAt(pixel), origin, worldAxis(1)) for pixel in (begin, end)]
        self.drag(begin, end)
        self.settle()
        self.assertAlmost(self.component("placed.scale"), [1.0, ways[1] / ways[0], 1.0])

    def testAxesOfTheWorldAreNotItsOwn(self):
        self.showScale(thing=TURNED)
        pixels = self.view.readPixels()
        for axes in ("local", "world"):
            self.manipulator.setOptionByName("axes", StringAttribute(axes))
            self.assertTrue(self.view.readPixels() == pixels, axes)

    def testFactorsNeverComeToNothing(self):
        for axis, place in ((0, "middle"), (0, "beyond"), (1, "beyond")):
            self.showScale(thing=TURNED)
            begin = self.pixelAt(self.boxPoint(axis))
            middle = self.pixelAt(self.position())
            end = middle if place == "middle" else [2 * b - a for a, b in zip(begin, middle)]
            self.press(*begin)
            self.move(*end)
            self.assertTrue(0 < self.readout()[axis] < 0.1, place)
            self.move(*begin)
            self.assertAlmost(self.readout(), [1.0, 1.0, 1.0], place)
            self.release(*end)
            self.settle()
            for found, whole in zip(self.component("placed.scale"), TURNED[-1][1]):
                self.assertTrue(0.0005 * whole < found <= 1.01 * whole, (place, found))
            # It can be sized again.
            self.view.draw()
            self.drag(middle, (middle[0] + 100, middle[1]))
            self.settle()
            self.assertTrue(min(self.component("placed.scale")) > 0.001)
            self.session.close()

    def testWhatIsFlatStaysFlatAndHurtsNothing(self):
        self.showScale(thing=(("placed.translate", [1.0, 0.5, 0.0]),
                              ("placed.scale", [0.0, 1.0, 1.0])))
        self.drag(self.pixelAt(self.position()), self.pixelAt(add(self.position(), [0.5, 0, 0])))
        self.settle()
        scale = self.component("placed.scale")
        self.assertEqual(scale[0], 0.0)
        self.assertTrue(scale[1] == scale[2] > 1.0, scale)

    def testWithControlItGoesByTenthsOrStepsThatAreSet(self):
        for option, step in ((None, 0.1), (FloatAttribute(0.25), 0.25), (DoubleAttribute(0.3), 0.3)):
            self.showScale()
            if option:
                self.manipulator.setOptionByName("snapStep", option)
            self.dragAxis(0, 43, modifiers=["control"])
            steps = self.component("interactive.scale")[0] / step
            self.assertTrue(steps > 1 / step, steps)
            self.assertTrue(abs(steps - round(steps)) < 1e-12, steps)
            self.session.close()

    def testTheReadoutIsTheFactors(self):
        self.showScale(thing=TURNED)
        begin = self.pixelAt(self.boxPoint(1))
        end = self.alongAxis(1, begin, 15)
        factors = self.factorsAlong(1, begin, end)
        self.press(*begin)
        self.assertAlmost(self.readout(), [1.0, 1.0, 1.0])
        self.move(*end)
        self.assertAlmost(self.readout(), factors)
        self.release(*end)
        self.assertTrue(self.readout() is None)

    def testEscapeBringsBackWhatWas(self):
        for thing in (TURNED, TURNED[:3], ()):
            self.showScale(thing=thing)
            before = self.session.delegate.getAttributes(PATH)
            begin = self.pixelAt(self.position())
            self.press(*begin)
            self.move(begin[0] + 30, begin[1])
            self.assertNotEqual(self.session.delegate.getAttributes(PATH), before)
            self.assertTrue(self.viewport.event(events.keyPress("Escape")))
            self.settle()
            self.assertEqual(self.session.delegate.getAttributes(PATH), before)
            self.assertFalse(self.session.canUndo())
            self.session.close()

    def testSeveralLocationsGrowEachAroundItsOwnPivotInOneStep(self):
        self.show(thing=TURNED)
        other = "/root/other"
        self.session.createOp("Scene.Literal", GroupAttribute(("staticScene.c.other.a", location(
            ("placed.translate", [0.5, 0.3, -1.0]), ("placed.scale", [2.0, 3.0, 4.0])))))
        self.settle()
        self.activate([PATH, other], "ScaleManipulator")
        before = [self.position(path) for path in (PATH, other)]
        middle = [(a + b) / 2 for a, b in zip(*before)]
        begin = self.pixelAt(middle)
        self.drag(begin, (begin[0] + 50, begin[1]))
        self.settle()
        factor = 2.0 ** 0.5
        self.assertAlmost(self.component("placed.scale"), [factor * x for x in TURNED[-1][1]])
        self.assertAlmost(self.component("placed.scale", other),
                          [factor * x for x in (2.0, 3.0, 4.0)])
        for path, place in zip((PATH, other), before):
            self.assertAlmost(self.position(path), place)
        self.assertTrue(self.session.undo())
        self.assertFalse(self.session.canUndo())


if __name__ == "__main__":
    unittest.main()
