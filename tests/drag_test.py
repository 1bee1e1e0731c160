"""The road of an edit, whole: a plug-in drags values in the viewer of a session, they show at once,
reach the scene, are cooked and come back; with the real engine."""
from __future__ import print_function

import os
import random
import sys
import time
import unittest

IS_PYTHON_3 = sys.version_info[0] >= 3

sys.path.insert(0, os.path.join(os.environ["OSTREL_TEST_PLUGINS"],
                                "python3" if IS_PYTHON_3 else "python2.7"))

import ostrel
import PyScenelib
import ScriptedPlugins
import ViewerAPI
from PyVlAttribute import GroupAttribute, IntAttribute, StringAttribute

if IS_PYTHON_3:
    from io import StringIO
else:
    from StringIO import StringIO

A, B = "/root/a", "/root/group/b"
DEADLINE = 60


class Drags(object):
    """A session with the locations A and B, each with x = 0, whose delegate plug-in drags them.

    shown  the values of x that the plug-in was told, in order, by path
    """

    def __init__(self, sessionClass=ostrel.Session):
        self.shown = {A: [], B: []}
        ScriptedPlugins.setHook(self._onCall)
        ScriptedPlugins.setEventHook(self._onEvent)
        self.session = sessionClass("ScriptedDelegate")
        self.delegate = self.session.delegate
        self._noise = 0
        self._literal = self.session.createOp("Scene.Literal", self._scene())
        self.settle()

    def close(self):
        self.session.close()
        self.delegate = None
        ScriptedPlugins.setHook(None)
        ScriptedPlugins.setEventHook(None)

    def _onCall(self, plugin, host, entry, arguments):
        if entry == "create" and plugin == "ScriptedDelegate":
            self._host = host

    def _onEvent(self, path, attributes):
        if path in self.shown and attributes is not None:
            self.shown[path].append(attributes.getChildByName("x").getValue())

    def _scene(self):
        location = GroupAttribute(("type", StringAttribute("locator")), ("x", IntAttribute(0)),
                                  ("noise", IntAttribute(self._noise)))
        return GroupAttribute(("staticScene.c.a.a", location),
                              ("staticScene.c.group.c.b.a", location))

    def changeScene(self):
        """Has both locations cooked again by a change that is no edit."""
        self._noise += 1
        PyScenelib.setOpArgs(self._literal, "Scene.Literal", self._scene())

    def set(self, path, value, isFinal=False, name="x"):
        return ScriptedPlugins.setManipulatedAttribute(self._host, path, name,
                                                       IntAttribute(value), isFinal)

    def openGroup(self, path):
        ScriptedPlugins.openManipulationGroup(self._host, path)

    def closeGroup(self, path):
        ScriptedPlugins.closeManipulationGroup(self._host, path)

    def settle(self):
        """Pumps until the viewer is up with the scene."""
        if not self.session.pump(timeout=DEADLINE):
            raise AssertionError("the viewer does not settle")

    def get(self, path, name="x"):
        """What the viewer knows of an attribute."""
        value = self.delegate.getAttributes(path).getChildByName(name)
        return value if value is None else value.getValue()


class DragTest(unittest.TestCase):
    sessionClass = ostrel.Session

    def setUp(self):
        self.drags = Drags(self.sessionClass)
        self.addCleanup(self.drags.close)
        self.session, self.delegate = self.drags.session, self.drags.delegate

    def testValuesShowAtOnceAndOnlyTheFinalOneReachesTheScene(self):
        for value in (1, 2, 3):
            self.assertTrue(self.drags.set(A, value))
            self.assertEqual(self.drags.shown[A], list(range(value + 1)))
        self.assertTrue(self.session.getEditedValue(A, "x") is None)
        self.assertFalse(self.session.canUndo())
        self.assertTrue(self.drags.set(A, 4, True))
        self.assertEqual(self.session.getEditedValue(A, "x"), IntAttribute(4))
        self.drags.settle()
        self.assertEqual(self.drags.get(A), 4)
        self.assertEqual(self.drags.shown[A], [0, 1, 2, 3, 4], "nothing new is not told")

    def testTheCookedEventTakesTheLiveValueAway(self):
        self.drags.set(A, 1, True)
        self.assertEqual(self.delegate.getLiveAttributes(A).getChildByName("x"), IntAttribute(1))
        self.assertEqual(self.delegate.getCookedAttributes(A).getChildByName("x"), IntAttribute(0))
        self.drags.settle()
        self.assertTrue(self.delegate.getLiveAttributes(A) is None)
        self.assertEqual(self.delegate.getCookedAttributes(A).getChildByName("x"), IntAttribute(1))
        self.assertEqual(self.drags.get(A, "noise"), 0)

    def testAGestureOverSeveralLocationsIsOneStep(self):
        for path in (A, B):
            self.drags.openGroup(path)
        for value in (1, 2):
            for path in (A, B):
                self.drags.set(path, value)
            self.delegate.processLocationEvents()
        for path in (A, B):
            self.drags.set(path, 3, True)
        for path in (A, B):
            self.drags.closeGroup(path)
        self.drags.settle()
        self.assertEqual((self.drags.get(A), self.drags.get(B)), (3, 3))
        self.assertTrue(self.session.undo())
        self.assertFalse(self.session.undo())
        self.drags.settle()
        self.assertEqual((self.drags.get(A), self.drags.get(B)), (0, 0))
        self.assertTrue(self.session.redo())
        self.drags.settle()
        self.assertEqual((self.drags.get(A), self.drags.get(B)), (3, 3))

    def testUndoShowsTheScenesValueAlsoBeforeTheEditIsCooked(self):
        for pumps in range(4):
            self.drags.set(A, 1)
            self.drags.set(A, 2, True)
            for _ in range(pumps):
                self.delegate.processLocationEvents()
            self.session.undo()
            self.drags.settle()
            self.assertEqual(self.drags.get(A), 0, "after %d pumps" % pumps)
            self.assertTrue(self.delegate.getLiveAttributes(A) is None)

    def testAnUndoInTheMiddleOfADragStandsBelowIt(self):
        self.drags.set(A, 1, True)
        self.drags.settle()
        self.drags.set(A, 2)
        self.session.undo()
        self.delegate.processLocationEvents()
        self.assertEqual(self.drags.get(A), 2)
        self.drags.set(A, 3, True)
        self.drags.settle()
        self.assertEqual(self.drags.get(A), 3)
        self.assertFalse(self.session.canRedo())
        self.session.undo()
        self.drags.settle()
        self.assertEqual(self.drags.get(A), 0)

    def testADragBackToWhereItBeganIsNoStep(self):
        self.drags.set(A, 1, True)
        self.drags.settle()
        self.drags.set(A, 2)
        self.drags.set(A, 1, True)
        self.drags.settle()
        self.assertEqual(self.drags.get(A), 1)
        self.assertTrue(self.delegate.getLiveAttributes(A) is None)
        self.session.undo()
        self.assertFalse(self.session.canUndo())

    def testASecondDragBeginsBeforeTheFirstIsCooked(self):
        self.drags.set(A, 1)
        self.drags.set(A, 2, True)
        self.delegate.processLocationEvents()
        self.drags.set(A, 3)
        self.drags.set(A, 4, True)
        self.drags.settle()
        self.assertEqual(self.drags.shown[A], sorted(self.drags.shown[A]))
        self.assertEqual(self.drags.get(A), 4)
        self.session.undo()
        self.drags.settle()
        self.assertEqual(self.drags.get(A), 2)

    def testThePluginNeverSeesAnOlderValueAfterANewerOne(self):
        seed = random.randrange(1 << 32)
        print("seed %d" % seed)
        chance = random.Random(seed)
        value = 0
        for drag in range(1000):
            path = chance.choice([A, A, B])
            isGroup = chance.random() < 0.5
            if isGroup:
                self.drags.openGroup(path)
            for isFinal in [False] * chance.randint(0, 3) + [True]:
                value += 1
                self.drags.set(path, value, isFinal)
                self._letSomethingHappen(chance)
            if isGroup:
                self.drags.closeGroup(path)
            self._letSomethingHappen(chance)
            for shown in self.drags.shown.values():
                if shown != sorted(shown):
                    self.fail("drag %d, value %d: %r" % (drag, value, shown[-20:]))
            if chance.random() < 0.1:
                self.drags.settle()
        self.drags.settle()
        for path in (A, B):
            edited = self.session.getEditedValue(path, "x").getValue()
            self.assertEqual((self.drags.shown[path][-1], self.drags.get(path)), (edited, edited))

    def _letSomethingHappen(self, chance):
        action = chance.randrange(5)
        if action == 0:
            self.drags.changeScene()
        elif action == 1:
            end = time.time() + chance.random() * 1e-3
            while time.time() < end:
                pass  # the engine cooks meanwhile
        elif action == 2:
            PyScenelib.waitUntilIdle(DEADLINE)
        for _ in range(chance.randint(0, 2)):
            self.delegate.processLocationEvents()

    def testDragsEndTheSameWayInAWorkingSet(self):
        self.delegate.setVisibilityWorkingSet(GroupAttribute(
            ("include", StringAttribute([A, B])), ("exclude", StringAttribute([]))))
        self.delegate.setWorkingSetVisibilityEnabled(True)
        self.drags.settle()
        self.drags.set(A, 1, True)
        self.drags.settle()
        self.assertEqual(self.drags.get(A), 1)
        self.assertTrue(self.delegate.getLiveAttributes(A) is None)
        self.drags.set(B, 5)  # never final
        self.drags.set(A, 2, True)
        self.session.undo()
        self.drags.settle()
        self.assertEqual((self.drags.get(A), self.drags.get(B)), (1, 0))
        self.assertTrue(self.delegate.getLiveAttributes(A) is None)

    def testAValueThatIsNotKeptIsReplacedByTheScenes(self):
        self.drags.set(B, 5)  # never final
        self.drags.set(A, 1, True)
        self.drags.settle()
        self.assertEqual((self.drags.get(A), self.drags.get(B)), (1, 0))
        self.assertTrue(self.delegate.getLiveAttributes(B) is None)

    def testAReadOnlyLocationShowsTheScenesValueAgain(self):
        self.session.setAttribute(A, "attributeEditor.exclusiveTo", StringAttribute("arm"))
        self.drags.settle()
        self.drags.set(A, 1, True)
        self.drags.settle()
        self.assertEqual(self.drags.get(A), 1)
        self.session.lockedNodes.add("arm")
        self.drags.set(A, 2)
        self.assertEqual(self.drags.get(A), 2)
        self.drags.set(A, 3, True)
        self.drags.settle()
        self.assertEqual(self.drags.get(A), 1)
        self.drags.set(B, 2, True)
        self.drags.settle()
        self.assertEqual(self.drags.get(B), 2)

    def testWhatTheViewerDoesNotKnowIsNotEdited(self):
        for path in ("/root/unknown", "/other", ""):
            self.assertFalse(self.drags.set(path, 1, True), path)
        self.drags.settle()
        self.assertFalse(self.session.canUndo())

    def testALocationThatOnlyALookThroughShowsIsEdited(self):
        self.delegate.closeLocations(["/root/group"])
        viewport = self.delegate.addViewport("ScriptedViewport", "v")
        self.delegate.setLookThroughLocation(viewport, B)
        self.drags.settle()
        self.assertTrue(self.delegate.getAttributes(B) is None)
        self.assertTrue(self.drags.set(B, 1, True))
        self.drags.settle()
        view = ViewerAPI.kVlViewerDelegateLookThrough
        self.assertEqual(self.delegate.getAttributes(B, view).getChildByName("x"), IntAttribute(1))

    def testAGroupThatIsNeverClosedDoesNotStopTheViewer(self):
        self.drags.openGroup(A)
        self.drags.set(A, 1, True)
        self.drags.settle()
        self.assertFalse(self.delegate.isFrozenDueToManipulation())
        self.assertTrue(self.delegate.getLiveAttributes(A) is None)
        self.assertEqual(self.drags.get(A), 1)

    def testTheFreezePeriodIsWaitedFor(self):
        self.delegate.setManipulationFreezePeriod(100000)
        self.drags.set(A, 1, True)
        PyScenelib.waitUntilIdle(DEADLINE)
        self.delegate.processLocationEvents()
        self.assertTrue(self.delegate.isFrozenDueToManipulation())
        self.delegate.setManipulationFreezePeriod(0)
        self.drags.settle()
        self.assertFalse(self.delegate.isFrozenDueToManipulation())

    def testADelegateThatViewsAnotherOpStandsAlone(self):
        op = PyScenelib.createOp("Scene.Literal", GroupAttribute(
            ("staticScene.c.a.a.x", IntAttribute(7))))
        self.delegate.setViewOp(op)
        self.drags.settle()
        self.drags.set(A, 8, True)
        self.drags.settle()
        self.assertEqual(self.drags.get(A), 8)
        self.assertFalse(self.session.canUndo())

    def testSessionsDontMix(self):
        other = Drags()
        self.addCleanup(other.session.close)
        # Interleaved: the one's freeze and commit don't concern the other.
        self.drags.set(A, 1)
        other.set(A, 2)
        self.drags.set(A, 3, True)
        self.drags.settle()
        self.assertTrue(other.delegate.isFrozenDueToManipulation())
        other.set(A, 4, True)
        other.settle()
        self.assertEqual((self.drags.get(A), other.get(A)), (3, 4))
        self.session.undo()
        self.drags.settle()
        other.settle()
        self.assertEqual((self.drags.get(A), other.get(A)), (0, 4))
        self.assertFalse(self.session.canUndo())
        self.assertTrue(other.session.canUndo())


class FailingSession(ostrel.Session):
    def commitEdits(self, *arguments):
        raise RuntimeError("the disk is full")


class FailureTest(unittest.TestCase):
    def testAFailureIsPrintedAndTheViewerGoesOn(self):
        drags = Drags(FailingSession)
        self.addCleanup(drags.close)
        stderr, sys.stderr = sys.stderr, StringIO()
        try:
            self.assertTrue(drags.set(A, 1, True))
            printed = sys.stderr.getvalue()
        finally:
            sys.stderr = stderr
        self.assertTrue("the disk is full" in printed, printed)
        self.assertEqual(drags.get(A), 1)
        drags.settle()
        self.assertFalse(drags.delegate.isFrozenDueToManipulation())


class StandAloneTest(unittest.TestCase):
    def testADelegateWithoutASessionRemembersValues(self):
        drags = Drags()
        self.addCleanup(drags.close)
        delegate = ViewerAPI.CreateViewerDelegate("ScriptedDelegate")
        delegate.setViewOp(PyScenelib.createOp("Scene.Literal", GroupAttribute(
            ("staticScene.a.x", IntAttribute(7)))))
        end = time.time() + DEADLINE
        while delegate.getAttributes("/root") is None and time.time() < end:
            PyScenelib.waitUntilIdle(DEADLINE)
            delegate.processLocationEvents()
        self.assertTrue(drags.set("/root", 8, True))
        delegate.processLocationEvents()
        self.assertFalse(delegate.isFrozenDueToManipulation())
        self.assertEqual(delegate.getAttributes("/root").getChildByName("x"), IntAttribute(8))
        self.assertFalse(drags.session.canUndo())


if __name__ == "__main__":
    unittest.main()
