"""Manipulators, layers, viewports and delegates that end while a gizmo is dragged: from outside, and
from within what the drag itself calls. What is kept of them says so, and nothing is left behind."""
import ctypes
import gc
import sys
import unittest

import ostrel
import PyScenelib
import PyVlLogging
import ViewerAPI
from interrupteddrags_test import A, B, InterruptedDragTest
from gizmos import HEIGHT, WIDTH
from ostrel import events
from PyVlAttribute import StringAttribute

if sys.version_info[0] >= 3:
    from io import StringIO
else:
    from StringIO import StringIO

#: Raises the error that a call has left pending beside its answer, as calls may on Python 2.
raisePending = ctypes.pythonapi.PyErr_Occurred

COOKED = "__LOOKTHROUGH_LOCATION_COOKED"
DESTROYED = "Underlying C++ %s has been destroyed"
NAME = "TranslateManipulator"


class WatchedSession(ostrel.Session):
    """Does something, once, when the drag calls it next at a place of that name."""

    def __init__(self):
        self.place, self.action = None, None
        ostrel.Session.__init__(self)

    def at(self, place, action):
        self.place, self.action = place, action

    def reach(self, place):
        if place == self.place:
            action, self.place, self.action = self.action, None, None
            action()

    def isLocationEditable(self, path):
        answer = ostrel.Session.isLocationEditable(self, path)
        self.reach("value of " + path)
        return answer

    def commitEdits(self, *arguments):
        commit = ostrel.Session.commitEdits(self, *arguments)
        self.reach("commit")
        return commit

    def isNodeEditable(self, name):
        answer = ostrel.Session.isNodeEditable(self, name)
        self.reach("question")
        return answer


#: Where a drag comes through.
PLACES = ("value of " + A, "value of " + B, "commit", "look-through", "question")


class EndedDragTest(InterruptedDragTest):
    sessionClass = WatchedSession

    def setUp(self):
        InterruptedDragTest.setUp(self)
        self.layer = self.viewport.getLayer("manipulators")
        self.other = self.session.addOffscreenView(16, 16, "other")
        self.other.lookThrough(A)
        self.settle()
        session = self.session
        self.delegate.registerCallback(COOKED, lambda payload: session.reach("look-through"))

    def assertRaises_(self, kind, call, *arguments):
        try:
            call(*arguments)
        except RuntimeError as error:
            self.assertEqual(DESTROYED % kind, str(error))
        else:
            self.fail("%s lives" % kind)

    def assertManipulatorIsDead(self):
        for call, arguments in (("getPluginName", ()), ("getTags", ()), ("getLocationPaths", ()),
                                ("getOptionByName", ("readout",)),
                                ("setOptionByName", ("axes", StringAttribute("local")))):
            self.assertRaises_("manipulator handle", getattr(self.manipulator, call), *arguments)

    def assertViewportIsDead(self):
        self.assertManipulatorIsDead()
        self.assertRaises_("viewport", self.viewport.event,
                           events.mouseMove(self.x, self.y, ["left"]))
        self.assertRaises_("viewport", self.viewport.draw)
        self.assertRaises_("viewport", self.viewport.activateManipulator, NAME, [A], True)
        self.assertRaises_("layer", self.layer.draw)

    # What may happen.

    def deactivate(self):
        self.viewport.deactivateManipulator(NAME, True)
        self.assertManipulatorIsDead()  # also in its own call

    def deactivateAll(self):
        self.viewport.deactivateAllManipulators(True)
        self.assertManipulatorIsDead()

    def replace(self):
        self.deactivate()
        self.viewport.activateManipulator(NAME, [A, B], True)

    def removeLayer(self):
        self.viewport.removeLayer("manipulators")

    def removeViewport(self):
        self.delegate.removeViewport("picture")

    def removeAllViewports(self):
        self.removeViewport()
        self.delegate.removeViewport("other")

    def close(self):
        self.session.close()
        self.delegate = None

    def letGo(self):
        """Of everything, without a word to the viewer."""
        ViewerAPI.setEditor(self.session._edit, None)
        self.view = self.other = self.delegate = self.session._delegate = None
        gc.collect()

    def escape(self):
        self.viewport.event(events.keyPress("Escape"))

    def moveAgain(self):
        self.viewport.event(events.mouseMove(self.x + 40, self.y, ["left"]))

    def releaseAgain(self):
        self.viewport.event(events.mouseRelease(self.x + 40, self.y, "left"))

    def pressAgain(self):
        self.viewport.event(events.mousePress(self.x, self.y, "left"))

    def pump(self):
        self.delegate.processLocationEvents()

    def drawAgain(self):
        self.view.draw()

    def undo(self):
        self.session.undo()

    def selectOther(self):
        self.session.select([B])

    def closeParent(self):
        self.delegate.closeLocations(["/root/set"])
        self.delegate.processLocationEvents()

    def flush(self):
        self.delegate.flushCaches()

    def fail_(self):
        raise ValueError("in the application")

    ENDS = (deactivate, deactivateAll, replace, removeViewport, removeAllViewports, close, letGo)
    OTHERS = (removeLayer, escape, moveAgain, releaseAgain, pressAgain, pump, drawAgain, undo,
              selectOther, closeParent, flush, fail_)

    # What has to hold afterwards.

    def assertIsDead(self, action):
        """What the action has ended, once it has returned to its caller."""
        if action in self.ENDS:
            self.assertManipulatorIsDead()
        if action.__name__ in ("removeViewport", "removeAllViewports", "close", "letGo"):
            self.assertViewportIsDead()
        if action.__name__ == "removeLayer":
            self.assertRaises_("layer", self.layer.draw)

    def send(self, event):
        """Tells the viewport, as long as it is there. Errors of the application come out."""
        try:
            self.viewport.event(event)
            raisePending()
        except RuntimeError as error:
            self.assertTrue(str(error) == DESTROYED % "viewport" or
                            "in the application" in str(error), error)
        except ValueError as error:
            self.assertEqual("in the application", str(error))

    def assertAllIsWell(self, message):
        """The viewer is up with the scene, and a drag works as ever."""
        if self.session._delegate is None:
            return
        self.assertTrue(self.session.pump(timeout=10), message)
        self.delegate.openLocations(["/root/set"])
        PyScenelib.flushCaches()
        self.settle()
        self.assertFalse(self.delegate.isFrozenDueToManipulation(), message)
        for path in (A, B):
            self.assertTrue(self.delegate.getLiveAttributes(path) is None, message)
        self.assertTrue(abs(self.way(A) - self.way(B)) < 1e-9, message)
        self.delegate.removeViewport("picture")
        self.view = self.session.addOffscreenView(WIDTH, HEIGHT, "next")
        self.view.frame([-3, 3, -3, 3, -3, 3])
        self.viewport = self.view.viewport
        self.activate([A, B])
        before = self.way(A)
        self.begin()
        self.drag()
        self.end()
        self.assertTrue(self.way(A) > before + 0.1, message)
        self.assertTrue(abs(self.way(A) - self.way(B)) < 1e-9, message)


class FromOutsideTest(EndedDragTest):
    def check(self, action, isShown):
        self.begin()
        if isShown:
            self.drag()
        action(self)
        self.assertIsDead(action)
        if action.__name__ in ("deactivate", "removeLayer", "removeViewport"):
            self.settle()
            self.assertEqual((0.0, 0.0), (self.way(A), self.way(B)), "taken back")
            self.assertFalse(self.session.canUndo())
        self.send(events.mouseRelease(self.x + 30, self.y, "left"))
        self.assertAllIsWell(action.__name__)


class LostReleaseTest(EndedDragTest):
    def testAMoveWithoutTheButtonKeepsWhatTheLastOneWithItShowed(self):
        self.begin()
        self.drag(20)
        shown = self.way(A)
        self.viewport.event(events.mouseMove(self.x + 60, self.y))
        self.assertFalse(self.isDragging())
        self.settle()
        self.assertFalse(self.delegate.isFrozenDueToManipulation())
        self.assertTrue(shown > 0.1)
        self.assertEqual((shown, shown), (self.way(A), self.way(B)))
        self.assertTrue(self.session.undo())
        self.assertFalse(self.session.canUndo())


class FromWithinTest(EndedDragTest):
    @staticmethod
    def isReleased(action, reached):
        """The button, which goes up only once."""
        return bool(reached) and action.__name__ == "releaseAgain"

    def check(self, place, action):
        message = "%s at %s" % (action.__name__, place)
        reached = []

        def act():
            reached.append(place)
            action(self)
        self.begin()
        stderr, sys.stderr = sys.stderr, StringIO()
        logged, sink = [], PyVlLogging.getSink()
        PyVlLogging.setSink(lambda *line: logged.append(line))
        try:
            for by in (10, 20, 30):
                if by == 20:
                    self.session.at(place, act)
                self.send(events.mouseMove(self.x + by, self.y, ["left"]))
                if self.delegate is not None:
                    self.delegate.processLocationEvents()
                if self.isReleased(action, reached):
                    break
            if not self.isReleased(action, reached):
                self.send(events.mouseRelease(self.x + 30, self.y, "left"))
            if self.delegate is not None:
                self.assertTrue(self.session.pump(timeout=10), message)
            printed = sys.stderr.getvalue()
        finally:
            sys.stderr = stderr
            PyVlLogging.setSink(sink)
        self.assertEqual([], logged, message)
        self.assertEqual([place], reached, message)
        self.assertIsDead(action)
        if printed:
            self.assertTrue(printed.rstrip().endswith("ValueError: in the application"), printed)
        self.assertAllIsWell(message)


def _addTests():
    def add(cls, words, *arguments):
        def test(self):
            self.check(*arguments)
        setattr(cls, "test" + "".join(word[0].upper() + word[1:] for word in words.split()), test)

    for action in EndedDragTest.ENDS + EndedDragTest.OTHERS:
        name = action.__name__.rstrip("_")
        if name != "fail":
            add(FromOutsideTest, name + " beforeTheFirstMove", action, False)
            add(FromOutsideTest, name + " betweenMoves", action, True)
        for place in PLACES:
            add(FromWithinTest, name + " at " + place.replace("/", " "), place, action)


_addTests()

if __name__ == "__main__":
    unittest.main()
