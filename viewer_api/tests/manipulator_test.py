"""Viewport's manipulators and the type Manipulator, whose objects outlive what they stand for."""

import sys
import unittest

from scripted import DELEGATE, MANIPULATORS, ScriptedTest, ViewerAPI, errorOf
import ScriptedPlugins
import ScriptedScene
from PyVlAttribute import GroupAttribute, IntAttribute, StringAttribute

MOVE, AIM = MANIPULATORS
CHANNEL = "__ACTIVE_MANIPULATORS_CHANGED"
DESTROYED = "Underlying C++ manipulator handle has been destroyed"
MESH = GroupAttribute(("type", StringAttribute("polymesh")))
LIGHT = GroupAttribute(("type", StringAttribute("light")))
TAGS = GroupAttribute(("label", StringAttribute("Move")))

CALLS = (("getPluginName",), ("getTags",), ("getLocationPaths",), ("setOption", 7, MESH),
         ("setOptionByName", "o", MESH), ("getOption", 7), ("getOptionByName", "o"))


class ManipulatorTest(ScriptedTest):
    def setUp(self):
        ScriptedTest.setUp(self)
        self.viewport = self.createViewport()
        self.delegate.openLocations(["/root"])
        self.cook("/root", GroupAttribute())
        self.plugins.answers.update({
            (MOVE, "getTags"): TAGS,
            (MOVE, "matches"): lambda host, location: 1 if location == MESH else 0})
        self.plugins.take()

    def tearDown(self):
        self.viewport = None
        ScriptedTest.tearDown(self)

    def cook(self, path, attributes):
        ScriptedScene.report(self.firstClient, path, attributes)
        self.delegate.processLocationEvents()

    def activate(self, paths=(), name=MOVE):
        self.viewport.activateManipulator(name, list(paths), True)
        index = self.viewport.getNumberOfActiveManipulators() - 1
        manipulator = self.viewport.getActiveManipulatorByIndex(index)
        self.assertEqual(name, manipulator.getPluginName())
        self.plugins.take()
        return manipulator

    def signals(self):
        """Records what the channel is fired with, from now on."""
        heard = []
        self.delegate.setActiveManipulatorsChangedCallback(heard.append)
        return heard

    def signal(self, name, viewport="v"):
        return GroupAttribute(("viewportName", StringAttribute(viewport)),
                              ("manipulatorName", StringAttribute(name)))

    def assertDestroyed(self, manipulator):
        for call in CALLS:
            self.assertError(RuntimeError, DESTROYED, getattr(manipulator, call[0]), *call[1:])
            self.assertError(RuntimeError, DESTROYED, getattr(manipulator, call[0]),
                             *call[1:2])  # also with an argument too few

    # ---- Activation

    def testActivationMakesOneInstanceAndSignalsOnce(self):
        heard = self.signals()
        for _ in range(2):
            self.assertIsNone(self.viewport.activateManipulator(MOVE, [], True))
        self.assertEqual([(MOVE, "create")], self.plugins.take())
        self.assertEqual([self.signal(MOVE)], heard)

    def testDeactivationDestroysAndSignals(self):
        self.activate()
        self.activate(name=AIM)
        heard = self.signals()
        self.assertIsNone(self.viewport.deactivateManipulator(MOVE, True))
        self.assertIsNone(self.viewport.deactivateManipulator(MOVE, True))
        self.assertIsNone(self.viewport.deactivateManipulator("Nobody", True))
        self.assertEqual([(MOVE, "destroy")], self.plugins.take())
        self.assertEqual([AIM], [self.viewport.getActiveManipulatorPluginName(0)])
        self.assertIsNone(self.viewport.deactivateAllManipulators(True))
        self.assertIsNone(self.viewport.deactivateAllManipulators(True))
        self.assertEqual([(AIM, "destroy")], self.plugins.take())
        self.assertEqual([self.signal(MOVE), self.signal("")], heard)

    def testTheCallerSaysWhetherToSignal(self):
        heard = self.signals()
        for signal in (False, 0):
            self.viewport.activateManipulator(MOVE, [], signal)
            self.viewport.deactivateManipulator(MOVE, signal)
            self.viewport.activateManipulator(MOVE, [], signal)
            self.viewport.deactivateAllManipulators(signal)
        self.assertEqual([], heard)
        for signal in (True, -1, 256):
            self.viewport.activateManipulator(MOVE, [], signal)
            self.viewport.deactivateAllManipulators(signal)
        self.assertEqual(6, len(heard))

    def testAnErrorOfTheListenerIsRaisedWithTheWorkDone(self):
        def fail(value):
            raise ValueError("in the panel")
        self.delegate.setActiveManipulatorsChangedCallback(fail)
        error = errorOf(self.viewport.activateManipulator, MOVE, [], True)
        self.assertIs(RuntimeError, type(error))
        self.assertIn("in the panel", str(error))
        self.assertEqual(1, self.viewport.getNumberOfActiveManipulators())
        error = errorOf(self.viewport.deactivateManipulator, MOVE, True)
        self.assertIn("in the panel", str(error))
        self.assertEqual(0, self.viewport.getNumberOfActiveManipulators())

    def testWhatThePluginThrowsIsARuntimeError(self):
        self.plugins.answers[MOVE, "create"] = ScriptedPlugins.StandardError("no memory")
        self.assertError(RuntimeError, "no memory", self.viewport.activateManipulator, MOVE, [], 1)
        self.plugins.answers[MOVE, "create"] = ScriptedPlugins.OtherError()
        self.assertError(RuntimeError, "Unknown C++ exception",
                         self.viewport.activateManipulator, MOVE, [], 1)
        self.assertEqual(0, self.viewport.getNumberOfActiveManipulators())

    def testTagsOfNoManipulatorAskNoPlugin(self):
        self.activate()
        self.assertEqual(TAGS, self.viewport.getActiveManipulatorTags(0))
        self.assertEqual([(MOVE, "getTags")], self.plugins.take())
        for index in (-1, 1):
            self.assertIsNone(self.viewport.getActiveManipulatorTags(index))
        self.assertEqual([], self.plugins.take())

    # ---- Locations

    def testLocationPathsAreThoseThatMatch(self):
        self.cook("/root/mesh", MESH)
        self.cook("/root/light", LIGHT)
        manipulator = self.activate(["/root/light", "/root/later", "/root/mesh"])
        self.assertEqual(StringAttribute("/root/mesh"), manipulator.getLocationPaths())
        self.assertIs(False, self.viewport.isDirty())
        self.cook("/root/later", MESH)
        self.assertEqual(StringAttribute(["/root/mesh", "/root/later"]),
                         manipulator.getLocationPaths())
        self.assertIs(True, self.viewport.isDirty())

    def testTheApplicationIsAskedWhetherTheNodeMayBeEdited(self):
        editor = GroupAttribute(("exclusiveTo", StringAttribute("node1")))
        self.cook("/root/mesh", GroupAttribute(("attributeEditor", editor)))
        self.plugins.answers[MOVE, "matches"] = 1
        self.activate(["/root/mesh"])
        self.assertIn(("isNodeEditable", "node1"), self.bridge.calls)

    # ---- The type

    def testMethodsAnswer(self):
        self.cook("/root/mesh", MESH)
        manipulator = self.activate(["/root/mesh"])
        self.assertEqual((MOVE, TAGS, StringAttribute("/root/mesh")),
                         (manipulator.getPluginName(), manipulator.getTags(),
                          manipulator.getLocationPaths()))

    def testOptionsReachThePlugin(self):
        manipulator = self.activate()
        identity = ViewerAPI.GenerateOptionId("o")
        self.plugins.answers[MOVE, "getOption"] = IntAttribute(5)
        self.assertIsNone(manipulator.setOption(7, MESH))
        self.assertIsNone(manipulator.setOptionByName("o", LIGHT))
        self.assertEqual(IntAttribute(5), manipulator.getOption(7))
        self.assertEqual(IntAttribute(5), manipulator.getOptionByName("o"))
        self.assertEqual([(MOVE, "setOption", 7, MESH), (MOVE, "setOption", identity, LIGHT),
                          (MOVE, "getOption", 7), (MOVE, "getOption", identity)],
                         self.plugins.take())

    def testItIsMadeByNobodyElse(self):
        self.assertIs(TypeError, type(errorOf(ViewerAPI.Manipulator)))
        self.assertError(RuntimeError, "Please use the Viewport.activateManipulator() function to "
                         "instantiate a Manipulator.", ViewerAPI.Manipulator.__init__,
                         self.activate())

    def testItHoldsTheViewportObjectItCameFrom(self):
        before = sys.getrefcount(self.viewport)
        manipulator = self.activate()
        self.assertEqual(before + 1, sys.getrefcount(self.viewport))
        del manipulator
        self.assertEqual(before, sys.getrefcount(self.viewport))
        self.assertEqual(1, self.viewport.getNumberOfActiveManipulators())

    def testThoseOfTwoObjectsOfOneViewportAreBothValid(self):
        self.activate()
        other = self.delegate.getViewport("v")
        self.assertIsNot(self.viewport, other)
        for viewport in (self.viewport, other):
            self.assertEqual(MOVE, viewport.getActiveManipulatorByIndex(0).getPluginName())
        self.assertIsNot(other.getActiveManipulatorByIndex(0), other.getActiveManipulatorByIndex(0))

    # ---- After its end

    def testAfterDeactivationEveryMethodRaises(self):
        for end in (lambda: self.viewport.deactivateManipulator(MOVE, True),
                    lambda: self.viewport.deactivateAllManipulators(True)):
            manipulator = self.activate()
            end()
            self.assertDestroyed(manipulator)

    def testANewOneOfTheNameDoesNotReviveTheOld(self):
        manipulator = self.activate()
        self.viewport.deactivateManipulator(MOVE, True)
        self.activate()
        self.assertDestroyed(manipulator)

    def testAfterTheViewportsRemovalEveryMethodRaises(self):
        manipulator = self.activate()
        self.delegate.removeViewport("v")
        self.assertDestroyed(manipulator)

    def testAfterTheDelegatesEndEveryMethodRaises(self):
        manipulator = self.activate()
        self.delegate = None
        self.assertIn((DELEGATE, "destroy"), self.plugins.take())
        self.assertDestroyed(manipulator)

    def testAfterTheDelegatesCleanupEveryMethodRaises(self):
        manipulator = self.activate()
        self.delegate.cleanup()
        self.assertDestroyed(manipulator)

    def testItMayOutliveEverything(self):
        manipulator = self.activate()
        self.viewport = self.delegate = None
        self.assertDestroyed(manipulator)

    def testDeactivatedInItsOwnCallItIsDeadAtOnceAndDestroyedAfterwards(self):
        for call in CALLS[1:2] + CALLS[3:]:
            manipulator = self.activate()
            entry = call[0].replace("ByName", "")
            raised = []

            def deactivate(host, *_):
                self.plugins.answers.pop((MOVE, entry))
                self.viewport.deactivateManipulator(MOVE, True)
                raised.append(str(errorOf(manipulator.getPluginName)))
                self.assertNotIn((MOVE, "destroy"), self.plugins.calls)

            self.plugins.answers[MOVE, entry] = deactivate
            self.assertIsNone(errorOf(getattr(manipulator, call[0]), *call[1:]), call)
            self.assertEqual([DESTROYED], raised, call)
            self.assertEqual((MOVE, "destroy"), self.plugins.take()[-1], call)

    def testTheDelegateMayBeDroppedInItsOwnCall(self):
        manipulator = self.activate()

        def drop(host, *_):
            self.viewport = self.delegate = None

        self.plugins.answers[MOVE, "getOption"] = drop
        self.assertIsNone(errorOf(manipulator.getOption, 7))
        self.assertEqual([(MOVE, "getOption", 7), (MOVE, "destroy")], self.plugins.take(MOVE))
        self.assertDestroyed(manipulator)


if __name__ == "__main__":
    unittest.main()
