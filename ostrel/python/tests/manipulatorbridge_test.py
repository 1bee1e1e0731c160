"""The bridge between a delegate and the editor of the op that it views, called as a delegate does."""
import gc
import unittest

import ViewerAPI
from PyVlAttribute import IntAttribute

ONE, TWO = IntAttribute(1), IntAttribute(2)
OP, OTHER_OP = 1000000001, 1000000002  # no op has these ids


class Editor(object):
    """Records commits as (edits, dropped, lastCommit), with values in place of attributes."""

    def __init__(self):
        self.commits = []
        self.cooked = 0  # the last commit that is cooked
        self.locked = set()
        self.values = {}
        self.error = None

    def isNodeEditable(self, nodeName):
        return nodeName not in self.locked

    def isLocationEditable(self, locationPath):
        return locationPath not in self.locked

    def commitEdits(self, edits, dropped, lastCommit):
        self.commits.append(([(path, name, value.getValue()) for path, name, value in edits],
                             dropped, lastCommit))
        if self.error is not None:
            raise self.error
        return len(self.commits)

    def isCommitCooked(self, commitId):
        return commitId <= self.cooked

    def getEditedValue(self, locationPath, attributeName):
        return self.values.get((locationPath, attributeName))


class EditedTest(unittest.TestCase):
    def setUp(self):
        self.editor = Editor()
        ViewerAPI.setEditor(OP, self.editor)
        self.addCleanup(ViewerAPI.setEditor, OP, None)
        self.bridge = ViewerAPI.ManipulatorBridge()
        self.bridge.updateOp(OP)

    def take(self):
        commits, self.editor.commits[:] = list(self.editor.commits), []
        return commits

    def testOnlyFinalValuesAreCommitted(self):
        for value in range(5):
            self.assertTrue(self.bridge.setValue("/root/a", "x", IntAttribute(value), 0))
        self.assertEqual(self.editor.commits, [])
        self.assertTrue(self.bridge.setValue("/root/a", "x", ONE, 1))
        self.assertEqual(self.editor.commits, [([("/root/a", "x", 1)], [], None)])

    def testFinalValuesWithoutAGroupAreStepsOfTheirOwn(self):
        self.bridge.setValue("/root/a", "x", ONE, 1)
        self.bridge.setValue("/root/a", "x", TWO, 1)
        self.assertEqual([commit[2] for commit in self.editor.commits], [None, None])

    def testAGroupIsCommittedWhenItCloses(self):
        self.bridge.openManipulationGroup("/root/a")
        self.bridge.setValue("/root/a", "x", ONE, 1)
        self.bridge.setValue("/root/a", "y", TWO, 1)
        self.assertEqual(self.editor.commits, [])
        self.bridge.closeManipulationGroup("/root/a")
        self.assertEqual(self.editor.commits,
                         [([("/root/a", "x", 1), ("/root/a", "y", 2)], [], None)])

    def testGroupsThatAreOpenTogetherAreOneCommit(self):
        for path in ("/root/a", "/root/b"):
            self.bridge.openManipulationGroup(path)
        for path in ("/root/a", "/root/b"):
            self.bridge.setValue(path, "x", ONE, 0)
        for path in ("/root/a", "/root/b"):
            self.bridge.setValue(path, "x", TWO, 1)
            self.bridge.closeManipulationGroup(path)
        self.assertEqual(self.editor.commits,
                         [([("/root/a", "x", 2), ("/root/b", "x", 2)], [], None)])

    def testGroupsOfOneLocationDontNest(self):
        self.bridge.openManipulationGroup("/root/a")
        self.bridge.openManipulationGroup("/root/a")
        self.bridge.setValue("/root/a", "x", ONE, 1)
        self.bridge.closeManipulationGroup("/root/a")
        self.assertEqual(len(self.editor.commits), 1)
        self.bridge.closeManipulationGroup("/root/a")
        self.assertEqual(len(self.editor.commits), 1)

    def testAGroupWithoutAFinalValueCommitsNothing(self):
        self.bridge.openManipulationGroup("/root/a")
        self.bridge.setValue("/root/a", "x", ONE, 0)
        self.bridge.closeManipulationGroup("/root/a")
        self.assertEqual(self.bridge.getManipulationCommitId(), 0)
        self.assertEqual(self.editor.commits, [])

    def testValuesThatWereNeverFinalAreDroppedWithTheNextCommit(self):
        self.bridge.setValue("/root/b", "x", ONE, 0)
        self.bridge.setValue("/root/a", "x", ONE, 1)
        self.bridge.setValue("/root/a", "x", TWO, 1)
        self.assertEqual([commit[1] for commit in self.editor.commits], [["/root/b"], []])

    def testALocationWhoseGroupIsOpenIsNotDropped(self):
        self.bridge.openManipulationGroup("/root/b")
        self.bridge.setValue("/root/b", "x", ONE, 0)
        self.bridge.setValue("/root/a", "x", ONE, 1)
        self.bridge.closeManipulationGroup("/root/b")
        self.bridge.setValue("/root/a", "x", TWO, 1)
        self.assertEqual([commit[1] for commit in self.editor.commits], [[], ["/root/b"]])

    def testACommitHasComeWhenItIsCooked(self):
        self.assertEqual(self.bridge.getManipulationCommitId(), 0)
        self.bridge.setValue("/root/a", "x", ONE, 1)
        self.assertEqual(self.bridge.getManipulationCommitId(), -1)
        self.bridge.setValue("/root/a", "x", TWO, 1)
        self.editor.cooked = 1
        self.assertEqual(self.bridge.getManipulationCommitId(), -1)
        self.editor.cooked = 2
        self.assertEqual(self.bridge.getManipulationCommitId(), 2)

    def testAGroupThatIsNeverClosedHoldsNothingBack(self):
        self.bridge.openManipulationGroup("/root/a")
        self.bridge.setValue("/root/a", "x", ONE, 1)
        self.editor.cooked = 10
        self.assertEqual(self.bridge.getManipulationCommitId(), 1)
        self.assertEqual(self.take(), [([("/root/a", "x", 1)], [], None)])
        self.assertEqual(self.bridge.getManipulationCommitId(), 1)
        self.assertEqual(self.take(), [])

    def testWhatAnOpenGroupGetsLaterJoinsItsStep(self):
        self.bridge.openManipulationGroup("/root/a")
        self.bridge.setValue("/root/a", "x", ONE, 1)
        self.bridge.getManipulationCommitId()
        self.bridge.setValue("/root/a", "x", TWO, 1)
        self.bridge.closeManipulationGroup("/root/a")
        self.bridge.setValue("/root/a", "x", ONE, 1)
        self.assertEqual([commit[2] for commit in self.editor.commits], [None, 1, None])

    def testAForgottenGroupDoesNotTakeInLaterGestures(self):
        self.bridge.openManipulationGroup("/root/forgotten")
        self.bridge.setValue("/root/forgotten", "x", ONE, 1)
        self.bridge.getManipulationCommitId()
        self.bridge.setValue("/root/a", "x", ONE, 1)
        self.bridge.openManipulationGroup("/root/b")
        self.bridge.setValue("/root/b", "x", ONE, 1)
        self.bridge.closeManipulationGroup("/root/b")
        self.bridge.getManipulationCommitId()
        self.assertEqual(self.editor.commits, [([("/root/forgotten", "x", 1)], [], None),
                                               ([("/root/a", "x", 1)], [], None),
                                               ([("/root/b", "x", 1)], [], None)])

    def testReadOnlyLocationsAreRefusedAndShowTheScenesValueAgain(self):
        self.editor.locked.add("/root/a")
        self.assertFalse(self.bridge.setValue("/root/a", "x", ONE, 0))
        self.assertFalse(self.bridge.setValue("/root/a", "x", ONE, 1))
        self.assertEqual(self.take(), [([], ["/root/a"], None)])
        self.bridge.openManipulationGroup("/root/a")
        self.bridge.openManipulationGroup("/root/b")
        self.bridge.setValue("/root/a", "x", ONE, 1)
        self.bridge.setValue("/root/b", "x", ONE, 1)
        self.bridge.closeManipulationGroup("/root/a")
        self.bridge.closeManipulationGroup("/root/b")
        self.assertEqual(self.take(), [([("/root/b", "x", 1)], ["/root/a"], None)])

    def testLocationsWhoseEditorFailsShowTheScenesValueAgain(self):
        def fail(_):
            raise ValueError("no")

        self.editor.isLocationEditable = fail
        self.assertRaises(ValueError, self.bridge.setValue, "/root/a", "x", ONE, 1)
        self.editor.cooked = 1
        self.assertEqual(self.bridge.getManipulationCommitId(), 1)
        self.assertEqual(self.take(), [([], ["/root/a"], None)])

    def testNodesAreEditableAsTheEditorSays(self):
        self.editor.locked.add("node")
        self.assertFalse(self.bridge.isNodeEditable("node"))
        self.assertTrue(self.bridge.isNodeEditable("other"))

    def testAFailedCommitIsNotTriedAgainAndHoldsNothingBack(self):
        self.editor.error = ValueError("no")
        self.assertRaises(ValueError, self.bridge.setValue, "/root/a", "x", ONE, 1)
        self.assertEqual(self.bridge.getManipulationCommitId(), 0)
        self.assertEqual(len(self.editor.commits), 1)

    def testTheLastValueIsTheLiveOneOrElseTheCommittedOne(self):
        self.editor.values["/root/a", "x"] = ONE
        self.assertEqual(self.bridge.getValue("/root/a", "x"), ONE)
        self.bridge.setValue("/root/a", "x", TWO, 0)
        self.assertEqual(self.bridge.getValue("/root/a", "x"), TWO)
        self.assertTrue(self.bridge.getValue("/root/a", "y") is None)
        self.bridge.cleanupLiveAttributes("/root/a")
        self.assertEqual(self.bridge.getValue("/root/a", "x"), ONE)

    def testEditsFollowTheView(self):
        other = Editor()
        ViewerAPI.setEditor(OTHER_OP, other)
        self.addCleanup(ViewerAPI.setEditor, OTHER_OP, None)
        self.bridge.openManipulationGroup("/root/a")
        self.bridge.setValue("/root/a", "x", ONE, 1)
        self.bridge.updateOp(OP)
        self.assertEqual(self.editor.commits, [])
        self.bridge.updateOp(OTHER_OP)
        self.assertEqual(len(self.editor.commits), 1)
        self.bridge.setValue("/root/a", "x", TWO, 1)
        self.bridge.closeManipulationGroup("/root/a")
        self.assertEqual(other.commits, [([("/root/a", "x", 2)], [], None)])
        self.assertEqual(len(self.editor.commits), 1)

    def testWithoutAnEditorItStandsAlone(self):
        self.bridge.updateOp(OTHER_OP)
        self.assertTrue(self.bridge.setValue("/root/a", "x", ONE, 1))
        self.assertEqual(self.bridge.getValue("/root/a", "x"), ONE)
        self.assertEqual(self.bridge.getManipulationCommitId(), 0)
        self.assertTrue(self.bridge.isNodeEditable("any"))
        self.assertEqual(self.editor.commits, [])

    def testAnEditorThatEndsMidwayHoldsNothingBack(self):
        self.bridge.openManipulationGroup("/root/a")
        self.bridge.setValue("/root/a", "x", ONE, 1)
        self.editor = None
        gc.collect()
        self.assertEqual(self.bridge.getManipulationCommitId(), 0)
        self.bridge.closeManipulationGroup("/root/a")
        self.assertTrue(self.bridge.setValue("/root/a", "x", ONE, 1))

    def testEveryDelegateHasItsOwnGroups(self):
        second = ViewerAPI.ManipulatorBridge()
        second.updateOp(OP)
        self.bridge.openManipulationGroup("/root/a")
        self.bridge.setValue("/root/a", "x", ONE, 1)
        second.setValue("/root/a", "x", TWO, 1)
        second.closeManipulationGroup("/root/a")
        self.assertEqual(self.editor.commits, [([("/root/a", "x", 2)], [], None)])


if __name__ == "__main__":
    unittest.main()
