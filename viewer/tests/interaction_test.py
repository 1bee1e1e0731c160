"""What the mouse does to a view, and how a window keeps up with its scene."""
import os
import sys
import unittest

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))

from interaction import ORBIT, PAN, ZOOM, Interaction, Pump  # noqa: E402
from ostrel import Orbit  # noqa: E402


class FakeCamera(object):
    def getFOV(self):
        return 90.0


class FakeViewport(object):
    dirty = False

    def isDirty(self):
        return self.dirty


class FakeView(object):
    """A view of height 100 that counts what is asked of it."""

    def __init__(self):
        self.height = 100
        self.orbit = Orbit(distance=10.0, yaw=0.0, pitch=0.0)
        self.camera = FakeCamera()
        self.viewport = FakeViewport()
        self.calls = []

    def updateCamera(self):
        self.calls.append("updateCamera")

    def frame(self):
        self.calls.append("frame")

    def draw(self):
        self.calls.append("draw")
        self.viewport.dirty = False


class FakeDelegate(object):
    processing = True
    pumped = 0

    def processLocationEvents(self):
        self.pumped += 1

    def isProcessing(self):
        return self.processing


class FakeSession(object):
    def __init__(self):
        self.delegate = FakeDelegate()


class InteractionTest(unittest.TestCase):
    def setUp(self):
        self.view = FakeView()
        self.interaction = Interaction(self.view)

    def drag(self, mode, x, y):
        self.interaction.press(mode, 50, 50)
        self.interaction.move(50 + x, 50 + y)
        self.interaction.release()

    def testDraggingOrbitsSoThatTheSceneFollowsTheMouse(self):
        self.drag(ORBIT, 25, 0)
        self.assertAlmostEqual(self.view.orbit.yaw, 315)  # the camera goes left, the scene right
        self.drag(ORBIT, 0, 25)
        self.assertAlmostEqual(self.view.orbit.pitch, 45)  # the camera goes up, the scene down

    def testDraggingPansSoThatWhatIsUnderTheMouseStaysThere(self):
        self.drag(PAN, 50, 0)
        self.assertAlmostEqual(self.view.orbit.target[0], -10)  # half a picture of height 20
        self.drag(PAN, 0, 50)
        self.assertAlmostEqual(self.view.orbit.target[1], 10)

    def testDraggingRightOrUpComesNearerAndBackAgainGoesBack(self):
        self.drag(ZOOM, 100, 0)
        self.assertAlmostEqual(self.view.orbit.distance, 10 / 8.0)
        self.drag(ZOOM, 0, 100)
        self.assertAlmostEqual(self.view.orbit.distance, 10)

    def testWheelZoomsByNotches(self):
        self.interaction.wheel(2)
        self.assertTrue(self.view.orbit.distance < 10)
        self.interaction.wheel(-2)
        self.assertAlmostEqual(self.view.orbit.distance, 10)

    def testMovesWithoutAButtonDoNothing(self):
        self.interaction.move(80, 80)
        self.drag(ORBIT, 0, 0)
        self.view.calls = []
        self.interaction.move(90, 90)
        self.assertEqual(self.view.calls, [])

    def testEveryMoveCounts(self):
        self.interaction.press(ORBIT, 0, 0)
        for x in range(1, 26):
            self.interaction.move(x, 0)
        self.assertAlmostEqual(self.view.orbit.yaw, 315)


class PumpTest(unittest.TestCase):
    def setUp(self):
        self.session = FakeSession()
        self.view = FakeView()
        self.loads = []
        self.pump = Pump(self.session, self.view, lambda: self.loads.append(1))

    def testFramesOnceWhenTheSceneIsThere(self):
        self.pump.tick()
        self.assertEqual((self.view.calls, self.loads), ([], []))
        self.session.delegate.processing = False
        self.pump.tick()
        self.session.delegate.processing = True
        self.pump.tick()
        self.session.delegate.processing = False
        self.pump.tick()
        self.assertEqual((self.view.calls, self.loads), (["frame"], [1]))
        self.assertEqual(self.session.delegate.pumped, 4)

    def testDoesNotFrameOverTheUsersOwnView(self):
        self.view.orbit.orbit(10, 0)
        self.session.delegate.processing = False
        self.pump.tick()
        self.assertEqual((self.view.calls, self.loads), ([], [1]))

    def testDrawsOnlyWhatIsDirty(self):
        self.pump.tick()
        self.view.viewport.dirty = True
        self.pump.tick()
        self.pump.tick()
        self.assertEqual(self.view.calls, ["draw"])


if __name__ == "__main__":
    unittest.main()
