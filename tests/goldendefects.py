"""Faults of a viewer, made by changing the scene that it is given: each takes a golden picture and
gives the scene's tree as the faulty viewer would have it, or None where the fault can't show."""
from PyVlAttribute import DoubleAttribute, GroupBuilder, IntAttribute

VERTICES, STARTS = "geometry.poly.vertexList", "geometry.poly.startIndex"


def _mapped(tree, change, path="/root"):
    """The tree with each location's attributes as change(attributes, path) gives them."""
    attributes, children = tree
    return change(attributes, path), dict(
        (name, _mapped(child, change, path + "/" + name)) for name, child in children.items())


def _attribute(attributes, name):
    return attributes.getChildByName(name)


def _set(attributes, name, value):
    return GroupBuilder().update(attributes).set(name, value).build()


def flippedWinding(golden):
    """Polygons turned round, where their front sides alone are shown."""
    if "cullBackFaces" not in golden.options:
        return None

    def flip(attributes, _):
        vertices = _attribute(attributes, VERTICES)
        if vertices is None:
            return attributes
        vertices, starts = list(vertices), list(_attribute(attributes, STARTS))
        flipped = []
        for first, last in zip(starts, starts[1:]):
            flipped += vertices[first:last][::-1]
        return _set(attributes, VERTICES, IntAttribute(flipped))
    return _mapped(golden.scene(), flip)


def transposedMatrix(golden):
    """Rows for columns."""
    found = []

    def transpose(attributes, _):
        matrix = _attribute(attributes, "xform.placed.matrix")
        if matrix is None:
            return attributes
        found.append(matrix)
        values = list(matrix)
        return _set(attributes, "xform.placed.matrix",
                    DoubleAttribute([values[4 * column + row] for row in range(4)
                                     for column in range(4)], 4))
    tree = _mapped(golden.scene(), transpose)
    return tree if found else None


def staleBound(golden):
    """A bound that is still where something was before it moved."""
    found = []

    def age(attributes, _):
        bound = _attribute(attributes, "bound")
        if bound is None or found:
            return attributes
        found.append(bound)
        return _set(attributes, "bound", DoubleAttribute([value + 3.0 for value in bound]))
    tree = _mapped(golden.scene(), age)
    return tree if found else None


def lostChild(golden):
    """The last of a location's children is not there."""
    attributes, children = golden.scene()
    names = sorted(children)
    return attributes, dict((name, children[name]) for name in names[:-1])


def lostTransform(golden):
    """A location stands where its parent does."""
    attributes, children = golden.scene()
    first = sorted(children)[0]
    own, below = children[first]
    if _attribute(own, "xform") is None:
        return None
    return attributes, dict(children, **{first: (_set(own, "xform", None), below)})


def swappedColours(golden):
    """Red for blue."""
    def swap(attributes, _):
        colour = _attribute(attributes, "material.baseColor")
        if colour is None:
            return attributes
        return _set(attributes, "material.baseColor", type(colour)(list(colour)[::-1], 3))
    return _mapped(golden.scene(), swap)


def otherDrawOptions(golden):
    """Draw options go unheeded."""
    found = []

    def forget(attributes, _):
        if _attribute(attributes, "viewer.default.drawOptions") is None:
            return attributes
        found.append(attributes)
        return _set(attributes, "viewer", None)
    tree = _mapped(golden.scene(), forget)
    return tree if found else None


def selectionOfAnother(golden):
    """Two locations have changed names, and so the wrong one is selected."""
    attributes, children = golden.scene()
    names = sorted(children)
    if not golden.selection or len(names) < 2:
        return None
    swapped = names[1:] + names[:1]
    return attributes, dict((name, children[other]) for name, other in zip(names, swapped))


DEFECTS = [
    ("flipped_winding", flippedWinding),
    ("transposed_matrix", transposedMatrix),
    ("stale_bound", staleBound),
    ("lost_child", lostChild),
    ("lost_transform", lostTransform),
    ("swapped_colours", swappedColours),
    ("unheeded_draw_options", otherDrawOptions),
    ("selection_of_another", selectionOfAnother),
]
