"""Two viewports of one delegate in two windows of a screen: their pictures and their picks."""
import os
import unittest

import PyScenelib  # offers the scene runtime
import PyVlPluginSystem
from PyVlAttribute import GroupAttribute, IntAttribute

import ViewerAPI
from tkwindows import TkWindowTest

RED, GREEN, BLACK = (255, 0, 0), (0, 255, 0), (0, 0, 0)


def setUpModule():
    PyVlPluginSystem.loadLibrary(os.path.join(os.environ["OSTREL_TEST_PLUGINS"],
                                              "PickingPlugins.so"))
    PyVlPluginSystem.loadLibrary(os.path.join(os.environ["OSTREL_TEST_PLUGINS"],
                                              "ProbePlugins.so"))


class View(object):
    """A viewport in a frame of its own, with a tile in the middle of the viewport itself and one at
    the top left of a layer that caches its ids."""

    def __init__(self, test, name, width, height, color):
        self.test = test
        self.name = name
        self.color = color
        self.frame = test.addFrame(width, height)
        self.viewport = test.delegate.addViewport("TileViewport", name)
        self.layer = self.viewport.addLayer("CachedTileLayer", "l")
        self.viewport.resize(width, height)
        self.viewport.setup(self.frame.winfo_id())
        self.placeTiles()

    def size(self):
        return self.frame.winfo_width(), self.frame.winfo_height()

    def placeTiles(self):
        width, height = self.size()
        red, green, blue = self.color
        color = red << 16 | green << 8 | blue
        self.viewport.setOptionByName("tiles", IntAttribute(
            [width // 2 - 5, height // 2 - 5, 10, 10, 50, color]))
        self.layer.setOptionByName("tiles", IntAttribute([0, 0, 6, 6, 50, color]))

    def resize(self, width, height):
        self.frame.config(width=width, height=height)
        self.test.root.update()
        self.viewport.resize(*self.size())
        self.placeTiles()

    def end(self):
        self.test.delegate.removeViewport(self.name)
        self.frame.destroy()
        self.test.root.update()

    def pick(self, target, x, y):
        target.setOptionByName("pick", IntAttribute([x, y, 1, 1, 0]))
        return [int(name) for name, _ in target.getOptionByName("picked")]

    def assertPicks(self):
        width, height = self.size()
        for target, inside, outside in (
                (self.viewport, (width // 2 - 5, height // 2 - 5), (width // 2 - 6, height // 2)),
                (self.viewport, (width // 2 + 4, height // 2 + 4), (width // 2, height // 2 + 5)),
                (self.layer, (0, 0), (6, 0)), (self.layer, (5, 5), (width // 2, height // 2))):
            self.test.assertEqual(([0], []), (self.pick(target, *inside),
                                              self.pick(target, *outside)),
                                  (self.name, inside, outside))

    def assertShows(self):
        """Both tiles are in the window, and black around them."""
        width, height = self.size()
        expected = [self.color, self.color, self.color, BLACK, BLACK]

        def see(picture):
            return [picture.pixels[y * width + x] for x, y in (
                (width // 2, height // 2), (0, 0), (5, 5), (6, 6), (width - 1, height - 1))]

        picture = self.test.waitForPicture(self.frame, lambda shown: see(shown) == expected,
                                           self.viewport.draw)
        self.test.assertEqual(expected, see(picture), self.name)


class WindowPickingTest(TkWindowTest):

    def setUp(self):
        super(WindowPickingTest, self).setUp()
        self.delegate = ViewerAPI.CreateViewerDelegate("ProbeDelegate")

    def tearDown(self):
        self.delegate.cleanup()
        self.delegate = None
        super(WindowPickingTest, self).tearDown()

    def addTwo(self):
        return [View(self, "first", 120, 90, RED), View(self, "second", 200, 150, GREEN)]

    def assertAllRight(self, views):
        # A pick clears its window's buffers, and no other's picture.
        for view in views:
            view.assertShows()
        for view in views + views[::-1]:
            view.assertPicks()
        for view in views:
            view.assertShows()
        self.assertEqual([], self.log)

    def testWindowsOfDifferentSize(self):
        self.assertAllRight(self.addTwo())

    def testWindowsThatAreResized(self):
        first, second = views = self.addTwo()
        self.assertAllRight(views)
        first.resize(260, 70)
        self.assertAllRight(views)
        second.resize(50, 180)
        self.assertAllRight(views)
        first.resize(30, 30)
        self.assertAllRight(views)

    def testWindowThatIsHiddenAndShownAgain(self):
        first, second = self.addTwo()
        self.assertAllRight([first, second])
        first.frame.pack_forget()
        self.root.update()
        first.viewport.draw()
        first.assertPicks()
        self.assertAllRight([second])
        first.frame.pack()
        self.root.update()
        self.assertAllRight([first, second])

    def testWindowsThatEndInEitherOrder(self):
        for ending in (0, 1):
            views = self.addTwo()
            self.assertAllRight(views)
            views.pop(ending).end()
            self.assertAllRight(views)
            views.pop().end()

    def testWindowsThatAreDestroyedBeforeTheirViewportsInEitherOrder(self):
        for ending in (0, 1):
            views = self.addTwo()
            self.assertAllRight(views)
            gone = views.pop(ending)
            gone.frame.destroy()
            self.root.update()
            gone.viewport.draw()
            gone.viewport.resize(40, 40)
            for target in (gone.viewport, gone.layer):
                gone.pick(target, 1, 1)
            staying = views[0]
            staying.assertShows()
            staying.assertPicks()
            self.delegate.removeViewport(gone.name)
            staying.assertShows()
            staying.assertPicks()
            staying.end()
            del self.log[:]

    def testSizeZeroKeepsTheSurfaceUntilThereIsASizeAgain(self):
        first, second = views = self.addTwo()
        self.assertAllRight(views)
        first.viewport.resize(0, 0)
        first.viewport.draw()
        self.assertEqual([], first.pick(first.viewport, 0, 0))
        self.assertAllRight([second])
        first.viewport.resize(*first.size())
        self.assertAllRight(views)

    def testWindowOfAnotherVisualIsLoggedAndPicksNothing(self):
        first, second = views = self.addTwo()
        self.assertAllRight(views)
        other = self.addFrameOfAnotherVisual(60, 60)
        viewport = self.delegate.addViewport("TileViewport", "refused")
        viewport.resize(60, 60)
        viewport.setup(other.winfo_id())
        self.assertEqual([("error", "VlViewportHost", "Failed to set pixel format.",
                           "viewer_api/src/vlviewporthost", 834)], self.log)
        del self.log[:]
        viewport.draw()
        self.assertFalse(viewport.event(GroupAttribute()))
        self.delegate.removeViewport("refused")
        self.assertAllRight(views)

    def testIdThatIsNoWindowIsLoggedAndPicksNothing(self):
        views = self.addTwo()
        viewport = self.delegate.addViewport("TileViewport", "refused")
        viewport.resize(60, 60)
        viewport.setup(1)
        self.assertEqual([("error", "VlViewportHost", "Invalid display device.",
                           "viewer_api/src/vlviewporthost", 801)], self.log)
        del self.log[:]
        viewport.setOptionByName("pick", IntAttribute([0, 0, 1, 1, 1]))
        self.assertEqual(0, viewport.getOptionByName("picked").getNumberOfChildren())
        self.delegate.removeViewport("refused")
        self.assertAllRight(views)


if __name__ == "__main__":
    unittest.main()
