"""The "RotateManipulator" under the mouse: events go in at a viewport, and what they did is read
back from the scene that was cooked again."""
from __future__ import division

import math
import unittest

from gizmos import (PATH, WIDTH, GestureTest, ManipulatorTest, add, alongLine, angleAround, cross,
                    direct, dot, invert, location, multiply, onPlane, rotation, subtract, unit,
                    worldAxis)
from ostrel import events
from PyVlAttribute import FloatAttribute, GroupAttribute, StringAttribute

#: Of the ring that faces the camera, in lengths of the gizmo.
FACING_RADIUS = 1.16

#: Names and components of things whose rotations stand in several orders.
THINGS = (
    ("without rotations", (("placed.translate", [1.0, 0.5, 0.0]),)),
    ("without a transform", ()),
    ("as usual", (("placed.translate", [1.0, 0.5, 0.0]),
                  ("placed.rotateZ", [20.0, 0.0, 0.0, 1.0]),
                  ("placed.rotateY", [-35.0, 0.0, 1.0, 0.0]),
                  ("placed.rotateX", [50.0, 1.0, 0.0, 0.0]),
                  ("placed.scale", [1.2, 0.7, 1.0]))),
    ("x outside, scale outside of all", (("sized.scale", [1.2, 0.7, 1.0]),
                                         ("placed.translate", [0.8, 0.7, 0.0]),
                                         ("placed.rotateX", [50.0, 1.0, 0.0, 0.0]),
                                         ("placed.rotateY", [-35.0, 0.0, 1.0, 0.0]),
                                         ("placed.rotateZ", [20.0, 0.0, 0.0, 1.0]))),
    ("y alone, before a scale", (("placed.translate", [1.0, 0.5, 0.0]),
                                 ("placed.rotateY", [60.0, 0.0, 1.0, 0.0]),
                                 ("placed.scale", [1.0, 2.0, 1.0]))),
    ("y and x", (("placed.translate", [1.0, 0.5, 0.0]),
                 ("placed.rotateY", [60.0, 0.0, 1.0, 0.0]),
                 ("placed.rotateX", [-15.0, 1.0, 0.0, 0.0]))),
    ("in two groups", (("outer.rotateY", [60.0, 0.0, 1.0, 0.0]),
                       ("placed.translate", [0.5, 0.5, 0.9]),
                       ("placed.rotateX", [-15.0, 1.0, 0.0, 0.0]))),
)


class RingTest(object):
    """What tests of rings share."""

    def ringPoint(self, axis, degrees=None, radius=1.0):
        """A point of the ring around an axis, by default where it is nearest to the camera and
        between two other rings."""
        origin = self.position()
        toCamera = self.towardsCamera(origin)
        if degrees is None:
            direction = unit([0.0 if i == axis else math.copysign(1.0, toCamera[i])
                              for i in range(3)])
        else:
            direction = direct(worldAxis((axis + 1) % 3), rotation(degrees, worldAxis(axis)))
        return add(origin, direction, radius * self.gizmoLength(origin))

    def alongRing(self, point, axis, pixels):
        """The pixel that is so far from a point of the ring, along it as it is seen."""
        arm = subtract(point, self.position())
        begin = self.pixelOf(point)
        ahead = self.pixelOf(add(point, cross(axis, arm), 1e-3))
        return tuple(int(value) for value in
                     add(begin, unit(subtract(ahead, begin)), pixels))

    def armAt(self, pixel, origin, axis):
        """From the origin to where a pixel's ray meets the ring's plane."""
        return subtract(onPlane(self.rayAt(pixel), origin, axis), origin)

    def checkTurned(self, before, axis, arms, message):
        """The thing stands where it would when a turn around the axis takes the first arm to the
        second.

        No more than that is asked for where its parent sizes unevenly: a point that was seen on the
        first arm is seen on the second, and what was in the plane upright to the axis still is. Its
        components say that the thing itself is neither sized nor sheared.
        """
        after = self.worldMatrix()
        change = multiply(invert(before), after)
        arms = [unit(arm) for arm in arms]
        self.assertAlmost(unit(direct(arms[0], change)), arms[1], message + ": the arm")
        across = direct(cross(axis, arms[0]), change)
        self.assertTrue(abs(dot(unit(across), axis)) < 1e-6, message + ": the plane")
        if self.isTurnedWhole:
            turn = rotation(angleAround(axis, *arms), axis)
            expected = multiply(before, turn)
            self.assertAlmost(after[:12], expected[:12], message + ": all of it")


class RotateGestureTest(RingTest, GestureTest):
    """What is grasped stays under the pointer: the thing turns by the angle that the pointer goes
    around its middle."""

    tool = "RotateManipulator"

    def eachSituation(self):
        for situation in super(RotateGestureTest, self).eachSituation():
            self.isTurnedWhole = not any(word in situation for word in ("uneven", "mirrored"))
            yield situation

    def checkGesture(self, message, grasped, axis):
        before, origin = self.worldMatrix(), self.position()
        begin, end = self.pixelAt(grasped), self.alongRing(grasped, axis, 20)
        arms = [self.armAt(pixel, origin, axis) for pixel in (begin, end)]
        self.watchedDrag(message, begin, end)
        self.checkTurned(before, axis, arms, message)
        self.assertAlmost(self.position(), origin, message)
        self.assertTrue(abs(angleAround(axis, *arms)) > 1.0, message)

    def testRings(self):
        for situation in self.eachSituation():
            for axis in range(3):
                self.view.draw()
                self.checkGesture("%s, ring around %d" % (situation, axis), self.ringPoint(axis),
                                  worldAxis(axis))

    def testRingThatFacesTheCamera(self):
        for situation in self.eachSituation():
            origin = self.position()
            axis = self.towardsCamera(origin)
            right = unit(cross(self.cameraAxis(1), axis))
            for degrees in (10, 190, 300):
                self.view.draw()
                arm = direct(right, rotation(degrees, axis))
                self.checkGesture(
                    "%s, at %d degrees" % (situation, degrees),
                    add(origin, arm, FACING_RADIUS * self.gizmoLength(origin)), axis)

    def testRingsSeenFromTheirEdge(self):
        for situation in self.eachSituation():
            self.view.orbit.yaw = self.view.orbit.pitch = 0.0
            self.view.updateCamera()
            for axis, side in ((0, 1), (1, 0)):
                message = "%s, ring around %d" % (situation, axis)
                self.view.draw()
                before, origin = self.worldMatrix(), self.position()
                length = self.gizmoLength(origin)
                toCamera = self.towardsCamera(origin)
                front = unit([0.0 if i == axis else toCamera[i] for i in range(3)])
                along = unit(cross(worldAxis(axis), front))
                self.assertTrue(abs(along[side]) > 0.9)
                point = add(origin, front, 0.8 * length)
                begin = self.pixelAt(add(point, along, 0.6 * length))
                end = begin[0] + (17 if side == 0 else 2), begin[1] - (2 if side == 0 else 17)
                # By a radian as the pointer goes the radius.
                ways = [alongLine(self.rayAt(pixel), origin, unit(
                    cross(worldAxis(axis), toCamera))) for pixel in (begin, end)]
                degrees = math.degrees((ways[1] - ways[0]) / length)
                self.watchedDrag(message, begin, end)
                self.checkTurned(before, worldAxis(axis), [
                    front, direct(front, rotation(degrees, worldAxis(axis)))], message)
                self.assertTrue(abs(degrees) > 3.0, message)


class RotateTest(RingTest, ManipulatorTest):
    isTurnedWhole = True

    def showRotate(self, **what):
        self.show(**what)
        self.activate(name="RotateManipulator")

    def around(self, axis, *degrees):
        """Pixels on the ring around an axis."""
        return [self.pixelAt(self.ringPoint(axis, each)) for each in degrees]

    def testRotationsOfAllOrdersAreTurnedAndNothingElse(self):
        for name, thing in THINGS:
            # A scale that stands outside of the rotations sizes what they turn.
            self.isTurnedWhole = "outside of all" not in name
            for axis in range(3):
                message = "%s, ring around %d" % (name, axis)
                self.showRotate(thing=thing)
                before, origin = self.worldMatrix(), self.position()
                point = self.ringPoint(axis)
                begin, end = self.pixelAt(point), self.alongRing(point, worldAxis(axis), 20)
                arms = [self.armAt(pixel, origin, worldAxis(axis)) for pixel in (begin, end)]
                self.drag(begin, end)
                self.settle()
                self.checkTurned(before, worldAxis(axis), arms, message)
                for component, values in thing:
                    if ".rotate" not in component:
                        self.assertEqual(self.component(component), values, message)
                hasRotations = any(".rotate" in component for component, _ in thing)
                self.assertEqual(self.component("interactive.rotateZ") is None, hasRotations,
                                 message)
                self.session.close()

    def testThreeRotationsKeepTheirAxes(self):
        thing = dict(THINGS)["as usual"]
        self.showRotate(thing=thing)
        begin = self.pixelAt(self.ringPoint(1))
        self.drag(begin, (begin[0] + 17, begin[1] - 12))
        self.settle()
        changed = 0
        for component, values in thing:
            if ".rotate" in component:
                self.assertEqual(self.component(component)[1:], values[1:])
                changed += self.component(component) != values
        self.assertEqual(changed, 3)

    def testTurnsAreCountedInTheReadoutAndInTheValue(self):
        self.showRotate(thing=dict(THINGS)["as usual"])
        # From the front the ring is seen whole.
        self.view.orbit.yaw = self.view.orbit.pitch = 0.0
        self.view.updateCamera()
        self.view.draw()
        places = self.around(2, *range(45, 900, 30))
        origin = self.position()
        arms = [self.armAt(pixel, origin, worldAxis(2)) for pixel in places]
        expected = sum(angleAround(worldAxis(2), unit(a), unit(b)) for a, b in zip(arms, arms[1:]))
        self.assertTrue(expected > 800)
        self.press(*places[0])
        for place in places[1:]:
            self.move(*place)
        self.assertAlmost(self.readout(), [expected])
        self.release(*places[-1])
        self.settle()
        self.assertAlmost(self.component("placed.rotateZ"), [20.0 + expected, 0, 0, 1])
        self.assertAlmost(self.component("placed.rotateX"), [50.0, 1, 0, 0])

    def testWithControlItGoesInStepsOf15DegreesOrThoseThatAreSet(self):
        for option, step in ((None, 15.0), (10.0, 10.0)):
            self.showRotate()
            if option:
                self.manipulator.setOptionByName("snapStep", FloatAttribute(option))
            point = self.ringPoint(1)
            self.press(*self.pixelAt(point))
            seen = set()
            for by in range(2, 90, 2):
                end = self.alongRing(point, worldAxis(1), by)
                self.move(*end, modifiers=["control"])
                steps = self.readout()[0] / step
                self.assertTrue(abs(steps - round(steps)) < 1e-9, steps)
                seen.add(round(steps))
            self.assertTrue(len(seen) >= 3, seen)
            self.release(*end, modifiers=["control"])
            self.settle()
            self.assertAlmost(self.component("interactive.rotateY"), [max(seen) * step, 0, 1, 0])
            self.session.close()

    def testEscapeBringsBackWhatWas(self):
        for name, thing in THINGS:
            self.showRotate(thing=thing)
            before = self.session.delegate.getAttributes(PATH)
            begin = self.pixelAt(self.ringPoint(0))
            self.press(*begin)
            self.move(begin[0] + 30, begin[1] + 20)
            self.assertNotEqual(self.session.delegate.getAttributes(PATH), before, name)
            self.assertTrue(self.viewport.event(events.keyPress("Escape")))
            self.assertTrue(self.readout() is None, name)
            self.settle()
            self.assertEqual(self.session.delegate.getAttributes(PATH), before, name)
            self.assertFalse(self.session.canUndo(), name)
            self.assertFalse(self.session.delegate.isFrozenDueToManipulation(), name)
            self.session.close()

    def testOneStepTakesAWholeTurnBack(self):
        self.showRotate(thing=dict(THINGS)["as usual"])
        before = self.session.delegate.getAttributes(PATH)
        begin = self.pixelAt(self.ringPoint(0))
        self.drag(begin, (begin[0] + 20, begin[1]), (begin[0] + 30, begin[1] + 20))
        self.settle()
        self.assertTrue(self.session.undo())
        self.assertFalse(self.session.canUndo())
        self.settle()
        self.assertEqual(self.session.delegate.getAttributes(PATH), before)

    def testAPressWithoutAMoveChangesNothing(self):
        self.showRotate()
        before = self.session.delegate.getAttributes(PATH)
        begin = self.pixelAt(self.ringPoint(0))
        self.assertTrue(self.press(*begin))
        self.assertTrue(self.release(*begin))
        self.settle()
        self.assertEqual(self.session.delegate.getAttributes(PATH), before)
        self.assertFalse(self.session.canUndo())

    def testEachLocationTurnsAroundItsOwnPivot(self):
        self.show(parent=(("a.translate", [-1.0, 0.0, 0.5]), ("a.scale", [1.3, 1.3, 1.3])))
        other = "/root/other"
        self.session.createOp("Scene.Literal", GroupAttribute(("staticScene.c.other.a", location(
            ("placed.translate", [0.5, 0.3, -1.0]), ("placed.rotateX", [30.0, 1.0, 0.0, 0.0])))))
        self.settle()
        self.activate([PATH, other], "RotateManipulator")
        before = dict((path, self.worldMatrix(path)) for path in (PATH, other))
        middle = [sum(matrix[12 + i] for matrix in before.values()) / 2 for i in range(3)]
        toCamera = self.towardsCamera(middle)
        arm = unit([math.copysign(1.0, toCamera[0]), 0.0, math.copysign(1.0, toCamera[2])])
        begin = self.pixelAt(add(middle, arm, self.gizmoLength(middle)))
        end = begin[0] + 25, begin[1] - 5
        arms = [unit(self.armAt(pixel, middle, worldAxis(1))) for pixel in (begin, end)]
        self.drag(begin, end)
        self.settle()
        turn = rotation(angleAround(worldAxis(1), *arms), worldAxis(1))
        for path, matrix in before.items():
            self.assertAlmost(self.worldMatrix(path)[:12], multiply(matrix, turn)[:12], path)
            self.assertAlmost(self.position(path), matrix[12:15], path)
        self.assertTrue(self.session.undo())
        self.assertFalse(self.session.canUndo(), "one step")

    def testLocalRingsStandAroundTheLocationsOwnAxes(self):
        self.show(thing=(("placed.translate", [1.0, 0.5, 0.0]),
                         ("placed.rotateZ", [90.0, 0.0, 0.0, 1.0]),
                         ("placed.rotateY", [0.0, 0.0, 1.0, 0.0]),
                         ("placed.rotateX", [10.0, 1.0, 0.0, 0.0])))
        self.activate(name="RotateManipulator").setOptionByName("axes", StringAttribute("local"))
        self.view.draw()
        # Its x axis points up.
        before, origin = self.worldMatrix(), self.position()
        begin = self.pixelAt(self.ringPoint(1))
        end = begin[0] + 20, begin[1]
        arms = [self.armAt(pixel, origin, worldAxis(1)) for pixel in (begin, end)]
        self.drag(begin, end)
        self.settle()
        self.checkTurned(before, worldAxis(1), arms, "local")
        degrees = angleAround(worldAxis(1), *[unit(arm) for arm in arms])
        self.assertAlmost(self.component("placed.rotateX"), [10.0 + degrees, 1, 0, 0])
        self.assertAlmost(self.component("placed.rotateZ"), [90.0, 0, 0, 1])

    def testTheFartherHalfOfARingIsFaintAndSeenThrough(self):
        self.showRotate()
        origin = self.position()
        toCamera = self.towardsCamera(origin)
        points = dict((axis, [self.ringPoint(axis, degrees) for degrees in range(0, 360, 5)])
                      for axis in range(3))
        plain = self.pixels()

        def nearness(point):
            return dot(subtract(point, origin), toCamera) / self.gizmoLength(origin)

        for axis in range(3):
            others = [self.pixelOf(point) for each in range(3) for point in points[each]
                      if each != axis or nearness(point) > -0.3]
            # The one that stands farthest from what is seen of the others.
            farther = max((point for point in points[axis] if nearness(point) < -0.3),
                          key=lambda point: min(dot(way, way) for way in (
                              subtract(self.pixelOf(point), other) for other in others)))
            strengths = []
            for point, isGrasped in ((self.ringPoint(axis), True), (farther, False)):
                x, y = self.pixelAt(point)
                self.press(x, y)
                self.assertEqual(self.readout() is not None, isGrasped, (axis, isGrasped))
                self.release(x, y)
                strengths.append(self.colourfulness(plain, (x, y), axis))
            self.assertTrue(strengths[0] > 2 * strengths[1] > 0, (axis, strengths))

    def pixels(self):
        return bytearray(self.view.readPixels()[2])

    def colourfulness(self, pixels, place, axis):
        """How much of an axis's colour there is around a place."""
        most = 0
        for y in range(place[1] - 2, place[1] + 3):
            for x in range(place[0] - 2, place[0] + 3):
                colour = pixels[4 * (y * WIDTH + x):][:3]
                most = max(most, colour[axis] - sum(colour) // 3)
        return most

    def testRingsShowInTheirColoursAndBrightenUnderThePointer(self):
        self.showRotate()
        for axis in range(3):
            self.viewport.hover()
            x, y = self.pixelAt(self.ringPoint(axis))
            colour = self.colourAt(x, y)
            self.assertEqual(max(range(3), key=lambda i: colour[i]), axis, colour)
            self.viewport.hover(x, y)
            red, green, blue = self.colourAt(x, y)
            self.assertTrue(red > 180 and green > 120 and blue < 120, "no orange")

    def colourAt(self, x, y):
        return list(self.pixels()[4 * (y * WIDTH + x):][:3])


if __name__ == "__main__":
    unittest.main()
