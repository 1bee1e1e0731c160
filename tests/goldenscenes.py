"""What the golden pictures show: scenes, and the views of them."""
from __future__ import division

import math
import os
import sys

from ostrel import events
from PyVlAttribute import (DoubleAttribute, FloatAttribute, GroupAttribute, GroupBuilder,
                           IntAttribute, StringAttribute)

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(ROOT, "viewer"))

from defaultscene import cone, cube, lathe, mesh, sphere, torus  # noqa: E402

MODELS = "/usr/share/assimp/models"


# Scenes as plain trees: name -> (attributes, children).

def group(**children):
    return GroupAttribute(("type", StringAttribute("group"))), children


def shape(*args):
    return mesh(*args), {}


def placed(attributes, values):
    """The attributes with this matrix, of 16 numbers, in place of their transform, and without a
    bound, which would not hold for what is below."""
    return GroupBuilder().update(attributes).set("xform", None).set("bound", None).set(
        "xform.placed.matrix", DoubleAttribute(values, 4)).build()


def drawn(attributes, **options):
    """The attributes with draw options."""
    builder = GroupBuilder().update(attributes)
    for name, value in sorted(options.items()):
        builder.set("viewer.default.drawOptions." + name, StringAttribute(value))
    return builder.build()


def shapes():
    """Four shapes of different colour on the ground."""
    return group(
        sphere=shape(sphere(1.0), [0.76, 0.15, 0.10], [-1.3, 0, -0.9]),
        cube=shape(cube(1.5), [0.10, 0.34, 0.60], [1.2, 0, -1.0], 60.0),
        torus=shape(torus(0.75, 0.28), [0.85, 0.52, 0.08], [1.3, 0, 1.4]),
        cone=shape(cone(0.7, 1.6), [0.16, 0.45, 0.20], [-1.2, 0, 1.5]))


def coarse():
    """Shapes of so few polygons that each edge stands alone."""
    ball = lathe([(math.sin(math.pi * i / 8), 1.0 - math.cos(math.pi * i / 8)) for i in range(9)], 14)
    ring = lathe([(0.75 + 0.28 * math.cos(math.pi * i / 4), 0.28 + 0.28 * math.sin(math.pi * i / 4))
                  for i in range(9)], 18)
    return group(
        ball=shape(ball, [0.76, 0.15, 0.10], [-1.3, 0, -0.9]),
        cube=shape(cube(1.5), [0.02, 0.02, 0.03], [1.2, 0, -1.0], 60.0),
        ring=shape(ring, [0.85, 0.52, 0.08], [1.3, 0, 1.4]),
        cone=shape(lathe([(0.0, 0.0), (0.7, 0.0), (0.0, 1.6)], 12), [0.16, 0.45, 0.20],
                   [-1.2, 0, 1.5]))


def polygons():
    """An L of one concave polygon, an n-gon and a quad: edges that no triangle has."""

    def flat(points, colour, position):
        return mesh((points, [tuple(range(len(points)))]), colour, position), {}
    corner = [(0, 0, 0), (2, 0, 0), (2, 1, 0), (1, 1, 0), (1, 2, 0), (0, 2, 0)]
    gon = [(0.5, 0, 0), (1.5, 0, 0), (2, 0.9, 0), (1.5, 1.8, 0), (0.5, 1.8, 0), (0, 0.9, 0)]
    quad = [(0, 0, 0), (1.6, 0, 0), (1.6, 1.6, 0), (0, 1.6, 0)]
    return group(corner=flat(corner, [0.70, 0.30, 0.12], [-3.4, 0, 0]),
                 gon=flat(gon, [0.15, 0.45, 0.50], [-1.0, 0, 0]),
                 quad=flat(quad, [0.55, 0.50, 0.15], [1.4, 0, 0]))


def leaning():
    """Boxes under matrices that turn, shear and move, one below the other."""
    lean = [1, 0, 0, 0, 0.35, 1, 0.1, 0, 0, 0, 1, 0, 0, 1.2, 0, 1]
    turn = [0.6, 0, -0.8, 0, 0, 1, 0, 0, 0.8, 0, 0.6, 0, 2.0, 0, 0.4, 1]
    still = [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1]
    box = mesh(cube(1.2), [0.20, 0.40, 0.55], [0, 0, 0])
    ball = mesh(sphere(0.5), [0.75, 0.35, 0.10], [0, 0, 0])
    return group(base=(placed(box, still), {"arm": (placed(box, lean), {"tip": (placed(ball, lean), {})})}),
                 other=(placed(box, turn), {}))


def clouds():
    """Dots on a helix, and a line of dots in colours of their own."""
    helix = [value for i in range(240) for value in
             (math.cos(i * 0.15), i / 100.0, math.sin(i * 0.15))]
    row = [value for i in range(40) for value in (2.0 + i * 0.03, 0.2 + i * 0.05, 0.0)]
    colours = [value for i in range(40) for value in (i / 40.0, 0.3, 1 - i / 40.0)]

    def dots(points, **more):
        builder = GroupBuilder().set("type", StringAttribute("points"))
        builder.set("geometry.point.P", FloatAttribute(points, 3))
        for name, values in more.items():
            builder.set("geometry.point." + name, FloatAttribute(values, 3))
        return builder.build(), {}
    return group(helix=dots(helix), row=dots(row, color=colours))


def glass():
    """Something that shines through before something that doesn't."""
    pane = GroupBuilder().update(mesh(cube(1.4), [0.20, 0.55, 0.65], [0.2, 0.1, 1.4], 20.0)).set(
        "material.opacity", FloatAttribute(0.4)).build()
    return group(ball=shape(sphere(1.0), [0.76, 0.15, 0.10], [0, 0, -0.8]), pane=(pane, {}))


def bounded(bounds, **children):
    """A group that knows its bounds."""
    return GroupAttribute(("type", StringAttribute("group")),
                          ("bound", DoubleAttribute(bounds))), children


def boxes():
    """Groups that show nothing but their bounds, and one shape."""
    return group(near=bounded([-2.6, -0.6, 0, 1.2, 0.2, 1.6]),
                 far=bounded([0.8, 2.4, 0, 2.2, -1.6, -0.2]),
                 ball=shape(sphere(0.8), [0.76, 0.15, 0.10], [0.2, 0, 0.6]))


def collapsible():
    """Two groups of shapes that know their bounds."""
    return group(
        left=bounded([-2.6, -0.4, 0, 2.0, -1.0, 1.0],
                     ball=shape(sphere(1.0), [0.76, 0.15, 0.10], [-1.5, 0, 0])),
        right=bounded([0.4, 2.6, 0, 1.6, -1.0, 1.0],
                      cone=shape(cone(0.7, 1.6), [0.16, 0.45, 0.20], [1.5, 0, 0])))


def substitute():
    """A location that is shown by a cone of wires in its stead, beside a ball."""
    cheap = drawn(mesh(lathe([(0.0, 0.0), (0.9, 0.0), (0.0, 1.8)], 12), [0.85, 0.52, 0.08],
                       [0, 0, 0]), fill="wireframe")
    ops = GroupAttribute(("cone.opType", StringAttribute("Scene.Literal")),
                         ("cone.opArgs.staticScene", literal(group(cone=(cheap, {})))))
    costly = GroupAttribute(("type", StringAttribute("group")), ("proxies.viewer", ops),
                            ("xform.placed.translate", DoubleAttribute([1.2, 0, 0], 3)))
    return group(costly=(costly, {}), ball=shape(sphere(0.8), [0.76, 0.15, 0.10], [-1.2, 0, 0]))


def ownModes():
    """The same ball, drawn as each location asks."""
    ball = lathe([(0.8 * math.sin(math.pi * i / 8), 0.8 - 0.8 * math.cos(math.pi * i / 8))
                  for i in range(9)], 14)

    def asking(fill, x):
        return drawn(mesh(ball, [0.20, 0.45, 0.50], [x, 0, 0]), fill=fill), {}
    return group(a=asking("shaded", -2.7), b=asking("wireframeOnShaded", -0.9),
                 c=asking("wireframe", 0.9), d=asking("points", 2.7))


def hiding():
    """A wall before a ball that reaches out from behind it."""
    return group(wall=shape(cube(1.6), [0.35, 0.35, 0.35], [-0.5, 0, 1.2]),
                 ball=shape(sphere(0.9), [0.15, 0.40, 0.60], [0.6, 0, -1.0]),
                 orange=shape(sphere(0.6), [0.95, 0.40, 0.05], [2.3, 0, 0.6]),
                 white=shape(cone(0.6, 1.4), [0.95, 0.95, 0.95], [-2.3, 0, 0.2]))


def lit():
    """A spot over a ball."""
    spot = GroupAttribute(
        ("type", StringAttribute("light")), ("light.kind", StringAttribute("spot")),
        ("light.coneAngle", FloatAttribute(50.0)),
        ("attributeEditor.exclusiveTo", StringAttribute("session")),
        ("xform.placed.translate", DoubleAttribute([0.3, 2.4, 0.8], 3)),
        ("xform.placed.rotateX", DoubleAttribute([-70, 1, 0, 0], 4)))
    return group(ball=shape(sphere(0.8), [0.15, 0.40, 0.60], [0, 0, 0]), spot=(spot, {}))


def literal(tree):
    """A tree in the form of a "Scene.Literal"."""
    attributes, children = tree
    items = [("a", attributes)]
    if children:
        items.append(("c", GroupAttribute(*[(name, literal(children[name]))
                                            for name in sorted(children)])))
    return GroupAttribute(*items)


class Golden(object):
    """A picture.

    name       of the file, without its extension
    scene      a function that gives a tree, or the path of a model
    options    of the MeshLayer, by name
    selection  paths of selected locations
    manipulator  plug-in that shows on what is selected
    closed     paths of locations that are closed once the scene is there
    camera     plug-in
    draft      whether the quick picture
    look       yaw and pitch of the camera, in degrees
    move       what is done to the view's Orbit once the scene is framed
    act        what is done to the View at last
    size       in pixels
    """

    def __init__(self, name, scene, options=None, selection=(), closed=(),
                 camera="PerspectiveCamera", draft=False, look=(35.0, 22.0), move=None,
                 manipulator=None, act=None, size=(256, 160)):
        self.name = name
        self.scene = scene
        self.options = options or {}
        self.selection = list(selection)
        self.closed = list(closed)
        self.camera = camera
        self.draft = draft
        self.look = look
        self.move = move
        self.manipulator = manipulator
        self.act = act
        self.size = size


def _mode(name):
    return {"displayMode": StringAttribute(name)}


def _pan(orbit):
    right, up, _ = orbit.axes()
    orbit.target = tuple(orbit.target[i] + orbit.distance * (0.14 * right[i] - 0.06 * up[i])
                         for i in range(3))


def _zoom(orbit):
    orbit.distance /= 2.5


def _back(orbit):
    orbit.distance *= 1.8
    orbit.target = (orbit.target[0], orbit.target[1] + 0.6, orbit.target[2])


def _gizmo(name, begin=None, end=None):
    """A gizmo on the torus, with the pointer at one pixel, or having dragged from there to another;
    named by the tool first."""
    def act(view):
        view.draw()
        if end:
            view.viewport.event(events.mousePress(begin[0], begin[1], "left"))
            view.viewport.event(events.mouseMove(end[0], end[1], ["left"]))
            view.viewport.getViewerDelegate().processLocationEvents()
        elif begin:
            view.viewport.hover(*begin)
    return Golden(name, shapes, selection=["/root/torus"],
                  manipulator=name.split("_")[0].capitalize() + "Manipulator", act=act,
                  size=(320, 264), move=_centreOnTorus)


def _centreOnTorus(orbit):
    orbit.target = (1.3, 0.0, 1.4)


CULLING = {"cullBackFaces": IntAttribute(1)}
ORTHOGRAPHIC = "OrthographicCamera"
FRONT = (0.0, 12.0)

GOLDENS = [
    # Models.
    Golden("duck", "Collada/duck.dae"),
    Golden("spider", "OBJ/spider.obj"),
    Golden("wuson", "PLY/Wuson.ply"),
    Golden("textured", "glTF2/BoxTextured-glTF/BoxTextured.gltf"),
    # Generated scenes.
    Golden("shapes", shapes),
    Golden("leaning", leaning),
    Golden("clouds", clouds),
    Golden("glass", glass),
    Golden("culled", shapes, CULLING),
    # Display modes.
    Golden("wireframe", coarse, _mode("wireframe")),
    Golden("wireframe_on_shaded", coarse, _mode("wireframeOnShaded")),
    Golden("points", coarse, _mode("points")),
    Golden("polygon_edges", polygons, _mode("wireframeOnShaded"), look=FRONT),
    Golden("spider_wireframe", "OBJ/spider.obj", _mode("wireframe")),
    Golden("own_modes", ownModes, look=FRONT),
    # What is generated in place of locations that show nothing of their own.
    Golden("bounding_boxes", boxes),
    Golden("collapsed", collapsible, closed=["/root/left"]),
    Golden("expanded", collapsible),
    Golden("proxy", substitute),
    Golden("selected_box", boxes, selection=["/root/near"]),
    # Cameras.
    Golden("orthographic", shapes, camera=ORTHOGRAPHIC),
    Golden("orthographic_front", shapes, camera=ORTHOGRAPHIC, look=(0.0, 0.0)),
    Golden("panned", shapes, move=_pan),
    Golden("zoomed", shapes, move=_zoom),
    Golden("above", shapes, look=(20.0, 75.0)),
    # Selection.
    Golden("selected", shapes, selection=["/root/torus", "/root/cube"]),
    Golden("selected_hidden", hiding, selection=["/root/ball"], look=FRONT),
    Golden("selected_any_colour", hiding, selection=["/root/orange", "/root/white"], look=FRONT),
    Golden("selected_wireframe", coarse, _mode("wireframe"), selection=["/root/ring"]),
    Golden("selected_group", leaning, selection=["/root/base"]),
    Golden("selected_duck", "Collada/duck.dae", selection=["/root"]),
    # Manipulators.
    Golden("light_cone", lit, selection=["/root/spot"], manipulator="LightConeManipulator",
           move=_back),
    # Drafts.
    Golden("draft", shapes, draft=True),
    Golden("draft_selected", hiding, selection=["/root/ball", "/root/white"], draft=True,
           look=FRONT),
    Golden("draft_wireframe", coarse, _mode("wireframeOnShaded"), draft=True),
    # Gizmos.
    _gizmo("translate"),
    _gizmo("rotate"),
    _gizmo("scale"),
    _gizmo("translate_dragged", (240, 153), (270, 165)),
    _gizmo("rotate_hovered", (227, 73)),
    _gizmo("rotate_dragged", (181, 178), (262, 135)),
    _gizmo("scale_dragged", (160, 42), (163, 20)),
]


def byName(name):
    """The golden picture of this name."""
    return [golden for golden in GOLDENS if golden.name == name][0]
