"""The layer that shows manipulators and brings the mouse to them, and how they follow the
selection."""
import unittest

from gizmos import CAMERAS, HEIGHT, PATH, WIDTH, ManipulatorTest, add, worldAxis
from ostrel import events
from PyVlAttribute import StringAttribute


TOOLS = ("TranslateManipulator", "RotateManipulator", "ScaleManipulator")


class LayerTest(ManipulatorTest):
    def pixels(self):
        width, height, data = self.view.readPixels()
        return bytearray(data)

    def colourAt(self, x, y):
        return self.colours(x, y, 1, 1)[0]

    def colours(self, left, top, width, height):
        data = self.pixels()
        return [tuple(data[(y * WIDTH + x) * 4:(y * WIDTH + x) * 4 + 3])
                for y in range(top, top + height) for x in range(left, left + width)]

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

    def lookAlmostAlongZ(self, degrees):
        """At the thing, from so far to the side of its z axis; where it is seen."""
        orbit = self.view.orbit
        orbit.target, orbit.yaw, orbit.pitch = tuple(self.position()), degrees, 0.0
        self.view.updateCamera()
        self.view.draw()
        return self.pixelAt(self.position())

    def changed(self, begin, way):
        """What a drag from one pixel by a way changes: of the readout the numbers' indices."""
        before = []
        self.assertTrue(self.press(*begin))
        self.assertTrue(self.readout() is not None, "nothing is grasped at %r" % (begin,))
        for part in (0, 1):
            self.assertTrue(self.move(begin[0] + part * way[0], begin[1] + part * way[1]))
            before.append(self.readout())
        self.viewport.event(events.keyPress("Escape"))
        self.release(*begin)
        return [i for i in range(3) if abs(before[0][i] - before[1][i]) > 1e-6]

    def testAnAxisThatPointsAtTheCameraLeavesTheMiddleToItsHandle(self):
        for camera in CAMERAS:
            for tool in ("TranslateManipulator", "ScaleManipulator"):
                self.show(camera=camera)
                self.activate(name=tool)
                for degrees in (0, 6, 11, 14):
                    x, y = self.lookAlmostAlongZ(degrees)
                    for aside in (-4, 0, 4, 8):
                        self.assertTrue(len(self.changed((x + aside, y), (20, 30))) > 1,
                                        (camera, tool, degrees, aside))
                self.lookAlmostAlongZ(25)
                self.assertEqual([2], self.changed(self.placeOn(2, 0.95), (20, 0)))
                self.session.close()

    def testAPlaneThatIsSeenFromItsEdgeIsNotGrasped(self):
        for camera in CAMERAS:
            for tool in ("TranslateManipulator", "ScaleManipulator"):
                self.show(camera=camera)
                self.activate(name=tool)
                for degrees, expected in ((20, [1, 2]), (8, [1])):
                    self.lookAlmostAlongZ(degrees)
                    place = add(self.position(), [0, 0.4, 0.3], self.gizmoLength(self.position()))
                    self.assertEqual(expected, self.changed(self.pixelAt(place), (3, -30)),
                                     (camera, tool, degrees))
                self.session.close()

    def testHandlesFadeBeforeTheyGo(self):
        for camera in CAMERAS:
            self.show(camera=camera)
            differences = []
            for degrees in (30, 16, 13, 8):
                self.lookAlmostAlongZ(degrees)
                x, y = self.placeOn(2, 0.9)
                plain = self.colourAt(x, y)
                self.activate()
                differences.append(sum(abs(a - b) for a, b in zip(plain, self.colourAt(x, y))))
                self.viewport.deactivateAllManipulators(True)
            for more, less in zip(differences, differences[1:]):
                self.assertTrue(more > less + 20, (camera, differences))
            self.assertEqual(0, differences[3], camera)
            self.session.close()

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

    def testTheToolThatFollowsTheSelectionIsTheOneThatIsTold(self):
        self.show()
        self.session.select([PATH])
        for tool in TOOLS + TOOLS[:1]:
            self.view.manipulate(tool)
            self.assertEqual(self.view.getManipulator(), tool)
            self.assertEqual(self.viewport.getNumberOfActiveManipulators(), 1)
            self.assertEqual(self.viewport.getActiveManipulatorPluginName(0), tool)
        self.view.manipulate(None)
        self.assertEqual(self.viewport.getNumberOfActiveManipulators(), 0)

    def testAxesHoldForManipulatorsToCome(self):
        def axes():
            return self.viewport.getActiveManipulatorByIndex(0).getOptionByName("axes").getValue()
        self.show()
        self.session.select([PATH])
        self.view.manipulate("RotateManipulator")
        self.assertEqual((self.view.getManipulatorAxes(), axes()), ("world", "world"))
        self.view.setManipulatorAxes("local")
        self.assertEqual(axes(), "local")
        self.session.select(["/root/parent"])
        self.assertEqual(axes(), "local")
        self.view.manipulate("TranslateManipulator")
        self.assertEqual((self.view.getManipulatorAxes(), axes()), ("local", "local"))
        with self.assertRaises(ValueError) as context:
            self.view.setManipulatorAxes("sideways")
        self.assertEqual(str(context.exception), "\"sideways\" are no axes: \"world\" or \"local\"")
        self.assertEqual((self.view.getManipulatorAxes(), axes()), ("local", "local"))

    def testToolsFitLocationsOfTheSceneAndNoErrors(self):
        self.show()
        delegate = self.session.delegate
        for tool, name in zip(TOOLS, ("Translate", "Rotate", "Scale")):
            tags = delegate.getRegisteredManipulatorsInfo().getChildByName(tool)
            self.assertEqual(tags.getChildByName("displayName"), StringAttribute(name))
            self.assertEqual(tags.getChildByName("group"), StringAttribute("Transform"))
            self.assertTrue(
                delegate.getCompatibleManipulatorsInfo([PATH]).getChildByName(tool) is not None)
        self.session.setAttribute(PATH, "type", StringAttribute("error"))
        self.settle()
        for tool in TOOLS:
            self.assertTrue(
                delegate.getCompatibleManipulatorsInfo([PATH]).getChildByName(tool) is None)

    def testNumbersAreWrittenBesideThePointerWhileADragGoesOn(self):
        for tool in TOOLS:
            self.show()
            self.activate(name=tool)
            if tool == "RotateManipulator":
                x, y = self.pixelAt(add(self.position(), worldAxis(2),
                                        self.gizmoLength(self.position())))
            else:
                x, y = self.placeOn(0, 0.9)
            self.press(x, y)
            self.assertTrue(self.readout() is not None, tool)
            for place in ((30, 60), (WIDTH - 5, 100), (60, HEIGHT + 50), (-20, -20)):
                self.move(*place)
                # Light digits with a dark edge; from the margin on where they would not fit.
                left = max(5, min(place[0] + 14, WIDTH - 45))
                bottom = max(18, min(place[1] - 14, HEIGHT - 5))
                block = self.colours(left, bottom - 13, 40, 13)
                self.assertTrue(any(min(pixel) > 220 for pixel in block), (tool, place))
                self.assertTrue(any(max(pixel) < 40 for pixel in block), (tool, place))
            self.release(*place)
            self.session.close()


if __name__ == "__main__":
    unittest.main()
