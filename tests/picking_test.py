"""Picks through a real plug-in library and a real context, in off-screen windows."""
import os
import re
import unittest

import PyScenelib  # offers the scene runtime
import PyVlPluginSystem
import PyWindowSystem
from PyVlAttribute import IntAttribute, StringAttribute

import ViewerAPI

FOLDER = os.path.dirname(os.path.abspath(__file__))
PLUGINS = os.environ["OSTREL_TEST_PLUGINS"]
WIDTH, HEIGHT = 64, 48
RED, GREEN, BLUE = 0xFF0000, 0x00FF00, 0x0000FF
BLACK = 0x000000

# x, y, width, height, depth in percent, colour.
LEFT = (0, 0, 20, 10, 50, RED)
RIGHT = (30, 0, 20, 10, 50, GREEN)
BEHIND_LEFT = (0, 0, 40, 10, 75, BLUE)


def setUpModule():
    for library in ("PickingPlugins.so", "ProbePlugins.so"):
        PyVlPluginSystem.loadLibrary(os.path.join(PLUGINS, library))


class PickingTest(unittest.TestCase):

    def setUp(self):
        self.delegate = ViewerAPI.CreateViewerDelegate("ProbeDelegate")
        self.windows = []
        self.viewport = self.addViewport("v")

    def tearDown(self):
        self.viewport = None
        self.delegate.cleanup()
        self.delegate = None
        for window in self.windows:
            PyWindowSystem.destroyOffscreen(window)

    def addViewport(self, name, width=WIDTH, height=HEIGHT, plugin="TileViewport"):
        self.windows.append(PyWindowSystem.createOffscreen(width, height))
        viewport = self.delegate.addViewport(plugin, name)
        viewport.resize(width, height)
        viewport.setup(self.windows[-1])
        return viewport

    def show(self, target, *tiles):
        target.setOptionByName("tiles", IntAttribute([value for tile in tiles for value in tile]))

    def pick(self, target, x, y, width=1, height=1, deep=0):
        """The ids hit, and the tiles that they stand for."""
        target.setOptionByName("pick", IntAttribute([x, y, width, height, deep]))
        picked = target.getOptionByName("picked")
        return None if picked is None else [(int(name), tile.getValue())
                                            for name, tile in picked]

    def depth(self, target):
        return target.getOptionByName("depth").getValue()

    def passes(self, target):
        return target.getOptionByName("passes").getValue()

    def pixel(self, x, y, window=None):
        width, _, pixels = PyWindowSystem.readPixels(window or self.windows[0])
        red, green, blue = bytearray(pixels)[4 * (y * width + x):][:3]
        return red << 16 | green << 8 | blue

    def testPickAnswersWhatIsSeenWhere(self):
        self.show(self.viewport, LEFT, RIGHT)
        self.assertEqual([(0, 0)], self.pick(self.viewport, 0, 0))
        self.assertEqual([(0, 0)], self.pick(self.viewport, 19, 9))
        self.assertEqual([], self.pick(self.viewport, 20, 9))
        self.assertEqual([], self.pick(self.viewport, 19, 10))
        self.assertEqual([(1, 1)], self.pick(self.viewport, 30, 0))
        self.assertEqual([(0, 0), (1, 1)], self.pick(self.viewport, 19, 0, 12, 1))

    def testPickedTilesAreThoseOfThePicture(self):
        self.show(self.viewport, LEFT, RIGHT, BEHIND_LEFT)
        colors = {(): BLACK, (0,): RED, (1,): GREEN, (2,): BLUE}
        self.viewport.draw()
        for x in range(0, WIDTH, 3):
            for y in range(0, HEIGHT, 3):
                tiles = tuple(tile for _, tile in self.pick(self.viewport, x, y))
                self.assertEqual(colors[tiles], self.pixel(x, y), (x, y))

    def testIdsBeyond24BitsAreExact(self):
        first = 2 ** 24
        self.show(self.viewport, *[(x, 0, 1, 1, 50, RED) for x in range(4)])
        self.viewport.setOptionByName("objectsBefore", IntAttribute(first))
        self.assertEqual([(first + tile, tile) for tile in range(4)],
                         self.pick(self.viewport, 0, 0, 4, 1))

    def testDepthIsWrittenForOnePixel(self):
        self.show(self.viewport, LEFT)
        self.pick(self.viewport, 1, 1)
        self.assertAlmostEqual(0.5, self.depth(self.viewport), 6)
        self.pick(self.viewport, 50, 1)
        self.assertEqual(1.0, self.depth(self.viewport))
        self.pick(self.viewport, 1, 1, 2, 1)
        self.assertEqual(-1.0, self.depth(self.viewport))

    def testEmptyRegionGivesAnEmptyGroup(self):
        self.show(self.viewport, LEFT)
        for width, height in ((0, 1), (1, 0), (-1, 1), (1, -1), (-2, -2)):
            self.assertEqual([], self.pick(self.viewport, 0, 0, width, height))

    def testDeepPickFindsWhatLiesBehindAfterWhatLiesInFront(self):
        self.show(self.viewport, BEHIND_LEFT, LEFT)
        self.assertEqual([(1, 1)], self.pick(self.viewport, 5, 5))
        self.assertEqual([(1, 1), (0, 0)], self.pick(self.viewport, 5, 5, deep=1))
        self.assertEqual((3, 1.0), (self.passes(self.viewport), self.depth(self.viewport)))

    def testDeepPickEndsAfter100Passes(self):
        self.show(self.viewport, LEFT)
        self.viewport.setOptionByName("ignoreExcluded", IntAttribute(1))
        self.assertEqual([(0, 0)], self.pick(self.viewport, 5, 5, deep=1))
        self.assertEqual(100, self.passes(self.viewport))

    def testPickLeavesThePicture(self):
        self.show(self.viewport, LEFT)
        self.viewport.draw()
        self.pick(self.viewport, 5, 5)
        self.assertEqual(RED, self.pixel(5, 5))
        self.viewport.draw()
        self.assertEqual((RED, BLACK), (self.pixel(5, 5), self.pixel(25, 5)))

    def testLayerPicksItsOwnObjects(self):
        self.show(self.viewport, LEFT)
        layer = self.viewport.addLayer("TileLayer", "l")
        self.show(layer, RIGHT)
        self.assertEqual([], self.pick(layer, 5, 5))
        self.assertEqual([(0, 0)], self.pick(layer, 35, 5))
        self.assertEqual([], self.pick(self.viewport, 35, 5))
        self.assertEqual(1, self.passes(layer))

    def testCachedLayerShowsWhatWasDrawnLast(self):
        layer = self.viewport.addLayer("CachedTileLayer", "l")
        self.show(layer, LEFT)
        self.assertEqual([], self.pick(layer, 5, 5))
        self.viewport.draw()
        self.show(layer, RIGHT)
        self.assertEqual([(0, 0)], self.pick(layer, 5, 5))
        self.assertEqual([], self.pick(layer, 35, 5))
        self.assertEqual(0, self.passes(layer))
        self.viewport.draw()
        self.assertEqual([], self.pick(layer, 5, 5))
        self.assertEqual([(0, 0)], self.pick(layer, 35, 5))
        self.assertEqual((BLACK, GREEN), (self.pixel(5, 5), self.pixel(35, 5)))

    def testDeepPickOfACachedLayerDrawsAndKeepsTheCache(self):
        layer = self.viewport.addLayer("CachedTileLayer", "l")
        self.show(layer, LEFT, BEHIND_LEFT)
        self.viewport.draw()
        self.assertEqual([(0, 0), (1, 1)], self.pick(layer, 5, 5, deep=1))
        self.assertEqual(3, self.passes(layer))
        self.assertEqual([(0, 0)], self.pick(layer, 5, 5))
        self.assertEqual(0, self.passes(layer))

    def testCachedLayersDoNotMix(self):
        first = self.viewport.addLayer("CachedTileLayer", "first")
        second = self.viewport.addLayer("CachedTileLayer", "second")
        self.show(first, LEFT)
        self.show(second, RIGHT)
        self.viewport.draw()
        self.assertEqual(([(0, 0)], []), (self.pick(first, 5, 5), self.pick(first, 35, 5)))
        self.assertEqual(([], [(0, 0)]), (self.pick(second, 5, 5), self.pick(second, 35, 5)))
        self.viewport.removeLayer("first")
        self.assertEqual(([], [(0, 0)]), (self.pick(second, 5, 5), self.pick(second, 35, 5)))

    def testResizedViewportPicksByItsNewSize(self):
        far = (90, 70, 5, 5, 50, RED)
        layer = self.viewport.addLayer("CachedTileLayer", "l")
        for target in (self.viewport, layer):
            self.show(target, far)
        PyWindowSystem.resizeOffscreen(self.windows[0], 100, 80)
        self.viewport.resize(100, 80)
        self.assertEqual([], self.pick(layer, 92, 72))
        self.viewport.draw()
        for target in (self.viewport, layer):
            self.assertEqual([(0, 0)], self.pick(target, 92, 72))
            self.assertEqual([], self.pick(target, 89, 72))
        self.assertEqual(RED, self.pixel(92, 72))

    def testViewportWithoutASizePicksOnceItHasOne(self):
        viewport = self.addViewport("w")
        other = self.delegate.addViewport("TileViewport", "unsized")
        window = PyWindowSystem.createOffscreen(16, 16)
        self.windows.append(window)
        other.setup(window)
        self.show(other, LEFT)
        self.assertEqual([], self.pick(other, 1, 1))
        other.resize(16, 16)
        self.assertEqual([(0, 0)], self.pick(other, 1, 1))
        self.assertEqual([], self.pick(viewport, 1, 1))

    def testPickBeforeSetupIsEmpty(self):
        other = self.delegate.addViewport("TileViewport", "early")
        layer = other.addLayer("CachedTileLayer", "l")
        other.resize(16, 16)
        for target in (other, layer):
            self.show(target, LEFT)
            self.assertEqual([], self.pick(target, 1, 1))
        layer.draw()
        other.draw()

    def testViewportsPickApartAndWhicheverEndsFirst(self):
        for ends, stays in (("v", "w"), ("w", "v")):
            self.delegate.removeViewport("v")
            self.viewport = None
            viewports = dict((name, self.addViewport(name)) for name in ("v", "w"))
            self.show(viewports["v"], LEFT)
            self.show(viewports["w"], BEHIND_LEFT, RIGHT)
            expected = {"v": ([(0, 0)], []), "w": ([(0, 0)], [(1, 1)])}
            for name in ("v", "w", "v"):
                self.assertEqual(expected[name], (self.pick(viewports[name], 5, 5),
                                                  self.pick(viewports[name], 45, 5)), name)
            self.delegate.removeViewport(ends)
            viewport = viewports[stays]
            self.assertEqual(expected[stays], (self.pick(viewport, 5, 5),
                                               self.pick(viewport, 45, 5)), stays)
            viewport.draw()
            self.delegate.removeViewport(stays)

    def testWindowThatIsGoneRaisesNothing(self):
        other = self.addViewport("gone")
        layer = other.addLayer("CachedTileLayer", "l")
        PyWindowSystem.destroyOffscreen(self.windows.pop())
        for target in (other, layer):
            self.show(target, LEFT)
            self.assertEqual([], self.pick(target, 1, 1))
        other.draw()
        other.resize(20, 20)
        self.show(self.viewport, LEFT)
        self.assertEqual([(0, 0)], self.pick(self.viewport, 1, 1))

    def testPluginThatThrowsWhileItDrawsIdsDisturbsNoLaterPick(self):
        probe = self.addViewport("probe", plugin="ProbeViewport")
        command = lambda text: probe.setOptionByName("command", StringAttribute(text))
        command("throwStd:no shader@pickerDraw#1")
        with self.assertRaises(RuntimeError) as raised:
            command("call:viewport.getPickedObjects 0 0 1 1 0")
        self.assertEqual("no shader", str(raised.exception))
        self.show(self.viewport, LEFT)
        self.viewport.draw()
        self.assertEqual(RED, self.pixel(5, 5))
        self.assertEqual([(0, 0)], self.pick(self.viewport, 5, 5))

    def testShaderOfThePluginGuideIsTheOneThatTheseTestsDrawWith(self):
        with open(os.path.join(FOLDER, "..", "docs", "plugin-guide.md")) as guide:
            shader = re.search("```glsl\n(.*?)```", guide.read(), re.DOTALL).group(1)
        with open(os.path.join(FOLDER, "picking_plugins", "tilepainter.cpp")) as painter:
            self.assertIn(shader, painter.read())


if __name__ == "__main__":
    unittest.main()
