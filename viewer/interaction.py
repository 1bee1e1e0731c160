"""What the mouse does to a view: the part that the window toolkits share."""

#: Degrees of orbit for a drag over the height of the window.
_ORBIT = 180.0
#: Zoom factor of a drag over the height of the window, and of one notch of the wheel.
_DRAG_ZOOM = 8.0
_WHEEL_ZOOM = 1.15

ORBIT, PAN, ZOOM = "orbit", "pan", "zoom"


class Interaction(object):
    """Turns drags, in pixels with y down, into moves of the view's camera."""

    def __init__(self, view):
        self._view = view
        self._mode = None
        self._last = (0, 0)

    def press(self, mode, x, y):
        """A button went down; mode is ORBIT, PAN or ZOOM."""
        self._mode = mode
        self._last = (x, y)

    def release(self):
        """The button went up."""
        self._mode = None

    def move(self, x, y):
        """The mouse is at a new place. Does nothing between release and press."""
        if self._mode is None:
            return
        height = float(max(1, self._view.height))
        right = (x - self._last[0]) / height
        down = (y - self._last[1]) / height
        self._last = (x, y)
        orbit = self._view.orbit
        if self._mode == ORBIT:
            orbit.orbit(-right * _ORBIT, down * _ORBIT)
        elif self._mode == PAN:
            orbit.pan(-right, down, self._view.camera.getFOV())
        else:
            orbit.zoom(_DRAG_ZOOM ** (right - down))
        self._view.updateCamera()

    def wheel(self, notches):
        """The wheel turned; positive is away from the user, which comes nearer."""
        self._view.orbit.zoom(_WHEEL_ZOOM ** notches)
        self._view.updateCamera()


class Pump(object):
    """Keeps a view up with its scene: call tick() regularly while the window is open.

    Frames the scene once all of it is there, unless the user has moved the camera before. `loaded`
    is called at that moment.
    """

    def __init__(self, session, view, loaded):
        self._session = session
        self._view = view
        self._loaded = loaded
        self._isLoaded = False
        self._start = self._place()

    def _place(self):
        orbit = self._view.orbit
        return orbit.target, orbit.distance, orbit.yaw, orbit.pitch

    def tick(self):
        """Fetches what is cooked, and draws when something changed."""
        delegate = self._session.delegate
        delegate.processLocationEvents()
        if not self._isLoaded and not delegate.isProcessing():
            self._isLoaded = True
            if self._place() == self._start:
                self._view.frame()
            self._loaded()
        if self._view.viewport.isDirty():
            self._view.draw()
