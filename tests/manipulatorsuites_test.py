"""Every entry of the host suites of manipulators and their handles, through a real plug-in library:
the probes call the tables as they are told, over a real scene and its edits."""
import unittest

import ostrel
from probes import IDENTITY, RANGE_ERROR, ProbeTest, Raises
from PyVlAttribute import DoubleAttribute, GroupAttribute, StringAttribute

DEADLINE = 60
A, B = "/root/a", "/root/b"
LOCKED = "/root/locked"  # of a node that may not be edited
ORPHAN = "/root/orphan"  # of no node
MOVED = "1 0 0 0 0 1 0 0 0 0 1 0 5 6 7 1"
DOUBLED = "2 0 0 0 0 2 0 0 0 0 2 0 0 0 0 1"
NO_HANDLE = "Couldn't load ManipulatorHandle plugin type '%s'."
NO_NAME = 'GroupBuilder::set: empty name in "%s"'
ALL_BITS = 2 ** 64 - 1

# By entry: calls and their results, in order, on fresh objects. The manipulator edits A and B and
# has two handles, first "g", then "h". Nothing is drawn yet, and no transform set.
# "-1" as an index is the largest there is.

MANIPULATOR_CALLS = {
    "getPluginName": (("getPluginName", "ProbeManipulator"),),
    "event": (("event int:7", "0"), ("event null", "0")),
    "draw": (("draw", "1"), ("draw", "1")),
    "pickerDraw": (("pickerDraw 0", "1"), ("pickerDraw %d" % ALL_BITS, "1")),
    "getXform": (("getXform", IDENTITY),),
    "setXform": (("setXform double:" + MOVED, "done"), ("getXform", "(%s)" % MOVED),
                 ("handle.getCombinedXform", "(%s)" % MOVED),
                 ("setXform null", "done"), ("getXform", "null"),
                 ("handle.getCombinedXform", IDENTITY),
                 ("setXform double:" + MOVED, "done"),
                 ("setXform int:1", "done"), ("getXform", "null"),
                 ("handle.getCombinedXform", IDENTITY)),
    "calculateXform": (("calculateXform", "(1 0 0 0 0 1 0 0 0 0 1 0 2 3 4 1)"),
                       ("setXform double:" + MOVED, "done"),
                       ("calculateXform", "(1 0 0 0 0 1 0 0 0 0 1 0 2 3 4 1)")),
    "getValue": (("getValue /root/a xform.g.translate", "(1 2 3)"),
                 ("getValue /root/orphan type", '"locator"'),
                 ("getValue /root/a xform.nothing", "null"),
                 ("getValue /root/a \"\"", "null"), ("getValue /root/a (null)", "null"),
                 ("getValue /root/unknown type", "null"), ("getValue \"\" type", "null"),
                 ("getValue (null) type", "null"), ("getValue (null) (null)", "null")),
    "setValue": (("setValue /root/a label 0 string:one two", "1"),
                 ("getValue /root/a label", '"one two"'),
                 ("setValue /root/a xform.g.translate 2 double:7 8 9", "1"),
                 ("getValue /root/a xform.g.translate", "(7 8 9)"),
                 ("setValue /root/a label 0 null", "0"),
                 ("getValue /root/a label", '"one two"'),
                 ("setValue /root/unknown label 0 int:1", "0"),
                 ("setValue \"\" label 0 int:1", "0"), ("setValue (null) label 1 int:1", "0"),
                 ("setValue /root/a (null) 0 int:1", Raises(NO_NAME % "")),
                 ("setValue /root/a \"\" 1 int:1", Raises(NO_NAME % "")),
                 ("setValue /root/a a..b 0 int:1", Raises(NO_NAME % "a..b")),
                 ("getValue /root/a label", '"one two"'),
                 ("setValue /root/a label 0 int:3", "1"), ("getValue /root/a label", "3")),
    "getViewport": (("getViewport", "found"),),
    "getLocationPaths": (("getLocationPaths", '("/root/a" "/root/b")'),),
    "addManipulatorHandle": (
        ("addManipulatorHandle ProbeHandle i", "found"),
        ("getManipulatorHandleName 2", "i"),
        ("addManipulatorHandle ProbeHandle (null)", "found"),
        ("getManipulatorHandle \"\"", "found"),
        ("getNumberOfManipulatorHandles", "4"),
        ("addManipulatorHandle Nobody j", Raises(NO_HANDLE % "Nobody")),
        ("addManipulatorHandle ProbeManipulator j", Raises(NO_HANDLE % "ProbeManipulator")),
        ("addManipulatorHandle \"\" j", Raises(NO_HANDLE % "")),
        ("addManipulatorHandle (null) (null)", Raises(NO_HANDLE % "")),
        ("getNumberOfManipulatorHandles", "4"), ("getManipulatorHandle j", "null"),
        # Another of that name: the older one is left without a name, at its index.
        ("handle:h.setMarked 1", "1"), ("addManipulatorHandle ProbeHandle h", "found"),
        ("handle:h.isMarked", "0"), ("getManipulatorHandleName 4", "h"),
        ("getManipulatorHandleName 1", ""), ("getManipulatorHandleByIndex 1", "found")),
    "getManipulatorHandle": (("getManipulatorHandle h", "found"),
                             ("getManipulatorHandle i", "null"),
                             ("getManipulatorHandle \"\"", "null"),
                             ("getManipulatorHandle (null)", "null")),
    "getManipulatorHandleByIndex": (("getManipulatorHandleByIndex 0", "found"),
                                    ("getManipulatorHandleByIndex 1", "found"),
                                    ("getManipulatorHandleByIndex 2", "null"),
                                    ("getManipulatorHandleByIndex 3", "null"),
                                    ("getManipulatorHandleByIndex -1", "null")),
    "removeManipulatorHandle": (("handle:h.setMarked 1", "1"),
                                ("removeManipulatorHandle g", "done"),
                                ("removeManipulatorHandle g", "done"),
                                ("removeManipulatorHandle \"\"", "done"),
                                ("removeManipulatorHandle (null)", "done"),
                                ("getNumberOfManipulatorHandles", "1"),
                                ("getManipulatorHandleName 0", "h"), ("handle.isMarked", "1")),
    "removeManipulatorHandleByIndex": (
        ("removeManipulatorHandleByIndex 2", Raises(RANGE_ERROR)),
        ("removeManipulatorHandleByIndex 3", "done"), ("removeManipulatorHandleByIndex -1", "done"),
        ("getNumberOfManipulatorHandles", "2"), ("handle:h.setMarked 1", "1"),
        ("removeManipulatorHandleByIndex 0", "done"), ("getNumberOfManipulatorHandles", "1"),
        ("handle.isMarked", "1"), ("getManipulatorHandle g", "null"),
        # Its name sorts behind the removed one's, and so keeps the index, which leads nowhere now.
        ("getManipulatorHandle h", "null"), ("getManipulatorHandleName 0", ""),
        ("getManipulatorHandleName 1", "h"), ("removeManipulatorHandleByIndex 0", "done"),
        ("getNumberOfManipulatorHandles", "0"),
        ("removeManipulatorHandleByIndex 0", Raises(RANGE_ERROR))),
    "getNumberOfManipulatorHandles": (("getNumberOfManipulatorHandles", "2"),),
    "getManipulatorHandleName": (("getManipulatorHandleName 1", "h"),
                                 ("getManipulatorHandleName 2", ""),
                                 ("getManipulatorHandleName 3", ""),
                                 ("getManipulatorHandleName -1", "")),
    "getRegisteredManipulatorsInfo": (
        ("getRegisteredManipulatorsInfo ProbeManipulator", '{label="Probe it"}'),
        ("getRegisteredManipulatorsInfo ProbeHandle", "null")),
    "isEditable": (("isEditable", "1"),),
    "openManipulationGroup": (("openManipulationGroup /root/a", "done"),
                              ("openManipulationGroup /root/a", "done"),
                              ("openManipulationGroup /root/unknown", "done"),
                              ("openManipulationGroup (null)", "done")),
    "closeManipulationGroup": (("closeManipulationGroup /root/a", "done"),
                               ("openManipulationGroup /root/a", "done"),
                               ("closeManipulationGroup /root/unknown", "done"),
                               ("closeManipulationGroup (null)", "done"),
                               ("closeManipulationGroup /root/a", "done")),
}

HANDLE_CALLS = {
    "getManipulator": (("getManipulator", "found"),),
    "getCombinedXform": (("getCombinedXform", IDENTITY),
                         ("manipulator.setXform double:" + MOVED, "done"),
                         ("getCombinedXform", "(%s)" % MOVED),
                         ("setLocalXform double:" + DOUBLED, "done"),
                         ("getCombinedXform", "(2 0 0 0 0 2 0 0 0 0 2 0 5 6 7 1)"),
                         ("manipulator.setXform double:" + DOUBLED, "done"),
                         ("setLocalXform double:" + MOVED, "done"),
                         ("getCombinedXform", "(2 0 0 0 0 2 0 0 0 0 2 0 10 12 14 1)")),
    "setLocalXform": (("setLocalXform double:" + MOVED, "done"), ("getLocalXform", "(%s)" % MOVED),
                      ("setLocalXform null", "done"), ("getLocalXform", "null"),
                      ("getCombinedXform", IDENTITY),
                      ("setLocalXform double:" + MOVED, "done"),
                      ("setLocalXform string:text", "done"), ("getLocalXform", "null"),
                      ("getCombinedXform", IDENTITY), ("handle:h.getLocalXform", "null")),
    "getLocalXform": (("getLocalXform", "null"),
                      ("manipulator.setXform double:" + MOVED, "done"),
                      ("getLocalXform", "null")),
    "event": (("event int:7", "0"), ("event null", "0")),
    "draw": (("draw", "done"),),
    "pickerDraw": (("pickerDraw 0", "done"), ("pickerDraw %d" % ALL_BITS, "done")),
    "setEngaged": (("setEngaged 2", "1"), ("setEngaged -1", "1"), ("setEngaged 1", "1"),
                   ("setEngaged 0", "0")),
    "isEngaged": (("isEngaged", "0"), ("setEngaged 2", "1"), ("isEngaged", "1"),
                  ("handle:h.isEngaged", "0"), ("isMarked", "0"),
                  ("setEngaged 0", "0"), ("isEngaged", "0"), ("setEngaged -256", "1"),
                  ("isEngaged", "1")),
    "setMarked": (("setMarked 2", "1"), ("setMarked -1", "1"), ("setMarked 1", "1"),
                  ("setMarked 0", "0")),
    "isMarked": (("isMarked", "0"), ("setMarked 2", "1"), ("isMarked", "1"),
                 ("handle:h.isMarked", "0"), ("isEngaged", "0"),
                 ("setMarked 0", "0"), ("isMarked", "0"), ("setMarked -256", "1"),
                 ("isMarked", "1")),
    "notifyPlugin": (("notifyPlugin", "done"),),
}

# What differs in these situations.

WITHOUT_LOCATIONS = (
    ("getLocationPaths", "()"), ("draw", "0"), ("pickerDraw 1", "0"), ("calculateXform", IDENTITY),
    ("event int:7", "0"), ("isEditable", "1"), ("getValue /root/a xform.g.translate", "(1 2 3)"),
    ("setValue /root/a label 0 int:1", "1"), ("handle.setEngaged 1", "1"),
    ("handle.isEngaged", "1"))

# While the plug-in's create runs, with a handle that it has added by then.
DURING_CREATE = (
    ("getPluginName", "ProbeManipulator"), ("getXform", "null"), ("getLocationPaths", "null"),
    ("calculateXform", IDENTITY), ("isEditable", "0"), ("draw", "0"), ("pickerDraw 1", "0"),
    ("getViewport", "found"), ("getValue /root/a xform.g.translate", "(1 2 3)"),
    ("setXform double:" + MOVED, "done"), ("handle.getCombinedXform", "(%s)" % MOVED),
    ("handle.setEngaged 1", "1"), ("handle.isEngaged", "0"),
    ("handle.setMarked 1", "1"), ("handle.isMarked", "1"))

AFTER_CREATE = (("getXform", IDENTITY), ("handle.getCombinedXform", IDENTITY),
                ("getLocationPaths", '"/root/a"'), ("handle.isEngaged", "1"),
                ("handle.isMarked", "1"))


def location(translate, node=None):
    attributes = [("type", StringAttribute("locator")),
                  ("xform.g.translate", DoubleAttribute(translate, 3))]
    if node is not None:
        attributes.append(("attributeEditor.exclusiveTo", StringAttribute(node)))
    return GroupAttribute(*attributes)


class ManipulatorSuitesTest(ProbeTest):

    def setUp(self):
        self.prepare()

    def tearDown(self):
        self.end()

    def prepare(self):
        self.session = ostrel.Session("ProbeDelegate")
        self.session.lockedNodes.add("locked")
        self.session.createOp("Scene.Literal", GroupAttribute(
            ("staticScene.c.a.a", location([1, 2, 3], ostrel.Session.NODE)),
            ("staticScene.c.b.a", location([3, 4, 5], ostrel.Session.NODE)),
            ("staticScene.c.locked.a", location([0, 0, 0], "locked")),
            ("staticScene.c.orphan.a", location([0, 0, 0]))))
        self.viewport = self.session.delegate.addViewport("ProbeViewport", "v")
        self.pump()
        self.command("return:1@ProbeManipulator.matches")
        self.command("returnAttribute:group:label=string:Probe it@ProbeManipulator.getTags")
        self.activate(A, B)
        for name in ("g", "h"):
            self.call(self.manipulator, "manipulator.addManipulatorHandle ProbeHandle " + name)
        self.clearLog()

    def end(self):
        self.command("clear")
        self.viewport = self.manipulator = None
        self.session.close()

    def renew(self):
        self.end()
        self.prepare()

    def pump(self):
        self.assertTrue(self.session.pump(timeout=DEADLINE), "the viewer does not settle")

    def activate(self, *paths):
        """The manipulator anew, without handles."""
        self.viewport.deactivateAllManipulators(False)
        self.viewport.activateManipulator("ProbeManipulator", list(paths), False)
        self.manipulator = self.viewport.getActiveManipulatorByIndex(0)

    @property
    def probe(self):
        return self.viewport

    def probeOf(self, kind):
        return self.manipulator

    def callManipulator(self, call):
        return self.call(self.manipulator, "manipulator." + call)

    def testEveryEntryHasCalls(self):
        self.checkEntries("ManipulatorHostSuite", MANIPULATOR_CALLS)
        self.checkEntries("ManipulatorHandleHostSuite", HANDLE_CALLS)

    def testEveryEntryOfTheManipulatorsSuite(self):
        self.checkCalls("manipulator", MANIPULATOR_CALLS)

    def testEveryEntryOfTheHandlesSuite(self):
        self.checkCalls("handle", HANDLE_CALLS)

    def testWithoutLocations(self):
        for paths in ((), ("/root/unknown",)):
            self.activate(*paths)
            self.callManipulator("addManipulatorHandle ProbeHandle g")
            self.clearLog()
            self.checkRows("manipulator", str(paths), WITHOUT_LOCATIONS)
            called = [line for line in self.logOf(self.manipulator) if not line.startswith("->")]
            self.assertEqual(["event 7"], called, "not set up, not drawn")

    def testWhileAndAfterThePluginIsCreated(self):
        told = [("addManipulatorHandle ProbeHandle g", "found")] + list(DURING_CREATE)
        calls = [(call if call.startswith("handle.") else "manipulator." + call, result)
                 for call, result in told]
        for call, _ in calls:
            self.command("call:%s@ProbeManipulator.create" % call)
        self.activate(A)
        self.assertEqual(["-> %s: %s" % (call.split()[0], result) for call, result in calls],
                         [line for line in self.logOf(self.manipulator)
                          if line.startswith("->")])
        self.checkRows("manipulator", "after create", AFTER_CREATE)

    def testEditableIsWhatTheApplicationMayEditEverywhere(self):
        for paths, isEditable in (((A, B), "1"), ((A, LOCKED), "0"), ((ORPHAN,), "0"),
                                  ((A, "/root/unknown"), "1")):
            self.activate(*paths)
            self.assertEqual(isEditable, self.callManipulator("isEditable"), paths)

    def testValuesOfALockedNodeShowUntilTheDragEnds(self):
        self.activate(LOCKED)
        for isFinal in (0, 1):
            self.assertEqual("1", self.callManipulator("setValue /root/locked label %d int:1" %
                                                       isFinal))
            self.assertEqual("1", self.callManipulator("getValue /root/locked label"))
        self.pump()
        self.assertEqual("null", self.callManipulator("getValue /root/locked label"))
        self.assertFalse(self.session.canUndo())

    def testFinalValuesAreEditsOfTheScene(self):
        self.callManipulator("setValue /root/a label 0 int:1")
        self.assertFalse(self.session.canUndo())
        self.callManipulator("setValue /root/a label -1 int:2")
        self.assertTrue(self.session.undo())
        self.pump()
        self.assertEqual("null", self.callManipulator("getValue /root/a label"))
        self.assertFalse(self.session.canUndo())

    def testValuesOfAGroupAreOneEdit(self):
        for call in ("openManipulationGroup /root/a", "openManipulationGroup /root/b",
                     "setValue /root/a label 1 int:1", "setValue /root/b label 1 int:1"):
            self.callManipulator(call)
        for path in (A, B):
            self.assertFalse(self.session.canUndo())
            self.callManipulator("closeManipulationGroup " + path)
        self.assertTrue(self.session.undo())
        self.assertFalse(self.session.canUndo())

    def testCallsReachTheManipulator(self):
        self.command("return:-7@ProbeManipulator.event")
        for call, result in (("event int:7", "1"), ("event null", "1"),
                             ("pickerDraw %d" % ALL_BITS, "1"), ("draw", "1")):
            self.assertEqual(result, self.callManipulator(call), call)
        self.assertEqual(["event 7", "-> manipulator.event: 1",
                          "event null", "-> manipulator.event: 1",
                          "setup", "pickerDraw %d" % ALL_BITS, "-> manipulator.pickerDraw: 1",
                          "draw", "-> manipulator.draw: 1"], self.logOf(self.manipulator))

    def testCallsReachTheHandle(self):
        self.command("return:256@ProbeHandle.event")
        for call in ("event int:7", "event null", "draw", "pickerDraw %d" % ALL_BITS,
                     "notifyPlugin", "setEngaged 1", "setMarked 1"):
            self.call(self.manipulator, "handle." + call)
        self.assertEqual(["event 7", "event null", "draw", "pickerDraw %d" % ALL_BITS, "notify"],
                         [line[len("ProbeHandle "):] for line in self.libraryLog()
                          if line.startswith("ProbeHandle ")])
        self.assertEqual(["1", "1"], [line.split()[-1] for line in self.logOf(self.manipulator)
                                      if line.startswith("-> handle.event")])

    def testADrawGoesFromTheViewportThroughBothTables(self):
        self.command("call:handle.draw@ProbeManipulator.draw")
        self.command("call:handle:h.draw@ProbeManipulator.draw")
        self.command("call:manipulator.getNumberOfManipulatorHandles@ProbeHandle.draw")
        self.call(self.viewport, "manipulator.draw")
        counted = ["ProbeHandle draw",
                   "ProbeHandle -> manipulator.getNumberOfManipulatorHandles: 2"]
        self.assertEqual(
            ["ProbeManipulator setup", "ProbeManipulator draw"] +
            counted + ["ProbeManipulator -> handle.draw: done"] +
            counted + ["ProbeManipulator -> handle:h.draw: done",
                       "ProbeViewport -> manipulator.draw: 1"], self.libraryLog())

    def testHandlesEndBeforeTheirManipulator(self):
        self.callManipulator("removeManipulatorHandle h")
        self.viewport.deactivateAllManipulators(False)
        self.assertEqual(["ProbeHandle destroy",
                          "ProbeManipulator -> manipulator.removeManipulatorHandle: done",
                          "ProbeHandle destroy", "ProbeManipulator destroy"], self.libraryLog())

    def testAHandleThatFailsToBeCreatedIsNotAdded(self):
        for rule, text in (("returnNull", "Failed to create ManipulatorHandle plugin instance for "
                                          "'ProbeHandle'."),
                           ("throwStd:no good", "no good"),
                           ("throwOther", "Unknown C++ exception")):
            self.command(rule + "@ProbeHandle.create#1")
            self.checkRows("manipulator", rule,
                           (("addManipulatorHandle ProbeHandle i", Raises(text)),
                            ("getNumberOfManipulatorHandles", "2"),
                            ("getManipulatorHandle i", "null")))

    def testWhatAPluginThrowsGoesThroughBothTables(self):
        self.command("call:handle.draw@ProbeManipulator.draw")
        self.command("throwStd:no good@ProbeHandle.draw#1")
        self.checkRows("manipulator", "draw", (("draw", Raises("no good")), ("draw", "1")))


if __name__ == "__main__":
    unittest.main()
