"""ViewerDelegate's two questions about manipulators, from Python to the plug-ins and back."""

import unittest

from scripted import DELEGATE, MANIPULATORS, ScriptedTest, errorOf
import ScriptedPlugins
import ScriptedScene
from PyVlAttribute import GroupAttribute, IntAttribute, StringAttribute

MOVE, AIM = MANIPULATORS
MESH = GroupAttribute(("type", StringAttribute("polymesh")))
LIGHT = GroupAttribute(("type", StringAttribute("light")))
MOVE_TAGS = GroupAttribute(("label", StringAttribute("Move")), ("rank", IntAttribute(1)))
AIM_TAGS = GroupAttribute(("label", StringAttribute("Aim")))


class ManipulatorsTest(ScriptedTest):
    def setUp(self):
        ScriptedTest.setUp(self)
        self.createDelegate()
        self.delegate.openLocations(["/root"])
        for path, attributes in (("/root", GroupAttribute()), ("/root/mesh", MESH),
                                 ("/root/light", LIGHT)):
            ScriptedScene.report(self.firstClient, path, attributes)
        self.delegate.processLocationEvents()
        self.plugins.answers.update({
            (MOVE, "getTags"): MOVE_TAGS, (AIM, "getTags"): AIM_TAGS,
            (MOVE, "matches"): lambda host, location: 1 if location == MESH else 0,
            (AIM, "matches"): lambda host, location: 1 if location == LIGHT else 0})
        self.plugins.take()

    def testRegisteredManipulatorsComeInTheirOrderWithTheirTags(self):
        self.assertEqual(GroupAttribute((MOVE, MOVE_TAGS), (AIM, AIM_TAGS)),
                         self.delegate.getRegisteredManipulatorsInfo())
        self.assertEqual([(MOVE, "getTags"), (AIM, "getTags")], self.plugins.take())

    def testArgumentsOfRegisteredManipulatorsAreIgnored(self):
        self.assertEqual(self.delegate.getRegisteredManipulatorsInfo(),
                         self.delegate.getRegisteredManipulatorsInfo(1, 2))

    def testOneMatchingLocationOfTwoIsEnough(self):
        self.assertEqual(GroupAttribute((MOVE, MOVE_TAGS)),
                         self.delegate.getCompatibleManipulatorsInfo(["/root", "/root/mesh"]))
        self.assertEqual([(MOVE, "matches", GroupAttribute()), (MOVE, "matches", MESH),
                          (MOVE, "getTags"), (AIM, "matches", GroupAttribute()),
                          (AIM, "matches", MESH)], self.plugins.take())

    def testTheOrderIsThePluginsAndNotTheLocations(self):
        info = self.delegate.getCompatibleManipulatorsInfo(["/root/light", "/root/mesh"])
        self.assertEqual([MOVE, AIM], [name for name, _ in info])

    def testNoLocationFitsNothing(self):
        for paths in ([], ["/root/unknown"], [""]):
            self.assertEqual(GroupAttribute(), self.delegate.getCompatibleManipulatorsInfo(paths))
        self.assertEqual([], self.plugins.take())

    def testAPluginsExceptionIsARuntimeError(self):
        for entry in ("matches", "getTags"):
            self.plugins.answers[MOVE, entry] = ScriptedPlugins.StandardError("from " + entry)
            self.assertError(RuntimeError, "from " + entry,
                             self.delegate.getCompatibleManipulatorsInfo, ["/root/mesh"])
            self.plugins.answers[MOVE, entry] = ScriptedPlugins.OtherError()
            self.assertError(RuntimeError, "Unknown C++ exception",
                             self.delegate.getCompatibleManipulatorsInfo, ["/root/mesh"])
            self.plugins.answers[MOVE, entry] = 1 if entry == "matches" else MOVE_TAGS

    def testAListedPluginThatHasGoneIsARuntimeErrorThatNamesIt(self):
        self.addCleanup(ScriptedPlugins.registerManipulators)
        self.plugins.answers[MOVE, "getTags"] = (
            lambda host: ScriptedPlugins.unregisterManipulator(AIM))
        text = "Couldn't load Manipulator plugin type '%s'." % AIM
        self.assertError(RuntimeError, text, self.delegate.getRegisteredManipulatorsInfo)

    def testMatchesMayDropTheDelegate(self):
        holder = [self.delegate]
        self.delegate = None

        def matches(host, location):
            del holder[:]
            return 1

        self.plugins.answers[MOVE, "matches"] = matches
        self.assertIsNone(errorOf(holder[0].getCompatibleManipulatorsInfo, ["/root/mesh"]))
        self.assertEqual((DELEGATE, "destroy"), self.plugins.take()[-1])


if __name__ == "__main__":
    unittest.main()
