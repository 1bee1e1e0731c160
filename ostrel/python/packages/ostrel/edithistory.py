"""What has been edited in a scene, and the way back."""
from PyVlAttribute import Attribute, GroupAttribute, GroupBuilder


def _key(locationPath, attributeName):
    """Where the arguments of a "Scene.Edit" have an attribute of a location."""
    names = locationPath.split("/")
    if names[:2] != ["", "root"] or not all(names[1:]):
        raise ValueError("\"%s\" is not the path of a location" % locationPath)
    if not all(attributeName.split(".")):
        raise ValueError("\"%s\" is not the name of an attribute" % attributeName)
    return ".".join(["edits"] + ["c." + name for name in names[2:]] + ["a", attributeName])


def _without(group, names):
    """A group without what a sequence of names leads to, and without the groups that this empties;
    None when it is itself empty then."""
    child = group.getChildByName(names[0])
    if len(names) > 1 and isinstance(child, GroupAttribute):
        child = _without(child, names[1:])
    elif len(names) == 1:
        child = None
    changed = GroupBuilder().update(group).set(names[0], child).build()
    return changed if len(changed) > 0 else None


class EditHistory(object):
    """Attributes that are set on top of a scene, with undo and redo.

    args  a GroupAttribute: the arguments of a "Scene.Edit" that sets them

    Groups share what they have in common, so a step costs what it changes.
    """

    def __init__(self):
        self.args = GroupAttribute()
        # Steps, the next to be taken last: the args to go to, and the locations that it edits.
        self._undo = []
        self._redo = []

    def getValue(self, locationPath, attributeName):
        """The edit of an attribute; None when there is none."""
        return self.args.getChildByName(_key(locationPath, attributeName))

    def apply(self, edits, isSameStep=False):
        """Sets attributes, a list of (location path, dotted name, attribute or None for no edit):
        a step, or more of the last one. Returns whether anything changed: otherwise it is no step.

        Raises ValueError for a path that no location can have or a name that no attribute can have,
        TypeError for what is no attribute; nothing is edited then.
        """
        builder = GroupBuilder().update(self.args)
        for locationPath, attributeName, attribute in edits:
            key = _key(locationPath, attributeName)
            if attribute is not None and not isinstance(attribute, Attribute):
                raise TypeError("%s of %s must be an attribute or None, not %s"
                                % (attributeName, locationPath, type(attribute).__name__))
            if attribute is None:
                builder.update(_without(builder.build(), key.split(".")))
            else:
                builder.set(key, attribute)
        args = builder.build()
        if args == self.args:
            return False
        before, paths = self.args, set(edit[0] for edit in edits)
        if isSameStep and self._undo:
            before, others = self._undo.pop()
            paths |= others
        self._undo.append((before, paths))
        self._redo = []
        self.args = args
        return True

    def canUndo(self):
        """Whether there is a step to take back."""
        return bool(self._undo)

    def canRedo(self):
        """Whether there is a step to make again."""
        return bool(self._redo)

    def undo(self):
        """Takes the last step back; returns the locations that it edited, a set. There must be a
        step."""
        return self._go(self._undo, self._redo)

    def redo(self):
        """Makes the step again that was taken back last; returns as undo() does."""
        return self._go(self._redo, self._undo)

    def _go(self, steps, others):
        args, paths = steps.pop()
        others.append((self.args, paths))
        self.args = args
        return paths
