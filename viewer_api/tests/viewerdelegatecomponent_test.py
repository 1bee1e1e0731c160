"""The type ViewerDelegateComponent: four methods, of which each is one of the plug-in's options."""

import unittest

from scripted import COMPONENT, IS_PYTHON_3, ScriptedTest, ViewerAPI, errorOf
import ScriptedPlugins
from PyVlAttribute import GroupAttribute, IntAttribute

ID = ViewerAPI.GenerateOptionId("speed")
VALUE = GroupAttribute(("a", IntAttribute(1)))
NO_ATTRIBUTE = "Second argument must be an VlAttribute object"

# Method, good arguments, what the plug-in is called with.
GOOD = (("setOption", (ID, VALUE), (COMPONENT, "setOption", ID, VALUE)),
        ("setOptionByName", ("speed", VALUE), (COMPONENT, "setOption", ID, VALUE)),
        ("getOption", (ID,), (COMPONENT, "getOption", ID)),
        ("getOptionByName", ("speed",), (COMPONENT, "getOption", ID)))

# Method, bad arguments, error; a text stands for a TypeError with it.
BAD = (("setOption", (), TypeError),
       ("setOption", (ID,), TypeError),
       ("setOption", (ID, VALUE, 1), TypeError),
       ("setOption", ("speed", VALUE), TypeError),
       ("setOption", (1.5, VALUE), TypeError),
       ("setOption", (None, VALUE), TypeError),
       ("setOption", (ID, None), NO_ATTRIBUTE),
       ("setOption", (ID, 1), NO_ATTRIBUTE),
       ("setOption", (ID, {}), NO_ATTRIBUTE),
       ("setOptionByName", (), TypeError),
       ("setOptionByName", ("speed",), TypeError),
       ("setOptionByName", ("speed", VALUE, 1), TypeError),
       ("setOptionByName", (ID, VALUE), TypeError),
       ("setOptionByName", (None, VALUE), TypeError),
       ("setOptionByName", ("a\0b", VALUE), ValueError if IS_PYTHON_3 else TypeError),
       ("setOptionByName", ("speed", None), NO_ATTRIBUTE),
       ("setOptionByName", ("speed", "text"), NO_ATTRIBUTE),
       ("getOption", (), TypeError),
       ("getOption", (ID, 1), TypeError),
       ("getOption", ("speed",), TypeError),
       ("getOption", (None,), TypeError),
       ("getOption", (1.5,), TypeError),
       ("getOptionByName", (), TypeError),
       ("getOptionByName", ("speed", 1), TypeError),
       ("getOptionByName", (ID,), TypeError),
       ("getOptionByName", (None,), TypeError),
       ("getOptionByName", ("a\0b",), ValueError if IS_PYTHON_3 else TypeError))


class ViewerDelegateComponentTest(ScriptedTest):
    def setUp(self):
        ScriptedTest.setUp(self)
        self.createDelegate()
        self.component = self.delegate.addComponent(COMPONENT, "k")
        self.plugins.answers[COMPONENT, "getOption"] = VALUE
        self.plugins.take()

    def tearDown(self):
        self.component = None
        ScriptedTest.tearDown(self)

    def testGoodArgumentsReachThePlugin(self):
        for method, arguments, call in GOOD:
            result = getattr(self.component, method)(*arguments)
            self.assertEqual(VALUE if method.startswith("get") else None, result, method)
            self.assertEqual([call], self.plugins.take(), method)

    def testBadArgumentsDoNot(self):
        for method, arguments, expected in BAD:
            error = errorOf(getattr(self.component, method), *arguments)
            call = "%s%r: %r" % (method, arguments, error)
            if isinstance(expected, str):
                self.assertEqual((TypeError, expected), (type(error), str(error)), call)
            else:
                self.assertIs(expected, type(error), call)
        self.assertEqual([], self.plugins.take())

    def testAnIdIsCutTo64Bits(self):
        for value, optionId in ((-1, 2 ** 64 - 1), (2 ** 64 + 5, 5), (2 ** 64 - 1, 2 ** 64 - 1)):
            self.component.getOption(value)
            self.assertEqual([(COMPONENT, "getOption", optionId)], self.plugins.take())

    def testAnOptionThatIsNotThereIsNone(self):
        self.plugins.answers[COMPONENT, "getOption"] = None
        self.assertIsNone(self.component.getOption(ID))
        self.assertIsNone(self.component.getOptionByName("nope"))

    def testEveryWrapperReachesTheSamePlugin(self):
        self.delegate.insertComponent(COMPONENT, "other", 0)
        hosts = []
        self.plugins.answers[COMPONENT, "getOption"] = lambda host, optionId: hosts.append(host)
        for wrapper in (self.component, self.delegate.getComponent("k"),
                        self.delegate.getComponentByIndex(1), self.delegate.getComponent("other")):
            wrapper.getOption(ID)
        self.assertEqual(3, hosts.count(hosts[0]))
        self.assertNotEqual(hosts[0], hosts[3])

    def testThePluginsExceptionsAreRuntimeErrors(self):
        for method, arguments, call in GOOD:
            self.plugins.answers[COMPONENT, call[1]] = ScriptedPlugins.StandardError("told")
            self.assertError(RuntimeError, "told", getattr(self.component, method), *arguments)
            self.plugins.answers[COMPONENT, call[1]] = ScriptedPlugins.OtherError()
            self.assertError(RuntimeError, "Unknown C++ exception",
                             getattr(self.component, method), *arguments)

    def testAComponentThatWasRemovedIsRefusedBeforeItsArgumentsAre(self):
        self.delegate.removeComponent("k")
        for method, arguments, _ in GOOD + BAD:
            self.assertError(RuntimeError, "Underlying C++ component has been destroyed",
                             getattr(self.component, method), *arguments)


if __name__ == "__main__":
    unittest.main()
