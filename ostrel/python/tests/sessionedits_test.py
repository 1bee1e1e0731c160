"""Edits of a session's scene from a script."""
import unittest

import ostrel
import PyScenelib
import ViewerAPI
from PyVlAttribute import DoubleAttribute, GroupAttribute, IntAttribute, StringAttribute

PATH = "/root/a/b"


def literal(**attributes):
    """The arguments of a Scene.Literal whose location PATH has these attributes."""
    location = GroupAttribute(*sorted(attributes.items()))
    return GroupAttribute(("staticScene.c.a.c.b.a", location))


class SessionEditsTest(unittest.TestCase):
    def setUp(self):
        self.session = ostrel.Session()
        self.addCleanup(self.session.close)
        self.op = self.session.createOp("Scene.Literal", literal(
            x=IntAttribute(0), g=GroupAttribute(("y", IntAttribute(0)), ("z", IntAttribute(0)))))
        self.pump()

    def pump(self):
        self.assertTrue(self.session.pump(timeout=60))

    def get(self, name="x", path=PATH):
        value = self.session.delegate.getAttributes(path).getChildByName(name)
        return value if value is None else value.getValue()

    def testAnEditShowsAfterAPump(self):
        commit = self.session.setAttribute(PATH, "x", IntAttribute(1))
        self.pump()
        self.assertTrue(self.session.isCommitCooked(commit))
        self.assertEqual(self.get(), 1)
        self.assertEqual(self.session.getEditedValue(PATH, "x"), IntAttribute(1))

    def testTheRestOfTheLocationStaysTheScenes(self):
        self.session.setAttribute(PATH, "g.y", IntAttribute(1))
        self.session.setAttribute(PATH, "new.one", IntAttribute(2))
        self.pump()
        self.assertEqual([self.get(name) for name in ("x", "g.y", "g.z", "new.one")], [0, 1, 0, 2])
        PyScenelib.setOpArgs(self.op, "Scene.Literal", literal(x=IntAttribute(5)))
        self.pump()
        self.assertEqual([self.get(name) for name in ("x", "g.y", "g.z", "new.one")],
                         [5, 1, None, 2])

    def testNoneTakesAnEditBack(self):
        self.session.setAttribute(PATH, "x", IntAttribute(1))
        self.session.setAttribute(PATH, "x", None)
        self.pump()
        self.assertEqual(self.get(), 0)
        self.assertTrue(self.session.getEditedValue(PATH, "x") is None)
        self.assertTrue(self.session.undo())
        self.pump()
        self.assertEqual(self.get(), 1)

    def testUndoAndRedoGoStepByStep(self):
        self.assertFalse(self.session.canUndo() or self.session.canRedo())
        self.assertFalse(self.session.undo() or self.session.redo())
        for value in (1, 2, 3):
            self.session.setAttribute(PATH, "x", IntAttribute(value))
        for expected in (2, 1, 0):
            self.assertTrue(self.session.undo())
            self.pump()
            self.assertEqual(self.get(), expected)
        self.assertFalse(self.session.canUndo())
        for expected in (1, 2, 3):
            self.assertTrue(self.session.redo())
            self.pump()
            self.assertEqual(self.get(), expected)
        self.assertFalse(self.session.canRedo())

    def testANewEditLeavesNothingToRedo(self):
        self.session.setAttribute(PATH, "x", IntAttribute(1))
        self.session.undo()
        self.session.setAttribute(PATH, "x", IntAttribute(2))
        self.assertFalse(self.session.redo())
        self.pump()
        self.assertEqual(self.get(), 2)

    def testSeveralEditsAreOneStep(self):
        self.session.commitEdits([(PATH, "x", IntAttribute(1)), ("/root/a", "x", IntAttribute(2))])
        self.pump()
        self.assertEqual((self.get(), self.get(path="/root/a")), (1, 2))
        self.session.undo()
        self.assertFalse(self.session.canUndo())
        self.pump()
        self.assertEqual((self.get(), self.get(path="/root/a")), (0, None))

    def testALaterCommitCanJoinTheLastStepOnly(self):
        first = self.session.setAttribute(PATH, "x", IntAttribute(1))
        second = self.session.commitEdits([(PATH, "g.y", IntAttribute(1))], lastCommit=first)
        self.session.undo()
        self.assertFalse(self.session.canUndo())
        self.session.commitEdits([(PATH, "g.z", IntAttribute(1))], lastCommit=second)
        third = self.session.setAttribute(PATH, "x", IntAttribute(1))
        self.session.setAttribute(PATH, "x", IntAttribute(2))
        self.session.commitEdits([(PATH, "x", IntAttribute(3))], lastCommit=third)
        for expected in (2, 1, 0):
            self.session.undo()
            self.pump()
            self.assertEqual(self.get(), expected)
        self.assertEqual(self.get("g.z"), 1)

    def testACommitThatChangesNothingIsNoStepToJoin(self):
        self.session.setAttribute(PATH, "x", IntAttribute(1))
        for edits in ([], [(PATH, "x", IntAttribute(1))]):
            nothing = self.session.commitEdits(edits, dropped=[PATH])
            self.session.commitEdits([(PATH, "g.y", IntAttribute(1))], lastCommit=nothing)
            self.session.undo()
            self.assertEqual(self.session.getEditedValue(PATH, "x"), IntAttribute(1))
        first = self.session.setAttribute(PATH, "x", IntAttribute(2))
        nothing = self.session.commitEdits([(PATH, "x", IntAttribute(2))], lastCommit=first)
        self.session.commitEdits([(PATH, "g.y", IntAttribute(1))], lastCommit=nothing)
        self.session.undo()
        self.assertTrue(self.session.getEditedValue(PATH, "g.y") is None)
        self.assertEqual(self.session.getEditedValue(PATH, "x"), IntAttribute(1))

    def testAnEditWaitsForItsLocation(self):
        self.session.setAttribute("/root/later", "x", IntAttribute(1))
        self.pump()
        self.assertTrue(self.session.delegate.getAttributes("/root/later") is None)
        self.session.createOp("Scene.Literal", GroupAttribute(
            ("staticScene.c.later.a.x", IntAttribute(0))))
        self.pump()
        self.assertEqual(self.get(path="/root/later"), 1)

    def testMovedLocationsTakeTheirBoundsAlong(self):
        self.session.setAttribute(PATH, "bound", DoubleAttribute([-1, 1, -1, 1, -1, 1]))
        self.session.setAttribute(PATH, "xform.moved.translate", DoubleAttribute([10, 0, 0], 3))
        self.pump()
        self.assertEqual(self.session.getBounds(), (9, 11, -1, 1, -1, 1))
        self.session.undo()
        self.pump()
        self.assertEqual(self.session.getBounds(), (-1, 1, -1, 1, -1, 1))

    def testImpossibleEditsAreRefused(self):
        self.assertRaises(ValueError, self.session.setAttribute, "a", "x", IntAttribute(1))
        self.assertRaises(ValueError, self.session.setAttribute, PATH, "", IntAttribute(1))
        self.assertRaises(TypeError, self.session.setAttribute, PATH, "x", 1)
        self.assertFalse(self.session.canUndo())

    def testLocationsAreEditableUnlessTheirNodeIsLocked(self):
        rows = [
            ((), True),
            ((("exclusiveTo", "locked"),), False),
            ((("exclusiveTo", "free"),), True),
            ((("xform.exclusiveTo", "locked"),), False),
            ((("exclusiveTo", "locked"), ("xform.exclusiveTo", "free")), True),
        ]
        self.session.lockedNodes.add("locked")
        for owners, isEditable in rows:
            editor = GroupAttribute(*[(name, StringAttribute(node)) for name, node in owners])
            PyScenelib.setOpArgs(self.op, "Scene.Literal", literal(attributeEditor=editor))
            self.pump()
            self.assertEqual(self.session.isLocationEditable(PATH), isEditable, repr(owners))
        self.assertFalse(self.session.isLocationEditable("/root/unknown"))

    def testAnApplicationDecidesOfItsNodes(self):
        class Application(ostrel.Session):
            def isNodeEditable(self, nodeName):
                return nodeName == "mine"

        with Application() as session:
            op = session.createOp("Scene.Literal", literal(
                attributeEditor=GroupAttribute(("exclusiveTo", StringAttribute("yours")))))
            session.pump(timeout=60)
            self.assertFalse(session.isLocationEditable(PATH))
            PyScenelib.setOpArgs(op, "Scene.Literal", literal(
                attributeEditor=GroupAttribute(("exclusiveTo", StringAttribute("mine")))))
            session.pump(timeout=60)
            self.assertTrue(session.isLocationEditable(PATH))

    def testSessionsHaveEditsOfTheirOwn(self):
        with ostrel.Session() as other:
            other.addOp(self.op)
            self.session.setAttribute(PATH, "x", IntAttribute(1))
            self.pump()
            other.pump(timeout=60)
            self.assertEqual(
                other.delegate.getAttributes(PATH).getChildByName("x"), IntAttribute(0))
            self.assertFalse(other.canUndo())

    def testEverythingAboutEditsIsDocumented(self):
        for name in ("setAttribute", "commitEdits", "getEditedValue", "undo", "redo", "canUndo",
                     "canRedo", "isNodeEditable", "isLocationEditable", "isCommitCooked"):
            self.assertTrue(getattr(ostrel.Session, name).__doc__, name)
        self.assertTrue(ViewerAPI.setEditor.__doc__)


if __name__ == "__main__":
    unittest.main()
