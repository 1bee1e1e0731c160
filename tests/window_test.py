"""A scene in windows of a toolkit that knows nothing of OpenGL, seen through the X server."""
import os
import shutil
import tempfile
import unittest

import PyVlAttribute

import ostrel
from ostrel import events
from tkwindows import DEADLINE, TkWindowTest

CUBE = """mtllib cube.mtl
v -1 0 -1\nv 1 0 -1\nv 1 2 -1\nv -1 2 -1
v -1 0 1\nv 1 0 1\nv 1 2 1\nv -1 2 1
usemtl %s
f 1 4 3 2\nf 5 6 7 8\nf 1 2 6 5\nf 2 3 7 6\nf 3 4 8 7\nf 4 1 5 8
"""
MATERIALS = """newmtl red\nKd 0.8 0.02 0.02
newmtl green\nKd 0.02 0.8 0.02
"""

# The grid's red axis is in the pictures too: a line of pixels.
AXIS_SHARE = 0.01


def isRed(pixel):
    red, green, blue = pixel
    return red > 60 and red > 2 * green and red > 2 * blue


def isGreen(pixel):
    red, green, blue = pixel
    return green > 60 and green > 2 * red and green > 2 * blue


def share(picture, predicate):
    return float(sum(1 for pixel in picture.pixels if predicate(pixel))) / len(picture.pixels)


def centre(picture):
    return picture.pixels[picture.height // 2 * picture.width + picture.width // 2]


def corners(picture):
    last = picture.width - 1
    return [picture.pixels[row * picture.width + column]
            for row in (0, picture.height - 1) for column in (0, last)]


class WindowTest(TkWindowTest):

    def setUp(self):
        super(WindowTest, self).setUp()
        self.folder = tempfile.mkdtemp()
        with open(os.path.join(self.folder, "cube.mtl"), "w") as materials:
            materials.write(MATERIALS)
        self.session = ostrel.Session()

    def tearDown(self):
        self.session.close()
        shutil.rmtree(self.folder)
        super(WindowTest, self).tearDown()

    def importCube(self, colour):
        path = os.path.join(self.folder, colour + ".obj")
        with open(path, "w") as model:
            model.write(CUBE % colour)
        op = self.session.importModel(path)
        self.assertTrue(self.session.pump(timeout=DEADLINE))
        self.assertEqual(self.session.getErrors(), [])
        return op

    def addFrame(self, width=200, height=150, **options):
        return super(WindowTest, self).addFrame(width, height, **options)

    def addView(self, frame, name):
        view = self.session.addView(frame.winfo_id(), frame.winfo_width(), frame.winfo_height(),
                                    name)
        view.frame()
        return view

    def see(self, frame, predicate, view=None):
        """The picture in the frame once its centre is as expected."""
        picture = self.waitForPicture(frame, lambda seen: predicate(centre(seen)),
                                      view.draw if view else lambda: None)
        self.assertTrue(predicate(centre(picture)),
                        "%r in the middle" % (centre(picture),))
        return picture

    def assertShowsCube(self, picture, predicate):
        self.assertGreater(share(picture, predicate), 0.05)
        self.assertLess(share(picture, predicate), 0.9)
        for corner in corners(picture):
            self.assertFalse(predicate(corner), "%r in a corner" % (corner,))

    def testDrawShowsAModelInTheWindow(self):
        self.importCube("red")
        frame = self.addFrame()
        view = self.addView(frame, "main")
        view.draw()
        self.assertShowsCube(self.see(frame, isRed), isRed)

    def testWindowShowsAChangeOfTheSceneAtTheNextDraw(self):
        op = self.importCube("red")
        frame = self.addFrame()
        view = self.addView(frame, "main")
        view.draw()
        self.see(frame, isRed)
        self.session.removeOp(op)
        self.importCube("green")
        view.draw()
        picture = self.see(frame, isGreen)
        self.assertShowsCube(picture, isGreen)
        self.assertLess(share(picture, isRed), AXIS_SHARE)

    def testSecondViewportSharesTheContext(self):
        self.importCube("red")
        first, second = self.addFrame(), self.addFrame(300, 200)
        firstView = self.addView(first, "first")
        firstView.draw()
        self.see(first, isRed)
        # What the first has uploaded has to serve the second, and the first still.
        secondView = self.addView(second, "second")
        secondView.draw()
        self.assertShowsCube(self.see(second, isRed), isRed)
        firstView.orbit.target = (1000.0, 0.0, 0.0)
        firstView.updateCamera()
        firstView.draw()
        self.see(first, lambda pixel: not isRed(pixel))
        firstView.frame()
        firstView.draw()
        self.assertShowsCube(self.see(first, isRed), isRed)

    def testViewportsKeepTheirOwnPictures(self):
        self.importCube("red")
        first, second = self.addFrame(), self.addFrame()
        firstView, secondView = self.addView(first, "first"), self.addView(second, "second")
        # One looks at the cube, the other past it.
        secondView.orbit.target = (1000.0, 0.0, 0.0)
        secondView.updateCamera()
        for _ in range(3):
            firstView.draw()
            secondView.draw()
        self.see(first, isRed)
        picture = self.see(second, lambda pixel: not isRed(pixel))
        self.assertLess(share(picture, isRed), AXIS_SHARE)

    def testViewportThatLeavesDoesNotDisturbTheOther(self):
        self.importCube("red")
        for leaving in ("first", "second"):
            frames = {"first": self.addFrame(), "second": self.addFrame()}
            views = dict((name, self.addView(frame, name)) for name, frame in frames.items())
            for view in views.values():
                view.draw()
            self.session.delegate.removeViewport(leaving)
            frames.pop(leaving).destroy()
            views.pop(leaving)
            (name, view), = views.items()
            view.draw()
            self.assertShowsCube(self.see(frames[name], isRed), isRed)
            self.session.delegate.removeViewport(name)
            frames[name].destroy()

    def testResizedWindowIsFilled(self):
        self.importCube("red")
        frame = self.addFrame(100, 80)
        view = self.addView(frame, "main")
        view.draw()
        self.see(frame, isRed)
        frame.config(width=320, height=240)
        self.root.update()
        view.resize(frame.winfo_width(), frame.winfo_height())
        view.frame()
        picture = self.see(frame, isRed, view)
        self.assertEqual((picture.width, picture.height), (320, 240))
        self.assertShowsCube(picture, isRed)

    def testClickInTheWindowSelectsAndIsSeen(self):
        self.importCube("red")
        frame = self.addFrame()
        view = self.addView(frame, "main")
        view.draw()
        plain = self.see(frame, isRed).pixels
        x, y = frame.winfo_width() // 2, frame.winfo_height() // 2
        for build in (events.mousePress, events.mouseRelease):
            self.assertTrue(view.viewport.event(build(x, y, "left")))
        selected, = self.session.getSelection()
        self.assertTrue(selected.startswith("/root/red_obj"), selected)
        self.assertTrue(view.viewport.isDirty())
        view.draw()
        picture = self.waitForPicture(frame, lambda seen: seen.pixels != plain)
        self.assertTrue(isRed(centre(picture)) and picture.pixels != plain,
                        "the selection is not seen")

    def testWheelInTheWindowFillsItWithWhatIsUnderTheCursor(self):
        self.importCube("red")
        frame = self.addFrame()
        view = self.addView(frame, "main")
        for _ in range(20):
            view.viewport.event(events.wheel(frame.winfo_width() // 2, frame.winfo_height() // 2,
                                             1.0))
        view.draw()
        self.assertGreater(share(self.see(frame, isRed), isRed), 0.95)

    def testWindowThatIsGoneRaisesNothing(self):
        self.importCube("red")
        gone, staying = self.addFrame(), self.addFrame()
        goneView, stayingView = self.addView(gone, "gone"), self.addView(staying, "staying")
        goneView.draw()
        gone.destroy()
        self.root.update()
        goneView.draw()
        goneView.resize(50, 50)
        stayingView.draw()
        self.assertShowsCube(self.see(staying, isRed), isRed)
        self.session.delegate.removeViewport("gone")

    def assertRefused(self, windowId, text, line):
        """A viewport in this window is set up without a context: that is logged, no more."""
        del self.log[:]
        viewport = self.session.delegate.addViewport("SceneViewport", "refused")
        viewport.setup(windowId)
        self.assertEqual(self.log, [("error", "VlViewportHost", text,
                                     "viewer_api/src/vlviewporthost", line)])
        viewport.draw()
        self.assertFalse(viewport.event(PyVlAttribute.GroupAttribute()))
        self.session.delegate.removeViewport("refused")

    def testIdThatIsNoWindowIsLoggedAndDisturbsNobody(self):
        self.importCube("red")
        frame = self.addFrame()
        view = self.addView(frame, "main")
        self.assertRefused(1, "Invalid display device.", 801)
        view.draw()
        self.assertShowsCube(self.see(frame, isRed), isRed)

    def testWindowOfAnotherVisualIsLoggedAndDisturbsNobody(self):
        self.importCube("red")
        frame = self.addFrame()
        view = self.addView(frame, "main")
        view.draw()
        other = self.addFrameOfAnotherVisual(200, 150)
        self.assertRefused(other.winfo_id(), "Failed to set pixel format.", 834)
        view.draw()
        self.assertShowsCube(self.see(frame, isRed), isRed)


if __name__ == "__main__":
    unittest.main()
