"""Drags of a gizmo while something else happens to its locations: they go, come back, are no longer
what they were, or are edited from elsewhere. The drag goes on for those that are left; one without
any ends as with Escape."""
import unittest

import ostrel
import PyScenelib
from gizmos import DEADLINE, HEIGHT, PATH, WIDTH, ManipulatorTest, location
from ostrel import events
from PyVlAttribute import DoubleAttribute, GroupBuilder, StringAttribute

A, B = "/root/set/a", "/root/set/b"
PLACES = {"a": [-1.0, 0.0, 0.0], "b": [1.0, 0.0, 0.0]}


def scene(**locations):
    """The op's arguments for a group of these locations, attributes by name."""
    builder = GroupBuilder().set("staticScene.c.set.a.type", StringAttribute("group"))
    for name in sorted(locations):
        builder.set("staticScene.c.set.c.%s.a" % name, locations[name])
    return builder.build()


def thing(name, **more):
    builder = GroupBuilder().update(location(("placed.translate", PLACES[name])))
    for attribute, value in more.items():
        builder.set(attribute, value)
    return builder.build()


class InterruptedDragTest(ManipulatorTest):
    """The two things of PLACES, dragged by a gizmo between them along x."""

    sessionClass = ostrel.Session

    def setUp(self):
        self.session = self.sessionClass()
        self.addCleanup(lambda: self.session.close())
        self.literal = self.session.createOp("Scene.Literal", scene(a=thing("a"), b=thing("b")))
        self.delegate = self.session.delegate
        self.view = self.session.addOffscreenView(WIDTH, HEIGHT)
        self.settle()
        self.view.frame([-3, 3, -3, 3, -3, 3])
        self.viewport = self.view.viewport
        self.activate([A, B])

    def setScene(self, **locations):
        PyScenelib.setOpArgs(self.literal, "Scene.Literal", scene(**locations))

    def begin(self):
        """Presses on the middle of the x axis."""
        self.view.draw()
        middle = [(a + b) / 2 for a, b in zip(self.position(A), self.position(B))]
        middle[0] += 0.5 * self.gizmoLength(middle)
        self.x, self.y = [int(value) for value in self.pixelOf(middle)]
        self.assertTrue(self.press(self.x, self.y))
        self.assertTrue(self.isDragging())

    def drag(self, by=30):
        self.assertTrue(self.move(self.x + by, self.y), "the mouse is the manipulator's")
        self.delegate.processLocationEvents()

    def end(self, by=30):
        self.assertTrue(self.release(self.x + by, self.y))
        self.assertFalse(self.isDragging())
        self.settle()
        self.assertFalse(self.delegate.isFrozenDueToManipulation())

    def closeParent(self):
        self.delegate.closeLocations(["/root/set"])
        self.delegate.processLocationEvents()
        self.assertTrue(self.delegate.getAttributes(A) is None)

    def isDragging(self):
        return self.manipulator.getOptionByName("readout") is not None

    def paths(self):
        return list(self.manipulator.getLocationPaths().getNearestSample(0.0))

    def way(self, path):
        """How far a thing is from its place, along x."""
        return self.position(path)[0] - PLACES[path[-1]][0]

    def assertMoved(self, *paths):
        """Only these, of those that the viewer knows, all by as much, and the picture says so."""
        ways = [self.way(path) for path in paths]
        for way in ways:
            self.assertTrue(0.1 < way < 3.0, ways)
            self.assertTrue(abs(way - ways[0]) < 1e-9, ways)
        for path in (A, B):
            if path not in paths and self.delegate.getAttributes(path) is not None:
                self.assertEqual(0.0, self.way(path), path)
            self.assertTrue(self.delegate.getLiveAttributes(path) is None, path)
        self.assertPictureIsRight()

    def assertNothingHappened(self):
        self.assertMoved()
        self.assertFalse(self.session.canUndo())

    def assertPictureIsRight(self):
        """As of a new session with what this one's viewer knows for its scene."""
        with ostrel.Session() as session:
            session.lockedNodes = self.session.lockedNodes
            known = dict((path[-1], self.delegate.getAttributes(path)) for path in (A, B)
                         if self.delegate.getAttributes(path) is not None)
            session.createOp("Scene.Literal", scene(**known))
            view = session.addOffscreenView(WIDTH, HEIGHT)
            self.assertTrue(session.pump(timeout=DEADLINE))
            view.camera.setViewMatrix(self.view.camera.getViewMatrix())
            view.viewport.activateManipulator("TranslateManipulator", self.paths(), True)
            expected = view.readPixels()
        self.viewport.hover()
        self.assertTrue(expected == self.view.readPixels(), "the picture is another")


class LossTest(InterruptedDragTest):
    """Scene events flow until the first value is shown, and wait from then on."""

    def testTheOtherGoesOnWhenOneGoes(self):
        self.begin()
        self.setScene(b=thing("b"))
        self.settle()
        self.assertEqual([B], self.paths())
        self.drag()
        self.assertTrue(self.isDragging())
        self.end()
        self.assertMoved(B)
        self.assertTrue(self.session.getEditedValue(A, "xform.placed.translate") is None)
        self.assertTrue(self.session.undo())
        self.settle()
        self.assertNothingHappened()

    def testOneThatHasGoneAndComesBackLaterStaysOut(self):
        self.begin()
        self.setScene(b=thing("b"))
        self.settle()
        self.drag()
        self.setScene(a=thing("a"), b=thing("b"))
        self.drag(20)
        self.end()
        self.assertMoved(B)
        self.assertEqual([B, A], self.paths())

    def testOneThatIsBackBeforeItIsMissedGoesOn(self):
        self.begin()
        self.setScene(b=thing("b"))
        self.settle()
        self.setScene(a=thing("a"), b=thing("b"))
        self.settle()
        self.drag()
        self.end()
        self.assertMoved(A, B)

    def testADragEndsWhenAllHaveGone(self):
        self.begin()
        self.setScene()
        self.settle()
        self.assertEqual([], self.paths())
        self.view.draw()
        self.drag()
        self.assertFalse(self.isDragging())
        self.setScene(a=thing("a"), b=thing("b"))
        self.settle()
        self.drag(40)
        self.end()
        self.assertNothingHappened()

    def testAReleaseWithoutAnyLocationKeepsNothing(self):
        self.begin()
        self.setScene()
        self.settle()
        self.end()
        self.setScene(a=thing("a"), b=thing("b"))
        self.settle()
        self.assertNothingHappened()

    def testOneThatFitsNoLongerIsLeftOut(self):
        self.begin()
        self.setScene(a=thing("a", type=StringAttribute("error")), b=thing("b"))
        self.settle()
        self.drag()
        self.end()
        self.assertMoved(B)

    def testOneThatGoesWhileValuesShowIsGoneAfterwards(self):
        self.begin()
        self.drag(10)
        self.setScene(b=thing("b"))
        PyScenelib.waitUntilIdle(DEADLINE)
        self.drag()
        self.assertEqual([A, B], self.paths(), "the viewer has not been told")
        self.end()
        self.assertMoved(B)
        self.setScene(a=thing("a"), b=thing("b"))
        self.settle()
        self.assertMoved(A, B)  # an edit waits for its location
        self.assertTrue(self.session.undo())
        self.assertFalse(self.session.canUndo())
        self.settle()
        self.assertMoved()

    def testClosingTheirParentWhileValuesShowTakesThemBack(self):
        self.begin()
        self.drag(10)
        self.closeParent()
        self.drag()
        self.assertFalse(self.isDragging())
        self.end()
        self.delegate.openLocations(["/root/set"])
        self.settle()
        self.assertEqual({A, B}, set(self.paths()))
        self.assertNothingHappened()

    def testReleasingWhatWasClosedTakesItBack(self):
        self.begin()
        self.drag()
        self.closeParent()
        self.end()
        self.delegate.openLocations(["/root/set"])
        self.settle()
        self.assertNothingHappened()

    def testFlushingCachesWhileValuesShowTakesThemBack(self):
        for flushScene in (False, True):
            self.begin()
            self.drag(10)
            self.delegate.flushCaches()
            if flushScene:
                PyScenelib.flushCaches()
            self.drag()
            self.assertFalse(self.isDragging())
            self.end()
            PyScenelib.flushCaches()
            self.settle()
            self.assertNothingHappened()

    def testFlushingTheScenesCachesAloneDisturbsNothing(self):
        self.begin()
        self.drag(10)
        PyScenelib.flushCaches()
        self.drag()
        self.end()
        self.assertMoved(A, B)

    def testViewingAnotherOpTakesNothingAlong(self):
        self.begin()
        self.drag(10)
        other = PyScenelib.createOp("Scene.Literal", scene(a=thing("a"), b=thing("b")))
        self.delegate.setViewOp(other)
        self.drag()
        self.end()
        self.assertFalse(self.session.canUndo())
        self.delegate.setViewOp(self.session._edit)
        self.settle()
        self.assertNothingHappened()


class ChangeTest(InterruptedDragTest):
    def testHiddenOnesGoOn(self):
        self.begin()
        self.drag(10)
        self.delegate.hideLocations([A])
        self.drag()
        self.assertTrue(self.isDragging())
        self.end()
        self.delegate.unhideAllLocations()
        self.settle()
        self.assertMoved(A, B)

    def testOneThatBecomesReadOnlyEndsTheDrag(self):
        self.session.lockedNodes.add("other")
        self.begin()
        self.setScene(a=thing("a", **{"attributeEditor.exclusiveTo": StringAttribute("other")}),
                      b=thing("b"))
        self.settle()
        self.drag()
        self.assertFalse(self.isDragging())
        self.end()
        self.assertNothingHappened()

    def testOneThatNobodyOwnsAnyMoreEndsTheDragAtItsRelease(self):
        self.begin()
        self.setScene(a=thing("a", attributeEditor=None), b=thing("b"))
        self.settle()
        self.assertTrue(self.release(self.x, self.y))
        self.settle()
        self.assertNothingHappened()

    def testWhatIsLockedWhileValuesShowIsNotKept(self):
        self.begin()
        self.drag(10)
        self.session.lockedNodes.add(ostrel.Session.NODE)
        self.drag()
        self.end()
        self.assertNothingHappened()

    def testOtherAttributesChangeUnderneath(self):
        self.begin()
        self.drag(10)
        bound = DoubleAttribute([-0.5, 0.5, -0.5, 0.5, -0.5, 0.5])
        self.setScene(a=thing("a", bound=bound), b=thing("b"))
        PyScenelib.waitUntilIdle(DEADLINE)
        self.drag()
        self.end()
        self.assertEqual(bound, self.delegate.getAttributes(A).getChildByName("bound"))
        self.assertMoved(A, B)

    def testAnUndoByAScriptStandsBelowTheDrag(self):
        self.begin()
        self.drag()
        self.end()
        first = self.way(A)
        self.begin()
        self.drag(20)
        shown = self.way(A)
        self.assertTrue(shown > first)
        self.assertTrue(self.session.undo())
        PyScenelib.waitUntilIdle(DEADLINE)
        self.drag(20)
        self.assertEqual(shown, self.way(A), "what is undone does not show while the drag goes on")
        self.end(20)
        self.assertMoved(A, B)
        self.assertEqual(shown, self.way(A))
        self.assertFalse(self.session.canRedo())
        self.assertTrue(self.session.undo())
        self.settle()
        self.assertNothingHappened()

    def testAValueOfAScriptIsReplacedByTheDragsAndComesBackByUndo(self):
        name, value = "xform.placed.translate", DoubleAttribute([0.0, 2.0, 0.0], 3)
        self.begin()
        self.drag(10)
        self.session.setAttribute(A, name, value)
        PyScenelib.waitUntilIdle(DEADLINE)
        self.drag()
        self.end()
        self.assertMoved(A, B)
        self.assertTrue(self.session.undo())
        self.settle()
        self.assertEqual(value, self.delegate.getAttributes(A).getChildByName(name))
        self.assertTrue(self.session.undo())
        self.settle()
        self.assertNothingHappened()

    def testEscapeBringsBackTheBeginningAlsoOverAValueOfAScript(self):
        name, value = "xform.placed.translate", DoubleAttribute([0.0, 2.0, 0.0], 3)
        self.begin()
        self.drag(10)
        self.session.setAttribute(A, name, value)
        self.assertTrue(self.viewport.event(events.keyPress("Escape")))
        self.end()
        self.assertMoved()
        self.assertTrue(self.session.undo())
        self.settle()
        self.assertEqual(value, self.delegate.getAttributes(A).getChildByName(name))

    def testAnotherSelectionTakesTheDragBack(self):
        self.viewport.deactivateAllManipulators(True)
        self.session.select([A, B])
        self.view.manipulate("TranslateManipulator")
        self.view.draw()
        self.manipulator = self.viewport.getActiveManipulatorByIndex(0)
        self.begin()
        self.drag()
        self.session.select([A])
        self.manipulator = self.viewport.getActiveManipulatorByIndex(0)
        self.assertFalse(self.isDragging())
        self.end()
        self.session.select([])
        self.manipulator = self.viewport.getActiveManipulatorByIndex(0)
        self.assertNothingHappened()


class TakenBackTest(ManipulatorTest):
    def testNothingIsLeftOnALocationWithoutATransform(self):
        self.show(thing=())
        self.activate()
        before = self.session.delegate.getAttributes(PATH)
        self.assertTrue(before.getChildByName("xform") is None)
        x, y = self.placeOn(0)
        self.assertTrue(self.press(x, y))
        self.move(x + 30, y)
        self.assertTrue(self.position()[0] > 0.1)
        self.assertTrue(self.viewport.event(events.keyPress("Escape")))
        self.assertEqual([0.0, 0.0, 0.0], self.position())
        self.settle()
        self.assertEqual(before, self.session.delegate.getAttributes(PATH))
        self.assertFalse(self.session.canUndo())


if __name__ == "__main__":
    unittest.main()
