"""A session with the real engine and the bundled plug-ins: from ops to pixels."""
import os
import shutil
import tempfile
import time
import unittest

import ostrel
import PyVlPluginSystem
import PyWindowSystem
from PyVlAttribute import (DoubleAttribute, FloatAttribute, GroupAttribute, IntAttribute,
                           StringAttribute)


def square(*others):
    """The attributes of a square of size 2 around the origin, facing z."""
    return GroupAttribute(
        ("type", StringAttribute("polymesh")),
        ("geometry.point.P", FloatAttribute([-1, -1, 0, 1, -1, 0, 1, 1, 0, -1, 1, 0], 3)),
        ("geometry.poly.vertexList", IntAttribute([0, 1, 2, 3])),
        ("geometry.poly.startIndex", IntAttribute([0, 4])),
        ("bound", DoubleAttribute([-1, 1, -1, 1, 0, 0])), *others)


def literal(path, attributes):
    """The arguments of a Scene.Literal with one location below "/root"."""
    return GroupAttribute(("staticScene.c." + path.replace("/", ".c.") + ".a", attributes))


class SessionTest(unittest.TestCase):
    def setUp(self):
        self.session = ostrel.Session()
        self.addCleanup(self.session.close)

    def add(self, path, attributes):
        return self.session.createOp("Scene.Literal", literal(path, attributes))

    def pumpUntil(self, condition):
        """Pumps what is there already, until a condition holds that comes about later."""
        deadline = time.time() + 60
        while not condition():
            self.assertLess(time.time(), deadline)
            self.assertFalse(self.session.pump(timeout=0))

    def testEveryLocationIsOpenedAndKnownAfterAPump(self):
        self.add("a/b/c/d", square())
        self.assertTrue(self.session.pump(timeout=60))
        for path in ("/root", "/root/a", "/root/a/b", "/root/a/b/c", "/root/a/b/c/d"):
            self.assertTrue(self.session.delegate.getAttributes(path) is not None, path)
        self.assertEqual(
            self.session.delegate.getAttributes("/root/a/b/c/d").getChildByName("type").getValue(),
            "polymesh")

    def testWhatIsClosedStaysClosed(self):
        self.add("a/b", square())
        self.session.pump(timeout=60)
        self.session.delegate.closeLocations(["/root/a"])
        self.session.pump(timeout=60)
        self.assertTrue(self.session.delegate.getAttributes("/root/a/b") is None)
        self.assertTrue(self.session.delegate.getAttributes("/root/a") is not None)

    def testLocationsAreThoseThatTheViewerKnows(self):
        self.assertEqual(self.session.getLocations(), [])
        self.add("b", square())
        self.add("a/c", square())
        self.session.pump(timeout=60)
        self.assertEqual(self.session.getLocations(), ["/root", "/root/a", "/root/a/c", "/root/b"])
        self.session.delegate.closeLocations(["/root/a"])
        self.session.pump(timeout=60)
        self.assertEqual(self.session.getLocations(), ["/root", "/root/a", "/root/b"])

    def testViewsHaveNamesOfTheirOwn(self):
        self.session.addOffscreenView(8, 8)
        with self.assertRaises(ValueError) as context:
            self.session.addOffscreenView(8, 8)
        self.assertEqual(str(context.exception),
                         "there is a view \"picture\" already: give this one another name")
        second = self.session.addOffscreenView(8, 8, name="second")
        self.assertEqual(second.viewport.getName(), "second")

    def testAViewThatFailsLeavesItsName(self):
        self.assertRaises(RuntimeError, self.session.addOffscreenView, 8, 8, cameraPlugin="Camra")
        self.assertEqual(self.session.addOffscreenView(8, 8).readPixels()[:2], (8, 8))

    def testAViewBringsAnOffscreenWindowToItsSize(self):
        window = PyWindowSystem.createOffscreen(8, 8)
        self.addCleanup(PyWindowSystem.destroyOffscreen, window)
        self.assertEqual(self.session.addView(window, 30, 20).readPixels()[:2], (30, 20))

    def testPicksMayReachFartherThanAnyWindow(self):
        self.add("a", square())
        self.session.pump(timeout=60)
        view = self.session.addOffscreenView(64, 48)
        view.frame()
        far = 2 ** 31 - 1
        for region in ((0, 0, far, far), (5, 5, far, far), (0, 5, 64, far), (5, 0, far, 48),
                       (-far, -far, far, far), (-far - 1, -far - 1, far, far)):
            expected = ["/root/a"] if region[0] >= 0 else []
            self.assertEqual(view.pick(*region), expected, region)

    def testOpsAreMergedAndCanBeTakenOut(self):
        first, second = self.add("a", square()), self.add("b", square())
        self.session.pump(timeout=60)
        get = self.session.delegate.getAttributes
        self.assertTrue(get("/root/a") is not None and get("/root/b") is not None)
        self.session.removeOp(first)
        self.session.pump(timeout=60)
        self.assertTrue(get("/root/a") is None and get("/root/b") is not None)
        self.session.removeOp(second)
        self.session.pump(timeout=60)
        self.assertTrue(get("/root/b") is None)

    def testBoundsAreThoseOfTheScene(self):
        self.assertTrue(self.session.getBounds() is None)
        self.add("a", square(("xform.placed.translate", DoubleAttribute([10, 0, 0], 3))))
        self.add("b", square())
        self.session.pump(timeout=60)
        self.assertEqual(self.session.getBounds(), (-1, 11, -1, 1, 0, 0))

    def testBoundsFollowEditsBelowAGroupWithBounds(self):
        self.session.createOp("Scene.Literal", GroupAttribute(
            ("staticScene.c.group.a.bound", DoubleAttribute([-1, 1, -1, 1, 0, 0])),
            ("staticScene.c.group.c.a.a", square())))
        self.session.setAttribute("/root/group/a", "xform.placed.translate",
                                  DoubleAttribute([10, 0, 0], 3))
        self.session.pump(timeout=60)
        self.assertEqual(self.session.getBounds(), (9, 11, -1, 1, 0, 0))

    def testBoundsOfLocationsWithoutGeometryAreThoseThatTheyTell(self):
        self.session.setBoxesShown(False)
        self.add("empty", GroupAttribute(("bound", DoubleAttribute([0, 1, 0, 2, 0, 3]))))
        self.session.pump(timeout=60)
        self.assertEqual(self.session.getBounds(), (0, 1, 0, 2, 0, 3))

    def testOneLocationFarOffSpoilsNoPicture(self):
        self.add("a", square())
        for exponent in (9, 15, 30, 38, 300):
            self.add("far%d" % exponent,
                     square(("xform.placed.translate", DoubleAttribute([10.0 ** exponent, 0, 0], 3))))
        self.session.pump(timeout=60)
        view = self.session.addOffscreenView(64, 48)
        view.frame((-1, 1, -1, 1, 0, 0))
        self.assertEqual(view.pick(32, 24), ["/root/a"])
        width, height, pixels = view.readPixels()
        pixels = bytearray(pixels)
        middle = 4 * (height // 2 * width + width // 2)
        self.assertNotEqual(pixels[middle:middle + 3], pixels[0:3])

    def testErrorsAreCollectedWhileTheyAreInTheScene(self):
        self.assertEqual(self.session.getErrors(), [])
        self.add("fine", square())
        failing = self.session.importModel("no such file.obj")
        self.session.pump(timeout=60)
        (path, message), = self.session.getErrors()
        self.assertTrue(path.startswith("/root/"), path)
        self.assertTrue(os.path.abspath("no such file.obj") in message, message)
        self.assertEqual(len(message.splitlines()), 1)
        self.session.removeOp(failing)
        self.session.pump(timeout=60)
        self.assertEqual(self.session.getErrors(), [])

    def testImportedModelsNameTheSessionAsTheirEditor(self):
        folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, folder)
        path = os.path.join(folder, "a.obj")
        with open(path, "w") as model:
            model.write("v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n")
        self.session.importModel(path)
        self.session.pump(timeout=60)
        owner = self.session.delegate.getAttributes("/root/a_obj").getChildByName(
            "attributeEditor.exclusiveTo")
        self.assertEqual(owner, StringAttribute(self.session.NODE))
        self.assertTrue(self.session.isNodeEditable(owner.getValue()))

    def testModelsOfOneNameGetLocationsOfTheirOwn(self):
        for folder in ("a", "b", "c"):
            self.session.importModel(folder + "/no such file.obj")
        self.session.pump(timeout=60)
        self.assertEqual([path for path, _ in self.session.getErrors()],
                         ["/root/no such file_obj", "/root/no such file_obj_2",
                          "/root/no such file_obj_3"])

    def testErrorLocationsInTheMiddleOfASceneAreCollectedInOrder(self):
        def error(text):
            return GroupAttribute(("type", StringAttribute("error")),
                                  ("errorMessage", StringAttribute(text)))

        self.add("z/deep", error("last"))
        self.add("b", error("first"))
        self.session.pump(timeout=60)
        self.assertEqual(self.session.getErrors(),
                         [("/root/b", "first"), ("/root/z/deep", "last")])
        self.session.delegate.closeLocations(["/root"])
        self.session.pump(timeout=60)
        self.assertEqual(self.session.getErrors(), [])

    def testPumpTellsItsProgressAndStopsWhenTold(self):
        op = self.session.createOp("Scene.Generate", GroupAttribute(
            ("leafCount", IntAttribute(20000)), ("withGeometry", IntAttribute(0))))
        calls = []

        def progress(elapsed):
            calls.append(elapsed)
            return len(calls) < 2

        self.assertFalse(self.session.pump(progress))
        self.assertEqual(len(calls), 2)
        self.assertTrue(0 <= calls[0] <= calls[1])
        self.assertFalse(self.session.pump(timeout=0))
        self.assertTrue(self.session.pump(lambda elapsed: None, timeout=120))
        self.session.removeOp(op)

    def testTheEndOfABlockClosesAndTakesTheWindowsAlong(self):
        with ostrel.Session() as session:
            session.addOffscreenView(8, 8).draw()
            windowId, = session._windowIds
            self.assertEqual(PyWindowSystem.readPixels(windowId)[:2], (8, 8))
        self.assertRaises(RuntimeError, session.pump)
        self.assertRaises(ValueError, PyWindowSystem.readPixels, windowId)

    def testWhatStandsForClosedLocationsIsShownAtFirst(self):
        self.assertTrue(self.session.areBoxesShown() and self.session.areProxiesShown())
        self.assertFalse(self.session.isCollapsed())

    def testAModelThatIsBeingReadIsToCome(self):
        folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, folder)
        # Reading its materials takes until somebody writes them.
        os.mkfifo(os.path.join(folder, "held.mtl"))
        with open(os.path.join(folder, "held.obj"), "w") as model:
            model.write("mtllib held.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n")
        self.assertEqual(self.session.countLocationsToCome(), 0)
        self.session.importModel(model.name)
        self.pumpUntil(lambda: self.session.countLocationsToCome() != 0)
        self.add("a", square())
        self.pumpUntil(lambda: self.session.delegate.getAttributes("/root/a") and
                       self.session.countLocationsToCome() == 1)  # the model alone
        open(os.path.join(folder, "held.mtl"), "w").close()
        self.assertTrue(self.session.pump(timeout=60))
        self.assertEqual(self.session.countLocationsToCome(), 0)
        self.assertEqual(self.session.getErrors(), [])

    def testWhatIsClosedSaysSo(self):
        op = self.add("a", square())
        self.session.setAttribute("/root/a", "x", IntAttribute(1))
        self.session.undo()
        view = self.session.addOffscreenView(8, 8)
        self.session.close()
        for call in (
                lambda: self.session.delegate, self.session.pump, self.session.getLocations,
                self.session.getErrors, self.session.getBounds, self.session.getExtent,
                self.session.undo, self.session.redo, self.session.isCollapsed, view.frame,
                lambda: self.session.importModel("a.obj"), lambda: self.session.removeOp(op),
                lambda: self.session.addOp(op), lambda: self.session.createOp("Scene.Merge"),
                lambda: self.session.setTime(2), lambda: self.session.select(["/root/a"]),
                lambda: self.session.setAttribute("/root/a", "x", IntAttribute(2)),
                lambda: self.session.commitEdits([]),
                lambda: self.session.isLocationEditable("/root/a"),
                lambda: self.session.setCollapsed(True), lambda: self.session.setBoxesShown(False),
                lambda: self.session.setProxiesShown(False),
                lambda: self.session.addOffscreenView(8, 8), lambda: view.lookThrough("/root/a")):
            with self.assertRaises(RuntimeError) as context:
                call()
            self.assertEqual(str(context.exception), "the session is closed")
        self.assertEqual(
            (self.session.getTime(), self.session.getSelection(), self.session.areBoxesShown(),
             self.session.areProxiesShown()), (0, [], True, True))
        self.assertEqual(
            (self.session.canUndo(), self.session.getEditedValue("/root/a", "x")), (False, None))

    def testASessionThatCannotBeMadeSaysWhy(self):
        with self.assertRaises(RuntimeError) as context:
            ostrel.Session("NoDelegate")
        self.assertTrue("'NoDelegate'" in str(context.exception), context.exception)

    def testClosingTwiceIsHarmless(self):
        self.session.close()
        self.session.close()

    def testPicturesShowTheSceneInTheMiddle(self):
        self.add("a", square(("material.baseColor", FloatAttribute([1, 0, 0], 3))))
        self.session.pump(timeout=60)
        for camera in ("PerspectiveCamera", "OrthographicCamera"):
            view = self.session.addOffscreenView(64, 48, camera, camera)
            view.orbit.yaw, view.orbit.pitch = 0, 0
            view.frame()
            width, height, pixels = view.readPixels()
            self.assertEqual((width, height, len(pixels)), (64, 48, 64 * 48 * 4))
            middle = bytearray(pixels)[4 * (24 * 64 + 32):][:4]
            self.assertTrue(middle[0] > 2 * middle[1] and middle[3] == 255, tuple(middle))
            corner = bytearray(pixels)[:4]
            self.assertFalse(corner[0] > 2 * corner[1], tuple(corner))

    def testViewFollowsItsSize(self):
        self.add("a", square())
        self.session.pump(timeout=60)
        view = self.session.addOffscreenView(64, 48)
        view.frame()
        view.resize(30, 50)
        self.assertEqual(view.readPixels()[:2], (30, 50))
        self.assertAlmostEqual(view.aspect, 0.6)
        for width, height in ((0, 50), (30, -1)):
            self.assertRaises(ValueError, view.resize, width, height)
            self.assertEqual((view.width, view.height), (30, 50))
            view.frame()

    def testTimeMovesWhatIsAnimated(self):
        self.session.importModel("/usr/share/assimp/models/Collada/box_nested_animation.dae")

        def scene():
            self.assertTrue(self.session.pump(timeout=60))
            return [self.session.delegate.getAttributes(path)
                    for path in self.session.getLocations()]

        first = scene()
        self.assertEqual(self.session.getTime(), 0)
        self.session.setTime(12)
        self.assertEqual(self.session.getTime(), 12)
        self.assertNotEqual(scene(), first)
        self.session.setTime(0)
        self.assertEqual(scene(), first)

    def proxied(self, *proxies):
        return GroupAttribute(*[("proxies." + name, value) for name, value in proxies])

    def testAProxyOfOpsIsShownBelowItsLocation(self):
        viewer = GroupAttribute(("load.opType", StringAttribute("Scene.Literal")),
                                ("load.opArgs", literal("b/c", square())))
        self.add("a", self.proxied(("viewer", viewer)))
        self.assertTrue(self.session.pump(timeout=60))
        get = self.session.delegate.getAttributes
        self.assertEqual(get("/root/a/__VlOst_proxy/b/c"), square())
        self.session.delegate.setProxyGeometryEnabled(False)
        self.assertTrue(self.session.pump(timeout=60))
        self.assertTrue(get("/root/a/__VlOst_proxy") is None)

    def testAProxyFileIsImported(self):
        folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, folder)
        path = os.path.join(folder, "box.obj")
        with open(path, "w") as model:
            model.write("v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n")
        self.add("a", self.proxied(("viewer", StringAttribute(path))))
        self.assertTrue(self.session.pump(timeout=60))
        self.assertEqual(self.session.getErrors(), [])
        root = self.session.delegate.getAttributes("/root/a/__VlOst_proxy/box_obj")
        self.assertTrue(root is not None)
        self.assertEqual(self.session.getBounds(), (0, 1, 0, 1, 0, 0))

    def testClosedModelsShowTheirBoxOrTheirProxy(self):
        model = "/usr/share/assimp/models/OBJ/box.obj"
        self.session.setCollapsed(True)
        self.session.importModel(model)
        self.session.importModel(model, proxy=model)
        get = self.session.delegate.getAttributes

        def shown():
            self.assertTrue(self.session.pump(timeout=60))
            self.assertEqual(self.session.getErrors(), [])
            return [name for name in ("/__VlOst_bbox", "/__VlOst_proxy/box_obj", "_2/__VlOst_bbox",
                                      "_2/__VlOst_proxy/box_obj")
                    if get("/root/box_obj" + name) is not None]
        self.assertEqual(shown(), ["/__VlOst_bbox", "_2/__VlOst_bbox", "_2/__VlOst_proxy/box_obj"])
        extent = self.session.getBounds()
        self.session.setBoxesShown(False)
        self.assertEqual(shown(), ["_2/__VlOst_proxy/box_obj"])
        self.session.setProxiesShown(False)
        self.assertEqual(shown(), [])
        self.session.setBoxesShown(True)
        self.assertEqual(shown(), ["/__VlOst_bbox", "_2/__VlOst_bbox"])
        self.session.setProxiesShown(True)
        self.assertTrue(self.session.isCollapsed())
        self.session.setCollapsed(False)
        self.assertEqual(shown(), [])
        self.assertFalse(self.session.isCollapsed())
        self.assertEqual(self.session.getBounds(), extent)
        self.session.setCollapsed(True)
        self.assertEqual(shown(), ["/__VlOst_bbox", "_2/__VlOst_bbox", "_2/__VlOst_proxy/box_obj"])

    def testProxyFilesThatCannotBeReadAreErrorsAndTheOthersStandUnharmed(self):
        folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, folder)
        for name, content in (("garbage.dae", bytearray(range(256)) * 20), ("empty.obj", b""),
                              ("letter.txt", b"Dear reader,\n")):
            with open(os.path.join(folder, name), "wb") as stream:
                stream.write(content)
        os.mkdir(os.path.join(folder, "folder.dae"))
        names = ["empty.obj", "folder.dae", "garbage.dae", "letter.txt", "missing.obj"]
        for number, name in enumerate(names):
            self.add("bad%d" % number,
                     self.proxied(("viewer", StringAttribute(os.path.join(folder, name)))))
        self.checkOthersAreUnharmed()
        errors = self.session.getErrors()
        self.assertEqual([path for path, _ in errors],
                         ["/root/bad%d/__VlOst_proxy/%s" % (number, name.replace(".", "_"))
                          for number, name in enumerate(names)])
        for (_, message), name in zip(errors, names):
            self.assertTrue(message.startswith("Can't import '%s" % os.path.join(folder, name)),
                            message)

    def checkOthersAreUnharmed(self):
        """A shape and a good proxy show, at once and at another frame."""
        viewer = GroupAttribute(("load.opType", StringAttribute("Scene.Literal")),
                                ("load.opArgs", literal("b", square())))
        self.add("good", self.proxied(("viewer", viewer)))
        self.add("shape", square())
        get = self.session.delegate.getAttributes
        for frame in (0, 1):
            self.session.setTime(frame)
            self.assertTrue(self.session.pump(timeout=60))
            self.assertEqual(get("/root/good/__VlOst_proxy/b"), square())
            self.assertEqual(get("/root/shape"), square())

    WARNING = GroupAttribute(("type", StringAttribute("warning")),
                             ("warningMessage", StringAttribute("Unable to produce proxy")))

    def testALoaderThatGivesNoOpLeavesAWarningInTheProxysPlace(self):
        answers = [None, 7, 10 ** 30, "Geometry.Import", StringAttribute("Geometry.Import"),
                   ["Geometry.Import"], {"opType": "Geometry.Import"}, object(),
                   GroupAttribute(), GroupAttribute(("opArgs.filePath", StringAttribute("a.obj"))),
                   GroupAttribute(("opType", IntAttribute(1)))]
        asked = []

        def answer(question):
            asked.append(question.getChildByName("filePath").getValue())
            return answers[int(asked[-1])]

        self.session.delegate.registerCallback("getViewerProxyLoaderOp", answer)
        for number in range(len(answers)):
            self.add("a%d" % number, self.proxied(("viewer", StringAttribute(str(number)))))
        self.checkOthersAreUnharmed()
        for number in range(len(answers)):
            proxy = "/root/a%d/__VlOst_proxy" % number
            self.assertEqual(self.session.delegate.getAttributes(proxy), self.WARNING, answers[number])
        self.assertEqual(sorted(asked, key=int), sorted(2 * [str(i) for i in range(len(answers))],
                                                        key=int), "once a frame")
        self.assertEqual(self.session.getErrors(), [])

    def testWithoutALoaderProxyFilesAreWarnings(self):
        self.session.delegate.unregisterCallback("getViewerProxyLoaderOp")
        self.add("a", self.proxied(("viewer", StringAttribute("a.obj"))))
        self.checkOthersAreUnharmed()
        self.assertEqual(self.session.delegate.getAttributes("/root/a/__VlOst_proxy"), self.WARNING)

    def testALoaderThatNamesAnUnknownOpIsAnErrorInTheProxysPlace(self):
        self.session.delegate.registerCallback(
            "getViewerProxyLoaderOp",
            lambda question: GroupAttribute(("opType", StringAttribute("No.Such"))))
        self.add("a", self.proxied(("viewer", StringAttribute("a.obj"))))
        self.checkOthersAreUnharmed()
        (path, message), = self.session.getErrors()
        self.assertEqual(path, "/root/a/__VlOst_proxy")
        self.assertTrue("No.Such" in message, message)

    def testALoaderThatRaisesIsToldByThePumpAndCostsItsOwnProxyAlone(self):
        def answer(question):
            raise ValueError("no loader for " + question.getChildByName("filePath").getValue())

        self.session.delegate.registerCallback("getViewerProxyLoaderOp", answer)
        self.add("a", self.proxied(("viewer", StringAttribute("a.obj")), ("static", IntAttribute(1))))
        with self.assertRaises(RuntimeError) as context:
            self.session.pump(timeout=60)
        self.assertTrue("no loader for a.obj" in str(context.exception), context.exception)
        self.session.delegate.unregisterCallback("getViewerProxyLoaderOp")
        self.assertTrue(self.session.pump(timeout=60))
        self.assertTrue(self.session.delegate.getAttributes("/root/a/__VlOst_proxy") is None)
        self.checkOthersAreUnharmed()

    def testProxiesFollowTheFrame(self):
        asked = []

        def answer(question):
            asked.append(question.getChildByName("frameTime").getValue(-1.0))

        self.session.delegate.registerCallback("getViewerProxyLoaderOp", answer)
        self.add("a", self.proxied(("viewer", StringAttribute("a.obj"))))
        self.add("b", self.proxied(("viewer", StringAttribute("b.obj")),
                                   ("static", IntAttribute(1))))
        self.session.pump(timeout=60)
        self.assertEqual(sorted(asked), [0.0, 1.0])
        del asked[:]
        self.session.setTime(7)
        self.session.pump(timeout=60)
        self.assertEqual(asked, [7.0])
        warning = self.session.delegate.getAttributes("/root/a/__VlOst_proxy")
        self.assertEqual(warning.getChildByName("warningMessage").getValue(""),
                         "Unable to produce proxy")


class PluginsTest(unittest.TestCase):
    def testDirectoryWithoutPluginsIsAnError(self):
        folder = os.path.dirname(os.path.abspath(__file__))
        with self.assertRaises(RuntimeError) as context:
            ostrel.loadPlugins(folder)
        self.assertEqual(str(context.exception), "no plug-ins in " + folder)

    def testPluginsAreLoadedOnce(self):
        ostrel.loadPlugins()
        names = PyVlPluginSystem.getPluginNames("ViewerDelegateComponentPlugin", 2)
        ostrel.loadPlugins()
        self.assertEqual(PyVlPluginSystem.getPluginNames("ViewerDelegateComponentPlugin", 2),
                         names)
        self.assertTrue("LocationExpander" in names and "ErrorCollector" in names, names)

    def testSessionsFollowOneAnother(self):
        for _ in range(3):
            with ostrel.Session() as session:
                session.createOp("Scene.Literal", literal("a", square()))
                self.assertTrue(session.pump(timeout=60))
                session.addOffscreenView(16, 16).draw()


if __name__ == "__main__":
    unittest.main()
