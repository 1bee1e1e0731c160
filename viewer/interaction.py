"""What the window toolkits share: what keys do, when to look for changes, and when to draw."""
import time

from PyVlAttribute import IntAttribute

#: The manipulators that keys show on the selection.
_TOOLS = {"w": "TranslateManipulator", "e": "RotateManipulator", "r": "ScaleManipulator"}

#: How long nothing has to change before a draft gives way to a fine picture, in seconds.
_CALM = 0.2


def pressKey(session, view, key, modifiers, close):
    """Does what a key does, named as docs/events.md has it, that nothing in the viewport takes.
    `close` closes the window. Letters mean nothing with control or alt."""
    if len(key) == 1 and ("control" in modifiers or "alt" in modifiers):
        return
    if key in ("q", "Escape"):
        close()
    elif key in _TOOLS:
        isShown = view.getManipulator() == _TOOLS[key]
        view.manipulate(None if isShown else _TOOLS[key])
    elif key == "x":
        view.setManipulatorAxes("world" if view.getManipulatorAxes() == "local" else "local")
    elif key == "c":
        session.setCollapsed(not session.isCollapsed())
    elif key == "b":
        session.setBoxesShown(not session.areBoxesShown())
    elif key == "p":
        session.setProxiesShown(not session.areProxiesShown())
    elif key == "Left":
        session.setTime(session.getTime() - 1)
    elif key == "Right":
        session.setTime(session.getTime() + 1)


def titleAt(title, frame):
    """A window's title while it shows this frame."""
    return "%s, frame %g" % (title, frame)


class Pump(object):
    """Keeps a view up with its scene: call tick() regularly while the window is open.

    Frames the scene once all of it is there, unless the user has moved the camera before. `loaded`
    is called at that moment. Until then `progress` is what a window's title says of that, and ""
    afterwards.
    """

    def __init__(self, session, view, loaded):
        self._session = session
        self._view = view
        self._painter = Painter(view)
        self._loaded = loaded
        self._isLoaded = False
        self.progress = ""

    def tick(self):
        """Fetches what is cooked, and draws when something changed."""
        delegate = self._session.delegate
        delegate.processLocationEvents()
        if not self._isLoaded:
            if delegate.isProcessing():
                self.progress = ", loading, %d to come" % self._session.countLocationsToCome()
            else:
                self._finishLoading()
        self._painter.tick()

    def _finishLoading(self):
        self._isLoaded = True
        self.progress = ""
        if not self._view.isMovedByUser():
            self._view.frame()
        self._loaded()


class Painter(object):
    """Draws a view when it is dirty. Where pictures take the processor long it draws drafts while
    something moves, and a fine picture when it has come to rest."""

    def __init__(self, view, clock=time.time):
        self._view = view
        self._clock = clock
        self._lastDraft = None

    def tick(self):
        """Call regularly."""
        viewport = self._view.viewport
        if viewport.isDirty():
            if viewport.getOptionByName("isSoftwareRenderer").getValue():
                viewport.setOptionByName("draft", IntAttribute(1))
                self._lastDraft = self._clock()
            self._view.draw()
        elif self._lastDraft is not None and self._clock() - self._lastDraft >= _CALM:
            self._lastDraft = None
            viewport.setOptionByName("draft", IntAttribute(0))
            self._view.draw()
