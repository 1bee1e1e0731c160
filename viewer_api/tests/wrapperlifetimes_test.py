"""What wrappers keep alive, what they say of host objects that are gone, and that nothing leaks."""

import gc
import sys
import unittest
import weakref

from scripted import (CAMERA, COMPONENT, DELEGATE, LAYER, ScriptedTest, VIEWPORT, ViewerAPI,
                      errorOf, instanceCount)
import ScriptedPlugins
from PyVlAttribute import IntAttribute


class OwnershipTest(ScriptedTest):
    def testTheDelegateLivesAsLongAsItsWrapper(self):
        before = instanceCount()
        delegate = ViewerAPI.CreateViewerDelegate(DELEGATE)
        self.assertEqual(before + 1, instanceCount())
        self.plugins.take()
        del delegate
        gc.collect()
        self.assertEqual(before, instanceCount())
        self.assertEqual([(DELEGATE, "destroy")], self.plugins.take())

    def testADelegateThatEndsWithoutCleanupDestroysComponentsViewportsAndItself(self):
        self.createDelegate()
        self.delegate.addComponent(COMPONENT, "a")
        self.delegate.addViewport(VIEWPORT, "v")
        self.plugins.take()
        self.delegate = None
        self.assertEqual([(COMPONENT, "destroy"), (VIEWPORT, "destroy"), (DELEGATE, "destroy")],
                         self.plugins.take())

    def testWeakReferencesAreClearedBeforeTheHostEnds(self):
        self.createDelegate()
        reference = weakref.ref(self.delegate)
        alive = []
        self.plugins.answers[DELEGATE, "destroy"] = lambda host: alive.append(reference())
        self.delegate = None
        self.assertEqual([None], alive)

    def testCallbacksAreReleasedBeforeTheHostEnds(self):
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

    def testAViewportDoesNotKeepItsDelegate(self):
        viewport = self.createViewport()
        self.delegate = None
        self.assertIn((DELEGATE, "destroy"), self.plugins.take())
        self.assertIsNone(viewport.getViewerDelegate())

    def testGetViewerDelegateGivesTheWrapperItself(self):
        viewport = self.createViewport()
        self.assertIs(self.delegate, viewport.getViewerDelegate())
        self.assertIs(self.delegate, self.delegate.getViewport("v").getViewerDelegate())

    def testGetViewerDelegateIsNoneOnceTheDelegateHasGone(self):
        self.createViewport("v")
        viewport = self.delegate.getViewport("v")
        self.delegate = None
        self.assertIsNone(viewport.getViewerDelegate())

    def testGetViewerDelegateOfARemovedViewportIsNone(self):
        viewport = self.createViewport()
        self.delegate.removeViewport("v")
        self.assertIsNone(viewport.getViewerDelegate())

    def testEveryCallMakesAWrapperOfItsOwn(self):
        viewport = self.createViewport()
        layer = viewport.addLayer(LAYER, "l")
        camera = viewport.addCamera(CAMERA, "c")
        component = self.delegate.addComponent(COMPONENT, "k")
        self.assertIsNot(viewport, self.delegate.getViewport("v"))
        self.assertIsNot(self.delegate.getViewport("v"), self.delegate.getViewport("v"))
        self.assertIsNot(layer, viewport.getLayer("l"))
        self.assertIsNot(camera, viewport.getCameraByName("c"))
        self.assertIsNot(component, self.delegate.getComponent("k"))

    def testWrappersMayOutliveEverything(self):
        viewport = self.createViewport()
        wrappers = [viewport, viewport.addLayer(LAYER, "l"),
                    self.delegate.addComponent(COMPONENT, "k"), viewport.addCamera(CAMERA, "c")]
        self.delegate = None
        del wrappers[:]
        del viewport
        gc.collect()

    def testACallbackThatDropsTheDelegateDoesNotEndItUnderItsOwnCall(self):
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

    def testCallsOfLayersCamerasAndComponentsHoldTheDelegateToo(self):
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

    def testADelegateMethodThatLosesTheLastOtherReferenceGoesOn(self):
        holder = [self.createDelegate()]
        self.delegate = None
        self.plugins.answers[DELEGATE, "setup"] = lambda host: holder.pop()
        before = instanceCount()
        holder[0].setup()
        self.assertEqual(before - 1, instanceCount())

    def testAnErrorOnItsWaySurvivesADelegatesEnd(self):
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

    def testARemovedViewport(self):
        viewport = self.createViewport()
        self.delegate.removeViewport("v")
        self.assertGone("viewport", viewport)

    def testAViewportWhoseDelegateHasGone(self):
        viewport = self.createViewport()
        self.delegate = None
        self.assertGone("viewport", viewport)

    def testARemovedLayer(self):
        viewport = self.createViewport()
        layer = viewport.addLayer(LAYER, "l")
        viewport.removeLayer("l")
        self.assertGone("layer", layer)

    def testALayerWhoseViewportHasGone(self):
        layer = self.createViewport().addLayer(LAYER, "l")
        self.delegate.removeViewport("v")
        self.assertGone("layer", layer)

    def testARemovedCamera(self):
        viewport = self.createViewport()
        camera = viewport.addCamera(CAMERA, "c")
        viewport.setActiveCamera(viewport.addCamera(CAMERA, "other"))
        viewport.removeCamera("c")
        self.assertGone("camera", camera)

    def testACameraThatWasReplacedUnderItsName(self):
        viewport = self.createViewport()
        camera = viewport.addCamera(CAMERA, "c")
        viewport.addCamera(CAMERA, "c")
        self.assertGone("camera", camera)

    def testACameraOutlivesItsViewport(self):
        camera = self.createViewport().addCamera(CAMERA, "c")
        camera.setFOV(30.0)
        self.delegate = None
        self.assertEqual(30.0, camera.getFOV())
        self.assertEqual(16, len(camera.getProjectionMatrix()))

    def testAGoneCameraCannotBecomeActive(self):
        viewport = self.createViewport()
        camera = viewport.addCamera(CAMERA, "c")
        viewport.addCamera(CAMERA, "c")
        self.assertError(RuntimeError, self.TEXTS["camera"], viewport.setActiveCamera, camera)

    def testARemovedComponent(self):
        self.createDelegate()
        component = self.delegate.addComponent(COMPONENT, "k")
        self.delegate.removeComponent("k")
        self.assertGone("component", component)

    def testANewObjectInTheMemoryOfAGoneOneIsNotTakenForIt(self):
        self.createDelegate()
        gone = []
        for _ in range(50):
            gone.append(self.delegate.addComponent(COMPONENT, "k"))
            self.delegate.removeComponent("k")
        self.delegate.addComponent(COMPONENT, "k")
        for component in gone:
            self.assertError(RuntimeError, self.TEXTS["component"], component.getOption, 1)

    def testAViewportThatRemovesItselfInItsDrawIsGoneAfterwards(self):
        viewport = self.createViewport()
        host = self.host()
        self.plugins.answers[VIEWPORT, "draw"] = (
            lambda _: ScriptedPlugins.removeViewportByIndex(host, 0))
        viewport.draw()
        self.assertEqual(0, self.delegate.getNumberOfViewports())
        self.assertEqual((VIEWPORT, "destroy"), self.plugins.take()[-1])
        self.assertGone("viewport", viewport)


    def testAnObjectThatIsRemovedInItsOwnCallEndsWhenTheCallReturns(self):
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


class ReferenceTest(ScriptedTest):
    ROUNDS = 2000

    def testNoMethodLosesOrTakesReferencesToItsAnswer(self):
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

    def testWrappersAreReleased(self):
        viewport = self.createViewport()
        before = sys.getrefcount(viewport), sys.getrefcount(self.delegate)
        for _ in range(100):
            self.delegate.getViewport("v").getViewerDelegate()
            viewport.draw()
        self.assertEqual(before, (sys.getrefcount(viewport), sys.getrefcount(self.delegate)))


if __name__ == "__main__":
    unittest.main()
