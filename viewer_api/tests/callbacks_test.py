"""Channels: the dict of callbacks, what a dispatch passes and returns, and how it fails."""

import gc
import sys
import unittest

from scripted import DELEGATE, IS_PYTHON_3, ScriptedTest, ViewerAPI, errorOf
import ScriptedPlugins
import ScriptedScene
from PyVlAttribute import (DoubleAttribute, FloatAttribute, GroupAttribute, IntAttribute,
                           StringAttribute)

REGISTER_TEXT = ("Arguments must be a string representing the callback type, and a callable "
                 "object.")
UNREGISTER_TEXT = "Arguments must be a string representing the callback type."


def raises(error):
    def callback(_):
        raise error
    return callback


class RegistrationTest(ScriptedTest):
    def setUp(self):
        ScriptedTest.setUp(self)
        self.createDelegate()

    def testRegisterGivesTheFormerCallback(self):
        first, second = lambda _: 1, lambda _: 2
        self.assertIsNone(self.delegate.registerCallback("x", first))
        self.assertIs(first, self.delegate.registerCallback("x", second))
        self.assertIs(second, self.delegate.registerCallback("x", first))

    def testANameThatIsNoStrIsRefused(self):
        foreign = b"x" if IS_PYTHON_3 else u"x"
        for name in (foreign, 1, None):
            self.assertError(TypeError, REGISTER_TEXT, self.delegate.registerCallback, name, len)
            self.assertError(TypeError, UNREGISTER_TEXT, self.delegate.unregisterCallback, name)
        self.assertIsNone(self.delegate.registerCallback("x", len), "the dict has not changed")

    def testWrongNumbersOfArgumentsHaveTheSameTexts(self):
        for method, arguments, text in (
                ("registerCallback", ("x",), REGISTER_TEXT),
                ("registerCallback", ("x", len, 1), REGISTER_TEXT),
                ("unregisterCallback", (), UNREGISTER_TEXT),
                ("setSelectionCallbacks", (len,), "Arguments must be two callable object."),
                ("setSelectionCallbacks", (), "Arguments must be two callable object."),
                ("setActiveManipulatorsChangedCallback", (), "Argument must be a callable "
                                                             "object."),
                ("setActiveManipulatorsChangedCallback", (1, 2), "Argument must be a callable "
                                                                 "object.")):
            self.assertError(TypeError, text, getattr(self.delegate, method), *arguments)

    def testWhatIsNotCallableIsTaken(self):
        self.assertIsNone(self.delegate.registerCallback("x", 5))
        self.assertEqual(5, self.delegate.registerCallback("x", None))
        self.delegate.setSelectionCallbacks(1, 2)
        self.delegate.setActiveManipulatorsChangedCallback(3)
        for name, value in (("__SELECT_LOCATIONS", 1), ("__GET_SELECTED_LOCATIONS", 2),
                            ("__ACTIVE_MANIPULATORS_CHANGED", 3)):
            self.assertEqual(value, self.delegate.registerCallback(name, None))

    def testUnregisteringWhatIsNotThereIsNoError(self):
        self.assertIsNone(self.delegate.unregisterCallback("never"))

    def testUnregisterTakesOneAway(self):
        self.delegate.registerCallback("x", len)
        self.delegate.registerCallback("y", len)
        self.delegate.unregisterCallback("x")
        self.assertIsNone(self.delegate.registerCallback("x", len))
        self.assertIs(len, self.delegate.registerCallback("y", len))

    def testUnregisterAllTakesAllAwayAndIgnoresArguments(self):
        self.delegate.registerCallback("x", len)
        self.assertIsNone(self.delegate.unregisterAllCallbacks(1, 2))
        self.assertIsNone(self.delegate.registerCallback("x", len))

    def testCleanupTakesAllAway(self):
        self.delegate.registerCallback("x", len)
        self.delegate.cleanup()
        self.assertIsNone(self.delegate.registerCallback("x", len))

    def testCleanupClearsTheCallbacksBeforeThePluginHearsOfIt(self):
        fired = []
        self.delegate.registerCallback("x", fired.append)
        host = self.host()
        self.plugins.answers[DELEGATE, "cleanup"] = (
            lambda _: ScriptedPlugins.callPythonCallback(host, "x", None))
        self.delegate.cleanup()
        self.assertEqual([], fired)

    def testCallbacksAreReleasedWithTheDelegate(self):
        callback = lambda _: None
        before = sys.getrefcount(callback)
        self.delegate.registerCallback("x", callback)
        self.delegate.registerCallback("x", callback)
        self.delegate.setSelectionCallbacks(callback, callback)
        self.assertEqual(before + 3, sys.getrefcount(callback))
        self.delegate = None
        self.assertEqual(before, sys.getrefcount(callback))


class DispatchTest(ScriptedTest):
    def setUp(self):
        ScriptedTest.setUp(self)
        self.createDelegate()

    def fire(self, value=None, channel="x"):
        return ScriptedPlugins.callPythonCallback(self.host(), channel, value)

    def answerOf(self, answer):
        self.delegate.registerCallback("x", lambda _: answer)
        return self.fire()

    def testTheCallbackGetsTheOneAttribute(self):
        got = []
        self.delegate.registerCallback("x", lambda *arguments: got.append(arguments))
        value = GroupAttribute(("a", IntAttribute(1)))
        self.fire(value)
        self.fire(None)
        self.assertEqual([(value,), (None,)], got)

    def testAnUnregisteredChannelIsSilent(self):
        self.assertIsNone(self.fire(IntAttribute(1), "nobody"))

    def testResultsBecomeAttributes(self):
        class Number(int):
            pass

        class Real(float):
            pass

        class Text(str):
            pass

        for result, attribute in (
                (None, None),
                (1, IntAttribute(1)),
                (-2 ** 31, IntAttribute(-2 ** 31)),
                (True, IntAttribute(1)),
                (False, IntAttribute(0)),
                (Number(5), IntAttribute(5)),
                (1.5, FloatAttribute(1.5)),
                (Real(2.5), FloatAttribute(2.5)),
                (0.1, FloatAttribute(0.1)),
                ("text", StringAttribute("text")),
                ("", StringAttribute("")),
                (Text("more"), StringAttribute("more")),
                # Anything else is null without a report.
                (10 ** 20, None),
                ([1], None),
                ({}, None),
                ((), None),
                (b"bytes" if IS_PYTHON_3 else u"unicode", None),
                (object(), None)):
            self.assertEqual(attribute, self.answerOf(result), repr(result))
        self.assertEqual("", self.takePrinted())

    def testIntegersBeyond32Bits(self):
        # Python 2's int is narrowed. Python 3 has but one integer type, of which the larger
        # values stand where Python 2's long does.
        self.assertEqual(None if IS_PYTHON_3 else IntAttribute(-2 ** 31),
                         self.answerOf(2 ** 31))
        self.assertEqual(None if IS_PYTHON_3 else IntAttribute(7),
                         self.answerOf(2 ** 40 + 7))

    @unittest.skipIf(IS_PYTHON_3, "Python 3 has no long")
    def testALongIsNoIntegerHoweverSmall(self):
        self.assertIsNone(self.answerOf(eval("1L")))

    def testAnAttributeIsReturnedUnchanged(self):
        for attribute in (IntAttribute([1, 2, 3]), DoubleAttribute(0.1), StringAttribute("s"),
                          GroupAttribute(("a", FloatAttribute(1.5)))):
            self.assertEqual(attribute, self.answerOf(attribute))

    def testTextThatIsNoUtf8PassesBothWays(self):
        name = "caf\udce9" if IS_PYTHON_3 else "caf\xe9"
        got = []
        self.delegate.registerCallback(name, lambda value: got.append(value) or name)
        self.assertEqual(StringAttribute(name), self.fire(StringAttribute(name), name))
        self.assertEqual([StringAttribute(name)], got)

    @unittest.skipUnless(IS_PYTHON_3, "Python 2's text is bytes")
    def testTextThatNoBytesStandForIsNull(self):
        self.assertIsNone(self.answerOf("\ud800"))
        self.assertIsNone(errorOf(self.fire))

    def testADispatchLeavesNoReferenceBehind(self):
        value = GroupAttribute(("a", IntAttribute(1)))
        got = []
        self.delegate.registerCallback("x", got.append)
        for _ in range(3):
            self.fire(value)
        self.assertEqual([2 + 1] * 3, [sys.getrefcount(item) for item in got])

    def testACallbackMayTakeItselfAway(self):
        def callback(_):
            self.delegate.unregisterAllCallbacks()
            gc.collect()
            return 4

        self.delegate.registerCallback("x", callback)
        del callback
        self.assertEqual(IntAttribute(4), self.fire())
        self.assertIsNone(self.fire())

    def testAChannelFiredWhileThePluginIsCreatedIsSilent(self):
        answers = []
        self.plugins.answers[DELEGATE, "create"] = lambda host: answers.append(
            ScriptedPlugins.callPythonCallback(host, "x", IntAttribute(1)))
        ViewerAPI.CreateViewerDelegate(DELEGATE)
        self.assertEqual([None], answers)

    def testAChannelFiredWhileThePluginIsDestroyedIsSilent(self):
        fired = []
        self.delegate.registerCallback("x", fired.append)
        answers = []
        self.plugins.answers[DELEGATE, "destroy"] = lambda host: answers.append(
            ScriptedPlugins.callPythonCallback(host, "x", IntAttribute(1)))
        self.delegate = None
        self.assertEqual(([None], []), (answers, fired))


class FailureTest(ScriptedTest):
    def setUp(self):
        ScriptedTest.setUp(self)
        self.createDelegate()

    def failureOf(self, callback):
        """The text of the error that a binding raises when the plug-in fires the channel."""
        host = self.host()
        self.delegate.registerCallback("x", callback)
        self.plugins.answers[DELEGATE, "setup"] = (
            lambda _: ScriptedPlugins.callPythonCallback(host, "x", None))
        error = errorOf(self.delegate.setup)
        self.assertIs(RuntimeError, type(error), repr(error))
        return str(error)

    def testTheTextHasTypeReprAndTraceback(self):
        def inner():
            raise ValueError("x")

        def outer(_):
            inner()

        lines = self.failureOf(outer).split("\n")
        self.assertEqual(
            "<class 'ValueError'>" if IS_PYTHON_3 else "<type 'exceptions.ValueError'>", lines[0])
        self.assertEqual("ValueError('x')" if IS_PYTHON_3 else "ValueError('x',)", lines[1])
        first = inner.__code__.co_firstlineno
        fileName = inner.__code__.co_filename
        self.assertEqual(
            ['  File "%s", line %d, in outer' % (fileName, first + 4),
             '  File "%s", line %d, in inner' % (fileName, first + 1), ""], lines[2:])

    def testNothingIsPrinted(self):
        self.failureOf(raises(ValueError("x")))
        self.assertEqual("", self.takePrinted())

    def testTheCallbackStaysRegistered(self):
        callback = raises(ValueError("x"))
        self.failureOf(callback)
        self.assertIs(callback, self.delegate.registerCallback("x", None))

    def testWhatIsNotCallableFailsAtDispatch(self):
        text = self.failureOf(5)
        self.assertIn("TypeError(", text)
        self.assertIn("'int' object is not callable", text)
        self.assertNotIn("File", text)

    def testACallbackWithoutParametersFails(self):
        self.assertIn("TypeError(", self.failureOf(lambda: None))

    def testAFileNameLongerThan500CharactersIsCut(self):
        name = "/long/" + "n" * 600 + ".py"
        scope = {}
        exec(compile("def callback(_):\n    raise ValueError('x')\n", name, "exec"), scope)
        lines = self.failureOf(scope["callback"]).split("\n")
        self.assertEqual('  File "%s", line 2, in callback' % name[:500], lines[2])

    def testAFunctionNameLongerThan500CharactersIsCut(self):
        scope = {}
        name = "f" * 700
        exec(compile("def %s(_):\n    raise ValueError('x')\n" % name, "f.py", "exec"), scope)
        lines = self.failureOf(scope[name]).split("\n")
        self.assertEqual('  File "f.py", line 2, in ' + name[:500], lines[2])

    def testAReprThatRaisesDoesNotHideTheError(self):
        class Unspeakable(Exception):
            def __repr__(self):
                raise KeyError("repr")

            __str__ = __repr__

        lines = self.failureOf(raises(Unspeakable())).split("\n")
        self.assertIn("Unspeakable", lines[0])
        self.assertEqual("<no description>", lines[1])
        self.assertTrue(lines[2].startswith("  File"), lines[2])

    def testATypeWhoseStrRaisesDoesNotHideTheError(self):
        class Meta(type):
            def __str__(cls):
                raise KeyError("str")

            __repr__ = __str__

        error = Meta("Hidden", (Exception,), {})("text")
        lines = self.failureOf(raises(error)).split("\n")
        self.assertEqual("<no description>", lines[0])
        self.assertTrue(lines[1].startswith("Hidden('text'"), lines[1])

    def testAReprThatIsNoUtf8IsPassedOn(self):
        text = "caf\udce9" if IS_PYTHON_3 else "caf\xe9"

        class Odd(Exception):
            def __repr__(self):
                return text

        self.assertEqual(text, self.failureOf(raises(Odd())).split("\n")[1])

    def testItSurfacesUnderProcessLocationEvents(self):
        self.delegate.registerCallback("__SELECTED_ENABLED_LOCATIONS_CHANGED",
                                       raises(ValueError("x")))
        ScriptedScene.report(self.firstClient, "/root")
        error = errorOf(self.delegate.processLocationEvents)
        self.assertIs(RuntimeError, type(error))
        self.assertIn("ValueError('x')" if IS_PYTHON_3 else "ValueError('x',)", str(error))
        self.assertTrue([line for line in str(error).split("\n") if line.startswith("  File")])

    def testItSurfacesUnderAViewportsMethod(self):
        viewport = self.createViewport()
        self.delegate.registerCallback("__VIEWPORT_VIEW_FROZEN_STATE_CHANGED",
                                       raises(ValueError("x")))
        error = errorOf(viewport.setViewFrozen, True)
        self.assertIs(RuntimeError, type(error))
        self.assertIn("ValueError('x'", str(error))

    def testACallbackMayRaiseWhatIsNoException(self):
        class Stop(BaseException):
            pass

        self.assertIn("Stop(", self.failureOf(raises(Stop("now"))))

    def testFailuresLeakNothing(self):
        callback = raises(ValueError("x"))
        self.failureOf(callback)
        before = sys.getrefcount(callback), sys.getrefcount(ValueError)
        for _ in range(200):
            self.failureOf(callback)
        gc.collect()
        after = sys.getrefcount(callback), sys.getrefcount(ValueError)
        self.assertLess(after[0] - before[0], 10)
        self.assertLess(after[1] - before[1], 10)


class ChannelTest(ScriptedTest):
    def setUp(self):
        ScriptedTest.setUp(self)
        self.createDelegate()

    def testSelectLocationFiresOnePath(self):
        selected = []
        self.delegate.setSelectionCallbacks(selected.append, None)
        ScriptedPlugins.selectLocation(self.host(), "/root/a")
        ScriptedPlugins.selectLocations(self.host(), ["/root/a", "/root/b"])
        self.assertEqual([StringAttribute("/root/a"), StringAttribute(["/root/a", "/root/b"])],
                         selected)
        self.assertEqual(1, selected[1].getTupleSize())

    def testAfterUnregisterASelectFromAPluginDoesNothing(self):
        selected = []
        self.delegate.setSelectionCallbacks(selected.append, None)
        self.delegate.unregisterCallback("__SELECT_LOCATIONS")
        ScriptedPlugins.selectLocation(self.host(), "/root/a")
        self.assertEqual([], selected)

    def testGetSelectedLocationsTakesStringsOnly(self):
        for answer, selected in ((StringAttribute(["/a", "/b"]), StringAttribute(["/a", "/b"])),
                                 ("/a", StringAttribute("/a")), (1, None), (None, None),
                                 (GroupAttribute(), None)):
            got = []
            self.delegate.setSelectionCallbacks(None,
                                                lambda value: got.append(value) or answer)
            self.assertEqual(selected, ScriptedPlugins.getSelectedLocations(self.host()))
            self.assertEqual([None], got)

    def testTheViewFrozenChannelTellsOfChangesOnly(self):
        viewport = self.createViewport("left")
        told = []
        self.delegate.registerCallback("__VIEWPORT_VIEW_FROZEN_STATE_CHANGED", told.append)
        for frozen in (True, True, False, False):
            viewport.setViewFrozen(frozen)
            self.assertIs(frozen, viewport.isViewFrozen())
        self.assertEqual(
            [GroupAttribute(("viewport", StringAttribute("left")),
                            ("isViewFrozen", IntAttribute(value))) for value in (1, 0)], told)

    def testThePumpTellsThatItDelivered(self):
        told = []
        self.delegate.registerCallback("__SELECTED_ENABLED_LOCATIONS_CHANGED", told.append)
        self.delegate.processLocationEvents()
        self.assertEqual([], told)
        ScriptedScene.report(self.firstClient, "/root")
        self.delegate.processLocationEvents()
        self.assertEqual([None], told)


if __name__ == "__main__":
    unittest.main()
