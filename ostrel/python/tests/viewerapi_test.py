"""The package ViewerAPI: everything of the module, and the manipulator bridge."""
import pydoc
import subprocess
import sys
import unittest

import ViewerAPI
import ViewerAPI_cmodule
from PyVlAttribute import IntAttribute

METHODS = {
    "getValue": ("/root/a", "xform"),
    "setValue": ("/root/a", "xform", IntAttribute(1), 1),
    "isNodeEditable": ("node",),
    "updateOp": (1,),
    "getManipulationCommitId": (),
    "openManipulationGroup": ("/root/a",),
    "closeManipulationGroup": ("/root/a",),
    "cleanupLiveAttributes": ("/root/a",),
}


class ViewerAPITest(unittest.TestCase):
    def testHasEverythingOfTheModule(self):
        for name in dir(ViewerAPI_cmodule):
            if not name.startswith("_"):
                self.assertTrue(getattr(ViewerAPI, name) is getattr(ViewerAPI_cmodule, name), name)

    def testDocumentationIsOfThePackageAndTheModule(self):
        self.assertTrue(ViewerAPI.__doc__.startswith("The viewer:"))
        self.assertTrue(ViewerAPI.__doc__.endswith(ViewerAPI_cmodule.__doc__))

    def testHelpTellsOfEveryClass(self):
        text = pydoc.plain(pydoc.render_doc(ViewerAPI))
        for name in ("ViewerDelegate", "Viewport", "ViewportCamera", "ManipulatorBridge"):
            self.assertTrue("class %s(" % name in text, name)
        self.assertTrue("setEditor(" in text)

    def testImportsWithoutDocumentation(self):
        self.assertEqual(0, subprocess.call([sys.executable, "-OO", "-c", "import ViewerAPI"]))

    def testBridgeHasAllEightMethodsAndDocumentsThem(self):
        bridge = ViewerAPI.ManipulatorBridge()
        for name, arguments in METHODS.items():
            getattr(bridge, name)(*arguments)
            self.assertTrue(getattr(bridge, name).__doc__, name)

    def testBridgeNeverKeepsTheViewerFrozen(self):
        self.assertNotEqual(ViewerAPI.ManipulatorBridge().getManipulationCommitId(), -1)

    def testBridgeRemembersValuesUntilTheSceneSupersedesThem(self):
        bridge = ViewerAPI.ManipulatorBridge()
        self.assertTrue(bridge.setValue("/root/a", "x", IntAttribute(1), 0))
        self.assertTrue(bridge.setValue("/root/a", "x", IntAttribute(2), 1))
        self.assertEqual(bridge.getValue("/root/a", "x"), IntAttribute(2))
        self.assertTrue(bridge.getValue("/root/a", "y") is None)
        self.assertTrue(bridge.getValue("/root/b", "x") is None)
        bridge.cleanupLiveAttributes("/root/b")
        bridge.cleanupLiveAttributes("/root/a")
        self.assertTrue(bridge.getValue("/root/a", "x") is None)

    def testEveryNodeIsEditable(self):
        self.assertTrue(ViewerAPI.ManipulatorBridge().isNodeEditable("any"))


if __name__ == "__main__":
    unittest.main()
