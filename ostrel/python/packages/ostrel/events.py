"""What users do in a viewport's window, in the form that viewports, layers and manipulators take.

    view.viewport.event(events.wheel(320, 240, 1.0, modifiers=["shift"]))

docs/events.md describes the groups that these make. Places are whole pixels from the left and top of
the window. Buttons are "left", "middle" and "right"; modifiers "shift", "control" and "alt".
"""
from PyVlAttribute import FloatAttribute, GroupAttribute, IntAttribute, StringAttribute


def _event(eventType, modifiers, *rest):
    return GroupAttribute(("type", StringAttribute(eventType)), *(
        rest + (("modifiers", StringAttribute(list(modifiers))),)))


def _place(x, y, buttons):
    return (("x", IntAttribute(int(x))), ("y", IntAttribute(int(y))),
            ("buttons", StringAttribute(list(buttons))))


def mousePress(x, y, button, buttons=(), modifiers=()):
    """A button went down; buttons are all that are held, this one too."""
    return _event("mousePress", modifiers, ("button", StringAttribute(button)),
                  *_place(x, y, buttons or (button,)))


def mouseRelease(x, y, button, buttons=(), modifiers=()):
    """A button went up; buttons are those that are still held."""
    return _event("mouseRelease", modifiers, ("button", StringAttribute(button)),
                  *_place(x, y, buttons))


def mouseMove(x, y, buttons=(), modifiers=()):
    """The pointer is at another place."""
    return _event("mouseMove", modifiers, *_place(x, y, buttons))


def wheel(x, y, delta, buttons=(), modifiers=()):
    """The wheel turned by this many notches, positive away from the user."""
    return _event("wheel", modifiers, ("delta", FloatAttribute(float(delta))),
                  *_place(x, y, buttons))


def keyPress(key, modifiers=()):
    """A key, by its name, went down."""
    return _event("keyPress", modifiers, ("key", StringAttribute(key)))


def keyRelease(key, modifiers=()):
    """A key, by its name, went up."""
    return _event("keyRelease", modifiers, ("key", StringAttribute(key)))
