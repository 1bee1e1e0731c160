"""Where ostrel's cameras stand, and the bridge's defaults."""
import itertools
import math
import unittest

from ostrel.orbit import Orbit, usableBounds

BOXES = {
    "cube": (-1, 1, -1, 1, -1, 1),
    "far away": (1000, 1001, 2000, 2003, -500, -490),
    "flat": (-5, 5, 0, 0, -2, 2),
    "needle": (0, 0, -100, 100, 0, 0),
    "tiny": (1e-6, 2e-6, 0, 1e-6, 0, 1e-6),
    "huge": (-1e9, 1e9, 0, 1e8, -1e9, 1e9),
}


def transform(point, matrix):
    row = tuple(point) + (1.0,)
    return [sum(row[i] * matrix[4 * i + j] for i in range(4)) for j in range(4)]


def corners(bounds):
    return itertools.product(bounds[0:2], bounds[2:4], bounds[4:6])


def radius(bounds):
    return math.sqrt(sum((bounds[i + 1] - bounds[i]) ** 2 for i in (0, 2, 4))) / 2


class FakeCamera(object):
    """Records what an orbit sets."""

    def __init__(self, cameraType, fov=60.0):
        self.cameraType = cameraType
        self.fov = fov
        self.set = {}

    def getCameraTypeID(self):
        return self.cameraType

    def getFOV(self):
        return self.fov

    def getCenterOfInterest(self):
        return self.set["setCenterOfInterest"][0]

    def getOrthographicWidth(self):
        return self.set["setOrthographicWidth"][0]

    def getOrigin(self):
        matrix, = self.set["setViewMatrix"]
        return [-sum(matrix[12 + j] * matrix[4 * i + j] for j in range(3)) for i in range(3)]

    def getDirection(self):
        matrix, = self.set["setViewMatrix"]
        return [-matrix[4 * i + 2] for i in range(3)]

    def __getattr__(self, name):
        return lambda *values: self.set.__setitem__(name, values)


class OrbitTest(unittest.TestCase):
    def testViewMatrixTurnsButDoesNotScaleAndLooksAtTheTarget(self):
        for yaw, pitch in itertools.product((0, 35, 90, 200, 359), (-89, -20, 0, 45, 89)):
            orbit = Orbit((3, -4, 5), 7.0, yaw, pitch)
            matrix = orbit.viewMatrix()
            rows = [matrix[4 * i:4 * i + 3] for i in range(3)]
            for i, j in itertools.product(range(3), range(3)):
                product = sum(a * b for a, b in zip(rows[i], rows[j]))
                self.assertAlmostEqual(product, 1.0 if i == j else 0.0, 12)
            for value, expected in zip(transform(orbit.target, matrix), (0, 0, -7, 1)):
                self.assertAlmostEqual(value, expected, 9)
            for value, expected in zip(transform(orbit.origin(), matrix), (0, 0, 0, 1)):
                self.assertAlmostEqual(value, expected, 9)
            up = transform((3, -3, 5), matrix)
            self.assertTrue(up[1] > 0, "the y axis points up in the picture")
            self.assertAlmostEqual(up[0], 0, 9)

    def testFrameFitsEveryBoxTightlyUnlessThatWouldTouchIt(self):
        for (name, box), aspect, fov in itertools.product(BOXES.items(), (0.3, 1.0, 16 / 9.0),
                                                          (20.0, 45.0, 100.0)):
            for yaw, pitch in ((35, 22), (0, 0), (120, -60), (270, 89)):
                orbit = Orbit(yaw=yaw, pitch=pitch)
                orbit.frame(box, fov, aspect)
                slope = math.tan(math.radians(fov) / 2)
                matrix = orbit.viewMatrix()
                reach, nearest = 0.0, float("inf")
                for corner in corners(box):
                    x, y, z, _ = transform(corner, matrix)
                    self.assertTrue(z < 0, name)
                    nearest = min(nearest, -z)
                    reach = max(reach, abs(x) / (-z * slope * aspect), abs(y) / (-z * slope))
                context = "%s from %d, %d" % (name, yaw, pitch)
                if nearest > Orbit.CLEARANCE * radius(box) * 1.0001:
                    self.assertAlmostEqual(reach, Orbit.FILL, 4, context)
                else:
                    self.assertTrue(reach <= Orbit.FILL + 1e-4, context)

    def testFrameOfAPointStepsBackALittle(self):
        orbit = Orbit()
        orbit.frame((5, 5, 5, 5, 5, 5))
        for value in orbit.target:
            self.assertAlmostEqual(value, 5, 1)
        self.assertTrue(0 < orbit.distance < 1)

    def testUnusableBoundsBecomeABoxAroundTheOrigin(self):
        inf, nan = float("inf"), float("nan")
        for bounds in (None, (), (1, -1, 0, 0, 0, 0), (0, inf, 0, 1, 0, 1), (nan,) * 6,
                       (1e308, 2.2e-308) * 3,
                       (0, 1e200) * 3):
            self.assertEqual(usableBounds(bounds), (-1, 1, -1, 1, -1, 1))
        self.assertEqual(usableBounds((0, 0, 1, 2, 3, 3)), (0, 0, 1, 2, 3, 3))

    def testOrbitStopsBelowThePoles(self):
        orbit = Orbit()
        orbit.orbit(10, 1000)
        self.assertEqual((orbit.yaw, orbit.pitch), (45, 89))
        orbit.orbit(-400, -1000)
        self.assertEqual((orbit.yaw, orbit.pitch), (5, -89))

    def testApplySetsWhatTheCameraTypeNeeds(self):
        orbit = Orbit(distance=10)
        perspective, orthographic = FakeCamera(1), FakeCamera(2)
        orbit.apply(perspective, 2.0)
        orbit.apply(orthographic, 2.0)
        self.assertEqual(perspective.set["setViewMatrix"], (orbit.viewMatrix(),))
        self.assertEqual(perspective.set["setCenterOfInterest"], (10,))
        self.assertFalse("setOrthographicWidth" in perspective.set)
        width, = orthographic.set["setOrthographicWidth"]
        self.assertAlmostEqual(width, 2 * 10 * math.tan(math.radians(30)) * 2)

    def testFollowUndoesApply(self):
        for cameraType, yaw, pitch in itertools.product((1, 2), (0, 35, 200), (-89, 0, 60)):
            orbit = Orbit((3, -4, 5), 7.0, yaw, pitch)
            camera = FakeCamera(cameraType)
            orbit.apply(camera, 1.5)
            other = Orbit()
            other.follow(camera, 1.5)
            for value, expected in zip((other.distance, other.yaw, other.pitch) + other.target,
                                       (7.0, yaw, pitch, 3, -4, 5)):
                self.assertAlmostEqual(value, expected)

    def testAnglesThatNoPictureHasAreBroughtIntoRange(self):
        usual, orbit = Orbit(), Orbit()
        usual.frame(BOXES["cube"], 45.0)
        for fov in (0.0, -10.0, 180.0, 360.0, 1e300, float("inf"), float("nan")):
            orbit.frame(BOXES["cube"], fov)
            self.assertTrue(0 < orbit.distance < 1e6, (fov, orbit.distance))
            camera = FakeCamera(2, fov)
            orbit.apply(camera)
            self.assertTrue(0 < camera.set["setOrthographicWidth"][0] < 1e9, fov)
        self.assertEqual(orbit.distance, usual.distance)

    def testACameraThatIsNowhereIsNotFollowed(self):
        camera = FakeCamera(1)
        Orbit(target=(float("nan"), 0, 0)).apply(camera)
        orbit = Orbit(distance=3.0)
        orbit.follow(camera)
        self.assertEqual((orbit.target, orbit.distance, orbit.yaw), ((0, 0, 0), 3.0, 35.0))


if __name__ == "__main__":
    unittest.main()
