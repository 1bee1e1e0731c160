"""The scene that is shown when none is given: a few shapes on the ground."""
from __future__ import division

import math

from PyVlAttribute import (DoubleAttribute, FloatAttribute, GroupAttribute, IntAttribute,
                           StringAttribute)

from ostrel import Session


def lathe(profile, segments):
    """Points and faces of a profile, a list of (radius, height), turned around the y axis."""
    points = []
    for radius, height in profile:
        for segment in range(segments):
            angle = 2 * math.pi * segment / segments
            points.append((radius * math.sin(angle), height, radius * math.cos(angle)))
    faces = []
    for ring in range(len(profile) - 1):
        for segment in range(segments):
            following = (segment + 1) % segments
            faces.append((ring * segments + segment, ring * segments + following,
                          (ring + 1) * segments + following, (ring + 1) * segments + segment))
    return points, faces


def sphere(radius):
    steps = 32
    profile = [(radius * math.sin(math.pi * i / steps), radius - radius * math.cos(math.pi * i / steps))
               for i in range(steps + 1)]
    return lathe(profile, 64)


def torus(radius, thickness):
    steps = 32
    profile = [(radius + thickness * math.cos(2 * math.pi * i / steps),
                thickness + thickness * math.sin(2 * math.pi * i / steps))
               for i in range(steps + 1)]
    return lathe(profile, 64)


def cone(radius, height):
    return lathe([(0.0, 0.0), (radius, 0.0), (0.0, height)], 64)


def cube(size):
    half = size / 2.0
    return lathe([(0.0, 0.0), (half * math.sqrt(2), 0.0), (half * math.sqrt(2), size),
                  (0.0, size)], 4)


def mesh(shape, colour, position, turn=0.0):
    """The attributes of a polymesh location."""
    points, faces = shape
    flat = [value for point in points for value in point]
    bounds = [bound for axis in range(3)
              for bound in (min(flat[axis::3]), max(flat[axis::3]))]
    starts = [0]
    for face in faces:
        starts.append(starts[-1] + len(face))
    return GroupAttribute(
        ("type", StringAttribute("polymesh")),
        ("attributeEditor.exclusiveTo", StringAttribute(Session.NODE)),
        ("xform.placed.translate", DoubleAttribute(position, 3)),
        ("xform.placed.rotateY", DoubleAttribute([turn, 0, 1, 0], 4)),
        ("bound", DoubleAttribute(bounds)),
        ("geometry.point.P", FloatAttribute(flat, 3)),
        ("geometry.poly.vertexList", IntAttribute([index for face in faces for index in face])),
        ("geometry.poly.startIndex", IntAttribute(starts)),
        ("material.baseColor", FloatAttribute(colour, 3)))


def boundsOf(shape, position, turn=0.0):
    """The box around a mesh() where it stands."""
    cosine, sine = math.cos(math.radians(turn)), math.sin(math.radians(turn))
    points = [(x * cosine + z * sine, y, z * cosine - x * sine) for x, y, z in shape[0]]
    return [position[axis] + pick(point[axis] for point in points)
            for axis in range(3) for pick in (min, max)]


def addTo(session):
    """Adds the scene to a session."""
    shapes = [
        ("sphere", sphere(1.0), [0.76, 0.15, 0.10], [-1.3, 0, -0.9], 0.0),
        ("cube", cube(1.5), [0.10, 0.34, 0.60], [1.2, 0, -1.0], 60.0),
        ("torus", torus(0.75, 0.28), [0.85, 0.52, 0.08], [1.3, 0, 1.4], 0.0),
        ("cone", cone(0.7, 1.6), [0.16, 0.45, 0.20], [-1.2, 0, 1.5], 0.0),
    ]
    bounds = [boundsOf(shape, position, turn) for _, shape, _, position, turn in shapes]
    scene = GroupAttribute(
        ("a", GroupAttribute(("type", StringAttribute("group")))),
        ("c.shapes.a.type", StringAttribute("group")),
        ("c.shapes.a.bound", DoubleAttribute([pick(each[i] for each in bounds)
                                              for i, pick in enumerate(3 * (min, max))])),
        *[("c.shapes.c.%s.a" % name, mesh(shape, colour, position, turn))
          for name, shape, colour, position, turn in shapes])
    session.createOp("Scene.Literal", GroupAttribute(("staticScene", scene)))
