"""Where a camera stands."""
from __future__ import division

import math

_UNIT_BOX = (-1.0, 1.0, -1.0, 1.0, -1.0, 1.0)
_PERSPECTIVE = 1  # ViewerAPI.kVlViewportCameraTypePerspective


def _dot(a, b):
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]


def usableBounds(bounds):
    """Six finite numbers (xmin, xmax, ymin, ymax, zmin, zmax) with min <= max on each axis.

    What is None, inverted or not finite, or beyond 1e100, becomes a box of size 2 around the
    origin.
    """
    if bounds is None:
        return _UNIT_BOX
    bounds = tuple(float(value) for value in bounds)
    isUsable = len(bounds) == 6 and all(abs(value) < 1e100 for value in bounds) and all(
        bounds[axis] <= bounds[axis + 1] for axis in (0, 2, 4))
    return bounds if isUsable else _UNIT_BOX


def _slopeOf(fov):
    """Half the height of a picture at distance 1. The angle, in degrees, is kept within the range
    that the bundled cameras keep theirs in; what is no number is their 45."""
    fov = 45.0 if math.isnan(fov) else min(179.9, max(0.01, fov))
    return math.tan(math.radians(fov) / 2)


def _areFinite(*values):
    return not any(math.isnan(value) or math.isinf(value) for value in values)


class Orbit(object):
    """A camera that looks at a target from a distance: how scripts place one. What the user does
    with the mouse is the viewport's own.

    yaw     degrees around the y axis; 0 looks along -z, positive values go round to the right
    pitch   degrees above the horizon, within -89 and 89
    """

    #: How much of the picture what is framed fills, at most.
    FILL = 0.9
    #: How far the camera stays away from what is framed, by its radius.
    CLEARANCE = 0.25

    def __init__(self, target=(0.0, 0.0, 0.0), distance=20.0, yaw=35.0, pitch=22.0):
        self.target = tuple(target)
        self.distance = distance
        self.yaw = yaw
        self.pitch = pitch

    def axes(self):
        """The camera's right, up and back axes in world space: unit vectors."""
        yaw, pitch = math.radians(self.yaw), math.radians(self.pitch)
        right = (math.cos(yaw), 0.0, -math.sin(yaw))
        back = (math.sin(yaw) * math.cos(pitch), math.sin(pitch), math.cos(yaw) * math.cos(pitch))
        up = (-math.sin(yaw) * math.sin(pitch), math.cos(pitch), -math.cos(yaw) * math.sin(pitch))
        return right, up, back

    def origin(self):
        """Where the camera is, in world space."""
        back = self.axes()[2]
        return tuple(self.target[i] + self.distance * back[i] for i in range(3))

    def viewMatrix(self):
        """World to camera: 16 numbers, row vectors."""
        right, up, back = self.axes()
        origin = self.origin()
        return (right[0], up[0], back[0], 0.0,
                right[1], up[1], back[1], 0.0,
                right[2], up[2], back[2], 0.0,
                -_dot(origin, right), -_dot(origin, up), -_dot(origin, back), 1.0)

    def frame(self, bounds, fov=45.0, aspect=1.0):
        """Keeps the direction and steps back until bounds fit a picture.

        fov is the vertical angle in degrees, aspect the picture's width by its height. A point
        counts as a small box.
        """
        bounds = usableBounds(bounds)
        self.target = tuple((bounds[i] + bounds[i + 1]) / 2 for i in (0, 2, 4))
        halves = [(bounds[i + 1] - bounds[i]) / 2 for i in (0, 2, 4)]
        radius = math.sqrt(_dot(halves, halves))
        if radius == 0.0:
            radius = max(1e-3, 1e-3 * max(abs(value) for value in self.target))
            halves = [radius] * 3
        right, up, back = self.axes()
        slope = _slopeOf(fov) * self.FILL
        # Each side of the picture is a plane through the camera that no corner may cross. Opposite
        # sides together give the smallest distance, and where between them the camera stands. It
        # keeps clear of the nearest corner, which a wide angle would let it touch.
        self.distance = (sum(halves[i] * abs(back[i]) for i in range(3))
                         + self.CLEARANCE * radius)
        for axis, steepness in ((right, slope * aspect), (up, slope)):
            sides = []
            for sign in (1, -1):
                # The furthest corner in a direction is found axis by axis.
                direction = [sign * axis[i] + steepness * back[i] for i in range(3)]
                sides.append(sum(halves[i] * abs(direction[i]) for i in range(3)))
            self.distance = max(self.distance, (sides[0] + sides[1]) / (2 * steepness))
            shift = (sides[0] - sides[1]) / 2
            self.target = tuple(self.target[i] + shift * axis[i] for i in range(3))

    def orbit(self, yaw, pitch):
        """Turns around the target, by degrees."""
        self.yaw = (self.yaw + yaw) % 360.0
        self.pitch = min(89.0, max(-89.0, self.pitch + pitch))

    def apply(self, camera, aspect=1.0):
        """Puts a ViewportCamera there."""
        camera.setViewMatrix(self.viewMatrix())
        camera.setCenterOfInterest(self.distance)
        if camera.getCameraTypeID() != _PERSPECTIVE:
            height = 2 * self.distance * _slopeOf(camera.getFOV())
            camera.setOrthographicWidth(height * aspect)

    def follow(self, camera, aspect=1.0):
        """Stands where a ViewportCamera is, but for what an orbit can't do: lean to a side. One that
        is nowhere, by numbers that are none, is not followed."""
        interest, origin = camera.getCenterOfInterest(), camera.getOrigin()
        back = [-value for value in camera.getDirection()]
        distance = interest
        if camera.getCameraTypeID() != _PERSPECTIVE:
            distance = camera.getOrthographicWidth() / (2 * _slopeOf(camera.getFOV()) * aspect)
        if not _areFinite(interest, distance, *(list(origin) + back)):
            return
        self.distance = distance
        self.target = tuple(value - interest * back[i] for i, value in enumerate(origin))
        self.yaw = math.degrees(math.atan2(back[0], back[2])) % 360.0
        self.pitch = min(89.0, max(-89.0, math.degrees(math.asin(min(1.0, max(-1.0, back[1]))))))
