"""A viewport with everything that a picture needs."""
from __future__ import division

import PyWindowSystem
from PyVlAttribute import IntAttribute, StringAttribute

from ostrel.lookthrough import cameraData, cameraPlugin
from ostrel.orbit import Orbit

#: The vertical angle of the picture, in degrees: a little tele, as things are photographed.
_FOV = 32.0


class View(object):
    """A viewport that shows a session's scene. Made by Session.addView and addOffscreenView.

    viewport  the ViewerAPI.Viewport
    camera    its own ViewerAPI.ViewportCamera, which the user moves; see also lookThrough()
    orbit     where a script wants that camera; call updateCamera() after changing it
    """

    def __init__(self, session, windowId, width, height, name, cameraPlugin):
        self._session = session
        self._windowId = windowId
        self.width, self.height = width, height
        self.orbit = Orbit()
        self.viewport = session.delegate.addViewport("SceneViewport", name)
        self.viewport.setup(windowId)
        # The grid first: so it stays behind the model and never cuts through it.
        self.viewport.addLayer("GridLayer", "grid")
        self.viewport.addLayer("MeshLayer", "meshes")
        self.viewport.addLayer("ManipulatorLayer", "manipulators")
        self.camera = self.viewport.addCamera(cameraPlugin, "main")
        self.viewport.setActiveCamera(self.camera)
        self.camera.setFOV(_FOV)
        self._placed = None  # the view matrix that the orbit gave last
        self._locationPlugin = None
        self._locationPath = ""
        self._manipulator = None
        self._manipulatorAxes = "world"
        self.updateCamera()
        self.resize(width, height)

    @property
    def aspect(self):
        """Width by height, of a picture of a pixel at least."""
        return float(max(1, self.width)) / max(1, self.height)

    def resize(self, width, height):
        """The window has this size in pixels. Raises ValueError, and changes nothing, for one that
        an off-screen window can't have."""
        if self._windowId < 0:
            PyWindowSystem.resizeOffscreen(self._windowId, width, height)
        self.width, self.height = width, height
        self.viewport.resize(width, height)
        self.viewport.setDirty(True)

    def frame(self, bounds=None):
        """Brings the scene, or the given bounds, into the picture without turning the camera."""
        if bounds is None:
            bounds = self._session.getBounds()
        if self.isMovedByUser():
            self.orbit.follow(self.camera, self.aspect)
        self.orbit.frame(bounds, self.camera.getFOV(), self.aspect)
        self.updateCamera()

    def updateCamera(self):
        """Puts the camera where the orbit is."""
        self.orbit.apply(self.camera, self.aspect)
        self._placed = self.camera.getViewMatrix()
        self.viewport.setDirty(True)

    def isMovedByUser(self):
        """Whether the camera is not where the orbit put it last."""
        return self.camera.getViewMatrix() != self._placed

    def lookThrough(self, path):
        """Looks through a camera or a light, and follows its changes; None ends that.

        Takes effect in a pump(), once the location is cooked; it need not be open, nor exist yet.
        The user can't move that camera; the view's own waits where it is. Raises RuntimeError for
        a path that does not begin with "/", and looks through nothing then.
        """
        try:
            self._session.delegate.setLookThroughLocation(self.viewport, path or "")
        except RuntimeError:
            self.showFreely()
            raise

    def getLookThrough(self):
        """The path that the picture is seen through, or None."""
        return self._locationPath or None

    def showThrough(self, path, attributes):
        """The delegate's answer to lookThrough(): this is what it looks through now."""
        plugin = cameraPlugin(attributes)
        if self._locationPlugin != plugin or self._locationPath != path:
            # A camera of its own for each location: none keeps what the one before had.
            camera = self.viewport.addCamera(plugin, "location")
            camera.disableInteraction(True)
            self.viewport.setActiveCamera(camera)
            self._locationPlugin, self._locationPath = plugin, path
            if plugin == "OrthographicCamera":
                # Lights have no width.
                camera.setOrthographicWidth(self._session.getExtent())
        self.viewport.getActiveCamera().setup(cameraData(path, attributes))
        self.viewport.setDirty(True)

    def showFreely(self):
        """The delegate's answer to lookThrough(): there is nothing to look through."""
        if self._locationPlugin:
            self._locationPlugin, self._locationPath = None, ""
            self.viewport.setActiveCamera(self.camera)
            self.viewport.removeCamera("location")
            self.viewport.setDirty(True)

    def manipulate(self, pluginName):
        """Shows this manipulator on what is selected, also when that changes; None ends it.

        Raises RuntimeError, and shows none, when there is no such manipulator.
        """
        self._manipulator = None
        self.viewport.deactivateAllManipulators(True)
        if pluginName is not None:
            self.viewport.activateManipulator(pluginName, self._session.getSelection(), True)
            self._tellManipulatorAxes()
        self._manipulator = pluginName
        self.viewport.setDirty(True)

    def getManipulator(self):
        """The plug-in name of the manipulator that follows the selection, or None."""
        return self._manipulator

    def setManipulatorAxes(self, axes):
        """Has manipulators stand along these axes: "world", or "local" for those of the first
        location that is selected. Raises ValueError for others."""
        if axes not in ("world", "local"):
            raise ValueError("\"%s\" are no axes: \"world\" or \"local\"" % (axes,))
        self._manipulatorAxes = axes
        self._tellManipulatorAxes()

    def getManipulatorAxes(self):
        """What setManipulatorAxes() was told; "world" at first."""
        return self._manipulatorAxes

    def _tellManipulatorAxes(self):
        for index in range(self.viewport.getNumberOfActiveManipulators()):
            self.viewport.getActiveManipulatorByIndex(index).setOptionByName(
                "axes", StringAttribute(self._manipulatorAxes))

    def selectionChanged(self):
        """The session has another selection."""
        if self._manipulator is not None:
            self.manipulate(self._manipulator)

    def draw(self):
        """Draws what the delegate knows by now."""
        self.viewport.draw()
        self.viewport.setDirty(False)

    def pick(self, x, y, width=1, height=1, deep=False):
        """The paths of the locations that a region of the picture shows, sorted; with deep also of
        those hidden behind them. In pixels, from the top left."""
        self.viewport.setOptionByName(
            "pickRegion", IntAttribute([x, y, width, height, 1 if deep else 0]))
        return sorted(set(self.viewport.getOptionByName("picked").getNearestSample(0.0)))

    def readPixels(self):
        """Draws, and gives (width, height, bytes): RGBA, top row first. Off-screen views only."""
        self.draw()
        return PyWindowSystem.readPixels(self._windowId)

    def savePicture(self, path):
        """Draws, and writes a PNG file. Off-screen views only. Raises IOError, with the path and
        the reason in its text, when the file can't be written."""
        self.draw()
        PyWindowSystem.writePng(self._windowId, path)
