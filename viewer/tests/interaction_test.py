"""How a window keeps up with its scene, and when it draws drafts."""
import os
import sys
import unittest

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))

from PyVlAttribute import IntAttribute  # noqa: E402

from interaction import Painter, Pump  # noqa: E402


class FakeViewport(object):
    def __init__(self, isSoftware=0):
        self.dirty = False
        self.options = {"isSoftwareRenderer": IntAttribute(isSoftware), "draft": IntAttribute(0)}

    def isDirty(self):
        return self.dirty

    def getOptionByName(self, name):
        return self.options[name]

    def setOptionByName(self, name, value):
        if self.options[name] != value:
            self.options[name] = value
            self.dirty = True


class FakeView(object):
    """A view that notes what is asked of it."""

    def __init__(self, isSoftware=0):
        self.viewport = FakeViewport(isSoftware)
        self.calls = []
        self.moved = False

    def isMovedByUser(self):
        return self.moved

    def frame(self):
        self.calls.append("frame")

    def draw(self):
        isDraft = self.viewport.options["draft"].getValue()
        self.calls.append("draft" if isDraft else "fine")
        self.viewport.dirty = False

    def takeCalls(self):
        calls, self.calls = self.calls, []
        return calls


class FakeDelegate(object):
    processing = True
    pumped = 0

    def processLocationEvents(self):
        self.pumped += 1

    def isProcessing(self):
        return self.processing


class FakeSession(object):
    toCome = 0

    def __init__(self):
        self.delegate = FakeDelegate()

    def countLocationsToCome(self):
        return self.toCome


class PumpTest(unittest.TestCase):
    def setUp(self):
        self.session = FakeSession()
        self.view = FakeView()
        self.loads = []
        self.pump = Pump(self.session, self.view, lambda: self.loads.append(1))

    def testFramesOnceWhenTheSceneIsThere(self):
        self.pump.tick()
        self.assertEqual((self.view.calls, self.loads), ([], []))
        self.session.delegate.processing = False
        self.pump.tick()
        self.session.delegate.processing = True
        self.pump.tick()
        self.session.delegate.processing = False
        self.pump.tick()
        self.assertEqual((self.view.calls, self.loads), (["frame"], [1]))
        self.assertEqual(self.session.delegate.pumped, 4)

    def testTellsHowMuchIsToComeUntilTheSceneIsThere(self):
        self.assertEqual(self.pump.progress, "")
        self.session.toCome = 12
        self.pump.tick()
        self.assertEqual(self.pump.progress, ", loading, 12 to come")
        self.session.delegate.processing = False
        self.pump.tick()
        self.assertEqual(self.pump.progress, "")
        self.session.delegate.processing = True
        self.pump.tick()
        self.assertEqual(self.pump.progress, "", "what changes later is no loading")

    def testDoesNotFrameOverTheUsersOwnView(self):
        self.view.moved = True
        self.session.delegate.processing = False
        self.pump.tick()
        self.assertEqual((self.view.calls, self.loads), ([], [1]))

    def testDrawsOnlyWhatIsDirty(self):
        self.pump.tick()
        self.view.viewport.dirty = True
        self.pump.tick()
        self.pump.tick()
        self.assertEqual(self.view.calls, ["fine"])


class PainterTest(unittest.TestCase):
    def start(self, isSoftware):
        self.now = 0.0
        self.view = FakeView(isSoftware)
        self.painter = Painter(self.view, lambda: self.now)

    def tick(self, now, dirty=False):
        self.now = now
        self.view.viewport.dirty = self.view.viewport.dirty or dirty
        self.painter.tick()
        return self.view.takeCalls()

    def testOnAProcessorMotionIsDrawnInDraftsAndRestFinely(self):
        self.start(1)
        self.assertEqual(self.tick(0.0, dirty=True), ["draft"])
        self.assertEqual(self.tick(0.1), [])
        self.assertEqual(self.tick(0.15, dirty=True), ["draft"])
        self.assertEqual(self.tick(0.3), [], "0.15 s are no rest")
        self.assertEqual(self.tick(0.36), ["fine"])
        self.assertEqual(self.tick(5.0), [])

    def testMotionAfterRestIsDrawnInDraftsAgain(self):
        self.start(1)
        self.tick(0.0, dirty=True)
        self.tick(1.0)
        self.assertEqual(self.tick(2.0, dirty=True), ["draft"])
        self.assertEqual(self.tick(2.3), ["fine"])

    def testOnAGraphicsCardEverythingIsDrawnFinely(self):
        self.start(0)
        self.assertEqual(self.tick(0.0, dirty=True), ["fine"])
        self.assertEqual(self.tick(1.0), [])


if __name__ == "__main__":
    unittest.main()
