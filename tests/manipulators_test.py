"""The layer that shows manipulators and brings the mouse to them, and how they follow the
selection."""
import unittest

from gizmos import PATH, WIDTH, ManipulatorTest
from PyVlAttribute import StringAttribute


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
