"""What holds for every type: how it is made, what arguments it takes, and options."""

import gc
import subprocess
import sys
import unittest
import weakref

from scripted import (CAMERA, COMPONENT, DELEGATE, IS_PYTHON_3, LAYER, ScriptedTest, VIEWPORT,
                      ViewerAPI, errorOf)
import ScriptedScene
from PyVlAttribute import GroupAttribute, IntAttribute

NOT_A_LIST = "Argument must be a sequence of strings."
PATH_METHODS = ("openLocations", "closeLocations", "pinLocations", "unpinLocations",
                "setSelectedLocations", "computeMergedExtent", "getCompatibleManipulatorsInfo")


class ConstructionTest(ScriptedTest):
    def testViewerDelegateRefusesDirectConstruction(self):
        text = "Please use the CreateViewerDelegate() function to instantiate a ViewerDelegate."
        self.assertError(RuntimeError, text, ViewerAPI.ViewerDelegate)
        self.assertError(RuntimeError, text, ViewerAPI.ViewerDelegate, 1, 2)

    def testTheInterpreterRefusesToConstructTheOthers(self):
        for name in ("Viewport", "ViewportLayer", "ViewportCamera", "ViewerDelegateComponent"):
            self.assertRaises(TypeError, getattr(ViewerAPI, name))

    def testInitOfTheOthersNamesTheWayToMakeThem(self):
        viewport = self.createViewport()
        objects = (
            (viewport, "Please use the ViewerDelegate.addViewport() function to instantiate a "
                       "Viewport."),
            (viewport.addLayer(LAYER, "l"),
             "Please use the Viewport.addLayer() or Viewport.insertLayer() function to "
             "instantiate a ViewportLayer."),
            (viewport.addCamera(CAMERA, "c"),
             "Please use the Viewport.addCamera() or Viewport.insertCamera() function to "
             "instantiate a ViewportCamera."),
            (self.delegate.addComponent(COMPONENT, "k"),
             "Please use the ViewerDelegate.addComponent() or ViewerDelegate.insertComonent() "
             "function to instantiate a ViewerDelegateComponent."))
        for wrapper, text in objects:
            self.assertError(RuntimeError, text, wrapper.__init__)

    def testTypesCannotBeSubclassed(self):
        for name in ("ViewerDelegate", "Viewport", "ViewportLayer", "ViewportCamera",
                     "ViewerDelegateComponent"):
            self.assertRaises(TypeError, type, "Derived", (getattr(ViewerAPI, name),), {})

    def testAnObjectFromNewAloneIsRefusedByEveryMethod(self):
        hollow = ViewerAPI.ViewerDelegate.__new__(ViewerAPI.ViewerDelegate)
        text = "Underlying C++ viewer delegate has been destroyed"
        self.assertError(RuntimeError, text, hollow.setup)
        self.assertError(RuntimeError, text, hollow.registerCallback, "x", len)
        self.assertError(RuntimeError, text, hollow.unregisterAllCallbacks)

    def testOnlyViewerDelegateSupportsWeakReferences(self):
        viewport = self.createViewport()
        self.assertIs(self.delegate, weakref.ref(self.delegate)())
        for wrapper in (viewport, viewport.addLayer(LAYER, "l"), viewport.addCamera(CAMERA, "c"),
                        self.delegate.addComponent(COMPONENT, "k")):
            self.assertRaises(TypeError, weakref.ref, wrapper)


class ArgumentTest(ScriptedTest):
    def testATupleIsNoList(self):
        self.createDelegate()
        for name in PATH_METHODS:
            self.assertError(TypeError, NOT_A_LIST, getattr(self.delegate, name), ("/root",))
        self.assertError(TypeError, "Argument must be a list of strings.",
                         self.delegate.hideLocations, ("/root",))

    def testWrongNumbersOfArgumentsHaveTheTextOfTheList(self):
        self.createDelegate()
        for arguments in ((), (["/root"], "", "")):
            for name in PATH_METHODS:
                self.assertError(TypeError, NOT_A_LIST, getattr(self.delegate, name), *arguments)
            self.assertError(TypeError, "Argument must be a list of strings.",
                             self.delegate.hideLocations, *arguments)

    def testOneItemThatIsNoStringRefusesTheWholeList(self):
        self.createDelegate()
        foreign = (1, None, b"/x" if IS_PYTHON_3 else u"/x")
        for item in foreign:
            for name in PATH_METHODS:
                self.assertError(TypeError, NOT_A_LIST, getattr(self.delegate, name),
                                 ["/root", item])
            self.assertError(TypeError, "Argument must be a list of strings.",
                             self.delegate.hideLocations, ["/root", item])
        self.assertEqual(([], []), (self.plugins.take(), ScriptedScene.takeCommands()),
                         "nothing is called, not even for the first path")

    def testAListIsReleasedWithItsItems(self):
        self.createDelegate()
        path = "/" + "x" * 100
        paths = [path]
        before = sys.getrefcount(path), sys.getrefcount(paths)
        for name in PATH_METHODS:
            getattr(self.delegate, name)(paths)
        for _ in range(10):
            errorOf(self.delegate.openLocations, [path, 1])
        gc.collect()
        self.assertEqual(before, (sys.getrefcount(path), sys.getrefcount(paths)))

    def testSubclassesOfStrPass(self):
        class Path(str):
            pass

        self.createDelegate()
        self.delegate.setSelectedLocations([Path("/a")])
        self.assertEqual([(DELEGATE, "locationsSelected", ["/a"])], self.plugins.take())

    def testAListThatShrinksDuringTheCallIsWalkedAsItWas(self):
        self.createDelegate()
        paths = ["/path%d" % index for index in range(3)]
        self.delegate.addComponent(COMPONENT, "k")
        overwritten = []

        def shrink(*_):
            del paths[:]
            overwritten.extend("/over%d" % index for index in range(1000))

        self.plugins.answers[COMPONENT, "locationsSelected"] = shrink
        self.plugins.take()
        self.delegate.setSelectedLocations(paths)
        self.assertEqual([(plugin, "locationsSelected", ["/path0", "/path1", "/path2"])
                          for plugin in (COMPONENT, DELEGATE)], self.plugins.take())

    def testPathsThatAreNoUtf8PassUnchanged(self):
        path = "/caf\udce9" if IS_PYTHON_3 else "/caf\xe9"
        self.createDelegate()
        self.delegate.setSelectedLocations([path])
        self.assertEqual([(DELEGATE, "locationsSelected", [path])], self.plugins.take())
        self.plugins.answers[DELEGATE, "getBounds"] = None
        self.delegate.computeExtent(path)
        self.assertIn((DELEGATE, "computeExtent", path), self.plugins.take())

    @unittest.skipUnless(IS_PYTHON_3, "the interpreter itself says so, in its own words")
    def testTextWithANullCharacterIsRefusedWhateverItsBytes(self):
        self.createDelegate()
        for text in ("a\0b", "\udce9\0b"):
            self.assertError(ValueError, "embedded null character", self.delegate.getComponent,
                             text)

    def testANegativeIndexAnswersNone(self):
        viewport = self.createViewport()
        self.delegate.addComponent(COMPONENT, "k")
        viewport.addLayer(LAYER, "l")
        viewport.addCamera(CAMERA, "c")
        for target, name in ((self.delegate, "getComponentByIndex"),
                             (self.delegate, "getViewportByIndex"),
                             (self.delegate, "removeComponentByIndex"),
                             (self.delegate, "removeViewportByIndex"),
                             (viewport, "getLayerByIndex"), (viewport, "removeLayerByIndex"),
                             (viewport, "getLayerName"), (viewport, "getCameraByIndex"),
                             (viewport, "getCameraName"), (viewport, "removeCameraByIndex")):
            self.assertIsNone(getattr(target, name)(-1), name)
        self.assertEqual((1, 1, 1, 1), (
            self.delegate.getNumberOfComponents(), self.delegate.getNumberOfViewports(),
            viewport.getNumberOfLayers(), viewport.getNumberOfCameras()))

    def testAGroupArgumentMustBeAGroup(self):
        self.createDelegate()
        for value in (None, 1, IntAttribute(1), {}):
            self.assertError(TypeError, "First argument must be an VlGroupAttribute object",
                             self.delegate.setVisibilityWorkingSet, value)
        self.delegate.setVisibilityWorkingSet(GroupAttribute())


class OptionTest(ScriptedTest):
    def setUp(self):
        ScriptedTest.setUp(self)
        viewport = self.createViewport()
        self.targets = ((DELEGATE, self.delegate), (VIEWPORT, viewport),
                        (LAYER, viewport.addLayer(LAYER, "l")),
                        (CAMERA, viewport.addCamera(CAMERA, "c")),
                        (COMPONENT, self.delegate.addComponent(COMPONENT, "k")))
        self.plugins.take()

    def tearDown(self):
        self.targets = None
        ScriptedTest.tearDown(self)

    def testAnOptionGoesToThePluginByItsId(self):
        for plugin, target in self.targets:
            value = IntAttribute(7)
            self.assertIsNone(target.setOption(0xfedcba9876540000, value))
            self.assertEqual([(plugin, "setOption", 0xfedcba9876540000, value)],
                             self.plugins.take())

    def testANameStandsForItsId(self):
        for plugin, target in self.targets:
            optionId = ViewerAPI.GenerateOptionId("speed")
            target.setOptionByName("speed", IntAttribute(1))
            self.plugins.answers[plugin, "getOption"] = IntAttribute(3)
            self.assertEqual(IntAttribute(3), target.getOptionByName("speed"))
            self.assertEqual([(plugin, "setOption", optionId, IntAttribute(1)),
                              (plugin, "getOption", optionId)], self.plugins.take())

    def testANameThatWasUsedCanBeLookedUp(self):
        for plugin, target in self.targets:
            name = "option of " + plugin
            target.getOptionByName(name)
            self.assertEqual(name, ViewerAPI.LookUpOptionId(ViewerAPI.GenerateOptionId(name)))

    def testAnOptionThatIsNotThereIsNone(self):
        for _, target in self.targets:
            self.assertIsNone(target.getOption(1))
            self.assertIsNone(target.getOptionByName("unknown"))

    def testAValueMustBeAnAttribute(self):
        text = "Second argument must be an VlAttribute object"
        for _, target in self.targets:
            for value in (None, 1, "text"):
                self.assertError(TypeError, text, target.setOption, 1, value)
                self.assertError(TypeError, text, target.setOptionByName, "n", value)
        self.assertEqual([], self.plugins.take())

    def testTheNameOfAnOptionThatIsNotSetIsNotRemembered(self):
        for plugin, target in self.targets:
            name = "option that " + plugin + " never got"
            # Generated elsewhere, as generating it here would make it known.
            optionId = int(subprocess.check_output([
                sys.executable, "-c",
                "import ViewerAPI_cmodule as v\nprint('%%d' %% v.GenerateOptionId(%r))" % name]))
            self.assertRaises(TypeError, target.setOptionByName, name, None)
            self.assertEqual("", ViewerAPI.LookUpOptionId(optionId))
            target.setOptionByName(name, IntAttribute(1))
            self.assertEqual(name, ViewerAPI.LookUpOptionId(optionId))

    def testTheParserRefusesOtherArguments(self):
        for _, target in self.targets:
            for method, arguments in (("setOption", (1,)), ("setOption", ("x", IntAttribute(1))),
                                      ("setOptionByName", (1, IntAttribute(1))),
                                      ("getOption", ("x",)), ("getOption", ()),
                                      ("getOptionByName", (1,))):
                self.assertRaises(TypeError, getattr(target, method), *arguments)


if __name__ == "__main__":
    unittest.main()
