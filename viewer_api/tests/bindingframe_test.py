"""What holds for every type: ownership, wrappers, guards, conversions and the exceptions' end."""

import gc
import subprocess
import sys
import unittest
import weakref

from scripted import (CAMERA, COMPONENT, DELEGATE, IS_PYTHON_3, LAYER, ScriptedTest, VIEWPORT,
                      ViewerAPI, errorOf, instanceCount)
import ScriptedPlugins
import ScriptedScene
from PyVlAttribute import GroupAttribute, IntAttribute

NOT_A_LIST = "Argument must be a sequence of strings."
PATH_METHODS = ("openLocations", "closeLocations", "pinLocations", "unpinLocations",
                "setSelectedLocations", "computeMergedExtent", "getCompatibleManipulatorsInfo")


class ConstructionTest(ScriptedTest):
    def test_viewerDelegateRefusesDirectConstruction(self):
        text = "Please use the CreateViewerDelegate() function to instantiate a ViewerDelegate."
        self.assertError(RuntimeError, text, ViewerAPI.ViewerDelegate)
        self.assertError(RuntimeError, text, ViewerAPI.ViewerDelegate, 1, 2)

    def test_theInterpreterRefusesToConstructTheOthers(self):
        for name in ("Viewport", "ViewportLayer", "ViewportCamera", "ViewerDelegateComponent"):
            self.assertRaises(TypeError, getattr(ViewerAPI, name))

    def test_initOfTheOthersNamesTheWayToMakeThem(self):
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

    def test_typesCannotBeSubclassed(self):
        for name in ("ViewerDelegate", "Viewport", "ViewportLayer", "ViewportCamera",
                     "ViewerDelegateComponent"):
            self.assertRaises(TypeError, type, "Derived", (getattr(ViewerAPI, name),), {})

    def test_anObjectFromNewAloneIsRefusedByEveryMethod(self):
        hollow = ViewerAPI.ViewerDelegate.__new__(ViewerAPI.ViewerDelegate)
        text = "Underlying C++ viewer delegate has been destroyed"
        self.assertError(RuntimeError, text, hollow.setup)
        self.assertError(RuntimeError, text, hollow.registerCallback, "x", len)
        self.assertError(RuntimeError, text, hollow.unregisterAllCallbacks)

    def test_onlyViewerDelegateSupportsWeakReferences(self):
        viewport = self.createViewport()
        self.assertIs(self.delegate, weakref.ref(self.delegate)())
        for wrapper in (viewport, viewport.addLayer(LAYER, "l"), viewport.addCamera(CAMERA, "c"),
                        self.delegate.addComponent(COMPONENT, "k")):
            self.assertRaises(TypeError, weakref.ref, wrapper)


class OwnershipTest(ScriptedTest):
    def test_theDelegateLivesAsLongAsItsWrapper(self):
        before = instanceCount()
        delegate = ViewerAPI.CreateViewerDelegate(DELEGATE)
        self.assertEqual(before + 1, instanceCount())
        self.plugins.take()
        del delegate
        gc.collect()
        self.assertEqual(before, instanceCount())
        self.assertEqual([(DELEGATE, "destroy")], self.plugins.take())

    def test_aDelegateThatEndsWithoutCleanupDestroysComponentsViewportsAndItself(self):
        self.createDelegate()
        self.delegate.addComponent(COMPONENT, "a")
        self.delegate.addViewport(VIEWPORT, "v")
        self.plugins.take()
        self.delegate = None
        self.assertEqual([(COMPONENT, "destroy"), (VIEWPORT, "destroy"), (DELEGATE, "destroy")],
                         self.plugins.take())

    def test_weakReferencesAreClearedBeforeTheHostEnds(self):
        self.createDelegate()
        reference = weakref.ref(self.delegate)
        alive = []
        self.plugins.answers[DELEGATE, "destroy"] = lambda host: alive.append(reference())
        self.delegate = None
        self.assertEqual([None], alive)

    def test_callbacksAreReleasedBeforeTheHostEnds(self):
        viewport = self.createViewport()
        counts = []

        class Callback(object):
            def __call__(self, value):
                pass

            def __del__(self):
                counts.append(instanceCount())
                viewport.draw()  # the host can still be called
                viewport.addLayer(LAYER, "l").setOption(1, IntAttribute(1))

        self.delegate.registerCallback("x", Callback())
        before = instanceCount()
        self.delegate = None
        self.assertEqual(([before], before - 1), (counts, instanceCount()))
        self.assertEqual([(VIEWPORT, "draw"), (LAYER, "create"),
                          (LAYER, "setOption", 1, IntAttribute(1)), (LAYER, "destroy"),
                          (VIEWPORT, "destroy"), (DELEGATE, "destroy")], self.plugins.take())

    def test_aViewportDoesNotKeepItsDelegate(self):
        viewport = self.createViewport()
        self.delegate = None
        self.assertIn((DELEGATE, "destroy"), self.plugins.take())
        self.assertIsNone(viewport.getViewerDelegate())

    def test_getViewerDelegateGivesTheWrapperItself(self):
        viewport = self.createViewport()
        self.assertIs(self.delegate, viewport.getViewerDelegate())
        self.assertIs(self.delegate, self.delegate.getViewport("v").getViewerDelegate())

    def test_getViewerDelegateIsNoneOnceTheDelegateHasGone(self):
        self.createViewport("v")
        viewport = self.delegate.getViewport("v")
        self.delegate = None
        self.assertIsNone(viewport.getViewerDelegate())

    def test_getViewerDelegateOfARemovedViewportIsNone(self):
        viewport = self.createViewport()
        self.delegate.removeViewport("v")
        self.assertIsNone(viewport.getViewerDelegate())

    def test_everyCallMakesAWrapperOfItsOwn(self):
        viewport = self.createViewport()
        layer = viewport.addLayer(LAYER, "l")
        camera = viewport.addCamera(CAMERA, "c")
        component = self.delegate.addComponent(COMPONENT, "k")
        self.assertIsNot(viewport, self.delegate.getViewport("v"))
        self.assertIsNot(self.delegate.getViewport("v"), self.delegate.getViewport("v"))
        self.assertIsNot(layer, viewport.getLayer("l"))
        self.assertIsNot(camera, viewport.getCameraByName("c"))
        self.assertIsNot(component, self.delegate.getComponent("k"))

    def test_wrappersMayOutliveEverything(self):
        viewport = self.createViewport()
        wrappers = [viewport, viewport.addLayer(LAYER, "l"),
                    self.delegate.addComponent(COMPONENT, "k"), viewport.addCamera(CAMERA, "c")]
        self.delegate = None
        del wrappers[:]
        del viewport
        gc.collect()

    def test_aCallbackThatDropsTheDelegateDoesNotEndItUnderItsOwnCall(self):
        viewport = self.createViewport()
        holder = [self.delegate]
        self.delegate = None
        drawn, told = [], []
        holder[0].registerCallback("x", told.append)
        delegateHost = self.host()

        def draw(host):
            del holder[:]
            gc.collect()
            drawn.append(instanceCount())
            self.assertIsNotNone(viewport.getViewerDelegate())
            ScriptedPlugins.callPythonCallback(delegateHost, "x", IntAttribute(1))

        self.plugins.answers[VIEWPORT, "draw"] = draw
        before = instanceCount()
        viewport.draw()
        self.assertEqual([before], drawn)
        self.assertEqual([IntAttribute(1)], told, "its channels work until the call returns")
        self.assertEqual(before - 1, instanceCount())
        self.assertEqual([(VIEWPORT, "draw"), (VIEWPORT, "destroy"), (DELEGATE, "destroy")],
                         self.plugins.take())

    def test_callsOfLayersCamerasAndComponentsHoldTheDelegateToo(self):
        for plugin in (LAYER, CAMERA, COMPONENT):
            viewport = self.createViewport()
            target = {LAYER: lambda: viewport.addLayer(LAYER, "x"),
                      CAMERA: lambda: viewport.addCamera(CAMERA, "x"),
                      COMPONENT: lambda: self.delegate.addComponent(COMPONENT, "x")}[plugin]()
            holder = [self.delegate]
            self.delegate = None
            counts, told = [], []
            holder[0].registerCallback("x", told.append)
            delegateHost = self.host()

            def setOption(host, optionId, value):
                del holder[:]
                gc.collect()
                counts.append(instanceCount())
                ScriptedPlugins.callPythonCallback(delegateHost, "x", value)

            self.plugins.answers[plugin, "setOption"] = setOption
            before = instanceCount()
            target.setOption(1 << 16, IntAttribute(1))
            self.assertEqual(([before], [IntAttribute(1)]), (counts, told), plugin)
            self.assertEqual(before - 1, instanceCount(), plugin)

    def test_aDelegateMethodThatLosesTheLastOtherReferenceGoesOn(self):
        holder = [self.createDelegate()]
        self.delegate = None
        self.plugins.answers[DELEGATE, "setup"] = lambda host: holder.pop()
        before = instanceCount()
        holder[0].setup()
        self.assertEqual(before - 1, instanceCount())

    def test_anErrorOnItsWaySurvivesADelegatesEnd(self):
        def fails():
            delegate = ViewerAPI.CreateViewerDelegate(DELEGATE)
            delegate.registerCallback("x", len)
            raise KeyError("mine")

        self.assertError(KeyError, "'mine'", fails)
        gc.collect()


class GoneHostTest(ScriptedTest):
    TEXTS = {"viewport": "Underlying C++ viewport has been destroyed",
             "layer": "Underlying C++ layer has been destroyed",
             "camera": "Underlying C++ camera has been destroyed",
             "component": "Underlying C++ component has been destroyed"}

    def assertGone(self, kind, wrapper):
        methods = [name for name in vars(type(wrapper))
                   if not name.startswith("__") and name != "getViewerDelegate"]
        self.assertTrue(methods)
        for name in methods:
            # The guard stands before the parser. Where there is none, the interpreter itself
            # refuses arguments.
            error = errorOf(getattr(wrapper, name), object())
            if isinstance(error, TypeError):
                error = errorOf(getattr(wrapper, name))
            self.assertIs(RuntimeError, type(error), "%s: %r" % (name, error))
            self.assertEqual(self.TEXTS[kind], str(error), name)

    def test_aRemovedViewport(self):
        viewport = self.createViewport()
        self.delegate.removeViewport("v")
        self.assertGone("viewport", viewport)

    def test_aViewportWhoseDelegateHasGone(self):
        viewport = self.createViewport()
        self.delegate = None
        self.assertGone("viewport", viewport)

    def test_aRemovedLayer(self):
        viewport = self.createViewport()
        layer = viewport.addLayer(LAYER, "l")
        viewport.removeLayer("l")
        self.assertGone("layer", layer)

    def test_aLayerWhoseViewportHasGone(self):
        layer = self.createViewport().addLayer(LAYER, "l")
        self.delegate.removeViewport("v")
        self.assertGone("layer", layer)

    def test_aRemovedCamera(self):
        viewport = self.createViewport()
        camera = viewport.addCamera(CAMERA, "c")
        viewport.setActiveCamera(viewport.addCamera(CAMERA, "other"))
        viewport.removeCamera("c")
        self.assertGone("camera", camera)

    def test_aCameraThatWasReplacedUnderItsName(self):
        viewport = self.createViewport()
        camera = viewport.addCamera(CAMERA, "c")
        viewport.addCamera(CAMERA, "c")
        self.assertGone("camera", camera)

    def test_aCameraOutlivesItsViewport(self):
        camera = self.createViewport().addCamera(CAMERA, "c")
        camera.setFOV(30.0)
        self.delegate = None
        self.assertEqual(30.0, camera.getFOV())
        self.assertEqual(16, len(camera.getProjectionMatrix()))

    def test_aGoneCameraCannotBecomeActive(self):
        viewport = self.createViewport()
        camera = viewport.addCamera(CAMERA, "c")
        viewport.addCamera(CAMERA, "c")
        self.assertError(RuntimeError, self.TEXTS["camera"], viewport.setActiveCamera, camera)

    def test_aRemovedComponent(self):
        self.createDelegate()
        component = self.delegate.addComponent(COMPONENT, "k")
        self.delegate.removeComponent("k")
        self.assertGone("component", component)

    def test_aNewObjectInTheMemoryOfAGoneOneIsNotTakenForIt(self):
        self.createDelegate()
        gone = []
        for _ in range(50):
            gone.append(self.delegate.addComponent(COMPONENT, "k"))
            self.delegate.removeComponent("k")
        self.delegate.addComponent(COMPONENT, "k")
        for component in gone:
            self.assertError(RuntimeError, self.TEXTS["component"], component.getOption, 1)

    def test_aViewportThatRemovesItselfInItsDrawIsGoneAfterwards(self):
        viewport = self.createViewport()
        host = self.host()
        self.plugins.answers[VIEWPORT, "draw"] = (
            lambda _: ScriptedPlugins.removeViewportByIndex(host, 0))
        viewport.draw()
        self.assertEqual(0, self.delegate.getNumberOfViewports())
        self.assertEqual((VIEWPORT, "destroy"), self.plugins.take()[-1])
        self.assertGone("viewport", viewport)


    def test_anObjectThatIsRemovedInItsOwnCallEndsWhenTheCallReturns(self):
        viewport = self.createViewport()
        layer = viewport.addLayer(LAYER, "x")
        camera = viewport.addCamera(CAMERA, "x")
        viewport.setActiveCamera(viewport.addCamera(CAMERA, "active"))
        component = self.delegate.addComponent(COMPONENT, "x")
        for plugin, entry, call, remove in (
                (COMPONENT, "getOption", lambda: component.getOption(1),
                 lambda: self.delegate.removeComponent("x")),
                (LAYER, "freeze", layer.freeze, lambda: viewport.removeLayer("x")),
                (CAMERA, "asAttribute", camera.asAttribute, lambda: viewport.removeCamera("x")),
                (VIEWPORT, "thaw", viewport.thaw, lambda: self.delegate.removeViewport("v"))):
            def answer(*_):
                remove()
                self.plugins.calls.append(("removed",))

            self.plugins.answers[plugin, entry] = answer
            self.plugins.take()
            call()
            calls = self.plugins.take()
            self.assertIn(("removed",), calls, plugin)
            self.assertLess(calls.index(("removed",)), calls.index((plugin, "destroy")), plugin)


class ExceptionBoundaryTest(ScriptedTest):
    # Plug-in, entry, and a call that reaches it.
    ENTRIES = (
        (DELEGATE, "setup", lambda test: test.delegate.setup()),
        (DELEGATE, "freeze", lambda test: test.delegate.freeze()),
        (DELEGATE, "getOption", lambda test: test.delegate.getOption(1)),
        (DELEGATE, "locationsSelected", lambda test: test.delegate.setSelectedLocations(["/a"])),
        (DELEGATE, "isProcessing", lambda test: test.delegate.isProcessing()),
        (COMPONENT, "setOption", lambda test: test.component.setOption(1, IntAttribute(1))),
        (VIEWPORT, "draw", lambda test: test.viewport.draw()),
        (VIEWPORT, "resize", lambda test: test.viewport.resize(1, 2)),
        (LAYER, "draw", lambda test: test.layer.draw()),
        (LAYER, "event", lambda test: test.layer.event(IntAttribute(1))),
        (CAMERA, "asAttribute", lambda test: test.camera.asAttribute()),
        (CAMERA, "setDirty", lambda test: test.camera.setDirty(1)),
    )

    def setUp(self):
        ScriptedTest.setUp(self)
        self.viewport = self.createViewport()
        self.layer = self.viewport.addLayer(LAYER, "l")
        self.camera = self.viewport.addCamera(CAMERA, "c")
        self.component = self.delegate.addComponent(COMPONENT, "k")

    def tearDown(self):
        del self.viewport, self.layer, self.camera, self.component
        ScriptedTest.tearDown(self)

    def test_standardExceptionsBecomeRuntimeErrorWithTheirText(self):
        for plugin, entry, call in self.ENTRIES:
            self.plugins.answers[plugin, entry] = ScriptedPlugins.StandardError("told " + entry)
            self.assertError(RuntimeError, "told " + entry, call, self)

    def test_otherExceptionsBecomeRuntimeErrorWithAFixedText(self):
        for plugin, entry, call in self.ENTRIES:
            self.plugins.answers[plugin, entry] = ScriptedPlugins.OtherError()
            self.assertError(RuntimeError, "Unknown C++ exception", call, self)

    def test_moduleFunctionsAreBoundedToo(self):
        self.plugins.answers[DELEGATE, "create"] = ScriptedPlugins.StandardError("no instance")
        self.assertError(RuntimeError, "no instance", ViewerAPI.CreateViewerDelegate, DELEGATE)
        self.plugins.answers[DELEGATE, "create"] = ScriptedPlugins.OtherError()
        self.assertError(RuntimeError, "Unknown C++ exception", ViewerAPI.CreateViewerDelegate,
                         DELEGATE)

    def test_aViewportThatCannotBeMadeIsNotAdded(self):
        self.plugins.answers[VIEWPORT, "create"] = ScriptedPlugins.StandardError("no viewport")
        self.assertError(RuntimeError, "no viewport", self.delegate.addViewport, VIEWPORT, "w")
        self.assertEqual(1, self.delegate.getNumberOfViewports())

    def test_theTextOfAnExceptionNeedsNotBeUtf8(self):
        text = "caf\udce9" if IS_PYTHON_3 else "caf\xe9"
        self.plugins.answers[DELEGATE, "setup"] = ScriptedPlugins.StandardError(text)
        self.assertError(RuntimeError, text, self.delegate.setup)

    def test_theDelegateIsUsableAfterwards(self):
        self.plugins.answers[VIEWPORT, "draw"] = ScriptedPlugins.OtherError()
        self.assertRaises(RuntimeError, self.viewport.draw)
        self.plugins.answers.clear()
        self.plugins.take()
        self.viewport.draw()
        self.assertEqual([(VIEWPORT, "draw")], self.plugins.take())


class LoadFailureTest(ScriptedTest):
    LOAD_TEXTS = (
        ("delegate", "Couldn't load ViewerDelegate plugin type '%s'.",
         "Error getting ViewerDelegate plugin suite for '%s'.",
         "Failed to create Viewer Delegate plugin instance for '%s'."),
        ("component", "Couldn't load ViewerDelegateComponent plugin type '%s'.",
         "Error getting ViewerDelegateComponent plugin suite for '%s'.",
         "Failed to create ViewerDelegateComponent plugin instance for '%s'."),
        ("viewport", "Couldn't load Viewport plugin type '%s' v2.",
         "Error getting Viewport plugin suite for '%s'.",
         "Failed to create Viewport plugin instance for '%s'."),
        ("layer", "Couldn't load ViewportLayer plugin type '%s'.",
         "Error getting ViewportLayer plugin suite for '%s'.",
         "Failed to create ViewportLayer plugin instance for '%s'."),
        ("camera", "Couldn't load ViewportCamera plugin type '%s'. The API version of the plugin "
                   "might not match the one currently supported: v2. In that case the plugin "
                   "needs to be recompiled and linked against this version of Ostrel.",
         "Error getting ViewportCamera plugin suite for '%s'.",
         "Failed to create ViewportCamera plugin instance for '%s'."),
    )
    NAMES = {"delegate": DELEGATE, "component": COMPONENT, "viewport": VIEWPORT, "layer": LAYER,
             "camera": CAMERA}

    def setUp(self):
        ScriptedTest.setUp(self)
        viewport = self.createViewport()
        self.makers = {
            "delegate": ViewerAPI.CreateViewerDelegate,
            "component": lambda name: self.delegate.addComponent(name, "x"),
            "viewport": lambda name: self.delegate.addViewport(name, "x"),
            "layer": lambda name: viewport.addLayer(name, "x"),
            "camera": lambda name: viewport.addCamera(name, "x")}

    def tearDown(self):
        self.makers = None
        ScriptedTest.tearDown(self)

    def test_anUnknownPluginIsNamed(self):
        for kind, unknown, _, _ in self.LOAD_TEXTS:
            self.assertError(RuntimeError, unknown % "Nobody", self.makers[kind], "Nobody")

    def test_aPluginOfAnotherKindIsUnknown(self):
        for kind, unknown, _, _ in self.LOAD_TEXTS:
            other = LAYER if kind != "layer" else CAMERA
            self.assertError(RuntimeError, unknown % other, self.makers[kind], other)

    def test_aPluginWithoutASuiteIsNamed(self):
        for kind, _, withoutSuite, _ in self.LOAD_TEXTS:
            self.assertError(RuntimeError, withoutSuite % "WithoutSuite", self.makers[kind],
                             "WithoutSuite")

    def test_aPluginThatMakesNoInstanceIsNamed(self):
        for kind, _, _, refused in self.LOAD_TEXTS:
            name = self.NAMES[kind]
            self.plugins.answers[name, "create"] = False
            self.plugins.take()
            self.assertError(RuntimeError, refused % name, self.makers[kind], name)
            self.assertEqual([(name, "create")], self.plugins.take(), "no destroy")

    def test_aFailedLoadLeavesTheInstanceCountRaised(self):
        before = instanceCount()
        self.assertRaises(RuntimeError, ViewerAPI.CreateViewerDelegate, "Nobody")
        gc.collect()
        self.assertEqual(before + 1, instanceCount())


class ArgumentTest(ScriptedTest):
    def test_aTupleIsNoList(self):
        self.createDelegate()
        for name in PATH_METHODS:
            self.assertError(TypeError, NOT_A_LIST, getattr(self.delegate, name), ("/root",))
        self.assertError(TypeError, "Argument must be a list of strings.",
                         self.delegate.hideLocations, ("/root",))

    def test_wrongNumbersOfArgumentsHaveTheTextOfTheList(self):
        self.createDelegate()
        for arguments in ((), (["/root"], "", "")):
            for name in PATH_METHODS:
                self.assertError(TypeError, NOT_A_LIST, getattr(self.delegate, name), *arguments)
            self.assertError(TypeError, "Argument must be a list of strings.",
                             self.delegate.hideLocations, *arguments)

    def test_oneItemThatIsNoStringRefusesTheWholeList(self):
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

    def test_aListIsReleasedWithItsItems(self):
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

    def test_subclassesOfStrPass(self):
        class Path(str):
            pass

        self.createDelegate()
        self.delegate.setSelectedLocations([Path("/a")])
        self.assertEqual([(DELEGATE, "locationsSelected", ["/a"])], self.plugins.take())

    def test_aListThatShrinksDuringTheCallIsWalkedAsItWas(self):
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

    def test_pathsThatAreNoUtf8PassUnchanged(self):
        path = "/caf\udce9" if IS_PYTHON_3 else "/caf\xe9"
        self.createDelegate()
        self.delegate.setSelectedLocations([path])
        self.assertEqual([(DELEGATE, "locationsSelected", [path])], self.plugins.take())
        self.plugins.answers[DELEGATE, "getBounds"] = None
        self.delegate.computeExtent(path)
        self.assertIn((DELEGATE, "computeExtent", path), self.plugins.take())

    def test_aNegativeIndexAnswersNone(self):
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

    def test_aGroupArgumentMustBeAGroup(self):
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

    def test_anOptionGoesToThePluginByItsId(self):
        for plugin, target in self.targets:
            value = IntAttribute(7)
            self.assertIsNone(target.setOption(0xfedcba9876540000, value))
            self.assertEqual([(plugin, "setOption", 0xfedcba9876540000, value)],
                             self.plugins.take())

    def test_aNameStandsForItsId(self):
        for plugin, target in self.targets:
            optionId = ViewerAPI.GenerateOptionId("speed")
            target.setOptionByName("speed", IntAttribute(1))
            self.plugins.answers[plugin, "getOption"] = IntAttribute(3)
            self.assertEqual(IntAttribute(3), target.getOptionByName("speed"))
            self.assertEqual([(plugin, "setOption", optionId, IntAttribute(1)),
                              (plugin, "getOption", optionId)], self.plugins.take())

    def test_aNameThatWasUsedCanBeLookedUp(self):
        for plugin, target in self.targets:
            name = "option of " + plugin
            target.getOptionByName(name)
            self.assertEqual(name, ViewerAPI.LookUpOptionId(ViewerAPI.GenerateOptionId(name)))

    def test_anOptionThatIsNotThereIsNone(self):
        for _, target in self.targets:
            self.assertIsNone(target.getOption(1))
            self.assertIsNone(target.getOptionByName("unknown"))

    def test_aValueMustBeAnAttribute(self):
        text = "Second argument must be an VlAttribute object"
        for _, target in self.targets:
            for value in (None, 1, "text"):
                self.assertError(TypeError, text, target.setOption, 1, value)
                self.assertError(TypeError, text, target.setOptionByName, "n", value)
        self.assertEqual([], self.plugins.take())

    def test_theNameOfAnOptionThatIsNotSetIsNotRemembered(self):
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

    def test_theParserRefusesOtherArguments(self):
        for _, target in self.targets:
            for method, arguments in (("setOption", (1,)), ("setOption", ("x", IntAttribute(1))),
                                      ("setOptionByName", (1, IntAttribute(1))),
                                      ("getOption", ("x",)), ("getOption", ()),
                                      ("getOptionByName", (1,))):
                self.assertRaises(TypeError, getattr(target, method), *arguments)


class ReferenceTest(ScriptedTest):
    ROUNDS = 2000

    def test_noMethodLosesOrTakesReferencesToItsAnswer(self):
        viewport = self.createViewport()
        layer = viewport.addLayer(LAYER, "l")
        camera = viewport.addCamera(CAMERA, "c")
        component = self.delegate.addComponent(COMPONENT, "k")
        value = IntAttribute(3)
        matrix = tuple(float(i) for i in range(16))
        calls = [
            (self.delegate.setOption, 1, value), (self.delegate.getOption, 1),
            (self.delegate.getComponent, "nope"), (self.delegate.getComponent, "k"),
            (self.delegate.getViewport, "v"), (self.delegate.getAttributes, "/nowhere"),
            (self.delegate.removeViewportByIndex, -1), (self.delegate.processLocationEvents,),
            (self.delegate.isProcessing,), (self.delegate.setSelectedLocations, ["/a"]),
            (self.delegate.openLocations, ["/a"]), (self.delegate.closeLocations, ["/a"]),
            (self.delegate.registerCallback, "x", None), (self.delegate.unregisterCallback, "x"),
            (self.delegate.unregisterAllCallbacks,), (self.delegate.getBounds, "/a"),
            (self.delegate.setSelectionCallbacks, None, None),
            (self.delegate.getCompatibleManipulatorsInfo, ["/a"]),
            (self.delegate.getRegisteredManipulatorsInfo,),
            (viewport.event, None), (viewport.event, value), (viewport.hover,),
            (viewport.hover, 1, 2), (viewport.isDirty,), (viewport.setDirty, True),
            (viewport.getActiveCamera,), (viewport.getLayer, "l"), (viewport.getLayer, "nope"),
            (viewport.getLayerName, -1), (viewport.getViewerDelegate,), (viewport.draw,),
            (viewport.setZoom, 1.0), (viewport.getZoom,), (viewport.setViewFrozen, True),
            (layer.event, None), (layer.event, value), (layer.draw,), (layer.getOption, 1),
            (camera.setup, None), (camera.setup, value), (camera.asAttribute,),
            (camera.setViewMatrix, matrix), (camera.getViewMatrix,), (camera.getNearFar,),
            (camera.getLocationPath,), (camera.getOrigin,), (component.setOption, 1, value),
        ]
        self.plugins.answers[CAMERA, "asAttribute"] = value
        self.plugins.answers[DELEGATE, "getOption"] = value
        watched = (None, True, False, value, self.delegate, viewport, matrix)
        for call in calls:
            call[0](*call[1:])
            self.plugins.take()
            before = [sys.getrefcount(item) for item in watched]
            for _ in range(self.ROUNDS):
                call[0](*call[1:])
                self.plugins.calls = []
            after = [sys.getrefcount(item) for item in watched]
            for item, first, last in zip(watched, before, after):
                self.assertLess(abs(last - first), self.ROUNDS // 4,
                                "%s: %r" % (call[0].__name__, item))

    def test_wrappersAreReleased(self):
        viewport = self.createViewport()
        before = sys.getrefcount(viewport), sys.getrefcount(self.delegate)
        for _ in range(100):
            self.delegate.getViewport("v").getViewerDelegate()
            viewport.draw()
        self.assertEqual(before, (sys.getrefcount(viewport), sys.getrefcount(self.delegate)))


if __name__ == "__main__":
    unittest.main()
