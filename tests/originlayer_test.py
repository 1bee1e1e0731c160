"""The example of a layer, among the bundled ones: from its library to pixels."""
import os
import unittest

import ostrel
import PyVlPluginSystem
from PyVlAttribute import DoubleAttribute

LIBRARY = os.path.join(os.environ["OSTREL_TEST_PLUGINS"], "OriginLayer.so")
WIDTH, HEIGHT = 64, 48


class OriginLayerTest(unittest.TestCase):
    def setUp(self):
        self.assertEqual(PyVlPluginSystem.loadLibrary(LIBRARY), 1)
        self.session = ostrel.Session()
        self.addCleanup(self.session.close)
        self.view = self.session.addOffscreenView(WIDTH, HEIGHT)
        self.view.orbit.target, self.view.orbit.distance = (0, 0, 0), 20.0
        self.view.orbit.yaw = self.view.orbit.pitch = 0
        self.view.updateCamera()

    def coloured(self):
        """The pixels with far more red and blue than green."""
        _, _, pixels = self.view.readPixels()
        values = bytearray(pixels)
        return set((i // 4 % WIDTH, i // 4 // WIDTH) for i in range(0, len(values), 4)
                   if min(values[i], values[i + 2]) > values[i + 1] + 60)

    def testTheOriginIsMarkedAsLargeAsTold(self):
        self.assertEqual(self.coloured(), set())
        layer = self.view.viewport.addLayer("OriginLayer", "origin")
        small = self.coloured()
        self.assertTrue((WIDTH // 2, HEIGHT // 2) in small, small)
        self.view.viewport.setDirty(False)
        layer.setOptionByName("size", DoubleAttribute(3))
        self.assertTrue(self.view.viewport.isDirty())
        self.assertTrue(len(self.coloured()) > 2 * len(small))
        self.assertEqual(layer.getOptionByName("size"), DoubleAttribute(3))

    def testTheOthersDrawAsBefore(self):
        self.session.importModel("/usr/share/assimp/models/OBJ/box.obj")
        self.session.pump(timeout=60)
        before = self.view.readPixels()
        self.view.viewport.insertLayer("OriginLayer", "origin", 0).setOptionByName(
            "size", DoubleAttribute(0))
        self.assertEqual(self.view.readPixels(), before)


if __name__ == "__main__":
    unittest.main()
