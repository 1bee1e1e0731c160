"""Picks hit what the display mode and the material show."""
import os
import sys
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

import goldenscenes
import ostrel
from PyVlAttribute import GroupAttribute, IntAttribute, StringAttribute

WIDTH, HEIGHT = 200, 120
QUAD = "/root/quad"


class DisplayModePickingTest(unittest.TestCase):
    """On a square that faces the camera, and fills the height of the picture but for a margin."""

    def setUp(self):
        self.session = ostrel.Session()
        self.addCleanup(self.session.close)
        square = goldenscenes.mesh(([(-1, -1, 0), (1, -1, 0), (1, 1, 0), (-1, 1, 0)],
                                    [(0, 1, 2, 3)]), [0.5, 0.5, 0.5], [0, 0, 0])
        scene = goldenscenes.literal(goldenscenes.group(quad=(square, {})))
        self.session.createOp("Scene.Literal", GroupAttribute(("staticScene", scene)))
        self.view = self.session.addOffscreenView(WIDTH, HEIGHT)
        self.session.pump()
        _, _, pixels = self.view.readPixels()
        if not any(bytearray(pixels)):
            self.skipTest("no OpenGL context on this machine")
        self.view.orbit.yaw = self.view.orbit.pitch = 0.0
        self.view.frame()

    def hits(self, mode):
        """Where along the row through the middle the square is hit: the first, the last, and how
        many pixels."""
        self.view.viewport.getLayer("meshes").setOptionByName("displayMode", StringAttribute(mode))
        hit = [x for x in range(WIDTH) if QUAD in self.view.pick(x, HEIGHT // 2)]
        return (hit[0], hit[-1], len(hit)) if hit else None

    def testSurfacesAreHitInsideAndWiresNearTheirEdgesAlone(self):
        first, last, count = self.hits("shaded")
        self.assertEqual(last - first + 1, count)
        self.assertEqual((first, last, count), self.hits("wireframeOnShaded"))
        wireFirst, wireLast, wireCount = self.hits("wireframe")
        self.assertTrue(abs(wireFirst - first) <= 4 and abs(wireLast - last) <= 4)
        self.assertTrue(2 <= wireCount <= 14, wireCount)
        self.assertTrue(self.hits("points") is None)
        self.assertEqual((first, last, count), self.hits("shaded"))

    def checkBackSidesAreHitByTheirWiresAlone(self):
        front = {}
        for mode in ("shaded", "wireframe", "wireframeOnShaded"):
            front[mode] = self.hits(mode)
            self.assertTrue(front[mode] is not None, mode)
        self.view.orbit.yaw = 180.0
        self.view.updateCamera()
        self.assertTrue(self.hits("shaded") is None)
        for mode in ("wireframe", "wireframeOnShaded"):
            self.assertEqual(front["wireframe"], self.hits(mode), mode)

    def testPolygonsThatTheLayerLeavesOutAreNotHitButForTheirWires(self):
        self.view.viewport.getLayer("meshes").setOptionByName("cullBackFaces", IntAttribute(1))
        self.checkBackSidesAreHitByTheirWiresAlone()

    def testPolygonsThatTheMaterialLeavesOutAreNotHitButForTheirWires(self):
        self.session.setAttribute(QUAD, "material.doubleSided", IntAttribute(0))
        self.session.pump()
        self.checkBackSidesAreHitByTheirWiresAlone()


if __name__ == "__main__":
    unittest.main()
