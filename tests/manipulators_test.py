"""Manipulators of the bundled plug-ins under the mouse: events go in at a viewport, and what they
did is read back from the scene that was cooked again."""
from __future__ import division, print_function

import math
import unittest

import ostrel
from ostrel import events
from PyVlAttribute import (DoubleAttribute, FloatAttribute, GroupAttribute,
                           StringAttribute)

DEADLINE = 60
WIDTH, HEIGHT = 320, 240
PATH = "/root/parent/thing"

# A pixel's edge is about 0.02 units at the thing's distance; the arithmetic is double precision, so
# that what remains is rounding of matrices that go through the scene.
TOLERANCE = 1e-6


def location(*xform):
    return GroupAttribute(
        ("type", StringAttribute("locator")),
        ("attributeEditor.exclusiveTo", StringAttribute(ostrel.Session.NODE)),
        ("bound", DoubleAttribute([-1, 1, -1, 1, -1, 1])),
        *[("xform." + name, DoubleAttribute(values, len(values))) for name, values in xform])


def multiply(a, b):
    return [sum(a[row * 4 + k] * b[k * 4 + column] for k in range(4))
            for row in range(4) for column in range(4)]


def transform(point, matrix):
    row = list(point) + [1.0]
    x, y, z, w = [sum(row[k] * matrix[k * 4 + column] for k in range(4)) for column in range(4)]
    return [x / w, y / w, z / w]


IDENTITY = [float(row == column) for row in range(4) for column in range(4)]


def componentMatrix(name, values):
    """For row vectors, as docs/scene-conventions.md has it."""
    matrix = list(IDENTITY)
    if name.startswith("translate"):
        matrix[12:15] = values
    elif name.startswith("scale"):
        matrix[0], matrix[5], matrix[10] = values
    else:
        assert name.startswith("rotate")
        angle, axis = math.radians(values[0]), list(values[1:])
        for row in range(3):
            e = [float(row == i) for i in range(3)]
            along = axis[row]
            cross = [axis[1] * e[2] - axis[2] * e[1], axis[2] * e[0] - axis[0] * e[2],
                     axis[0] * e[1] - axis[1] * e[0]]
            for column in range(3):
                matrix[row * 4 + column] = (
                    e[column] * math.cos(angle) + cross[column] * math.sin(angle) +
                    axis[column] * along * (1 - math.cos(angle)))
    return matrix


class ManipulatorTest(unittest.TestCase):
    def show(self, parent=(), thing=(("placed.translate", [1.0, 0.5, 0.0]),),
             camera="PerspectiveCamera"):
        """A thing below a parent, with these components in their groups, in a view."""
        self.session = ostrel.Session()
        self.addCleanup(self.session.close)
        self.session.createOp("Scene.Literal", GroupAttribute(
            ("staticScene.c.parent.a", location(*parent)),
            ("staticScene.c.parent.c.thing.a", location(*thing))))
        self.view = self.session.addOffscreenView(WIDTH, HEIGHT, cameraPlugin=camera)
        self.settle()
        self.view.frame([-3, 3, -3, 3, -3, 3])
        self.viewport = self.view.viewport

    def settle(self):
        self.assertTrue(self.session.pump(timeout=DEADLINE))

    def activate(self, paths=(PATH,), name="TranslateManipulator"):
        self.viewport.activateManipulator(name, list(paths), True)
        self.view.draw()
        for i in range(self.viewport.getNumberOfActiveManipulators()):
            if self.viewport.getActiveManipulatorPluginName(i) == name:
                self.manipulator = self.viewport.getActiveManipulatorByIndex(i)
        return self.manipulator

    def position(self, path=PATH):
        """Of a location's origin in the world, from the attributes that the viewer has."""
        world = IDENTITY
        names = path.split("/")
        for depth in range(2, len(names) + 1):
            attributes = self.session.delegate.getAttributes("/".join(names[:depth]))
            for _, group in attributes.getChildByName("xform") or ():
                for name, values in group:
                    matrix = componentMatrix(name, list(values.getNearestSample(0.0)))
                    world = multiply(matrix, world)
        return world[12:15]

    def worldToClip(self):
        return multiply(list(self.view.camera.getViewMatrix()),
                        list(self.view.camera.getProjectionMatrix()))

    def pixelOf(self, point):
        """Where a point is seen: the place, not yet a whole pixel."""
        x, y, _ = transform(point, self.worldToClip())
        return (x + 1) / 2 * WIDTH, (1 - y) / 2 * HEIGHT

    def gizmoLength(self, point):
        """In world units, of what is seen in 100 pixels at a point."""
        view = self.view.camera.getViewMatrix()
        above = [value + 0.001 * view[4 * i + 1] for i, value in enumerate(point)]
        return 100 * 0.001 / (self.pixelOf(point)[1] - self.pixelOf(above)[1])

    def press(self, x, y, **more):
        return self.viewport.event(events.mousePress(int(x), int(y), "left", **more))

    def move(self, x, y, **more):
        return self.viewport.event(events.mouseMove(int(x), int(y), ["left"], **more))

    def release(self, x, y, **more):
        return self.viewport.event(events.mouseRelease(int(x), int(y), "left", **more))

    def placeOn(self, axis, fraction=0.5):
        """A pixel on an axis of the gizmo at the thing."""
        at = self.position()
        at[axis] += fraction * self.gizmoLength(at)
        return [int(value) for value in self.pixelOf(at)]


PARENTS = (
    ("none", ()),
    ("moved", (("a.translate", [0.3, -0.4, 0.2]),)),
    ("turned", (("a.rotateY", [40.0, 0.0, 1.0, 0.0]), ("a.rotateX", [25.0, 1.0, 0.0, 0.0]))),
    ("unevenly scaled", (("a.scale", [2.0, 0.5, 1.3]),)),
    ("turned, then unevenly scaled", (("a.rotateZ", [30.0, 0.0, 0.0, 1.0]),
                                      ("a.scale", [0.5, 1.5, 0.8]))),
    ("sheared, by a turn within an uneven scale", (("a.scale", [1.5, 0.6, 1.0]),
                                                   ("a.rotateZ", [35.0, 0.0, 0.0, 1.0]))),
)


class TranslateTest(ManipulatorTest):
    def dragAxis(self, axis, by, **more):
        x, y = self.placeOn(axis)
        self.assertTrue(self.press(x, y))
        self.assertTrue(self.move(x + by[0] // 2, y + by[1] // 2, **more))
        self.assertTrue(self.release(x + by[0], y + by[1], **more))
        return (x, y), (x + by[0], y + by[1])

    def assertAlmost(self, found, expected, message, tolerance=TOLERANCE):
        for a, b in zip(found, expected):
            self.assertTrue(abs(a - b) < tolerance, "%s: %r is not %r" % (message, found, expected))

    def distanceAlong(self, axis, origin, pixel):
        """Where on an axis through a point a pixel's centre is nearest to, by bisection over what
        is seen: along the axis, in pixels, the picture is searched for the place from which the
        pixel's ray and the axis are nearest in the world."""
        view = list(self.view.camera.getViewMatrix())
        projection = list(self.view.camera.getProjectionMatrix())
        place = [2 * (pixel[0] + 0.5) / WIDTH - 1, 1 - 2 * (pixel[1] + 0.5) / HEIGHT]
        # In view space, two points of the ray and two of the axis.
        if projection[11]:
            eye = [0.0, 0.0, 0.0]
            ahead = [place[0] / projection[0], place[1] / projection[5], -1.0]
        else:
            eye = [(place[0] - projection[12]) / projection[0],
                   (place[1] - projection[13]) / projection[5], 0.0]
            ahead = [0.0, 0.0, -1.0]
        start = transform(origin, view)
        end = transform([value + (i == axis) for i, value in enumerate(origin)], view)
        along = [b - a for a, b in zip(start, end)]

        def apart(distance):
            point = [a + distance * b - c for a, b, c in zip(start, along, eye)]
            ratio = sum(a * b for a, b in zip(point, ahead)) / sum(a * a for a in ahead)
            return sum((a - ratio * b) ** 2 for a, b in zip(point, ahead))

        low, high = -1000.0, 1000.0
        for _ in range(200):
            third = (high - low) / 3
            if apart(low + third) < apart(high - third):
                high -= third
            else:
                low += third
        return (low + high) / 2

    def testADragMovesTheThingAlongTheAxisAsFarAsTheMouseGoes(self):
        for camera in ("PerspectiveCamera", "OrthographicCamera"):
            for name, parent in PARENTS:
                for axis in range(3):
                    message = "%s, parent %s, axis %d" % (camera, name, axis)
                    self.show(parent, camera=camera)
                    self.activate()
                    before = self.position()
                    begin, end = self.dragAxis(axis, (14, -11))
                    way = (self.distanceAlong(axis, before, end) -
                           self.distanceAlong(axis, before, begin))
                    self.assertTrue(abs(way) > 0.01, message)
                    self.settle()
                    self.assertTrue(self.session.delegate.getLiveAttributes(PATH) is None, message)
                    expected = list(before)
                    expected[axis] += way
                    # The bisection itself is good to about 1e-5.
                    self.assertAlmost(self.position(), expected, message, 1e-4)
                    others = [i for i in range(3) if i != axis]
                    self.assertAlmost([self.position()[i] for i in others],
                                      [before[i] for i in others], message)
                    self.session.close()

    def testTheComponentThatIsThereIsTheOneThatIsSet(self):
        self.show()
        self.activate()
        before = self.position()
        self.dragAxis(0, (20, 0))
        self.settle()
        attributes = self.session.delegate.getAttributes(PATH)
        value = attributes.getChildByName("xform.placed.translate").getNearestSample(0.0)
        self.assertAlmost(list(value), self.position(), "translate")
        self.assertTrue(value[0] > before[0] + 0.05)
        self.assertEqual(len(attributes.getChildByName("xform")), 1)

    def testALocationWithoutATranslateGetsOneWithinAllThatIsThere(self):
        self.show(parent=PARENTS[4][1], thing=(("local.scale", [2.0, 1.0, 1.0]),))
        self.activate()
        before = self.position()
        begin, end = self.dragAxis(1, (0, -20))
        self.settle()
        way = self.distanceAlong(1, before, end) - self.distanceAlong(1, before, begin)
        self.assertAlmost(self.position(), [before[0], before[1] + way, before[2]], "moved", 1e-4)
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

    def testTheReadoutIsTheWaySoFar(self):
        self.show()
        manipulator = self.activate()
        self.assertTrue(manipulator.getOptionByName("readout") is None)
        before = self.position()
        x, y = self.placeOn(1)
        self.press(x, y)
        self.move(x, y - 20)
        readout = list(manipulator.getOptionByName("readout").getNearestSample(0.0))
        self.session.delegate.processLocationEvents()
        self.assertAlmost(readout, [b - a for a, b in zip(before, self.position())], "readout")
        self.assertTrue(readout[1] > 0.05)
        self.release(x, y - 20)
        self.assertTrue(manipulator.getOptionByName("readout") is None)

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
        readout = list(self.manipulator.getOptionByName("readout").getNearestSample(0.0))
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


class LayerTest(ManipulatorTest):
    def pixels(self):
        width, height, data = self.view.readPixels()
        return bytearray(data)

    def colourAt(self, x, y):
        data = self.pixels()
        return tuple(data[(y * WIDTH + x) * 4:(y * WIDTH + x) * 4 + 3])

    def testHandlesShowInTheirColoursAndBrightenUnderThePointer(self):
        self.show()
        plain = self.pixels()
        self.activate()
        colours = []
        for axis in range(3):
            x, y = self.placeOn(axis, 0.9)
            colours.append(self.colourAt(x, y))
            self.assertEqual(max(range(3), key=lambda i: colours[axis][i]), axis, colours[axis])
        x, y = self.placeOn(0, 0.9)
        self.viewport.hover(x, y)
        self.assertTrue(self.viewport.isDirty())
        self.assertNotEqual(self.colourAt(x, y), colours[0])
        self.viewport.hover()
        self.assertEqual(self.colourAt(x, y), colours[0])
        self.viewport.deactivateAllManipulators(True)
        self.assertEqual(self.pixels(), plain)

    def testTheyAreAsLargeAtAnyDistance(self):
        counts = []
        for factor in (1.0, 5.0):
            self.show()
            self.view.frame([-3 * factor, 3 * factor] * 3)
            plain = self.pixels()
            self.activate()
            shown = self.pixels()
            counts.append(sum(1 for i in range(0, len(plain), 4)
                              if plain[i:i + 3] != shown[i:i + 3]))
            self.session.close()
        self.assertTrue(counts[0] > 500, counts)
        self.assertTrue(abs(counts[0] - counts[1]) < 0.15 * counts[0], counts)

    def testPicksOfTheViewportSeeThroughThem(self):
        self.show()
        x, y = [int(value) for value in self.pixelOf(self.position())]
        before = self.view.pick(x - 60, y - 60, 120, 120, deep=True)
        self.activate()
        self.assertEqual(self.view.pick(x - 60, y - 60, 120, 120, deep=True), before)
        self.assertTrue(before)

    def testItFollowsTheSelection(self):
        self.show()
        def shown():
            return [list(self.viewport.getActiveManipulatorByIndex(i).getLocationPaths()
                         .getNearestSample(0.0))
                    for i in range(self.viewport.getNumberOfActiveManipulators())]
        self.session.select([PATH])
        self.assertEqual(shown(), [])
        self.view.manipulate("TranslateManipulator")
        self.assertEqual(self.view.getManipulator(), "TranslateManipulator")
        self.assertEqual(shown(), [[PATH]])
        self.session.select(["/root/parent"])
        self.assertEqual(shown(), [["/root/parent"]])
        self.session.select([])
        self.assertEqual(shown(), [[]])
        self.assertRaises(RuntimeError, self.view.manipulate, "NoManipulator")
        self.assertEqual((self.view.getManipulator(), shown()), (None, []))

    def testItFitsLocationsOfTheSceneAndNoErrors(self):
        self.show()
        delegate = self.session.delegate
        name = "TranslateManipulator"
        self.assertEqual(delegate.getRegisteredManipulatorsInfo().getChildByName(
            name + ".displayName"), StringAttribute("Translate"))
        self.assertTrue(
            delegate.getCompatibleManipulatorsInfo([PATH]).getChildByName(name) is not None)
        self.session.setAttribute(PATH, "type", StringAttribute("error"))
        self.settle()
        self.assertTrue(
            delegate.getCompatibleManipulatorsInfo([PATH]).getChildByName(name) is None)


if __name__ == "__main__":
    unittest.main()
