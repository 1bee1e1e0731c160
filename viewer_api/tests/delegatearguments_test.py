"""Every method of the type ViewerDelegate with good arguments, and with every bad one."""

import unittest

from argumentkinds import (ANYTHING, NO_ATTRIBUTE, NO_CHANNEL, NO_GROUP, NO_INT, NO_LIST_OF_TEXT,
                           NO_OPTION_ID, NO_TEXT, Of)
from scripted import (COMPONENT, DELEGATE, IS_PYTHON_3, ScriptedTest, VIEWPORT, ViewerAPI, errorOf)
import ScriptedScene
from PyVlAttribute import DoubleAttribute, GroupAttribute, IntAttribute, StringAttribute

ATTRIBUTES = GroupAttribute(("type", StringAttribute("group")))
BOX = DoubleAttribute([0.0, 1.0, 0.0, 1.0, 0.0, 1.0])

# As an argument: the viewport "v" of the delegate.
THE_VIEWPORT = object()

# ---- The methods: their parameters, good arguments and what these give. The delegate has a
# component "k" and a viewport "v", and was told of "/root".

ROWS = (
    ("addComponent", (NO_TEXT, NO_TEXT), (COMPONENT, "n"), Of(ViewerAPI.ViewerDelegateComponent)),
    ("insertComponent", (NO_TEXT, NO_TEXT, NO_INT), (COMPONENT, "n", 0),
     Of(ViewerAPI.ViewerDelegateComponent)),
    ("removeComponent", (NO_TEXT,), ("k",), None),
    ("removeComponentByIndex", (NO_INT,), (0,), None),
    ("getNumberOfComponents", (), (), 1),
    ("getComponent", (NO_TEXT,), ("k",), Of(ViewerAPI.ViewerDelegateComponent)),
    ("getComponentByIndex", (NO_INT,), (0,), Of(ViewerAPI.ViewerDelegateComponent)),
    ("getComponentName", (NO_INT,), (0,), "k"),
    ("getComponentIndex", (NO_TEXT,), ("k",), 0),
    ("addViewport", (NO_TEXT, NO_TEXT), (VIEWPORT, "n"), Of(ViewerAPI.Viewport)),
    ("getViewport", (NO_TEXT,), ("v",), Of(ViewerAPI.Viewport)),
    ("getViewportByIndex", (NO_INT,), (0,), Of(ViewerAPI.Viewport)),
    ("removeViewport", (NO_TEXT,), ("v",), None),
    ("removeViewportByIndex", (NO_INT,), (0,), None),
    ("getNumberOfViewports", (), (), 1),
    ("getViewportName", (NO_INT,), (0,), "v"),
    ("openLocations", (NO_LIST_OF_TEXT,), (["/root"],), None),
    ("closeLocations", (NO_LIST_OF_TEXT,), (["/root"],), None),
    ("pinLocations", (NO_LIST_OF_TEXT,), (["/root"],), None),
    ("unpinLocations", (NO_LIST_OF_TEXT,), (["/root"],), None),
    ("setLookThroughLocation", (ANYTHING, NO_TEXT), (THE_VIEWPORT, "/root"), None),
    ("setWorkingSetVisibilityEnabled", (NO_INT,), (True,), None),
    ("getWorkingSetVisibilityEnabled", (), (), False),
    ("setVisibilityWorkingSet", (NO_GROUP,), (GroupAttribute(),), None),
    ("setViewOp", (NO_INT,), (1,), None),
    ("setManipulationFreezePeriod", (NO_INT,), (250,), None),
    ("isFrozenDueToManipulation", (), (), False),
    ("processLocationEvents", (), (), None),
    ("isProcessing", (), (), False),
    ("getAttributes", (NO_TEXT, NO_INT), ("/root", 0), ATTRIBUTES),
    ("getLiveAttributes", (NO_TEXT, NO_INT), ("/root", 0), None),
    ("getCookedAttributes", (NO_TEXT, NO_INT), ("/root", 0), ATTRIBUTES),
    ("setSystemArgs", (NO_GROUP,), (GroupAttribute(),), None),
    ("setOption", (NO_OPTION_ID, NO_ATTRIBUTE), (7, IntAttribute(1)), None),
    ("setOptionByName", (NO_TEXT, NO_ATTRIBUTE), ("o", IntAttribute(1)), None),
    ("getOption", (NO_OPTION_ID,), (7,), IntAttribute(5)),
    ("getOptionByName", (NO_TEXT,), ("o",), IntAttribute(5)),
    ("freeze", (), (), None),
    ("thaw", (), (), None),
    ("flushCaches", (), (), None),
    ("getCompatibleManipulatorsInfo", (NO_LIST_OF_TEXT,), (["/root"],), GroupAttribute()),
    ("getRegisteredManipulatorsInfo", (), (), GroupAttribute()),
    ("registerCallback", (NO_CHANNEL, ANYTHING), ("x", len), None),
    ("unregisterCallback", (NO_CHANNEL,), ("x",), None),
    ("unregisterAllCallbacks", (), (), None),
    ("setSelectedLocations", (NO_LIST_OF_TEXT,), (["/root"],), None),
    ("setSelectionCallbacks", (ANYTHING, ANYTHING), (len, len), None),
    ("setActiveManipulatorsChangedCallback", (ANYTHING,), (len,), None),
    ("setBoundingBoxesEnabled", (NO_INT,), (True,), None),
    ("setProxyGeometryEnabled", (NO_INT,), (True,), None),
    ("setup", (), (), None),
    ("cleanup", (), (), None),
    ("getBounds", (NO_TEXT,), ("/root",), BOX),
    ("computeExtent", (NO_TEXT,), ("/root",), BOX),
    ("computeMergedExtent", (NO_LIST_OF_TEXT, NO_TEXT), (["/root"], ""), BOX),
    ("hideLocations", (NO_LIST_OF_TEXT,), (["/root"],), None),
    ("unhideAllLocations", (), (), None),
)

# How many of the last parameters may be left out.
OPTIONAL = {"getAttributes": 1, "getLiveAttributes": 1, "getCookedAttributes": 1,
            "computeMergedExtent": 1}
# These parse nothing, and so take whatever they get.
PARSE_NOTHING = ("getRegisteredManipulatorsInfo", "unregisterAllCallbacks")

NO_SEQUENCE = "Argument must be a sequence of strings."
# Whatever is wrong with the arguments of these has one text.
TEXTS = {
    "openLocations": NO_SEQUENCE,
    "closeLocations": NO_SEQUENCE,
    "pinLocations": NO_SEQUENCE,
    "unpinLocations": NO_SEQUENCE,
    "getCompatibleManipulatorsInfo": NO_SEQUENCE,
    "setSelectedLocations": NO_SEQUENCE,
    "computeMergedExtent": NO_SEQUENCE,
    "hideLocations": "Argument must be a list of strings.",
    "registerCallback": "Arguments must be a string representing the callback type, and a "
                        "callable object.",
    "unregisterCallback": "Arguments must be a string representing the callback type.",
    "setSelectionCallbacks": "Arguments must be two callable object.",
    "setActiveManipulatorsChangedCallback": "Argument must be a callable object.",
}


class PreparedTest(ScriptedTest):
    def setUp(self):
        ScriptedTest.setUp(self)
        self.prepare()

    def tearDown(self):
        self.viewport = None
        ScriptedTest.tearDown(self)

    def prepare(self):
        self.createDelegate()
        self.delegate.addComponent(COMPONENT, "k")
        self.viewport = self.delegate.addViewport(VIEWPORT, "v")
        ScriptedScene.report(self.firstClient, "/root", ATTRIBUTES)
        self.delegate.processLocationEvents()
        self.plugins.answers.update({(DELEGATE, "getOption"): IntAttribute(5),
                                     (DELEGATE, "getBounds"): BOX,
                                     (DELEGATE, "computeExtent"): BOX})
        self.forgetCalls()

    def call(self, method, arguments):
        """The result of a call."""
        return getattr(self.delegate, method)(*[
            self.viewport if argument is THE_VIEWPORT else argument for argument in arguments])

    def forgetCalls(self):
        self.plugins.take()
        ScriptedScene.takeCommands()
        if self.bridge:
            del self.bridge.calls[:]

    def assertNothingWasDone(self, call):
        done = self.plugins.take() + ScriptedScene.takeCommands()
        self.assertEqual([], done + (self.bridge.calls if self.bridge else []), call)
        self.assertEqual((1, 1, False), (self.delegate.getNumberOfComponents(),
                                         self.delegate.getNumberOfViewports(),
                                         self.delegate.getWorkingSetVisibilityEnabled()), call)


class EveryMethodTest(PreparedTest):
    def assertRefused(self, method, arguments, expected=TypeError):
        """The call raises this kind, or a TypeError of this text, and does nothing."""
        error = errorOf(self.call, method, arguments)
        call = "%s%r: %r" % (method, arguments, error)
        text = TEXTS.get(method, expected if isinstance(expected, str) else None)
        self.assertIs(TypeError if text else expected, type(error), call)
        if text:
            self.assertEqual(text, str(error), call)
        self.assertNothingWasDone(call)

    def testEveryMethodHasARow(self):
        offered = [name for name in vars(ViewerAPI.ViewerDelegate) if not name.startswith("__")]
        self.assertEqual(sorted(offered), sorted(row[0] for row in ROWS))

    def testGoodArguments(self):
        for method, _, arguments, expected in ROWS:
            self.prepare()
            result = self.call(method, arguments)
            if isinstance(expected, Of):
                self.assertIs(expected.kind, type(result), method)
            else:
                self.assertEqual(expected, result, method)
                if expected is None or isinstance(expected, bool):
                    self.assertIs(expected, result, method)

    def testEveryBadValueOfEveryParameter(self):
        for method, parameters, arguments, _ in ROWS:
            for place, refused in enumerate(parameters):
                for value, expected in refused:
                    bad = arguments[:place] + (value,) + arguments[place + 1:]
                    self.assertRefused(method, bad, expected)

    def testTooFewArguments(self):
        for method, parameters, arguments, _ in ROWS:
            for count in range(len(parameters) - OPTIONAL.get(method, 0)):
                self.assertRefused(method, arguments[:count])

    def testOptionalArgumentsMayBeLeftOut(self):
        for method, count in OPTIONAL.items():
            arguments, expected = [row[2:] for row in ROWS if row[0] == method][0]
            self.assertEqual(expected, self.call(method, arguments[:-count]), method)

    def testTooManyArguments(self):
        for method, _, arguments, _ in ROWS:
            if method not in PARSE_NOTHING:
                self.assertRefused(method, arguments + (None,))

    def testMethodsThatParseNothingTakeAnything(self):
        for method in PARSE_NOTHING:
            function = getattr(self.delegate, method)
            self.assertEqual(function(), function(1, None, "x"), method)

    def testNoMethodTakesKeywords(self):
        for row in ROWS:
            self.assertRaises(TypeError, getattr(self.delegate, row[0]), name=1)
            self.assertNothingWasDone(row[0])


class TextArgumentTest(PreparedTest):
    """What text may be, beyond the plain."""

    def testSubclassesOfStr(self):
        class Name(str):
            pass

        self.assertEqual(0, self.delegate.getComponentIndex(Name("k")))
        self.delegate.setSelectedLocations([Name("/root")])
        self.assertIn((DELEGATE, "locationsSelected", ["/root"]), self.plugins.take())

    @unittest.skipIf(IS_PYTHON_3, "Python 3 has no other text")
    def testPython2TakesUnicodeOfAsciiOutsideLists(self):
        self.assertEqual(0, self.delegate.getComponentIndex(u"k"))

    def testNamesThatAreNoUtf8ComeBackUnchanged(self):
        name = "caf\udce9" if IS_PYTHON_3 else "caf\xe9"
        self.delegate.addComponent(COMPONENT, name)
        self.delegate.addViewport(VIEWPORT, name)
        self.assertEqual((name, name, 1), (self.delegate.getComponentName(1),
                                           self.delegate.getViewportName(1),
                                           self.delegate.getComponentIndex(name)))
        self.assertEqual(name, self.delegate.getViewport(name).getName())
        self.delegate.removeViewport(name)
        self.delegate.removeComponent(name)
        self.assertEqual((1, 1), (self.delegate.getNumberOfComponents(),
                                  self.delegate.getNumberOfViewports()))

    def testNamesOfOtherScripts(self):
        name = "\u30d3\u30e5\u30fc" if IS_PYTHON_3 else u"\u30d3\u30e5\u30fc".encode("utf-8")
        self.delegate.addComponent(COMPONENT, name)
        self.assertEqual(name, self.delegate.getComponentName(1))

    def testTheEmptyTextIsText(self):
        self.delegate.addComponent(COMPONENT, "")
        self.assertEqual(1, self.delegate.getComponentIndex(""))
        self.assertIsNone(self.delegate.getAttributes(""))

    def testAPathInAListEndsAtItsZero(self):
        self.delegate.setSelectedLocations(["/root\0x"])
        self.assertIn((DELEGATE, "locationsSelected", ["/root"]), self.plugins.take())


class ListArgumentTest(PreparedTest):
    """What a list may be, beyond the plain."""

    def testSubclassesOfList(self):
        class Paths(list):
            def __iter__(self):
                raise AssertionError("walked by the list's own items")

            __len__ = __getitem__ = __iter__

        self.delegate.setSelectedLocations(Paths(["/root"]))
        self.assertIn((DELEGATE, "locationsSelected", ["/root"]), self.plugins.take())

    def testEmptyLists(self):
        for method, parameters, _, _ in ROWS:
            if parameters and parameters[0] is NO_LIST_OF_TEXT:
                self.assertIsNone(errorOf(getattr(self.delegate, method), []), method)

    def testAPathMayStandTwice(self):
        self.delegate.setSelectedLocations(["/root", "/root"])
        self.assertIn((DELEGATE, "locationsSelected", ["/root", "/root"]), self.plugins.take())

    def testLongLists(self):
        paths = ["/root/%d" % number for number in range(10000)]
        self.delegate.setSelectedLocations(paths)
        self.assertIn((DELEGATE, "locationsSelected", paths), self.plugins.take())


class IntegerArgumentTest(PreparedTest):
    """What an integer may be, beyond the plain."""

    def testTheLimitsOf32BitsPass(self):
        for value in (2 ** 31 - 1, -2 ** 31):
            self.assertIsNone(self.delegate.setManipulationFreezePeriod(value))
            self.assertIsNone(self.delegate.getComponentByIndex(value))
            self.assertEqual("", self.delegate.getViewportName(value))
            self.assertIsNone(self.delegate.getAttributes("/root", value))
            self.assertIsNone(self.delegate.removeViewportByIndex(value))
        self.assertNothingWasDone("the limits")

    def testAnOptionIdIsCutTo64Bits(self):
        for value, optionId in ((2 ** 64 - 1, 2 ** 64 - 1), (-1, 2 ** 64 - 1), (2 ** 64 + 5, 5),
                                (True, 1), (0, 0)):
            self.delegate.getOption(value)
            self.delegate.setOption(value, IntAttribute(1))
            self.assertEqual([(DELEGATE, "getOption", optionId),
                              (DELEGATE, "setOption", optionId, IntAttribute(1))],
                             self.plugins.take())

    def testAnIntegerMayRunCodeThatChangesTheList(self):
        class Index(object):
            def __index__(index):
                self.delegate.removeComponent("k")
                return 0

            __int__ = __index__

        self.delegate.addComponent(COMPONENT, "second")
        self.delegate.removeComponentByIndex(Index())
        self.assertEqual(0, self.delegate.getNumberOfComponents())

    def testAnIntegersErrorIsPassedOn(self):
        class Index(object):
            def __index__(index):
                raise KeyError("index")

            __int__ = __index__

        self.assertRaises(KeyError, self.delegate.removeComponentByIndex, Index())
        self.assertNothingWasDone("a failed index")


if __name__ == "__main__":
    unittest.main()
