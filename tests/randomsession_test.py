"""Random calls of a whole viewer: scenes that make no sense, gestures on what comes and goes,
options and cameras of numbers that are none, and what stands below it. Whatever a script does, the
process goes on, and the next session shows its scene.

OSTREL_ORACLE_SEED says where to begin instead, to see a seed again that failed, and
OSTREL_ORACLE_COUNT how many to try, to look for longer.
"""
from __future__ import division

import gc
import os
import random
import re
import sys
import unittest

import ostrel
import PyScenelib
import PyVlLogging
import PyVlPluginSystem
import PyWindowSystem
import ViewerAPI
from ostrel import events
from PyVlAttribute import (DoubleAttribute, FloatAttribute, GroupAttribute, GroupBuilder,
                           IntAttribute, StringAttribute)

if sys.version_info[0] >= 3:
    from io import StringIO
else:
    from StringIO import StringIO

SEED = int(os.environ.get("OSTREL_ORACLE_SEED", 1))
COUNT = int(os.environ.get("OSTREL_ORACLE_COUNT", 4))
STEPS = 250  # of a seed

WIDTH, HEIGHT = 48, 36
TYPES = (ViewerAPI.ViewerDelegate, ViewerAPI.ViewerDelegateComponent, ViewerAPI.Viewport,
         ViewerAPI.ViewportLayer, ViewerAPI.ViewportCamera, ViewerAPI.Manipulator)
PATHS = ("/root", "/root/a", "/root/a/thing", "/root/b", "/root/light", "/root/camera",
         "/root/a/__VlOst_bbox", "/root/set_0", "/root/nowhere", "", "/", "//", "/root/", "no path",
         "/root/" + 999 * "a/" + "a", "/root/" + "b" * 100000)
NUMBERS = (0.0, -0.0, 1.0, 1.0, -1.5, 45.0, 180.0, 1e-30, 1e30, float("inf"), float("nan"))
INTEGERS = (-2 ** 31, -1, 0, 0, 1, 1, 2, 7, 40, 2 ** 31 - 1)
PLUGINS = {
    "addComponent": ("LocationExpander", "ErrorCollector"),
    "insertComponent": ("LocationExpander", "ErrorCollector"),
    "addViewport": ("SceneViewport",),
    "addLayer": ("GridLayer", "MeshLayer", "ManipulatorLayer", "PickingLayer"),
    "insertLayer": ("GridLayer", "MeshLayer", "ManipulatorLayer", "PickingLayer"),
    "addCamera": ("PerspectiveCamera", "OrthographicCamera"),
    "activateManipulator": ("TranslateManipulator", "RotateManipulator", "ScaleManipulator",
                            "LightConeManipulator"),
}
PLUGINS["deactivateManipulator"] = PLUGINS["activateManipulator"]
NAMES = ("a", "b", "main", "grid", "meshes", "manipulators", "picture", "", "c" * 100000)
OPTIONS = ("axes", "collapsed", "cullBackFaces", "displayMode", "draft", "errors",
           "isSoftwareRenderer", "pickRegion", "picked", "readout", "snapStep", "nobody")
WORDS = ("world", "local", "shaded", "wireframe", "wireframeOnShaded", "points", "polymesh",
         "camera", "light", "group", "error", "spot", "off", "")
CHANNELS = tuple("__LOOKTHROUGH_LOCATION_" + name for name in (
    "CHANGED", "CHANGE_REQUESTED", "COOKED", "DOES_NOT_EXIST")) + (
        "__SELECTED_ENABLED_LOCATIONS_CHANGED", "__SELECT_LOCATIONS", "getViewerProxyLoaderOp",
        "__ACTIVE_MANIPULATORS_CHANGED", "__VIEWPORT_VIEW_FROZEN_STATE_CHANGED")
#: Arguments that signatures leave out.
SIGNATURES = {"setHorizontalOffset": ["double"], "setVerticalOffset": ["double"],
              "setZoom": ["double"], "setPanAndZoomActive": ["bool"]}
#: Methods that remove so much that little would be left to call.
RARE = ("cleanup", "removeViewport", "removeViewportByIndex", "flushCaches")


class Mischief(Exception):
    """What a script's own code raises."""


class MischievousSession(ostrel.Session):
    """The application's end of edits is the script's."""

    script = None

    def isNodeEditable(self, name):
        return self.script.beCalled() is None

    def commitEdits(self, *arguments):
        self.script.beCalled()
        return ostrel.Session.commitEdits(self, *arguments)


class Script(object):
    def __init__(self, seed):
        self.random = random.Random(seed)
        self.sessions = []
        self.wrappers = []
        self.ops = []
        self.depth = 0
        self.trace = []

    def oneIn(self, count):
        return self.random.randrange(count) == 0

    def pick(self, *values):
        return self.random.choice(values)

    # ---- Values

    def numbers(self, *counts):
        return [self.pick(*NUMBERS) for _ in range(self.pick(*counts))]

    def integers(self, *counts):
        return IntAttribute([self.pick(*INTEGERS) for _ in range(self.pick(*counts))])

    def attribute(self):
        return self.pick(lambda: self.integers(0, 1, 4, 5),
                         lambda: FloatAttribute(self.numbers(0, 1, 3)),
                         lambda: DoubleAttribute(self.numbers(0, 1, 4, 6, 16)),
                         lambda: StringAttribute(self.pick(*WORDS)),
                         lambda: StringAttribute([self.pick(*PATHS) for _ in range(3)]),
                         self.location)()

    def location(self):
        """Attributes that a location, a camera or an event has, of all values."""
        groups = (
            ("type", StringAttribute(self.pick(*WORDS))),
            ("attributeEditor.exclusiveTo", StringAttribute("session")),
            ("xform.a.translate", DoubleAttribute(self.numbers(3, 3, 3, 1))),
            ("xform.a.rotateX", DoubleAttribute(self.numbers(4, 4, 2))),
            ("xform.a.scale", DoubleAttribute(self.numbers(3, 3, 0))),
            ("xform.b.matrix", DoubleAttribute(self.numbers(16))),
            ("xform.b.resetAll", DoubleAttribute(self.numbers(1))),
            ("bound", DoubleAttribute(self.numbers(6, 6, 5))),
            ("geometry.point.P", FloatAttribute(self.numbers(12, 9, 3, 4, 0))),
            ("geometry.point.Pw", FloatAttribute(self.numbers(16, 3))),
            ("geometry.point.N", FloatAttribute(self.numbers(12, 3))),
            ("geometry.point.st", FloatAttribute(self.numbers(8, 3))),
            ("geometry.point.color", FloatAttribute(self.numbers(12, 1))),
            ("geometry.poly.vertexList", self.pick(IntAttribute([0, 1, 2, 3]),
                                                   self.integers(3, 4, 0))),
            ("geometry.poly.startIndex", self.pick(IntAttribute([0, 4]), self.integers(2, 3, 0))),
            ("geometry.fov", FloatAttribute(self.numbers(1))),
            ("geometry.near", FloatAttribute(self.numbers(1))),
            ("geometry.far", FloatAttribute(self.numbers(1))),
            ("geometry.orthographicWidth", FloatAttribute(self.numbers(1))),
            ("geometry.projection", StringAttribute(self.pick("orthographic", "x"))),
            ("light.kind", StringAttribute("spot")),
            ("light.coneAngle", self.attribute() if self.oneIn(3) and self.depth == 0
             else DoubleAttribute(self.numbers(1))),
            ("material.baseColor", FloatAttribute(self.numbers(3, 4, 1))),
            ("material.texture", StringAttribute(self.pick("nothing.png", __file__))),
            ("material.textureData", StringAttribute("no picture")),
            ("proxies.viewer", StringAttribute(__file__)),
            ("viewer.default.drawOptions.fill", StringAttribute(self.pick(*WORDS))),
            ("viewer.default.drawOptions.hide", self.integers(1)))
        return GroupAttribute(*[each for each in groups if self.oneIn(3)])

    def event(self):
        x = self.pick(-2 ** 31, -5, 0, 10, 24, 24, 30, 47, 48, 2 ** 31 - 1)
        y = self.pick(-2 ** 31, -5, 0, 10, 18, 18, 25, 35, 2 ** 31 - 1)
        button = self.pick("left", "left", "left", "middle", "right", "none")
        modifiers = self.pick((), (), ("shift",), ("control",), ("alt", "control"))
        return self.pick(
            lambda: events.mousePress(x, y, button, modifiers=modifiers),
            lambda: events.mouseMove(x, y, [button], modifiers),
            lambda: events.mouseMove(x, y, [button], modifiers),
            lambda: events.mouseRelease(x, y, button, modifiers=modifiers),
            lambda: events.wheel(x, y, self.pick(*NUMBERS), modifiers=modifiers),
            lambda: events.keyPress(self.pick("f", "Escape", "z", ""), modifiers),
            self.attribute)()

    # ---- Steps

    def step(self):
        self.pick(*[self.callMethod] * 12 + [self.useView] * 12 + [self.useSession] * 6 +
                  [self.useScene] * 4 + [self.useLibraries] * 3 + [self.open])()

    def attempt(self, function, *arguments):
        """What a call gives; nothing when it fails as calls may."""
        self.trace.append("%s%s%.150r" % ("  " * self.depth, function.__name__, arguments))
        try:
            return function(*arguments)
        except SystemError:
            raise
        except Exception:
            return None

    def beCalled(self, *arguments):
        """By a channel, or the application's end of edits."""
        if self.depth < 2:
            self.depth += 1
            while self.oneIn(4):
                self.step()
            self.depth -= 1
            if self.oneIn(10):
                raise Mischief("mischief")
        return self.pick(None, None, None, 0, 1.5, "text", self.attribute())

    def open(self):
        if len(self.sessions) > 2 or self.depth > 0:
            return
        session = MischievousSession()
        session.script = self
        self.sessions.append(session)
        self.wrappers.append(session.delegate)
        for channel in CHANNELS:
            if self.oneIn(4):
                session.delegate.registerCallback(channel, self.beCalled)
        session.createOp("Scene.Literal", GroupAttribute(*[
            ("staticScene." + place + "a", self.location())
            for place in ("", "c.a.", "c.a.c.thing.", "c.b.", "c.light.", "c.camera.")]))
        self.addView(session)

    def addView(self, session):
        view = self.attempt(session.addOffscreenView, WIDTH, HEIGHT, self.pick(*NAMES),
                            self.pick("PerspectiveCamera", "OrthographicCamera"))
        if view is not None:
            session.view = view
            self.wrappers += [view.viewport, view.camera]

    def useView(self):
        session = self.pick(*self.sessions or [None])
        view = getattr(session, "view", None)
        if view is None:
            return
        viewport = view.viewport
        self.pick(
            lambda: self.drag(session, view),
            lambda: self.attempt(viewport.event, self.event()),
            lambda: self.attempt(viewport.event, self.event()),
            lambda: self.attempt(viewport.event, self.event()),
            lambda: self.attempt(viewport.hover, 24, 18),
            lambda: self.attempt(view.draw),
            lambda: self.attempt(view.frame, self.pick(None, (-2, 2, -2, 2, -2, 2),
                                                       self.numbers(6))),
            lambda: self.attempt(view.lookThrough, self.pick(*PATHS)),
            lambda: self.attempt(view.manipulate, self.pick(*PLUGINS["activateManipulator"])),
            lambda: self.attempt(view.pick, self.pick(-9, 0, 24, 99), self.pick(-9, 0, 18, 99),
                                 self.pick(1, 5, 100), 1, self.oneIn(2)),
            lambda: self.attempt(view.pick, *[self.pick(*INTEGERS) for _ in range(5)]),
            lambda: self.attempt(view.resize, self.pick(0, -1, 1, WIDTH, 2 ** 31 - 1),
                                 self.pick(0, 7, HEIGHT, -2 ** 31)),
            lambda: self.attempt(view.camera.setFOV, self.pick(*NUMBERS)),
            lambda: self.attempt(view.manipulate, None),
            lambda: self.attempt(view.setManipulatorAxes, self.pick("world", "local", "none")),
            lambda: self.attempt(view.readPixels))()

    def drag(self, session, view):
        """A gesture on what is selected, which is framed with its gizmo; other things between."""
        x = WIDTH // 2 + self.pick(-8, -1, 0, 0, 0, 1, 6)
        y = HEIGHT // 2 + self.pick(-7, 0, 0, 0, 5)
        for function, argument in (
                (session.select, [self.pick(*PATHS[:6])]),
                (view.manipulate, self.pick(*PLUGINS["activateManipulator"])),
                (view.viewport.event, events.keyPress("f")),
                (view.viewport.event, events.mousePress(x, y, "left")),
                (view.viewport.event, events.mouseMove(x + 9, y, ["left"])),
                (view.viewport.event, events.mouseMove(x + 9, y + 5, ["left"], ["control"])),
                (view.viewport.event, events.mouseRelease(x, y + 9, "left"))):
            self.attempt(function, argument)
            while self.oneIn(3) and self.depth < 2:
                self.step()

    def useSession(self):
        if not self.sessions:
            return
        session = self.pick(*self.sessions)
        self.pick(
            lambda: self.attempt(session.pump, None, 0.2),
            lambda: self.attempt(session.pump, None, 0.2),
            lambda: self.attempt(session.select, [self.pick(*PATHS) for _ in range(2)]),
            lambda: self.attempt(session.setAttribute, self.pick(*PATHS),
                                 self.pick("xform.a.translate", "bound", "", "a..b"),
                                 self.pick(None, self.attribute())),
            lambda: self.attempt(session.undo),
            lambda: self.attempt(session.redo),
            lambda: self.attempt(session.setTime, self.pick(*NUMBERS)),
            lambda: self.attempt(session.setCollapsed, self.oneIn(2)),
            lambda: self.attempt(session.setBoxesShown, self.oneIn(2)),
            lambda: self.attempt(session.getBounds),
            lambda: self.attempt(session.getLocations),
            lambda: self.attempt(session.setProxiesShown, self.oneIn(2)),
            lambda: self.attempt(session.commitEdits, [
                (self.pick(*PATHS), self.pick("bound", "xform.a.translate", "b" * 100000),
                 self.attribute()) for _ in range(3)], [self.pick(*PATHS)]),
            lambda: self.attempt(session.importModel, __file__),
            lambda: self.addView(session),
            lambda: self.oneIn(4) and self.close(session))()

    def close(self, session):
        self.sessions.remove(session)
        self.attempt(session.close)

    def useScene(self):
        """Ops of all arguments and inputs, themselves among these."""
        op = self.pick(*self.ops + [-1, 0, 2 ** 31 - 1])
        inputs = [self.pick(*self.ops + [-1]) for _ in range(self.pick(0, 1, 2))]
        kind = self.pick("Scene.Literal", "Scene.Edit", "Scene.Merge", "WorkingSet.Prune",
                         "WorkingSet.MultipleOnePassResolve", "HierarchyCollapse", "no-op",
                         "Scene.Generate", "Geometry.Import", "nothing")
        args = self.pick(None, self.location(), GroupAttribute(
            ("staticScene.a", self.attribute()), ("staticScene.c.a", self.attribute()),
            ("edits.a", self.attribute()), ("edits.c.a.a", self.attribute()),
            ("leafCount", IntAttribute(self.pick(-2 ** 31, -1, 0, 3, 150))),
            ("withGeometry", self.integers(1)), ("filePath", self.attribute()),
            ("workingSetsInfo.a.include", self.attribute()), ("outputGroupName", self.attribute()),
            ("groupName", self.attribute())))
        if self.oneIn(2):
            made = self.attempt(PyScenelib.createOp, kind, args, inputs)
            if made is not None:
                self.ops.append(made)
                if self.sessions:
                    self.attempt(self.pick(*self.sessions).addOp, made)
        else:
            self.pick(lambda: self.attempt(PyScenelib.setOpArgs, op, kind, args),
                      lambda: self.attempt(PyScenelib.setOpInputs, op, inputs),
                      lambda: self.attempt(PyScenelib.recookLocation, op, self.pick(*PATHS)),
                      PyScenelib.flushCaches)()

    def useLibraries(self):
        """What the modules offer that stand below the viewer."""
        junk = self.pick(None, "text", -1, 1.5, 2 ** 70, [], [1, "x"], object(), self.attribute())
        name = self.pick("a", "xform.a", "", ".", "a..b", "a" * 1000)
        number, group, builder = self.pick(*INTEGERS), self.location(), GroupBuilder()
        numbers = DoubleAttribute(self.numbers(0, 3, 6), self.pick(1, 3))
        kind = self.pick(IntAttribute, FloatAttribute, DoubleAttribute, StringAttribute,
                         GroupAttribute)
        transaction = PyScenelib.Transaction()
        for function, arguments in (
                (kind, (junk,)), (kind, (junk, number)), (kind, ([junk], number)),
                (builder.set, (name, junk)), (builder.update, (junk,)),
                (builder.deepUpdate, (group,)), (builder.delete, (name,)), (builder.build, ()),
                (group.getChildByName, (name,)), (group.getChildByIndex, (number,)),
                (group.getChildName, (number,)), (numbers.getNearestSample, (number,)),
                (numbers.getNearestSample, (self.pick(*NUMBERS),)),
                (numbers.getSampleTime, (number,)), (numbers.__getitem__, (number,)),
                (transaction.createOp, (name, junk, junk)),
                (transaction.setOpArgs, (number, "Scene.Edit", group)),
                (transaction.setOpInputs, (number, [number])),
                (transaction.recookLocation, (number, name)), (transaction.commit, ()),
                (PyScenelib.isCommitCooked, (number,)),
                (PyScenelib.waitUntilIdle, (self.pick(None, "x", -1, 0.01),)),
                (PyWindowSystem.createOffscreen, (number, self.pick(*INTEGERS))),
                (PyWindowSystem.readPixels, (number,)),
                (PyWindowSystem.destroyOffscreen, (abs(number),)),
                (PyVlPluginSystem.loadLibrary, (self.pick(__file__, name),)),
                (PyVlPluginSystem.getPluginNames, (name, number)),
                (ViewerAPI.GenerateOptionId, (junk,)), (ViewerAPI.LookUpOptionId, (number,)),
                (ViewerAPI.CreateViewerDelegate, (name,))):
            if self.oneIn(3):
                self.attempt(function, *arguments)

    def callMethod(self):
        """A method of one of the types, with arguments as its signature has them, or others."""
        if not self.wrappers:
            return
        target = self.pick(*self.wrappers)
        name = self.pick(*[name for name in dir(target) if not name.startswith("_")])
        if name in RARE and not self.oneIn(6):
            return
        method = getattr(target, name)
        parameters = SIGNATURES.get(name) or [
            each.strip(" []") for each in
            re.match(r"\w+\((.*?)\)( ->|$)", method.__doc__.split("\n")[0].replace(
                "list(str)", "list")).group(1).split(",") if each.strip()]
        arguments = [self.argument(name, parameter) for parameter in parameters]
        if arguments and arguments[0] is None and name in ("setActiveCamera",
                                                           "setLookThroughLocation"):
            return  # what takes only the one type, and does not look
        result = self.attempt(method, *arguments)
        if type(result) in TYPES:
            self.wrappers = self.wrappers[-30:] + [result]

    def argument(self, method, parameter):
        kind = parameter.split()[0]
        if kind in ("Viewport", "ViewportCamera"):
            return self.pick(*[each for each in self.wrappers if type(each).__name__ == kind] or
                             [None])
        if self.oneIn(15):
            return self.pick(None, "text", 5, self.attribute())
        if kind == "str":
            return self.pick(*(PLUGINS[method] if parameter == "str pluginName" and
                               method in PLUGINS else OPTIONS if "Option" in method
                               else CHANNELS if "allback" in method
                               else PATHS if "ocation" in parameter else NAMES))
        if kind == "list":
            return [self.pick(*PATHS) for _ in range(self.pick(0, 1, 2))]
        if kind == "long":
            return ViewerAPI.GenerateOptionId(self.pick(*OPTIONS))
        if kind in ("double", "float"):
            return self.pick(*NUMBERS)
        if kind == "matrix":
            return self.numbers(16)
        if kind.startswith("call"):
            return self.pick(self.beCalled, self.beCalled, len, None)
        if method == "event":
            return self.event()
        if kind in ("GroupAttribute", "Attribute"):
            return self.location() if kind[0] == "G" or self.oneIn(3) else self.attribute()
        if method in ("resize", "setViewportDimensions"):
            return self.pick(-2 ** 31, -1, 0, 1, 30, 30, 300, 300, 20000, 2 ** 31 - 1)
        if method == "setup":
            return self.pick(0, -1, 2 ** 31 - 1)
        return self.pick(*INTEGERS)


class RandomSessionTest(unittest.TestCase):
    def setUp(self):
        stderr, sys.stderr = sys.stderr, StringIO()
        self.addCleanup(setattr, sys, "stderr", stderr)
        self.addCleanup(PyVlLogging.setSink, PyVlLogging.getSink())
        PyVlLogging.setSink(lambda *arguments: None)

    def testNothingThatAScriptDoesEndsTheProcess(self):
        for seed in range(SEED, SEED + COUNT):
            script = Script(seed)
            try:
                for _ in range(STEPS):
                    script.step()
                while script.sessions:
                    script.close(script.pick(*script.sessions))
            except SystemError as error:
                self.fail("seed %d: %s, after\n%s" % (seed, error, "\n".join(script.trace[-12:])))
            del script
            gc.collect()
            self.assertASessionShowsItsScene()

    def assertASessionShowsItsScene(self):
        with ostrel.Session() as session:
            session.createOp("Scene.Generate", GroupAttribute(
                ("leafCount", IntAttribute(1)), ("withGeometry", IntAttribute(1))))
            view = session.addOffscreenView(WIDTH, HEIGHT)
            self.assertTrue(session.pump(timeout=60))
            view.frame()
            self.assertNotEqual([], view.pick(WIDTH // 2, HEIGHT // 2))


if __name__ == "__main__":
    unittest.main()
