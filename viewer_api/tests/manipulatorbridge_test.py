"""The bridge to the application: how it is bound, called, and what its failures do."""

import gc
import os
import subprocess
import sys
import unittest
import weakref

from scripted import (Bridge, DELEGATE, IS_PYTHON_3, ScriptedTest, ViewerAPI, application, errorOf)
import BridgeHolder
import ScriptedPlugins
import ScriptedScene
from PyVlAttribute import DoubleAttribute, IntAttribute

NOT_BOUND = "This method of the ManipulatorBridge could not be bound"
ODD_TEXT = "/caf\udce9" if IS_PYTHON_3 else "/caf\xe9"


class BindingTest(ScriptedTest):
    def testEveryDelegateMakesABridgeOfItsOwn(self):
        first = ViewerAPI.CreateViewerDelegate(DELEGATE)
        second = ViewerAPI.CreateViewerDelegate(DELEGATE)
        self.assertEqual(2, len(application.bridges))
        del first, second

    def testCleanupOfTheDelegateDoesNotTouchIt(self):
        self.createDelegate()
        self.delegate.cleanup()
        self.delegate.setViewOp(ScriptedScene.addOp())
        self.assertEqual(["updateOp"], [call[0] for call in self.bridge.calls])

    def testItEndsWithTheDelegate(self):
        self.createDelegate()
        reference = weakref.ref(self.bridge)
        self.bridge = None
        del application.bridges[:]
        gc.collect()
        self.assertIsNotNone(reference())
        self.delegate = None
        gc.collect()
        self.assertIsNone(reference())

    def testMethodsAreBoundOnce(self):
        self.createDelegate()
        calls = []
        self.bridge.updateOp = calls.append
        self.delegate.setViewOp(ScriptedScene.addOp())
        self.assertEqual(([], ["updateOp"]), (calls, [call[0] for call in self.bridge.calls]))

    def testMethodsAreBoundAndReleasedInTheirOrder(self):
        bound, released = [], []

        class Method(object):
            def __init__(self, name):
                self.name = name

            def __call__(self, *arguments):
                pass

            def __del__(self):
                released.append(self.name)

        class OrderedBridge(object):
            def __getattr__(self, name):
                bound.append(name)
                return Method(name)

            def __del__(self):
                released.append("the bridge")

        application.ManipulatorBridge = OrderedBridge
        holder = BridgeHolder.create()
        methods = ["getValue", "setValue", "isNodeEditable", "updateOp",
                   "getManipulationCommitId", "openManipulationGroup", "closeManipulationGroup",
                   "cleanupLiveAttributes"]
        self.assertEqual((methods, []), (bound, released))
        del holder
        self.assertEqual(methods[:5] + ["the bridge"] + methods[5:], released)

    def testAClassThatRaisesIsPrintedAndTheDelegateGoesOn(self):
        def fails():
            raise ValueError("no bridge today")

        application.ManipulatorBridge = fails
        self.createDelegate()
        self.assertIn("no bridge today", self.takePrinted())
        self.delegate.setViewOp(ScriptedScene.addOp())
        self.assertIn(NOT_BOUND, self.takePrinted())

    def testAMissingClassIsPrintedAndTheDelegateGoesOn(self):
        del application.ManipulatorBridge
        self.createDelegate()
        self.assertIn("ManipulatorBridge", self.takePrinted())
        self.delegate.setup()

    def testBindingStopsAtTheFirstMethodThatIsMissing(self):
        class HalfBridge(object):
            calls = []

            def getValue(self, *arguments):
                self.calls.append("getValue")

            def setValue(self, *arguments):
                self.calls.append("setValue")
                return True

            def isNodeEditable(self, name):
                self.calls.append("isNodeEditable")
                return True

            # updateOp is missing; what follows is there.

            def getManipulationCommitId(self):
                self.calls.append("getManipulationCommitId")
                return 0

            def openManipulationGroup(self, location):
                self.calls.append("openManipulationGroup")

            closeManipulationGroup = cleanupLiveAttributes = openManipulationGroup

        application.ManipulatorBridge = HalfBridge
        holder = BridgeHolder.create()
        self.assertIn("updateOp", self.takePrinted())

        # Bound before the gap.
        self.assertTrue(BridgeHolder.setValue(holder, "/a", "x", IntAttribute(1), False))
        self.assertTrue(BridgeHolder.isNodeEditable(holder, "n"))
        self.assertIsNone(BridgeHolder.getValue(holder, "/a", "x"))
        self.assertEqual(["setValue", "isNodeEditable", "getValue"], HalfBridge.calls)
        self.assertEqual("", self.takePrinted())

        # The gap and what stands after it fail as if they had raised.
        self.assertIsNone(errorOf(BridgeHolder.updateOp, holder, 1))
        self.assertIn(NOT_BOUND, self.takePrinted())
        self.assertIsNone(errorOf(BridgeHolder.updateOp, holder, 1, "text"))
        self.assertIn(NOT_BOUND, self.takePrinted())
        self.assertEqual(-2, BridgeHolder.getManipulationCommitId(holder))
        self.assertIn(NOT_BOUND, self.takePrinted())
        for name in ("openManipulationGroup", "closeManipulationGroup", "cleanupLiveAttributes"):
            self.assertError(RuntimeError, NOT_BOUND, getattr(BridgeHolder, name), holder, "/a")
            self.assertEqual("", self.takePrinted())
        self.assertEqual(3, len(HalfBridge.calls))

    def testAnEmptyHolderAnswersEveryCall(self):
        del application.ManipulatorBridge
        holder = BridgeHolder.create()
        self.takePrinted()
        self.assertFalse(BridgeHolder.setValue(holder, "/a", "x", IntAttribute(1), True))
        self.assertFalse(BridgeHolder.isNodeEditable(holder, "n"))
        self.assertIsNone(BridgeHolder.getValue(holder, "/a", "x"))
        self.assertEqual(3, self.takePrinted().count(NOT_BOUND))

    def testGetValueMustBeThereAlthoughNothingReadsIt(self):
        class WithoutGetValue(Bridge):
            getValue = property()  # raises AttributeError

        application.ManipulatorBridge = WithoutGetValue
        self.createDelegate()
        self.assertIn("AttributeError", self.takePrinted())
        self.delegate.setViewOp(ScriptedScene.addOp())
        self.assertIn(NOT_BOUND, self.takePrinted())

    def testAMissingModuleIsPrintedAndTriedAgainByTheNextDelegate(self):
        # The module is kept once found, so this needs an interpreter of its own.
        program = (
            "import sys\n"
            "sys.modules['ViewerAPI'] = None\n"
            "sys.path.insert(0, %r)\n"
            "import ScriptedPlugins, ScriptedScene\n"
            "import ViewerAPI_cmodule as v\n"
            "import types\n"
            "def create():\n"
            "    sys.stderr.write('create\\n')\n"
            "    return v.CreateViewerDelegate('ScriptedDelegate')\n"
            "a = create()\n"
            "b = create()\n"
            "module = types.ModuleType('ViewerAPI')\n"
            "class Bridge(object):\n"
            "    def __init__(self): sys.stderr.write('bound\\n')\n"
            "    def __getattr__(self, name): return lambda *arguments: None\n"
            "module.ManipulatorBridge = Bridge\n"
            "sys.modules['ViewerAPI'] = module\n"
            "c = create()\n"
            "sys.modules['ViewerAPI'] = None\n"
            "d = create()\n" % os.path.dirname(os.path.abspath(ScriptedPlugins.__file__)))
        process = subprocess.Popen([sys.executable, "-c", program], stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE)
        errors = process.communicate()[1].decode()
        self.assertEqual(0, process.returncode, errors)
        _, first, second, third, fourth = errors.split("create\n")
        for printed in (first, second):
            self.assertIn("Error", printed)
            self.assertIn("ViewerAPI", printed)
        self.assertEqual(("bound\n", "bound\n"), (third, fourth))


class CallTest(ScriptedTest):
    def setUp(self):
        ScriptedTest.setUp(self)
        self.holder = BridgeHolder.create()
        self.bridge = application.bridges[-1]

    def tearDown(self):
        self.holder = self.bridge = None
        ScriptedTest.tearDown(self)

    def call(self, name, *arguments):
        return getattr(BridgeHolder, name)(self.holder, *arguments)

    def testArgumentsArriveAsTheyAre(self):
        value = DoubleAttribute([1.0, 2.0])
        for name, arguments, passed in (
                ("setValue", ("/a", "xform.x", value, False), ("/a", "xform.x", value, 0)),
                ("setValue", ("/a", "xform.x", value, True), ("/a", "xform.x", value, 1)),
                ("setValue", ("/a", "xform.x", None, True), ("/a", "xform.x", None, 1)),
                ("isNodeEditable", ("node",), ("node",)),
                ("updateOp", (3,), (3,)),
                ("updateOp", (3, "text"), (3, "text")),
                ("getValue", ("/a", "xform.x"), ("/a", "xform.x")),
                ("getManipulationCommitId", (), ()),
                ("openManipulationGroup", ("/a",), ("/a",)),
                ("closeManipulationGroup", ("/a",), ("/a",)),
                ("cleanupLiveAttributes", (ODD_TEXT,), (ODD_TEXT,))):
            self.bridge.calls = []
            self.call(name, *arguments)
            self.assertEqual([(name,) + passed], self.bridge.calls)
            self.assertEqual([type(argument) for argument in passed],
                             [type(argument) for argument in self.bridge.calls[0][1:]])

    def testTruthDecidesSetValueAndIsNodeEditable(self):
        for answer, truth in ((True, True), (1, True), ("x", True), ([0], True), (False, False),
                              (0, False), (None, False), ("", False)):
            self.bridge.answers["setValue"] = self.bridge.answers["isNodeEditable"] = answer
            self.assertIs(truth, self.call("setValue", "/a", "x", IntAttribute(1), False))
            self.assertIs(truth, self.call("isNodeEditable", "node"))
        self.assertEqual("", self.takePrinted())

    def testATruthThatRaisesIsPrintedAndFalse(self):
        class Unclear(object):
            def __bool__(self):
                raise ValueError("neither")

            __nonzero__ = __bool__

        self.bridge.answers["setValue"] = self.bridge.answers["isNodeEditable"] = Unclear()
        self.assertIs(False, self.call("setValue", "/a", "x", IntAttribute(1), False))
        self.assertIs(False, self.call("isNodeEditable", "node"))
        self.assertEqual(2, self.takePrinted().count("ValueError: neither"))

    def testExceptionsArePrintedAndGoNoFurther(self):
        for name, arguments, failure in (
                ("setValue", ("/a", "x", IntAttribute(1), True), False),
                ("isNodeEditable", ("node",), False),
                ("updateOp", (3,), None),
                ("updateOp", (3, "text"), None),
                ("getValue", ("/a", "x"), None),
                ("getManipulationCommitId", (), -2)):
            self.bridge.answers[name] = ValueError("refused by " + name)
            self.assertIsNone(errorOf(self.call, name, *arguments), name)
            self.assertEqual(failure, self.call(name, *arguments), name)
            printed = self.takePrinted()
            self.assertEqual(2, printed.count("Traceback"), printed)
            self.assertEqual(2, printed.count("ValueError: refused by " + name), printed)

    def testWhatGetValueAnswersIsNotConverted(self):
        self.bridge.answers["getValue"] = IntAttribute(5)
        self.assertIsNone(self.call("getValue", "/a", "x"))

    def testCommitIdsAreReadAsTheyAre(self):
        for commit in (-1, 0, 5, 2 ** 31 - 1, -2, True):
            self.bridge.answers["getManipulationCommitId"] = commit
            self.assertEqual(commit, self.call("getManipulationCommitId"))
        self.assertEqual("", self.takePrinted())

    def testCommitIdsAreReadAs32SignedBits(self):
        for answer, commit in ((2 ** 31, -2 ** 31), (2 ** 32 - 1, -1), (2 ** 32 + 5, 5)):
            self.bridge.answers["getManipulationCommitId"] = answer
            self.assertEqual(commit, self.call("getManipulationCommitId"))
        self.assertEqual("", self.takePrinted())

    @unittest.skipIf(IS_PYTHON_3, "Python 3 has no long")
    def testALongCommitIdIsReadTheSameAsAnInt(self):
        for commit in (-1, 0, 7):
            self.bridge.answers["getManipulationCommitId"] = eval("long")(commit)
            self.assertEqual(commit, self.call("getManipulationCommitId"))
        self.assertEqual("", self.takePrinted())

    def testACommitIdThatIsNoNumberIsPrintedAndCountsAsAnError(self):
        for commit in (None, "1", [], 10 ** 30):
            self.bridge.answers["getManipulationCommitId"] = commit
            self.assertEqual(-2, self.call("getManipulationCommitId"), repr(commit))
            self.assertIn("Error", self.takePrinted(), repr(commit))

    def testCallsLeakNothing(self):
        answer, value = object(), IntAttribute(3)
        name = "location" * 10
        self.bridge.answers["cleanupLiveAttributes"] = answer
        watched = (answer, value, name, None)
        before = [sys.getrefcount(item) for item in watched]
        for _ in range(1000):
            self.call("cleanupLiveAttributes", name)
            self.call("setValue", name, name, value, True)
            self.bridge.calls = []
        for item, count in zip(watched, before):
            self.assertLess(abs(sys.getrefcount(item) - count), 100, repr(item))


class HostTest(ScriptedTest):
    """The calls that a delegate makes."""

    def setUp(self):
        ScriptedTest.setUp(self)
        self.createDelegate()

    def tearDown(self):
        self.bridge = None
        ScriptedTest.tearDown(self)

    def testSetViewOpTellsTheBridgeAlsoOfTheCurrentOp(self):
        op = ScriptedScene.addOp()
        self.delegate.setViewOp(op)
        self.delegate.setViewOp(op)
        self.assertEqual([("updateOp", op), ("updateOp", op)], self.bridge.calls)

    def testCleanupIsCalledForEveryEventOfThePrimaryClients(self):
        ScriptedScene.report(self.firstClient, "/root")
        ScriptedScene.report(self.firstClient, "/root/a")
        ScriptedScene.reportGone(self.firstClient, "/root/a")
        ScriptedScene.report(self.firstClient + 1, "/root/pinned")
        ScriptedScene.report(self.firstClient + 2, "/root/source")
        self.delegate.processLocationEvents()
        self.assertEqual([("cleanupLiveAttributes", path)
                          for path in ("/root", "/root/a", "/root/a", "/root/pinned")],
                         self.bridge.calls)

    def testAnErrorInCleanupSurfacesAtThePumpWhichHasDoneItsWork(self):
        self.bridge.answers["cleanupLiveAttributes"] = ValueError("first")
        for path in ("/root", "/root/a"):
            ScriptedScene.report(self.firstClient, path)
        error = errorOf(self.delegate.processLocationEvents)
        self.assertIs(ValueError, type(error))
        self.assertEqual("first", str(error))
        self.assertEqual("", self.takePrinted())
        self.assertEqual([("cleanupLiveAttributes", "/root"),
                          ("cleanupLiveAttributes", "/root/a")], self.bridge.calls)


class PendingErrorTest(ScriptedTest):
    """Errors of the calls that are not tested for one: they surface where Python called."""

    def setUp(self):
        ScriptedTest.setUp(self)
        self.createDelegate()

    def tearDown(self):
        self.bridge = None
        ScriptedTest.tearDown(self)

    def testAnErrorOfEachOfTheseCallsStaysPendingAndIsNotPrinted(self):
        holder = BridgeHolder.create()
        for name in ("openManipulationGroup", "closeManipulationGroup", "cleanupLiveAttributes"):
            application.bridges[-1].answers[name] = ValueError(name)
            self.assertError(ValueError, name, getattr(BridgeHolder, name), holder, "/a")
        self.assertEqual("", self.takePrinted())

    def testACallAfterItIsNotDisturbed(self):
        holder = BridgeHolder.create()
        bridge = application.bridges[-1]
        bridge.answers["cleanupLiveAttributes"] = ValueError("first")
        bridge.answers["isNodeEditable"] = ValueError("second")
        self.assertError(ValueError, "first", BridgeHolder.callTwice, holder, "/a", "node")
        self.assertEqual(["cleanupLiveAttributes", "isNodeEditable"],
                         [call[0] for call in bridge.calls])
        printed = self.takePrinted()
        self.assertIn("ValueError: second", printed)
        self.assertNotIn("first", printed)

    def testTheFirstErrorIsTheOneThatSurfaces(self):
        errors = [ValueError("first"), ValueError("second"), None]

        class Answers(dict):
            def get(self, name):
                return errors.pop(0) if name == "cleanupLiveAttributes" else None

        self.bridge.answers = Answers()
        for path in ("/root", "/root/a", "/root/b"):
            ScriptedScene.report(self.firstClient, path)
        self.assertError(ValueError, "first", self.delegate.processLocationEvents)
        self.assertEqual([], errors)

    def testChannelsOfTheSameEntryWorkAsEver(self):
        self.bridge.answers["cleanupLiveAttributes"] = ValueError("first")
        told = []
        self.delegate.registerCallback("__SELECTED_ENABLED_LOCATIONS_CHANGED",
                                       lambda value: told.append(value))
        ScriptedScene.report(self.firstClient, "/root")
        self.assertError(ValueError, "first", self.delegate.processLocationEvents)
        self.assertEqual([None], told)


if __name__ == "__main__":
    unittest.main()
