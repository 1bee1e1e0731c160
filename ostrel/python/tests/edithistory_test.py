"""Edits as the arguments of a Scene.Edit, and undo and redo of them."""
import random
import unittest

from ostrel.edithistory import EditHistory
from PyVlAttribute import GroupAttribute, IntAttribute

ONE, TWO = IntAttribute(1), IntAttribute(2)
EMPTY = GroupAttribute()


class EditHistoryTest(unittest.TestCase):
    def setUp(self):
        self.history = EditHistory()

    def testEditsStandWhereTheirLocationsAre(self):
        rows = [
            ("/root", "x", "edits.a.x"),
            ("/root/a", "x.y", "edits.c.a.a.x.y"),
            ("/root/a/b.c", "x", "edits.c.a.c.b.c.a.x"),
        ]
        for path, name, key in rows:
            history = EditHistory()
            history.apply([(path, name, ONE)])
            self.assertEqual(history.args, GroupAttribute((key, ONE)), path)
            self.assertEqual(history.getValue(path, name), ONE, path)
            self.assertTrue(history.getValue(path, "z") is None)
            self.assertTrue(history.getValue(path + "/z", name) is None)

    def testNoneTakesAnEditBackWithoutATrace(self):
        self.history.apply([("/root/a", "x.y", ONE)])
        before = self.history.args
        self.history.apply([("/root/a/b", "x.y", ONE), ("/root/a", "x.z", ONE)])
        self.history.apply([("/root/a/b", "x.y", None)])
        self.history.apply([("/root/a", "x.z", None)])
        self.assertEqual(self.history.args, before)
        self.history.apply([("/root/a", "x", None)])
        self.assertEqual(self.history.args, EMPTY)

    def testWhatIsNotThereCanBeTakenBack(self):
        self.history.apply([("/root/a", "x", ONE)])
        before = self.history.args
        for path, name in (("/root", "x"), ("/root/a", "y"), ("/root/a", "x.y"),
                           ("/root/a/b/c", "x")):
            self.history.apply([(path, name, None)])
            self.assertEqual(self.history.args, before, (path, name))

    def testImpossibleEditsChangeNothing(self):
        rows = [
            ("", "x", ONE, ValueError, "\"\" is not the path of a location"),
            ("/", "x", ONE, ValueError, "\"/\" is not the path of a location"),
            ("root/a", "x", ONE, ValueError, "\"root/a\" is not the path of a location"),
            ("/other", "x", ONE, ValueError, "\"/other\" is not the path of a location"),
            ("/root/", "x", ONE, ValueError, "\"/root/\" is not the path of a location"),
            ("/root//a", "x", ONE, ValueError, "\"/root//a\" is not the path of a location"),
            ("/root/a", "", ONE, ValueError, "\"\" is not the name of an attribute"),
            ("/root/a", "x..y", ONE, ValueError, "\"x..y\" is not the name of an attribute"),
            ("/root/a", "x", 1, TypeError, "x of /root/a must be an attribute or None, not int"),
        ]
        for path, name, value, kind, text in rows:
            with self.assertRaises(kind) as context:
                self.history.apply([("/root/b", "x", ONE), (path, name, value)])
            self.assertEqual(str(context.exception), text)
            self.assertEqual(self.history.args, EMPTY)
            self.assertFalse(self.history.canUndo())

    def testStepsAreTakenBackAndMadeAgain(self):
        self.history.apply([("/root/a", "x", ONE), ("/root/b", "x", ONE)])
        first = self.history.args
        self.history.apply([("/root/a", "x", TWO)])
        second = self.history.args
        self.assertFalse(self.history.canRedo())
        self.assertEqual(self.history.undo(), set(["/root/a"]))
        self.assertEqual(self.history.args, first)
        self.assertEqual(self.history.undo(), set(["/root/a", "/root/b"]))
        self.assertEqual(self.history.args, EMPTY)
        self.assertFalse(self.history.canUndo())
        self.assertEqual(self.history.redo(), set(["/root/a", "/root/b"]))
        self.assertEqual(self.history.redo(), set(["/root/a"]))
        self.assertEqual(self.history.args, second)
        self.assertFalse(self.history.canRedo())

    def testANewEditDropsWhatCouldBeMadeAgain(self):
        self.history.apply([("/root/a", "x", ONE)])
        self.history.undo()
        self.assertTrue(self.history.apply([("/root/a", "x", TWO)]))
        self.assertFalse(self.history.canRedo())

    def testWhatChangesNothingIsNoStep(self):
        self.history.apply([("/root/a", "x", ONE)])
        self.history.apply([("/root/a", "x", TWO)])
        self.history.undo()
        self.assertFalse(self.history.apply([("/root/a", "x", ONE)]))
        self.assertFalse(self.history.apply([]))
        self.assertTrue(self.history.canRedo())
        self.history.undo()
        self.assertFalse(self.history.canUndo())

    def testEditsCanJoinTheLastStep(self):
        self.history.apply([("/root/a", "x", ONE)], isSameStep=True)
        self.history.apply([("/root/b", "x", ONE)], isSameStep=True)
        self.assertEqual(self.history.undo(), set(["/root/a", "/root/b"]))
        self.assertEqual(self.history.args, EMPTY)
        self.assertFalse(self.history.canUndo())

    def testAgreesWithADictionaryOverRandomSteps(self):
        seed = random.randrange(1 << 32)
        print("seed %d" % seed)
        chance = random.Random(seed)
        paths = ["/root", "/root/a", "/root/a/b", "/root/c"]
        names = ["x", "g.x", "g.h.y"]
        states, position, argsBefore = [{}], 0, self.history.args
        for _ in range(500):
            action = chance.choice(["edit", "edit", "undo", "redo"])
            if action == "edit":
                state = dict(states[position])
                edits = []
                for _ in range(chance.randint(1, 3)):
                    key = chance.choice(paths), chance.choice(names)
                    value = chance.choice([None, ONE, TWO])
                    edits.append(key + (value,))
                    state.pop(key, None)
                    if value is not None:
                        state[key] = value
                self.history.apply(edits)
                # The order of attributes counts: equal content in another order is a step too.
                if state != states[position] or self.history.args != argsBefore:
                    states[position + 1:] = [state]
                    position += 1
            elif action == "undo" and position > 0:
                self.history.undo()
                position -= 1
            elif action == "redo" and position + 1 < len(states):
                self.history.redo()
                position += 1
            argsBefore = self.history.args
            self.assertEqual(self.history.canUndo(), position > 0)
            self.assertEqual(self.history.canRedo(), position + 1 < len(states))
            for path in paths:
                for name in names:
                    self.assertEqual(self.history.getValue(path, name),
                                     states[position].get((path, name)))


if __name__ == "__main__":
    unittest.main()
