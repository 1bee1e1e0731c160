"""What scripts see of plug-ins that throw, or that can't be made."""

import gc
import unittest

from scripted import (CAMERA, COMPONENT, DELEGATE, IS_PYTHON_3, LAYER, ScriptedTest, VIEWPORT,
                      ViewerAPI, instanceCount)
import ScriptedPlugins
from PyVlAttribute import IntAttribute


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

    def testStandardExceptionsBecomeRuntimeErrorWithTheirText(self):
        for plugin, entry, call in self.ENTRIES:
            self.plugins.answers[plugin, entry] = ScriptedPlugins.StandardError("told " + entry)
            self.assertError(RuntimeError, "told " + entry, call, self)

    def testOtherExceptionsBecomeRuntimeErrorWithAFixedText(self):
        for plugin, entry, call in self.ENTRIES:
            self.plugins.answers[plugin, entry] = ScriptedPlugins.OtherError()
            self.assertError(RuntimeError, "Unknown C++ exception", call, self)

    def testModuleFunctionsAreBoundedToo(self):
        self.plugins.answers[DELEGATE, "create"] = ScriptedPlugins.StandardError("no instance")
        self.assertError(RuntimeError, "no instance", ViewerAPI.CreateViewerDelegate, DELEGATE)
        self.plugins.answers[DELEGATE, "create"] = ScriptedPlugins.OtherError()
        self.assertError(RuntimeError, "Unknown C++ exception", ViewerAPI.CreateViewerDelegate,
                         DELEGATE)

    def testAViewportThatCannotBeMadeIsNotAdded(self):
        self.plugins.answers[VIEWPORT, "create"] = ScriptedPlugins.StandardError("no viewport")
        self.assertError(RuntimeError, "no viewport", self.delegate.addViewport, VIEWPORT, "w")
        self.assertEqual(1, self.delegate.getNumberOfViewports())

    def testTheTextOfAnExceptionNeedsNotBeUtf8(self):
        text = "caf\udce9" if IS_PYTHON_3 else "caf\xe9"
        self.plugins.answers[DELEGATE, "setup"] = ScriptedPlugins.StandardError(text)
        self.assertError(RuntimeError, text, self.delegate.setup)

    def testTheDelegateIsUsableAfterwards(self):
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

    def testAnUnknownPluginIsNamed(self):
        for kind, unknown, _, _ in self.LOAD_TEXTS:
            self.assertError(RuntimeError, unknown % "Nobody", self.makers[kind], "Nobody")

    def testAPluginOfAnotherKindIsUnknown(self):
        for kind, unknown, _, _ in self.LOAD_TEXTS:
            other = LAYER if kind != "layer" else CAMERA
            self.assertError(RuntimeError, unknown % other, self.makers[kind], other)

    def testAPluginWithoutASuiteIsNamed(self):
        for kind, _, withoutSuite, _ in self.LOAD_TEXTS:
            self.assertError(RuntimeError, withoutSuite % "WithoutSuite", self.makers[kind],
                             "WithoutSuite")

    def testAPluginThatMakesNoInstanceIsNamed(self):
        for kind, _, _, refused in self.LOAD_TEXTS:
            name = self.NAMES[kind]
            self.plugins.answers[name, "create"] = False
            self.plugins.take()
            self.assertError(RuntimeError, refused % name, self.makers[kind], name)
            self.assertEqual([(name, "create")], self.plugins.take(), "no destroy")

    def testAFailedLoadLeavesTheInstanceCountRaised(self):
        before = instanceCount()
        self.assertRaises(RuntimeError, ViewerAPI.CreateViewerDelegate, "Nobody")
        gc.collect()
        self.assertEqual(before + 1, instanceCount())


if __name__ == "__main__":
    unittest.main()
