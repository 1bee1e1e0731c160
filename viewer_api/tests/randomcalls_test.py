"""Random calls of every method of every type: good ones and bad ones, of what lives and of what has
gone, and one from within the other. Whatever a script does, the process goes on, errors are of the
kinds that are told, and what the types answer is what was done.

OSTREL_ORACLE_SEED says where to begin instead, to see a seed again that failed, and
OSTREL_ORACLE_COUNT how many to try, to look for longer.
"""

from __future__ import division

import collections
import gc
import os
import random
import sys
import unittest

import PyWindowSystem
from argumentkinds import (ANYTHING, NO_ATTRIBUTE, NO_CHANNEL, NO_FLOAT, NO_GROUP, NO_INT,
                           NO_LIST_OF_TEXT, NO_MATRIX, NO_OPTION_ID, NO_TEXT, NO_TRUE_INT)
from delegatearguments_test import ROWS as DELEGATE_ROWS
from scripted import (Bridge, CAMERA, COMPONENT, DELEGATE, LAYER, MANIPULATORS, ScriptedTest,
                      VIEWPORT, ViewerAPI, application, instanceCount, raisePending)
from viewportarguments_test import (CAMERA_ROWS, LAYER_ROWS, MANIPULATOR_ROWS, OPTION_ROWS,
                                    VIEWPORT_ROWS)
import ScriptedPlugins
import ScriptedScene
from PyVlAttribute import (DoubleAttribute, FloatAttribute, GroupAttribute, IntAttribute,
                           StringAttribute)

SEED = int(os.environ.get("OSTREL_ORACLE_SEED", 1))
COUNT = int(os.environ.get("OSTREL_ORACLE_COUNT", 8))
CALLS = 1000  # of a seed, without those from within others

ROWS = {
    ViewerAPI.ViewerDelegate: DELEGATE_ROWS,
    ViewerAPI.ViewerDelegateComponent: OPTION_ROWS,
    ViewerAPI.Viewport: VIEWPORT_ROWS,
    ViewerAPI.ViewportLayer: LAYER_ROWS,
    ViewerAPI.ViewportCamera: CAMERA_ROWS,
    ViewerAPI.Manipulator: MANIPULATOR_ROWS,
}

NAMES = ("a", "b", "c", "name with blanks", "caf\xc3\xa9", "dotted.name", "/", "d" * 100000)
PATHS = ("/root", "/root/a", "/root/a/b", "/root/b", "/root/a/__VlOst_bbox", "/root/never", "",
         "/", "//", "/root/", "/root//a", "no path", "/root/a." + "b" * 300,
         "/root/" + 999 * "a/" + "a")
PLUGINS = {"addComponent": (COMPONENT,), "insertComponent": (COMPONENT,),
           "addViewport": (VIEWPORT,), "addLayer": (LAYER,), "insertLayer": (LAYER,),
           "addCamera": (CAMERA,), "activateManipulator": MANIPULATORS,
           "deactivateManipulator": MANIPULATORS}
CHANNELS = tuple("__" + name for name in (
    "SELECT_LOCATIONS", "GET_SELECTED_LOCATIONS", "ACTIVE_MANIPULATORS_CHANGED",
    "BOUNDING_BOXES_CHANGED", "PROXY_GEOMETRY_CHANGED", "SELECTED_ENABLED_LOCATIONS_CHANGED",
    "VIEWPORT_VIEW_FROZEN_STATE_CHANGED", "LOOKTHROUGH_LOCATION_CHANGED",
    "LOOKTHROUGH_LOCATION_CHANGE_REQUESTED", "LOOKTHROUGH_LOCATION_COOKED",
    "LOOKTHROUGH_LOCATION_DOES_NOT_EXIST")) + ("getViewerProxyLoaderOp", "x")
INTEGERS = (-2 ** 31, -1, 0, 0, 0, 1, 1, 2, 3, 2 ** 31 - 1)
NUMBERS = (0.0, -0.0, 1.0, -1.5, 45.0, 1e-300, 1e300, float("inf"), float("-inf"), float("nan"))

#: Methods that look at no type: what their first argument has to be.
WRAPPERS = {"setLookThroughLocation": ViewerAPI.Viewport,
            "setActiveCamera": ViewerAPI.ViewportCamera}
#: Methods that answer also when their object has gone.
WITHOUT_HOST = ("getViewerDelegate",)
#: What removes so much that little would be left to call.
RARE = ("cleanup", "flushCaches", "removeViewport", "removeViewportByIndex")


class Mischief(Exception):
    """What a script's own code raises."""


#: What a call may raise.
DOCUMENTED = (TypeError, ValueError, OverflowError, RuntimeError, Mischief,
              ScriptedPlugins.StandardError, ScriptedPlugins.OtherError)


# ---- What calls do, as far as it shows: a state, to which the effect of a call is applied.

def named(count, name):
    return [name(index) for index in range(count())]


def stateOf(wrapper):
    """What can be asked of an object that lives, as lists and values; other objects have none."""
    if type(wrapper) is ViewerAPI.ViewerDelegate:
        return {"components": named(wrapper.getNumberOfComponents, wrapper.getComponentName),
                "viewports": named(wrapper.getNumberOfViewports, wrapper.getViewportName),
                "workingSet": wrapper.getWorkingSetVisibilityEnabled()}
    if type(wrapper) is ViewerAPI.Viewport:
        return {"layers": named(wrapper.getNumberOfLayers, wrapper.getLayerName),
                "cameras": named(wrapper.getNumberOfCameras, wrapper.getCameraName),
                "manipulators": named(wrapper.getNumberOfActiveManipulators,
                                      wrapper.getActiveManipulatorPluginName),
                "frozen": wrapper.isViewFrozen(), "panAndZoom": wrapper.isPanAndZoomActive()}
    if type(wrapper) is ViewerAPI.ViewportCamera:
        return {"view": list(wrapper.getViewMatrix()), "path": wrapper.getLocationPath(),
                "interaction": not wrapper.isInteractionDisabled()}
    return {}


def told(state):
    """As text, in which what is no number equals itself."""
    return repr(state and sorted(state.items()))


def insert(names, name, index):
    if 0 <= index <= len(names):
        names.insert(index, name)


def removeName(names, name):
    if name in names:
        names.remove(name)


def removeIndex(names, index):
    if 0 <= index < len(names):
        del names[index]


def replace(names, name):
    """A name stands for what got it last."""
    for index, other in enumerate(names):
        if other == name:
            names[index] = ""
    names.append(name)


def addCamera(names, name):
    removeName(names, name)
    names.append(name)


def activate(names, plugin):
    if plugin not in names:
        names.append(plugin)


def setKey(key, convert=bool):
    return lambda state, value: state.update({key: convert(value)})


#: By type and method: what is done to the state by the arguments.
EFFECTS = {
    ViewerAPI.ViewerDelegate: {
        "addComponent": lambda state, plugin, name: state["components"].append(name),
        "insertComponent": lambda state, plugin, name, index: insert(state["components"], name,
                                                                     index),
        "removeComponent": lambda state, name: removeName(state["components"], name),
        "removeComponentByIndex": lambda state, index: removeIndex(state["components"], index),
        "addViewport": lambda state, plugin, name: replace(state["viewports"], name),
        "removeViewport": lambda state, name: removeName(state["viewports"], name),
        "removeViewportByIndex": lambda state, index: removeIndex(state["viewports"], index),
        "setWorkingSetVisibilityEnabled": setKey("workingSet"),
        "cleanup": lambda state: state.update(components=[], viewports=[]),
    },
    ViewerAPI.Viewport: {
        "addLayer": lambda state, plugin, name: state["layers"].append(name),
        "insertLayer": lambda state, plugin, name, index: insert(state["layers"], name, index),
        "removeLayer": lambda state, name: removeName(state["layers"], name),
        "removeLayerByIndex": lambda state, index: removeIndex(state["layers"], index),
        "addCamera": lambda state, plugin, name: addCamera(state["cameras"], name),
        "removeCamera": lambda state, name: removeName(state["cameras"], name),
        "removeCameraByIndex": lambda state, index: removeIndex(state["cameras"], index),
        "activateManipulator": lambda state, plugin, paths, signal: activate(
            state["manipulators"], plugin),
        "deactivateManipulator": lambda state, plugin, signal: removeName(state["manipulators"],
                                                                          plugin),
        "deactivateAllManipulators": lambda state, signal: state.update(manipulators=[]),
        "setViewFrozen": setKey("frozen"),
        "setPanAndZoomActive": setKey("panAndZoom"),
    },
    ViewerAPI.ViewportCamera: {
        "setViewMatrix": setKey("view", list),
        "setLocationPath": setKey("path", lambda path: path or None),
        "disableInteraction": lambda state, value: state.update(interaction=not value),
    },
}


class MischievousBridge(object):
    """The application's end, every method of which is the script's."""

    def __init__(self, script):
        for name in dir(Bridge):
            if not name.startswith("_"):
                setattr(self, name, script.beCalled)


class Script(object):
    """Makes one random call after the other, and has the code of the application and of plug-ins
    that these lead to make more."""

    def __init__(self, test, seed, windows):
        self.test = test
        self.random = random.Random(seed)
        self.windows = windows
        self.wrappers = []  # of all types, also of what has gone
        self.ended = []  # those of them that said so
        self.clients = []  # the first client of each delegate that was made
        self.hosts = []  # of the delegates' plug-ins that live
        self.depth = 0
        self.isQuiet = False  # nobody does any mischief
        self.isDisturbed = False  # somebody did some
        self.failures = []  # of checks in calls from within others
        self.trace = collections.deque(maxlen=12)

    def oneIn(self, count):
        return self.random.randrange(count) == 0

    def pick(self, *values):
        return self.random.choice(values)

    def act(self):
        """A call with a look at what it did; or something else that a script may do."""
        self.pick(*[self.call] * 14 + [self.report] * 4 + [self.playPlugin, self.createDelegate,
                                                           self.letGo])()

    # ---- What others do when they are called

    def plugin(self, plugin, host, entry, arguments):
        """Every entry of every plug-in."""
        if entry == "destroy":
            self.hosts[:] = [each for each in self.hosts if each != host]
        self.misbehave()
        if entry == "create":
            if not self.isQuiet and self.oneIn(10):
                return False
            if plugin == DELEGATE:
                self.hosts.append(host)
        if self.isQuiet:
            return None
        if entry in ("getOption", "getBounds", "computeExtent", "asAttribute", "getTags"):
            return self.attribute()
        return self.pick(None, 0, 1, -1)

    def beCalled(self, *arguments):
        """Every listener, and every method of the bridge."""
        self.misbehave()
        return self.pick(None, 0, -1, True, 1.5, "text", [], self.attribute())

    def misbehave(self):
        if self.isQuiet or self.depth >= 3:
            return
        self.depth += 1
        while self.oneIn(4):
            try:
                self.act()
            except Exception as failure:  # the caller would take it for mischief
                self.failures.append(failure)
            self.isDisturbed = True
        self.depth -= 1
        if self.oneIn(15):
            self.isDisturbed = True
            raise self.pick(Mischief, ValueError, ScriptedPlugins.StandardError,
                            ScriptedPlugins.OtherError)("mischief")

    def number(self, value):
        """A number that has something done when it is asked for its value."""
        script = self

        class Number(object):
            def __index__(self):
                script.isDisturbed = True
                script.misbehave()
                return value

            __int__ = __long__ = __index__

            def __float__(self):
                return float(self.__index__())

        return Number()

    # ---- Arguments

    def numbers(self, *counts):
        return [self.pick(*NUMBERS) for _ in range(self.pick(*counts))]

    def floats(self, *counts):
        return FloatAttribute([number for number in self.numbers(*counts) if number != 1e300])

    def attribute(self):
        return self.pick(
            lambda: None,
            lambda: IntAttribute(self.pick(*INTEGERS)),
            lambda: self.floats(0, 1, 3, 6),
            lambda: DoubleAttribute(self.numbers(0, 1, 3, 6, 16)),
            lambda: StringAttribute([self.pick(*PATHS) for _ in range(3)]),
            self.group)()

    def group(self):
        """Attributes such as locations, events and cameras have."""
        text = lambda *values: StringAttribute(self.pick(*values))
        children = (
            ("type", text("camera", "light", "mousePress")),
            ("bound", DoubleAttribute(self.numbers(5, 6, 6, 6))),
            ("xform.a.translate", DoubleAttribute(self.numbers(3, 3, 4))),
            ("xform.a.scale", self.attribute()),
            ("geometry.point.P", self.floats(0, 3, 4, 6)),
            ("geometry.point.Pw", self.floats(0, 4)),
            ("attributeEditor.exclusiveTo", text("node")),
            ("proxies.viewer", self.pick(text("file"), GroupAttribute(("op.opType", text("x"))))),
            ("__viewerWorkingSets.viewerVisibility.polished.included",
             IntAttribute(self.pick(0, 1))))
        return GroupAttribute(*[child for child in children if self.oneIn(4)])

    def text(self, method, place):
        if place == 0 and method in PLUGINS:
            return self.pick(*PLUGINS[method] * 5 + ("Nobody", "WithoutSuite", ""))
        if "Location" in method or method.endswith(("Attributes", "Bounds", "Extent")):
            return self.pick(*PATHS)
        return self.pick(*NAMES)

    def anything(self, method):
        """For a parameter that is not looked at: what it is told to be there for."""
        if method in WRAPPERS:
            return self.pick(*[each for each in self.wrappers if type(each) is WRAPPERS[method]])
        if "allback" in method:
            return self.pick(self.beCalled, self.beCalled, self.beCalled, len, None, 5)
        return self.pick(self.group(), self.attribute(), 5)

    def integer(self, method):
        if method == "setup":
            return self.pick(*self.windows)
        value = self.pick(*INTEGERS)
        return self.number(value) if not self.isQuiet and self.oneIn(8) else value

    def real(self):
        return self.number(7) if not self.isQuiet and self.oneIn(8) else self.pick(*NUMBERS)

    def good(self, kind, method, place):
        return {
            id(NO_TEXT): lambda: self.text(method, place),
            id(NO_CHANNEL): lambda: self.pick(*CHANNELS),
            id(NO_LIST_OF_TEXT): lambda: [self.pick(*PATHS) for _ in range(self.pick(0, 1, 3))],
            id(NO_INT): lambda: self.integer(method),
            id(NO_TRUE_INT): lambda: self.pick(*INTEGERS),
            id(NO_OPTION_ID): lambda: self.pick(0, -1, 2 ** 64 - 1, 2 ** 100),
            id(NO_ATTRIBUTE): lambda: self.attribute() or IntAttribute(1),
            id(NO_GROUP): self.group,
            id(NO_FLOAT): self.real,
            id(NO_MATRIX): lambda: self.numbers(16),
            id(ANYTHING): lambda: self.anything(method),
        }[id(kind)]()

    def arguments(self, method, kinds):
        """Arguments, and what refuses the one of them that is bad, if there is one."""
        bad = self.random.randrange(8 * len(kinds)) if kinds else None
        arguments, refusal = [], None
        for place, kind in enumerate(kinds):
            if place == bad and kind:
                value, refusal = self.random.choice(kind)
            else:
                value = self.good(kind, method, place)
            arguments.append(value)
        return arguments, refusal

    # ---- Calls

    def call(self):
        if not self.wrappers:
            self.createDelegate()
            return
        target = self.pick(*self.wrappers)
        kind = type(target)
        method, kinds = self.random.choice(ROWS[kind])[:2]
        if method in RARE and not self.oneIn(10):
            return
        if method in WRAPPERS and WRAPPERS[method] not in map(type, self.wrappers):
            return
        arguments, refusal = self.arguments(method, kinds)
        before = self.look(target)
        self.isDisturbed = False
        result, error = self.attempt(getattr(target, method), arguments)
        if type(result) in ROWS:
            self.keep(result)
        if self.isDisturbed:
            return
        if before is None:
            self.test.assertTrue(self.isEnd(error) or method in WITHOUT_HOST, error)
            return
        effect = EFFECTS.get(kind, {}).get(method)
        expected = [told(before)]
        if refusal is not None:
            self.test.assertTrue(error is not None, "what is refused was taken")
        elif effect is not None:
            effect(before, *arguments)
            # A listener that can't be called fails what it is told of, which is done by then.
            expected = [told(before)] + (expected if error is not None else [])
        self.test.assertIn(told(self.look(target)), expected)

    def attempt(self, function, arguments):
        """The result and the error of a call, one of which is None."""
        self.trace.append("%s%s%.200r" % ("  " * self.depth, function.__name__, tuple(arguments)))
        try:
            result = function(*arguments)
            raisePending()
            return result, None
        except DOCUMENTED as error:
            return None, error

    @staticmethod
    def isEnd(error):
        return type(error) is RuntimeError and "has been destroyed" in str(error)

    def look(self, wrapper):
        """The state of an object, asked without mischief; None, from then on, when it has gone."""
        wasQuiet, self.isQuiet = self.isQuiet, True
        try:
            state = stateOf(wrapper)
            self.test.assertFalse(any(wrapper is each for each in self.ended), "it came back")
            return state
        except RuntimeError as error:
            self.test.assertTrue(self.isEnd(error), error)
            self.ended.append(wrapper)
            return None
        finally:
            self.isQuiet = wasQuiet

    def createDelegate(self):
        if instanceCount() - self.test.number < 3:
            first = ScriptedScene.getNumberOfClients() + 1
            delegate, _ = self.attempt(ViewerAPI.CreateViewerDelegate, [DELEGATE])
            if delegate is None:
                self.test.number += 1  # one whose construction failed is counted for ever
            else:
                self.clients = self.clients[-2:] + [first]
                self.keep(delegate)

    def keep(self, wrapper):
        self.wrappers.append(wrapper)
        while len(self.wrappers) > 40:
            self.letGo()

    def letGo(self):
        """Of a wrapper. A delegate ends with the last of its own, which is rare."""
        if self.wrappers:
            index = self.random.randrange(len(self.wrappers))
            if type(self.wrappers[index]) is not ViewerAPI.ViewerDelegate or self.oneIn(10):
                wrapper = self.wrappers.pop(index)
                self.ended[:] = [each for each in self.ended if each is not wrapper]

    def report(self):
        """The scene has news of a location, of parents first."""
        if self.clients:
            client = self.pick(*self.clients) + self.random.randrange(4)
            names = self.pick(*PATHS[:4]).split("/")
            if self.oneIn(4):
                ScriptedScene.reportGone(client, "/".join(names))
            else:
                for depth in range(2, len(names) + 1):
                    ScriptedScene.report(client, "/".join(names[:depth]), self.group())

    def playPlugin(self):
        """What a delegate's plug-in may ask of its host."""
        if not self.hosts:
            return
        path = self.pick(*PATHS)
        name, arguments = self.pick(
            ("setManipulatedAttribute", (path, self.pick("x", "xform.a.translate", ""),
                                         self.attribute(), self.pick(0, 1))),
            ("openManipulationGroup", (path,)), ("closeManipulationGroup", (path,)),
            ("callPythonCallback", (self.pick(*CHANNELS), self.attribute())),
            ("selectLocations", ([path],)), ("getSelectedLocations", ()),
            ("activateSourceLocations", ([path],)),
            ("removeComponentByIndex", (self.random.randrange(3),)),
            ("removeViewportByIndex", (self.random.randrange(3),)))
        self.attempt(getattr(ScriptedPlugins, name), (self.pick(*self.hosts),) + arguments)


class RandomCallsTest(ScriptedTest):
    def setUp(self):
        ScriptedTest.setUp(self)
        self.windows = [PyWindowSystem.createOffscreen(8, 8) for _ in range(2)]
        for window in self.windows:
            self.addCleanup(PyWindowSystem.destroyOffscreen, window)
        self.number = instanceCount()

    def testNothingThatAScriptDoesEndsTheProcess(self):
        for seed in range(SEED, SEED + COUNT):
            script = Script(self, seed, self.windows + [0, -1, 2 ** 31 - 1])
            ScriptedPlugins.setHook(script.plugin)
            application.ManipulatorBridge = lambda: MischievousBridge(script)
            try:
                self.play(script)
                self.endInAnyOrder(script)
            except AssertionError as error:
                self.fail("seed %d: %s, after\n%s" % (seed, error, "\n".join(script.trace)))
        self.assertAFreshDelegateWorks()

    def play(self, script):
        for _ in range(CALLS):
            script.isQuiet = script.oneIn(2)
            script.act()
            self.assertEqual([], script.failures)

    def endInAnyOrder(self, script):
        script.isQuiet = script.oneIn(2)
        while script.wrappers:
            script.letGo()
        script.isQuiet = True
        # Errors that were printed are kept there, with all that their frames hold.
        sys.last_type = sys.last_value = sys.last_traceback = sys.last_exc = None
        gc.collect()
        self.assertEqual(([], self.number), (script.failures, instanceCount()))

    def assertAFreshDelegateWorks(self):
        ScriptedPlugins.setHook(self.plugins)
        application.ManipulatorBridge = Bridge
        viewport = self.createViewport()
        viewport.setup(self.windows[0])
        ScriptedScene.report(self.firstClient, "/root")
        self.delegate.processLocationEvents()
        viewport.draw()
        self.assertEqual([(DELEGATE, "locationEvent", "/root", 0), (VIEWPORT, "draw")],
                         [call for call in self.plugins.take()
                          if call[1] in ("locationEvent", "draw")])
        self.delegate.cleanup()


if __name__ == "__main__":
    unittest.main()
