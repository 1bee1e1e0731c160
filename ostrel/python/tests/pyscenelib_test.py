"""The op graph as Python edits it."""
import unittest

import PyScenelib
from PyVlAttribute import GroupAttribute, IntAttribute

EMPTY = GroupAttribute()


class PyScenelibTest(unittest.TestCase):
    def testOpIdsArePositiveAndUnique(self):
        ids = [PyScenelib.createOp("no-op") for _ in range(10)]
        transaction = PyScenelib.Transaction()
        ids += [transaction.createOp("no-op", EMPTY, ids[:2]) for _ in range(10)]
        self.assertTrue(all(each > 0 for each in ids))
        self.assertEqual(len(set(ids)), 20)

    def testCommitIdsGrow(self):
        transaction = PyScenelib.Transaction()
        last = transaction.commit()
        for _ in range(5):
            transaction.createOp("no-op")
            current = transaction.commit()
            self.assertTrue(current > last >= 1)
            last = current

    def testOpTypesAreListed(self):
        names = PyScenelib.getOpTypes()
        for name in ("no-op", "Geometry.Import", "Scene.Literal", "Scene.Generate", "Scene.Merge",
                     "Scene.Edit", "WorkingSet.MultipleOnePassResolve", "WorkingSet.Prune",
                     "HierarchyCollapse"):
            self.assertTrue(name in names, name)

    def testOpsThatDoNotExistAreRefused(self):
        op = PyScenelib.createOp("no-op")
        missing = 1000000000
        for graph in (PyScenelib, PyScenelib.Transaction()):
            self.assertRaises(ValueError, graph.setOpArgs, missing, "no-op", None)
            self.assertRaises(ValueError, graph.setOpInputs, missing, [])
            self.assertRaises(ValueError, graph.recookLocation, missing, "/root")
            self.assertRaises(ValueError, graph.setOpInputs, op, [missing])
            self.assertRaises(ValueError, graph.createOp, "no-op", None, [missing])
            with self.assertRaises(ValueError) as context:
                graph.setOpInputs(1 << 70, [])
            self.assertEqual(str(context.exception), "there is no op with so large an id")
            self.assertRaises(ValueError, graph.setOpInputs, -1, [])

    def testCyclesAreRefused(self):
        first = PyScenelib.createOp("no-op")
        second = PyScenelib.createOp("no-op", inputs=[first])
        self.assertRaises(ValueError, PyScenelib.setOpInputs, first, [second])
        self.assertRaises(ValueError, PyScenelib.setOpInputs, first, [first])
        transaction = PyScenelib.Transaction()
        transaction.setOpInputs(first, [second])
        self.assertRaises(ValueError, transaction.commit)
        transaction.commit()  # empty again

    def testArgumentsAreChecked(self):
        op = PyScenelib.createOp("no-op")
        for graph in (PyScenelib, PyScenelib.Transaction()):
            rows = [
                (lambda: graph.createOp(1), "the op type must be str, not int"),
                (lambda: graph.createOp("no-op", 1),
                 "the args must be a GroupAttribute or None, not int"),
                (lambda: graph.createOp("no-op", IntAttribute(1)),
                 "the args must be a GroupAttribute or None, not PyVlAttribute.IntAttribute"),
                (lambda: graph.createOp("no-op", None, 1),
                 "the inputs must be a sequence of op ids"),
                (lambda: graph.createOp("no-op", None, ["1"]), "an op id must be int, not str"),
                (lambda: graph.setOpArgs("1", "no-op", None), "an op id must be int, not str"),
                (lambda: graph.recookLocation(op, 1), "the path must be str, not int"),
                (lambda: graph.setOpInputs(op, [1.0]), "an op id must be int, not float"),
            ]
            for index, (call, text) in enumerate(rows):
                with self.assertRaises(TypeError) as context:
                    call()
                self.assertEqual(str(context.exception), text, "row %d" % index)
            self.assertRaises(TypeError, graph.createOp)
            self.assertRaises(TypeError, graph.setOpArgs, op, "no-op")

    def testWaitUntilIdle(self):
        PyScenelib.createOp("Scene.Generate", GroupAttribute(("leafCount", IntAttribute(10))))
        self.assertTrue(PyScenelib.waitUntilIdle(60))
        self.assertTrue(PyScenelib.waitUntilIdle(0))
        self.assertTrue(PyScenelib.waitUntilIdle(float("inf")))
        with self.assertRaises(ValueError) as context:
            PyScenelib.waitUntilIdle(float("nan"))
        self.assertEqual(str(context.exception), "waitUntilIdle: the timeout is not a number")
        self.assertRaises(TypeError, PyScenelib.waitUntilIdle)

    def testCommitsAreCookedInTheBackground(self):
        commit = PyScenelib.Transaction().commit()
        self.assertTrue(PyScenelib.waitUntilIdle(60))
        self.assertTrue(PyScenelib.isCommitCooked(commit))
        self.assertFalse(PyScenelib.isCommitCooked(commit + 1000))
        self.assertRaises(TypeError, PyScenelib.isCommitCooked)
        self.assertRaises(TypeError, PyScenelib.isCommitCooked, "1")

    def testNothingIsToComeThatNobodyWants(self):
        PyScenelib.createOp("Scene.Generate", GroupAttribute(("leafCount", IntAttribute(10))))
        self.assertTrue(PyScenelib.waitUntilIdle(60))
        self.assertEqual(PyScenelib.countLocationsToCome(), 0)
        self.assertRaises(TypeError, PyScenelib.countLocationsToCome, 1)

    def testFlushCachesKeepsTheGraph(self):
        op = PyScenelib.createOp("no-op")
        PyScenelib.flushCaches()
        PyScenelib.setOpArgs(op, "no-op", EMPTY)


if __name__ == "__main__":
    unittest.main()
