"""Manipulators over a real scene: their locations come, go and come back as ops cook them."""
import os
import sys
import unittest

IS_PYTHON_3 = sys.version_info[0] >= 3

sys.path.insert(0, os.path.join(os.environ["OSTREL_TEST_PLUGINS"],
                                "python3" if IS_PYTHON_3 else "python2.7"))

import ostrel
import PyScenelib
import ScriptedPlugins
from PyVlAttribute import GroupAttribute, StringAttribute

DEADLINE = 60
A, B = "/root/a", "/root/group/b"


def locator(kind="locator"):
    return GroupAttribute(("type", StringAttribute(kind)))


class ManipulatedSceneTest(unittest.TestCase):
    def setUp(self):
        ScriptedPlugins.setHook(self.onCall)
        self.addCleanup(ScriptedPlugins.setHook, None)
        self.session = ostrel.Session("ScriptedDelegate")
        self.addCleanup(self.session.close)
        self.literal = self.session.createOp("Scene.Literal", GroupAttribute())
        self.viewport = self.session.delegate.addViewport("ScriptedViewport", "v")
        self.viewport.activateManipulator("ScriptedMove", [A, B], False)
        self.manipulator = self.viewport.getActiveManipulatorByIndex(0)

    def onCall(self, plugin, host, entry, arguments):
        if entry == "matches":
            return int(arguments[0].getChildByName("type") == StringAttribute("locator"))

    def show(self, **locations):
        """The paths that the manipulator edits once these locations are the whole scene."""
        scene = []
        if "a" in locations:
            scene.append(("staticScene.c.a.a", locations["a"]))
        if "b" in locations:
            scene.append(("staticScene.c.group.c.b.a", locations["b"]))
        self.viewport.setDirty(False)
        PyScenelib.setOpArgs(self.literal, "Scene.Literal", GroupAttribute(*scene))
        self.assertTrue(self.session.pump(timeout=DEADLINE), "the viewer does not settle")
        return list(self.manipulator.getLocationPaths().getNearestSample(0.0))

    def testLocationsComeGoAndReturnAtTheEnd(self):
        self.assertEqual([], self.show())
        self.assertEqual([A], self.show(a=locator()))
        self.assertTrue(self.viewport.isDirty())
        self.assertEqual({A, B}, set(self.show(a=locator(), b=locator())))
        self.assertEqual([B], self.show(b=locator()))
        self.assertEqual([B, A], self.show(a=locator(), b=locator()))

    def testARemovedParentTakesItsLocationsAlong(self):
        self.show(a=locator(), b=locator())
        self.assertEqual([A], self.show(a=locator()))
        self.assertTrue(self.viewport.isDirty())

    def testALocationThatNoLongerFitsLeaves(self):
        self.show(a=locator(), b=locator())
        self.assertEqual([B], self.show(a=locator("light"), b=locator()))


if __name__ == "__main__":
    unittest.main()
