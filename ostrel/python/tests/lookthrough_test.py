"""Viewports that look through locations of a real scene."""
import unittest

import ostrel
import PyScenelib
from PyVlAttribute import GroupAttribute, IntAttribute

CHANNELS = {
    "requested": "__LOOKTHROUGH_LOCATION_CHANGE_REQUESTED",
    "cooked": "__LOOKTHROUGH_LOCATION_COOKED",
    "changed": "__LOOKTHROUGH_LOCATION_CHANGED",
    "does not exist": "__LOOKTHROUGH_LOCATION_DOES_NOT_EXIST",
}
CAMERA = "/root/hidden/camera"


def literal(**values):
    """The arguments of a Scene.Literal: "/root/hidden" with a child of each name, whose attribute
    "value" is the number."""
    children = [("c." + name, GroupAttribute(("a.value", IntAttribute(value))))
                for name, value in values.items()]
    return GroupAttribute(("staticScene.c.hidden", GroupAttribute(*children)))


def leaves(count):
    """The arguments of a Scene.Generate of that many."""
    return GroupAttribute(("leafCount", IntAttribute(count)))


class LookThroughTest(unittest.TestCase):
    def setUp(self):
        self.session = ostrel.Session()
        self.addCleanup(self.session.close)
        self.delegate = self.session.delegate
        self.left, self.right = [self.delegate.addViewport("SceneViewport", name)
                                 for name in ("left", "right")]
        self.fired = []
        for name, channel in CHANNELS.items():
            self.delegate.registerCallback(channel, self.listener(name))

    def listener(self, name):
        def callback(payload):
            attrs = payload.getChildByName("attrs")
            value = attrs.getChildByName("value").getValue() if name == "cooked" else None
            self.fired.append((name, payload.getChildByName("viewport").getValue(), value))
        return callback

    def takeFired(self):
        fired = self.fired[:]
        del self.fired[:]
        return fired

    def look(self, viewport, path=CAMERA):
        self.delegate.setLookThroughLocation(viewport, path)

    def pump(self):
        self.assertTrue(self.session.pump(timeout=60))

    def createOp(self, **values):
        op = self.session.createOp("Scene.Literal", literal(**values))
        self.pump()
        return op

    def edit(self, op, **values):
        PyScenelib.setOpArgs(op, "Scene.Literal", literal(**values))
        self.pump()

    def resolve(self, viewport):
        self.look(viewport)
        self.pump()
        self.takeFired()

    def testWhatNobodyOpenedIsCookedForTheViewport(self):
        self.delegate.closeLocations(["/root"])
        self.createOp(camera=1)
        self.look(self.left)
        self.assertEqual(self.takeFired(), [("requested", "left", None)])
        self.pump()
        self.assertEqual(self.takeFired(), [("cooked", "left", 1), ("changed", "left", None)])

    def testWhatIsCookedIsToldAtOnceToASecondViewport(self):
        self.createOp(camera=1)
        self.resolve(self.left)
        self.look(self.right)
        self.assertEqual(self.takeFired(), [("cooked", "right", 1), ("changed", "right", None)])

    def testWhileTheRestOfTheSceneIsCookedAgainARequestResolvesAllTheSame(self):
        self.createOp(camera=1)
        other = self.session.createOp("Scene.Generate", leaves(1000))
        self.pump()
        self.resolve(self.left)
        for number in range(20):
            PyScenelib.setOpArgs(other, "Scene.Generate", leaves(2000 + number))
            self.look(self.right)
            self.pump()
            fired = [name for name, viewport, _ in self.takeFired() if viewport == "right"]
            self.assertEqual([name for name in fired if name != "requested"][:2],
                             ["cooked", "changed"])
            self.look(self.right, "")
            self.takeFired()

    def testAnEditIsToldToAllViewports(self):
        op = self.createOp(camera=1)
        self.resolve(self.left)
        self.resolve(self.right)
        self.edit(op, camera=2)
        fired = self.takeFired()
        # The ancestors that were cooked again on the way tell of the location as well.
        self.assertEqual(fired[-2:], [("cooked", "left", 2), ("cooked", "right", 2)])
        self.assertEqual({name for name, _, _ in fired}, {"cooked"})

    def testWhatDoesNotExistResolvesWhenItComes(self):
        op = self.createOp(other=1)
        self.look(self.left)
        self.pump()
        self.assertEqual(self.takeFired(), [("requested", "left", None),
                                            ("does not exist", "left", None)])
        self.edit(op, camera=1)
        self.assertEqual(self.takeFired(), [("cooked", "left", 1), ("changed", "left", None)])

    def testWhatGoesIsToldAndResolvesWhenItComesBack(self):
        op = self.createOp(camera=1)
        self.resolve(self.left)
        self.edit(op, other=1)
        self.assertEqual(self.takeFired()[-1], ("does not exist", "left", None))
        self.edit(op, camera=2)
        self.assertEqual(self.takeFired(), [("cooked", "left", 2), ("changed", "left", None)])

    def testTheSamePathAgainIsNeverSaidNotToExist(self):
        self.createOp(camera=1)
        self.resolve(self.left)
        for _ in range(200):
            self.look(self.left)
            self.pump()
            self.assertEqual(self.takeFired(), [("requested", "left", None), ("cooked", "left", 1),
                                                ("changed", "left", None)])

    def testToAnotherPathAndBackIsNeverSaidNotToExist(self):
        self.createOp(camera=1, other=2)
        self.resolve(self.left)
        for _ in range(200):
            self.look(self.left, "/root/hidden/other")
            self.look(self.left)
            self.pump()
            fired = self.takeFired()
            self.assertEqual(fired[:4], [("requested", "left", None), ("requested", "left", None),
                                         ("cooked", "left", 1), ("changed", "left", None)])
            # It left and came back, so that the scene may tell of it again.
            self.assertEqual(set(fired[4:]) - set([("cooked", "left", 1)]), set())

    def testWhatIsLeftIsNotHeardOfAnyMore(self):
        op = self.createOp(camera=1)
        self.resolve(self.left)
        self.resolve(self.right)
        self.look(self.left, "")
        self.delegate.removeViewport("right")
        self.assertEqual(self.takeFired(), [("changed", "left", None)])
        self.edit(op, camera=2)
        self.assertEqual(self.takeFired(), [])


if __name__ == "__main__":
    unittest.main()
