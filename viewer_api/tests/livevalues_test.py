"""Values that a plug-in sets as a manipulator: how they reach the application's bridge, and what
the bridge and the callbacks may do to the delegate meanwhile."""

import gc
import os
import unittest

from scripted import (COMPONENT, IS_PYTHON_3, ScriptedTest, VIEWPORT, ViewerAPI, errorOf,
                      instanceCount)
import PyVlPluginSystem
import ScriptedScene
from PyVlAttribute import GroupAttribute, IntAttribute, StringAttribute

CHANGED = "__SELECTED_ENABLED_LOCATIONS_CHANGED"
LOOKTHROUGH = ["__LOOKTHROUGH_LOCATION_" + name
               for name in ("CHANGED", "CHANGE_REQUESTED", "COOKED", "DOES_NOT_EXIST")]
LONG = int if IS_PYTHON_3 else eval("long")

# The probe calls the delegate from its entries, without Python in between.
PyVlPluginSystem.loadLibrary(os.path.join(os.environ["OSTREL_TEST_PLUGINS"], "ProbePlugins.so"))


def named(name):
    return GroupAttribute(("name", StringAttribute(name)))


class LiveTest(ScriptedTest):
    """The probe's delegate, told of /root, /root/a and /root/b."""

    def setUp(self):
        ScriptedTest.setUp(self)
        self.createDelegate("ProbeDelegate")
        self.delegate.openLocations(["/root"])
        for path in ("/root", "/root/a", "/root/b"):
            ScriptedScene.report(self.firstClient, path, named(path))
        self.delegate.processLocationEvents()
        self.bridge.calls = []
        self.clearLog()

    def tearDown(self):
        if self.delegate is not None:
            self.command("clear")
        self.bridge = None
        ScriptedTest.tearDown(self)

    def command(self, text):
        self.delegate.setOptionByName("command", StringAttribute(text))

    def call(self, line):
        """The plug-in calls the delegate's host suite."""
        self.command("call:delegate." + line)

    def set(self, path="/root/a", value=1, final=0):
        self.call("setManipulatedAttribute %s x %d int:%d" % (path, final, value))

    def clearLog(self):
        self.delegate.setOptionByName("clearLog", IntAttribute(1))

    def takeLog(self):
        lines = list(self.delegate.getOptionByName("log").getNearestSample(0))
        self.clearLog()
        return lines

    def takeEvents(self):
        """The paths that the plug-in was told of."""
        return [line.split()[1] for line in self.takeLog() if line.startswith("locationEvent")]

    def live(self, path="/root/a"):
        return self.delegate.getLiveAttributes(path)

    def bridgeDoes(self, method, action):
        """Runs the action within the bridge's next call of the method."""
        actions = [action]
        answers = self.bridge.answers

        class Answers(dict):
            def get(self, name):
                if name == method and actions:
                    actions.pop()()
                return answers.get(name)

        self.bridge.answers = Answers()


X = GroupAttribute(("x", IntAttribute(1)))


class SetValueTest(LiveTest):
    def testTheBridgeGetsTheValueAndWhetherItIsFinal(self):
        self.set(value=5)
        self.set(value=6, final=1)
        self.assertEqual([("setValue", "/root/a", "x", IntAttribute(5), 0),
                          ("setValue", "/root/a", "x", IntAttribute(6), 1)], self.bridge.calls)
        self.assertEqual([str, str, IntAttribute, int],
                         [type(argument) for argument in self.bridge.calls[0][1:]])

    def testANullValueDoesNothing(self):
        self.call("setManipulatedAttribute /root/a x 0 null")
        self.assertEqual([], self.bridge.calls)
        self.assertIsNone(self.live())

    def testAnExceptionInSetValueIsPrintedAndTheValueIsStillKept(self):
        self.bridge.answers["setValue"] = ValueError("refused")
        self.assertIsNone(errorOf(self.set))
        printed = self.takePrinted()
        self.assertIn("Traceback", printed)
        self.assertIn("ValueError: refused", printed)
        self.assertEqual(X, self.live())
        self.assertEqual(["/root/a"], self.takeEvents())
        self.assertTrue(self.delegate.isFrozenDueToManipulation())

    def testARefusalIsNotLookedAt(self):
        self.bridge.answers["setValue"] = False
        self.set()
        self.assertEqual(X, self.live())

    def testALocationThatIsNotThereFailsQuietly(self):
        self.set("/root/unknown", final=1)
        self.assertIn(": 0", self.takeLog()[0])
        self.assertFalse(self.delegate.isFrozenDueToManipulation())
        self.assertEqual("", self.takePrinted())

    def testWhatTheViewsShow(self):
        self.set()
        merged = GroupAttribute(("name", StringAttribute("/root/a")), ("x", IntAttribute(1)))
        for method, attributes in (("getAttributes", merged), ("getLiveAttributes", X),
                                   ("getCookedAttributes", named("/root/a"))):
            self.assertEqual(attributes, getattr(self.delegate, method)("/root/a"), method)
            for view in (ViewerAPI.kVlViewerDelegateSources,
                         ViewerAPI.kVlViewerDelegateLookThrough):
                self.assertIsNone(getattr(self.delegate, method)("/root/a", view), method)

    def testSetValueMayPump(self):
        ScriptedScene.report(self.firstClient, "/root/a", named("newer"))
        self.bridgeDoes("setValue", self.delegate.processLocationEvents)
        self.set()
        self.assertEqual(named("newer"), self.delegate.getCookedAttributes("/root/a"))
        self.assertEqual(X, self.live())

    def testSetValueMayChangeComponentsAndViewports(self):
        self.delegate.addComponent(COMPONENT, "c")
        self.delegate.addViewport(VIEWPORT, "v")

        def change():
            self.delegate.removeComponent("c")
            self.delegate.removeViewport("v")
            self.delegate.addComponent(COMPONENT, "d")

        self.bridgeDoes("setValue", change)
        self.plugins.take()
        self.set()
        self.assertEqual(["cleanup", "destroy", "create", "setup", "locationEvent"],
                         [call[1] for call in self.plugins.take(COMPONENT)])
        self.assertEqual(X, self.live())

    def testSetValueMayDropTheLastReferenceToTheDelegate(self):
        viewport = self.delegate.addViewport("ProbeViewport", "v")
        count, counts = instanceCount(), []

        def drop():
            self.delegate = None
            gc.collect()
            counts.append(instanceCount())

        self.bridgeDoes("setValue", drop)
        # A viewport refers to its delegate weakly: nothing but the call holds it any more.
        viewport.setOptionByName("command", StringAttribute(
            "call:delegate.setManipulatedAttribute /root/a x 0 int:1"))
        gc.collect()
        self.assertEqual(([count], count - 1), (counts, instanceCount()))


class FreezeTest(LiveTest):
    def testWhatTheBridgeAnswersEndsTheFreezeOrNot(self):
        for answer, isFrozen, printed in ((-1, True, ""), (LONG(-1), True, ""), (0, False, ""),
                                          (7, False, ""), (LONG(7), False, ""),
                                          (LONG(2 ** 31 - 1), False, ""), (-2, False, ""),
                                          (None, False, "TypeError"),
                                          (10 ** 30, False, "OverflowError"),
                                          (ValueError("lost"), False, "ValueError: lost")):
            self.set(final=1)
            self.bridge.answers["getManipulationCommitId"] = answer
            ScriptedScene.report(self.firstClient, "/root/b", named("newer"))
            self.clearLog()
            self.delegate.processLocationEvents()
            self.assertIs(isFrozen, self.delegate.isFrozenDueToManipulation(), repr(answer))
            self.assertEqual([] if isFrozen else ["/root/b"], self.takeEvents()[:1])
            self.assertIn(printed, self.takePrinted())
            self.bridge.answers["getManipulationCommitId"] = 0
            self.delegate.processLocationEvents()
            ScriptedScene.report(self.firstClient, "/root/b", named("older"))
            self.delegate.processLocationEvents()

    def testWhileFrozenTheChannelIsSilentAlthoughThePluginHears(self):
        told = []
        self.delegate.registerCallback(CHANGED, told.append)
        self.set()
        self.assertEqual((["/root/a"], []), (self.takeEvents(), told))
        self.delegate.hideLocations(["/root/b"])
        self.delegate.processLocationEvents()
        self.assertEqual((["/root/b"], []), (self.takeEvents(), told))
        self.set(final=1)
        self.call("unhideAllLocations")
        self.delegate.processLocationEvents()
        self.assertEqual((["/root/b"], [None]), (self.takeEvents(), told))

    def testTheFreezePeriodHoldsByTheMachinesClock(self):
        self.delegate.setManipulationFreezePeriod(3600 * 1000)
        self.set(final=1)
        self.delegate.processLocationEvents()
        self.assertTrue(self.delegate.isFrozenDueToManipulation())
        self.delegate.setManipulationFreezePeriod(0)
        self.delegate.processLocationEvents()
        self.assertFalse(self.delegate.isFrozenDueToManipulation())


class GroupTest(LiveTest):
    def testDuringAGroupPluginsHearAtTheClose(self):
        self.call("openManipulationGroup /root/a")
        self.set(value=1)
        self.set(value=2)
        self.assertEqual([], self.takeEvents())
        self.call("closeManipulationGroup /root/a")
        self.assertEqual(["/root/a"], self.takeEvents())
        self.assertEqual(["openManipulationGroup", "setValue", "setValue",
                          "closeManipulationGroup"], [call[0] for call in self.bridge.calls])
        self.assertEqual(("closeManipulationGroup", "/root/a"), self.bridge.calls[-1])

    def testAnErrorOfAGroupCallSurfacesWherePythonCalledAndTheGroupGoesOn(self):
        for method in ("openManipulationGroup", "closeManipulationGroup"):
            self.bridge.answers[method] = ValueError(method)
        error = errorOf(self.call, "openManipulationGroup /root/a")
        self.assertIs(ValueError, type(error))
        self.assertEqual("openManipulationGroup", str(error))
        self.set()
        self.assertEqual([], self.takeEvents())
        error = errorOf(self.call, "closeManipulationGroup /root/a")
        self.assertIs(ValueError, type(error))
        self.assertEqual("closeManipulationGroup", str(error))
        self.assertEqual(["/root/a"], self.takeEvents())
        self.assertEqual("", self.takePrinted())

    def testACloseTellsTheLookThroughThenThePluginAndThenEndsTheGroup(self):
        path, order = "/root/a", []
        self.delegate.setLookThroughLocation(self.delegate.addViewport(VIEWPORT, "v"), path)
        ScriptedScene.report(self.firstClient + 3, path, named("camera"))
        self.delegate.processLocationEvents()
        component = self.delegate.addComponent(COMPONENT, "c")
        self.plugins.answers[COMPONENT, "locationEvent"] = (
            lambda *arguments: order.append("locationEvent"))
        for name in LOOKTHROUGH + [CHANGED]:
            self.delegate.registerCallback(name, lambda value, name=name: order.append(name))
        self.call("openManipulationGroup /root/a")
        self.set(value=1)
        self.set(value=2)
        self.assertEqual([], order)
        self.bridgeDoes("closeManipulationGroup", lambda: order.append("bridge"))
        self.call("closeManipulationGroup /root/a")
        self.assertEqual(["bridge", "__LOOKTHROUGH_LOCATION_COOKED", "locationEvent"], order)
        del component

    def testAListenerThatRaisesDuringACloseLeavesTheGroupClosedAndItsValuesTold(self):
        path = "/root/a"
        self.delegate.setLookThroughLocation(self.delegate.addViewport(VIEWPORT, "v"), path)
        ScriptedScene.report(self.firstClient + 3, path, named("camera"))
        self.delegate.processLocationEvents()

        def refuse(_):
            raise ValueError("x")

        self.delegate.registerCallback("__LOOKTHROUGH_LOCATION_COOKED", refuse)
        self.call("openManipulationGroup /root/a")
        self.set(value=1)
        error = errorOf(self.call, "closeManipulationGroup /root/a")
        self.assertIs(RuntimeError, type(error))
        self.assertIn("ValueError('x'", str(error))
        self.assertEqual(["/root/a"], self.takeEvents())
        self.delegate.unregisterAllCallbacks()
        self.set(value=2)
        self.assertEqual(["/root/a"], self.takeEvents(), "at once, as outside of a group")


class DeliveryTest(LiveTest):
    """A plug-in that sets values while it is told of locations."""

    def testRecordsStayInOrder(self):
        for rule in ("setManipulatedAttribute /root/b x 0 int:1@ProbeDelegate.locationEvent#1",
                     "setManipulatedAttribute /root/a x 0 int:2@ProbeDelegate.locationEvent#1"):
            self.command("call:delegate." + rule)
        for path in ("/root", "/root/a", "/root/b"):
            ScriptedScene.report(self.firstClient, path, named("newer"))
        self.delegate.processLocationEvents()
        self.assertEqual(["/root", "/root/a", "/root/b", "/root/b", "/root/a"], self.takeEvents())
        self.assertEqual(GroupAttribute(("x", IntAttribute(2))), self.live("/root/a"))
        self.assertEqual(X, self.live("/root/b"))


class ListenerTest(LiveTest):
    """What the listener of the channel at the end of a pump may do."""

    def pumpWith(self, listener):
        """Pumps an event of /root/a, and then one of /root/b, whatever the first one comes to;
        what the plug-in was told of each time."""
        self.told = 0

        def callback(_):
            self.told += 1
            if self.told == 1:
                listener()

        self.delegate.registerCallback(CHANGED, callback)
        ScriptedScene.report(self.firstClient, "/root/a", named("newer"))
        self.error = errorOf(self.delegate.processLocationEvents)
        first = self.takeEvents()
        ScriptedScene.report(self.firstClient, "/root/b", named("newer"))
        self.assertIsNone(errorOf(self.delegate.processLocationEvents))
        return first, self.takeEvents()

    def testItMayRaiseAndTheNextPumpWorks(self):
        def refuse():
            raise ValueError("x")

        self.assertEqual((["/root/a"], ["/root/b"]), self.pumpWith(refuse))
        self.assertIs(RuntimeError, type(self.error))
        lines = str(self.error).split("\n")
        self.assertIn("ValueError", lines[0])
        self.assertEqual("ValueError('x')" if IS_PYTHON_3 else "ValueError('x',)", lines[1])
        self.assertEqual(["callback", "refuse"], [line.split()[-1] for line in lines[2:4]])
        self.assertTrue(all(line.startswith("  File \"") for line in lines[2:4]), lines)
        self.assertEqual(2, self.told)
        self.assertEqual("", self.takePrinted())

    def testItMayPump(self):
        def pump():
            ScriptedScene.report(self.firstClient, "/root/b", named("between"))
            self.delegate.processLocationEvents()

        self.assertEqual((["/root/a", "/root/b"], ["/root/b"]), self.pumpWith(pump))
        self.assertEqual(3, self.told)

    def testItMaySetAValue(self):
        self.assertEqual((["/root/a", "/root/b"], []), self.pumpWith(
            lambda: self.set("/root/b")), "the second event waits: the drag has begun")
        self.assertEqual(1, self.told)
        self.assertEqual(X, self.live("/root/b"))

    def testItMayChangeComponentsAndViewports(self):
        self.delegate.addComponent(COMPONENT, "c")
        self.delegate.addViewport(VIEWPORT, "v")

        def change():
            self.delegate.removeComponent("c")
            self.delegate.removeViewport("v")
            self.delegate.addComponent(COMPONENT, "d")
            self.delegate.addViewport(VIEWPORT, "w")

        self.assertEqual((["/root/a"], ["/root/b"]), self.pumpWith(change))
        self.assertIsNone(self.error)
        self.assertEqual(("d", "w"), (self.delegate.getComponentName(0),
                                      self.delegate.getViewportName(0)))

    def testItMayClearAllCallbacks(self):
        self.assertEqual((["/root/a"], ["/root/b"]), self.pumpWith(
            lambda: (self.delegate.unregisterAllCallbacks(), gc.collect())))
        self.assertEqual((1, None), (self.told, self.error))

    def testItMayCleanTheDelegateUp(self):
        self.delegate.addComponent(COMPONENT, "c")
        self.delegate.addViewport(VIEWPORT, "v")
        self.assertEqual((["/root/a"], ["/root/b"]), self.pumpWith(self.delegate.cleanup))
        self.assertIsNone(self.error)
        self.assertEqual((0, 0), (self.delegate.getNumberOfComponents(),
                                  self.delegate.getNumberOfViewports()))

    def testItMayDropTheLastReferenceToTheDelegate(self):
        viewport = self.delegate.addViewport("ProbeViewport", "v")
        count, counts = instanceCount(), []

        def drop(_):
            self.delegate = None
            gc.collect()
            counts.append(instanceCount())

        self.delegate.registerCallback(CHANGED, drop)
        self.set()
        self.set(final=1)
        self.delegate.processLocationEvents()
        self.delegate.hideLocations(["/root/b"])
        # A close flushes; a viewport refers to its delegate weakly.
        self.call("openManipulationGroup /root/a")
        viewport.setOptionByName("command", StringAttribute(
            "call:delegate.closeManipulationGroup /root/a"))
        gc.collect()
        self.assertEqual(([count], count - 1), (counts, instanceCount()))


class ChannelOrderTest(LiveTest):
    def testOnePumpFiresInTheOrderOfItsSteps(self):
        path, fired = "/root/a", []
        viewport = self.delegate.addViewport(VIEWPORT, "v")
        for name in LOOKTHROUGH + [CHANGED]:
            self.delegate.registerCallback(name, lambda value, name=name: fired.append(name))
        self.delegate.setLookThroughLocation(viewport, path)
        self.assertEqual(["__LOOKTHROUGH_LOCATION_CHANGE_REQUESTED"], fired)
        del fired[:]
        ScriptedScene.report(self.firstClient + 3, path, named("camera"))
        ScriptedScene.report(self.firstClient, path, named("newer"))
        self.delegate.processLocationEvents()
        self.assertEqual(["__LOOKTHROUGH_LOCATION_COOKED", "__LOOKTHROUGH_LOCATION_CHANGED",
                          CHANGED], fired)
        del fired[:]
        ScriptedScene.reportGone(self.firstClient + 3, path)
        ScriptedScene.reportGone(self.firstClient, path)
        self.delegate.processLocationEvents()
        self.assertEqual(["__LOOKTHROUGH_LOCATION_DOES_NOT_EXIST", CHANGED], fired)

    def testAValueOnALookedThroughLocationIsToldAtOnceAndBeforeThePluginHears(self):
        path, got = "/root/a", []
        self.delegate.setLookThroughLocation(self.delegate.addViewport(VIEWPORT, "v"), path)
        ScriptedScene.report(self.firstClient + 3, path, named("camera"))
        self.delegate.processLocationEvents()
        self.clearLog()
        self.delegate.registerCallback(
            "__LOOKTHROUGH_LOCATION_COOKED", lambda value: got.append(
                (value.getChildByName("attrs"), self.takeEvents())))
        self.set()
        merged = GroupAttribute(("name", StringAttribute("camera")), ("x", IntAttribute(1)))
        self.assertEqual([(merged, [])], got)
        self.assertEqual(["/root/a"], self.takeEvents())
        self.assertEqual(merged, self.delegate.getAttributes(
            path, ViewerAPI.kVlViewerDelegateLookThrough))

    def testAListenerThatRaisesFromAValueLeavesItGuardedAndTold(self):
        path = "/root/a"
        self.delegate.setLookThroughLocation(self.delegate.addViewport(VIEWPORT, "v"), path)
        ScriptedScene.report(self.firstClient + 3, path, named("camera"))
        self.delegate.processLocationEvents()
        self.clearLog()

        def refuse(_):
            raise ValueError("x")

        self.delegate.registerCallback("__LOOKTHROUGH_LOCATION_COOKED", refuse)
        error = errorOf(self.set)
        self.assertIs(RuntimeError, type(error))
        self.assertIn("ValueError('x'", str(error))
        self.assertTrue(self.delegate.isFrozenDueToManipulation())
        self.assertEqual(X, self.live())
        self.assertEqual([path], self.takeEvents())


if __name__ == "__main__":
    unittest.main()
