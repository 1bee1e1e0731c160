"""What tests of gizmos share: a thing below a parent, a mouse, and the geometry of what the mouse
points at, worked out from the camera's matrices alone."""
from __future__ import division

import math
import unittest

import ostrel
from ostrel import events
from PyVlAttribute import DoubleAttribute, GroupAttribute, StringAttribute

DEADLINE = 60
WIDTH, HEIGHT = 400, 300
PARENT = "/root/parent"
PATH = "/root/parent/thing"

# A pixel's edge is about 0.02 units at the thing's distance; the arithmetic is double precision, so
# that what remains is rounding of matrices that go through the scene.
TOLERANCE = 1e-6

CAMERAS = ("PerspectiveCamera", "OrthographicCamera")

#: Names and components of parents.
PARENTS = (
    ("none", ()),
    ("moved", (("a.translate", [0.3, -0.4, 0.2]),)),
    ("turned", (("a.rotateY", [40.0, 0.0, 1.0, 0.0]), ("a.rotateX", [25.0, 1.0, 0.0, 0.0]))),
    ("evenly scaled", (("a.scale", [1.4, 1.4, 1.4]),)),
    ("unevenly scaled", (("a.scale", [2.0, 0.5, 1.3]),)),
    ("mirrored", (("a.scale", [1.0, -1.2, 1.0]),)),
    ("turned, then unevenly scaled", (("a.rotateZ", [30.0, 0.0, 0.0, 1.0]),
                                      ("a.scale", [0.5, 1.5, 0.8]))),
    ("sheared, by a turn within an uneven scale", (("a.scale", [1.5, 0.6, 1.0]),
                                                   ("a.rotateZ", [35.0, 0.0, 0.0, 1.0]))),
)


def location(*xform):
    return GroupAttribute(
        ("type", StringAttribute("locator")),
        ("attributeEditor.exclusiveTo", StringAttribute(ostrel.Session.NODE)),
        ("bound", DoubleAttribute([-1, 1, -1, 1, -1, 1])),
        *[("xform." + name, DoubleAttribute(values, len(values))) for name, values in xform])


# Vectors.

def add(a, b, factor=1.0):
    return [x + factor * y for x, y in zip(a, b)]


def subtract(a, b):
    return add(a, b, -1.0)


def dot(a, b):
    return sum(x * y for x, y in zip(a, b))


def cross(a, b):
    return [a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]]


def unit(a):
    length = math.sqrt(dot(a, a))
    return [x / length for x in a]


def worldAxis(index):
    return [float(i == index) for i in range(3)]


def angleAround(axis, a, b):
    """In degrees, counter-clockwise seen from the axis's tip; both are upright to it."""
    return math.degrees(math.atan2(dot(cross(a, b), axis), dot(a, b)))


# Matrices: 16 numbers for row vectors.

IDENTITY = [float(row == column) for row in range(4) for column in range(4)]


def multiply(a, b):
    return [sum(a[row * 4 + k] * b[k * 4 + column] for k in range(4))
            for row in range(4) for column in range(4)]


def transform(point, matrix):
    row = list(point) + [1.0]
    x, y, z, w = [sum(row[k] * matrix[k * 4 + column] for k in range(4)) for column in range(4)]
    return [x / w, y / w, z / w]


def direct(direction, matrix):
    """A direction, which does not move."""
    return [sum(direction[k] * matrix[k * 4 + column] for k in range(3)) for column in range(3)]


def invert(matrix):
    rows = [list(matrix[4 * i:4 * i + 4]) + IDENTITY[4 * i:4 * i + 4] for i in range(4)]
    for i in range(4):
        pivot = max(range(i, 4), key=lambda row: abs(rows[row][i]))
        rows[i], rows[pivot] = rows[pivot], rows[i]
        rows[i] = [value / rows[i][i] for value in rows[i]]
        for j in range(4):
            if j != i:
                rows[j] = add(rows[j], rows[i], -rows[j][i])
    return [value for row in rows for value in row[4:]]


def rotation(degrees, axis):
    matrix = list(IDENTITY)
    angle = math.radians(degrees)
    for row in range(3):
        e = worldAxis(row)
        across = cross(axis, e)
        for column in range(3):
            matrix[row * 4 + column] = (
                e[column] * math.cos(angle) + across[column] * math.sin(angle) +
                axis[column] * axis[row] * (1 - math.cos(angle)))
    return matrix


def componentMatrix(name, values):
    """As docs/scene-conventions.md has it."""
    matrix = list(IDENTITY)
    if name.startswith("translate"):
        matrix[12:15] = values
    elif name.startswith("scale"):
        matrix[0], matrix[5], matrix[10] = values
    else:
        assert name.startswith("rotate")
        matrix = rotation(values[0], unit(values[1:]))
    return matrix


# Rays: an origin and a direction of length 1.

def alongLine(ray, point, direction):
    """How far along a line, in lengths of its direction, the ray comes nearest to it."""
    origin, ahead = ray
    apart = subtract(point, origin)
    # What is left of it is upright to both.
    a, b, c = dot(direction, direction), dot(direction, ahead), dot(ahead, ahead)
    d, e = dot(direction, apart), dot(ahead, apart)
    return (b * e - c * d) / (a * c - b * b)


def onPlane(ray, point, normal):
    origin, ahead = ray
    return add(origin, ahead, dot(subtract(point, origin), normal) / dot(ahead, normal))


class ManipulatorTest(unittest.TestCase):
    def show(self, parent=(), thing=(("placed.translate", [1.0, 0.5, 0.0]),),
             camera="PerspectiveCamera"):
        """A thing below a parent, with these components in their groups, in a view."""
        self.session = ostrel.Session()
        self.addCleanup(self.session.close)
        self.session.createOp("Scene.Literal", GroupAttribute(
            ("staticScene.c.parent.a", location(*parent)),
            ("staticScene.c.parent.c.thing.a", location(*thing))))
        self.view = self.session.addOffscreenView(WIDTH, HEIGHT, cameraPlugin=camera)
        self.settle()
        self.view.frame([-3, 3, -3, 3, -3, 3])
        self.viewport = self.view.viewport

    def settle(self):
        self.assertTrue(self.session.pump(timeout=DEADLINE))

    def activate(self, paths=(PATH,), name="TranslateManipulator"):
        self.viewport.activateManipulator(name, list(paths), True)
        self.view.draw()
        for i in range(self.viewport.getNumberOfActiveManipulators()):
            if self.viewport.getActiveManipulatorPluginName(i) == name:
                self.manipulator = self.viewport.getActiveManipulatorByIndex(i)
        return self.manipulator

    def readout(self):
        """The numbers of a drag that is going on, or None."""
        value = self.manipulator.getOptionByName("readout")
        return value and list(value.getNearestSample(0.0))

    # The thing, from the attributes that the viewer has.

    def worldMatrix(self, path=PATH):
        world = IDENTITY
        names = path.split("/")
        for depth in range(2, len(names) + 1):
            attributes = self.session.delegate.getAttributes("/".join(names[:depth]))
            for _, group in attributes.getChildByName("xform") or ():
                for name, values in group:
                    matrix = componentMatrix(name, list(values.getNearestSample(0.0)))
                    world = multiply(matrix, world)
        return world

    def position(self, path=PATH):
        """Of a location's origin in the world."""
        return self.worldMatrix(path)[12:15]

    def component(self, name, path=PATH):
        """The values of "group.component" of the transform, or None."""
        value = self.session.delegate.getAttributes(path).getChildByName("xform." + name)
        return value and list(value.getNearestSample(0.0))

    # What is seen.

    def worldToClip(self):
        return multiply(list(self.view.camera.getViewMatrix()),
                        list(self.view.camera.getProjectionMatrix()))

    def pixelOf(self, point):
        """Where a point is seen: the place, not yet a whole pixel."""
        x, y, _ = transform(point, self.worldToClip())
        return (x + 1) / 2 * WIDTH, (1 - y) / 2 * HEIGHT

    def pixelAt(self, point):
        return tuple(int(value) for value in self.pixelOf(point))

    def rayAt(self, pixel):
        """Through a pixel's centre, from the nearest that is seen to the farthest."""
        clipToWorld = invert(self.worldToClip())
        x, y = 2 * (pixel[0] + 0.5) / WIDTH - 1, 1 - 2 * (pixel[1] + 0.5) / HEIGHT
        near, far = transform([x, y, -1.0], clipToWorld), transform([x, y, 0.5], clipToWorld)
        return near, unit(subtract(far, near))

    def cameraAxis(self, index):
        """Its right, up and back directions in the world."""
        return list(self.view.camera.getViewMatrix()[index:12:4])

    def towardsCamera(self, point):
        if self.view.camera.getProjectionMatrix()[11]:
            return unit(subtract(self.view.camera.getOrigin(), point))
        return self.cameraAxis(2)

    def gizmoLength(self, point):
        """In world units, of what is seen in 100 pixels at a point."""
        above = add(point, self.cameraAxis(1), 0.001)
        return 100 * 0.001 / (self.pixelOf(point)[1] - self.pixelOf(above)[1])

    def placeOn(self, axis, fraction=0.5):
        """A pixel on an axis of the gizmo at the thing."""
        at = self.position()
        at[axis] += fraction * self.gizmoLength(at)
        return self.pixelAt(at)

    # The mouse.

    def press(self, x, y, **more):
        return self.viewport.event(events.mousePress(int(x), int(y), "left", **more))

    def move(self, x, y, **more):
        return self.viewport.event(events.mouseMove(int(x), int(y), ["left"], **more))

    def release(self, x, y, **more):
        return self.viewport.event(events.mouseRelease(int(x), int(y), "left", **more))

    def drag(self, begin, *places, **more):
        """Presses at one pixel, moves over others and releases at the last."""
        self.assertTrue(self.press(*begin), "nothing is grasped at %r" % (begin,))
        self.assertTrue(self.readout() is not None, "no drag begins at %r" % (begin,))
        for place in places:
            self.assertTrue(self.move(*place, **more))
        self.assertTrue(self.release(*places[-1], **more))

    def assertAlmost(self, found, expected, message="", tolerance=TOLERANCE):
        self.assertEqual(len(found), len(expected), message)
        for a, b in zip(found, expected):
            self.assertTrue(abs(a - b) < tolerance,
                            "%s: %r is not %r" % (message, list(found), list(expected)))


class GestureTest(ManipulatorTest):
    """A tool's gestures under all parents, with both cameras."""

    #: The plug-in's name.
    tool = None
    #: The thing's components.
    thing = (("placed.translate", [1.0, 0.5, 0.0]),)

    def eachSituation(self):
        """Shows the thing in each situation, with the tool active on it; gives its name."""
        for camera in CAMERAS:
            for name, parent in PARENTS:
                self.show(parent, self.thing, camera)
                self.watcher = self.session.addOffscreenView(WIDTH // 2, HEIGHT // 2, "watcher",
                                                             camera)
                self.watcher.frame([-3, 3, -3, 3, -3, 3])
                self.activate(name=self.tool)
                yield "%s, parent %s" % (camera, name)
                self.session.close()

    def watchedDrag(self, message, begin, end):
        """Drags over two places. What another view shows of the thing, without a gizmo, goes along
        in the same pump, and does not change when the button is released, nor later."""
        pictures = [self.watcher.readPixels()]
        self.assertTrue(self.press(*begin), message)
        self.assertTrue(self.readout() is not None, message + ": no drag")
        for place in ([(a + b) // 2 for a, b in zip(begin, end)], end):
            self.assertTrue(self.move(*place), message)
            self.session.delegate.processLocationEvents()
            self.assertTrue(self.watcher.viewport.isDirty(), message)
            pictures.append(self.watcher.readPixels())
        for before, after in zip(pictures, pictures[1:]):
            self.assertTrue(before != after, message + ": the picture does not follow")
        shown = self.worldMatrix()
        self.assertTrue(self.release(*end), message)
        for pump in range(3):
            self.settle()
            self.assertTrue(self.session.delegate.getLiveAttributes(PATH) is None, message)
            self.assertEqual(self.worldMatrix(), shown, message + ": jumps when it is cooked")
            self.assertTrue(self.watcher.readPixels() == pictures[-1],
                            message + ": the picture jumps")
