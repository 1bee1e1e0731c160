"""The type ViewerDelegate: what its methods pass on, and what they answer."""

import unittest

from scripted import COMPONENT, DELEGATE, IS_PYTHON_3, ScriptedTest, VIEWPORT, ViewerAPI
import ScriptedPlugins
import ScriptedScene
from PyVlAttribute import DoubleAttribute, GroupAttribute, IntAttribute

INTEGER = int if IS_PYTHON_3 else eval("long")


class ViewerDelegateTest(ScriptedTest):
    def setUp(self):
        ScriptedTest.setUp(self)
        self.createDelegate()


class ComponentTest(ViewerDelegateTest):
    def names(self):
        return [self.delegate.getComponentName(index)
                for index in range(self.delegate.getNumberOfComponents())]

    def testAddAppendsAndInsertInserts(self):
        for name in ("a", "b"):
            component = self.delegate.addComponent(COMPONENT, name)
            self.assertIs(ViewerAPI.ViewerDelegateComponent, type(component))
        inserted = self.delegate.insertComponent(COMPONENT, "c", 1)
        self.assertIs(ViewerAPI.ViewerDelegateComponent, type(inserted))
        self.delegate.insertComponent(COMPONENT, "d", 3)
        self.assertEqual(["a", "c", "b", "d"], self.names())

    def testInsertBeyondTheEndMakesNothing(self):
        self.delegate.addComponent(COMPONENT, "a")
        self.plugins.take()
        for index in (2, 100, -1):
            self.assertIsNone(self.delegate.insertComponent(COMPONENT, "b", index))
        self.assertEqual(([], ["a"]), (self.plugins.take(), self.names()))

    def testTheCountIsWhatPyLongFromLongGives(self):
        self.assertIs(INTEGER, type(self.delegate.getNumberOfComponents()))

    def testLookUps(self):
        self.delegate.addComponent(COMPONENT, "a")
        self.delegate.addComponent(COMPONENT, "a")
        for answer in (self.delegate.getComponent("a"), self.delegate.getComponentByIndex(1)):
            self.assertIs(ViewerAPI.ViewerDelegateComponent, type(answer))
        self.assertIsNone(self.delegate.getComponent("nope"))
        self.assertIsNone(self.delegate.getComponentByIndex(2))
        self.assertEqual(("a", ""), (self.delegate.getComponentName(0),
                                     self.delegate.getComponentName(2)))
        self.assertEqual("", self.delegate.getComponentName(-1))
        self.assertEqual(0, self.delegate.getComponentIndex("a"))

    def testTheIndexOfAnUnknownNameIsAValueError(self):
        for name in ("nope", "", "caf\udce9" if IS_PYTHON_3 else "caf\xe9"):
            self.assertError(ValueError, "component with name '" + name + "' not found",
                             self.delegate.getComponentIndex, name)

    def testRemoval(self):
        for name in ("a", "b", "a"):
            self.delegate.addComponent(COMPONENT, name)
        self.plugins.take()
        self.assertIsNone(self.delegate.removeComponent("a"))
        self.assertEqual([(COMPONENT, "cleanup"), (COMPONENT, "destroy")], self.plugins.take())
        self.assertEqual(["b", "a"], self.names())
        self.delegate.removeComponentByIndex(1)
        self.delegate.removeComponentByIndex(7)
        self.delegate.removeComponent("nope")
        self.assertEqual(["b"], self.names())


class ViewportListTest(ViewerDelegateTest):
    def testAddViewportGivesAndAddsIt(self):
        viewport = self.delegate.addViewport(VIEWPORT, "left")
        self.assertIs(ViewerAPI.Viewport, type(viewport))
        self.assertEqual("left", viewport.getName())
        self.assertEqual(1, self.delegate.getNumberOfViewports())
        self.assertEqual([(VIEWPORT, "create")], self.plugins.take())

    def testTheNameIsCopied(self):
        viewport = self.delegate.addViewport(VIEWPORT, "".join(["le", "ft"] * 50))
        # The string has gone, and others of its size take its memory.
        others = ["".join(["ri", "ght"] * 40) for _ in range(1000)]
        self.assertEqual("left" * 50, viewport.getName())
        self.assertEqual("left" * 50, self.delegate.getViewportName(0))
        del others

    def testLookUps(self):
        for name in ("left", "right"):
            self.delegate.addViewport(VIEWPORT, name)
        self.assertEqual("right", self.delegate.getViewport("right").getName())
        self.assertEqual("left", self.delegate.getViewportByIndex(0).getName())
        self.assertIsNone(self.delegate.getViewport("nope"))
        self.assertIsNone(self.delegate.getViewportByIndex(2))
        self.assertEqual(["left", "right", "", ""],
                         [self.delegate.getViewportName(index) for index in (0, 1, 2, -1)])

    def testRemoval(self):
        for name in ("a", "b", "c"):
            self.delegate.addViewport(VIEWPORT, name)
        self.delegate.removeViewport("b")
        self.delegate.removeViewport("nope")
        self.delegate.removeViewportByIndex(5)
        self.assertEqual(["a", "c"], [self.delegate.getViewportName(index) for index in (0, 1)])
        self.delegate.removeViewportByIndex(0)
        self.assertEqual("c", self.delegate.getViewportByIndex(0).getName())

    def testRemovalByANegativeIndexRemovesNothing(self):
        self.delegate.addViewport(VIEWPORT, "a")
        self.assertIsNone(self.delegate.removeViewportByIndex(-1))
        self.assertEqual(1, self.delegate.getNumberOfViewports())


class SceneTest(ViewerDelegateTest):
    def commands(self):
        return ScriptedScene.takeCommands()

    def testLocationsAreOpenedClosedPinnedAndUnpinned(self):
        for method, told in (("openLocations", "setLocationsOpen"),
                             ("closeLocations", "setLocationsClosed"),
                             ("pinLocations", "setLocationsActive"),
                             ("unpinLocations", "setLocationsInactive")):
            self.assertIsNone(getattr(self.delegate, method)(["/root/a", "/root/b"]))
            lines = [line for line in self.commands() if line.startswith(told)]
            self.assertEqual(1, len(lines), method)
            self.assertIn("[/root/a /root/b]", lines[0])

    def testAnEmptyListIsAList(self):
        for method in ("openLocations", "hideLocations", "setSelectedLocations"):
            self.assertIsNone(getattr(self.delegate, method)([]))

    def testSetSelectedLocationsReachesThePlugin(self):
        self.delegate.setSelectedLocations(["/root/a", "/root/b"])
        self.assertEqual([(DELEGATE, "locationsSelected", ["/root/a", "/root/b"])],
                         self.plugins.take())

    def testSetViewOpViewsTheOp(self):
        op = ScriptedScene.addOp()
        self.assertIsNone(self.delegate.setViewOp(op))
        self.assertIn("op%d" % op, "\n".join(self.commands()))

    def testWorkingSetVisibilityIsAnIntegersTruth(self):
        self.assertIs(False, self.delegate.getWorkingSetVisibilityEnabled())
        for value, isEnabled in ((True, True), (0, False), (5, True), (False, False), (-1, True)):
            self.delegate.setWorkingSetVisibilityEnabled(value)
            self.assertIs(isEnabled, self.delegate.getWorkingSetVisibilityEnabled())
        self.assertRaises(TypeError, self.delegate.setWorkingSetVisibilityEnabled, "yes")
        self.assertRaises(TypeError, self.delegate.setWorkingSetVisibilityEnabled, 1.5)

    def testGeneratedGeometryIsSwitchedByAnIntegersTruth(self):
        for name, channel in (("setBoundingBoxesEnabled", "__BOUNDING_BOXES_CHANGED"),
                              ("setProxyGeometryEnabled", "__PROXY_GEOMETRY_CHANGED")):
            method = getattr(self.delegate, name)
            heard = []
            self.delegate.registerCallback(channel, heard.append)
            for value in (False, 0, True, -5):
                self.assertIsNone(method(value))
            self.assertEqual([IntAttribute(0), IntAttribute(0), IntAttribute(1), IntAttribute(1)],
                             heard)
            for arguments in (("yes",), (1.5,), (), (1, 2)):
                self.assertRaises(TypeError, method, *arguments)

    def testABoxAppearsWithItsLocationAndGoesWhenBoxesAreOff(self):
        bound = GroupAttribute(("bound", DoubleAttribute([0.0, 1.0, 0.0, 1.0, 0.0, 1.0])))
        ScriptedScene.report(self.firstClient, "/root", bound)
        self.delegate.processLocationEvents()
        box = self.delegate.getAttributes("/root/__VlOst_bbox")
        self.assertEqual("locator", box.getChildByName("type").getValue(""))
        self.delegate.setBoundingBoxesEnabled(False)
        self.delegate.processLocationEvents()
        self.assertIsNone(self.delegate.getAttributes("/root/__VlOst_bbox"))

    def testSystemArgsAreAGroup(self):
        self.assertIsNone(self.delegate.setSystemArgs(GroupAttribute()))
        for arguments in ((IntAttribute(1),), ("args",), (None,)):
            self.assertError(TypeError, "First argument must be an VlGroupAttribute object",
                             self.delegate.setSystemArgs, *arguments)

    def testTheFreezeIsNotOnByItself(self):
        self.assertIsNone(self.delegate.setManipulationFreezePeriod(100))
        self.assertIs(False, self.delegate.isFrozenDueToManipulation())

    def testEventsReachComponentsAndPlugin(self):
        self.delegate.addComponent(COMPONENT, "k")
        self.plugins.answers[COMPONENT, "locationEvent"] = 1
        self.plugins.take()
        ScriptedScene.report(self.firstClient, "/root")
        self.assertIsNone(self.delegate.processLocationEvents())
        self.assertEqual([(COMPONENT, "locationEvent", "/root", 0),
                          (DELEGATE, "locationEvent", "/root", 1)], self.plugins.take())

    def testIsProcessingAsksThePluginLast(self):
        self.assertIs(False, self.delegate.isProcessing())
        self.plugins.answers[DELEGATE, "isProcessing"] = 1
        self.assertIs(True, self.delegate.isProcessing())
        ScriptedScene.setProcessing(True)
        self.plugins.take()
        self.assertIs(True, self.delegate.isProcessing())
        ScriptedScene.setProcessing(False)
        self.assertEqual([], self.plugins.take())

    def testFlushCachesOfAnEmptyTreeTellsNobody(self):
        self.assertIsNone(self.delegate.flushCaches())
        self.assertEqual([], self.plugins.take())

    def testFlushCachesTakesTheSceneDown(self):
        ScriptedScene.report(self.firstClient, "/root")
        self.delegate.processLocationEvents()
        self.plugins.take()
        self.delegate.flushCaches()
        self.assertEqual([(DELEGATE, "locationEvent", "/root", 0)], self.plugins.take())


class AttributeTest(ViewerDelegateTest):
    PRIMARY = GroupAttribute(("type", IntAttribute(1)))
    SOURCES = GroupAttribute(("type", IntAttribute(2)))

    def setUp(self):
        ViewerDelegateTest.setUp(self)
        ScriptedScene.report(self.firstClient, "/root", self.PRIMARY)
        ScriptedPlugins.activateSourceLocations(self.host(), ["/root"])
        ScriptedScene.report(self.firstClient + 2, "/root", self.SOURCES)
        self.delegate.processLocationEvents()
        self.plugins.take()

    def testTheViewIsThePrimaryUnlessTold(self):
        for method in ("getAttributes", "getCookedAttributes"):
            read = getattr(self.delegate, method)
            self.assertEqual(self.PRIMARY, read("/root"))
            self.assertEqual(self.PRIMARY, read("/root", ViewerAPI.kVlViewerDelegatePrimary))
            self.assertEqual(self.SOURCES, read("/root", 1))
            self.assertIsNone(read("/root", ViewerAPI.kVlViewerDelegateLookThrough))
            self.assertIsNone(read("/root", 77))

    def testAbsentValuesAreNone(self):
        self.assertIsNone(self.delegate.getAttributes("/root/absent"))
        self.assertIsNone(self.delegate.getLiveAttributes("/root"))
        self.assertIsNone(self.delegate.getLiveAttributes("/root", 1))

    def testArgumentsAreParsed(self):
        for arguments in ((), (1,), ("/root", "1"), ("/root", 1, 2)):
            self.assertRaises(TypeError, self.delegate.getAttributes, *arguments)


class BoundsTest(ViewerDelegateTest):
    BOX = DoubleAttribute([-1.0, 1.0, -2.0, 2.0, -3.0, 3.0])
    OTHER = DoubleAttribute([0.0, 5.0, 0.0, 1.0, 0.0, 1.0])

    def setUp(self):
        ViewerDelegateTest.setUp(self)
        for path in ("/root", "/root/a", "/root/b"):
            ScriptedScene.report(self.firstClient, path)
        self.delegate.processLocationEvents()
        self.delegate.openLocations(["/root"])
        self.delegate.processLocationEvents()
        boxes = {"/root/a": self.BOX, "/root/b": self.OTHER}
        for entry in ("getBounds", "computeExtent"):
            self.plugins.answers[DELEGATE, entry] = lambda host, path: boxes.get(path)
        self.plugins.take()

    def testThePluginIsAsked(self):
        self.assertEqual(self.BOX, self.delegate.getBounds("/root/a"))
        self.assertEqual(self.BOX, self.delegate.computeExtent("/root/a"))
        self.assertEqual([(DELEGATE, "getBounds", "/root/a"),
                          (DELEGATE, "computeExtent", "/root/a")],
                         [call for call in self.plugins.take() if call[2] == "/root/a"])

    def testAMergedExtentHasNoExclusionUnlessTold(self):
        merged = DoubleAttribute([-1.0, 5.0, -2.0, 2.0, -3.0, 3.0])
        values = lambda extent: list(extent.getNearestSample(0.0))
        self.assertEqual(values(merged), values(
            self.delegate.computeMergedExtent(["/root/a", "/root/b"])))
        self.assertEqual(values(self.BOX), values(
            self.delegate.computeMergedExtent(["/root/a", "/root/b"], "/root/b")))

    def testEveryWrongArgumentOfAMergedExtentHasOneText(self):
        text = "Argument must be a sequence of strings."
        for arguments in ((), ("/root",), (("/root",),), (["/root"], 1), ([1],), ([None], ""),
                          (["/root"], "", "")):
            self.assertError(TypeError, text, self.delegate.computeMergedExtent, *arguments)

    def testHiddenLocationsAreHiddenUntilAllAreShown(self):
        self.delegate.hideLocations(["/root/a"])
        self.delegate.processLocationEvents()
        self.assertIn((DELEGATE, "locationEvent", "/root/a", 0), self.plugins.take())
        self.delegate.unhideAllLocations()
        self.delegate.processLocationEvents()
        self.assertIn((DELEGATE, "locationEvent", "/root/a", 0), self.plugins.take())

    def testUnhidingGivenLocationsIsNotOffered(self):
        for name in ("unhideLocations", "getHiddenLocations"):
            self.assertFalse(hasattr(self.delegate, name))


class LifeTest(ViewerDelegateTest):
    def testSetupFreezeAndThawReachThePlugin(self):
        for method in ("setup", "freeze", "thaw"):
            self.assertIsNone(getattr(self.delegate, method)())
        self.assertEqual([(DELEGATE, "setup"), (DELEGATE, "freeze"), (DELEGATE, "thaw")],
                         self.plugins.take())

    def testCleanupEndsComponentsThenViewportsFromTheLast(self):
        for name in ("a", "b"):
            self.delegate.addComponent(COMPONENT, name)
        self.delegate.addViewport(VIEWPORT, "v")
        self.plugins.take()
        self.assertIsNone(self.delegate.cleanup())
        self.assertEqual(2 * [(COMPONENT, "cleanup"), (COMPONENT, "destroy")] +
                         [(VIEWPORT, "destroy"), (DELEGATE, "cleanup")], self.plugins.take())

    def testADelegateIsUsableAfterCleanup(self):
        self.delegate.cleanup()
        self.assertEqual((0, 0), (self.delegate.getNumberOfComponents(),
                                  self.delegate.getNumberOfViewports()))
        self.delegate.addViewport(VIEWPORT, "v").draw()

    def testMethodsWithoutArgumentsTakeNone(self):
        for name in ("setup", "cleanup", "processLocationEvents", "isProcessing", "freeze",
                     "unhideAllLocations", "getNumberOfViewports"):
            self.assertRaises(TypeError, getattr(self.delegate, name), 1)


if __name__ == "__main__":
    unittest.main()
